#pragma once

#include "serialization/dicom/DicomHeader.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace dicom {

// Grey pixels of one file: x fastest, then rows from the top, then frames.
struct PixelLayout
{
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint32_t frames = 0;
    unsigned bitsAllocated = 0; // 8, 16, 32 or 64
    unsigned bitsStored = 0;
    unsigned highBit = 0;
    bool isSigned = false;

    std::uint64_t pixels() const { return std::uint64_t(width) * height * frames; }
    std::uint64_t bytes() const { return pixels() * (bitsAllocated / 8); }
};

// The name of the pixel type: bits and sign, such as "16U", or "FD" for 64 bits.
std::string pixelTypeName(const DicomHeader &header);

// The voxel type code for a pixel type name, 0 when there is none. A negative intercept makes unsigned types
// signed, for values will go below zero.
int voxelType(const std::string &pixelType, double intercept);

// Nothing when the file does not hold one grey value per pixel, or cannot hold as many as it says.
std::optional<PixelLayout> pixelLayout(const DicomHeader &header);

// Whether readPixels() leaves the file to the DICOM library, which works in a process of its own.
bool needsLibrary(const DicomHeader &header);

// Reads the stored values in native byte order, unused bits cleared or filled with the sign; no rescaling, no
// inversion. `out` has layout.bytes() bytes. False when the file does not deliver them all. Any thread, but
// where needsLibrary() holds, only while no other thread of this reader runs. Reports its progress.
bool readPixels(const DicomHeader &header, const PixelLayout &layout, std::span<char> out);

} // namespace dicom
