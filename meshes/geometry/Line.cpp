#include "meshes/geometry/Line.h"

#include "meshes/geometry/Plane.h"

#include <algorithm>
#include <cmath>

namespace MERV::BRep {

Line::Line(const Point &p, const Point &q)
    : along{p.w * q.x - q.w * p.x, p.w * q.y - q.w * p.y, p.w * q.z - q.w * p.z}
    , turn{p.y * q.z - q.y * p.z, p.z * q.x - q.z * p.x, p.x * q.y - q.x * p.y}
    , ends{p, q}
{
    const auto finite = [](double value) { return std::isfinite(value); };
    const auto notZero = [](double value) { return value != 0.0; };
    valid =
        p.valid && q.valid && std::all_of(along.begin(), along.end(), finite) &&
        std::all_of(turn.begin(), turn.end(), finite) &&
        (std::any_of(along.begin(), along.end(), notZero) || std::any_of(turn.begin(), turn.end(), notZero));
}

Point Line::intersection(const Plane &plane) const
{
    if (!valid || !plane.isValid())
        return {};
    const Point &p = ends[0], &q = ends[1];
    const double atP = plane * p, atQ = plane * q;
    Point meet(p.x * atQ - q.x * atP, p.y * atQ - q.y * atP, p.z * atQ - q.z * atP, p.w * atQ - q.w * atP);
    meet.valid = meet.w != 0.0 && std::isfinite(meet.x) && std::isfinite(meet.y) && std::isfinite(meet.z) &&
                 std::isfinite(meet.w);
    return meet;
}

double side(const Line &a, const Line &b)
{
    if (!a.isValid() || !b.isValid())
        return 0.0;
    return a.direction()[0] * b.moment()[0] + a.direction()[1] * b.moment()[1] +
           a.direction()[2] * b.moment()[2] + a.moment()[0] * b.direction()[0] +
           a.moment()[1] * b.direction()[1] + a.moment()[2] * b.direction()[2];
}

} // namespace MERV::BRep
