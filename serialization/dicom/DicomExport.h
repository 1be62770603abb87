#pragma once

#include "Common/Image.h"

#include <string>

namespace dicom {

// Writes one file per slice of the first frame into a directory: slice0000.dcm and so on, over files that are
// there. y and z run against those of the image, which is mirrored in place meanwhile and is bit-identical
// afterwards. Only unsigned char, short and unsigned short voxels have a form in files; the others write
// nothing. True when all slices were written.
bool saveDicomSeries(MERV::Image &image, const std::string &directory);

} // namespace dicom
