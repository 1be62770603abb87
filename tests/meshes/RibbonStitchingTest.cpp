#include "meshes/RibbonStitching.h"

#include "tests/support/PlainRibbons.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cfloat>
#include <cmath>
#include <limits>
#include <random>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Faces = std::vector<MERV::BRep::TriFace>;
using Corner = std::array<double, 4>;
using Corners = std::array<Corner, 3>;
using Line = std::vector<QPointF>;

constexpr float nan = std::numeric_limits<float>::quiet_NaN();
constexpr float infinity = std::numeric_limits<float>::infinity();

std::vector<Corners> cornersOf(const Faces &faces)
{
    std::vector<Corners> all;
    for (const auto &face : faces) {
        Corners corners{};
        for (int i = 0; i < 3; ++i)
            corners[static_cast<std::size_t>(i)] = {face.vertex(i).x, face.vertex(i).y, face.vertex(i).z,
                                                    face.vertex(i).w};
        all.push_back(corners);
    }
    return all;
}

std::vector<Corners> ribbon(const SegmentSnapshot &a, const SegmentSnapshot &b)
{
    Faces faces;
    stitchRibbon(a, b, faces);
    return cornersOf(faces);
}

Corners face(const Corner &p, const Corner &q, const Corner &r)
{
    return {p, q, r};
}

Corner at(double x, double y, double z)
{
    return {x, y, z, 1.0};
}

Line row(int count)
{
    Line line;
    for (int i = 0; i < count; ++i)
        line.emplace_back(i, 0.0);
    return line;
}

void fastRibbons(const std::vector<SegmentSnapshot> &lines, Faces &faces)
{
    std::vector<float> z;
    z.reserve(lines.size());
    for (const SegmentSnapshot &line : lines)
        z.push_back(line.z);
    const auto levels = firstOfEachLevel(z);
    for (std::size_t i = 1; i < levels.size(); ++i)
        stitchRibbon(lines[levels[i - 1]], lines[levels[i]], faces);
}

TEST(Levels, areTheFirstOfEachHeightByRisingHeight)
{
    EXPECT_THAT(firstOfEachLevel(std::vector{3.0f, 1.0f, 3.0f, 2.0f, 1.0f}), ElementsAre(1u, 3u, 0u));
    EXPECT_THAT(firstOfEachLevel({}), IsEmpty());
    EXPECT_THAT(firstOfEachLevel(std::vector{5.0f}), ElementsAre(0u));
}

TEST(Levels, compareExactly)
{
    const float almost = std::nextafter(1.0f, 2.0f);
    EXPECT_THAT(firstOfEachLevel(std::vector{almost, 1.0f}), ElementsAre(1u, 0u));
    EXPECT_THAT(firstOfEachLevel(std::vector{-0.0f, 0.0f}), ElementsAre(0u)); // equal floats
    EXPECT_THAT(firstOfEachLevel(std::vector{0.0f, -0.0f}), ElementsAre(0u));
}

TEST(Levels, leaveOutHeightsThatAreNotFinite)
{
    EXPECT_THAT(firstOfEachLevel(std::vector{nan, 1.0f, infinity, nan, 0.0f, -infinity, FLT_MAX}),
                ElementsAre(4u, 1u, 6u));
    EXPECT_THAT(firstOfEachLevel(std::vector{nan, nan}), IsEmpty());
}

// Both lines (0,0) (1,0) (2,0). (i,j) = (0,0): d1 = |a0 b1| = 1, d2 = |a1 b0| = 1: a tie, along b. (0,1):
// d1 = |a0 b2| = 2 > d2 = |a1 b1| = 0: along a. (1,1): d1 = |a1 b2| = 1, d2 = |a2 b1| = 1: a tie, along b.
// (1,2): b is at its end: along a. Four faces.
TEST(Ribbon, betweenEqualLinesAdvancesOnTheSecondAtATie)
{
    EXPECT_THAT(ribbon({row(3), 0.0f}, {row(3), 1.0f}),
                ElementsAre(face(at(0, 0, 1), at(1, 0, 1), at(0, 0, 0)), //
                            face(at(0, 0, 0), at(1, 0, 1), at(1, 0, 0)), //
                            face(at(1, 0, 1), at(2, 0, 1), at(1, 0, 0)), //
                            face(at(1, 0, 0), at(2, 0, 1), at(2, 0, 0))));
}

TEST(Ribbon, fansTheSecondLineToASinglePoint)
{
    EXPECT_THAT(ribbon({{{5.0, 7.0}}, 0.0f}, {row(4), 1.5f}),
                ElementsAre(face(at(0, 0, 1.5), at(1, 0, 1.5), at(5, 7, 0)),
                            face(at(1, 0, 1.5), at(2, 0, 1.5), at(5, 7, 0)),
                            face(at(2, 0, 1.5), at(3, 0, 1.5), at(5, 7, 0))));
}

TEST(Ribbon, fansTheFirstLineToASinglePoint)
{
    EXPECT_THAT(ribbon({row(4), 0.0f}, {{{5.0, 7.0}}, 1.5f}),
                ElementsAre(face(at(0, 0, 0), at(5, 7, 1.5), at(1, 0, 0)),
                            face(at(1, 0, 0), at(5, 7, 1.5), at(2, 0, 0)),
                            face(at(2, 0, 0), at(5, 7, 1.5), at(3, 0, 0))));
}

// a is short and lies at b's start, so that it is used up first: (0,0): d1 = |(0,0) (1,0)| = 1 > d2 =
// |(0.5,0) (0,0)| = 0.5: along a; the rest of b is fanned to a's last point.
TEST(Ribbon, fansWhatIsLeftOfTheSecondLineToTheLastPointOfTheFirst)
{
    EXPECT_THAT(ribbon({{{0.0, 0.0}, {0.5, 0.0}}, 0.0f}, {row(3), 1.0f}),
                ElementsAre(face(at(0, 0, 0), at(0, 0, 1), at(0.5, 0, 0)),
                            face(at(0, 0, 1), at(1, 0, 1), at(0.5, 0, 0)),
                            face(at(1, 0, 1), at(2, 0, 1), at(0.5, 0, 0))));
}

// The distance in z does not enter: the same walk at any height.
TEST(Ribbon, measuresInTheSliceOnly)
{
    const auto low = ribbon({{{0.0, 0.0}, {3.0, 1.0}, {4.0, 4.0}}, 0.0f}, {row(6), 0.25f});
    auto high = ribbon({{{0.0, 0.0}, {3.0, 1.0}, {4.0, 4.0}}, 0.0f}, {row(6), 1000.0f});
    for (Corners &corners : high)
        for (Corner &corner : corners)
            corner[2] /= 4000.0;
    EXPECT_EQ(low, high);
}

// Lines that run against each other are stitched from their first points, though that twists the ribbon:
// (0,0): d1 = |(0,0) (1,0)| = 1, d2 = |(1,0) (2,0)| = 1: a tie, along b; (0,1): d1 = |(0,0) (0,0)| = 0, d2
// = |(1,0) (1,0)| = 0: a tie, along b; then a is fanned to b's last point (0,0).
TEST(Ribbon, keepsTheDirectionOfOppositeLines)
{
    EXPECT_THAT(ribbon({row(3), 0.0f}, {{{2.0, 0.0}, {1.0, 0.0}, {0.0, 0.0}}, 1.0f}),
                ElementsAre(face(at(2, 0, 1), at(1, 0, 1), at(0, 0, 0)),
                            face(at(1, 0, 1), at(0, 0, 1), at(0, 0, 0)),
                            face(at(0, 0, 0), at(0, 0, 1), at(1, 0, 0)),
                            face(at(1, 0, 0), at(0, 0, 1), at(2, 0, 0))));
}

TEST(Ribbon, needsPointsOnBothSidesAndMoreThanOneInAll)
{
    EXPECT_THAT(ribbon({{}, 0.0f}, {row(4), 1.0f}), IsEmpty());
    EXPECT_THAT(ribbon({row(4), 0.0f}, {{}, 1.0f}), IsEmpty());
    EXPECT_THAT(ribbon({{}, 0.0f}, {{}, 1.0f}), IsEmpty());
    EXPECT_THAT(ribbon({row(1), 0.0f}, {row(1), 1.0f}), IsEmpty());
}

// Whatever the points are, the walk takes one step per point but the two last ones.
TEST(Ribbon, endsOnRepeatedCrossingAndNonFinitePoints)
{
    const double no = std::numeric_limits<double>::quiet_NaN();
    const double endless = std::numeric_limits<double>::infinity();
    const std::vector<Line> awkward{
        Line(5, {1.0, 1.0}),                                   // one point five times
        {{0.0, 0.0}, {4.0, 4.0}, {4.0, 0.0}, {0.0, 4.0}},      // crosses itself
        {{0.0, 0.0}, {3.0, 0.0}, {1.0, 0.0}, {2.0, 0.0}},      // back and forth on a line
        {{no, 0.0}, {0.0, no}, {no, no}},                      // no numbers
        {{endless, 0.0}, {-endless, endless}, {1e308, -1e308}} // too large
    };
    for (const Line &a : awkward)
        for (const Line &b : awkward)
            EXPECT_EQ(ribbon({a, 0.0f}, {b, 1.0f}).size(), a.size() + b.size() - 2);
}

TEST(Ribbons, equalTheScanOfAllLinesForEachLevel)
{
    std::mt19937 random(7);
    const auto upTo = [&random](int limit) {
        return static_cast<int>(random() % static_cast<unsigned>(limit));
    };
    int stitched = 0;
    for (int round = 0; round < 2000; ++round) {
        std::vector<SegmentSnapshot> lines(static_cast<std::size_t>(upTo(12)));
        for (SegmentSnapshot &line : lines) {
            line.z = upTo(8) == 0 ? nan : static_cast<float>(upTo(6) - 2) * 0.75f;
            if (upTo(20) == 0)
                line.z = FLT_MAX;
            line.points.resize(static_cast<std::size_t>(upTo(9)));
            for (QPointF &point : line.points) // a coarse grid, so that there are many ties and repeats
                point = {upTo(4) * 0.5, upTo(4) * 0.5};
        }
        Faces plain, fast;
        plainRibbons(lines, [&plain](const auto &face) { plain.push_back(face); });
        fastRibbons(lines, fast);
        ASSERT_EQ(cornersOf(fast), cornersOf(plain)) << "round " << round;
        stitched += plain.empty() ? 0 : 1;
    }
    EXPECT_GT(stitched, 1000);
}

} // namespace
