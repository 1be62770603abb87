#include "contours/ContourGeometry.h"
#include "contours/SegmentMarkers.h"
#include "contours/SkinGeometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

SegmentSnapshot line(std::vector<QPointF> points, float z = 1.0f)
{
    return {std::move(points), z};
}

// The pieces of the square (0, 0) .. (4, 4), each in a direction of its own.
std::vector<SegmentSnapshot> squareInPieces()
{
    return {line({{0, 0}, {4, 0}}), line({{4, 4}, {4, 0}}), line({{4, 4}, {0, 4}, {0, 0}})};
}

std::vector<QPointF> planar(const std::vector<Vector3> &outline)
{
    std::vector<QPointF> points;
    points.reserve(outline.size());
    for (const Vector3 &point : outline)
        points.emplace_back(point.x, point.y);
    return points;
}

} // namespace

TEST(ContourGeometry, pointsAreEqualWithinATinyTolerance)
{
    EXPECT_TRUE(samePoint({1.0, 2.0}, {1.0 + 5e-13, 2.0 - 5e-13}));
    EXPECT_FALSE(samePoint({1.0, 2.0}, {1.0 + 2e-12, 2.0}));
    EXPECT_FALSE(samePoint({1.0, 2.0}, {1.0, 2.0 + 2e-12}));
    EXPECT_FALSE(samePoint({NAN, 2.0}, {NAN, 2.0}));
}

TEST(ContourGeometry, slabIsHalfOpenButForASinglePlane)
{
    EXPECT_TRUE(liesInSlab(1.0f, 1.0f, 2.0f));
    EXPECT_FALSE(liesInSlab(2.0f, 1.0f, 2.0f));
    EXPECT_TRUE(liesInSlab(2.0f, 2.0f, 2.0f));
    EXPECT_FALSE(liesInSlab(2.0f, 3.0f, 3.0f));
    EXPECT_FALSE(liesInSlab(NAN, 0.0f, 3.0f));
}

TEST(ContourGeometry, openLineIsNoLoop)
{
    const std::vector<SegmentSnapshot> pool{line({{0, 0}, {4, 0}, {4, 4}})};
    EXPECT_FALSE(pullLoop(pool));
    EXPECT_TRUE(closedOutlines(pool).empty());
    EXPECT_FALSE(pullLoop({}));
}

TEST(ContourGeometry, piecesOfAnyDirectionChainIntoALoop)
{
    const std::vector<SegmentSnapshot> pool = squareInPieces();
    const auto loop = pullLoop(pool);
    ASSERT_TRUE(loop);
    EXPECT_EQ(*loop, (std::vector<std::size_t>{0, 1, 2}));
    // From the running end (0, 0) the first piece's first point is nearer: in order. Then piece 1 backwards
    // from (4, 0), and piece 2 in order from (4, 4).
    EXPECT_EQ(planar(loopOutline(pool, *loop)),
              (std::vector<QPointF>{{0, 0}, {4, 0}, {4, 0}, {4, 4}, {4, 4}, {0, 4}, {0, 0}}));
    EXPECT_DOUBLE_EQ(loopArea(pool), 16.0);
}

// The outline begins at the first point of the first piece, which is then a distance of 0 away; a closed
// piece has its last point as near, and "at least as near" turns it round.
TEST(ContourGeometry, closedPieceIsTakenBackwards)
{
    const std::vector<SegmentSnapshot> pool{line({{0, 0}, {4, 0}, {4, 4}, {0, 0}})};
    const auto loop = pullLoop(pool);
    ASSERT_TRUE(loop);
    EXPECT_EQ(planar(loopOutline(pool, *loop)), (std::vector<QPointF>{{0, 0}, {4, 4}, {4, 0}, {0, 0}}));
}

// At (4, 0) the search takes the first match, which leads to (8, 8) and nowhere else: no second try.
TEST(ContourGeometry, chainingIsGreedy)
{
    const std::vector<SegmentSnapshot> pool{line({{0, 0}, {4, 0}}), line({{4, 0}, {8, 8}}),
                                            line({{4, 0}, {4, 4}}), line({{4, 4}, {0, 0}})};
    EXPECT_FALSE(pullLoop(pool));
    EXPECT_EQ(loopArea(pool), 0.0);
    // Without the first one as start, nothing else closes either.
    EXPECT_TRUE(closedOutlines(pool).empty());
}

TEST(ContourGeometry, openFirstSegmentIsDroppedAndTheRestStillCloses)
{
    std::vector<SegmentSnapshot> pool = squareInPieces();
    pool.insert(pool.begin(), line({{20, 20}, {30, 30}}));
    EXPECT_EQ(loopArea(pool), 0.0); // only the loop of the first segment counts
    const auto outlines = closedOutlines(pool);
    ASSERT_EQ(outlines.size(), 1u);
    EXPECT_EQ(outlines[0].size(), 7u);
    EXPECT_EQ(outlines[0][0].z, 1.0);
}

TEST(ContourGeometry, twoLoopsOnOneSliceAreTwoOutlines)
{
    std::vector<SegmentSnapshot> pool = squareInPieces();
    pool.push_back(line({{1, 1}, {2, 1}, {2, 2}}));
    pool.push_back(line({{2, 2}, {1, 1}}));
    EXPECT_EQ(closedOutlines(pool).size(), 2u);
    EXPECT_DOUBLE_EQ(loopArea(pool), 16.0);
}

// A segment of one point begins where it ends: as the first of the pool it is a loop by itself and hides the
// real one.
TEST(ContourGeometry, onePointSegmentIsALoopOfItself)
{
    std::vector<SegmentSnapshot> pool = squareInPieces();
    pool.insert(pool.begin(), line({{1, 1}}));
    EXPECT_EQ(loopArea(pool), 0.0);
    EXPECT_EQ(closedOutlines(pool).size(), 2u);
}

TEST(ContourGeometry, emptySegmentHasNoOutline)
{
    const std::vector<SegmentSnapshot> pool{line({}), line({})};
    EXPECT_TRUE(closedOutlines(pool).empty());
    EXPECT_EQ(loopArea(pool), 0.0);
}

TEST(ContourGeometry, areaNeedsTwoSegments)
{
    EXPECT_EQ(loopArea(std::vector<SegmentSnapshot>{line({{0, 0}, {4, 0}, {4, 4}, {0, 0}})}), 0.0);
}

// 2^24 + 1 is no float: the third edge of length 1 is lost in the sum.
TEST(ContourGeometry, lengthIsSummedInSinglePrecision)
{
    const std::vector<QPointF> points{{0, 0}, {16777216, 0}, {16777217, 0}, {16777218, 0}};
    EXPECT_EQ(polylineLength(points, 0, 3), 16777216.0f);
    EXPECT_EQ(polylineLength(points, 1, 3), 2.0f);
    EXPECT_EQ(polylineLength(points, 2, 2), 0.0f);
    EXPECT_EQ(polylineLength(points, 3, 1), 0.0f);
    EXPECT_EQ(polylineLength({}, 0, -1), 0.0f);
}

TEST(SegmentMarkers, octagonAndDiamondsHaveTheirSizes)
{
    const auto octagon = vertexOctagon({10, 20});
    EXPECT_EQ(octagon[0], QPointF(10.05, 20.02));
    EXPECT_EQ(octagon[1], QPointF(10.02, 20.05));
    EXPECT_EQ(octagon[4], QPointF(9.95, 19.98));
    double twiceArea = 0.0;
    for (std::size_t i = 0; i < 8; ++i)
        twiceArea += octagon[i].x() * octagon[(i + 1) % 8].y() - octagon[(i + 1) % 8].x() * octagon[i].y();
    // A square of 0.1 mm without four corners of 0.03 x 0.03 / 2 each.
    EXPECT_NEAR(twiceArea / 2, 0.01 - 4 * 0.00045, 1e-12);

    EXPECT_TRUE(endDiamonds({}, true).empty());
    const std::vector<QPointF> plain = endDiamonds({{0, 0}, {5, 5}, {9, 0}}, false);
    ASSERT_EQ(plain.size(), 8u);
    EXPECT_EQ(plain[0], QPointF(0.2, 0));
    EXPECT_EQ(plain[4], QPointF(9.2, 0));
    const std::vector<QPointF> highlighted = endDiamonds({{0, 0}, {9, 0}}, true);
    ASSERT_EQ(highlighted.size(), 16u);
    EXPECT_EQ(highlighted[0], QPointF(0.3, 0));
    EXPECT_EQ(highlighted[4], QPointF(9.3, 0));
    EXPECT_EQ(highlighted[8], QPointF(0.2, 0));
    EXPECT_EQ(endDiamonds({{1, 1}}, false).size(), 8u);
}

// Three pieces of the x axis: 0..1, 3..2 (backwards) and 4..5, stored out of order.
TEST(SkinGeometry, chainFollowsNearestEnds)
{
    const std::vector<SegmentSnapshot> level{line({{4, 0}, {5, 0}}), line({{0, 0}, {1, 0}}),
                                             line({{3, 0}, {2, 0}})};
    // From segment 0 (4..5): its best predecessor is segment 2 by its first point (3, 0), so walked
    // backwards; its best successor by (5, 0) is segment 2 as well, at distance 2: the same one, the nearer
    // side wins. Segment 2's successor (from its last point (2, 0)) is segment 1 by its last point (1, 0),
    // backwards, which doubled is forwards.
    EXPECT_EQ(orderChain(level), (std::vector<ChainLink>{{1, 1}, {2, -1}, {0, 1}}));
}

// Three pieces of a ring. The last one ends where the first begins, but no nearer than the second begins to
// its end: it must be strictly nearer to stand before the first, and so comes at the end.
TEST(SkinGeometry, predecessorMustBeNearerThanTheSuccessor)
{
    const QPointF a(0, 0);
    const QPointF b(4, 0);
    const QPointF c(2, 3);
    EXPECT_EQ(orderChain(std::vector<SegmentSnapshot>{line({a, b}), line({b, c}), line({c, a})}),
              (std::vector<ChainLink>{{0, 1}, {1, 1}, {2, 1}}));
    // With a gap of 0.5 behind the first piece the last one is nearer, and stands before it.
    EXPECT_EQ(orderChain(std::vector<SegmentSnapshot>{line({a, {3.5, 0}}), line({b, c}), line({c, a})}),
              (std::vector<ChainLink>{{2, 1}, {0, 1}, {1, 1}}));
}

TEST(SkinGeometry, singleSegmentIsAChain)
{
    EXPECT_EQ(orderChain(std::vector<SegmentSnapshot>{line({{0, 0}, {1, 0}})}),
              (std::vector<ChainLink>{{0, 1}}));
    EXPECT_TRUE(orderChain({}).empty());
}

// Two lines of two points each, one above the other: b' = (1, 0) is 1 away from a, as is a' from b; the lower
// chain advances only for a strictly shorter edge, so the upper goes first.
TEST(SkinGeometry, twoParallelLinesGiveTwoTriangles)
{
    const std::vector<SegmentSnapshot> lower{line({{0, 0}, {1, 0}}, 0.0f)};
    const std::vector<SegmentSnapshot> upper{line({{0, 0}, {1, 0}}, 2.0f)};
    const std::vector<SkinTriangle> strip = stitchChains(lower, upper);
    ASSERT_EQ(strip.size(), 2u);
    const auto corner = [&](std::size_t triangle, std::size_t index) {
        const Vector3 &c = strip[triangle].corners[index];
        return std::array{c.x, c.y, c.z};
    };
    EXPECT_EQ(corner(0, 0), (std::array{0.0, 0.0, 0.0}));
    EXPECT_EQ(corner(0, 1), (std::array{0.0, 0.0, 2.0}));
    EXPECT_EQ(corner(0, 2), (std::array{1.0, 0.0, 2.0}));
    EXPECT_EQ(corner(1, 0), (std::array{0.0, 0.0, 0.0}));
    EXPECT_EQ(corner(1, 1), (std::array{1.0, 0.0, 2.0}));
    EXPECT_EQ(corner(1, 2), (std::array{1.0, 0.0, 0.0}));
    // (0, 0, 2) x (1, 0, 2) = (0, 2, 0), and (1, 0, 2) x (1, 0, 0) = (0, 2, 0).
    EXPECT_EQ(strip[0].normal.y, 2.0);
    EXPECT_EQ(strip[1].normal.y, 2.0);
    EXPECT_EQ(strip[0].normal.x, 0.0);
    EXPECT_EQ(strip[0].normal.z, 0.0);
}

TEST(SkinGeometry, upperChainIsTurnedWhenItsEndsLieCrosswise)
{
    const std::vector<SegmentSnapshot> lower{line({{0, 0}, {1, 0}}, 0.0f)};
    const std::vector<SegmentSnapshot> upper{line({{1, 0}, {0, 0}}, 2.0f)};
    const std::vector<SkinTriangle> strip = stitchChains(lower, upper);
    ASSERT_EQ(strip.size(), 2u);
    EXPECT_EQ(strip[0].corners[1].x, 0.0);
    EXPECT_EQ(strip[0].corners[2].x, 1.0);
}

// The upper line runs through, the lower one has a gap from 1 to 2: 3 + 3 points give 4 steps, of which the
// one across the gap makes no triangle.
TEST(SkinGeometry, noTriangleSpansAGap)
{
    const std::vector<SegmentSnapshot> lower{line({{0, 0}, {1, 0}}, 0.0f), line({{2, 0}, {3, 0}}, 0.0f)};
    const std::vector<SegmentSnapshot> upper{line({{0, 0}, {1.5, 0}, {3, 0}}, 1.0f)};
    const std::vector<SkinTriangle> strip = stitchChains(lower, upper);
    EXPECT_EQ(strip.size(), 3u + 2u - 1u);
    for (const SkinTriangle &triangle : strip) {
        bool at1 = false;
        bool at2 = false;
        for (const Vector3 &c : triangle.corners) {
            at1 = at1 || (c.z == 0.0 && c.x == 1.0);
            at2 = at2 || (c.z == 0.0 && c.x == 2.0);
        }
        EXPECT_FALSE(at1 && at2);
    }
}

TEST(SkinGeometry, skinJoinsEachLevelToTheNext)
{
    const std::vector<SegmentSnapshot> segments{
        line({{0, 0}, {1, 0}}, 5.0f), line({{0, 0}, {1, 0}}, 1.0f), line({{0, 0}, {1, 0}}, 3.0f),
        line({{0, 0}, {1, 0}}, std::numeric_limits<float>::quiet_NaN())};
    const std::vector<SkinTriangle> skin = skinOf(segments);
    ASSERT_EQ(skin.size(), 4u);
    EXPECT_EQ(skin[0].corners[0].z, 1.0);
    EXPECT_EQ(skin[0].corners[1].z, 3.0);
    EXPECT_EQ(skin[3].corners[0].z, 3.0);
    EXPECT_EQ(skin[3].corners[1].z, 5.0);
    EXPECT_TRUE(skinOf(std::vector<SegmentSnapshot>{segments[0], segments[0]}).empty());
    EXPECT_TRUE(skinOf({}).empty());
}

TEST(SkinGeometry, emptySegmentsGiveNoTriangles)
{
    const std::vector<SegmentSnapshot> segments{line({}, 1.0f), line({{0, 0}, {1, 0}}, 2.0f)};
    EXPECT_TRUE(skinOf(segments).empty());
}
