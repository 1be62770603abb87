#pragma once

#include "Common/Image.h"

namespace MERV {

// Resamples the first channel of source under a rigid pose (tx, ty, tz in mm, then three angles in radians)
// about the centre of the volume. A null output makes a float image of the source's grid, owned by the
// caller; a given one is written from its first value on. Places whose source lies outside, or in the last
// plane of an axis, are 0. Reports the share of voxels used on standard output. Returns the output, null
// without a source.
Image *transformImage(const float pose[6], Image *source, Image *output, bool trilinear);

} // namespace MERV
