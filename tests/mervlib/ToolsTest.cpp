#include "tests/mervlib/ImageTestTools.h"

#include "Common/Pose.h"
#include "Common/Tools.h"

#include <cmath>

using MERV::Matrix4;
using MERV::Tools;

namespace {

const float pose[6]{1, 2, 3, 0.3f, -0.4f, 0.5f};

// Rz(-c) Ry(-b) Rx(-a) is the first convention's rotation with all angles negated.
void turnBack(float p[3])
{
    const float negated[6]{0, 0, 0, -pose[3], -pose[4], -pose[5]};
    MERV::rigidTransformPoint(p, negated, 2);
}

} // namespace

TEST(Tools, everyCallWarns)
{
    CapturedStream out(std::cout);
    float p[3]{};
    float back[6];
    Matrix4 m;
    Tools::rigidTransform(p, pose, 0);
    Tools::euler2hom(pose, m, false);
    Tools::hom2euler(back, m);
    Tools::rigidTransform(p, pose, 0);
    EXPECT_EQ(out.str(), "Warning: The bloody old Tools::rigidTransform method was called!\n"
                         "Warning: The bloody old Tools::euler2hom method was called!\n"
                         "Warning: The bloody old Tools::hom2euler method was called!\n"
                         "Warning: The bloody old Tools::rigidTransform method was called!\n");
}

TEST(Tools, rigidTransformKnowsThreeModes)
{
    CapturedStream out(std::cout);
    for (int mode = 0; mode <= 2; ++mode) {
        float p[3]{5, -6, 7};
        float expected[3]{5, -6, 7};
        for (int k = 0; k < 3 && mode == 1; ++k)
            expected[k] += pose[k];
        turnBack(expected);
        for (int k = 0; k < 3 && mode == 0; ++k)
            expected[k] += pose[k];
        Tools::rigidTransform(p, pose, mode);
        for (int k = 0; k < 3; ++k)
            EXPECT_NEAR(p[k], expected[k], 1e-5);
    }
}

TEST(Tools, euler2homStoresTheOppositeSenseOfTheTransposedBuilder)
{
    CapturedStream out(std::cout);
    Matrix4 old;
    Matrix4 other;
    Tools::euler2hom(pose, old, false);
    MERV::matrixFromPoseTransposed(pose, other, false);
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j)
            EXPECT_EQ(old.m[i][j], other.m[j][i]);
        EXPECT_EQ(old.m[3][i], static_cast<double>(pose[i]));
        EXPECT_EQ(old.m[i][3], 0.0);
    }
    EXPECT_EQ(old.m[3][3], 1.0);
}

TEST(Tools, euler2homMultipliesTheTranslationByTheColumns)
{
    CapturedStream out(std::cout);
    Matrix4 m;
    Tools::euler2hom(pose, m, true);
    for (int j = 0; j < 3; ++j) {
        double sum = 0;
        for (int i = 0; i < 3; ++i)
            sum += static_cast<double>(pose[i]) * m.m[i][j];
        EXPECT_NEAR(m.m[3][j], sum, 1e-12);
    }
}

TEST(Tools, hom2eulerInvertsEuler2hom)
{
    CapturedStream out(std::cout);
    for (int tenths = -15; tenths < 15; ++tenths) {
        const float angle = static_cast<float>(tenths) / 10.0f;
        const float source[6]{1, 2, 3, angle, -angle / 2, angle / 3};
        float back[6];
        Matrix4 m;
        Tools::euler2hom(source, m, false);
        Tools::hom2euler(back, m);
        for (int k = 0; k < 6; ++k)
            EXPECT_NEAR(back[k], source[k], 1e-5);
    }
}

TEST(Tools, hom2eulerOfASineBeyondOneIsARightAngle)
{
    CapturedStream out(std::cout);
    Matrix4 m = Matrix4::identity();
    m.m[0][2] = 1.0 + 1e-12;
    float back[6];
    Tools::hom2euler(back, m);
    EXPECT_FLOAT_EQ(back[4], std::asin(1.0f));
}
