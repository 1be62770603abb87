#pragma once

#include "meshes/geometry/Float4.h"
#include "meshes/geometry/Line.h"

namespace MERV::BRep {

inline Vector4 magnitude(const Vector4 &v)
{
    return {magnitude(v.x), magnitude(v.y), magnitude(v.z)};
}

// The cube around a mesh in which a search computes: the mesh lies within -1 to 1, one unit is a power of two
// in mm.
struct SearchFrame
{
    Triple<double> centre{};
    double unit = 1.0;
    double largest = 0.0; // of the mesh's own coordinates, without their signs, in mm

    Triple<double> place(const Point &point) const
    {
        return {(point.x - centre.x) / unit, (point.y - centre.y) / unit, (point.z - centre.z) / unit};
    }
};

// A line as the trees of a search see it: in the frame's units, in single precision, with bounds of all that
// rounding can have done, here, in the trees and in the exact routines that decide in the end.
//
// With u = 2^-53, coordinates up to B <= 2^8 R, R half the mesh's extent (unit/2 <= R < unit), edges d no
// shorter than 2^-27 B^2 / R and the line's points D apart:
// - side() of an edge and the line, divided by |d| |D|, is off by less than
//   u (96 B + 12 B^2/|d| + 12 B^2/|D|) <= 2^-21 R + 2^-49 B^2/|D|; the same in single precision, with bounds
//   of groups of edges, by less than 2^-20 (1.5 |p| + 6.6) units, p the line's start. `tolerance` exceeds the
//   sum of both.
// - The intersection with a plane whose normal is at least 2^-16 of its longest edge squared is where a plane
//   2^-23 R away, at a slope changed by 2^-22 R/|D|, would put it. That of a line that passes all three edges
//   farther than `tolerance` on the same side is 2^-20 R and 2^-19 R/|D| times its distance off.
//   `slack` exceeds these slopes.
struct SearchLine
{
    // `from` is where distances are measured from. All three points are finite with w = 1 and none of their
    // coordinates exceeds 2^7 units.
    SearchLine(const SearchFrame &frame, const Line &line, const Point &from);
    static bool canBeMade(const SearchFrame &frame, const Line &line, const Point &from);

    // Only what may be as near as this, in mm, matters from now on.
    void narrow(double distance);

    Vector4 direction, absDirection; // of length 1
    Vector4 moment;                  // about the frame's centre
    Vector4 start;                   // the place on the line that is nearest to `from`
    Float4 tolerance;
    Float4 planeTolerance;
    Float4 slack;
    Float4 reach; // to both sides of the start

private:
    double unit;
    double exactSlack = 0.0, shift = 0.0, exactTolerance = 0.0;
};

} // namespace MERV::BRep
