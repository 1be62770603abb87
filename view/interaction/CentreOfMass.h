#pragma once

#include <array>
#include <optional>

namespace MERV {
class Image;
}

// The centre of what lies above `minimum` in channel 0 of the first frame, each voxel weighted by how far its
// value lies above it: x, y, z in voxels from 0. Not a number where nothing does; nothing for images whose
// voxels are not unsigned 16-bit.
std::optional<std::array<double, 3>> centreOfMass(MERV::Image &image, float minimum);
