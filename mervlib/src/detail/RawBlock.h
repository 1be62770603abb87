// Voxel blocks between images and streams, and what all readers and writers of files share around them.
#pragma once

#include "Common/Image.h"

#include <cstddef>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iosfwd>
#include <memory>
#include <optional>
#include <span>

namespace MERV::detail {

// Shares of the time that opening a file takes, each counted from the start.
constexpr double readingShare = 0.7;
constexpr double swappingShare = 0.85;

// Extents as a file claims them.
struct ImageShape
{
    int width = 1;
    int height = 1;
    int depth = 1;
    int frames = 1;
    int channels = 1;

    bool isPositive() const;
    // Bytes of the voxel block of a positive shape; the largest number when they do not fit.
    std::uint64_t bytes(std::size_t valueSize) const;
};

// Bytes of a voxel of the given DataType code.
std::size_t valueSize(int dataType);

// A binary stream in failed state when the path is not that of a regular file: others may never end.
std::ifstream openForReading(const std::filesystem::path &path);

// Bytes behind the present position; nothing for a stream that cannot seek.
std::optional<std::uint64_t> bytesLeft(std::istream &stream);

// False when the stream ends before.
bool readExactly(std::istream &stream, std::span<unsigned char> bytes);

// The same in pieces, with a report on the progress after each: for voxels.
bool readVoxels(std::istream &stream, std::span<std::byte> bytes);

// False, after the message, when it is known that fewer bytes are left: to be asked before memory is taken.
bool blockIsThere(std::istream &stream, std::uint64_t bytes);

// Moves the stream behind the first line that contains "LOCAL".
void skipLocalHeader(std::istream &stream);

// 0, or 1 after the message. readBlock does not take part of a block from a stream that can seek.
int readBlock(std::istream &stream, std::span<std::byte> block);
int writeBlock(std::ostream &stream, std::span<const std::byte> block, std::size_t valueSize);

// Opens the file and lets use read from or write to it; adds the messages of the path forms.
int loadFromFile(const std::filesystem::path &path, const std::function<int(std::istream &)> &use);
int saveToFile(const std::filesystem::path &path, const std::function<int(std::ostream &)> &use);

// Gives the image its shape and loads its block, if the stream has as many bytes; 0 on success.
int shapeAndLoad(Image &image, const ImageShape &shape, std::istream &stream, bool skipHeader);

// "<text><width> x <height> x <depth>, min <low>, max = <high>"
void reportImage(const char *text, const ImageShape &shape, const Image &image);
ImageShape shapeOf(const Image &image);

// The result of a reader, which may throw at exhausted memory: null then.
template <class Reader>
Image *nullOnException(const Reader &reader)
{
    try {
        std::unique_ptr<Image> image = reader();
        return image.release();
    } catch (const std::exception &) {
        return nullptr;
    }
}

} // namespace MERV::detail
