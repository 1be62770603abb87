#pragma once

#include "meshes/geometry/Point.h"

#include <algorithm>
#include <array>
#include <cmath>

// The distance of a point from a triangle as a textbook has it, in long double and with nothing in common
// with the geometry of the program: from the plane if the foot has barycentric coordinates inside the
// triangle, else the smallest from the three edges. All points have w = 1; the triangle has an area.

using Real = long double;
using Corners = std::array<MERV::BRep::Point, 3>;

struct RealVector
{
    Real x = 0, y = 0, z = 0;
};

inline RealVector difference(const MERV::BRep::Point &a, const MERV::BRep::Point &b)
{
    return {Real(a.x) - Real(b.x), Real(a.y) - Real(b.y), Real(a.z) - Real(b.z)};
}

inline Real dot(const RealVector &a, const RealVector &b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

inline RealVector cross(const RealVector &a, const RealVector &b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

inline Real distanceToEdge(const MERV::BRep::Point &a, const MERV::BRep::Point &b, const MERV::BRep::Point &q)
{
    const RealVector e = difference(b, a), v = difference(q, a);
    const Real t = std::clamp(dot(e, v) / dot(e, e), Real(0), Real(1));
    const RealVector d{v.x - t * e.x, v.y - t * e.y, v.z - t * e.z};
    return std::sqrt(dot(d, d));
}

inline Real trueDistance(const Corners &p, const MERV::BRep::Point &q)
{
    const RealVector u = difference(p[1], p[0]), v = difference(p[2], p[0]), w = difference(q, p[0]);
    const Real uu = dot(u, u), uv = dot(u, v), vv = dot(v, v), wu = dot(w, u), wv = dot(w, v);
    const Real area = uu * vv - uv * uv, s = (vv * wu - uv * wv) / area, t = (uu * wv - uv * wu) / area;
    if (s >= 0 && t >= 0 && s + t <= 1) {
        const RealVector d{w.x - s * u.x - t * v.x, w.y - s * u.y - t * v.y, w.z - s * u.z - t * v.z};
        return std::sqrt(dot(d, d));
    }
    return std::min(
        {distanceToEdge(p[0], p[1], q), distanceToEdge(p[1], p[2], q), distanceToEdge(p[2], p[0], q)});
}
