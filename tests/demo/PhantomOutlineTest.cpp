#include "demo/PhantomOutline.h"

#include "demo/PhantomTruth.h"

#include <cmath>
#include <gtest/gtest.h>
#include <vector>

using demo::cartilageOutline;
using demo::PhantomBody;
using demo::PhantomParameters;
using demo::Point;
using demo::SliceOutline;

namespace {

double length(const std::vector<Point> &line)
{
    double sum = 0.0;
    for (std::size_t i = 1; i < line.size(); ++i)
        sum += std::hypot(line[i][0] - line[i - 1][0], line[i][1] - line[i - 1][1]);
    return sum;
}

// Whether small steps from the point meet both cartilage and something else.
bool isOnBorder(const PhantomBody &body, const Point &point, double step)
{
    bool inside = false, outside = false;
    for (int i = 0; i < 64; ++i) {
        const double angle = 0.1 * i;
        const bool cartilage = body.isCartilage(
            {point[0] + step * std::cos(angle), point[1] + step * std::sin(angle), point[2]});
        inside = inside || cartilage;
        outside = outside || !cartilage;
    }
    return inside && outside;
}

class PhantomOutlines : public ::testing::TestWithParam<bool>
{
protected:
    PhantomOutlines() { parameters.mirrored = GetParam(); }

    template <class Use>
    void forEachOutline(Use &&use)
    {
        const PhantomBody body(parameters);
        int seen = 0;
        for (int slice = 0; slice < parameters.slices; ++slice) {
            const double z = demo::slicePlaneMm(parameters, slice);
            const SliceOutline outline = cartilageOutline(body, z, 300);
            if (outline.empty())
                continue;
            SCOPED_TRACE(slice);
            ++seen;
            use(body, outline, z);
        }
        EXPECT_GT(seen, 15);
    }

    PhantomParameters parameters;
};

} // namespace

TEST_P(PhantomOutlines, pointsLieInThePlaneOnTheBorderOfTheCartilage)
{
    forEachOutline([&](const PhantomBody &body, const SliceOutline &outline, double z) {
        for (const auto *line : {&outline.boneSide, &outline.surfaceSide})
            for (const Point &point : *line) {
                EXPECT_EQ(point[2], z);
                EXPECT_TRUE(isOnBorder(body, point, 1e-4)) << point[0] << ' ' << point[1];
            }
    });
}

TEST_P(PhantomOutlines, boneSideTouchesBoneAndSurfaceSideDoesNot)
{
    forEachOutline([&](const PhantomBody &body, const SliceOutline &outline, double) {
        for (const Point &point : outline.boneSide) {
            const auto foot = body.footBehind({point[0], point[1] + 1e-4, point[2]}); // y runs to the back
            ASSERT_TRUE(foot);
            EXPECT_LT(foot->distanceMm, 1.1e-4);
        }
        for (std::size_t i = 30; i + 30 < outline.surfaceSide.size() && !outline.boneSide.empty(); ++i) {
            const auto foot = body.footBehind(outline.surfaceSide[i]);
            ASSERT_TRUE(foot);
            EXPECT_NEAR(foot->distanceMm, body.thicknessMm(foot->place), 1e-7);
        }
    });
}

TEST_P(PhantomOutlines, bothLinesJoinAtTheirEndsAndRunInOrder)
{
    forEachOutline([&](const PhantomBody &, const SliceOutline &outline, double) {
        if (!outline.boneSide.empty()) {
            EXPECT_EQ(outline.boneSide.front(), outline.surfaceSide.front());
            EXPECT_EQ(outline.boneSide.back(), outline.surfaceSide.back());
        } else {
            for (int i = 0; i < 2; ++i)
                EXPECT_NEAR(outline.surfaceSide.front()[static_cast<std::size_t>(i)],
                            outline.surfaceSide.back()[static_cast<std::size_t>(i)], 1e-6);
        }
        for (const auto *line : {&outline.boneSide, &outline.surfaceSide})
            for (std::size_t i = 1; i < line->size(); ++i) {
                const Point &p = (*line)[i - 1], &q = (*line)[i];
                EXPECT_LT(std::hypot(q[0] - p[0], q[1] - p[1]), 0.02 * length(*line) + 0.1);
            }
        // Across the pictures the bone side runs one way only.
        for (std::size_t i = 1; i < outline.boneSide.size(); ++i)
            EXPECT_EQ(outline.boneSide[i][0] < outline.boneSide[i - 1][0], parameters.mirrored);
    });
}

INSTANTIATE_TEST_SUITE_P(BothSides, PhantomOutlines, ::testing::Bool());

TEST(PhantomOutline, emptyBeyondTheCartilage)
{
    const PhantomBody body{PhantomParameters()};
    for (double z : {-5.0, 0.75, 35.25, 100.0}) {
        const SliceOutline outline = cartilageOutline(body, z, 100);
        EXPECT_TRUE(outline.empty());
        EXPECT_TRUE(outline.boneSide.empty());
        EXPECT_EQ(demo::enclosedArea(outline), 0.0);
    }
}

// The rim's side reaches beyond the bone under it: such a plane has a closed surface line alone.
TEST(PhantomOutline, planesBeyondTheBoneHaveOneClosedLine)
{
    const PhantomBody body{PhantomParameters()};
    int found = 0;
    for (int i = 20; i < 700; ++i) {
        const SliceOutline outline = cartilageOutline(body, 0.05 * i, 200);
        if (outline.empty() || !outline.boneSide.empty())
            continue;
        ++found;
        EXPECT_GT(demo::enclosedArea(outline), 0.0);
        for (const Point &point : outline.surfaceSide)
            EXPECT_TRUE(isOnBorder(body, point, 1e-3));
    }
    EXPECT_GT(found, 5);
}

TEST(PhantomOutline, areaOfASquare)
{
    const SliceOutline square{{{0, 0, 1}, {2, 0, 1}}, {{0, 0, 1}, {0, 2, 1}, {2, 2, 1}, {2, 0, 1}}};
    EXPECT_DOUBLE_EQ(demo::enclosedArea(square), 4.0);
}

// A sphere with cartilage of equal thickness all over one half: a plane through its centre, seen from above,
// has half a ring between radius 10 and 12 but for what is not covered. Without tilt and with coverage c the
// ring spans the angle 2 asin(c).
TEST(PhantomOutline, sphereWithEqualThicknessGivesASectorOfARing)
{
    PhantomParameters p;
    p.halfWidthMm = p.halfHeightMm = p.frontDepthMm = p.backDepthMm = 10.0;
    p.tiltDegrees = {0, 0, 0};
    p.ridgeThicknessMm = p.rimThicknessMm = 2.0;
    const PhantomBody body(p);
    const SliceOutline outline = cartilageOutline(body, body.centre()[2], 4000);
    const double expected = std::asin(0.86) * (12.0 * 12.0 - 10.0 * 10.0); // angle / 2 * (R^2 - r^2)
    EXPECT_NEAR(demo::enclosedArea(outline), expected, 1e-4);
}
