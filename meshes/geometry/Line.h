#pragma once

#include "meshes/geometry/Point.h"

#include <array>

namespace MERV::BRep {

class Plane;

// The line through two points, in Pluecker form: the 4 x 4 matrix L = p q^T - q p^T. It runs from p to q,
// which are kept. Invalid if a point is, or if the matrix is zero or not finite.
class Line
{
public:
    Line() = default;
    Line(const Point &from, const Point &to);

    bool isValid() const { return valid; }
    const Point &from() const { return ends[0]; }
    const Point &to() const { return ends[1]; }
    // The elements (3,0), (3,1), (3,2) of the matrix: along the line.
    const std::array<double, 3> &direction() const { return along; }
    // The elements (1,2), (2,0), (0,1): the moment about the origin.
    const std::array<double, 3> &moment() const { return turn; }

    // Where the line meets the plane; invalid if it is parallel to it, if a number overflows, and for an
    // invalid line or plane.
    Point intersection(const Plane &plane) const;

private:
    std::array<double, 3> along{}, turn{};
    std::array<Point, 2> ends;
    bool valid = false;
};

// On which side of a the line b passes: 0 when they meet or are parallel, and for an invalid line. The sign
// is such that a line along (p1 - p0) x (p2 - p1) through a triangle is on the positive side of all its edges
// (edge first). The products are summed in one fixed order: signs decide, so results must not depend on it.
double side(const Line &a, const Line &b);

} // namespace MERV::BRep
