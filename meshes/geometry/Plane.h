#pragma once

#include "meshes/geometry/Point.h"

#include <array>
#include <cstddef>

namespace MERV::BRep {

// The points with a x + b y + c z + d w = 0.
class Plane
{
public:
    Plane() = default; // invalid
    // Invalid if the normal (a, b, c) is zero or a coefficient is not finite.
    explicit Plane(const double coefficients[4]);
    // Through three points, from their Euclidean forms; the normal is (p1 - p0) x (p2 - p1), not normalised.
    Plane(const Point &p0, const Point &p1, const Point &p2);
    // Through a point, perpendicular to a direction (its Euclidean form).
    static Plane perpendicular(const Point &through, const Point &direction);

    bool isValid() const { return valid; }
    double operator[](int index) const { return coefficients[static_cast<std::size_t>(index)]; }
    // a x + b y + c z + d w, exactly as the sum is written.
    double operator*(const Point &p) const
    {
        return coefficients[0] * p.x + coefficients[1] * p.y + coefficients[2] * p.z + coefficients[3] * p.w;
    }

private:
    std::array<double, 4> coefficients{};
    bool valid = false;
};

// (p1 - p0) x (p2 - p1) of the Euclidean forms, not normalised, as a valid point with w = 1.
Point triangleNormal(const Point &p0, const Point &p1, const Point &p2);

} // namespace MERV::BRep
