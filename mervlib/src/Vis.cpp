#include "Common/Vis.h"

#include "Common/Progress.h"
#include "mervlib/src/detail/Fields.h"
#include "mervlib/src/detail/Paths.h"
#include "mervlib/src/detail/RawBlock.h"
#include "mervlib/src/detail/Report.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <istream>
#include <limits>
#include <ostream>
#include <vector>

namespace MERV {

namespace {

constexpr std::size_t headerSize = 512;
using Header = std::array<unsigned char, headerSize>;

enum Offset : std::size_t
{
    magic = 0,
    dataBytes = 4,
    format = 8,
    bytesPerValue = 12,
    width = 16,
    height = 20,
    depth = 24,
    frames = 28,
    channels = 32,
    alwaysZero = 36,
    alwaysOne = 52,
    label = 56,
    comment = 136
};
constexpr std::uint32_t magicNumber = 123456789;
constexpr double mirrorShare = 0.2; // of the time of writing
constexpr double rangeShare = 0.85; // of the time that opening a file takes, with the reading before it
constexpr std::size_t labelSize = 40;
constexpr std::size_t commentSize = 200;

std::uint32_t number(const Header &header, Offset offset)
{
    return detail::fieldAt<std::uint32_t>(header, offset);
}

void storeNumber(Header &header, Offset offset, std::uint64_t value)
{
    detail::storeField(header, offset, static_cast<std::uint32_t>(value));
}

// Up to size bytes; a text of this length or more is not terminated.
void storeText(Header &header, Offset offset, const char *text, std::size_t size)
{
    if (text != nullptr)
        std::copy_n(text, strnlen(text, size), header.begin() + offset);
}

// One frame, one channel.
detail::ImageShape writtenShape(const Image &image)
{
    return {image.getWidth(), image.getHeight(), image.getDepth(), 1, 1};
}

Header headerOf(const detail::ImageShape &shape, const char *labelText, const char *commentText)
{
    Header header{};
    storeNumber(header, magic, magicNumber);
    storeNumber(header, dataBytes, shape.bytes(1));
    storeNumber(header, format, 3);
    storeNumber(header, bytesPerValue, 1);
    storeNumber(header, width, static_cast<std::uint64_t>(shape.width));
    storeNumber(header, height, static_cast<std::uint64_t>(shape.height));
    storeNumber(header, depth, static_cast<std::uint64_t>(shape.depth));
    storeNumber(header, frames, 1);
    storeNumber(header, channels, 1);
    storeNumber(header, alwaysOne, 1);
    storeText(header, label, labelText, labelSize);
    storeText(header, comment, commentText, commentSize);
    return header;
}

std::unique_ptr<Image> mirroredCopy(const Image &image)
{
    const ProgressStage stage(mirrorShare);
    std::unique_ptr<Image> copy(image.clone());
    copy->setWindowRange(image.getLow(0), image.getHigh(0), 0);
    copy->mirror(false, true, false, false, false);
    return copy;
}

void writeSlices(std::ostream &stream, const Image &image, int channel)
{
    const std::unique_ptr<Image> copy = mirroredCopy(image);
    const std::size_t size =
        static_cast<std::size_t>(image.getWidth()) * static_cast<std::size_t>(image.getHeight());
    std::vector<unsigned char> slice(size);
    for (int z = 0; z < image.getDepth() && stream; ++z) {
        copy->getSliceUByte(slice.data(), z, channel, false);
        stream.write(reinterpret_cast<const char *>(slice.data()), static_cast<std::streamsize>(size));
        reportProgress(static_cast<std::uint64_t>(z) + 1, static_cast<std::uint64_t>(image.getDepth()));
    }
}

bool isSupported(const Header &header)
{
    return number(header, magic) == magicNumber && number(header, bytesPerValue) == 1 &&
           number(header, channels) == 1 && number(header, alwaysZero) == 0 && number(header, alwaysOne) == 1;
}

// A shape that is not positive when the extents do not make up the number of bytes.
detail::ImageShape shapeIn(const Header &header)
{
    std::array<int, 4> size{};
    constexpr std::array offsets{width, height, depth, frames};
    for (std::size_t axis = 0; axis < offsets.size(); ++axis) {
        const std::uint32_t extent = number(header, offsets[axis]);
        if (extent > static_cast<std::uint32_t>(std::numeric_limits<int>::max()))
            return {0, 0, 0, 0, 0};
        size[axis] = static_cast<int>(extent);
    }
    const detail::ImageShape shape{size[0], size[1], size[2], size[3], 1};
    if (!shape.isPositive() || shape.bytes(1) != number(header, dataBytes))
        return {0, 0, 0, 0, 0};
    return shape;
}

bool readVoxels(std::istream &stream, const detail::ImageShape &shape, Image &image)
{
    const std::uint64_t bytes = shape.bytes(1);
    if (detail::bytesLeft(stream).value_or(bytes) < bytes)
        return false;
    image.setDimensions(shape.width, shape.height, shape.depth, shape.frames, shape.channels);
    const ProgressStage stage(detail::readingShare);
    return detail::readVoxels(stream, {static_cast<std::byte *>(image.getData()), bytes});
}

std::unique_ptr<Image> readImage(std::istream &stream)
{
    Header header;
    if (!detail::readExactly(stream, header) || !isSupported(header)) {
        detail::report("Unsupported stream format encountered while reading VIS stream.");
        return nullptr;
    }
    const detail::ImageShape shape = shapeIn(header);
    if (!shape.isPositive()) {
        detail::report("Corrupted stream detected while reading VIS stream.");
        return nullptr;
    }
    std::unique_ptr<Image> image(createImage(TypeUChar));
    if (!readVoxels(stream, shape, *image)) {
        detail::report("Error reading image data from VIS stream.");
        return nullptr;
    }
    {
        const ProgressStage stage(rangeShare);
        image->computeMinMax();
    }
    image->setWindowRange(0.0f, 255.0f, 0);
    image->mirror(false, true, false, false, false);
    return image;
}

} // namespace

bool saveVis(std::ostream &stream, const Image *image, const char *label, const char *comment, int channel)
{
    if (image == nullptr || !stream)
        return false;
    const detail::ImageShape shape = writtenShape(*image);
    if (!shape.isPositive() || image->getValueCount() == 0 ||
        shape.bytes(1) > std::numeric_limits<std::uint32_t>::max())
        return false;
    try {
        const Header header = headerOf(shape, label, comment);
        stream.write(reinterpret_cast<const char *>(header.data()), headerSize);
        writeSlices(stream, *image, std::clamp(channel, 0, image->getChannels() - 1));
    } catch (const std::exception &) {
        return false;
    }
    return static_cast<bool>(stream.flush());
}

bool saveVis(const char *path, const Image *image, const char *label, const char *comment, int channel)
{
    std::ofstream stream(detail::toPath(path), std::ios::binary);
    return saveVis(stream, image, label, comment, channel);
}

Image *loadVis(std::istream &stream)
{
    return detail::nullOnException([&] { return readImage(stream); });
}

Image *loadVis(const char *path)
{
    std::ifstream stream = detail::openForReading(detail::toPath(path));
    return stream ? loadVis(stream) : nullptr;
}

} // namespace MERV
