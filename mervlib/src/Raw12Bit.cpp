#include "Common/Raw12Bit.h"

#include "Common/VoxelCast.h"
#include "mervlib/src/detail/Fields.h"
#include "mervlib/src/detail/Paths.h"
#include "mervlib/src/detail/RawBlock.h"
#include "mervlib/src/detail/Report.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <fstream>
#include <span>
#include <sstream>
#include <string>

namespace MERV {

namespace {

constexpr std::size_t headerBytes = 288;
using Header = std::array<unsigned char, headerBytes>;

enum Offset : std::size_t
{
    headerType = 0,
    headerSize = 4,
    scaleText = 6,
    calibrationText = 149,
    bitsPerVoxel = 190,
    spacing = 200, // double for x, y, z
    width = 232,
    height = 236,
    depth = 240
};
constexpr std::int32_t supportedType = 815;
constexpr std::size_t calibrationTextSize = 17;

bool isSupported(const Header &header)
{
    const char *request = " not supported yet. Just implement it :)";
    if (const auto type = detail::fieldAt<std::int32_t>(header, headerType); type != supportedType) {
        detail::report("Header type ", type, request);
        return false;
    }
    if (const auto size = detail::fieldAt<std::int16_t>(header, headerSize); size != headerBytes) {
        detail::report("Header size of ", size, " bytes", request);
        return false;
    }
    const auto bits = detail::fieldAt<std::int16_t>(header, bitsPerVoxel);
    if (bits == 16 || bits == 12)
        return true;
    detail::report(bits, " bits", request);
    return false;
}

detail::ImageShape shapeIn(const Header &header)
{
    return {detail::fieldAt<std::int32_t>(header, width), detail::fieldAt<std::int32_t>(header, height),
            detail::fieldAt<std::int32_t>(header, depth), 1, 1};
}

// Row 0 becomes the last one; columns stay.
void reverseRows(std::span<std::uint16_t> voxels, std::size_t rowLength)
{
    auto front = voxels.begin();
    auto back = voxels.end();
    for (std::size_t pairs = voxels.size() / rowLength / 2; pairs > 0; --pairs) {
        const auto row = static_cast<std::ptrdiff_t>(rowLength);
        back -= row;
        std::swap_ranges(front, front + row, back);
        front += row;
    }
}

// What is left of the text, as a number that is missing, counts as 0.
struct Calibration
{
    float low = 0.0f;
    float high = 0.0f;

    explicit Calibration(const Header &header)
    {
        const auto begin = header.begin() + calibrationText;
        const auto end = std::find(begin, begin + calibrationTextSize, 0);
        std::istringstream text(std::string(begin, end));
        text.imbue(std::locale::classic());
        text >> low >> high;
    }
    bool asksForRescale() const { return low != 0.0f && high != 4095.0f && low != high; }
};

void rescale(std::span<std::uint16_t> voxels, const Calibration &calibration, char scaleLetter)
{
    const double low = calibration.low;
    const double extent = calibration.high - low;
    const double scale = scaleLetter == 'H' || scaleLetter == 'G' ? 2.0 : 1.0;
    const double a = (0.0 - low) * 65530.0 / extent;
    const double b = (scale * 0.012633652 - low) * 65530.0 / extent;
    const double slope = 4095.0 / (b - a);
    for (std::uint16_t &voxel : voxels) {
        const double value = voxel;
        if (value >= b)
            voxel = 4095;
        else
            voxel = value > a ? voxel_cast<std::uint16_t>((value - a) * slope + 0.5) : std::uint16_t{0};
    }
}

std::unique_ptr<Image> readImage(std::istream &stream, bool reversed)
{
    Header header;
    if (!detail::blockIsThere(stream, headerBytes) || !detail::readExactly(stream, header) ||
        !isSupported(header))
        return nullptr;
    const detail::ImageShape shape = shapeIn(header);
    std::unique_ptr<Image> image(createImage(TypeUShort));
    if (!shape.isPositive() || detail::shapeAndLoad(*image, shape, stream, false) != 0)
        return nullptr;
    const std::span voxels(static_cast<std::uint16_t *>(image->getData()), image->getValueCount());
    if (reversed)
        reverseRows(voxels, image->getRowStride());
    if (const Calibration calibration(header); calibration.asksForRescale())
        rescale(voxels, calibration, static_cast<char>(header[scaleText]));
    std::array<float, 3> size;
    for (std::size_t axis = 0; axis < size.size(); ++axis)
        size[axis] = static_cast<float>(detail::fieldAt<double>(header, spacing + axis * sizeof(double)));
    image->setSpacing(size[0], size[1], size[2], 1.0f);
    image->computeMinMax();
    detail::reportImage("Loaded Image, resolution ", shape, *image);
    return image;
}

} // namespace

Image *loadRaw12Bit(const char *path, bool reversed)
{
    std::ifstream stream = detail::openForReading(detail::toPath(path));
    if (!stream)
        return nullptr;
    return detail::nullOnException([&] { return readImage(stream, reversed); });
}

} // namespace MERV
