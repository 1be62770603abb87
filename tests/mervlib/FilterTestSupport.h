// Images for tests of operations that compute one image from another, and comparisons of their results.
#pragma once

#include "Common/ImageBase.h"
#include "tests/support/CapturedText.h"

#include <array>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

namespace FilterTest {

using MERV::Image;
using MERV::ImageBase;
using ImagePtr = std::unique_ptr<Image>;

using VoxelTypes =
    ::testing::Types<char, unsigned char, short, unsigned short, int, unsigned int, float, double>;
inline constexpr std::array<int, 5> signedCodes{MERV::TypeChar, MERV::TypeShort, MERV::TypeInt,
                                                MERV::TypeFloat, MERV::TypeDouble};
inline constexpr std::array<int, 3> unsignedCodes{MERV::TypeUChar, MERV::TypeUShort, MERV::TypeUInt};

struct Size
{
    int x, y, z;
};
inline const std::vector<Size> sizes{{1, 1, 1}, {2, 2, 2}, {1, 9, 3}, {9, 2, 3},  {3, 3, 1},
                                     {3, 3, 3}, {5, 5, 2}, {7, 5, 4}, {19, 6, 3}, {10, 10, 1}};

inline ImagePtr newImage(int dataType, Size size, int frames = 1, int channels = 1)
{
    ImagePtr image(MERV::createImage(dataType));
    image->setVerbose(0);
    image->setDimensions(size.x, size.y, size.z, frames, channels);
    return image;
}

// Values over the whole range of the voxel type (floating types: fractions of both signs), from a fixed
// sequence.
inline void fillRandom(Image &image, std::uint32_t seed)
{
    std::uint32_t state = seed * 2654435761u + 12345u;
    for (std::uint64_t i = 0; i < image.getValueCount(); ++i) {
        state = state * 1664525u + 1013904223u;
        const double unit = (state >> 8) / 16777216.0; // 0 .. 1
        double value = unit * 2000.0 - 1000.0;
        switch (image.getDataType()) {
        case MERV::TypeChar:
            value = unit * 256.0 - 128.0;
            break;
        case MERV::TypeUChar:
            value = unit * 256.0;
            break;
        case MERV::TypeShort:
            value = unit * 65536.0 - 32768.0;
            break;
        case MERV::TypeUShort:
            value = unit * 65536.0;
            break;
        case MERV::TypeInt:
            value = unit * 4.0e9 - 2.0e9;
            break;
        case MERV::TypeUInt:
            value = unit * 4.0e9;
            break;
        default:
            break;
        }
        image.setValue(static_cast<float>(value), i);
    }
}

inline void fill(Image &image, const std::vector<float> &values)
{
    ASSERT_EQ(image.getValueCount(), values.size());
    for (std::size_t i = 0; i < values.size(); ++i)
        image.setValue(values[i], i);
}

inline std::vector<float> valuesOf(Image &image)
{
    std::vector<float> values(image.getValueCount());
    for (std::size_t i = 0; i < values.size(); ++i)
        values[i] = image.getValue(i);
    return values;
}

inline std::array<int, 5> dimensionsOf(const Image &image)
{
    return {image.getWidth(), image.getHeight(), image.getDepth(), image.getFrames(), image.getChannels()};
}

// Type, dimensions, windows and all values agree bit by bit.
inline void expectSame(Image &result, Image &expected)
{
    EXPECT_EQ(result.getDataType(), expected.getDataType());
    ASSERT_EQ(dimensionsOf(result), dimensionsOf(expected));
    for (int channel = 0; channel < expected.getChannels(); ++channel) {
        EXPECT_EQ(result.getLow(channel), expected.getLow(channel)) << "channel " << channel;
        EXPECT_EQ(result.getHigh(channel), expected.getHigh(channel)) << "channel " << channel;
    }
    EXPECT_EQ(valuesOf(result), valuesOf(expected));
}

// Smallest and largest value as plain formulas track them.
struct Range
{
    float low = 1e16f, high = -1e16f;
    void add(float value)
    {
        if (value < low)
            low = value;
        if (value > high)
            high = value;
    }
    void setWindow(Image &image, int channel) const { image.setWindowRange(low, high, channel); }
};

} // namespace FilterTest
