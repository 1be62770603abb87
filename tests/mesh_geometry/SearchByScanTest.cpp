#include "meshes/geometry/ClosestPoint.h"
#include "meshes/geometry/NearestHit.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <limits>
#include <vector>

using namespace MERV::BRep;

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr auto noFace = static_cast<std::size_t>(-1);

// The square from (0, 0) to (size, size) at height z, two triangles for each unit square, or wound the other
// way.
std::vector<TriFace> plate(int size, double z, bool reversed = false)
{
    std::vector<TriFace> faces;
    const auto add = [&](const Point &a, const Point &b, const Point &c) {
        faces.push_back(reversed ? TriFace(a, c, b) : TriFace(a, b, c));
    };
    for (int y = 0; y < size; ++y) {
        for (int x = 0; x < size; ++x) {
            const Point corner(x, y, z), right(x + 1, y, z), up(x, y + 1, z), opposite(x + 1, y + 1, z);
            add(corner, right, opposite);
            add(corner, opposite, up);
        }
    }
    return faces;
}

Line upwardsAt(double x, double y)
{
    return {Point(x, y, 0), Point(0, 0, 1, 0)};
}

} // namespace

TEST(ClosestPointByScan, ofNothingIsInvalid)
{
    EXPECT_FALSE(closestPointByScan({}, {1, 2, 3}).point.valid);
    EXPECT_EQ(closestPointByScan({}, {1, 2, 3}).face, noFace);
    const std::vector<TriFace> degenerate{TriFace(), TriFace({1, 1, 1}, {1, 1, 1}, {2, 2, 2})};
    EXPECT_FALSE(closestPointByScan(degenerate, {1, 2, 3}).point.valid);
    EXPECT_FALSE(closestPointByScan(plate(2, 0), {notANumber, 2, 3}).point.valid);
    EXPECT_FALSE(closestPointByScan(plate(2, 0), Point()).point.valid);
}

TEST(ClosestPointByScan, betweenParallelPlatesIsTheirDistance)
{
    for (const bool reversed : {false, true}) {
        const std::vector<TriFace> upper = plate(4, 3, reversed);
        for (const TriFace &face : plate(4, 0)) {
            for (int i = 0; i < 3; ++i) {
                const FacePoint closest = closestPointByScan(upper, face.vertex(i));
                ASSERT_TRUE(closest.point.valid);
                EXPECT_EQ(distance(closest.point, face.vertex(i)), 3.0);
            }
        }
    }
}

TEST(ClosestPointByScan, takesTheNearestFaceAndTheFirstOfEquals)
{
    std::vector<TriFace> faces{{{0, 0, 9}, {4, 0, 9}, {0, 4, 9}},
                               {{0, 0, 2}, {4, 0, 2}, {0, 4, 2}},
                               {{0, 0, -2}, {4, 0, -2}, {0, 4, -2}},
                               {{0, 0, 2}, {4, 0, 2}, {0, 4, 2}}};
    EXPECT_EQ(closestPointByScan(faces, {1, 1, 0}).face, 1u);
    EXPECT_EQ(euclidean(closestPointByScan(faces, {1, 1, 0}).point).z, 2.0);
    EXPECT_EQ(closestPointByScan(faces, {1, 1, -0.5}).face, 2u);
    faces.insert(faces.begin(), TriFace());
    EXPECT_EQ(closestPointByScan(faces, {1, 1, 0}).face, 2u);
}

// Distances whose squares differ but which round to the same number are equal: the earlier face stays.
TEST(ClosestPointByScan, comparesRoundedDistancesNotSquares)
{
    // The plates are met at 1 and at the next number below 1. Their squares are 1 and 1 - 2^-52, both of
    // which are numbers; the root of the latter is 1 - 2^-53 - ..., which rounds to that next number: nearer.
    const double below = 1.0 - std::numeric_limits<double>::epsilon() / 2;
    const auto at = [](double z) { return TriFace({0, 0, z}, {4, 0, z}, {0, 4, z}); };
    const std::vector<TriFace> faces{at(1.0), at(below)};
    EXPECT_EQ(closestPointByScan(faces, {1, 1, 0}).face, 1u);
    // Two vertices at (1, 0, 2^-27) and (1, 0, 0) from the origin: the squares are 1 + 2^-54, which rounds to
    // 1, and 1; at 2^-26 it is 1 + 2^-52, whose root 1 + 2^-53 - ... rounds to 1. Equal, so the first stays.
    const double lift = 0x1p-26;
    const std::vector<TriFace> corners{TriFace({1, 0, lift}, {3, 1, lift}, {3, -1, lift}),
                                       TriFace({1, 0, 0}, {3, 1, 0}, {3, -1, 0})};
    EXPECT_GT(squaredDistance({1, 0, lift}, {0, 0, 0}), squaredDistance({1, 0, 0}, {0, 0, 0}));
    EXPECT_EQ(closestPointByScan(corners, {0, 0, 0}).face, 0u);
}

TEST(NearestHitByScan, ofNothingIsInvalid)
{
    EXPECT_FALSE(nearestHitByScan({}, upwardsAt(1, 1), {1, 1, 0}).point.valid);
    EXPECT_FALSE(nearestHitByScan(plate(2, 1), Line(), {1, 1, 0}).point.valid);
    EXPECT_FALSE(nearestHitByScan(plate(2, 1), upwardsAt(7.5, 1.25), {1, 1, 0}).point.valid);
    EXPECT_EQ(nearestHitByScan({}, upwardsAt(1, 1), {1, 1, 0}).face, noFace);
}

TEST(NearestHitByScan, takesTheNearestOnEitherSideAndTheFirstOfEquals)
{
    const auto at = [](double z) { return TriFace({0, 0, z}, {4, 0, z}, {0, 4, z}); };
    const std::vector<TriFace> faces{at(9), at(3), at(-2), at(2)};
    EXPECT_EQ(nearestHitByScan(faces, upwardsAt(1, 1), {1, 1, 0}).face, 2u);
    EXPECT_EQ(euclidean(nearestHitByScan(faces, upwardsAt(1, 1), {1, 1, 0}).point).z, -2.0);
    EXPECT_EQ(nearestHitByScan(faces, upwardsAt(1, 1), {1, 1, 5.5}).face, 1u);
    EXPECT_EQ(nearestHitByScan(faces, upwardsAt(1, 1), {1, 1, 100}).face, 0u);
}

// A face that is met only on the extension of an edge counts like any other, see TriFace::hitBy().
TEST(NearestHitByScan, countsHitsOnTheExtensionOfAnEdge)
{
    const std::vector<TriFace> faces{TriFace({0, 0, 5}, {1, 0, 5}, {0, 1, 5}),
                                     TriFace({100, 0, 1}, {101, 0, 1}, {100, 1, 1})};
    const FacePoint hit = nearestHitByScan(faces, upwardsAt(0.25, 0), {0.25, 0, 0});
    EXPECT_EQ(hit.face, 1u);
    EXPECT_EQ(euclidean(hit.point).z, 1.0);
}
