#pragma once

#include "serialization/dicom/DicomHeader.h"

#include <string>
#include <string_view>

namespace dicom {

// What stands for a value that is bytes.
inline constexpr std::string_view binaryValueText = "gdcm::Binary data loaded";

// The value of an element as UTF-8: texts without trailing padding, binary numbers in decimal joined by
// backslashes. `characterSet` is the value of Specific Character Set; empty means the default set, which is
// read as Latin-1, as is every set that is not known.
std::string elementText(const DicomElement &element, std::string_view characterSet);

// Without blanks and zero bytes at both ends.
std::string_view trimmed(std::string_view text);

} // namespace dicom
