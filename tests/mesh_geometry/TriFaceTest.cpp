#include "meshes/geometry/TriFace.h"
#include "meshes/geometry/Fragment.h"
#include "tests/mesh_geometry/ExactGeometry.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <limits>
#include <memory>
#include <optional>
#include <utility>

using namespace MERV::BRep;

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

// In the plane z = 0, with the right angle at the origin and the normal (0, 0, 16).
const TriFace rightAngled({0, 0, 0}, {4, 0, 0}, {0, 4, 0});

void expectPoint(const Point &point, double x, double y, double z)
{
    ASSERT_TRUE(point.valid);
    const Point place = euclidean(point);
    EXPECT_DOUBLE_EQ(place.x, x);
    EXPECT_DOUBLE_EQ(place.y, y);
    EXPECT_DOUBLE_EQ(place.z, z);
}

Line upwardsAt(double x, double y)
{
    return {Point(x, y, 5), Point(0, 0, 1, 0)};
}

Plane planeOf(double a, double b, double c, double d)
{
    const double coefficients[4] = {a, b, c, d};
    return Plane(coefficients);
}

} // namespace

TEST(TriFace, ownsClonesOfItsPoints)
{
    Point corner(1, 2, 3);
    const TriFace face(corner, {4, 0, 0}, {0, 4, 0});
    corner.x = 7;
    EXPECT_TRUE(face.isValid());
    EXPECT_FALSE(face.sharesVertices());
    EXPECT_EQ(face.vertex(0).x, 1.0);
    EXPECT_EQ(face.vertex(1).x, 4.0);
    EXPECT_EQ(face.vertex(2).y, 4.0);
}

TEST(TriFace, copyIsDeep)
{
    auto original = std::make_unique<TriFace>(rightAngled);
    const TriFace copy(*original);
    EXPECT_NE(&copy.vertex(0), &original->vertex(0));
    original.reset();
    EXPECT_TRUE(copy.isValid());
    EXPECT_EQ(copy.vertex(1).x, 4.0);
}

TEST(TriFace, copyOfASharingFaceShares)
{
    const TriFace owner(rightAngled);
    {
        const TriFace sharing = TriFace::sharing(owner);
        EXPECT_TRUE(sharing.isValid());
        EXPECT_TRUE(sharing.sharesVertices());
        EXPECT_EQ(&sharing.vertex(0), &owner.vertex(0));
        const TriFace copy(sharing);
        EXPECT_TRUE(copy.sharesVertices());
        EXPECT_EQ(&copy.vertex(2), &owner.vertex(2));
        const TriFace ofSharing = TriFace::sharing(sharing);
        EXPECT_EQ(&ofSharing.vertex(1), &owner.vertex(1));
    }
    // The points outlive those that shared them.
    EXPECT_EQ(owner.vertex(1).x, 4.0);
    EXPECT_FALSE(TriFace::sharing(TriFace()).isValid());
}

TEST(TriFace, assignmentReplacesPoints)
{
    TriFace face({9, 9, 9}, {8, 8, 8}, {7, 7, 7});
    face = rightAngled;
    EXPECT_NE(&face.vertex(0), &rightAngled.vertex(0));
    EXPECT_EQ(face.vertex(1).x, 4.0);
    const TriFace &same = face;
    face = same;
    EXPECT_EQ(face.vertex(1).x, 4.0);
    face = TriFace::sharing(rightAngled);
    EXPECT_TRUE(face.sharesVertices());
    face = TriFace();
    EXPECT_FALSE(face.isValid());
}

TEST(TriFace, moveHandsThePointsOver)
{
    TriFace face(rightAngled);
    TriFace moved(std::move(face));
    EXPECT_EQ(moved.vertex(1).x, 4.0);
    TriFace assigned({9, 9, 9}, {8, 8, 8}, {7, 7, 7});
    assigned = std::move(moved);
    EXPECT_TRUE(assigned.isValid());
    EXPECT_FALSE(assigned.sharesVertices());
    EXPECT_EQ(assigned.vertex(1).x, 4.0);
    TriFace sharing = TriFace::sharing(rightAngled);
    const TriFace movedSharing(std::move(sharing));
    EXPECT_TRUE(movedSharing.sharesVertices());
    EXPECT_EQ(&movedSharing.vertex(0), &rightAngled.vertex(0));
}

TEST(TriFace, normalIsNotNormalised)
{
    EXPECT_EQ(rightAngled.normal().x, 0.0);
    EXPECT_EQ(rightAngled.normal().y, 0.0);
    EXPECT_EQ(rightAngled.normal().z, 16.0);
    EXPECT_TRUE(rightAngled.normal().valid);
    // The same triangle in homogeneous coordinates.
    EXPECT_EQ(TriFace({0, 0, 0, 3}, {8, 0, 0, 2}, {0, -4, 0, -1}).normal().z, 16.0);
    EXPECT_EQ(TriFace({0, 0, 0}, {0, 4, 0}, {4, 0, 0}).normal().z, -16.0);
}

TEST(TriFace, normalOfADegenerateOrInvalidFaceIsZero)
{
    for (const TriFace &face :
         {TriFace(), TriFace({1, 2, 3}, {1, 2, 3}, {5, 6, 7}), TriFace({0, 0, 0}, {1, 1, 1}, {3, 3, 3})}) {
        const Point normal = face.normal();
        EXPECT_EQ(normal.x, 0.0);
        EXPECT_EQ(normal.y, 0.0);
        EXPECT_EQ(normal.z, 0.0);
    }
}

TEST(TriFace, edgesRunFromOneVertexToTheNext)
{
    for (int i = 0; i < 3; ++i) {
        const Line edge = rightAngled.edge(i);
        ASSERT_TRUE(edge.isValid());
        EXPECT_TRUE(edge.from().sameCoordinates(rightAngled.vertex(i)));
        EXPECT_TRUE(edge.to().sameCoordinates(rightAngled.vertex((i + 1) % 3)));
    }
    EXPECT_FALSE(rightAngled.edge(-1).isValid());
    EXPECT_FALSE(rightAngled.edge(3).isValid());
    EXPECT_FALSE(TriFace().edge(0).isValid());
}

TEST(TriFace, planeHasTheNormalOfTheFace)
{
    const TriFace lifted({0, 0, 2}, {4, 0, 2}, {0, 4, 2});
    const Plane plane = lifted.plane();
    ASSERT_TRUE(plane.isValid());
    EXPECT_EQ(plane[2], 16.0);
    EXPECT_EQ(plane[3], -32.0);
    EXPECT_FALSE(TriFace().plane().isValid());
}

TEST(TriFace, isHitThroughItsInsideFromBothSides)
{
    EXPECT_TRUE(rightAngled.hitBy(upwardsAt(1, 1)));
    EXPECT_TRUE(rightAngled.hitBy(Line(Point(1, 1, 5), Point(0, 0, -1, 0))));
    expectPoint(rightAngled.intersection(upwardsAt(1, 1)), 1, 1, 0);
    // A slanting line, from (0, 0, 2) through (1, 0.5, 1) to (2, 1, 0).
    expectPoint(rightAngled.intersection(Line(Point(0, 0, 2), Point(1, 0.5, 1))), 2, 1, 0);
    EXPECT_FALSE(rightAngled.hitBy(upwardsAt(3, 3)));
    EXPECT_FALSE(rightAngled.intersection(upwardsAt(3, 3)).valid);
}

TEST(TriFace, isHitThroughEdgesAndVertices)
{
    EXPECT_TRUE(rightAngled.hitBy(upwardsAt(2, 0)));
    EXPECT_TRUE(rightAngled.hitBy(upwardsAt(2, 2)));
    EXPECT_TRUE(rightAngled.hitBy(upwardsAt(0, 0)));
    expectPoint(rightAngled.intersection(upwardsAt(4, 0)), 4, 0, 0);
    // At (4, 0), vertex 1, edges 0 and 1 are met; for edge 2, (0,-4) x (4,-4) = 16.
    EXPECT_EQ(side(rightAngled.edge(0), upwardsAt(4, 0)), 0.0);
    EXPECT_EQ(side(rightAngled.edge(1), upwardsAt(4, 0)), 0.0);
    EXPECT_EQ(side(rightAngled.edge(2), upwardsAt(4, 0)), 16.0);
}

// On purpose: one side that is exactly zero is a hit, though the line meets the edge's line beyond its ends.
TEST(TriFace, isHitByALineThroughTheExtensionOfAnEdge)
{
    EXPECT_TRUE(rightAngled.hitBy(upwardsAt(100, 0)));
    expectPoint(rightAngled.intersection(upwardsAt(100, 0)), 100, 0, 0);
    EXPECT_FALSE(rightAngled.hitBy(upwardsAt(100, 0.5)));
}

TEST(TriFace, isHitByALineInItsPlaneButDoesNotIntersectIt)
{
    const Line within(Point(1, 1, 0), Point(2, 3, 0));
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(side(rightAngled.edge(i), within), 0.0);
    EXPECT_TRUE(rightAngled.hitBy(within));
    EXPECT_FALSE(rightAngled.intersection(within).valid);
}

TEST(TriFace, isNotHitByParallelOrInvalidLines)
{
    EXPECT_FALSE(rightAngled.intersection(Line(Point(0, 0, 1), Point(1, 2, 1))).valid);
    EXPECT_FALSE(rightAngled.hitBy(Line()));
    EXPECT_FALSE(TriFace().hitBy(upwardsAt(1, 1)));
    EXPECT_FALSE(TriFace().intersection(upwardsAt(1, 1)).valid);
    EXPECT_FALSE(rightAngled.hitBy(Line(Point(1, 1, notANumber), Point(0, 0, 1, 0))));
}

TEST(TriFace, degenerateFaceMayBeHitButHasNoIntersection)
{
    // An edge between equal vertices counts as a side of exactly zero.
    const TriFace collapsed({1, 1, 0}, {1, 1, 0}, {2, 2, 0});
    EXPECT_TRUE(collapsed.hitBy(upwardsAt(50, 60)));
    EXPECT_FALSE(collapsed.intersection(upwardsAt(50, 60)).valid);
    const TriFace withNan({notANumber, 0, 0}, {4, 0, 0}, {0, 4, 0});
    EXPECT_FALSE(withNan.intersection(upwardsAt(1, 1)).valid);
    const TriFace infinite({0, 0, 0}, {infinity, 0, 0}, {0, 4, 0});
    EXPECT_FALSE(infinite.intersection(upwardsAt(1, 1)).valid);
}

// hitBy and intersection against sides and parameters in whole numbers.
TEST(TriFace, hitsOfWholeTrianglesAreExact)
{
    WholePoints points(1, 3);
    int hits = 0, misses = 0, zeros = 0, parallel = 0;
    for (int i = 0; i < 100000; ++i) {
        const WholeTriangle triangle = points.nextTriangle();
        const WholePoint from = points.next(), to = points.next();
        if (from == to)
            continue;
        const WholePoint direction = to - from;
        const auto s = triangle.sides(from, direction);
        const bool zero = s[0] == 0 || s[1] == 0 || s[2] == 0;
        const bool sameSign = (s[0] > 0) == (s[1] > 0) && (s[1] > 0) == (s[2] > 0);
        const TriFace face = triangle.face();
        const Line line(from.point(), to.point());
        ASSERT_EQ(face.hitBy(line), zero || sameSign) << i;
        const Point meet = face.intersection(line);
        const Whole slope = dot(triangle.normal(), direction);
        ASSERT_EQ(meet.valid, (zero || sameSign) && slope != 0) << i;
        zero ? ++zeros : sameSign ? ++hits : ++misses;
        if (slope == 0) {
            ++parallel;
            continue;
        }
        if (!meet.valid)
            continue;
        const double t =
            static_cast<double>(dot(triangle.normal(), triangle.p[0] - from)) / static_cast<double>(slope);
        const Point a = from.point(), b = direction.point();
        ASSERT_NEAR(distance(meet, {a.x + t * b.x, a.y + t * b.y, a.z + t * b.z}), 0.0, 1e-11) << i;
    }
    EXPECT_GT(hits, 1000);
    EXPECT_GT(misses, 1000);
    EXPECT_GT(zeros, 1000);
    EXPECT_GT(parallel, 1000);
}

TEST(TriFace, sectionRunsBetweenTheFirstTwoCrossings)
{
    // x = 1 crosses edge 0 at (1, 0) and edge 1 at (1, 3).
    const Segment section = rightAngled.sectionWith(planeOf(1, 0, 0, -1));
    ASSERT_TRUE(section.isValid());
    expectPoint(section.from, 1, 0, 0);
    expectPoint(section.to, 1, 3, 0);
    // x + 2 y = 3 crosses edge 0 at (3, 0) and, past edge 1 (4 - 3 > 0, 8 - 3 > 0), edge 2 at (0, 1.5).
    const Segment other = rightAngled.sectionWith(planeOf(1, 2, 0, -3));
    ASSERT_TRUE(other.isValid());
    expectPoint(other.from, 3, 0, 0);
    expectPoint(other.to, 0, 1.5, 0);
}

// On purpose: y = 1 cuts edges 1 and 2, yet without a crossing of edge 0 there is no section.
TEST(TriFace, sectionThatMissesTheFirstEdgeIsInvalid)
{
    EXPECT_FALSE(rightAngled.sectionWith(planeOf(0, 1, 0, -1)).isValid());
    // The same triangle with its vertices turned on by one has it.
    const TriFace turned({4, 0, 0}, {0, 4, 0}, {0, 0, 0});
    const Segment section = turned.sectionWith(planeOf(0, 1, 0, -1));
    ASSERT_TRUE(section.isValid());
    expectPoint(section.from, 3, 1, 0);
    expectPoint(section.to, 0, 1, 0);
}

TEST(TriFace, sectionThroughOneVertexHasNoLength)
{
    // x = 4 touches vertex 1, the end of edge 0 and the start of edge 1.
    const Segment touching = rightAngled.sectionWith(planeOf(1, 0, 0, -4));
    ASSERT_TRUE(touching.isValid());
    expectPoint(touching.from, 4, 0, 0);
    expectPoint(touching.to, 4, 0, 0);
    // On purpose: through vertex 1 and the inside of edge 2, it still stops at edge 1, where it begins.
    const Segment cutting = rightAngled.sectionWith(planeOf(1, 4, 0, -4));
    ASSERT_TRUE(cutting.isValid());
    expectPoint(cutting.from, 4, 0, 0);
    expectPoint(cutting.to, 4, 0, 0);
    // x + y = 0 touches vertex 0, the start of edge 0 and the end of edge 2.
    const Segment first = rightAngled.sectionWith(planeOf(1, 1, 0, 0));
    ASSERT_TRUE(first.isValid());
    expectPoint(first.to, 0, 0, 0);
}

TEST(TriFace, sectionWithoutACommonLineIsInvalid)
{
    EXPECT_FALSE(rightAngled.sectionWith(planeOf(1, 0, 0, -5)).isValid()); // beside it
    EXPECT_FALSE(rightAngled.sectionWith(planeOf(0, 0, 1, 0)).isValid());  // its own plane
    EXPECT_FALSE(rightAngled.sectionWith(planeOf(0, 1, 0, 0)).isValid());  // along edge 0
    EXPECT_FALSE(rightAngled.sectionWith(Plane()).isValid());
    EXPECT_FALSE(rightAngled.sectionWith(planeOf(0, 0, 0, 1)).isValid());
    EXPECT_FALSE(rightAngled.sectionWith(planeOf(notANumber, 0, 0, 1)).isValid());
    EXPECT_FALSE(TriFace().sectionWith(planeOf(1, 0, 0, -1)).isValid());
    EXPECT_FALSE(
        TriFace({notANumber, 0, 0}, {4, 0, 0}, {0, 4, 0}).sectionWith(planeOf(1, 0, 0, -1)).isValid());
}

TEST(TriFace, sectionAlongALaterEdgeJoinsItsEnds)
{
    // x = 0 runs along edge 2: edge 0 is met at (0, 0), edge 1 at (0, 4).
    const Segment section = rightAngled.sectionWith(planeOf(1, 0, 0, 0));
    ASSERT_TRUE(section.isValid());
    expectPoint(section.from, 0, 0, 0);
    expectPoint(section.to, 0, 4, 0);
}

namespace {

// Where a line from a to b with the products va and vb crosses; nothing if both lie on one side or within.
std::optional<Point> crossing(const WholePoint &a, const WholePoint &b, Whole va, Whole vb)
{
    if (va * vb > 0 || va == vb)
        return std::nullopt;
    const double t = static_cast<double>(va) / static_cast<double>(va - vb);
    const Point from = a.point(), along = (b - a).point();
    return Point(from.x + t * along.x, from.y + t * along.y, from.z + t * along.z);
}

} // namespace

TEST(TriFace, sectionsOfWholeTrianglesAreExact)
{
    WholePoints points(2, 3);
    int sections = 0, firstEdgeMissed = 0;
    for (int i = 0; i < 100000; ++i) {
        const WholeTriangle triangle = points.nextTriangle();
        const WholePoint normal = points.next();
        const Whole offset = points.next().x;
        std::array<Whole, 3> v{};
        for (std::size_t k = 0; k < 3; ++k)
            v[k] = dot(normal, triangle.p[k]) + offset;
        std::array<std::optional<Point>, 3> c;
        for (std::size_t k = 0; k < 3; ++k)
            c[k] = crossing(triangle.p[k], triangle.corner(k + 1), v[k], v[(k + 1) % 3]);
        const std::optional<Point> end = c[1] ? c[1] : c[2];
        const Point n = normal.point();
        const Segment section =
            triangle.face().sectionWith(planeOf(n.x, n.y, n.z, static_cast<double>(offset)));
        ASSERT_EQ(section.isValid(), c[0].has_value() && end.has_value()) << i;
        firstEdgeMissed += !c[0] && c[1] && c[2] ? 1 : 0;
        if (!section.isValid())
            continue;
        ++sections;
        ASSERT_NEAR(distance(section.from, *c[0]), 0.0, 1e-12) << i;
        ASSERT_NEAR(distance(section.to, *end), 0.0, 1e-12) << i;
    }
    EXPECT_GT(sections, 10000);
    EXPECT_GT(firstEdgeMissed, 1000);
}

TEST(Fragment, isAListOfFacesByValue)
{
    TriFragment fragment;
    EXPECT_EQ(fragment.size(), 0u);
    fragment.append(rightAngled);
    fragment.append(TriFace());
    ASSERT_EQ(fragment.size(), 2u);
    EXPECT_NE(&fragment[0].vertex(0), &rightAngled.vertex(0));
    EXPECT_EQ(fragment[0].vertex(1).x, 4.0);
    EXPECT_FALSE(fragment[1].isValid());
    EXPECT_EQ(fragment.all().size(), 2u);
    fragment.clear();
    EXPECT_EQ(fragment.size(), 0u);
}

TEST(Surface, isAListOfFacesByValue)
{
    TriSurface surface;
    surface.append(rightAngled);
    ASSERT_EQ(surface.size(), 1u);
    EXPECT_EQ(surface[0].vertex(2).y, 4.0);
    surface.clear();
    EXPECT_EQ(surface.size(), 0u);
}
