#include "Common/EdgeDetection.h"

#include "Common/ImageBase.h"
#include "mervlib/src/detail/RowStore.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <iostream>
#include <memory>
#include <vector>

namespace MERV {
namespace {

constexpr float edgeValue2D = 255.0f;
constexpr float edgeValue3D = 4095.0f;

// Values of one slice, x fastest.
struct Plane
{
    Plane(int w, int h)
        : width(static_cast<std::size_t>(w))
        , height(static_cast<std::size_t>(h))
        , values(width * height, 0.0f)
    {}

    std::size_t width, height;
    std::vector<float> values;

    float at(std::size_t x, std::size_t y) const { return values[y * width + x]; }
};

struct PlaneGradient
{
    Plane x, y, magnitude;
};

bool hasVoxels(Image *image)
{
    return image && image->getData() && image->getValueCount() != 0;
}

Plane firstSlice(Image &image)
{
    Plane plane(image.getWidth(), image.getHeight());
    const auto channels = static_cast<std::size_t>(image.getChannels());
    detail::visitVoxels(image, [&](const auto *buffer) {
        for (std::size_t i = 0; i < plane.values.size(); ++i)
            plane.values[i] = static_cast<float>(buffer[i * channels]);
    });
    return plane;
}

// Border positions keep a gradient of 0.
PlaneGradient gradientOf(const Plane &plane)
{
    constexpr std::array<float, 9> table{1, 2, 1, 0, 0, 0, -1, -2, -1};
    const Plane zero(static_cast<int>(plane.width), static_cast<int>(plane.height));
    PlaneGradient gradient{zero, zero, zero};
    for (std::size_t y = 1; y + 1 < plane.height; ++y) {
        for (std::size_t x = 1; x + 1 < plane.width; ++x) {
            float gx = 0.0f, gy = 0.0f;
            for (std::size_t k = 0; k < table.size(); ++k) {
                gx += table[k] * plane.at(x + k % 3 - 1, y + k / 3 - 1);
                gy += table[k] * plane.at(x + k / 3 - 1, y + k % 3 - 1);
            }
            gx /= 9.0f;
            gy /= 9.0f;
            const std::size_t index = y * plane.width + x;
            gradient.x.values[index] = gx;
            gradient.y.values[index] = gy;
            gradient.magnitude.values[index] = std::sqrt(gx * gx + gy * gy);
        }
    }
    return gradient;
}

// Whether a place lies below one of the two neighbours that it is compared with, whatever the other. The
// gradient's x component answers to change along y, so an edge along an axis is compared with its own
// continuation and keeps its full width; this is the detector's behaviour.
bool isBelowARival(const PlaneGradient &gradient, std::size_t x, std::size_t y)
{
    constexpr double pi = 3.14159265358979;
    const Plane &magnitude = gradient.magnitude;
    const auto belowOneOf = [value = magnitude.at(x, y)](float first, float second) {
        return value < first || value < second;
    };
    const auto gx = static_cast<double>(gradient.x.at(x, y));
    const auto gy = static_cast<double>(gradient.y.at(x, y));
    double angle = std::atan2(gy, gx) * 180.0 / pi;
    if (angle < 0.0)
        angle += 180.0;
    if (angle < 22.5 || angle >= 157.5)
        return belowOneOf(magnitude.at(x - 1, y), magnitude.at(x + 1, y));
    if (angle < 67.5)
        return belowOneOf(magnitude.at(x - 1, y - 1), magnitude.at(x + 1, y + 1));
    if (angle < 112.5)
        return belowOneOf(magnitude.at(x, y - 1), magnitude.at(x, y + 1));
    return belowOneOf(magnitude.at(x + 1, y - 1), magnitude.at(x - 1, y + 1));
}

Plane suppressed(const PlaneGradient &gradient)
{
    Plane result = gradient.magnitude;
    for (std::size_t y = 1; y + 1 < result.height; ++y)
        for (std::size_t x = 1; x + 1 < result.width; ++x)
            if (isBelowARival(gradient, x, y))
                result.values[y * result.width + x] = 0.0f;
    return result;
}

bool hasNeighbourAbove(const Plane &plane, std::size_t x, std::size_t y, float high)
{
    for (std::size_t ny = y - 1; ny <= y + 1; ++ny)
        for (std::size_t nx = x - 1; nx <= x + 1; ++nx)
            if ((nx != x || ny != y) && plane.at(nx, ny) > high)
                return true;
    return false;
}

template <class V>
void markEdges2D(Image &image, float threshold, V *buffer)
{
    const Plane strength = suppressed(gradientOf(firstSlice(image)));
    const float high = 3.0f * threshold;
    std::fill_n(buffer, strength.values.size(), V(0));
    for (std::size_t y = 1; y + 1 < strength.height; ++y) {
        for (std::size_t x = 1; x + 1 < strength.width; ++x) {
            const float value = strength.at(x, y);
            if (value >= threshold && (value >= high || hasNeighbourAbove(strength, x, y, high)))
                buffer[y * strength.width + x] = static_cast<V>(edgeValue2D);
        }
    }
}

// Strides of the one-channel stores of the volume.
struct VolumeGrid
{
    explicit VolumeGrid(const Image &image)
        : width(image.getWidth())
        , height(image.getHeight())
        , depth(image.getDepth())
    {}

    std::int64_t width, height, depth;

    std::size_t index(std::int64_t x, std::int64_t y, std::int64_t z) const
    {
        return static_cast<std::size_t>((z * height + y) * width + x);
    }

    // Calls use(x, y, z) for all voxels that are not on the border, in stored order.
    template <class Use>
    void forEachInterior(Use &&use) const
    {
        for (std::int64_t z = 1; z < depth - 1; ++z)
            for (std::int64_t y = 1; y < height - 1; ++y)
                for (std::int64_t x = 1; x < width - 1; ++x)
                    use(x, y, z);
    }
};

void fillMagnitude(const short *gradient, ImageBase<float> &magnitude)
{
    for (float &value : magnitude) {
        const float x = gradient[0], y = gradient[1], z = gradient[2];
        value = std::sqrt(x * x + y * y + z * z);
        gradient += 3;
    }
}

// Strength 0 on the border and where the magnitude lies below that just ahead or just behind along the
// gradient.
std::vector<float> suppressed3D(const VolumeGrid &grid, const short *gradient,
                                const ImageBase<float> &magnitude)
{
    std::vector<float> strength(magnitude.getValueCount(), 0.0f);
    grid.forEachInterior([&](std::int64_t x, std::int64_t y, std::int64_t z) {
        const std::size_t index = grid.index(x, y, z);
        const float value = magnitude.begin()[index];
        if (value == 0.0f)
            return;
        const float step = static_cast<float>(value * 1.001); // a little less than one voxel
        const float dx = gradient[3 * index] / step;
        const float dy = gradient[3 * index + 1] / step;
        const float dz = gradient[3 * index + 2] / step;
        const auto fx = static_cast<float>(x), fy = static_cast<float>(y), fz = static_cast<float>(z);
        if (!(value < magnitude.ImageBase<float>::getTrilinear(fx + dx, fy + dy, fz + dz, 0, 0)) &&
            !(value < magnitude.ImageBase<float>::getTrilinear(fx - dx, fy - dy, fz - dz, 0, 0)))
            strength[index] = value;
    });
    return strength;
}

bool hasNeighbourAbove(const VolumeGrid &grid, const std::vector<float> &strength, std::int64_t x,
                       std::int64_t y, std::int64_t z, float high)
{
    for (std::int64_t nz = z - 1; nz <= z + 1; ++nz)
        for (std::int64_t ny = y - 1; ny <= y + 1; ++ny)
            for (std::int64_t nx = x - 1; nx <= x + 1; ++nx)
                if (strength[grid.index(nx, ny, nz)] > high)
                    return true;
    return false;
}

} // namespace

Image *detectEdges2D(Image *image, float threshold)
{
    if (!hasVoxels(image))
        return nullptr;
    auto edges = std::make_unique<ImageBase<float>>();
    edges->setDimensions(image->getWidth(), image->getHeight(), 1, 1, 1);
    edges->setSpacing(image->getSpacing(0), image->getSpacing(1), 1.0f, 1.0f);
    markEdges2D(*image, threshold, edges->begin());
    return edges.release();
}

void detectEdges2DBytes(Image *image, float threshold, unsigned char *buffer)
{
    if (hasVoxels(image) && buffer)
        markEdges2D(*image, threshold, buffer);
}

void detectEdges2DFloats(Image *image, float threshold, float *buffer)
{
    if (hasVoxels(image) && buffer)
        markEdges2D(*image, threshold, buffer);
}

void detectEdges3D(Image *image, float threshold)
{
    if (!hasVoxels(image))
        return;
    std::cout << "computing Gradient Magnitude...\n";
    std::unique_ptr<Image> gradient(image->compute3DGradient(TypeShort, nullptr, true, false, nullptr));
    if (!gradient)
        return;
    const auto *components = static_cast<const short *>(gradient->getData());
    auto magnitude = std::make_unique<ImageBase<float>>();
    magnitude->setDimensions(image->getWidth(), image->getHeight(), image->getDepth(), 1, 1);
    fillMagnitude(components, *magnitude);

    std::cout << "computing Suppression...\n";
    const VolumeGrid grid(*image);
    const std::vector<float> strength = suppressed3D(grid, components, *magnitude);
    magnitude.reset();
    gradient.reset();

    std::cout << "computing Hysteresis...\n";
    const float high = 3.0f * threshold;
    grid.forEachInterior([&](std::int64_t x, std::int64_t y, std::int64_t z) {
        const float value = strength[grid.index(x, y, z)];
        if (value >= threshold && (value >= high || hasNeighbourAbove(grid, strength, x, y, z, high)))
            image->setVoxel(edgeValue3D, static_cast<int>(x), static_cast<int>(y), static_cast<int>(z), 0, 0);
    });
}

} // namespace MERV
