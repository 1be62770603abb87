#pragma once

#include "Common/Image.h"

namespace MERV {

// Analyze 7.5: <base>.hdr of 348 bytes and the voxels in <base>.img; voxels of unsigned char, short or float.
// The header does not tell channels. The writers take the path without an extension and answer the number of
// errors; 1 for an image that the format cannot hold, before any file is touched.
int saveAnalyze(const wchar_t *base, const Image *image);
int saveAnalyze(const char *base, const Image *image);

// path names the header; the last three characters are replaced by "img" for the voxels. Both byte orders.
// Null when the files are not there, too short or of another voxel type. Caller owns.
Image *loadAnalyze(const char *path);
Image *loadAnalyze(const wchar_t *path);

} // namespace MERV
