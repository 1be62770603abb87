#pragma once

#include "meshes/geometry/Line.h"
#include "meshes/geometry/Plane.h"
#include "meshes/geometry/Point.h"

#include <array>

namespace MERV::BRep {

// A piece of a line; invalid if one of its ends is. Both ends may be the same point.
struct Segment
{
    Point from, to;

    bool isValid() const { return from.valid && to.valid; }
};

// One triangle with three points of its own; neighbours repeat a point by value. All tests are exact
// comparisons of what double precision yields: there is no tolerance anywhere. A default-made face is
// invalid.
class TriFace
{
public:
    TriFace() = default;
    // Clones the points. A copy has clones of its own, too; the copy of a face that shares its points shares
    // them.
    TriFace(const Point &p0, const Point &p1, const Point &p2)
        : ownPoints{p0, p1, p2}
        , valid(true)
    {}

    // A face on the points of another one, which must outlive it and stay where it is.
    static TriFace sharing(const TriFace &owner);

    bool isValid() const { return valid; }
    bool sharesVertices() const { return shared != nullptr; }
    // 0 to 2, of a valid face.
    const Point &vertex(int index) const { return points()[index]; }

    // (p1 - p0) x (p2 - p1) of the Euclidean points, not normalised; (0, 0, 0) for an invalid face.
    Point normal() const;
    // From vertex index to the next one; invalid for an index outside 0 to 2.
    Line edge(int index) const;
    Plane plane() const;

    // Whether the line passes all edges on the same side, or meets the line of one of them exactly, be it
    // beyond the edge's ends. False for an invalid line or face.
    bool hitBy(const Line &line) const;
    // Where the line meets the plane of the face if hitBy(line), else invalid.
    Point intersection(const Line &line) const;
    // The piece of the plane in the face, of length 0 where it touches one corner. Invalid where the plane
    // does not cross edge 0, though it may cross the other two: on purpose, as the drawing of sections is
    // defined by it.
    Segment sectionWith(const Plane &plane) const;
    // The foot on the face, found by the signs of the sides on which the perpendicular passes the edges. In
    // the wedge beyond an obtuse corner the answer is that corner although a point of an edge is nearer: on
    // purpose, published numbers rest on it. Invalid for an invalid face or point, and for a face without
    // area.
    Point closestPointTo(const Point &point) const;

private:
    const Point *points() const { return shared != nullptr ? shared : ownPoints.data(); }

    // Not in a block of their own: meshes are rebuilt and copied as a whole while the mouse moves.
    std::array<Point, 3> ownPoints;
    const Point *shared = nullptr; // the points of another face
    bool valid = false;
};

} // namespace MERV::BRep
