#pragma once

#include "serialization/dicom/DicomHeader.h"

#include <string>

namespace dicom {

// The public name of a tag ("Patient's Name"); "gdcm::Unknown (GGGG, EEEE)" with upper case hexadecimal
// digits for private tags and for those that the dictionary does not know. Any thread.
std::string tagName(Tag tag);

// What a file with implicit representation holds under this tag; "UN" when it is not known. A tag that may be
// signed or unsigned is decided by `signedPixels`. Any thread.
ValueRepresentation dictionaryRepresentation(Tag tag, bool signedPixels);

} // namespace dicom
