#pragma once

#include "meshes/geometry/Float4.h"
#include "meshes/geometry/FourTriangles.h"

#include <array>
#include <cstddef>
#include <span>

namespace MERV::BRep {

// Four boxes around triangles, each turned as its content lies: on sheets that lie side by side, boxes along
// the axes of the world are all about as near as the answer.
class FourBoxes
{
public:
    // Boxes farther away than everything.
    FourBoxes();

    // Fits the box around the triangles, whose coordinates are between -1 and 1: flat across the normal, with
    // one side along the direction. Both may be any vectors; the box is small if they are those of a sheet.
    // It has a rim that outweighs the rounding in proportion to its size.
    void fit(std::size_t lane, std::span<const FourTriangles> content, const Vector &normal,
             const Vector &direction);

    Vector centerOf(std::size_t lane) const { return laneOf(center, lane); }

    // Of the point, with the same precision as FourTriangles.
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
