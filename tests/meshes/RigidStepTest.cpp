#include "meshes/RigidStep.h"

#include "meshes/DistinctPoints.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

namespace {

using testing::ElementsAre;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

// The step for these pairs, with the mean of the free points summed here.
std::optional<RigidStep> stepFor(const std::vector<Vector3> &freePoints,
                                 const std::vector<Vector3> &basePoints)
{
    PairSums sums;
    Vector3 mean;
    const auto count = static_cast<double>(freePoints.size());
    for (std::size_t i = 0; i < freePoints.size(); ++i) {
        sums.add(freePoints[i], basePoints[i]);
        mean = {mean.x + freePoints[i].x, mean.y + freePoints[i].y, mean.z + freePoints[i].z};
    }
    return rigidStep(sums, {mean.x / count, mean.y / count, mean.z / count});
}

// A quarter turn about z and (10, 20, 30): (x, y, z) goes to (10 - y, 20 + x, 30 + z).
TEST(RigidStep, findsAQuarterTurnAndATranslation)
{
    const auto step = stepFor({{1, 0, 0}, {0, 2, 0}, {0, 0, 3}, {-1, -1, -1}},
                              {{10, 21, 30}, {8, 20, 30}, {10, 20, 33}, {11, 19, 29}});
    ASSERT_TRUE(step);
    const double expected[4][4] = {{0, -1, 0, 10}, {1, 0, 0, 20}, {0, 0, 1, 30}, {0, 0, 0, 1}};
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 4; ++j)
            EXPECT_NEAR(step->matrix.m[i][j], expected[i][j], 1e-13);
    // Half of 90 degrees about z: (cos 45, 0, 0, sin 45), of either sign.
    EXPECT_NEAR(std::abs(step->quaternion[0]), std::sqrt(0.5), 1e-14);
    EXPECT_NEAR(step->quaternion[3], step->quaternion[0], 1e-14);
    EXPECT_NEAR(step->quaternion[1], 0.0, 1e-14);
    EXPECT_NEAR(step->quaternion[2], 0.0, 1e-14);
}

// A rotation given by its axis and angle (Rodrigues), which the closed form must find again.
TEST(RigidStep, findsAnyRotationAndTranslation)
{
    std::mt19937 random(3);
    std::uniform_real_distribution<double> coordinate(-50.0, 50.0), angle(-3.1, 3.1);
    for (int round = 0; round < 200; ++round) {
        Vector3 axis{coordinate(random), coordinate(random), coordinate(random)};
        const double length = std::sqrt(axis.x * axis.x + axis.y * axis.y + axis.z * axis.z);
        axis = {axis.x / length, axis.y / length, axis.z / length};
        const double turn = angle(random), c = std::cos(turn), s = std::sin(turn);
        const Vector3 shift{coordinate(random), coordinate(random), coordinate(random)};
        std::vector<Vector3> from, to;
        for (int i = 0; i < 10; ++i) {
            const Vector3 p{coordinate(random), coordinate(random), coordinate(random)};
            const double along = (axis.x * p.x + axis.y * p.y + axis.z * p.z) * (1.0 - c);
            from.push_back(p);
            to.push_back({p.x * c + (axis.y * p.z - axis.z * p.y) * s + axis.x * along + shift.x,
                          p.y * c + (axis.z * p.x - axis.x * p.z) * s + axis.y * along + shift.y,
                          p.z * c + (axis.x * p.y - axis.y * p.x) * s + axis.z * along + shift.z});
        }
        const auto step = stepFor(from, to);
        ASSERT_TRUE(step);
        for (std::size_t i = 0; i < from.size(); ++i) {
            const Vector3 found = moved(step->matrix, from[i]);
            EXPECT_NEAR(found.x, to[i].x, 1e-10);
            EXPECT_NEAR(found.y, to[i].y, 1e-10);
            EXPECT_NEAR(found.z, to[i].z, 1e-10);
        }
    }
}

// Points on a mirror image: the best rotation, never a reflection.
TEST(RigidStep, neverMirrors)
{
    const std::vector<Vector3> from{{1, 0, 0}, {0, 2, 0}, {0, 0, 3}, {-1, -2, -3}};
    std::vector<Vector3> to = from;
    for (Vector3 &point : to)
        point.x = -point.x;
    const auto step = stepFor(from, to);
    ASSERT_TRUE(step);
    const auto &m = step->matrix.m;
    const double determinant = m[0][0] * (m[1][1] * m[2][2] - m[1][2] * m[2][1]) -
                               m[0][1] * (m[1][0] * m[2][2] - m[1][2] * m[2][0]) +
                               m[0][2] * (m[1][0] * m[2][1] - m[1][1] * m[2][0]);
    EXPECT_NEAR(determinant, 1.0, 1e-12);
}

// All eigenvalues are 0: the first column of the identity, hence no rotation.
TEST(RigidStep, ofASinglePointIsATranslation)
{
    const auto step = stepFor({{1, 2, 3}}, {{5, 5, 5}});
    ASSERT_TRUE(step);
    EXPECT_THAT(step->quaternion, ElementsAre(1.0, 0.0, 0.0, 0.0));
    EXPECT_EQ(step->translation.x, 4.0);
    EXPECT_EQ(step->translation.y, 3.0);
    EXPECT_EQ(step->translation.z, 2.0);
}

// Two points on the x axis and 5 mm beside it: m = 0, y = (0, 5, 0), S = diag(1, 0, 0), Q = diag(1, 1, -1,
// -1). By rising eigenvalue the vectors are the units of q2, q3, q0, q1, as equal values keep their order.
// The first of the two best is that of q0, no rotation; that of q1 would be half a turn about the line.
TEST(RigidStep, takesTheFirstOfEqualEigenvalues)
{
    const auto step = stepFor({{-1, 0, 0}, {1, 0, 0}}, {{-1, 5, 0}, {1, 5, 0}});
    ASSERT_TRUE(step);
    EXPECT_THAT(step->quaternion, ElementsAre(1.0, 0.0, 0.0, 0.0));
    EXPECT_EQ(step->translation.x, 0.0);
    EXPECT_EQ(step->translation.y, 5.0);
    EXPECT_EQ(step->translation.z, 0.0);
}

TEST(RigidStep, isAbsentWithoutPairsAndForSumsThatAreNotFinite)
{
    EXPECT_FALSE(rigidStep(PairSums(), {0, 0, 0}));
    EXPECT_TRUE(std::isnan(PairSums().rms()));
    EXPECT_FALSE(stepFor({{nan, 0, 0}, {1, 0, 0}}, {{0, 0, 0}, {1, 0, 0}}));
    EXPECT_FALSE(stepFor({{0, 0, 0}, {1, 0, 0}}, {{0, 0, nan}, {1, 0, 0}}));
    EXPECT_FALSE(stepFor({{1e200, 0, 0}, {0, 1e200, 0}}, {{1e200, 0, 0}, {0, 1e200, 0}})); // overflows
}

// The decomposition ends at any size of numbers, and a change of the unit does not change the rotation.
TEST(RigidStep, copesWithNumbersOfExtremeSize)
{
    const std::vector<Vector3> from{{1, 0, 0}, {0, 2, 0}, {0, 0, 3}, {-1, -1, -1}};
    const std::vector<Vector3> to{{0, 1, 0}, {-2, 0, 0}, {0, 0, 3}, {1, -1, -1}}; // a quarter turn
    const auto scaled = [](std::vector<Vector3> points, double factor) {
        for (Vector3 &point : points)
            point = {point.x * factor, point.y * factor, point.z * factor};
        return points;
    };
    for (const int exponent : {-500, -200, 0, 200, 500}) {
        const double factor = std::ldexp(1.0, exponent);
        const auto step = stepFor(scaled(from, factor), scaled(to, factor));
        ASSERT_TRUE(step);
        EXPECT_NEAR(step->matrix.m[1][0], 1.0, 1e-12) << exponent;
        EXPECT_NEAR(step->matrix.m[0][1], -1.0, 1e-12) << exponent;
    }
    for (const int exponent :
         {-1070, -540, -537, -530, 510, 511, 512}) { // products at the limits: any answer
        const double factor = std::ldexp(1.0, exponent);
        const auto step = stepFor(scaled(from, factor), scaled(to, factor));
        EXPECT_TRUE(!step || std::isfinite(step->quaternion[0])) << exponent;
    }
}

// (3, 4, 0) and (0, 0, 12) apart: squares 25 and 144, rms sqrt(169 / 2).
TEST(PairSums, giveTheRootOfTheMeanSquare)
{
    PairSums sums;
    sums.add({1, 1, 1}, {4, 5, 1});
    sums.add({0, 0, 0}, {0, 0, 12});
    EXPECT_EQ(sums.pairs(), 2);
    EXPECT_EQ(sums.rms(), std::sqrt(84.5));
    EXPECT_EQ(sums.baseMean().x, 2.0);
    EXPECT_EQ(sums.baseMean().y, 2.5);
    EXPECT_EQ(sums.baseMean().z, 6.5);
}

TEST(DistinctPoints, areListedOnceAndKnownByTheirPlace)
{
    const std::vector<Vector3> list{{1, 2, 3}, {3, 2, 1}, {1, 2, 3}, {0, 0, 0}, {3, 2, 1}, {1, 2, 3}};
    const DistinctPoints points(list);
    ASSERT_EQ(points.points().size(), 3u);
    EXPECT_EQ(points.points()[2].x, 0.0);
    EXPECT_THAT(points.order(), ElementsAre(0u, 1u, 0u, 2u, 1u, 0u));
    EXPECT_TRUE(DistinctPoints(std::vector<Vector3>()).points().empty());
}

TEST(DistinctPoints, differByTheirBits)
{
    const std::vector<Vector3> list{{0.0, 0, 0}, {-0.0, 0, 0}, {nan, 0, 0}, {nan, 0, 0}};
    EXPECT_THAT(DistinctPoints(list).order(), ElementsAre(0u, 1u, 2u, 2u));
}

TEST(DistinctPoints, matchAPlainSearchOnRandomLists)
{
    std::mt19937 random(5);
    std::vector<Vector3> list;
    list.reserve(3000);
    for (int i = 0; i < 3000; ++i)
        list.push_back({static_cast<double>(random() % 8), static_cast<double>(random() % 8),
                        static_cast<double>(random() % 8)});
    const DistinctPoints points(list);
    std::vector<Vector3> seen;
    for (std::size_t i = 0; i < list.size(); ++i) {
        const auto same = [&](const Vector3 &p) {
            return p.x == list[i].x && p.y == list[i].y && p.z == list[i].z;
        };
        auto place = std::find_if(seen.begin(), seen.end(), same);
        if (place == seen.end())
            place = seen.insert(seen.end(), list[i]);
        ASSERT_EQ(points.order()[i], static_cast<std::size_t>(place - seen.begin()));
    }
    EXPECT_EQ(points.points().size(), seen.size());
}

} // namespace
