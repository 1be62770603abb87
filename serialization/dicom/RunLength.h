#pragma once

#include <cstddef>
#include <span>
#include <string_view>

namespace dicom {

// Decodes one frame in the run-length form of DICOM (PS3.5, annex G): one segment of bytes per byte of a
// pixel, the most significant first. `out` is the whole frame, pixels of `bytesPerPixel` in native byte
// order. False when the frame holds anything but exactly these pixels.
bool decodeRunLength(std::string_view frame, std::size_t bytesPerPixel, std::span<char> out);

} // namespace dicom
