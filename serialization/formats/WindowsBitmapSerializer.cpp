#include "serialization/formats/WindowsBitmapSerializer.h"

#include "Common/Image.h"
#include "serialization/formats/LittleEndian.h"
#include "serialization/formats/VoxelFiles.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string>

namespace {

// The info header lacks its field of vertical pixels per metre, so that palette and pixels lie 4 bytes before
// the place where its size says they are; the offset of the pixels is 2 too large. Other programs of the
// laboratory read these files as they are.
constexpr std::uint32_t statedPixelOffset = 1076;
constexpr std::uint32_t infoHeaderSize = 40;
constexpr std::uint32_t pixelsPerMetre = 1000;

void writeHeader(std::ostream &stream, std::uint32_t width, std::uint32_t height)
{
    const std::uint32_t pixels = width * height;
    stream.write("BM", 2);
    writeLittleEndian(stream, statedPixelOffset + pixels);
    writeLittleEndian(stream, std::uint32_t(0)); // two reserved fields
    writeLittleEndian(stream, statedPixelOffset);
    writeLittleEndian(stream, infoHeaderSize);
    writeLittleEndian(stream, width);
    writeLittleEndian(stream, height);
    writeLittleEndian(stream, std::uint16_t(1)); // planes
    writeLittleEndian(stream, std::uint16_t(8)); // bits per pixel
    writeLittleEndian(stream, std::uint32_t(0)); // no compression
    writeLittleEndian(stream, pixels);
    writeLittleEndian(stream, pixelsPerMetre);
    writeLittleEndian(stream, std::uint32_t(0)); // colours used: all
    writeLittleEndian(stream, std::uint32_t(0)); // important colours: all
}

void writeGreyPalette(std::ostream &stream)
{
    for (unsigned grey = 0; grey < 256; ++grey)
        writeLittleEndian(stream, std::uint32_t(grey * 0x010101));
}

// A value that is no number, as it comes of a window of 0, is black.
char displayByte(float value, float low, float window)
{
    const float t = (value - low) / window;
    return t > 0.0f ? static_cast<char>(static_cast<int>(std::min(t, 1.0f) * 255.0)) : '\0';
}

} // namespace

WindowsBitmapSerializer::WindowsBitmapSerializer()
    : StreamImageObjectSerializer(tr("Windows bitmap"), "image/bmp", "bmp")
{}

bool WindowsBitmapSerializer::canSerialize(ImageObject *object)
{
    const MERV::Image *image = VoxelFiles::voxelsOf(object);
    return image != nullptr && image->getValueCount() > 0 && image->getWidth() % 4 == 0 &&
           image->getHeight() % 4 == 0;
}

bool WindowsBitmapSerializer::serialize(ImageObject *object, std::ostream &stream)
{
    if (!canSerialize(object) || stream.fail())
        return false;
    const auto lock = VoxelFiles::lockVoxelsOf(object);
    MERV::Image *image = VoxelFiles::voxelsOf(object);
    const int width = image->getWidth();
    const int height = image->getHeight();
    if (std::uint64_t(width) * std::uint64_t(height) >
        std::numeric_limits<std::uint32_t>::max() - statedPixelOffset)
        return false;
    writeHeader(stream, static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height));
    writeGreyPalette(stream);
    const float low = image->getLow(0);
    const float window = image->getWindow(0);
    std::string row(static_cast<std::size_t>(width), '\0'); // a multiple of 4 bytes: no padding
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            row[static_cast<std::size_t>(x)] = displayByte(image->getVoxel(x, y, 0, 0, 0), low, window);
        stream.write(row.data(), width);
    }
    return !stream.fail();
}
