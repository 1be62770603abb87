#include "contours/EdgePoint.h"
#include "contours/EdgePointSelection.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace {

EdgePoint withGradient(float gx, float gy)
{
    EdgePoint point;
    point.gx = gx;
    point.gy = gy;
    return point;
}

constexpr float pi = std::numbers::pi_v<float>;

} // namespace

TEST(EdgePoint, shortConstructorLeavesNothingUnset)
{
    const EdgePoint point(1.0f, 2.0f, 3.0f, 0.5f);
    EXPECT_EQ(point.x, 1.0f);
    EXPECT_EQ(point.y, 2.0f);
    EXPECT_EQ(point.z, 3.0f);
    EXPECT_EQ(point.strength, 0.5f);
    for (const float unset : {point.xS, point.yS, point.zS, point.gx, point.gy, point.gz})
        EXPECT_EQ(unset, 0.0f);
    EXPECT_FALSE(point.excluded);
}

TEST(EdgePoint, tIsNegativeForAShiftAlongTheGradient)
{
    EdgePoint point = withGradient(1.0f, 0.0f);
    point.xS = 0.3f;
    point.yS = 0.4f;
    EXPECT_FLOAT_EQ(point.t(), -0.5f);
    point.gx = -1.0f;
    EXPECT_FLOAT_EQ(point.t(), 0.5f);
    point.gx = 0.0f; // no gradient: positive
    EXPECT_FLOAT_EQ(point.t(), 0.5f);
}

// The intensity rises against (gx, gy): theta is the angle of (-gx, -gy), in -pi .. pi.
TEST(EdgePoint, thetaPointsToRisingIntensity)
{
    EXPECT_FLOAT_EQ(withGradient(-1, 0).theta(), 0.0f);
    EXPECT_FLOAT_EQ(withGradient(-1, -1).theta(), pi / 4);
    EXPECT_FLOAT_EQ(withGradient(0, -1).theta(), pi / 2);
    EXPECT_FLOAT_EQ(withGradient(1, -1).theta(), 3 * pi / 4);
    EXPECT_FLOAT_EQ(withGradient(1, 0).theta(), -pi);
    EXPECT_FLOAT_EQ(withGradient(1, 1).theta(), -3 * pi / 4);
    EXPECT_FLOAT_EQ(withGradient(0, 1).theta(), -pi / 2);
    EXPECT_FLOAT_EQ(withGradient(-1, 1).theta(), -pi / 4);
    EXPECT_EQ(withGradient(0, 0).theta(), 0.0f);
    for (int i = 0; i < 720; ++i) {
        const double angle = i * std::numbers::pi / 360.0 - std::numbers::pi + 0.001;
        const EdgePoint point =
            withGradient(static_cast<float>(-std::cos(angle)), static_cast<float>(-std::sin(angle)));
        EXPECT_NEAR(point.theta(), angle, 1e-6);
    }
}

TEST(EdgePoint, alphaIsTheSlopeOfTheGradient)
{
    EXPECT_EQ(withGradient(0, 0).alpha(), 0.0f);
    EXPECT_FLOAT_EQ(withGradient(1, 1).alpha(), pi / 4);
    EXPECT_FLOAT_EQ(withGradient(-1, -1).alpha(), pi / 4);
    EXPECT_FLOAT_EQ(withGradient(-2, 2).alpha(), -pi / 4);
    EXPECT_FLOAT_EQ(withGradient(0, 1).alpha(), pi / 2);
}

// Scores: at distance 1 with strength 0.2: 0.5 + 0.1 = 0.6; at distance 2 with strength 0.8: 0.25 + 0.4 =
// 0.65.
TEST(BestEdgePoint, nearAndStrongPointsCompete)
{
    EdgePoint near(1.0f, 0.0f, 0.0f, 0.2f);
    EdgePoint strong(0.0f, 2.0f, 50.0f, 0.8f); // z plays no part
    EXPECT_EQ(bestEdgePoint({&near, &strong}, 0.0, 0.0, 0.0).y, 2.0f);
    strong.strength = 0.6f; // 0.55
    EXPECT_EQ(bestEdgePoint({&near, &strong}, 0.0, 0.0, 0.0).x, 1.0f);
}

TEST(BestEdgePoint, firstWinsOnTies)
{
    EdgePoint left(-1.0f, 0.0f, 0.0f, 0.5f);
    EdgePoint right(1.0f, 0.0f, 0.0f, 0.5f);
    EXPECT_EQ(bestEdgePoint({&left, &right}, 0.0, 0.0, 0.0).x, -1.0f);
    EXPECT_EQ(bestEdgePoint({&right, &left}, 0.0, 0.0, 0.0).x, 1.0f);
}

TEST(BestEdgePoint, excludedPointsNeverWin)
{
    EdgePoint excluded(0.0f, 0.0f, 0.0f, 1.0f);
    excluded.excluded = true;
    EdgePoint other(1.0f, 0.0f, 0.0f, 0.2f);
    EXPECT_EQ(bestEdgePoint({&excluded, &other}, 0.0, 0.0, 0.0).x, 1.0f);
    const EdgePoint provisional = bestEdgePoint({&excluded}, 0.25, 0.5, 7.0);
    EXPECT_EQ(provisional.x, 0.25f);
    EXPECT_EQ(provisional.strength, 0.0f);
}

// 2^-3 = 0.125 is enough, 2^-3.5 = 0.088 is not.
TEST(BestEdgePoint, weakScoresGiveAProvisionalPoint)
{
    EdgePoint point(3.0f, 0.0f, 0.0f, 0.0f);
    EXPECT_EQ(bestEdgePoint({&point}, 0.0, 0.0, 1.0).x, 3.0f);
    point.x = 3.5f;
    const EdgePoint provisional = bestEdgePoint({&point}, 0.5, 0.25, 1.5); // distance 3.01: 0.124
    EXPECT_EQ(provisional.x, 3.5f);
    point.x = 4.5f;
    const EdgePoint far = bestEdgePoint({&point}, 0.5, 0.25, 1.5); // distance 4.01: 0.062
    EXPECT_EQ(far.x, 0.5f);
    EXPECT_EQ(far.y, 0.25f);
    EXPECT_EQ(far.z, 1.5f);
    EXPECT_EQ(far.strength, 0.0f);
    EXPECT_EQ(bestEdgePoint({}, 1.0, 2.0, 3.0).y, 2.0f);
}

TEST(NearestPoint, usesAllThreeCoordinatesAndTheFirstOnTies)
{
    const QList<Vector3> points{{3, 0, 0}, {0, 1, 2}, {0, 2, 1}, {0, 0, 2.5}};
    const Vector3 nearest = nearestPoint(points, {0, 0, 0}); // 3, sqrt 5, sqrt 5, 2.5
    EXPECT_EQ(nearest.y, 1.0);
    EXPECT_EQ(nearest.z, 2.0);
    const Vector3 none = nearestPoint({}, {1, 2, 3});
    EXPECT_EQ(none.x, 0.0);
    EXPECT_EQ(none.y, 0.0);
    EXPECT_EQ(none.z, 0.0);
}
