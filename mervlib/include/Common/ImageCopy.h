#pragma once

#include "Common/Image.h"

namespace MERV {

// Writes the first channel of the first slice as bytes, saturated, into width * height bytes, x fastest.
// Nothing unless the image has exactly this width and height.
void copySliceToBytes(Image *image, int width, int height, unsigned char *buffer);

// Gives the destination the source's dimensions and values, as floats in stored order; nothing else. Moves
// the cursors of both.
void copyImage(Image *source, Image *destination);

} // namespace MERV
