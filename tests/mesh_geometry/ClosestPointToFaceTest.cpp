#include "meshes/geometry/TriFace.h"
#include "tests/mesh_geometry/ExactGeometry.h"
#include "tests/support/TrueDistance.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <random>

using namespace MERV::BRep;

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

// In the plane z = 0, with the right angle at the origin.
const TriFace rightAngled({0, 0, 0}, {4, 0, 0}, {0, 4, 0});
// In the plane z = 0, with an angle of 166 degrees at the origin, which is vertex 0.
const TriFace obtuse({0, 0, 0}, {4, 0, 0}, {-4, 1, 0});

void expectPoint(const Point &point, double x, double y, double z)
{
    ASSERT_TRUE(point.valid);
    const Point place = euclidean(point);
    EXPECT_NEAR(place.x, x, 1e-12);
    EXPECT_NEAR(place.y, y, 1e-12);
    EXPECT_NEAR(place.z, z, 1e-12);
}

} // namespace

TEST(ClosestPointToFace, aboveTheInsideIsTheFoot)
{
    expectPoint(rightAngled.closestPointTo({1, 1, 5}), 1, 1, 0);
    expectPoint(rightAngled.closestPointTo({1, 1, -5}), 1, 1, 0);
    expectPoint(rightAngled.closestPointTo({4.0 / 3, 4.0 / 3, 2}), 4.0 / 3, 4.0 / 3, 0);
    expectPoint(rightAngled.closestPointTo({1, 1, 0}), 1, 1, 0); // on the face itself
}

TEST(ClosestPointToFace, aboveAnEdgeIsTheFoot)
{
    expectPoint(rightAngled.closestPointTo({2, 0, 3}), 2, 0, 0);
    expectPoint(rightAngled.closestPointTo({2, 2, 3}), 2, 2, 0);
    expectPoint(rightAngled.closestPointTo({0, 1, 3}), 0, 1, 0);
}

TEST(ClosestPointToFace, aboveAVertexIsTheFoot)
{
    expectPoint(rightAngled.closestPointTo({0, 0, 3}), 0, 0, 0);
    expectPoint(rightAngled.closestPointTo({4, 0, 3}), 4, 0, 0);
    expectPoint(rightAngled.closestPointTo({0, 4, -3}), 0, 4, 0);
}

TEST(ClosestPointToFace, besideAnEdgeIsTheFootOnTheEdge)
{
    expectPoint(rightAngled.closestPointTo({3, -2, 1}), 3, 0, 0);
    expectPoint(rightAngled.closestPointTo({-2, 1, 1}), 0, 1, 0);
    expectPoint(rightAngled.closestPointTo({3, 3, 7}), 2, 2, 0);
}

TEST(ClosestPointToFace, besideAnEdgePastItsEndIsTheNearerEnd)
{
    expectPoint(rightAngled.closestPointTo({5, -0.5, 1}), 4, 0, 0);
    expectPoint(rightAngled.closestPointTo({-0.5, 5, 1}), 0, 4, 0);
}

TEST(ClosestPointToFace, beyondACornerIsTheVertex)
{
    expectPoint(rightAngled.closestPointTo({-1, -2, 1}), 0, 0, 0);
    expectPoint(rightAngled.closestPointTo({9, -1, 1}), 4, 0, 0);
    expectPoint(rightAngled.closestPointTo({-1, 9, 1}), 0, 4, 0);
}

TEST(ClosestPointToFace, onTheLineOfAnEdgePastItsEndsIsTheVertex)
{
    // On the line of edge 0: past vertex 1 edge 1 has the point outside, past vertex 0 edge 2 has.
    expectPoint(rightAngled.closestPointTo({6, 0, 2}), 4, 0, 0);
    expectPoint(rightAngled.closestPointTo({-6, 0, 2}), 0, 0, 0);
    expectPoint(rightAngled.closestPointTo({5, -1, 2}), 4, 0, 0);
    expectPoint(rightAngled.closestPointTo({-1, 5, 2}), 0, 4, 0);
    expectPoint(rightAngled.closestPointTo({0, 6, 2}), 0, 4, 0);
    expectPoint(rightAngled.closestPointTo({0, -6, 2}), 0, 0, 0);
}

// On purpose: in the wedge beyond an obtuse corner the corner is the answer, though a point of an edge is
// nearer. (3, -1) lies below edge 0 and, with 4 y + x < 0, below the line of edge 2 as well; the nearest
// point would be (3, 0) at distance 1, the answer is at sqrt(10).
TEST(ClosestPointToFace, beyondAnObtuseCornerIsTheVertexThoughAnEdgeIsNearer)
{
    expectPoint(obtuse.closestPointTo({3, -1, 0}), 0, 0, 0);
    // Exactly on the line of edge 2 beyond vertex 0, 1 below the end of edge 0.
    expectPoint(obtuse.closestPointTo({4, -1, 0}), 0, 0, 0);
    // Past that line only edge 0 has the point outside: the nearest point again.
    expectPoint(obtuse.closestPointTo({3.5, -0.5, 0}), 3.5, 0, 0);
}

TEST(ClosestPointToFace, doesNotDependOnTheWinding)
{
    const TriFace reversed({0, 0, 0}, {0, 4, 0}, {4, 0, 0});
    for (const Point &q :
         {Point(1, 1, 5), Point(3, -2, 1), Point(-1, -2, 1), Point(5, -0.5, 1), Point(3, 3, 7)})
        EXPECT_EQ(distance(rightAngled.closestPointTo(q), reversed.closestPointTo(q)), 0.0);
}

TEST(ClosestPointToFace, takesHomogeneousPoints)
{
    const TriFace face({0, 0, 0, 2}, {8, 0, 0, 2}, {0, 2, 0, 0.5});
    expectPoint(face.closestPointTo({2, 2, 10, 2}), 1, 1, 0);
    expectPoint(face.closestPointTo({9, -6, 3, 3}), 3, 0, 0);
    expectPoint(face.closestPointTo({2.5, -0.25, 0.5, 0.5}), 4, 0, 0);
}

TEST(ClosestPointToFace, ofAnInvalidOrDegenerateFaceIsInvalid)
{
    EXPECT_FALSE(TriFace().closestPointTo({0, 0, 0}).valid);
    EXPECT_FALSE(TriFace({1, 2, 3}, {1, 2, 3}, {4, 5, 6}).closestPointTo({0, 0, 0}).valid);
    EXPECT_FALSE(TriFace({0, 0, 0}, {1, 1, 1}, {2, 2, 2}).closestPointTo({0, 0, 0}).valid);
    EXPECT_FALSE(TriFace({notANumber, 0, 0}, {4, 0, 0}, {0, 4, 0}).closestPointTo({1, 1, 5}).valid);
    EXPECT_FALSE(TriFace({0, 0, 0}, {infinity, 0, 0}, {0, 4, 0}).closestPointTo({1, 1, 5}).valid);
}

TEST(ClosestPointToFace, toAnInvalidOrNonFinitePointIsInvalid)
{
    EXPECT_FALSE(rightAngled.closestPointTo(Point()).valid);
    EXPECT_FALSE(rightAngled.closestPointTo({notANumber, 0, 0}).valid);
    EXPECT_FALSE(rightAngled.closestPointTo({1, 1, notANumber}).valid);
    EXPECT_FALSE(rightAngled.closestPointTo({0, infinity, 0}).valid);
    EXPECT_FALSE(rightAngled.closestPointTo({0, 0, 0, notANumber}).valid);
}

// Numbers so large that all products overflow give no answer rather than a wrong one.
TEST(ClosestPointToFace, ofAFaceBeyondDoublePrecisionIsInvalid)
{
    const TriFace huge({0, 0, 0}, {1e200, 0, 0}, {0, 1e200, 0});
    EXPECT_FALSE(huge.closestPointTo({1, 1, 1}).valid);
}

namespace {

enum class Case
{
    OnEdgeLineInside,
    OnEdgeLineStart,
    OnEdgeLineEnd,
    Inside,
    Corner,
    EdgeFoot,
    EdgeStart,
    EdgeEnd,
    Count
};

struct Answer
{
    Case which;
    Point point;
};

constexpr std::size_t indexOf(Case which)
{
    return static_cast<std::size_t>(which);
}

Point along(const WholePoint &start, const WholePoint &direction, double t)
{
    const Point a = start.point(), d = direction.point();
    return {a.x + t * d.x, a.y + t * d.y, a.z + t * d.z};
}

Point footOnPlane(const WholeTriangle &triangle, const WholePoint &q)
{
    const WholePoint n = triangle.normal();
    return along(q, n, static_cast<double>(dot(n, triangle.p[0] - q)) / static_cast<double>(dot(n, n)));
}

Answer onEdge(const WholeTriangle &triangle, std::size_t i, const WholePoint &q)
{
    const WholePoint from = triangle.corner(i), to = triangle.corner(i + 1), e = to - from;
    const Whole reached = dot(e, q - from), length = dot(e, e);
    if (reached >= 0 && reached <= length)
        return {Case::EdgeFoot, along(from, e, static_cast<double>(reached) / static_cast<double>(length))};
    const bool startIsNearer = dot(q - from, q - from) < dot(q - to, q - to);
    return startIsNearer ? Answer{Case::EdgeStart, from.point()} : Answer{Case::EdgeEnd, to.point()};
}

// The rules in whole numbers, for a triangle that has an area.
Answer closestByTheRules(const WholeTriangle &triangle, const WholePoint &q)
{
    const auto s = triangle.sides(q, triangle.normal());
    for (std::size_t k = 0; k < 3; ++k) {
        const Whole following = s[(k + 1) % 3], last = s[(k + 2) % 3];
        if (s[k] != 0)
            continue;
        if (following >= 0 && last >= 0)
            return {Case::OnEdgeLineInside, footOnPlane(triangle, q)};
        return following >= 0 ? Answer{Case::OnEdgeLineStart, triangle.corner(k).point()}
                              : Answer{Case::OnEdgeLineEnd, triangle.corner(k + 1).point()};
    }
    if (std::all_of(s.begin(), s.end(), [](Whole value) { return value > 0; }))
        return {Case::Inside, footOnPlane(triangle, q)};
    for (std::size_t i = 0; i < 3; ++i) {
        if (s[i] < 0 && s[(i + 1) % 3] < 0)
            return {Case::Corner, triangle.corner(i + 1).point()};
    }
    return onEdge(triangle, s[0] < 0 ? 0 : s[1] < 0 ? 1 : 2, q);
}

} // namespace

// On whole coordinates all decisions of the face are exact, so they must be those of the rules in whole
// numbers, in every case and at every tie.
TEST(ClosestPointToFace, ofWholeTrianglesFollowsTheRulesExactly)
{
    std::array<int, indexOf(Case::Count)> met{};
    for (const Whole limit : {2, 3, 10}) {
        WholePoints points(static_cast<unsigned>(limit), limit);
        for (int i = 0; i < 100000; ++i) {
            const WholeTriangle triangle = points.nextTriangle();
            const WholePoint q = points.next();
            const Point closest = triangle.face().closestPointTo(q.point());
            if (triangle.normal() == WholePoint{}) {
                ASSERT_FALSE(closest.valid) << i;
                continue;
            }
            const Answer expected = closestByTheRules(triangle, q);
            ++met[indexOf(expected.which)];
            ASSERT_TRUE(closest.valid) << i;
            ASSERT_NEAR(distance(closest, expected.point), 0.0, 1e-12)
                << "round " << i << " within " << limit << ", case " << indexOf(expected.which);
        }
    }
    for (std::size_t which = 0; which < met.size(); ++which)
        EXPECT_GT(met[which], 300) << "case " << which;
}

namespace {

// The index of the obtuse corner, 3 if there is none.
std::size_t obtuseCorner(const std::array<Point, 3> &p)
{
    for (std::size_t i = 0; i < 3; ++i) {
        if (dot(difference(p[(i + 1) % 3], p[i]), difference(p[(i + 2) % 3], p[i])) < 0)
            return i;
    }
    return 3;
}

} // namespace

// Anywhere: the true closest point but for the wedge of an obtuse corner, where the answer is that corner.
TEST(ClosestPointToFace, isTheTrueOneUnlessItIsAnObtuseCorner)
{
    std::mt19937 random(3);
    std::uniform_real_distribution<double> coordinate(-10, 10);
    const auto next = [&] { return Point(coordinate(random), coordinate(random), coordinate(random)); };
    int different = 0;
    constexpr int rounds = 40000;
    for (int i = 0; i < rounds; ++i) {
        const std::array<Point, 3> p{next(), next(), next()};
        const Point q = next();
        const Point closest = TriFace(p[0], p[1], p[2]).closestPointTo(q);
        ASSERT_TRUE(closest.valid) << i;
        const double truth = static_cast<double>(trueDistance(p, q));
        const double answer = distance(closest, q);
        ASSERT_GE(answer, truth - 1e-9) << i;
        if (answer <= truth + 1e-9)
            continue;
        ++different;
        const std::size_t corner = obtuseCorner(p);
        ASSERT_LT(corner, 3u) << i;
        ASSERT_TRUE(closest.sameCoordinates(p[corner])) << i;
    }
    // About one in twenty random pairs lies in such a wedge.
    EXPECT_GT(different, rounds / 40);
    EXPECT_LT(different, rounds / 10);
}
