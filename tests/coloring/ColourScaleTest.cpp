#include "meshes/ColourScale.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <vector>

namespace {

using testing::ElementsAre;
using testing::FloatEq;
using testing::FloatNear;

const ColourScale &scale = bandedColourScale();

auto isColour(float red, float green, float blue)
{
    return ElementsAre(FloatEq(red), FloatEq(green), FloatEq(blue), FloatEq(1.0f));
}

// From levels of 0 to 255.
auto isLevels(float red, float green, float blue)
{
    return ElementsAre(FloatNear(red / 255.0f, 1e-6f), FloatNear(green / 255.0f, 1e-6f),
                       FloatNear(blue / 255.0f, 1e-6f), FloatEq(1.0f));
}

TEST(ColourScale, tableHasElevenBreaksWithBlackLinesAtTheQuarters)
{
    EXPECT_THAT(scale.breaks, ElementsAre(0.0, 0.24, 0.25, 0.26, 0.49, 0.5, 0.51, 0.74, 0.75, 0.76, 1.0));
    const auto blue = isColour(0, 0, 1), cyan = isColour(0, 1, 1), black = isColour(0, 0, 0),
               green = isColour(0, 1, 0), yellow = isColour(1, 1, 0), red = isColour(1, 0, 0);
    EXPECT_THAT(scale.colours,
                ElementsAre(blue, cyan, black, cyan, green, black, green, yellow, black, yellow, red));
}

TEST(ColourScale, breakAbove_isTheFirstOneThatIsLarger)
{
    EXPECT_EQ(scale.breakAbove(-0.1), 0);
    EXPECT_EQ(scale.breakAbove(0.0), 1);
    EXPECT_EQ(scale.breakAbove(-0.0), 1);
    EXPECT_EQ(scale.breakAbove(0.2), 1);
    EXPECT_EQ(scale.breakAbove(0.25), 3);
    EXPECT_EQ(scale.breakAbove(0.5), 6);
    EXPECT_EQ(scale.breakAbove(std::nextafter(1.0, 0.0)), 10);
    EXPECT_EQ(scale.breakAbove(1.0), 11);
    EXPECT_EQ(scale.breakAbove(7.0), 11);
    EXPECT_EQ(scale.breakAbove(std::nan("")), 0);
}

TEST(ColourScale, colour_isBlendedBetweenTwoBreaks)
{
    // Half way from blue (0.0) to cyan (0.24), a quarter of the way from yellow (0.76) to red (1.0).
    EXPECT_THAT(scale.colour(1, 0.12), isColour(0.0f, 0.5f, 1.0f));
    EXPECT_THAT(scale.colour(10, 0.82), isColour(1.0f, 0.75f, 0.0f));
    // Half way from cyan (0.24) to black (0.25).
    EXPECT_THAT(scale.colour(2, 0.245), isColour(0.0f, 0.5f, 0.5f));
}

TEST(ColourScale, colour_atABreakIsExactlyThatOfTheTable)
{
    for (std::size_t k = 1; k < scale.breaks.size(); ++k) {
        EXPECT_EQ(scale.colour(static_cast<int>(k), scale.breaks[k]), scale.colours[k]) << k;
        EXPECT_EQ(scale.colour(static_cast<int>(k), scale.breaks[k - 1]), scale.colours[k - 1]) << k;
    }
}

TEST(ColourScale, colour_outsideTheTableIsThatOfItsEnd)
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    for (const double value : {-1.0, 0.5, infinity, -infinity, std::nan("")}) {
        EXPECT_THAT(scale.colour(0, value), isColour(0, 0, 1));
        EXPECT_THAT(scale.colour(-1, value), isColour(0, 0, 1));
        EXPECT_THAT(scale.colour(11, value), isColour(1, 0, 0));
        EXPECT_THAT(scale.colour(12, value), isColour(1, 0, 0));
    }
}

TEST(ColourScale, continuousColour_isKeptAsAnAlternative)
{
    EXPECT_EQ(scale.continuousColour, &continuousThicknessColour);
    EXPECT_THAT(continuousThicknessColour(-3.0), isLevels(216, 186, 158));
    EXPECT_THAT(continuousThicknessColour(0.0), isLevels(216, 186, 158));
    // 216 - 16, 186 - 67.5, 158 - 61
    EXPECT_THAT(continuousThicknessColour(0.05), isLevels(200.0f, 118.5f, 97.0f));
    // 216 - 32, 186 - 135, 158 - 122
    EXPECT_THAT(continuousThicknessColour(0.1), isLevels(184, 51, 36));
    // u = 0.2: 184 + 3, 51 + 52.5, 36 + 59
    EXPECT_THAT(continuousThicknessColour(0.3), isLevels(187.0f, 103.5f, 95.0f));
    // u = 0.4: 184 + 6, 51 + 105, 36 + 118
    EXPECT_THAT(continuousThicknessColour(0.5), isLevels(190, 156, 154));
    // u = 0.25: 190 + 17.5, 156 + 44.5, 154 + 50
    EXPECT_THAT(continuousThicknessColour(0.75), isLevels(207.5f, 200.5f, 204.0f));
    // u = 0.5: 190 + 35, 156 + 89, 154 + 100
    EXPECT_THAT(continuousThicknessColour(1.0), isLevels(225, 245, 254));
    EXPECT_THAT(continuousThicknessColour(1.5), isLevels(225, 245, 254));
}

} // namespace
