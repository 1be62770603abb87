#include "meshes/geometry/SearchLine.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace MERV::BRep {

namespace {

constexpr double farthest = 0x1p7; // units

Float4 inAllLanes(double value)
{
    return BRep::inAllLanes(static_cast<float>(value));
}

Vector4 inAllLanes(const Triple<double> &v)
{
    return {inAllLanes(v.x), inAllLanes(v.y), inAllLanes(v.z)};
}

double largestOf(const Point &p)
{
    return std::max({std::abs(p.x), std::abs(p.y), std::abs(p.z)});
}

double length(const Triple<double> &v)
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
    const auto &d = line.direction();
    const double largest = std::max({std::abs(d[0]), std::abs(d[1]), std::abs(d[2])});
    const Triple<double> scaled{d[0] / largest, d[1] / largest, d[2] / largest};
    const double norm = length(scaled), apart = norm * largest / unit;
    const Triple<double> u = scaled * (1.0 / norm);

    const Triple<double> p = frame.place(line.from());
    shift = dot(frame.place(from) - p, u);
    const Triple<double> foot = p + u * shift;
    const double most = std::max({frame.largest, largestOf(line.from()), largestOf(line.to())}) /
                        unit; // B of the bounds above
    exactTolerance = 0x1p-18 * (3.0 + length(p) + length(foot)) + 0x1p-49 * most * most / apart;
    exactSlack = 0x1p-18 * (1.0 + 1.0 / apart);

    direction = inAllLanes(u);
    absDirection = magnitude(direction);
    moment = inAllLanes(cross(p, u));
    start = inAllLanes(foot);
    tolerance = inAllLanes(exactTolerance);
    planeTolerance = inAllLanes(exactTolerance + std::abs(shift) * exactSlack);
    slack = inAllLanes(exactSlack);
    reach = inAllLanes(std::numeric_limits<double>::infinity());
}

void SearchLine::narrow(double distance)
{
    const double units = distance / unit;
    reach = inAllLanes(units * (1.0 + exactSlack) + std::abs(shift) * exactSlack + exactTolerance);
}

} // namespace MERV::BRep
