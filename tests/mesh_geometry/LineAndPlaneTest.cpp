#include "meshes/geometry/Line.h"
#include "meshes/geometry/Plane.h"
#include "meshes/geometry/Point.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstddef>
#include <limits>

using namespace MERV::BRep;

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

void expectPoint(const Point &point, double x, double y, double z)
{
    ASSERT_TRUE(point.valid);
    const Point place = euclidean(point);
    EXPECT_DOUBLE_EQ(place.x, x);
    EXPECT_DOUBLE_EQ(place.y, y);
    EXPECT_DOUBLE_EQ(place.z, z);
}

// The element (row, column) of p q^T - q p^T.
double element(const Point &p, const Point &q, std::size_t row, std::size_t column)
{
    const std::array<double, 4> a{p.x, p.y, p.z, p.w}, b{q.x, q.y, q.z, q.w};
    return a[row] * b[column] - b[row] * a[column];
}

} // namespace

TEST(Point, isInvalidUnlessMadeFromCoordinates)
{
    EXPECT_FALSE(Point().valid);
    const Point point(1, 2, 3);
    EXPECT_TRUE(point.valid);
    EXPECT_EQ(point.w, 1.0);
}

TEST(Point, euclideanFormIsDividedByW)
{
    expectPoint(Point(2, 4, -6, 2), 1, 2, -3);
    EXPECT_EQ(euclidean(Point(2, 4, -6, 2)).w, 1.0);
    EXPECT_FALSE(euclidean(Point()).valid);
}

TEST(Point, distanceIsThatOfEuclideanForms)
{
    // (1, 2, 3) and (4, 6, 3): 3, 4, 0 apart.
    EXPECT_EQ(distance(Point(2, 4, 6, 2), Point(-4, -6, -3, -1)), 5.0);
    EXPECT_EQ(squaredDistance(Point(2, 4, 6, 2), Point(-4, -6, -3, -1)), 25.0);
    EXPECT_EQ(distance(Point(1, 1, 1), Point(2, 2, 2, 2)), 0.0);
}

TEST(Point, sameCoordinatesCompareAllFourByValue)
{
    EXPECT_TRUE(Point(0.0, 1, 2).sameCoordinates(Point(-0.0, 1, 2)));
    EXPECT_FALSE(Point(1, 2, 3, 1).sameCoordinates(Point(2, 4, 6, 2)));
    EXPECT_FALSE(Point(notANumber, 0, 0).sameCoordinates(Point(notANumber, 0, 0)));
    Point invalid(1, 2, 3);
    invalid.valid = false;
    EXPECT_TRUE(Point(1, 2, 3).sameCoordinates(invalid));
}

TEST(Line, holdsTheElementsOfThePlueckerMatrix)
{
    const Point p(1, 2, 3, 4), q(-2, 5, 7, 0.5);
    const Line line(p, q);
    ASSERT_TRUE(line.isValid());
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(line.direction()[i], element(p, q, 3, i));
        EXPECT_EQ(line.moment()[i], element(p, q, (i + 1) % 3, (i + 2) % 3));
    }
    EXPECT_TRUE(line.from().sameCoordinates(p));
    EXPECT_TRUE(line.to().sameCoordinates(q));
}

TEST(Line, needsTwoValidFiniteDifferentPoints)
{
    const Point p(1, 2, 3);
    EXPECT_FALSE(Line().isValid());
    EXPECT_FALSE(Line(p, p).isValid());
    EXPECT_FALSE(Line(p, Point(2, 4, 6, 2)).isValid()); // the same place
    EXPECT_FALSE(Line(p, Point()).isValid());
    EXPECT_FALSE(Line(Point(), p).isValid());
    EXPECT_FALSE(Line(p, Point(notANumber, 0, 0)).isValid());
    EXPECT_FALSE(Line(p, Point(infinity, 0, 0)).isValid());
    EXPECT_TRUE(Line(p, Point(0, 0, 1, 0)).isValid()); // along +z
}

TEST(Line, sideIsZeroForLinesThatMeetAndSignedForOthers)
{
    const Line xAxis(Point(0, 0, 0), Point(1, 0, 0));
    // Lines along +y that cross 2 above and 2 below: opposite sides, 1 * 2 each.
    const Line above(Point(0, 0, 2), Point(0, 1, 2)), below(Point(0, 0, -2), Point(0, 1, -2));
    EXPECT_EQ(std::abs(side(xAxis, above)), 2.0);
    EXPECT_EQ(side(xAxis, above), -side(xAxis, below));
    EXPECT_EQ(side(xAxis, above), side(above, xAxis));
    EXPECT_EQ(side(xAxis, Line(Point(7, 0, 0), Point(7, 1, 1))), 0.0);
    EXPECT_EQ(side(xAxis, Line(Point(0, 3, 0), Point(1, 3, 0))), 0.0); // parallel: they meet at infinity
    EXPECT_EQ(side(xAxis, xAxis), 0.0);
}

TEST(Line, sideOfAnInvalidLineIsZero)
{
    const Line xAxis(Point(0, 0, 0), Point(1, 0, 0));
    EXPECT_EQ(side(xAxis, Line()), 0.0);
    EXPECT_EQ(side(Line(), xAxis), 0.0);
}

// The convention on which the search for closest points rests: a line that runs along the normal of the
// triangle (0,0,0), (4,0,0), (0,4,0) through (1, 1) leaves all edges on its left. By hand, with e x (q - a)
// along z: (4,0) x (1,1) = 4, (-4,4) x (-3,1) = 8, (0,-4) x (1,-3) = 4.
TEST(Line, sideIsPositiveInsideATriangleSeenAlongItsNormal)
{
    const Point p0(0, 0, 0), p1(4, 0, 0), p2(0, 4, 0);
    const Line upwards(Point(1, 1, 5), Point(0, 0, 1, 0));
    EXPECT_EQ(side(Line(p0, p1), upwards), 4.0);
    EXPECT_EQ(side(Line(p1, p2), upwards), 8.0);
    EXPECT_EQ(side(Line(p2, p0), upwards), 4.0);
    const Line downwards(Point(1, 1, 5), Point(0, 0, -1, 0));
    EXPECT_EQ(side(Line(p0, p1), downwards), -4.0);
    EXPECT_GT(triangleNormal(p0, p1, p2).z, 0.0);
    EXPECT_GT(Plane(p0, p1, p2)[2], 0.0);
}

TEST(Line, meetsAPlane)
{
    const double tilted[4] = {1, 1, 0, -4}; // x + y = 4
    expectPoint(Line(Point(0, 0, 0), Point(1, 1, 1)).intersection(Plane(tilted)), 2, 2, 2);
    // The same line given backwards and by a direction.
    expectPoint(Line(Point(1, 1, 1), Point(0, 0, 0)).intersection(Plane(tilted)), 2, 2, 2);
    expectPoint(Line(Point(1, 1, 1), Point(3, 3, 3, 0)).intersection(Plane(tilted)), 2, 2, 2);
}

TEST(Line, meetsNoPlaneThatIsParallel)
{
    const double floor[4] = {0, 0, 1, 0};
    const Plane plane(floor);
    EXPECT_FALSE(Line(Point(0, 0, 1), Point(1, 0, 1)).intersection(plane).valid);
    EXPECT_FALSE(Line(Point(0, 0, 0), Point(1, 0, 0)).intersection(plane).valid); // within it
    EXPECT_FALSE(Line().intersection(plane).valid);
    EXPECT_FALSE(Line(Point(0, 0, 0), Point(0, 0, 1)).intersection(Plane()).valid);
}

TEST(Line, crossingThatOverflowsIsInvalid)
{
    // y = 0 * 1e200 - 1e120 * -1e200 is beyond double precision, w = 2e200 is not.
    const double steep[4] = {1e200, 0, 0, -1e200};
    const Line line(Point(0, 0, 0), Point(2, 1e120, 0));
    ASSERT_TRUE(line.isValid());
    EXPECT_FALSE(line.intersection(Plane(steep)).valid);
}

TEST(Plane, goesThroughThreePoints)
{
    const Point p0(1, 0, 0), p1(0, 2, 0), p2(0, 0, 3);
    const Plane plane(p0, p1, p2);
    ASSERT_TRUE(plane.isValid());
    // (-1,2,0) x (0,-2,3) = (6, 3, 2); the offset is -6.
    EXPECT_EQ(plane[0], 6.0);
    EXPECT_EQ(plane[1], 3.0);
    EXPECT_EQ(plane[2], 2.0);
    EXPECT_EQ(plane[3], -6.0);
    for (const Point &point : {p0, p1, p2})
        EXPECT_EQ(plane * point, 0.0);
    EXPECT_EQ(plane * Point(1, 1, 1), 5.0);
    EXPECT_EQ(plane * Point(2, 2, 2, 2), 10.0); // the product takes w as it is
}

TEST(Plane, takesTheEuclideanFormsOfPoints)
{
    const Plane plane(Point(2, 0, 0, 2), Point(0, -2, 0, -1), Point(0, 0, 3));
    EXPECT_EQ(plane[0], 6.0);
    EXPECT_EQ(plane[3], -6.0);
}

TEST(Plane, isPerpendicularToADirectionThroughAPoint)
{
    const Plane plane = Plane::perpendicular(Point(2, 4, 6, 2), Point(0, 6, 0, 3));
    ASSERT_TRUE(plane.isValid());
    EXPECT_EQ(plane[0], 0.0);
    EXPECT_EQ(plane[1], 2.0);
    EXPECT_EQ(plane[2], 0.0);
    EXPECT_EQ(plane[3], -4.0);
}

TEST(Plane, ofAZeroOrNonFiniteNormalIsInvalid)
{
    EXPECT_FALSE(Plane().isValid());
    EXPECT_FALSE(Plane::perpendicular(Point(1, 2, 3), Point(0, 0, 0)).isValid());
    EXPECT_FALSE(Plane::perpendicular(Point(), Point(0, 0, 1)).isValid());
    EXPECT_FALSE(Plane::perpendicular(Point(1, 2, 3), Point()).isValid());
    EXPECT_FALSE(Plane::perpendicular(Point(notANumber, 0, 0), Point(1, 0, 0)).isValid());
    EXPECT_FALSE(Plane(Point(0, 0, 0), Point(1, 1, 1), Point(2, 2, 2)).isValid());
    EXPECT_FALSE(Plane(Point(0, 0, 0), Point(1, 0, 0), Point()).isValid());
    EXPECT_FALSE(Plane(Point(0, 0, 0), Point(1, 0, 0), Point(0, infinity, 0)).isValid());
    const double noNormal[4] = {0, 0, 0, 1}, notFinite[4] = {0, 0, 1, infinity};
    EXPECT_FALSE(Plane(noNormal).isValid());
    EXPECT_FALSE(Plane(notFinite).isValid());
}
