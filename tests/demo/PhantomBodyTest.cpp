#include "demo/PhantomBody.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>
#include <vector>

using demo::BonePlace;
using demo::PhantomBody;
using demo::PhantomParameters;
using demo::Point;

namespace {

double distance(const Point &p, const Point &q)
{
    return std::hypot(p[0] - q[0], p[1] - q[1], p[2] - q[2]);
}

std::vector<BonePlace> somePlaces()
{
    std::vector<BonePlace> places;
    for (int column = -6; column <= 6; ++column)
        for (int row = -6; row <= 6; ++row) {
            const double across = 0.15 * column, up = 0.15 * row;
            if (across * across + up * up < 0.95)
                places.push_back({across, up});
        }
    return places;
}

PhantomParameters sphere(double radius)
{
    PhantomParameters p;
    p.halfWidthMm = p.halfHeightMm = p.frontDepthMm = p.backDepthMm = radius;
    return p;
}

} // namespace

TEST(PhantomBody, footOfAPointAboveTheBoneIsWhereItStands)
{
    for (bool mirrored : {false, true}) {
        PhantomParameters parameters;
        parameters.mirrored = mirrored;
        const PhantomBody body(parameters);
        for (const BonePlace &place : somePlaces())
            for (double height : {1e-6, 0.3, 2.5, 9.0}) {
                const auto foot = body.footBehind(body.pointAbove(place, height));
                ASSERT_TRUE(foot);
                EXPECT_NEAR(foot->place.across, place.across, 1e-9);
                EXPECT_NEAR(foot->place.up, place.up, 1e-9);
                EXPECT_NEAR(foot->distanceMm, height, 1e-9);
            }
    }
}

// No place of a fine grid on the bone is nearer than the foot.
TEST(PhantomBody, footIsTheNearestPlaceOfTheBone)
{
    const PhantomBody body{PhantomParameters()};
    const Point point = body.pointAbove({0.5, -0.4}, 6.0);
    double nearest = 1e9;
    for (int column = -999; column < 1000; column += 2)
        for (int row = -999; row < 1000; row += 2) {
            const double across = column / 1000.0, up = row / 1000.0;
            if (across * across + up * up < 1.0)
                nearest = std::min(nearest, distance(point, body.pointAbove({across, up}, 0.0)));
        }
    EXPECT_NEAR(body.footBehind(point)->distanceMm, nearest, 1e-3);
    EXPECT_LE(body.footBehind(point)->distanceMm, nearest + 1e-9);
}

TEST(PhantomBody, noFootInsideTheBoneAndInFrontOfIt)
{
    const PhantomBody body{PhantomParameters()};
    EXPECT_FALSE(body.footBehind(body.centre()));
    Point before = body.centre();
    before[1] -= 20.0;
    EXPECT_FALSE(body.footBehind(before));
    EXPECT_FALSE(body.isCartilage(before));
}

TEST(PhantomBody, cartilageReachesFromTheBoneToItsThickness)
{
    const PhantomBody body{PhantomParameters()};
    for (const BonePlace &place : somePlaces()) {
        const double thickness = body.thicknessMm(place);
        const bool covered = std::hypot(place.across, place.up) < 0.86;
        EXPECT_TRUE(body.isBone(body.pointAbove(place, -1e-6)));
        EXPECT_FALSE(body.isBone(body.pointAbove(place, 1e-6)));
        EXPECT_EQ(body.isCartilage(body.pointAbove(place, 1e-6)), covered);
        EXPECT_EQ(body.isCartilage(body.pointAbove(place, thickness - 1e-6)), covered);
        EXPECT_FALSE(body.isCartilage(body.pointAbove(place, thickness + 1e-6)));
    }
}

TEST(PhantomBody, thicknessFallsFromTheRidgeToTheRim)
{
    const PhantomBody body{PhantomParameters()}; // covered 0.86, ridge at 0.18, 4 mm to 1 mm
    EXPECT_DOUBLE_EQ(body.thicknessMm({0.18, 0.0}), 4.0);
    for (int tenths = 0; tenths <= 63; ++tenths) {
        const double angle = tenths / 10.0;
        const BonePlace rim{0.86 * std::cos(angle), 0.86 * std::sin(angle)};
        EXPECT_NEAR(body.thicknessMm(rim), 1.0, 1e-12);
        // Half way from the ridge: 1 + 3 * (1 - 1/4) = 3.25.
        EXPECT_NEAR(body.thicknessMm({0.5 * (0.18 + rim.across), 0.5 * rim.up}), 3.25, 1e-12);
    }
    EXPECT_DOUBLE_EQ(body.thicknessMm({0.9, 0.3}), 1.0); // beyond the rim
}

TEST(PhantomBody, curvaturesAndAreaOfASphere)
{
    const PhantomBody body(sphere(10.0));
    for (const BonePlace &place : somePlaces()) {
        EXPECT_NEAR(body.meanCurvature(place), 0.1, 1e-12);
        EXPECT_NEAR(body.gaussianCurvature(place), 0.01, 1e-12);
        // A sphere's cap projects by the cosine of the slope: R^2 / sqrt(1 - across^2 - up^2).
        const double slope = std::sqrt(1.0 - place.across * place.across - place.up * place.up);
        EXPECT_NEAR(body.areaDensity(place), 100.0 / slope, 1e-9);
    }
}

// Principal curvatures at the end of an axis c of an ellipsoid are c / a^2 and c / b^2.
TEST(PhantomBody, curvaturesBehindTheMiddle)
{
    const PhantomParameters p;
    const PhantomBody body(p);
    const double first = p.backDepthMm / (p.halfWidthMm * p.halfWidthMm);
    const double second = p.backDepthMm / (p.halfHeightMm * p.halfHeightMm);
    EXPECT_NEAR(body.meanCurvature({0, 0}), 0.5 * (first + second), 1e-12);
    EXPECT_NEAR(body.gaussianCurvature({0, 0}), first * second, 1e-12);
}

// Two halves of ellipsoids: 2/3 pi a b (front + back).
TEST(PhantomBody, boneHasTheVolumeOfTwoHalfEllipsoids)
{
    const PhantomParameters p;
    const PhantomBody body(p);
    const double step = 0.2;
    long inside = 0;
    for (int i = 0; i < 400; ++i) // 80 x 50 x 36 mm
        for (int j = 0; j < 250; ++j)
            for (int k = 0; k < 180; ++k)
                inside += body.isBone({(i + 0.5) * step, (j + 0.5) * step, (k + 0.5) * step}) ? 1 : 0;
    const double expected =
        2.0 / 3.0 * std::numbers::pi * p.halfWidthMm * p.halfHeightMm * (p.frontDepthMm + p.backDepthMm);
    EXPECT_NEAR(static_cast<double>(inside) * step * step * step, expected, 0.002 * expected);
}

TEST(PhantomBody, bodyIsTilted)
{
    PhantomParameters upright;
    upright.tiltDegrees = {0, 0, 0};
    const PhantomBody tilted{PhantomParameters()}, straight(upright);
    // Straight: the top of the covered part stands above the middle.
    EXPECT_NEAR(straight.pointAbove({0.0, 0.8}, 0.0)[0], straight.centre()[0], 1e-12);
    EXPECT_GT(std::abs(tilted.pointAbove({0.0, 0.8}, 0.0)[0] - tilted.centre()[0]), 0.5);
}

TEST(PhantomBody, shellIsTheOuterPartOfTheBone)
{
    const PhantomBody body{PhantomParameters()};
    EXPECT_TRUE(body.isShell(body.pointAbove({0, 0}, -0.5), 1.0));
    EXPECT_FALSE(body.isShell(body.pointAbove({0, 0}, -1.5), 1.0));
    EXPECT_FALSE(body.isShell(body.pointAbove({0, 0}, 0.5), 1.0));
}

TEST(PhantomBody, mirroredBodyIsTheMirrorImageAcrossTheVolume)
{
    PhantomParameters p;
    const PhantomBody right(p);
    p.mirrored = true;
    const PhantomBody left(p);
    for (const BonePlace &place : somePlaces()) {
        const Point a = right.pointAbove(place, 0.7), b = left.pointAbove(place, 0.7);
        EXPECT_NEAR(a[0] + b[0], 80.0, 1e-9); // 256 * 0.3125
        EXPECT_EQ(a[1], b[1]);
        EXPECT_EQ(a[2], b[2]);
        EXPECT_EQ(right.isCartilage(a), left.isCartilage(b));
    }
}
