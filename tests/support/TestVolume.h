#pragma once

#include "Common/Image.h"

#include <memory>

// Volumes for tests.

struct VolumeSize
{
    int width = 1;
    int height = 1;
    int depth = 1;
    int frames = 1;
    int channels = 1;
};

// A silent image of zeros with spacing 1.
inline std::unique_ptr<MERV::Image> newVolume(int dataType, const VolumeSize &size)
{
    std::unique_ptr<MERV::Image> image(MERV::createImage(dataType));
    image->setVerbose(0);
    image->setDimensions(size.width, size.height, size.depth, size.frames, size.channels);
    return image;
}

// The same, with value(x, y, z) in channel 0 of frame 0, and its minimum and maximum as window.
template <class Function>
std::unique_ptr<MERV::Image> newVolume(int dataType, const VolumeSize &size, Function value)
{
    auto image = newVolume(dataType, size);
    for (int z = 0; z < size.depth; ++z) {
        for (int y = 0; y < size.height; ++y) {
            for (int x = 0; x < size.width; ++x)
                image->setVoxel(static_cast<float>(value(x, y, z)), x, y, z, 0, 0);
        }
    }
    image->computeMinMax();
    return image;
}
