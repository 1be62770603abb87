#include "meshes/geometry/TriFace.h"

#include <array>

namespace MERV::BRep {

namespace {

constexpr int corners = 3;

int next(int index)
{
    return (index + 1) % corners;
}

// Where the plane crosses the edge from a to b between its ends; invalid if both lie on one side.
Point crossing(const Point &a, const Point &b, const Plane &plane)
{
    if ((plane * a) * (plane * b) <= 0.0)
        return Line(a, b).intersection(plane);
    return {};
}

// The foot of the perpendicular from q on the edge, or the edge's end nearer to q, the far one at a tie.
Point closestOnEdge(const Line &edge, const Point &q)
{
    const Point from = euclidean(edge.from()), to = euclidean(edge.to());
    const Plane across = Plane::perpendicular(q, {to.x - from.x, to.y - from.y, to.z - from.z});
    if (const Point foot = crossing(edge.from(), edge.to(), across); foot.valid)
        return foot;
    return distance(q, from) < distance(q, to) ? edge.from() : edge.to();
}

} // namespace

TriFace TriFace::sharing(const TriFace &owner)
{
    TriFace face;
    face.valid = owner.valid;
    face.shared = owner.valid ? owner.points() : nullptr;
    return face;
}

Point TriFace::normal() const
{
    return valid ? triangleNormal(vertex(0), vertex(1), vertex(2)) : Point(0.0, 0.0, 0.0);
}

Line TriFace::edge(int index) const
{
    if (!valid || index < 0 || index >= corners)
        return {};
    return {vertex(index), vertex(next(index))};
}

Plane TriFace::plane() const
{
    return valid ? Plane(vertex(0), vertex(1), vertex(2)) : Plane();
}

bool TriFace::hitBy(const Line &line) const
{
    if (!valid || !line.isValid())
        return false;
    const std::array<double, corners> s{side(edge(0), line), side(edge(1), line), side(edge(2), line)};
    if (s[0] == 0.0 || s[1] == 0.0 || s[2] == 0.0)
        return true;
    return (s[0] > 0.0 && s[1] > 0.0 && s[2] > 0.0) || (s[0] < 0.0 && s[1] < 0.0 && s[2] < 0.0);
}

Point TriFace::intersection(const Line &line) const
{
    return hitBy(line) ? line.intersection(plane()) : Point();
}

Segment TriFace::sectionWith(const Plane &plane) const
{
    if (!valid || !plane.isValid())
        return {};
    const Point first = crossing(vertex(0), vertex(1), plane);
    if (!first.valid)
        return {};
    const Point second = crossing(vertex(1), vertex(2), plane);
    return {first, second.valid ? second : crossing(vertex(2), vertex(0), plane)};
}

Point TriFace::closestPointTo(const Point &q) const
{
    const Plane own = plane();
    if (!q.valid || !own.isValid())
        return {};
    const Line upright(q, {own[0], own[1], own[2], 0.0});
    if (!upright.isValid())
        return {};
    const std::array<Line, corners> edges{edge(0), edge(1), edge(2)};
    std::array<double, corners> s{};
    for (std::size_t i = 0; i < s.size(); ++i)
        s[i] = side(edges[i], upright);
    const auto at = [&s](int index) { return s[static_cast<std::size_t>(index % corners)]; };

    for (int k = 0; k < corners; ++k) {
        if (at(k) != 0.0)
            continue;
        if (at(k + 1) >= 0.0 && at(k + 2) >= 0.0)
            return upright.intersection(own);
        return at(k + 1) < 0.0 ? vertex(next(k)) : vertex(k);
    }
    if ((s[0] > 0.0 && s[1] > 0.0 && s[2] > 0.0) || (s[0] < 0.0 && s[1] < 0.0 && s[2] < 0.0))
        return upright.intersection(own);
    for (int i = 0; i < corners; ++i) {
        if (at(i) < 0.0 && at(i + 1) < 0.0)
            return vertex(next(i));
    }
    for (int i = 0; i < corners; ++i) {
        if (at(i) < 0.0)
            return closestOnEdge(edges[static_cast<std::size_t>(i)], q);
    }
    return {};
}

} // namespace MERV::BRep
