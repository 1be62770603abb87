// Sums of small kernels over a volume, row by row. Each sum is added up in the order of the kernel's
// coefficients in single precision, so it is bit-identical to the plain loops over the kernel; running along
// the row inside lets the compiler use vector instructions.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace MERV::detail {

// A coefficient that is not zero and the distance in values to the voxel that it weighs.
struct KernelTap
{
    std::int64_t offset;
    float coefficient;
};
using KernelTaps = std::vector<KernelTap>;

// Square kernel, row-major; the strides are those of one step along a row and from row to row of the kernel.
inline KernelTaps squareTaps(const float *filter, int size, std::int64_t columnStride, std::int64_t rowStride)
{
    KernelTaps taps;
    const int half = (size - 1) / 2;
    for (int row = 0; row < size; ++row)
        for (int column = 0; column < size; ++column, ++filter)
            if (*filter != 0.0f)
                taps.push_back({(column - half) * columnStride + (row - half) * rowStride, *filter});
    return taps;
}

// Cubic kernel; the strides belong to its fastest, middle and slowest index.
inline KernelTaps cubeTaps(const float *filter, int size, std::int64_t fastStride, std::int64_t middleStride,
                           std::int64_t slowStride)
{
    KernelTaps taps;
    const int half = (size - 1) / 2;
    for (int slow = 0; slow < size; ++slow, filter += static_cast<std::ptrdiff_t>(size) * size)
        for (KernelTap tap : squareTaps(filter, size, fastStride, middleStride))
            taps.push_back({tap.offset + (slow - half) * slowStride, tap.coefficient});
    return taps;
}

struct KernelComponent
{
    KernelTaps taps;
    std::int64_t origin; // index of the value at voxel (0,0,0), a channel number
};

// The volume a kernel runs over. Positions nearer to the border than the margins have the sum 0; they are
// visited only with keepSize. Steps are in values.
struct KernelGrid
{
    std::int64_t width, height, depth;
    std::int64_t stepX, stepY, stepZ;
    std::int64_t margin;  // in x and y
    std::int64_t marginZ; // in z
    bool keepSize;

    std::int64_t visitedWidth() const { return std::max<std::int64_t>(width - 2 * skipped(margin), 0); }
    std::int64_t skipped(std::int64_t border) const { return keepSize ? 0 : border; }
    bool hasInterior() const { return width > 2 * margin && height > 2 * margin && depth > 2 * marginZ; }
};

// sums[i] += coefficient * values[first + i * step], where that index lies inside 0 .. count - 1.
template <class T>
void addWeightedRow(std::span<const T> values, std::int64_t first, std::int64_t step, float coefficient,
                    std::span<float> sums)
{
    const auto count = static_cast<std::int64_t>(values.size());
    if (first >= count)
        return;
    const std::int64_t begin = first < 0 ? (-first + step - 1) / step : 0;
    const std::int64_t end = std::min<std::int64_t>(std::ssize(sums), (count - 1 - first) / step + 1);
    if (begin >= end)
        return;
    const T *source = values.data() + (first + begin * step);
    float *sum = sums.data() + begin;
    const std::int64_t length = end - begin;
    if (step == 1) {
        for (std::int64_t i = 0; i < length; ++i)
            sum[i] += coefficient * static_cast<float>(source[i]);
    } else {
        for (std::int64_t i = 0; i < length; ++i)
            sum[i] += coefficient * static_cast<float>(source[i * step]);
    }
}

// Calls consume(y, z, rows) for every visited row in stored order; rows[c] holds the sums of component c.
template <class T, class Consume>
void forEachKernelRow(std::span<const T> values, const KernelGrid &grid,
                      std::span<const KernelComponent> components, Consume &&consume)
{
    const std::int64_t skip = grid.skipped(grid.margin);
    const std::int64_t skipZ = grid.skipped(grid.marginZ);
    if (!grid.keepSize && !grid.hasInterior())
        return;
    std::vector<std::vector<float>> rows(components.size(),
                                         std::vector<float>(static_cast<std::size_t>(grid.visitedWidth())));
    for (std::int64_t z = skipZ; z < grid.depth - skipZ; ++z) {
        for (std::int64_t y = skip; y < grid.height - skip; ++y) {
            const bool interior = grid.hasInterior() && y >= grid.margin && y < grid.height - grid.margin &&
                                  z >= grid.marginZ && z < grid.depth - grid.marginZ;
            for (std::size_t c = 0; c < components.size(); ++c) {
                std::fill(rows[c].begin(), rows[c].end(), 0.0f);
                if (!interior)
                    continue;
                const std::span<float> sums =
                    std::span(rows[c]).subspan(static_cast<std::size_t>(grid.margin - skip),
                                               static_cast<std::size_t>(grid.width - 2 * grid.margin));
                const std::int64_t first =
                    components[c].origin + z * grid.stepZ + y * grid.stepY + grid.margin * grid.stepX;
                for (const KernelTap &tap : components[c].taps)
                    addWeightedRow(values, first + tap.offset, grid.stepX, tap.coefficient, sums);
            }
            consume(y, z, rows);
        }
    }
}

// Smallest and largest of all values seen; NaN is passed over, and without a number it stays as it starts.
struct ValueRange
{
    float low = 1e16f;
    float high = -1e16f;

    void include(float value)
    {
        low = value < low ? value : low;
        high = value > high ? value : high;
    }
    void include(std::span<const float> values)
    {
        for (float value : values)
            include(value);
    }
};

} // namespace MERV::detail
