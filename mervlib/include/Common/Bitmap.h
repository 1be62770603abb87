#pragma once

#include "Common/Image.h"

#include <iosfwd>

namespace MERV {

// An uncompressed Windows bitmap of 8, 24 or 32 bits, from the present position of a stream that can seek: an
// unsigned char image with the window 0 .. 255, one channel (the palette's indices) or the three R, G, B.
// Rows keep their number in the file, whether they are stored top-down or not. A last row that is cut short
// is filled with 0. Null for other contents. Caller owns.
Image *loadBitmap(std::istream &stream);

} // namespace MERV
