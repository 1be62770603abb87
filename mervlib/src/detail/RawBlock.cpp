#include "mervlib/src/detail/RawBlock.h"

#include "Common/Progress.h"
#include "mervlib/src/detail/Report.h"

#include <algorithm>
#include <istream>
#include <limits>
#include <ostream>
#include <string>
#include <system_error>

namespace MERV::detail {

namespace {

// Between two reports on the progress.
constexpr std::size_t pieceBytes = std::size_t(4) << 20U;

} // namespace

bool ImageShape::isPositive() const
{
    return width > 0 && height > 0 && depth > 0 && frames > 0 && channels > 0;
}

std::uint64_t ImageShape::bytes(std::size_t valueSize) const
{
    std::uint64_t product = valueSize;
    for (const int extent : {width, height, depth, frames, channels}) {
        const auto factor = static_cast<std::uint64_t>(extent);
        if (product > std::numeric_limits<std::uint64_t>::max() / factor)
            return std::numeric_limits<std::uint64_t>::max();
        product *= factor;
    }
    return product;
}

std::size_t valueSize(int dataType)
{
    switch (dataType) {
    case TypeChar:
    case TypeUChar:
        return 1;
    case TypeShort:
    case TypeUShort:
        return 2;
    case TypeDouble:
        return 8;
    default:
        return 4;
    }
}

std::ifstream openForReading(const std::filesystem::path &path)
{
    std::ifstream stream;
    std::error_code error;
    if (std::filesystem::is_regular_file(path, error))
        stream.open(path, std::ios::binary);
    else
        stream.setstate(std::ios::failbit);
    return stream;
}

std::optional<std::uint64_t> bytesLeft(std::istream &stream)
{
    if (!stream.good())
        return std::nullopt;
    const std::istream::pos_type position = stream.tellg();
    if (position < 0)
        return std::nullopt;
    stream.seekg(0, std::ios::end);
    const std::istream::pos_type end = stream.tellg();
    stream.clear();
    stream.seekg(position);
    return end > position ? static_cast<std::uint64_t>(end - position) : 0;
}

bool readExactly(std::istream &stream, std::span<unsigned char> bytes)
{
    stream.read(reinterpret_cast<char *>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return stream.gcount() == static_cast<std::streamsize>(bytes.size());
}

bool readVoxels(std::istream &stream, std::span<std::byte> bytes)
{
    for (std::size_t done = 0; done < bytes.size();) {
        const std::span<std::byte> piece = bytes.subspan(done, std::min(pieceBytes, bytes.size() - done));
        if (!stream.read(reinterpret_cast<char *>(piece.data()), static_cast<std::streamsize>(piece.size())))
            return false;
        done += piece.size();
        reportProgress(done, bytes.size());
    }
    return true;
}

namespace {

void reportEndOfFile(std::istream &stream)
{
    stream.clear();
    report("Unexpected end of file encountered while reading image data from stream; ", "stream position is ",
           static_cast<std::streamoff>(stream.tellg()));
}

} // namespace

bool blockIsThere(std::istream &stream, std::uint64_t bytes)
{
    const std::optional<std::uint64_t> left = bytesLeft(stream);
    if (!left || *left >= bytes)
        return true;
    stream.seekg(0, std::ios::end);
    reportEndOfFile(stream);
    return false;
}

void skipLocalHeader(std::istream &stream)
{
    std::string line;
    while (std::getline(stream, line) && line.find("LOCAL") == std::string::npos) {
    }
}

int readBlock(std::istream &stream, std::span<std::byte> block)
{
    if (stream.fail()) {
        report("Warning: could not load image data!");
        return 1;
    }
    if (!blockIsThere(stream, block.size()))
        return 1;
    readVoxels(stream, block);
    if (stream.eof()) {
        reportEndOfFile(stream);
        return 1;
    }
    if (stream.fail()) {
        report("Warning: could not load image data! Reading error other than unexpected end of file occured");
        return 1;
    }
    return 0;
}

int writeBlock(std::ostream &stream, std::span<const std::byte> block, std::size_t valueSize)
{
    if (stream.fail()) {
        report("Warning: could not save image data!");
        return 1;
    }
    for (std::size_t done = 0; stream && done < block.size();) {
        const std::span<const std::byte> piece =
            block.subspan(done, std::min(pieceBytes, block.size() - done));
        stream.write(reinterpret_cast<const char *>(piece.data()),
                     static_cast<std::streamsize>(piece.size()));
        done += piece.size();
        reportProgress(done, block.size());
    }
    if (!stream.flush()) {
        report("Warning: writing error ocurred.\n", "sizeof(tvoxel_type): ", valueSize);
        return 1;
    }
    return 0;
}

int loadFromFile(const std::filesystem::path &path, const std::function<int(std::istream &)> &use)
{
    std::ifstream stream = openForReading(path);
    if (!stream) {
        report("Warning: could not load image data!");
        return 1;
    }
    if (use(stream) != 0) {
        report("Warning: could not load image data! Reading error occured");
        return 1;
    }
    return 0;
}

int saveToFile(const std::filesystem::path &path, const std::function<int(std::ostream &)> &use)
{
    std::ofstream stream(path, std::ios::binary);
    if (!stream) {
        report("Warning: could not save image data!");
        return 1;
    }
    return use(stream);
}

int shapeAndLoad(Image &image, const ImageShape &shape, std::istream &stream, bool skipHeader)
{
    if (!blockIsThere(stream, shape.bytes(valueSize(image.getDataType()))))
        return 1;
    image.setDimensions(shape.width, shape.height, shape.depth, shape.frames, shape.channels);
    const ProgressStage stage(readingShare);
    return image.load(stream, skipHeader);
}

void reportImage(const char *text, const ImageShape &shape, const Image &image)
{
    report(text, shape.width, " x ", shape.height, " x ", shape.depth, ", min ", image.getLow(0),
           ", max = ", image.getHigh(0));
}

ImageShape shapeOf(const Image &image)
{
    return {image.getWidth(), image.getHeight(), image.getDepth(), image.getFrames(), image.getChannels()};
}

} // namespace MERV::detail
