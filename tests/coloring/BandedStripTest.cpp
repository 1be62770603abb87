#include "meshes/BandedStrip.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace {

using Corners = std::array<Vector3, 3>;
using Fractions = std::array<double, 3>;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

constexpr RgbaColour blue{0, 0, 1, 1}, cyan{0, 1, 1, 1}, green{0, 1, 0, 1}, yellow{1, 1, 0, 1},
    red{1, 0, 0, 1}, black{0, 0, 0, 1};

const ColourScale &scale = bandedColourScale();
const Corners unit{{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}};

struct Expected
{
    Vector3 position;
    RgbaColour colour;
};

void expectStrip(const BandedStrip &strip, const std::vector<Expected> &expected)
{
    ASSERT_EQ(strip.count, expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const StripVertex &vertex = strip.vertices()[i];
        EXPECT_NEAR(vertex.position.x, expected[i].position.x, 1e-12) << "vertex " << i;
        EXPECT_NEAR(vertex.position.y, expected[i].position.y, 1e-12) << "vertex " << i;
        EXPECT_NEAR(vertex.position.z, expected[i].position.z, 1e-12) << "vertex " << i;
        for (std::size_t channel = 0; channel < 4; ++channel)
            EXPECT_FLOAT_EQ(vertex.colour[channel], expected[i].colour[channel]) << "vertex " << i;
    }
}

struct OrderCase
{
    const char *name;
    Fractions fractions;
    int lo, mid, hi;
    bool isReversed;
};

class RisingOrderOf : public testing::TestWithParam<OrderCase>
{};

TEST_P(RisingOrderOf, cornersRise)
{
    const RisingOrder order = risingOrder(GetParam().fractions);
    EXPECT_EQ(order.lo, GetParam().lo);
    EXPECT_EQ(order.mid, GetParam().mid);
    EXPECT_EQ(order.hi, GetParam().hi);
    EXPECT_EQ(order.isReversed, GetParam().isReversed);
}

// All thirteen ways in which three values can be ordered, and one that cannot.
INSTANTIATE_TEST_SUITE_P(
    BandedStrip, RisingOrderOf,
    testing::Values(
        OrderCase{"012", {0.1, 0.2, 0.3}, 0, 1, 2, false}, OrderCase{"021", {0.1, 0.3, 0.2}, 0, 2, 1, true},
        OrderCase{"102", {0.2, 0.1, 0.3}, 1, 0, 2, true}, OrderCase{"120", {0.3, 0.1, 0.2}, 1, 2, 0, false},
        OrderCase{"201", {0.2, 0.3, 0.1}, 2, 0, 1, false}, OrderCase{"210", {0.3, 0.2, 0.1}, 2, 1, 0, true},
        // Not by the general tests, which would take corner 2 for the lowest.
        OrderCase{"lowestTie01", {0.1, 0.1, 0.3}, 0, 1, 2, false},
        OrderCase{"lowestTie02", {0.1, 0.3, 0.1}, 2, 0, 1, false},
        OrderCase{"lowestTie12", {0.3, 0.1, 0.1}, 2, 1, 0, true},
        OrderCase{"highestTie12", {0.1, 0.3, 0.3}, 0, 2, 1, true},
        OrderCase{"highestTie02", {0.3, 0.1, 0.3}, 1, 2, 0, false},
        OrderCase{"highestTie01", {0.3, 0.3, 0.1}, 2, 1, 0, true},
        OrderCase{"allEqual", {0.3, 0.3, 0.3}, 2, 1, 0, true},
        OrderCase{"allNaN", {nan, nan, nan}, 2, 1, 0, true}),
    [](const auto &tested) { return std::string(tested.param.name); });

TEST(BandedStrip, fromZeroOverAHalfToOne_crossesAllBreaksBetween)
{
    // The value v lies at (v, 0) on the long side; on the short ones at (0, 2 v) and, with s = 2 v - 1, at
    // (s, 1 - s).
    const Corners corners{{{0, 0, 0}, {0, 1, 0}, {1, 0, 0}}};
    const BandedStrip strip = bandedStrip(corners, {0.0, 0.5, 1.0}, scale);
    EXPECT_FALSE(strip.isReversed);
    expectStrip(
        strip,
        {
            {{0, 0, 0}, blue},         {{0, 0.48, 0}, cyan}, // up to the middle value first on the short side
            {{0.24, 0, 0}, cyan},      {{0, 0.5, 0}, black},   {{0.25, 0, 0}, black},
            {{0, 0.52, 0}, cyan},      {{0.26, 0, 0}, cyan},   {{0, 0.98, 0}, green},
            {{0.49, 0, 0}, green},     {{0, 1, 0}, black}, // the middle corner, exactly on a break,
            {{0.5, 0, 0}, black},      {{0, 1, 0}, black}, // stands twice
            {{0.51, 0, 0}, green},                         // from there on first on the long side
            {{0.02, 0.98, 0}, green},  {{0.74, 0, 0}, yellow}, {{0.48, 0.52, 0}, yellow},
            {{0.75, 0, 0}, black},     {{0.5, 0.5, 0}, black}, {{0.76, 0, 0}, yellow},
            {{0.52, 0.48, 0}, yellow}, {{1, 0, 0}, red},
        });
}

TEST(BandedStrip, cornersOfTheStrip_areThoseOfTheFaceToTheLastBit)
{
    const Corners corners{{{0.1, 0.2, 0.3}, {-1.7, 2.9, 1e-9}, {5.3, 1e9, 0.7}}};
    const BandedStrip strip = bandedStrip(corners, {0.9, 0.1, 0.2}, scale);
    // Order 1, 2, 0. The middle corner follows lo: no break lies between 0.1 and 0.2.
    EXPECT_EQ(strip.vertices().front().position.y, 2.9);
    EXPECT_EQ(strip.vertices()[1].position.y, 1e9);
    EXPECT_EQ(strip.vertices().back().position.y, 0.2);
}

TEST(BandedStrip, lowestValueOnABreak_addsNoVertexThere)
{
    // 0.25 is behind the line: between black (0.25) and cyan (0.26), half way at 0.255.
    expectStrip(bandedStrip(unit, {0.25, 0.2525, 0.255}, scale),
                {{{0, 0, 0}, black}, {{1, 0, 0}, {0, 0.25f, 0.25f, 1}}, {{0, 1, 0}, {0, 0.5f, 0.5f, 1}}});
}

TEST(BandedStrip, highestValueOnABreak_addsNoVertexThere)
{
    expectStrip(bandedStrip(unit, {0.0, 0.12, 0.24}, scale),
                {{{0, 0, 0}, blue}, {{1, 0, 0}, {0, 0.5f, 1, 1}}, {{0, 1, 0}, cyan}});
}

TEST(BandedStrip, equalValues_areOneColour)
{
    // Half way between green (0.51) and yellow (0.74); drawn from the last corner, the other way round.
    const RgbaColour colour{0.5f, 1, 0, 1};
    const BandedStrip strip = bandedStrip(unit, {0.625, 0.625, 0.625}, scale);
    EXPECT_TRUE(strip.isReversed);
    expectStrip(strip, {{{0, 1, 0}, colour}, {{1, 0, 0}, colour}, {{0, 0, 0}, colour}});
    // All on a line of the scale.
    expectStrip(bandedStrip(unit, {0.5, 0.5, 0.5}, scale),
                {{{0, 1, 0}, black}, {{1, 0, 0}, black}, {{0, 0, 0}, black}});
    expectStrip(bandedStrip(unit, {1, 1, 1}, scale), {{{0, 1, 0}, red}, {{1, 0, 0}, red}, {{0, 0, 0}, red}});
}

TEST(BandedStrip, lowestTieOfTheFirstCorners_isCutLikeAnyOther)
{
    // One break, 0.24, half way between 0.23 and 0.25 (black), which is not crossed. t = 0.23 / 0.24.
    const RgbaColour low{0, static_cast<float>(0.23 / 0.24), 1, 1};
    expectStrip(
        bandedStrip(unit, {0.23, 0.23, 0.25}, scale),
        {{{0, 0, 0}, low}, {{1, 0, 0}, low}, {{0, 0.5, 0}, cyan}, {{0.5, 0.5, 0}, cyan}, {{0, 1, 0}, black}});
}

TEST(BandedStrip, breaksBelowTheMiddle_cutOffTheLowestCorner)
{
    const BandedStrip strip = bandedStrip(unit, {0.22, 0.26, 0.26}, scale);
    // Highest tie of 1 and 2: lo 0, mid 2, hi 1, reversed. Breaks at one half and three quarters.
    EXPECT_TRUE(strip.isReversed);
    const RgbaColour low{0, static_cast<float>(0.22 / 0.24), 1, 1};
    expectStrip(strip, {{{0, 0, 0}, low},
                        {{0, 0.5, 0}, cyan},
                        {{0.5, 0, 0}, cyan},
                        {{0, 0.75, 0}, black},
                        {{0.75, 0, 0}, black},
                        {{0, 1, 0}, cyan},
                        {{1, 0, 0}, cyan}});
}

TEST(BandedStrip, negativeValues_areBlue)
{
    // Below the first break the colour does not change; the break itself, half way, is cut.
    expectStrip(bandedStrip(unit, {-0.12, -0.12, 0.12}, scale), {{{0, 0, 0}, blue},
                                                                 {{1, 0, 0}, blue},
                                                                 {{0, 0.5, 0}, blue},
                                                                 {{0.5, 0.5, 0}, blue},
                                                                 {{0, 1, 0}, {0, 0.5f, 1, 1}}});
}

TEST(BandedStrip, fromBelowTheFirstToAboveTheLastBreak_fillsTheCapacity)
{
    EXPECT_EQ(bandedStrip(unit, {-1.0, 0.5, 2.0}, scale).count, BandedStrip::capacity);
    EXPECT_EQ(bandedStrip(unit, {-1.0, 2.0, 2.0}, scale).count, BandedStrip::capacity);
    EXPECT_EQ(bandedStrip(unit, {-1.0, -1.0, 2.0}, scale).count, BandedStrip::capacity);
    EXPECT_EQ(bandedStrip(unit, {-1.0, 2.0, 2.0}, scale).vertices().back().colour, red);
}

TEST(BandedStrip, valuesThatAreNotFinite_leaveThePositionsAndAreBlue)
{
    for (const Fractions &fractions :
         {Fractions{nan, nan, nan}, Fractions{-infinity, nan, 0.5}, Fractions{-infinity, 0.3, 0.9},
          Fractions{0.1, 0.9, nan}, Fractions{0.2, 0.3, infinity}}) {
        const BandedStrip strip = bandedStrip(unit, fractions, scale);
        ASSERT_EQ(strip.count, 3U);
        for (const StripVertex &vertex : strip.vertices())
            EXPECT_EQ(vertex.colour, blue);
        double x = 0.0, y = 0.0;
        for (const StripVertex &vertex : strip.vertices()) {
            x += vertex.position.x;
            y += vertex.position.y;
        }
        EXPECT_EQ(x, 1.0); // each corner once
        EXPECT_EQ(y, 1.0);
    }
}

double signedArea(const Vector3 &a, const Vector3 &b, const Vector3 &c)
{
    return ((b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x)) / 2.0;
}

TEST(BandedStrip, trianglesKeepTheSideOfTheFaceAndFillIt)
{
    std::mt19937 random(7);
    std::uniform_real_distribution<double> any(-5.0, 5.0), fraction(-0.1, 1.0);
    for (int round = 0; round < 2000; ++round) {
        const Corners corners{
            {{any(random), any(random), 0}, {any(random), any(random), 0}, {any(random), any(random), 0}}};
        Fractions fractions{fraction(random), fraction(random), fraction(random)};
        if (round % 3 == 0)
            fractions[random() % 3] = fractions[random() % 3];
        if (round % 4 == 0)
            fractions[random() % 3] = scale.breaks[random() % scale.breaks.size()];
        const BandedStrip strip = bandedStrip(corners, fractions, scale);
        const double whole = signedArea(corners[0], corners[1], corners[2]);
        double sum = 0.0;
        for (std::size_t i = 0; i + 2 < strip.count; ++i) {
            const auto at = [&](std::size_t k) { return strip.vertices()[i + k].position; };
            const bool isTurned = (i % 2 == 1) != strip.isReversed;
            const double part = (isTurned ? -1.0 : 1.0) * signedArea(at(0), at(1), at(2));
            EXPECT_GE(part * (whole < 0 ? -1.0 : 1.0), -1e-12);
            sum += part;
        }
        EXPECT_NEAR(sum, whole, 1e-9);
    }
}

} // namespace
