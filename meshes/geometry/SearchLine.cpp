#include "meshes/geometry/SearchLine.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace MERV::BRep {

namespace {

constexpr double farthest = 0x1p7; // units

Vector4 inAllLanes(const Vector &v)
{
    return {BRep::inAllLanes(static_cast<float>(v[0])), BRep::inAllLanes(static_cast<float>(v[1])),
            BRep::inAllLanes(static_cast<float>(v[2]))};
}

double largestOf(const Point &p)
{
    return std::max({std::abs(p.x), std::abs(p.y), std::abs(p.z)});
}

double length(const Vector &v)
{
    return std::sqrt(dot(v, v));
}

} // namespace

bool SearchLine::canBeMade(const SearchFrame &frame, const Line &line, const Point &from)
{
    const auto near = [&frame](const Point &p) {
        const double limit = farthest * frame.unit;
        return p.w == 1.0 && std::abs(p.x) <= limit && std::abs(p.y) <= limit && std::abs(p.z) <= limit;
    };
    return line.isValid() && near(line.from()) && near(line.to()) && near(from);
}

SearchLine::SearchLine(const SearchFrame &frame, const Line &line, const Point &from)
    : unit(frame.unit)
{
    const Vector &d = line.direction();
    const double largest = std::max({std::abs(d[0]), std::abs(d[1]), std::abs(d[2])});
    const Vector scaled{d[0] / largest, d[1] / largest, d[2] / largest};
    const double norm = length(scaled), apart = norm * largest / unit;
    const Vector u{scaled[0] / norm, scaled[1] / norm, scaled[2] / norm};

    const Vector p = frame.place(line.from());
    shift = dot(difference(frame.place(from), p), u);
    const Vector foot = along(p, shift, u);
    const double most = std::max({frame.largest, largestOf(line.from()), largestOf(line.to())}) /
                        unit; // B of the bounds above
    exactTolerance = 0x1p-18 * (3.0 + length(p) + length(foot)) + 0x1p-49 * most * most / apart;
    exactSlack = 0x1p-18 * (1.0 + 1.0 / apart);

    direction = inAllLanes(u);
    absDirection = absolute(direction);
    moment = inAllLanes(cross(p, u));
    start = inAllLanes(foot);
    tolerance = BRep::inAllLanes(static_cast<float>(exactTolerance));
    planeTolerance = BRep::inAllLanes(static_cast<float>(exactTolerance + std::abs(shift) * exactSlack));
    slack = BRep::inAllLanes(static_cast<float>(exactSlack));
    reach = BRep::inAllLanes(std::numeric_limits<float>::infinity());
}

void SearchLine::narrow(double distance)
{
    const double units = distance / unit;
    reach = BRep::inAllLanes(
        static_cast<float>(units * (1.0 + exactSlack) + std::abs(shift) * exactSlack + exactTolerance));
}

} // namespace MERV::BRep
