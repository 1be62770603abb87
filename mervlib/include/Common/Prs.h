#pragma once

#include "Common/Image.h"

#include <array>
#include <cstddef>
#include <vector>

namespace MERV {

// The header of a PRS projection file as it stands in the file, fields little-endian.
struct PrsHeader
{
    static constexpr std::size_t size = 2512;
    std::array<unsigned char, size> bytes{};
};

// One projection: 96 bytes of values, 1 byte, 7 pad bytes, 8 bytes.
struct PrsRecord
{
    static constexpr std::size_t size = 112;
    std::array<unsigned char, size> bytes{};
};

// Writes header, records and the voxels of an unsigned short image whose width, height and depth are those of
// the header, with one record per slice. The pad bytes of the records are written as 0xCC whatever they hold.
bool savePrs(const char *path, const Image *image, const PrsHeader &header,
             const std::vector<PrsRecord> &records);

// An unsigned short image with one slice per projection, spacing z is 0. header and records are changed only
// on success. Null after a message on standard output. Caller owns.
Image *loadPrs(const char *path, PrsHeader &header, std::vector<PrsRecord> &records);

} // namespace MERV
