#include "meshes/geometry/MedianOrder.h"

#include <algorithm>
#include <cstddef>

namespace MERV::BRep {

namespace {

// The largest power of 4 below the size; the size is above 4.
std::size_t groupBelow(std::size_t size)
{
    std::size_t group = lanes;
    while (group * lanes < size)
        group *= lanes;
    return group;
}

float Vector::*widestAxis(std::span<const PlacedFace> faces)
{
    Vector low = faces.front().place, high = low;
    for (const PlacedFace &face : faces)
        for (float Vector::*axis : {&Vector::x, &Vector::y, &Vector::z}) {
            low.*axis = std::min(low.*axis, face.place.*axis);
            high.*axis = std::max(high.*axis, face.place.*axis);
        }
    const Vector width = high - low;
    if (width.x >= width.y && width.x >= width.z)
        return &Vector::x;
    return width.y >= width.z ? &Vector::y : &Vector::z;
}

} // namespace

void orderByMedians(std::span<PlacedFace> faces)
{
    if (faces.size() <= lanes)
        return;
    const std::size_t group = groupBelow(faces.size());
    const std::size_t groups = (faces.size() + group - 1) / group;
    const std::size_t half = (groups + 1) / 2 * group;
    float Vector::*axis = widestAxis(faces);
    std::nth_element(
        faces.begin(), faces.begin() + static_cast<std::ptrdiff_t>(half), faces.end(),
        [axis](const PlacedFace &a, const PlacedFace &b) { return a.place.*axis < b.place.*axis; });
    orderByMedians(faces.first(half));
    orderByMedians(faces.subspan(half));
}

} // namespace MERV::BRep
