#pragma once

#include "serialization/dicom/DicomHeader.h"

#include <optional>
#include <string>
#include <vector>

namespace dicom {

// The compressed fragments of a file's pixels, without the offset table; nothing when the chain of fragments
// is broken. Takes as much memory as the pixels have in the file.
std::optional<std::vector<std::string>> readFragments(const DicomHeader &header);

} // namespace dicom
