#include "view/camera/Projection.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace {

struct DepthCase
{
    double strength;
    double ofY;
    double constant;
};

// The entries of row 2 as exact fractions, by hand from their formulas with f = 5000 and
// n = min(2 / (3 p), 5000).
const DepthCase depthCases[] = {
    {0.0, -1.0 / 5000.0, 0.0},
    {1.0 / 100000.0, -4195001.0 / 21000000000.0, 1.0 / 20.0},
    {1.0 / 10000.0, -55001.0 / 300000000.0, 1.0 / 2.0},
    {1.0 / 5000.0, -55003.0 / 250000000.0, 3.0 / 5.0},
    {1.0 / 2000.0, -17203.0 / 53200000.0, 9.0 / 19.0},
    {1.0 / 1000.0, -153.0 / 400000.0, 7.0 / 17.0},
};

Plane randomPlane(std::mt19937 &random)
{
    std::uniform_real_distribution<double> entry(-1.0, 1.0);
    return {entry(random), entry(random), 1.0 + entry(random) / 2.0, 100.0 * entry(random)};
}

} // namespace

TEST(Projection, rowOfDepth_hasItsSlopeInTheColumnOfY)
{
    for (const DepthCase &entry : depthCases) {
        const Matrix4 matrix = projectionMatrix(640, 480, 0.0, 0.0, entry.strength);
        EXPECT_EQ(matrix.m[2][0], 0.0);
        EXPECT_NEAR(matrix.m[2][1], entry.ofY, 1e-12 * std::abs(entry.ofY)) << entry.strength;
        EXPECT_EQ(matrix.m[2][2], 0.0);
        EXPECT_NEAR(matrix.m[2][3], entry.constant, 1e-12) << entry.strength;
    }
}

TEST(Projection, otherRows_scalePixelsAndShearWithDepth)
{
    // 2 / 400, 2 * 0.5 / 400; 2 / 200, 2 * -0.25 / 200
    const Matrix4 matrix = projectionMatrix(400, 200, 0.5, -0.25, 0.001);
    const double expected[2][4] = {{0.005, 0.0, 0.0025, 0.0}, {0.0, 0.01, -0.0025, 0.0}};
    for (int row = 0; row < 2; ++row)
        for (int column = 0; column < 4; ++column)
            EXPECT_DOUBLE_EQ(matrix.m[row][column], expected[row][column]);
    EXPECT_EQ(matrix.m[3][0], 0.0);
    EXPECT_EQ(matrix.m[3][1], 0.0);
    EXPECT_EQ(matrix.m[3][2], -0.001);
    EXPECT_EQ(matrix.m[3][3], 1.0);
}

TEST(Projection, eyeWithoutPerspective_liesAtInfinityAlongZ)
{
    const Vector4 expected{0.0, 0.0, 1.0, 0.0};
    EXPECT_EQ(eyeOf(0.0, 0.0, 0.0), expected);
    const Vector4 sheared{-0.5, 0.25, 1.0, 0.001};
    EXPECT_EQ(eyeOf(0.5, -0.25, 0.001), sheared);
}

TEST(Projection, withoutPerspective_hasAnInvertibleFormWithTheSamePixels)
{
    const Matrix4 flat = projectionMatrix(400, 200, 0.5, 0.0, 0.0);
    EXPECT_FALSE(inverseOf(flat));
    const Matrix4 invertible = invertibleProjection(flat);
    EXPECT_TRUE(inverseOf(invertible));
    for (const int row : {0, 1, 3})
        for (int column = 0; column < 4; ++column)
            EXPECT_EQ(invertible.m[row][column], flat.m[row][column]);
}

// A scene of 94 mm at 1e10 pixels per mm, in the largest view with a shear. The determinant of the upper left
// must be more than 1e-25 in single precision.
TEST(Projection, withoutPerspective_cutsNothingAwayAtAnyMagnification)
{
    const Matrix4 matrix = invertibleProjection(projectionMatrix(16384, 16384, 1.0, -1.0, 0.0));
    for (const double z : {-94e10, 94e10})
        for (const double y : {-8192.0, 8192.0}) {
            const Vector4 clip = transformed(matrix, {0.0, y, z, 1.0});
            EXPECT_LT(std::abs(clip[2]), 0.001 * clip[3]);
        }
    EXPECT_GT(matrix.m[0][0] * matrix.m[1][1] * matrix.m[2][2], 1e-24);
}

TEST(PickRay, withoutPerspective_runsAlongZ)
{
    // Plane z = 7 in view space: the pixel (30, -40) is met at (30, -40, 7).
    const Vector4 point =
        divided(meetingPoint(eyeOf(0, 0, 0), {30.0, -40.0, 0.0, 1.0}, {0.0, 0.0, 1.0, -7.0}));
    EXPECT_DOUBLE_EQ(point[0], 30.0);
    EXPECT_DOUBLE_EQ(point[1], -40.0);
    EXPECT_DOUBLE_EQ(point[2], 7.0);
    EXPECT_EQ(point[3], 1.0);
}

TEST(PickRay, anyPerspective_projectsBackToThePixel)
{
    std::mt19937 random(7);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    for (int trial = 0; trial < 2000; ++trial) {
        const double shearX = unit(random);
        const double shearY = unit(random);
        const double strength = 0.001 * std::abs(unit(random));
        const Vector4 mouse{std::round(300.0 * unit(random)), std::round(200.0 * unit(random)), 0.0, 1.0};
        const Plane plane = randomPlane(random);
        const Vector4 met = divided(meetingPoint(eyeOf(shearX, shearY, strength), mouse, plane));
        const Vector4 clip = transformed(projectionMatrix(600, 400, shearX, shearY, strength), met);
        EXPECT_NEAR(clip[0] / clip[3] * 300.0, mouse[0], 1e-9 * (1.0 + std::abs(met[2])));
        EXPECT_NEAR(clip[1] / clip[3] * 200.0, mouse[1], 1e-9 * (1.0 + std::abs(met[2])));
        const double onPlane = plane.a * met[0] + plane.b * met[1] + plane.c * met[2] + plane.d;
        EXPECT_NEAR(onPlane, 0.0, 1e-9 * (1.0 + std::abs(met[2])));
    }
}

TEST(PickRay, parallelToThePlane_isNotFinite)
{
    const Vector4 point = divided(meetingPoint(eyeOf(0, 0, 0), {3.0, 4.0, 0.0, 1.0}, {1.0, 0.0, 0.0, -5.0}));
    EXPECT_FALSE(isFinite(point));
}

TEST(Homogeneous, transformedPlane_keepsPointsOnIt)
{
    const Matrix4 matrix = product(translation(5, -3, 2), product(rotation(0.3, -0.7, 1.1), scaling(4.0)));
    const Plane plane{0.2, -0.5, 1.0, -6.0};
    const Vector4 point{1.0, 2.0, 6.8, 1.0}; // 0.2 - 1 + 6.8 - 6 = 0
    const Vector4 moved = transformed(matrix, point);
    const Plane there = transformedPlane(*inverseOf(matrix), plane);
    EXPECT_NEAR(there.a * moved[0] + there.b * moved[1] + there.c * moved[2] + there.d, 0.0, 1e-12);
}

TEST(Homogeneous, rotation_isRightHandedAndAppliesZFirst)
{
    const double quarter = std::acos(0.0);
    const auto expectNear = [](const Vector4 &actual, const Vector4 &expected) {
        for (std::size_t i = 0; i < 4; ++i)
            EXPECT_NEAR(actual[i], expected[i], 1e-15);
    };
    // About x: y goes to z; about y: z goes to x; about z: x goes to y.
    expectNear(transformed(rotation(quarter, 0, 0), {0, 1, 0, 1}), {0, 0, 1, 1});
    expectNear(transformed(rotation(0, quarter, 0), {0, 0, 1, 1}), {1, 0, 0, 1});
    expectNear(transformed(rotation(0, 0, quarter), {1, 0, 0, 1}), {0, 1, 0, 1});
    // Rx Ry Rz: x goes by Rz to y, stays there by Ry, goes by Rx to z.
    expectNear(transformed(rotation(quarter, quarter, quarter), {1, 0, 0, 1}), {0, 0, 1, 1});
}

TEST(Homogeneous, singularMatrix_hasNoInverse)
{
    EXPECT_FALSE(inverseOf(scaling(0.0)));
    EXPECT_FALSE(inverseOf(scaling(std::nan(""))));
}
