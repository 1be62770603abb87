#include "view/interaction/GuessPath.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

void expectPath(const QList<Vector3> &path, const std::vector<Vector3> &expected)
{
    ASSERT_EQ(path.size(), static_cast<qsizetype>(expected.size()));
    for (qsizetype i = 0; i < path.size(); ++i) {
        EXPECT_DOUBLE_EQ(path[i].x, expected[static_cast<std::size_t>(i)].x) << i;
        EXPECT_DOUBLE_EQ(path[i].y, expected[static_cast<std::size_t>(i)].y) << i;
        EXPECT_DOUBLE_EQ(path[i].z, expected[static_cast<std::size_t>(i)].z) << i;
    }
}

} // namespace

TEST(GuessPath, withoutGuide_isStraight)
{
    expectPath(guessPath({1, 2, 5}, {19, 4, 5}, {}), {{1, 2, 5}, {19, 4, 5}});
}

TEST(GuessPath, guide_isBentAtBothEnds)
{
    const std::vector<QPointF> guide{{0, 0}, {10, 0}, {20, 0}};
    // Nearest points 0 and 2; bends (1, 2) and (-1, 4); half way both count a quarter:
    // 10 + 0.25 - 0.25, 0 + 0.5 + 1.
    expectPath(guessPath({1, 2, 5}, {19, 4, 5}, guide),
               {{1, 2, 5}, {1, 2, 5}, {10, 1.5, 5}, {19, 4, 5}, {19, 4, 5}});
}

TEST(GuessPath, guide_isWalkedBackwardsWhereTheEndLiesBefore)
{
    const std::vector<QPointF> guide{{0, 0}, {4, 0}, {20, 0}};
    // From point 2 to point 0, w at point 1 = 16 / 20 = 0.8: bends (0, 1) and (0, -1) count 0.04 and 0.64.
    expectPath(guessPath({20, 1, 5}, {0, -1, 5}, guide),
               {{20, 1, 5}, {20, 1, 5}, {4, 0.04 - 0.64, 5}, {0, -1, 5}, {0, -1, 5}});
}

TEST(GuessPath, bothEndsNearOneVertex_isStraightAndFinite)
{
    const std::vector<QPointF> guide{{0, 0}, {10, 0}};
    expectPath(guessPath({1, 1, 5}, {2, -1, 5}, guide), {{1, 1, 5}, {1, 1, 5}, {2, -1, 5}});
}

TEST(GuessPath, guideOfAnotherSlice_isTakenToTheZOfTheStart)
{
    const std::vector<QPointF> guide{{0, 0}, {10, 0}};
    const QList<Vector3> path = guessPath({0, 0, 7}, {10, 0, 8}, guide);
    EXPECT_EQ(path[1].z, 7.0);
    EXPECT_EQ(path[2].z, 7.0);
    EXPECT_EQ(path[3].z, 8.0);
}

TEST(GuessPath, equallyNearVertices_takeTheFirst)
{
    const std::vector<QPointF> guide{{-1, 0}, {1, 0}, {9, 0}};
    // (0, 0) is as near to point 0 as to point 1: the path begins at point 0.
    EXPECT_EQ(guessPath({0, 0, 0}, {9, 0, 0}, guide).size(), 5);
}
