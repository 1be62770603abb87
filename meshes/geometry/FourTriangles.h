#pragma once

#include "meshes/geometry/Float4.h"

#include <array>
#include <cstddef>

namespace MERV::BRep {

// Four triangles, each in a frame of its own: the first corner is the origin, the second one lies on the
// first axis, the third one in the plane of both axes.
class FourTriangles
{
public:
    // The length of no side nor height may be below 2^-20 of the largest coordinate.
    void set(std::size_t lane, const std::array<Vector, 3> &corners);

    std::array<Vector4, 3> corners() const
    {
        const Vector4 third = origin + along * thirdX + across * thirdY;
        return {origin, origin + along * secondX, third};
    }

    // The sum of their normals, each as long as twice the area.
    Vector normal() const;
    // The longest of their first sides.
    Vector longestSide() const;

    // Of the point. The distances themselves are wrong by at most 2^-23 of the largest coordinate and 2^-19
    // of the distance and of the longest side.
    Float4 squaredDistances(const Vector &point) const
    {
        const Vector4 d = point - origin;
        const Float4 x = dot(d, along), y = dot(d, across), z = dot(d, cross(along, across));
        const Float4 sideX = thirdX - secondX, fromSecondX = x - secondX, zero{};
        const Float4 first = squaredDistance(x, y, secondX, zero);
        const Float4 second = squaredDistance(fromSecondX, y, sideX, thirdY);
        const Float4 third = squaredDistance(x, y, thirdX, thirdY);
        const Float4 around = smaller(first, smaller(second, third));
        // Left of the first two sides and right of the way back.
        const Float4 inside = smaller(y, smaller(sideX * y - fromSecondX * thirdY, x * thirdY - thirdX * y));
        return z * z + (inside > zero ? zero : around);
    }

private:
    // Of the point (x, y) from the line between the origin and (toX, toY).
    static Float4 squaredDistance(Float4 x, Float4 y, Float4 toX, Float4 toY)
    {
        const Float4 zero{}, one = zero + 1.0f;
        const Float4 part = (x * toX + y * toY) / (toX * toX + toY * toY);
        const Float4 clamped = smaller(larger(part, zero), one);
        const Float4 dx = x - clamped * toX, dy = y - clamped * toY;
        return dx * dx + dy * dy;
    }

    Vector4 origin, along, across;
    Float4 secondX, thirdX, thirdY;
};

} // namespace MERV::BRep
