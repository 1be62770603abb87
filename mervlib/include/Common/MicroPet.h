#pragma once

#include "Common/Image.h"

namespace MERV {

// Writes the text header <base>.img.hdr: a copy of the file templateDirectory + "template.img.hdr" (no
// separator is put between) with file name, dimensions and window filled in. Of a short template only the
// lines that it has are written. Reports failures on standard output.
void saveMicroPetHeader(const char *base, const char *templateDirectory, const Image *image);

} // namespace MERV
