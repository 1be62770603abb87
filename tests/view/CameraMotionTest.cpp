#include "view/camera/CameraMotion.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

void expectMatrix(const Matrix4 &actual, const double (&expected)[4][4])
{
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column)
            EXPECT_NEAR(actual.m[row][column], expected[row][column], 1e-12) << row << ' ' << column;
}

const double quarter = std::acos(0.0);

} // namespace

TEST(Approach, eachStep_goesOneEighthOfTheRemainingWay)
{
    // From 0 to 64 in element (0, 3): 8 after one step, 15 after two.
    Matrix4 view = Matrix4::identity();
    const Matrix4 target = translation(64.0, 0.0, 0.0);
    EXPECT_TRUE(approach(view, target, 1.0).moved);
    EXPECT_DOUBLE_EQ(view.m[0][3], 8.0);
    EXPECT_FALSE(approach(view, target, 1.0).reached);
    EXPECT_DOUBLE_EQ(view.m[0][3], 15.0);
}

TEST(Approach, oneLateTick_equalsTheTicksThatItMissed)
{
    Matrix4 slow = scaling(3.0);
    Matrix4 steady = slow;
    const Matrix4 target = product(rotation(0.1, 0.2, 0.3), translation(100.0, -50.0, 7.0));
    approach(slow, target, animationSteps(100.0));
    for (int tick = 0; tick < 5; ++tick)
        approach(steady, target, animationSteps(20.0));
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column) {
            EXPECT_EQ(slow.m[row][column], steady.m[row][column]);
            const double start = scaling(3.0).m[row][column];
            const double rest = (start - target.m[row][column]) * std::pow(7.0 / 8.0, 5);
            EXPECT_NEAR(slow.m[row][column] - target.m[row][column], rest, 1e-12);
        }
}

TEST(Approach, shortTick_makesAStep)
{
    Matrix4 view = Matrix4::identity();
    EXPECT_TRUE(approach(view, translation(8.0, 0.0, 0.0), animationSteps(19.0)).moved);
    EXPECT_DOUBLE_EQ(view.m[0][3], 1.0);
}

TEST(Approach, withinAThousandth_takesTheTargetWithoutMoving)
{
    Matrix4 view = translation(0.001, 0.0, 0.0);
    const Approach result = approach(view, Matrix4::identity(), 5.0);
    EXPECT_TRUE(result.reached);
    EXPECT_FALSE(result.moved);
    EXPECT_EQ(view.m[0][3], 0.0);
}

TEST(Approach, justOutside_movesFirst)
{
    Matrix4 view = translation(0.0011, 0.0, 0.0); // 0.0011 * 7 / 8 < 0.001
    const Approach result = approach(view, Matrix4::identity(), 2.0);
    EXPECT_TRUE(result.reached);
    EXPECT_TRUE(result.moved);
}

TEST(Approach, targetThatIsNoNumber_isReached)
{
    Matrix4 view = Matrix4::identity();
    EXPECT_TRUE(approach(view, scaling(std::nan("")), 1.0).reached);
    Matrix4 far = Matrix4::identity();
    int ticks = 0;
    while (!approach(far, scaling(infinity), 1.0).reached && ++ticks < 10) {
    }
    EXPECT_LT(ticks, 10);
}

TEST(AnimationSteps, firstTickAndLongPauses_countAsOne)
{
    EXPECT_EQ(animationSteps(-1.0), 1.0);
    EXPECT_EQ(animationSteps(20.0), 1.0);
    EXPECT_EQ(animationSteps(30.0), 1.5);
    EXPECT_EQ(animationSteps(60000.0), 3000.0);
    EXPECT_EQ(animationSteps(60020.0), 1.0);
}

TEST(FittedView, showsTheSceneCentredAndWhole)
{
    // 200 x 100 mm in 400 x 300 pixels: 400 / 200 = 2 is smaller than 300 / 100; the centre goes to (0, 0).
    expectMatrix(fittedView(200.0, 100.0, 400, 300),
                 {{2, 0, 0, -200}, {0, 2, 0, -100}, {0, 0, 2, 0}, {0, 0, 0, 1}});
    // 100 x 200 mm: 300 / 200 = 1.5.
    expectMatrix(fittedView(100.0, 200.0, 400, 300),
                 {{1.5, 0, 0, -75}, {0, 1.5, 0, -150}, {0, 0, 1.5, 0}, {0, 0, 0, 1}});
}

TEST(FittedView, extentThatIsNotPositive_takesNoPart)
{
    expectMatrix(fittedView(0.0, 100.0, 400, 300),
                 {{3, 0, 0, 0}, {0, 3, 0, -150}, {0, 0, 3, 0}, {0, 0, 0, 1}});
    expectMatrix(fittedView(0.0, 0.0, 400, 300), {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}});
    expectMatrix(fittedView(std::nan(""), infinity, 400, 300),
                 {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}});
}

TEST(SnappedToAxis, withoutTranslation_choosesByWhereXPoints)
{
    // x of the world to the right: v = (4, 0, 0), v.x > v.z.
    expectMatrix(snappedToAxis(scaling(4.0)), {{4, 0, 0, 0}, {0, 4, 0, 0}, {0, 0, 4, 0}, {0, 0, 0, 1}});
    // Downwards and a little to the left: v.x < v.z = 0 and v.y <= v.z.
    expectMatrix(snappedToAxis(product(rotation(0, 0, -1.1 * quarter), scaling(4.0))),
                 {{0, 4, 0, 0}, {-4, 0, 0, 0}, {0, 0, 4, 0}, {0, 0, 0, 1}});
    // Towards the eye and a little upwards (v.x = 0, v.z < v.y): v = (0, 4 cos 30, 4 sin 30).
    const Matrix4 steep =
        product(rotation(quarter / 3.0, 0, 0), product(rotation(0, 0, quarter), scaling(4.0)));
    expectMatrix(snappedToAxis(steep), {{0, 0, 4, 0}, {0, 4, 0, 0}, {-4, 0, 0, 0}, {0, 0, 0, 1}});
}

TEST(SnappedToAxis, keepsThePointAtTheCentre)
{
    // 160 x 160 mm fitted into 640 x 640: scale 4, the middle (80, 80, 0) at the centre; then tilted.
    const Matrix4 fitted = fittedView(160.0, 160.0, 640, 640);
    for (const Matrix4 &turn :
         {rotation(0, 0, 0), rotation(0.2, 0.1, 0), rotation(0, 0, 2), rotation(2, 0, 2)}) {
        const Vector4 centre = transformed(snappedToAxis(product(turn, fitted)), {80.0, 80.0, 0.0, 1.0});
        EXPECT_NEAR(centre[0], 0.0, 1e-10);
        EXPECT_NEAR(centre[1], 0.0, 1e-10);
        EXPECT_NEAR(centre[2], 0.0, 1e-10);
    }
}

TEST(SnappedToAxis, singularTarget_stays)
{
    const Matrix4 flat = product(translation(3, 4, 5), scaling(0.0));
    EXPECT_EQ(snappedToAxis(flat).m[0][3], 3.0);
}

TEST(TurnedOntoAxis, axialPlane_cyclesThroughXAndYBackToZ)
{
    const Vector4 at{1.0, 2.0, 3.0, 1.0};
    const Plane onX = turnedOntoAxis({0, 0, 1, -3}, at);
    EXPECT_EQ(onX, (Plane{-1, 0, 0, 1}));
    const Plane onY = turnedOntoAxis(onX, at);
    EXPECT_EQ(onY, (Plane{0, -1, 0, 2}));
    const Plane onZ = turnedOntoAxis(onY, at);
    EXPECT_EQ(onZ, (Plane{0, 0, -1, 3}));
    EXPECT_EQ(turnedOntoAxis(onZ, at), (Plane{-1, 0, 0, 1}));
}

TEST(TurnedOntoAxis, obliquePlane_takesTheLargestCoefficientWithItsSign)
{
    const Vector4 at{1.0, 2.0, 3.0, 1.0};
    EXPECT_EQ(turnedOntoAxis({0.9, 0.1, 0.2, 5}, at), (Plane{1, 0, 0, -1}));
    EXPECT_EQ(turnedOntoAxis({0.1, -0.9, 0.2, 5}, at), (Plane{0, -1, 0, 2}));
    EXPECT_EQ(turnedOntoAxis({0.1, 0.2, 0.9, 5}, at), (Plane{0, 0, 1, -3}));
    // A dominant a with c = 0 and b not 0 goes to z all the same.
    EXPECT_EQ(turnedOntoAxis({0.9, 0.1, 0.0, 5}, at), (Plane{0, 0, -1, 3}));
}
