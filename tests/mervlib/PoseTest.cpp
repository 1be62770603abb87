#include "Common/Pose.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <numbers>
#include <random>

using MERV::Matrix4;

namespace {

using Vector = std::array<double, 3>;
constexpr double halfPi = std::numbers::pi / 2;

// One rotation after the other, about x by a, y by b, z by c.
Vector turned(Vector p, double a, double b, double c)
{
    p = {p[0], std::cos(a) * p[1] - std::sin(a) * p[2], std::sin(a) * p[1] + std::cos(a) * p[2]};
    p = {std::cos(b) * p[0] + std::sin(b) * p[2], p[1], -std::sin(b) * p[0] + std::cos(b) * p[2]};
    return {std::cos(c) * p[0] - std::sin(c) * p[1], std::sin(c) * p[0] + std::cos(c) * p[1], p[2]};
}

class RandomPoses
{
public:
    std::array<float, 6> next()
    {
        return {float(place(engine)), float(place(engine)), float(place(engine)),
                float(angle(engine)), float(angle(engine)), float(angle(engine))};
    }

private:
    std::mt19937 engine{7};
    std::uniform_real_distribution<double> place{-100, 100};
    std::uniform_real_distribution<double> angle{-1.5, 1.5};
};

} // namespace

TEST(Pose, zeroPoseLeavesAPointInAllModes)
{
    const float pose[6]{};
    Matrix4 m;
    MERV::matrixFromPose(pose, m, false);
    for (int mode = -1; mode <= 3; ++mode) {
        float p[3]{1, -2, 3};
        MERV::rigidTransformPoint(p, pose, mode);
        MERV::rigidTransformPoint(p, m, mode);
        EXPECT_EQ(p[0], 1.0f);
        EXPECT_EQ(p[1], -2.0f);
        EXPECT_EQ(p[2], 3.0f);
    }
}

TEST(Pose, pureTranslationIsAddedInModesZeroAndOne)
{
    const float pose[6]{10, 20, 30, 0, 0, 0};
    for (int mode = 0; mode <= 2; ++mode) {
        float p[3]{1, 2, 3};
        MERV::rigidTransformPoint(p, pose, mode);
        EXPECT_EQ(p[0], mode < 2 ? 11.0f : 1.0f);
        EXPECT_EQ(p[1], mode < 2 ? 22.0f : 2.0f);
        EXPECT_EQ(p[2], mode < 2 ? 33.0f : 3.0f);
    }
}

TEST(Pose, modeOneTranslatesBeforeTheRotation)
{
    // A quarter turn about z takes x to y.
    const float pose[6]{10, 0, 0, 0, 0, static_cast<float>(halfPi)};
    float before[3]{1, 0, 0};
    MERV::rigidTransformPoint(before, pose, 1);
    EXPECT_NEAR(before[0], 0, 1e-5);
    EXPECT_NEAR(before[1], 11, 1e-5);
    float after[3]{1, 0, 0};
    MERV::rigidTransformPoint(after, pose, 0);
    EXPECT_NEAR(after[0], 10, 1e-5);
    EXPECT_NEAR(after[1], 1, 1e-5);
}

// A matrix knows no translation before the rotation: only mode 0 adds.
TEST(Pose, matrixTranslatesInModeZeroOnly)
{
    const double pose[6]{10, 20, 30, 0, 0, 0};
    Matrix4 m;
    MERV::matrixFromPose(pose, m, false);
    for (int mode = 0; mode <= 2; ++mode) {
        float p[3]{1, 2, 3};
        MERV::rigidTransformPoint(p, m, mode);
        EXPECT_EQ(p[0], mode == 0 ? 11.0f : 1.0f);
    }
}

TEST(Pose, rotationIsAboutXThenYThenZ)
{
    RandomPoses poses;
    for (int i = 0; i < 1000; ++i) {
        const auto pose = poses.next();
        const auto other = poses.next();
        float direct[3]{other[0], other[1], other[2]};
        float byMatrix[3]{other[0], other[1], other[2]};
        const Vector expected = turned({other[0], other[1], other[2]}, pose[3], pose[4], pose[5]);
        MERV::rigidTransformPoint(direct, pose.data(), 2);
        Matrix4 m;
        MERV::matrixFromPose(pose.data(), m, false);
        MERV::rigidTransformPoint(byMatrix, m, 0);
        for (std::size_t k = 0; k < 3; ++k) {
            EXPECT_NEAR(direct[k], expected[k], 1e-4);
            EXPECT_NEAR(byMatrix[k], expected[k] + pose[k], 1e-4);
        }
    }
}

TEST(Pose, matrixHoldsGroupsOfTheRotationAndTheTranslationLast)
{
    const double pose[6]{1, 2, 3, 0.3, -0.4, 0.5};
    Matrix4 m;
    m.m[0][3] = m.m[1][3] = 9;
    MERV::matrixFromPose(pose, m, false);
    // Group k is where the k-th axis goes.
    for (int k = 0; k < 3; ++k) {
        Vector unit{};
        unit[static_cast<std::size_t>(k)] = 1;
        const Vector image = turned(unit, 0.3, -0.4, 0.5);
        for (int j = 0; j < 3; ++j)
            EXPECT_NEAR(m.m[k][j], image[static_cast<std::size_t>(j)], 1e-15);
        EXPECT_EQ(m.m[k][3], 0.0);
        EXPECT_EQ(m.m[3][k], pose[k]);
    }
    EXPECT_EQ(m.m[3][3], 1.0);
}

TEST(Pose, rotateTranslationStoresTheTurnedTranslation)
{
    const double pose[6]{1, 2, 3, 0.3, -0.4, 0.5};
    Matrix4 m;
    MERV::matrixFromPose(pose, m, true);
    const Vector expected = turned({1, 2, 3}, 0.3, -0.4, 0.5);
    double back[6];
    MERV::poseFromMatrix(back, m);
    for (int k = 0; k < 3; ++k) {
        EXPECT_NEAR(m.m[3][k], expected[static_cast<std::size_t>(k)], 1e-14);
        EXPECT_EQ(back[k], m.m[3][k]); // the pose read back has the turned translation too
        EXPECT_NEAR(back[3 + k], pose[3 + k], 1e-14);
    }
}

TEST(Pose, roundTripThroughTheMatrix)
{
    RandomPoses poses;
    for (int i = 0; i < 20000; ++i) {
        const auto pose = poses.next();
        float back[6];
        Matrix4 m;
        MERV::matrixFromPose(pose.data(), m, false);
        MERV::poseFromMatrix(back, m);
        for (std::size_t k = 0; k < 6; ++k)
            ASSERT_NEAR(back[k], pose[k], 1e-5);
        double exact[6];
        std::copy(pose.begin(), pose.end(), exact);
        double exactBack[6];
        MERV::matrixFromPose(exact, m, false);
        MERV::poseFromMatrix(exactBack, m);
        for (int k = 0; k < 6; ++k)
            ASSERT_NEAR(exactBack[k], exact[k], 1e-13);
    }
}

TEST(Pose, rightAnglesGiveNumbers)
{
    for (const double b : {halfPi, -halfPi}) {
        const double pose[6]{1, 2, 3, 0.25, b, 0.5};
        Matrix4 m;
        double back[6];
        MERV::matrixFromPose(pose, m, false);
        MERV::poseFromMatrix(back, m);
        Matrix4 again;
        MERV::matrixFromPose(back, again, false);
        // The angles are not unique there, the rotation is.
        for (int i = 0; i < 4; ++i)
            for (int j = 0; j < 4; ++j)
                EXPECT_NEAR(again.m[i][j], m.m[i][j], 1e-12);
        MERV::matrixFromPoseTransposed(pose, m, false);
        m.m[2][0] = b > 0 ? 1.0 + 1e-12 : -1.0 - 1e-12; // as rounding may leave it
        MERV::poseFromMatrixSimple(back, m);
        for (const double value : back)
            EXPECT_TRUE(std::isfinite(value));
        EXPECT_NEAR(back[4], -b, 1e-5);
    }
}

// The groups are the rows of Rz(-c) Ry(-b) Rx(-a).
TEST(Pose, transposedBuilderHoldsTheRowsOfTheSecondRotation)
{
    const double pose[6]{1, 2, 3, 0.3, -0.4, 0.5};
    Matrix4 m;
    MERV::matrixFromPoseTransposed(pose, m, false);
    for (int k = 0; k < 3; ++k) {
        Vector unit{};
        unit[static_cast<std::size_t>(k)] = 1;
        const double c = -0.5, b = 0.4, a = -0.3;
        const Vector column = turned(unit, a, b, c);
        for (int row = 0; row < 3; ++row)
            EXPECT_NEAR(m.m[row][k], column[static_cast<std::size_t>(row)], 1e-15);
        EXPECT_EQ(m.m[k][3], 0.0);
        EXPECT_EQ(m.m[3][k], pose[k]);
    }
    EXPECT_EQ(m.m[3][3], 1.0);
}

TEST(Pose, transposedBuilderTurnsTheTranslationAsItTurnsPoints)
{
    const float pose[6]{1, 2, 3, 0.3f, -0.4f, 0.5f};
    Matrix4 m;
    MERV::matrixFromPoseTransposed(pose, m, true);
    float p[3]{1, 2, 3};
    MERV::rigidTransformPoint(p, m, 2);
    for (int k = 0; k < 3; ++k)
        EXPECT_NEAR(m.m[3][k], p[k], 1e-6);
}

TEST(Pose, simpleReaderReturnsBWithItsSignChanged)
{
    RandomPoses poses;
    for (int i = 0; i < 2000; ++i) {
        const auto pose = poses.next();
        Matrix4 m;
        float back[6];
        MERV::matrixFromPoseTransposed(pose.data(), m, false);
        MERV::poseFromMatrixSimple(back, m);
        for (std::size_t k = 0; k < 6; ++k)
            ASSERT_NEAR(back[k], k == 4 ? -pose[k] : pose[k], 1e-5);
    }
}
