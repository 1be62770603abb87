#pragma once

#include "demo/PhantomParameters.h"

#include <string>
#include <vector>

namespace demo {

// Writes the phantom below `folder` (8-bit, as the file system has it), which is made when it is missing:
//   series/IM0001.dcm ..  one MR image per slice, explicit little endian, in the order of the instance
//   numbers truth.txt             areas, volume and thickness outlines.txt          the true outline in every
//   slice
// Equal parameters give equal files, UIDs included. False when something cannot be written.
bool writePhantomSeries(const std::string &folder, const PhantomParameters &parameters);

// UID under 2.25 of something that the parameters and a role in the series make unique, e.g. "series".
std::string phantomUid(const PhantomParameters &parameters, const std::string &role);

} // namespace demo
