#include "meshes/geometry/FourTriangles.h"

namespace MERV::BRep {

namespace {

// The part of the vector that is perpendicular to the unit vector, of length 1. What rounding leaves along
// the unit vector is large against a small part: it is taken off twice.
Vector perpendicular(const Vector &vector, const Vector &unit)
{
    const Vector once = vector - unit * dot(vector, unit);
    return normalized(once - unit * dot(once, unit));
}

} // namespace

void FourTriangles::set(std::size_t lane, const std::array<Vector, 3> &corners)
{
    const Vector side = corners[1] - corners[0], otherSide = corners[2] - corners[0];
    const Vector unit = normalized(side);
    const Vector upright = perpendicular(otherSide, unit);
    setLane(origin, lane, corners[0]);
    setLane(along, lane, unit);
    setLane(across, lane, upright);
    secondX[lane] = dot(side, unit);
    thirdX[lane] = dot(otherSide, unit);
    thirdY[lane] = dot(otherSide, upright);
}

Vector FourTriangles::normal() const
{
    const Vector4 normals = cross(along, across) * (secondX * thirdY);
    Vector sum{};
    for (std::size_t lane = 0; lane < lanes; ++lane)
        sum = sum + laneOf(normals, lane);
    return sum;
}

Vector FourTriangles::longestSide() const
{
    std::size_t longest = 0;
    for (std::size_t lane = 1; lane < lanes; ++lane)
        if (secondX[lane] > secondX[longest])
            longest = lane;
    return laneOf(along, longest) * secondX[longest];
}

} // namespace MERV::BRep
