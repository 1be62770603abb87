// What the tests of voxel images share.
#pragma once

#include "Common/ImageBase.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

using VoxelTypes =
    testing::Types<char, unsigned char, short, unsigned short, int, unsigned int, float, double>;

// What a stream prints while this object lives.
class CapturedStream
{
public:
    explicit CapturedStream(std::ostream &captured)
        : stream(captured)
        , former(stream.rdbuf(text.rdbuf()))
    {}
    ~CapturedStream() { stream.rdbuf(former); }
    CapturedStream(const CapturedStream &) = delete;
    CapturedStream &operator=(const CapturedStream &) = delete;
    std::string str() const { return text.str(); }

private:
    std::ostringstream text;
    std::ostream &stream;
    std::streambuf *former;
};

// Width, height, depth, frames, channels.
using Shape = std::array<int, 5>;

inline std::uint64_t valuesOf(const Shape &shape)
{
    std::uint64_t count = 1;
    for (const int extent : shape)
        count *= static_cast<std::uint64_t>(extent);
    return count;
}

// The index of a value as the storage order says: channel, x, y, z, t.
inline std::size_t storedIndex(const Shape &shape, int x, int y, int z, int t, int c)
{
    const auto [width, height, depth, frames, channels] = shape;
    const int index = (((t * depth + z) * height + y) * width + x) * channels + c;
    return static_cast<std::size_t>(index);
}

// A quiet image whose values are scattered over 0..100 and differ between neighbours.
template <class T>
MERV::ImageBase<T> scatteredImage(const Shape &shape)
{
    MERV::ImageBase<T> image;
    image.setVerbose(0);
    image.setDimensions(shape[0], shape[1], shape[2], shape[3], shape[4]);
    std::uint32_t state = 12345;
    for (T &value : image) {
        state = state * 1664525u + 1013904223u;
        value = static_cast<T>((state >> 16) % 101);
    }
    return image;
}

// Value i at index i.
template <class T>
MERV::ImageBase<T> countingImage(const Shape &shape)
{
    MERV::ImageBase<T> image;
    image.setVerbose(0);
    image.setDimensions(shape[0], shape[1], shape[2], shape[3], shape[4]);
    T next = T(0);
    for (T &value : image)
        value = next++;
    return image;
}

template <class T>
std::vector<T> valuesOf(const MERV::ImageBase<T> &image)
{
    return std::vector<T>(image.begin(), image.end());
}

inline Shape shapeOf(const MERV::Image &image)
{
    return {image.getWidth(), image.getHeight(), image.getDepth(), image.getFrames(), image.getChannels()};
}

// Equal bit for bit, NaN included.
template <class T>
bool sameBits(const std::vector<T> &a, const std::vector<T> &b)
{
    return a.size() == b.size() && (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(T)) == 0);
}
