#pragma once

#include "serialization/dicom/DicomHeader.h"
#include "serialization/dicom/DicomPixels.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace dicom {

// What only the DICOM library can decode. Each call runs it in a process of its own and gives up after
// longestWork: the library ends the process on some malformed files and takes minutes on others. Call it only
// while no other thread of this reader runs.

// How long the library may take over so many bytes, of pixels or of a deflated file: a few seconds, and more
// for a file of many frames, as a slow and busy machine needs.
std::chrono::milliseconds longestWork(std::uint64_t bytes);

// The file with its deflated data set rewritten in explicit little endian form, nothing when that fails.
std::optional<std::string> inflateFile(const std::string &path);

// Decodes JPEG, JPEG-LS or JPEG 2000 fragments into `out`, which has layout.bytes() bytes. False when the
// fragments do not hold exactly these pixels.
bool decodeFragments(const DicomHeader &header, const PixelLayout &layout,
                     const std::vector<std::string> &fragments, std::span<char> out);

} // namespace dicom
