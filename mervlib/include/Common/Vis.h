#pragma once

#include "Common/Image.h"

#include <iosfwd>

namespace MERV {

// VIS: a header of 512 bytes and the voxels of one channel in 8 bits, rows bottom-up.

// Writes the first frame, windowed; channel is moved into the range of channels. Only the window of channel 0
// counts: the others are written with the range of all values. label and comment may be null; at most 40 and
// 200 bytes of them are kept. False, with nothing written, for an image that the format cannot hold.
bool saveVis(std::ostream &stream, const Image *image, const char *label, const char *comment, int channel);
bool saveVis(const char *path, const Image *image, const char *label, const char *comment, int channel);

// An unsigned char image with the window 0 .. 255, from the present position of the stream. Null for other
// contents. Caller owns.
Image *loadVis(std::istream &stream);
Image *loadVis(const char *path);

} // namespace MERV
