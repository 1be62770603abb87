#pragma once

#include "meshes/geometry/Float4.h"

#include <cstdint>
#include <span>

namespace MERV::BRep {

struct PlacedFace
{
    Vector place;
    std::uint32_t face;
};

// Orders the faces such that each group of 4, 16, 64 and so on, counted from the start, lies close together:
// halves are parted at the median along the widest axis. Places must be finite.
void orderByMedians(std::span<PlacedFace> faces);

} // namespace MERV::BRep
