#include "view/painting/Overlays.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace {

Point3 normalOf(const CubeQuad &quad)
{
    Point3 a{}, b{};
    for (std::size_t i = 0; i < 3; ++i) {
        a[i] = quad.corners[1][i] - quad.corners[0][i];
        b[i] = quad.corners[2][i] - quad.corners[0][i];
    }
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

double dot(const Point3 &a, const Point3 &b)
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

} // namespace

TEST(EdgeMark, kiteAndLine_pointAlongTheGradient)
{
    EdgePoint point(10.0f, 20.0f, 5.0f, 1.0f);
    point.gx = 0.5f;
    point.gy = 0.25f;
    // Granularity 2: u = 1, v = 0.5, w = 0.
    const EdgeMark mark = edgeMark(point, 2.0f);
    const std::array<Point3, 4> kite{
        {{12.0, 21.0, 5.0}, {9.75, 20.5, 5.0}, {9.5, 19.75, 5.0}, {10.25, 19.5, 5.0}}};
    EXPECT_EQ(mark.kite, kite);
    EXPECT_EQ(mark.lineStart, (Point3{10.0, 20.0, 5.0}));
    EXPECT_EQ(mark.lineEnd, (Point3{12.0, 21.0, 5.0}));
    EXPECT_FALSE(mark.excluded);
}

TEST(EdgeMark, gradientInZ_liftsTheKite)
{
    EdgePoint point(0.0f, 0.0f, 1.0f, 1.0f);
    point.gz = 0.5f;
    point.excluded = true;
    const EdgeMark mark = edgeMark(point, 4.0f);
    for (const Point3 &corner : mark.kite)
        EXPECT_EQ(corner, (Point3{0.0, 0.0, 3.0}));
    EXPECT_TRUE(mark.excluded);
}

TEST(Cube, sides_coverTheBoxAndAreWoundClockwiseFromOutside)
{
    std::set<Point3> centres;
    for (const CubeQuad &quad : cubeSides()) {
        Point3 centre{};
        for (const Point3 &corner : quad.corners)
            for (std::size_t i = 0; i < 3; ++i) {
                EXPECT_EQ(std::abs(corner[i]), 1.0);
                centre[i] += corner[i] / 4.0;
            }
        centres.insert(centre);
        EXPECT_LT(dot(normalOf(quad), centre), 0.0);
    }
    EXPECT_EQ(centres.size(), 6u);
}

TEST(Cube, arrow_showsItsOutlineOnly)
{
    // The outline in order; each drawn edge is one of its sides.
    const std::array<Point3, 7> outline{{{0.8, 0.0, 1.0},
                                         {0.2, -0.4, 1.0},
                                         {0.2, -0.2, 1.0},
                                         {-0.8, -0.2, 1.0},
                                         {-0.8, 0.2, 1.0},
                                         {0.2, 0.2, 1.0},
                                         {0.2, 0.4, 1.0}}};
    std::set<std::set<Point3>> expected;
    for (std::size_t i = 0; i < outline.size(); ++i)
        expected.insert({outline[i], outline[(i + 1) % outline.size()]});
    std::set<std::set<Point3>> drawn;
    for (const CubeQuad &quad : cubeArrow()) {
        EXPECT_LT(normalOf(quad)[2], 0.0); // wound like the side z = 1
        for (std::size_t i = 0; i < 4; ++i)
            if (quad.drawnEdges[i])
                drawn.insert({quad.corners[i], quad.corners[(i + 1) % 4]});
    }
    EXPECT_EQ(drawn, expected);
}
