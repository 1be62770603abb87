#pragma once

#include "meshes/geometry/Float4.h"

#include <array>
#include <cstddef>
#include <span>

namespace MERV::BRep {

// Four boxes, each turned as its content lies: on sheets that lie side by side, boxes along the axes of the
// world are all about as near as the answer. Coordinates up to about 1 and points up to about 2^16 away;
// distances are right up to 2^-20 of the largest coordinate in play.
class FourBoxes
{
public:
    // Boxes farther away than everything.
    FourBoxes();

    // Fits the box around the points, flat across the normal (any vector, best the one of a sheet through
    // them), with a rim that outweighs the rounding here.
    void fit(std::size_t lane, std::span<const Vector> points, const Vector &normal);

    std::array<Vector, 8> corners(std::size_t lane) const;

    Float4 squaredDistances(const Vector &point) const
    {
        const Vector4 d = point - center;
        const Float4 zero{};
        const Float4 x = larger(magnitude(dot(d, axes[0])) - half[0], zero);
        const Float4 y = larger(magnitude(dot(d, axes[1])) - half[1], zero);
        const Float4 z = larger(magnitude(dot(d, axes[2])) - half[2], zero);
        return x * x + y * y + z * z;
    }

private:
    Vector4 center;
    std::array<Vector4, 3> axes; // of length 1, perpendicular to each other
    std::array<Float4, 3> half;  // half of the widths along the axes
};

} // namespace MERV::BRep
