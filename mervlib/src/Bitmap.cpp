#include "Common/Bitmap.h"

#include "Common/Progress.h"
#include "mervlib/src/detail/Fields.h"
#include "mervlib/src/detail/RawBlock.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <istream>
#include <limits>
#include <optional>
#include <vector>

namespace MERV {

namespace {

// BITMAPFILEHEADER and the first 40 bytes of the header behind it, BITMAPINFOHEADER or a longer one.
constexpr std::size_t headerBytes = 54;
using Header = std::array<unsigned char, headerBytes>;

enum Offset : std::size_t
{
    signature = 0,
    pixelOffset = 10,
    infoSize = 14,
    imageWidth = 18,
    imageHeight = 22, // negative when rows are stored top-down
    bitCount = 28,
    compression = 30,
    imageSize = 34,
    pixelsPerMetreX = 38,
    pixelsPerMetreY = 42
};
constexpr std::uint32_t shortestInfo = 40;

// How the pixels lie in the file.
struct Layout
{
    int width;
    int height;
    std::uint64_t bytesPerPixel;
    std::uint64_t rowBytes; // without the padding
    std::uint64_t pitch;
    std::uint64_t offset; // from the start of the bitmap

    int channels() const { return bytesPerPixel == 1 ? 1 : 3; }
};

bool isSupported(const Header &header)
{
    const auto bits = detail::fieldAt<std::uint16_t>(header, bitCount);
    return header[signature] == 'B' && header[signature + 1] == 'M' &&
           detail::fieldAt<std::uint32_t>(header, infoSize) >= shortestInfo &&
           detail::fieldAt<std::uint32_t>(header, compression) == 0 &&
           (bits == 8 || bits == 24 || bits == 32);
}

std::optional<Layout> layoutIn(const Header &header)
{
    const std::int64_t width = detail::fieldAt<std::int32_t>(header, imageWidth);
    const std::int64_t signedHeight = detail::fieldAt<std::int32_t>(header, imageHeight);
    const std::int64_t height = signedHeight < 0 ? -signedHeight : signedHeight;
    if (!isSupported(header) || width <= 0 || height == 0 || height > std::numeric_limits<int>::max())
        return std::nullopt;
    const std::uint64_t bytesPerPixel = detail::fieldAt<std::uint16_t>(header, bitCount) / 8u;
    const std::uint64_t rowBytes = bytesPerPixel * static_cast<std::uint64_t>(width);
    const std::uint64_t claimed = detail::fieldAt<std::uint32_t>(header, imageSize);
    if (claimed != 0 && claimed < rowBytes * static_cast<std::uint64_t>(height))
        return std::nullopt;
    return Layout{static_cast<int>(width), static_cast<int>(height),
                  bytesPerPixel,           rowBytes,
                  (rowBytes + 3) / 4 * 4,  detail::fieldAt<std::uint32_t>(header, pixelOffset)};
}

// Writers are about that end a file a few bytes early: the last row may be cut short, as long as the file
// holds at least half of what the image takes.
bool hasPixels(const Layout &layout, std::uint64_t bytes)
{
    const std::uint64_t whole = layout.pitch * static_cast<std::uint64_t>(layout.height);
    const std::uint64_t missing = whole - std::min(bytes, whole);
    return missing <= layout.pitch && missing <= bytes;
}

void convertRow(const std::vector<unsigned char> &row, const Layout &layout, unsigned char *voxels)
{
    if (layout.bytesPerPixel == 1) {
        std::copy_n(row.begin(), layout.rowBytes, voxels);
        return;
    }
    for (std::uint64_t pixel = 0; pixel < layout.rowBytes; pixel += layout.bytesPerPixel) {
        *voxels++ = row[pixel + 2];
        *voxels++ = row[pixel + 1];
        *voxels++ = row[pixel];
    }
}

void readRows(std::istream &stream, const Layout &layout, Image &image)
{
    image.setDimensions(layout.width, layout.height, 1, 1, layout.channels());
    auto *voxels = static_cast<unsigned char *>(image.getData());
    std::vector<unsigned char> row(layout.pitch);
    // A row of three channels may hold more values than 32 bits count.
    const std::uint64_t rowValues = image.getSliceStride() / static_cast<std::uint64_t>(layout.height);
    for (int y = 0; y < layout.height; ++y, voxels += rowValues) {
        if (!detail::readExactly(stream, row))
            std::fill(row.begin() + stream.gcount(), row.end(), static_cast<unsigned char>(0));
        convertRow(row, layout, voxels);
        reportProgress(static_cast<std::uint64_t>(y) + 1, static_cast<std::uint64_t>(layout.height));
    }
}

void setScale(const Header &header, Image &image)
{
    const auto perMetreX = detail::fieldAt<std::int32_t>(header, pixelsPerMetreX);
    const auto perMetreY = detail::fieldAt<std::int32_t>(header, pixelsPerMetreY);
    if (perMetreX != 0 && perMetreY != 0)
        image.setSpacing(1000.0f / static_cast<float>(perMetreX), 1000.0f / static_cast<float>(perMetreY),
                         1.0f, 1.0f);
    image.computeMinMax();
    for (int channel = 0; channel < image.getChannels(); ++channel)
        image.setWindowRange(0.0f, 255.0f, channel);
}

std::unique_ptr<Image> readImage(std::istream &stream)
{
    const std::istream::pos_type start = stream.tellg();
    Header header;
    if (start < 0 || !detail::readExactly(stream, header))
        return nullptr;
    const std::optional<Layout> layout = layoutIn(header);
    if (!layout)
        return nullptr;
    stream.seekg(start + static_cast<std::streamoff>(layout->offset));
    if (!hasPixels(*layout, detail::bytesLeft(stream).value_or(0)))
        return nullptr;
    std::unique_ptr<Image> image(createImage(TypeUChar));
    readRows(stream, *layout, *image);
    setScale(header, *image);
    return image;
}

} // namespace

Image *loadBitmap(std::istream &stream)
{
    return detail::nullOnException([&] { return readImage(stream); });
}

} // namespace MERV
