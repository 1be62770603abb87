#pragma once

#include "Common/ImageBase.h"
#include "mervlib/src/detail/KernelRows.h"
#include "mervlib/src/detail/RowStore.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <iostream>
#include <limits>
#include <memory>
#include <span>
#include <vector>

namespace MERV {
namespace detail {

// Row-major; used where a gradient is asked for without a kernel.
inline constexpr std::array<float, 9> defaultKernel2D{1, 2, 1, 0, 0, 0, -1, -2, -1};
inline constexpr std::array<float, 27> defaultKernel3D{1, 1, 1, 1, 2,  1,  1,  1,  1,  0,  0,  0,  0, 0,
                                                       0, 0, 0, 0, -1, -1, -1, -1, -2, -1, -1, -1, -1};

// Derivatives are signed: every odd type code stands for an unsigned type and is refused.
inline bool refusesUnsigned(int dataType, const char *what)
{
    if ((dataType & 1) == 0)
        return false;
    std::cout << "Error: unsigned data type, cannot compute " << what << "!\n";
    return true;
}

inline bool acceptsKernel(const float *filter)
{
    if (!filter)
        std::cout << "Error: Cannot compute filtered image without filter!\n";
    return filter != nullptr;
}

inline bool acceptsKernel(const float *filter, int windowSize)
{
    if (!acceptsKernel(filter))
        return false;
    const bool odd = windowSize > 0 && windowSize % 2 == 1;
    if (!odd)
        std::cout << "Error: Window size must be an odd number!\n";
    return odd;
}

// The image that an operation writes to: the caller's, or a new one that is deleted unless it is handed out.
class Target
{
public:
    // x, y, z, t, channels
    using Sizes = std::array<std::int64_t, 5>;

    Target(Image &source, int dataType, const Sizes &sizes, Image *given)
        : image(given)
    {
        if (image)
            return;
        made.reset(createImage(dataType));
        image = made.get();
        if (!made)
            return;
        std::array<int, 5> positive{};
        std::transform(sizes.begin(), sizes.end(), positive.begin(),
                       [](std::int64_t size) { return static_cast<int>(std::max<std::int64_t>(size, 0)); });
        made->setDimensions(positive[0], positive[1], positive[2], positive[3], positive[4]);
        made->setSpacing(source.getSpacing(0), source.getSpacing(1), source.getSpacing(2),
                         source.getSpacing(3));
    }
    void copyPosition(const Image &source)
    {
        if (made)
            made->setPosition(source.getPosition());
    }
    explicit operator bool() const { return image != nullptr; }
    Image *operator->() const { return image; }
    Image &operator*() const { return *image; }
    Image *handOut()
    {
        static_cast<void>(made.release()); // image is the same pointer
        return image;
    }

private:
    Image *image;
    std::unique_ptr<Image> made;
};

// Writes the rows of several components as the interleaved channels of one row.
class InterleavedWriter
{
public:
    explicit InterleavedWriter(Image &output)
        : writer(output)
    {}

    void write(std::span<const std::vector<float>> components)
    {
        const std::size_t channels = components.size();
        const std::size_t width = components[0].size();
        row.resize(channels * width);
        for (std::size_t c = 0; c < channels; ++c)
            for (std::size_t x = 0; x < width; ++x)
                row[x * channels + c] = components[c][x];
        writer.write(row);
    }

private:
    SequentialWriter writer;
    std::vector<float> row;
};

// Holds gradient components inside the limits of the voxel type they are made for, and counts those outside.
class ComponentLimits
{
public:
    explicit ComponentLimits(int dataType)
    {
        if (dataType == TypeChar)
            setBounds(-128.0f, 127.0f);
        else if (dataType == TypeShort)
            setBounds(-32768.0f, 32767.0f);
    }

    void apply(std::span<float> values)
    {
        for (float &value : values) {
            if (value < low) {
                value = low;
                ++exceeded;
            } else if (value > high) {
                value = high;
                ++exceeded;
            }
        }
    }
    void warn() const
    {
        if (exceeded != 0)
            std::cout << "Warning: " << exceeded << " values exceeded.\n";
    }

private:
    void setBounds(float least, float most)
    {
        low = least;
        high = most;
    }

    float low = -std::numeric_limits<float>::infinity();
    float high = std::numeric_limits<float>::infinity();
    std::uint64_t exceeded = 0;
};

// Calls consume(components, limited range so far) with the x, y, z rows of the 3D gradient.
template <class T, class Consume>
ValueRange forEachGradientRow3D(std::span<const T> values, const KernelGrid &grid, const float *filter,
                                int dataType, bool verbose, Consume &&consume)
{
    if (verbose)
        std::cout << "Computing 3D gradient...\n";
    const float *kernel = filter ? filter : defaultKernel3D.data();
    const std::array<KernelComponent, 3> components{
        KernelComponent{cubeTaps(kernel, 3, grid.stepZ, grid.stepY, grid.stepX), 0},
        KernelComponent{cubeTaps(kernel, 3, grid.stepX, grid.stepZ, grid.stepY), 0},
        KernelComponent{cubeTaps(kernel, 3, grid.stepX, grid.stepY, grid.stepZ), 0}};
    ComponentLimits limits(dataType);
    ValueRange range;
    forEachKernelRow<T>(values, grid, components, [&](std::int64_t, std::int64_t, auto &rows) {
        for (std::vector<float> &row : rows) {
            limits.apply(row);
            range.include(row);
        }
        consume(rows);
    });
    if (verbose)
        std::cout << "Done. Range = [" << range.low << ".." << range.high << "]\n";
    limits.warn();
    return range;
}

inline void magnitudeRow(std::span<const std::vector<float>> gradient, std::vector<float> &magnitude)
{
    magnitude.resize(gradient[0].size());
    for (std::size_t i = 0; i < magnitude.size(); ++i) {
        const float x = gradient[0][i], y = gradient[1][i], z = gradient[2][i];
        magnitude[i] = std::sqrt(x * x + y * y + z * z);
    }
}

inline KernelGrid kernelGrid(const Image &image, int margin, int marginZ, bool keepSize)
{
    const std::int64_t channels = image.getChannels();
    return {image.getWidth(),
            image.getHeight(),
            image.getDepth(),
            channels,
            channels * image.getWidth(),
            static_cast<std::int64_t>(image.getSliceStride()),
            margin,
            marginZ,
            keepSize};
}

} // namespace detail

template <class T>
Image *ImageBase<T>::computeFilteredImage2D(int dataType, const float *filter, int windowSize, Image *output,
                                            int channel)
{
    const int type = dataType == 0 ? getDataType() : dataType;
    if (detail::refusesUnsigned(type, "filtered image"))
        return nullptr;
    detail::Target target(*this, type, {dimensions[1], dimensions[2], dimensions[3], dimensions[4], 1},
                          output);
    if (!target || !detail::acceptsKernel(filter, windowSize) || !data)
        return nullptr;
    target.copyPosition(*this);

    const int half = (windowSize - 1) / 2;
    const detail::KernelGrid grid = detail::kernelGrid(*this, half, 0, true);
    detail::KernelComponent component{{}, channel};
    if (grid.hasInterior())
        component.taps = detail::squareTaps(filter, windowSize, grid.stepX, grid.stepY);
    detail::ValueRange range;
    {
        detail::SequentialWriter writer(*target);
        detail::forEachKernelRow(std::span<const T>(begin(), end()), grid, {&component, 1},
                                 [&](std::int64_t, std::int64_t, const auto &rows) {
                                     range.include(rows[0]);
                                     writer.write(rows[0]);
                                 });
    }
    target->extendBorder(half);
    target->setWindowRange(range.low, range.high, 0);
    return target.handOut();
}

// Unsigned types are accepted here, and results are rounded to whole numbers whatever the voxel type.
template <class T>
Image *ImageBase<T>::computeFilteredImage3D(int dataType, const float *filter, int windowSize, Image *output,
                                            int channel)
{
    const int type = dataType == 0 ? getDataType() : dataType;
    detail::Target target(*this, type, {dimensions[1], dimensions[2], dimensions[3], dimensions[4], 1},
                          output);
    if (!target || !detail::acceptsKernel(filter, windowSize) || !data)
        return nullptr;
    target.copyPosition(*this);

    const int half = (windowSize - 1) / 2;
    const detail::KernelGrid grid = detail::kernelGrid(*this, half, half, true);
    detail::KernelComponent component{{}, channel};
    if (grid.hasInterior())
        component.taps = detail::cubeTaps(filter, windowSize, grid.stepX, grid.stepY, grid.stepZ);
    const detail::KernelGrid places = detail::kernelGrid(*target, 0, 0, true);
    detail::ValueRange range;
    detail::forEachKernelRow(std::span<const T>(begin(), end()), grid, {&component, 1},
                             [&](std::int64_t y, std::int64_t z, auto &rows) {
                                 range.include(rows[0]);
                                 for (float &value : rows[0])
                                     value = static_cast<float>(std::floor(static_cast<double>(value) + 0.5));
                                 detail::storeRow(
                                     *target, static_cast<std::uint64_t>(z * places.stepZ + y * places.stepY),
                                     static_cast<std::uint64_t>(places.stepX), rows[0]);
                             });
    target->getVoxel(getWidth() - 1, getHeight() - 1, getDepth() - 1, 0, 0); // leaves the cursor behind it
    target->setWindowRange(range.low, range.high, 0);
    return target.handOut();
}

// Addresses the buffer as one channel of one frame. The right-hand corners sit one place further out than the
// left-hand ones, on purpose. Copies from or to places outside the slice are left out.
template <class T>
void ImageBase<T>::extendBorder(int width)
{
    const std::int64_t w = dimensions[1], h = dimensions[2];
    if (!data)
        return;
    const std::int64_t outermost = std::min<std::int64_t>(width, std::max(w, h));
    const auto inside = [&](std::int64_t x, std::int64_t y) { return x >= 0 && x < w && y >= 0 && y < h; };
    for (std::int64_t z = 0; z < dimensions[3]; ++z) {
        T *slice = data + z * w * h;
        const auto copy = [&](std::int64_t toX, std::int64_t toY, std::int64_t fromX, std::int64_t fromY) {
            if (inside(toX, toY) && inside(fromX, fromY))
                slice[toX + toY * w] = slice[fromX + fromY * w];
        };
        for (std::int64_t k = outermost; k > 1; --k) {
            copy(k - 1, k - 1, k, k);
            copy(k - 1, h - k, k, h - k - 1);
            copy(w - k + 1, k - 1, w - k, k);
            copy(w - k + 1, h - k + 1, w - k, h - k);
        }
        for (std::int64_t k = outermost; k > 1; --k) {
            for (std::int64_t y = 0; y < h; ++y) {
                copy(k - 1, y, k, y);
                copy(w - k, y, w - k - 1, y);
            }
        }
        for (std::int64_t k = outermost; k > 1; --k) {
            for (std::int64_t x = 0; x < w; ++x) {
                copy(x, k - 1, x, k);
                copy(x, h - k, x, h - k - 1);
            }
        }
    }
}

// The first output channel answers to change along y, the second to change along x. The source is read as one
// channel of one frame.
template <class T>
Image *ImageBase<T>::computeGradient(int dataType, const float *filter, bool keepSize, Image *output)
{
    const int type = dataType == 0 ? getDataType() : dataType;
    if (detail::refusesUnsigned(type, "gradient"))
        return nullptr;
    detail::KernelGrid grid = detail::kernelGrid(*this, 1, 0, keepSize);
    grid.stepX = 1;
    grid.stepY = grid.width;
    grid.stepZ = grid.width * grid.height;
    const std::int64_t less = 2 * grid.skipped(1);
    detail::Target target(*this, type, {grid.width - less, grid.height - less, grid.depth, 1, 2}, output);
    if (!target || !data)
        return nullptr;

    const float *kernel = filter ? filter : detail::defaultKernel2D.data();
    const std::array<detail::KernelComponent, 2> components{
        detail::KernelComponent{detail::squareTaps(kernel, 3, grid.stepX, grid.stepY), 0},
        detail::KernelComponent{detail::squareTaps(kernel, 3, grid.stepY, grid.stepX), 0}};
    detail::ValueRange range;
    {
        detail::InterleavedWriter writer(*target);
        detail::forEachKernelRow(std::span<const T>(begin(), end()), grid, components,
                                 [&](std::int64_t, std::int64_t, const auto &rows) {
                                     range.include(rows[0]);
                                     range.include(rows[1]);
                                     writer.write(rows);
                                 });
    }
    target->setWindowRange(range.low, range.high, 0);
    target->setWindowRange(range.low, range.high, 1);
    return target.handOut();
}

// A source of one channel is differentiated first, in its own type: the type asked for counts for the result
// of a two-channel source only, beside being refused here when it is unsigned.
template <class T>
Image *ImageBase<T>::computeHessian(int dataType, const float *filter, Image *output)
{
    const int type = dataType == 0 ? getDataType() : dataType;
    if (detail::refusesUnsigned(type, "hessian") || !detail::acceptsKernel(filter))
        return nullptr;
    if (dimensions[0] == 1) {
        const std::unique_ptr<Image> gradient(computeGradient(getDataType(), filter, true, nullptr));
        return gradient ? gradient->computeHessian(getDataType(), filter, output) : nullptr;
    }
    if (dimensions[0] != 2 || !data)
        return nullptr;
    const detail::KernelGrid grid = detail::kernelGrid(*this, 1, 0, true);
    detail::Target target(*this, type, {grid.width, grid.height, grid.depth, 1, 3}, output);
    if (!target)
        return nullptr;

    const detail::KernelTaps straight = detail::squareTaps(filter, 3, grid.stepX, grid.stepY);
    const detail::KernelTaps transposed = detail::squareTaps(filter, 3, grid.stepY, grid.stepX);
    const std::array<detail::KernelComponent, 3> components{detail::KernelComponent{straight, 0},
                                                            detail::KernelComponent{transposed, 0},
                                                            detail::KernelComponent{transposed, 1}};
    std::array<detail::ValueRange, 3> ranges;
    {
        detail::InterleavedWriter writer(*target);
        detail::forEachKernelRow(std::span<const T>(begin(), end()), grid, components,
                                 [&](std::int64_t, std::int64_t, const auto &rows) {
                                     for (std::size_t c = 0; c < ranges.size(); ++c)
                                         ranges[c].include(rows[c]);
                                     writer.write(rows);
                                 });
    }
    for (std::size_t c = 0; c < ranges.size(); ++c)
        target->setWindowRange(ranges[c].low, ranges[c].high, static_cast<int>(c));
    return target.handOut();
}

template <class T>
Image *ImageBase<T>::compute3DGradientMagnitude(int dataType, const float *filter, bool keepSize,
                                                Image *output)
{
    const int type = dataType == 0 ? getDataType() : dataType;
    if (detail::refusesUnsigned(type, "gradient"))
        return nullptr;
    const detail::KernelGrid grid = detail::kernelGrid(*this, 1, 1, keepSize);
    const std::int64_t less = 2 * grid.skipped(1);
    detail::Target target(*this, type, {grid.width - less, grid.height - less, grid.depth - less, 1, 1},
                          output);
    if (!target || !data)
        return nullptr;

    detail::ValueRange range;
    {
        detail::SequentialWriter writer(*target);
        std::vector<float> magnitude;
        range = detail::forEachGradientRow3D(std::span<const T>(begin(), end()), grid, filter, type,
                                             verbose != 0, [&](auto &rows) {
                                                 detail::magnitudeRow(rows, magnitude);
                                                 writer.write(magnitude);
                                             });
    }
    target->setWindowRange(range.low, range.high, 0);
    return target.handOut();
}

template <class T>
Image *ImageBase<T>::compute3DGradient(int dataType, const float *filter, bool keepSize,
                                       bool withMagnitudeChannel, Image *output)
{
    const int type = dataType == 0 ? getDataType() : dataType;
    if (detail::refusesUnsigned(type, "gradient"))
        return nullptr;
    const detail::KernelGrid grid = detail::kernelGrid(*this, 1, 1, keepSize);
    const std::int64_t less = 2 * grid.skipped(1);
    const int channels = withMagnitudeChannel ? 4 : 3;
    detail::Target target(*this, type,
                          {grid.width - less, grid.height - less, grid.depth - less, 1, channels}, output);
    if (!target || !data)
        return nullptr;

    detail::ValueRange range;
    {
        detail::InterleavedWriter writer(*target);
        std::vector<std::vector<float>> all(static_cast<std::size_t>(channels));
        range = detail::forEachGradientRow3D(std::span<const T>(begin(), end()), grid, filter, type,
                                             verbose != 0, [&](auto &rows) {
                                                 std::copy(rows.begin(), rows.end(), all.begin());
                                                 if (withMagnitudeChannel)
                                                     detail::magnitudeRow(rows, all[3]);
                                                 writer.write(all);
                                             });
    }
    for (int channel = 0; channel < 3; ++channel)
        target->setWindowRange(range.low, range.high, channel);
    if (withMagnitudeChannel)
        target->setWindowRange(0.0f, getHigh(0), 3);
    return target.handOut();
}

} // namespace MERV
