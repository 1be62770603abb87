#include "Common/Prs.h"

#include "mervlib/src/detail/Fields.h"
#include "mervlib/src/detail/Paths.h"
#include "mervlib/src/detail/RawBlock.h"
#include "mervlib/src/detail/Report.h"

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <limits>

namespace MERV {

namespace {

enum Offset : std::size_t
{
    headerType = 0,
    headerSize = 4,
    projections = 8,
    width = 12,
    height = 16,
    imageType = 20, // bytes per pixel
    encodedBits = 24,
    coding = 28,
    horizontalCells = 192, // detector cells per pixel
    verticalCells = 196,
    cellSize = 216 // mm
};
constexpr std::int32_t supportedHeaderType = 0x0C140001;

constexpr std::size_t padOffset = 97;
constexpr std::size_t padSize = 7;
constexpr unsigned char padByte = 0xCC;

static_assert(sizeof(PrsRecord) == PrsRecord::size, "records are read and written as one block");

std::int32_t number(const PrsHeader &header, Offset offset)
{
    return detail::fieldAt<std::int32_t>(header.bytes, offset);
}

bool hasSupportedPixels(const PrsHeader &header)
{
    const char *request = " not supported yet. Just implement it :-)";
    if (const std::int32_t type = number(header, imageType); type != 2) {
        detail::report("Error: Image type of ", type, request);
        return false;
    }
    if (const std::int32_t bits = number(header, encodedBits); bits != 16) {
        detail::report("Error: ", bits, " encoded bits per pixel", request);
        return false;
    }
    if (const std::int32_t code = number(header, coding); code != 0) {
        detail::report("Error: Coding ", code, request);
        return false;
    }
    return true;
}

bool isSupported(const PrsHeader &header)
{
    const char *request = " not supported yet. Just implement it :-)";
    if (const std::int32_t type = number(header, headerType); type != supportedHeaderType) {
        detail::report("Error: Header type ", type, request);
        return false;
    }
    if (const std::int32_t size = number(header, headerSize); size != std::int32_t{PrsHeader::size}) {
        detail::report("Error: Header size of ", size, " bytes", request);
        return false;
    }
    return hasSupportedPixels(header);
}

detail::ImageShape shapeIn(const PrsHeader &header)
{
    return {number(header, width), number(header, height), number(header, projections), 1, 1};
}

std::unique_ptr<Image> readImage(std::istream &stream, PrsHeader &header, std::vector<PrsRecord> &records)
{
    if (!detail::blockIsThere(stream, PrsHeader::size) || !detail::readExactly(stream, header.bytes) ||
        !isSupported(header))
        return nullptr;
    const detail::ImageShape shape = shapeIn(header);
    if (!shape.isPositive())
        return nullptr;
    const auto count = static_cast<std::size_t>(shape.depth);
    if (!detail::blockIsThere(stream, count * PrsRecord::size))
        return nullptr;
    records.resize(count);
    if (!detail::readExactly(stream, {records.front().bytes.data(), count * PrsRecord::size}))
        return nullptr;
    std::unique_ptr<Image> image(createImage(TypeUShort));
    if (detail::shapeAndLoad(*image, shape, stream, false) != 0)
        return nullptr;
    const auto cell = detail::fieldAt<float>(header.bytes, cellSize);
    image->setSpacing(static_cast<float>(number(header, horizontalCells)) * cell,
                      static_cast<float>(number(header, verticalCells)) * cell, 0.0f, 1.0f);
    image->computeMinMax();
    detail::report("Loaded ", count, " projection images at resolution ", shape.width, " x ", shape.height,
                   ", min ", image->getLow(0), ", max = ", image->getHigh(0));
    return image;
}

bool isWritable(const Image &image, const PrsHeader &header, const std::vector<PrsRecord> &records)
{
    if (!hasSupportedPixels(header))
        return false;
    if (image.getDataType() != TypeUShort) {
        detail::report("Error: Provided image is not stored with unsigned short values!");
        return false;
    }
    const detail::ImageShape shape = shapeIn(header);
    if (image.getWidth() != shape.width || image.getHeight() != shape.height ||
        image.getDepth() != shape.depth || image.getFrames() != 1 || image.getChannels() != 1 ||
        records.size() != static_cast<std::size_t>(shape.depth)) {
        detail::report("Error: Image dimensions do not match dimensions given in the PRS header!");
        return false;
    }
    return true;
}

void write(std::ostream &stream, const unsigned char *bytes, std::size_t size)
{
    stream.write(reinterpret_cast<const char *>(bytes), static_cast<std::streamsize>(size));
}

bool writeFile(const std::filesystem::path &path, const Image &image, const PrsHeader &header,
               const std::vector<PrsRecord> &records)
{
    std::ofstream stream(path, std::ios::binary);
    if (!stream)
        return false;
    write(stream, header.bytes.data(), PrsHeader::size);
    for (PrsRecord record : records) {
        std::fill_n(record.bytes.begin() + padOffset, padSize, padByte);
        write(stream, record.bytes.data(), PrsRecord::size);
    }
    return image.save(stream) == 0;
}

} // namespace

bool savePrs(const char *path, const Image *image, const PrsHeader &header,
             const std::vector<PrsRecord> &records)
{
    const std::filesystem::path file = detail::toPath(path);
    detail::report("Saving file ", detail::pathText(file));
    if (image == nullptr || !isWritable(*image, header, records))
        return false;
    if (!writeFile(file, *image, header, records)) {
        detail::report("Error: Couldn't write to file ", detail::pathText(file));
        return false;
    }
    detail::report("Saved projections file ", detail::pathText(file));
    return true;
}

Image *loadPrs(const char *path, PrsHeader &header, std::vector<PrsRecord> &records)
{
    const std::filesystem::path file = detail::toPath(path);
    std::ifstream stream = detail::openForReading(file);
    if (!stream) {
        detail::report("Error: Couldn't open file ", detail::pathText(file));
        return nullptr;
    }
    PrsHeader newHeader;
    std::vector<PrsRecord> newRecords;
    Image *image = detail::nullOnException([&] { return readImage(stream, newHeader, newRecords); });
    if (image != nullptr) {
        header = newHeader;
        records = std::move(newRecords);
    }
    return image;
}

} // namespace MERV
