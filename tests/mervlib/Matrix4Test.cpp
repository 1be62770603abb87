#include "Common/Matrix4.h"

#include "Common/Pose.h"

#include <tnt_array2d.h>

#include <gtest/gtest.h>

#include <limits>

using MERV::Matrix4;

namespace {

// Entries i * 4 + j plus a few that make it regular.
Matrix4 sample()
{
    Matrix4 m;
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 4; ++j)
            m.m[i][j] = i * 4 + j + (i == j ? 10 * (i + 1) : 0);
    return m;
}

Matrix4 product(const Matrix4 &a, const Matrix4 &b)
{
    Matrix4 result;
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 4; ++j)
            for (int k = 0; k < 4; ++k)
                result.m[i][j] += a.m[i][k] * b.m[k][j];
    return result;
}

void expectNear(const Matrix4 &a, const Matrix4 &b, double tolerance)
{
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 4; ++j)
            EXPECT_NEAR(a.m[i][j], b.m[i][j], tolerance) << i << ' ' << j;
}

Matrix4 rigid()
{
    const double pose[6]{5, -6, 7, 0.3, -0.4, 0.5};
    Matrix4 m;
    MERV::matrixFromPose(pose, m, false);
    return m;
}

} // namespace

TEST(Matrix4, takesOverAFourByFourMatrixUntransposed)
{
    TNT::Array2D<double> source(4, 4, 0.0);
    source[1][2] = 12;
    source[3][0] = 30;
    const Matrix4 m(source);
    EXPECT_EQ(m.m[1][2], 12.0);
    EXPECT_EQ(m.m[3][0], 30.0);
    EXPECT_EQ(m.m[2][1], 0.0);
}

TEST(Matrix4DeathTest, anotherSizeEndsTheProgram)
{
    const char *text = "tntMatrix.dim1\\(\\) == 4 && tntMatrix.dim2\\(\\) == 4.*"
                       "You screwed up! File: __FILE__ line: __LINE__";
    EXPECT_DEATH(Matrix4(TNT::Array2D<double>(3, 3, 0.0)), text);
    EXPECT_DEATH(Matrix4(TNT::Array2D<double>(4, 3, 0.0)), text);
    EXPECT_DEATH(Matrix4(TNT::Array2D<double>(5, 4, 0.0)), text);
}

TEST(Matrix4, multiplyPutsTheProductIntoTheFirstOrTheSecond)
{
    Matrix4 a = sample();
    Matrix4 b = rigid();
    const Matrix4 expected = product(a, b);
    MERV::multiply(a, b, false);
    expectNear(a, expected, 0);
    expectNear(b, rigid(), 0);
    a = sample();
    MERV::multiply(a, b, true);
    expectNear(a, sample(), 0);
    expectNear(b, expected, 0);
}

TEST(Matrix4, multiplyOfAMatrixWithItselfIsTheSquare)
{
    for (const bool intoSecond : {false, true}) {
        Matrix4 a = sample();
        MERV::multiply(a, a, intoSecond);
        expectNear(a, product(sample(), sample()), 0);
    }
}

TEST(Matrix4, transposeMayWriteOverItsArgument)
{
    Matrix4 a = sample();
    Matrix4 other;
    MERV::transpose(a, other);
    MERV::transpose(a, a);
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 4; ++j) {
            EXPECT_EQ(a.m[i][j], sample().m[j][i]);
            EXPECT_EQ(other.m[i][j], sample().m[j][i]);
        }
}

TEST(Matrix4, invertRigidUndoesAPose)
{
    Matrix4 inverse;
    MERV::invertRigid(rigid(), inverse);
    expectNear(product(rigid(), inverse), Matrix4::identity(), 1e-14);
    Matrix4 over = rigid();
    MERV::invertRigid(over, over);
    expectNear(over, inverse, 0);
    float p[3]{1, 2, 3};
    MERV::rigidTransformPoint(p, rigid(), 0);
    MERV::rigidTransformPoint(p, inverse, 0);
    EXPECT_NEAR(p[0], 1, 1e-5);
    EXPECT_NEAR(p[1], 2, 1e-5);
    EXPECT_NEAR(p[2], 3, 1e-5);
}

TEST(Matrix4, invertOfARegularMatrix)
{
    Matrix4 inverse;
    ASSERT_TRUE(MERV::invert(sample(), inverse));
    expectNear(product(sample(), inverse), Matrix4::identity(), 1e-13);
    // Zero diagonal: rows must be exchanged.
    Matrix4 cyclic;
    for (int i = 0; i < 4; ++i)
        cyclic.m[i][(i + 1) % 4] = i + 1.0;
    ASSERT_TRUE(MERV::invert(cyclic, inverse));
    expectNear(product(inverse, cyclic), Matrix4::identity(), 0);
    ASSERT_TRUE(MERV::invert(cyclic, cyclic));
    expectNear(cyclic, inverse, 0);
}

TEST(Matrix4, singularMatrixHasNoInverse)
{
    Matrix4 result = sample();
    Matrix4 singular = sample();
    std::copy_n(singular.m[0], 4, singular.m[3]);
    EXPECT_FALSE(MERV::invert(singular, result));
    EXPECT_FALSE(MERV::invert(Matrix4(), result));
    Matrix4 bad = sample();
    bad.m[1][3] = std::numeric_limits<double>::quiet_NaN();
    EXPECT_FALSE(MERV::invert(bad, result));
    expectNear(result, sample(), 0);
}
