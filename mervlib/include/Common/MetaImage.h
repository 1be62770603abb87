#pragma once

#include "Common/Image.h"

namespace MERV {

// MetaImage: a text header <base>.mhd and the voxels in <base>.raw, in the byte order of the machine. The
// writers take the path without ".mhd" and answer 0 on success, 1 after a message on standard output.

// The name of the data file is made safe for any system: a blank becomes "_", each UTF-16 unit from 0x80 on
// becomes four letters. Numbers have up to six significant digits.
int saveMetaImage(const wchar_t *base, const Image *image);
// The data file is named as the base, so a name with blanks cannot be read back. Numbers have six decimals.
int saveMetaImage(const char *base, const Image *image);

// The image of a header and its voxels, which stand in a file of their own or, with "LOCAL", behind the
// header. Null for anything that is not a whole image of one of the eight voxel types. Caller owns.
Image *loadMetaImage(const char *path);
Image *loadMetaImage(const wchar_t *path);

} // namespace MERV
