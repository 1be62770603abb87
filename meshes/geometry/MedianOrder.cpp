#include "meshes/geometry/MedianOrder.h"

#include <algorithm>
#include <bit>
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
    // The fourth lane, of the face numbers, is of no interest.
    Float4 low = std::bit_cast<Float4>(faces.front()), high = low;
    for (const PlacedFace &face : faces) {
        const Float4 place = std::bit_cast<Float4>(face);
        low = smaller(place, low);
        high = larger(place, high);
    }
    const Float4 width = high - low;
    if (width[0] >= width[1] && width[0] >= width[2])
        return &Vector::x;
    return width[1] >= width[2] ? &Vector::y : &Vector::z;
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
