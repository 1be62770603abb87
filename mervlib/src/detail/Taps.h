// The one arithmetic of all interpolating readers: weighted sums of neighbours, used voxel by voxel by the
// readers and row by row by resampling, so that both give the same bits.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace MERV::detail {

// One axis of a volume: its extent and the distance of neighbours in values.
struct Axis
{
    std::int32_t extent;
    std::uint64_t stride;
};

// Neighbours on one or several axes: offsets into the buffer in values, and their weights.
template <std::size_t N>
struct Taps
{
    std::array<std::uint64_t, N> offset;
    std::array<float, N> weight;
};

// False for NaN, infinity and what an int cannot hold.
inline bool isIndexable(float coordinate)
{
    return std::abs(coordinate) < 2147483648.0f;
}

// Offset of an index, which is moved into the axis first. The axis is not empty.
inline std::uint64_t clampedOffset(std::int64_t index, const Axis &axis)
{
    return static_cast<std::uint64_t>(std::clamp<std::int64_t>(index, 0, axis.extent - 1)) * axis.stride;
}

inline std::uint64_t nearestOffset(float coordinate, const Axis &axis)
{
    // NOLINTNEXTLINE(bugprone-incorrect-roundings): truncation is the rounding that is meant
    return clampedOffset(static_cast<std::int64_t>(coordinate + 0.5), axis);
}

inline Taps<2> linearTaps(float coordinate, const Axis &axis)
{
    const auto index = static_cast<std::int64_t>(coordinate);
    const float f = coordinate - static_cast<float>(index);
    return {{clampedOffset(index, axis), clampedOffset(index + 1, axis)}, {1.0f - f, f}};
}

// Cubic convolution with the parameter -1.
inline Taps<4> cubicTaps(float coordinate, const Axis &axis)
{
    const auto index = static_cast<std::int64_t>(coordinate);
    const float f = coordinate - static_cast<float>(index);
    return {{clampedOffset(index - 1, axis), clampedOffset(index, axis), clampedOffset(index + 1, axis),
             clampedOffset(index + 2, axis)},
            {((2.0f - f) * f - 1.0f) * f, (f - 2.0f) * (f * f) + 1.0f, ((1.0f - f) * f + 1.0f) * f,
             (f - 1.0f) * (f * f)}};
}

// All pairs of the taps of two axes, the outer one slow.
template <std::size_t Outer, std::size_t Inner>
Taps<Outer * Inner> combine(const Taps<Outer> &outer, const Taps<Inner> &inner)
{
    Taps<Outer * Inner> all;
    for (std::size_t o = 0; o < Outer; ++o) {
        for (std::size_t i = 0; i < Inner; ++i) {
            all.offset[o * Inner + i] = outer.offset[o] + inner.offset[i];
            all.weight[o * Inner + i] = outer.weight[o] * inner.weight[i];
        }
    }
    return all;
}

// Sum of the neighbours on the rows and, within each row, on the columns, in this order.
template <class T, std::size_t Rows, std::size_t Columns>
inline float weightedSum(const T *values, const Taps<Rows> &rows, const Taps<Columns> &columns)
{
    float sum = 0.0f;
    for (std::size_t r = 0; r < Rows; ++r)
        for (std::size_t c = 0; c < Columns; ++c)
            sum += rows.weight[r] * columns.weight[c] *
                   static_cast<float>(values[rows.offset[r] + columns.offset[c]]);
    return sum;
}

// Bilinear within each of four slices, then cubic across them.
template <class T>
inline float bilinearCubicSum(const T *values, const Taps<4> &slices, const Taps<2> &rows,
                              const Taps<2> &columns)
{
    float sum = 0.0f;
    for (std::size_t s = 0; s < 4; ++s)
        sum += slices.weight[s] * weightedSum(values + slices.offset[s], rows, columns);
    return sum;
}

} // namespace MERV::detail
