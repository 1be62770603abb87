#include "demo/pilot/TracePath.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

const Polyline straight{{0, 0}, {10, 0}};

TEST(TracePath, lengthAndAreaOfARectangle)
{
    const Polyline below{{0, 0}, {4, 0}}, above{{0, 3}, {1, 3}, {4, 3}};
    EXPECT_DOUBLE_EQ(lengthOf(above), 4.0);
    EXPECT_DOUBLE_EQ(enclosedArea(below, above), 12.0);
    EXPECT_DOUBLE_EQ(enclosedArea(above, below), 12.0);
}

TEST(TracePath, staysOneToTwoUnitsBesideTheLine)
{
    for (const int side : {1, -1}) {
        const Polyline path = unsteadyPath(straight, side, 0.5, 0.1, 7);
        ASSERT_EQ(path.size(), 101u);
        bool wanders = false;
        for (std::size_t i = 0; i < path.size(); ++i) {
            EXPECT_NEAR(path[i].x(), 0.1 * double(i), 1e-9);
            // Left of a walk along x is the side of positive y.
            EXPECT_GE(path[i].y() * side, 0.5 - 1e-9);
            EXPECT_LE(path[i].y() * side, 1.0 + 1e-9);
            wanders = wanders || std::abs(path[i].y() - path[0].y()) > 0.01;
        }
        EXPECT_TRUE(wanders);
    }
}

TEST(TracePath, followsItsSeed)
{
    EXPECT_EQ(unsteadyPath(straight, 1, 0.5, 0.1, 7), unsteadyPath(straight, 1, 0.5, 0.1, 7));
    EXPECT_NE(unsteadyPath(straight, 1, 0.5, 0.1, 7), unsteadyPath(straight, 1, 0.5, 0.1, 8));
}

TEST(TracePath, turnsWithTheLine)
{
    const Polyline corner{{0, 0}, {5, 0}, {5, 5}};
    const Polyline path = unsteadyPath(corner, -1, 1.0, 1.0, 3);
    // Right of the first leg is below it, right of the second leg is beyond it.
    EXPECT_LT(path[2].y(), -0.99);
    EXPECT_GT(path[8].x(), 5.99);
}

TEST(TracePath, leadsOnWithoutTheStepsBackwards)
{
    // Walking along y: the places on the way are -1, 0.5, -0.2, 0.7 and 3.
    const Polyline path{{5, 9}, {6, 10.5}, {7, 9.8}, {8, 10.7}, {5, 13}};
    EXPECT_EQ(leadingOn(path, {5, 10}, {5, 20}, 0.5).size(), 4u);
    EXPECT_EQ(leadingOn(path, {5, 10}, {5, 20}, 1.0), path);
    EXPECT_EQ(leadingOn(path, {5, 10}, {5, 20}, -0.6), (Polyline{{8, 10.7}, {5, 13}}));
    EXPECT_TRUE(leadingOn(path, {5, 10}, {5, 20}, -4.0).empty());
}

} // namespace
