#pragma once

#include "objects/MervImageObject.h"
#include "tests/support/TestVolume.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <random>
#include <vector>

// Volumes of bright discs on a dark ground whose true outlines are known, one disc per slice. All random
// numbers come from the generator alone, so that they are the same with every library.

struct DiscKind
{
    double radius;         // of the discs, in the smaller spacing; each disc is up to one larger
    double blur = 0.0;     // standard deviation in pixels
    double noise = 0.0;    // standard deviation in grey levels
    float spacingX = 1.0f; // mm
    float spacingY = 1.0f;
};

struct Disc
{
    double x, y, radius; // mm
};

struct DiscVolume
{
    std::unique_ptr<MervImageObject> volume;
    std::vector<Disc> discs; // by slice
};

inline double evenly(std::mt19937 &random, double low, double high)
{
    return low + (high - low) * (static_cast<double>(random()) / 4294967296.0);
}

// The share of the disc in the pixel, from 32 * 32 places in it.
inline double coverage(const Disc &disc, int column, int row, const DiscKind &kind)
{
    constexpr int steps = 32;
    const double centre =
        std::hypot((column + 0.5) * kind.spacingX - disc.x, (row + 0.5) * kind.spacingY - disc.y);
    const double halfDiagonal = std::hypot(kind.spacingX, kind.spacingY) / 2.0;
    if (std::abs(centre - disc.radius) > halfDiagonal)
        return centre < disc.radius ? 1.0 : 0.0;
    int inside = 0;
    for (int j = 0; j < steps; ++j)
        for (int i = 0; i < steps; ++i)
            if (std::hypot((column + (i + 0.5) / steps) * kind.spacingX - disc.x,
                           (row + (j + 0.5) / steps) * kind.spacingY - disc.y) < disc.radius)
                ++inside;
    return inside / static_cast<double>(steps * steps);
}

// The place of a pixel in a slice with rows of so many pixels.
inline std::size_t pixelIndex(int column, int row, int rowLength)
{
    const int index = row * rowLength + column;
    return static_cast<std::size_t>(index);
}

// Blurs the rows of a square slice and turns it over; called twice it blurs both ways.
inline std::vector<double> blurredAndTransposed(const std::vector<double> &slice, int size, double sigma)
{
    const int reach = static_cast<int>(std::ceil(4.0 * sigma));
    std::vector<double> result(slice.size());
    for (int y = 0; y < size; ++y)
        for (int x = 0; x < size; ++x) {
            double sum = 0.0;
            double weights = 0.0;
            for (int i = -reach; i <= reach; ++i) {
                const double weight = std::exp(-i * i / (2.0 * sigma * sigma));
                weights += weight;
                const int column = std::clamp(x + i, 0, size - 1);
                sum += weight * slice[pixelIndex(column, y, size)];
            }
            result[pixelIndex(y, x, size)] = sum / weights;
        }
    return result;
}

// Grey levels 30 outside and 220 inside, in slices of 128 * 128 pixels.
inline DiscVolume makeDiscs(const DiscKind &kind, int depth = 20)
{
    constexpr int size = 128;
    constexpr int middle = size / 2;
    std::mt19937 random(7);
    DiscVolume result;
    std::vector<std::vector<double>> slices;
    for (int k = 0; k < depth; ++k) {
        const double x = (middle + evenly(random, -4.0, 4.0)) * kind.spacingX;
        const double y = (middle + evenly(random, -4.0, 4.0)) * kind.spacingY;
        const double unit = std::min(kind.spacingX, kind.spacingY);
        const Disc disc{x, y, (kind.radius + evenly(random, 0.0, 1.0)) * unit};
        result.discs.push_back(disc);
        std::vector<double> slice;
        for (int row = 0; row < size; ++row)
            for (int column = 0; column < size; ++column)
                slice.push_back(30.0 + 190.0 * coverage(disc, column, row, kind));
        if (kind.blur > 0.0)
            slice = blurredAndTransposed(blurredAndTransposed(slice, size, kind.blur), size, kind.blur);
        for (double &value : slice) {
            double normal = -6.0; // the sum of twelve even numbers is nearly normal
            for (int i = 0; i < 12; ++i)
                normal += evenly(random, 0.0, 1.0);
            value += kind.noise * normal;
        }
        slices.push_back(std::move(slice));
    }
    auto image = newVolume(MERV::TypeUChar, {size, size, depth}, [&](int x, int y, int z) {
        const double value = slices[static_cast<std::size_t>(z)][pixelIndex(x, y, size)];
        return std::clamp(std::round(value), 0.0, 255.0);
    });
    image->setSpacing(kind.spacingX, kind.spacingY, 2.0f, 1.0f);
    image->setWindowRange(0.0f, 255.0f, 0);
    result.volume = std::make_unique<MervImageObject>(image.release(), QString("knee"));
    return result;
}
