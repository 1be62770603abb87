#pragma once

#include "Common/Image.h"

namespace MERV {

// Edge detectors with non-maximum suppression and hysteresis. The gradient magnitude is in voxel values; a
// place is an edge where it reaches 3 * threshold, or threshold beside a place that exceeds 3 * threshold.
// Both 2D variants and the 3D one look at channel 0 of frame 0. Empty images give null or leave the buffer
// untouched.

// Edges of slice 0 as a new float image of one slice, 255 on edges and 0 elsewhere. Caller owns; null when
// the image is null or empty.
Image *detectEdges2D(Image *image, float threshold);

// The same edges as 0 or 255 into width * height values, x fastest, owned by the caller.
void detectEdges2DBytes(Image *image, float threshold, unsigned char *buffer);
void detectEdges2DFloats(Image *image, float threshold, float *buffer);

// Marks edge voxels with 4095 (or the nearest that the voxel type holds) in the image itself; the others keep
// their values. Reports its steps on standard output.
void detectEdges3D(Image *image, float threshold);

} // namespace MERV
