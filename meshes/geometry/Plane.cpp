#include "meshes/geometry/Plane.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace MERV::BRep {

namespace {

// With the normal (a, b, c) and a point, by its Euclidean form, in the plane.
std::array<double, 4> through(const Point &p, double a, double b, double c)
{
    return {a, b, c, -(a * p.x + b * p.y + c * p.z)};
}

} // namespace

Plane::Plane(const double newCoefficients[4])
{
    std::copy_n(newCoefficients, coefficients.size(), coefficients.begin());
    const auto finite = [](double value) { return std::isfinite(value); };
    valid = std::all_of(coefficients.begin(), coefficients.end(), finite) &&
            (coefficients[0] != 0.0 || coefficients[1] != 0.0 || coefficients[2] != 0.0);
}

Plane::Plane(const Point &p0, const Point &p1, const Point &p2)
{
    if (!p0.valid || !p1.valid || !p2.valid)
        return;
    const Point n = triangleNormal(p0, p1, p2);
    *this = Plane(through(euclidean(p0), n.x, n.y, n.z).data());
}

Plane Plane::perpendicular(const Point &point, const Point &direction)
{
    if (!point.valid || !direction.valid)
        return {};
    const Point n = euclidean(direction);
    return Plane(through(euclidean(point), n.x, n.y, n.z).data());
}

Point triangleNormal(const Point &p0, const Point &p1, const Point &p2)
{
    const Point a = euclidean(p0), b = euclidean(p1), c = euclidean(p2);
    const double ux = b.x - a.x, uy = b.y - a.y, uz = b.z - a.z;
    const double vx = c.x - b.x, vy = c.y - b.y, vz = c.z - b.z;
    return {uy * vz - uz * vy, uz * vx - ux * vz, ux * vy - uy * vx};
}

} // namespace MERV::BRep
