#include "contours/SliceEdgeDetection.h"
#include "tests/support/PlainEdgePoints.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <memory>
#include <random>

namespace {

struct TestSlice
{
    int width;
    int height;
    int pitch;
    std::vector<unsigned char> bytes;

    TestSlice(int w, int h, const std::function<int(int, int)> &value, int rowPitch = 0)
        : width(w)
        , height(h)
        , pitch(rowPitch > 0 ? rowPitch : w)
        , bytes(static_cast<std::size_t>(pitch) * static_cast<std::size_t>(h), 99)
    {
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x) {
                const int index = y * pitch + x;
                bytes[static_cast<std::size_t>(index)] = static_cast<unsigned char>(value(x, y));
            }
    }

    ByteSlice view() const { return {bytes.data(), width, height, pitch}; }
};

std::vector<EdgePoint> detect(const TestSlice &slice, const SlicePlacement &placement = {})
{
    SliceEdgeDetector detector;
    std::vector<EdgePoint> points;
    detector.detect(slice.view(), placement, points);
    return points;
}

void expectPlainResult(const TestSlice &slice, const SlicePlacement &placement)
{
    const std::vector<EdgePoint> fast = detect(slice, placement);
    std::vector<std::unique_ptr<EdgePoint>> plain;
    for (EdgePoint *point : plainEdgePoints({slice.bytes.data(), slice.width, slice.height, slice.pitch},
                                            placement.spacingX, placement.spacingY, placement.z))
        plain.emplace_back(point);
    ASSERT_EQ(fast.size(), plain.size());
    for (std::size_t i = 0; i < fast.size(); ++i)
        ASSERT_TRUE(bitEqual(fast[i], *plain[i])) << "point " << i;
}

} // namespace

TEST(SliceEdgeDetection, flatSliceHasNoPoints)
{
    EXPECT_TRUE(detect(TestSlice(16, 16, [](int, int) { return 200; })).empty());
}

TEST(SliceEdgeDetection, fewerThanThreeColumnsOrRowsHaveNoPoints)
{
    const auto stripes = [](int x, int y) { return (x + y) % 2 * 255; };
    EXPECT_TRUE(detect(TestSlice(2, 20, stripes)).empty());
    EXPECT_TRUE(detect(TestSlice(20, 2, stripes)).empty());
    EXPECT_TRUE(detect(TestSlice(1, 1, stripes)).empty());
    EXPECT_TRUE(detect(TestSlice(0, 0, stripes)).empty());
}

// Columns 0..3 are 0, columns 4..7 are 255. gx = (4 * 0 - 4 * 255) / 4 = -255 in columns 3 and 4, M there 255
// and 0 elsewhere. In column 3, away from top and bottom, n1 = 3 * 255 = 765 and n3 = 3 * (0 + 255 - 2 * 255)
// = -765: the shift is -n1 / (2 * n3) = +0.5; in column 4 it is -0.5. Both points lie on the edge, x = 4.
// Rows 2..5 have full neighbours; in row 1 the row above is 0, so n1 = 510 and n3 = -510: again one half.
TEST(SliceEdgeDetection, stepBetweenTwoPixelsGivesTwoPointsOnTheEdge)
{
    const std::vector<EdgePoint> points = detect(TestSlice(8, 8, [](int x, int) { return x < 4 ? 0 : 255; }));
    ASSERT_EQ(points.size(), 12u);
    for (std::size_t i = 0; i < points.size(); ++i) {
        const EdgePoint &point = points[i];
        EXPECT_EQ(point.xS, i < 6 ? 0.5f : -0.5f);
        EXPECT_EQ(point.x, 4.0f);
        EXPECT_EQ(point.yS, 0.0f);
        EXPECT_FALSE(std::signbit(point.yS));
        EXPECT_EQ(point.y, static_cast<float>(1 + i % 6) + 0.5f);
        EXPECT_EQ(point.strength, 1.0f);
        EXPECT_EQ(point.gx, -1.0f); // the negative of the derivative
        EXPECT_EQ(point.gy, 0.0f);
        EXPECT_EQ(point.gz, 0.0f);
        EXPECT_EQ(point.zS, 0.0f);
        EXPECT_FALSE(point.excluded);
    }
}

// A horizontal step from 40 to 200 over a width of 10: eight columns inside, two points each. M = 160 is no
// power of two, so that rounding would lose points here.
TEST(SliceEdgeDetection, horizontalStepKeepsAllExactHalves)
{
    const std::vector<EdgePoint> points =
        detect(TestSlice(10, 10, [](int, int y) { return y < 5 ? 40 : 200; }));
    ASSERT_EQ(points.size(), 16u);
    for (std::size_t i = 0; i < points.size(); ++i) {
        EXPECT_EQ(points[i].yS, i % 2 == 0 ? 0.5f : -0.5f);
        EXPECT_EQ(points[i].y, 5.0f);
        EXPECT_EQ(points[i].gy, -160.0f / 255.0f);
        EXPECT_EQ(points[i].strength, 160.0f / 255.0f);
    }
}

// A step of 5 grey levels gives a magnitude of 5, which must be exceeded.
TEST(SliceEdgeDetection, stepOfFiveIsTooWeakAndOfSixIsEnough)
{
    EXPECT_TRUE(detect(TestSlice(8, 8, [](int x, int) { return x < 4 ? 100 : 105; })).empty());
    EXPECT_EQ(detect(TestSlice(8, 8, [](int x, int) { return x < 4 ? 100 : 106; })).size(), 12u);
}

// A ramp has the same magnitude everywhere inside, 2 * 10 = 20, but none in the outermost ring: the columns
// beside the border look like ridges. There n1 = 3 * 20 and n3 = 3 * (0 + 20 - 40) = -60: shifted by one half
// inwards. In between n3 is 0: no maximum. Rows 1 and 6 lack one neighbour row, which changes nothing for gy
// = 0.
TEST(SliceEdgeDetection, rampGivesTwoColumnsOfPointsBesideTheBorder)
{
    const std::vector<EdgePoint> points = detect(TestSlice(8, 8, [](int x, int) { return 10 * x; }));
    ASSERT_EQ(points.size(), 12u);
    for (std::size_t i = 0; i < points.size(); ++i) {
        EXPECT_EQ(points[i].xS, i < 6 ? 0.5f : -0.5f);
        EXPECT_EQ(points[i].x, i < 6 ? 2.0f : 6.0f);
    }
}

TEST(SliceEdgeDetection, pointsAreListedColumnByColumn)
{
    std::mt19937 random(5);
    const std::vector<EdgePoint> points = detect(TestSlice(40, 30, [&](int, int) { return random() % 256; }));
    ASSERT_GT(points.size(), 50u);
    const auto pixel = [](float position, float shift) {
        return static_cast<int>(std::lround(position - 0.5f - shift));
    };
    for (std::size_t i = 1; i < points.size(); ++i) {
        const int x0 = pixel(points[i - 1].x, points[i - 1].xS);
        const int x1 = pixel(points[i].x, points[i].xS);
        EXPECT_TRUE(x0 < x1 || (x0 == x1 &&
                                pixel(points[i - 1].y, points[i - 1].yS) < pixel(points[i].y, points[i].yS)));
    }
    for (const EdgePoint &point : points) {
        EXPECT_GE(pixel(point.x, point.xS), 1);
        EXPECT_LE(pixel(point.x, point.xS), 38);
        EXPECT_GE(pixel(point.y, point.yS), 1);
        EXPECT_LE(pixel(point.y, point.yS), 28);
    }
}

// A diagonal edge from 0 to 255 through the pixels with x + y = 9: the left column of such a pixel holds 0,
// 0, 255, the right one 255, 255, 255, so gx = (255 - 4 * 255) / 4 = -191, truncated, and gy the same. The
// magnitude 270.1 counts as 255 in the fit and stays as it is in the strength.
TEST(SliceEdgeDetection, magnitudeAboveAByteIsStoredAs255)
{
    const TestSlice corner(10, 10, [](int x, int y) { return x + y < 9 ? 0 : 255; });
    const std::vector<EdgePoint> points = detect(corner);
    float strongest = 0.0f;
    for (const EdgePoint &point : points)
        strongest = std::max(strongest, point.strength);
    EXPECT_EQ(strongest, std::sqrt(2.0f * 191.0f * 191.0f) / 255.0f);
    EXPECT_GT(strongest, 1.0f);
}

TEST(SliceEdgeDetection, rowPitchDoesNotMatter)
{
    const auto value = [](int x, int y) { return (x * 37 + y * y * 11) % 256; };
    const std::vector<EdgePoint> tight = detect(TestSlice(10, 12, value, 10));
    const std::vector<EdgePoint> padded = detect(TestSlice(10, 12, value, 16));
    ASSERT_FALSE(tight.empty());
    ASSERT_EQ(tight.size(), padded.size());
    for (std::size_t i = 0; i < tight.size(); ++i)
        EXPECT_TRUE(bitEqual(tight[i], padded[i]));
}

// A bright disc with a soft rim (area coverage sampled 8 x 8): every point lies near the circle, and the
// gradient points outwards, from bright to dark.
TEST(SliceEdgeDetection, pointsOfADiscLieOnItsCircle)
{
    constexpr double radius = 20.3;
    constexpr double centre = 32.1;
    const TestSlice disc(64, 64, [](int x, int y) {
        int inside = 0;
        for (int row = 0; row < 8; ++row)
            for (int column = 0; column < 8; ++column)
                inside += std::hypot(x + (column + 0.5) / 8 - centre, y + (row + 0.5) / 8 - centre) < radius;
        return 30 + 200 * inside / 64;
    });
    const std::vector<EdgePoint> points = detect(disc);
    ASSERT_GT(points.size(), 120u);
    for (const EdgePoint &point : points) {
        const double dx = point.x - centre;
        const double dy = point.y - centre;
        EXPECT_NEAR(std::hypot(dx, dy), radius, 0.2);
        EXPECT_GT(dx * point.gx + dy * point.gy, 0.0);
    }
}

TEST(SliceEdgeDetection, resultIsThatOfThePlainCode)
{
    std::mt19937 random(1);
    const SlicePlacement placement{0.3125f, 0.35f, 2.25f};
    for (int run = 0; run < 40; ++run) {
        const int width = 3 + static_cast<int>(random() % 70);
        const int height = 3 + static_cast<int>(random() % 70);
        const int levels = 2 << random() % 8; // from two grey values up to all
        const TestSlice noise(
            width, height,
            [&](int, int) {
                return static_cast<int>(random() % static_cast<unsigned>(levels)) * 255 / (levels - 1);
            },
            width + static_cast<int>(random() % 5));
        expectPlainResult(noise, placement);
        const double fx = 0.05 + static_cast<double>(random() % 100) / 150.0;
        const double fy = 0.05 + static_cast<double>(random() % 100) / 150.0;
        expectPlainResult(TestSlice(width, height,
                                    [&](int x, int y) {
                                        return static_cast<int>(127.5 +
                                                                127.5 * std::sin(x * fx) * std::cos(y * fy));
                                    }),
                          placement);
    }
}

TEST(SliceEdgeDetection, detectorServesSlicesOfDifferentSizes)
{
    SliceEdgeDetector detector;
    std::vector<EdgePoint> points;
    const auto value = [](int x, int y) { return (x * x * 13 + y * 29) % 256; };
    for (const auto &[w, h] : {std::pair{50, 20}, {8, 60}, {2, 9}, {33, 33}}) {
        const TestSlice slice(w, h, value);
        detector.detect(slice.view(), {}, points);
        const std::vector<EdgePoint> fresh = detect(slice);
        ASSERT_EQ(points.size(), fresh.size());
        for (std::size_t i = 0; i < points.size(); ++i)
            EXPECT_TRUE(bitEqual(points[i], fresh[i]));
    }
}
