#pragma once

#include "Common/Image.h"

namespace MERV {

// A volume of two bytes per voxel behind a header of 288 bytes, as an unsigned short image, rescaled to
// 0 .. 4095 when the header says how. reversed turns the order of slices and of the rows in them. Null when
// the file is not there, of another kind or too short. Caller owns.
Image *loadRaw12Bit(const char *path, bool reversed);

} // namespace MERV
