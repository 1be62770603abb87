// Operations that change the grid: regions, box averages, resampling, quarter turns, mirroring.
#pragma once

#include "Common/ImageBase.h"
#include "Common/Progress.h"
#include "Common/VoxelCast.h"
#include "mervlib/src/detail/Taps.h"

#include <algorithm>
#include <bit>
#include <iostream>
#include <limits>
#include <memory>
#include <numeric>
#include <utility>
#include <vector>

namespace MERV {

// --- regions ---

template <class T>
Image *ImageBase<T>::getRegion(const Region &wanted)
{
    std::array<int, 5> extent;
    std::array<std::uint64_t, 5> count; // of the values that the source has
    for (std::size_t axis = 0; axis < 5; ++axis) {
        constexpr std::uint32_t most = std::numeric_limits<int>::max();
        extent[axis] = static_cast<int>(std::min(wanted.size[axis], most));
        const auto present = static_cast<std::uint32_t>(dimensions[axis]);
        count[axis] = std::min(wanted.size[axis], present - std::min(wanted.first[axis], present));
    }
    auto result = std::make_unique<ImageBase<T>>();
    result->setDimensions(extent[1], extent[2], extent[3], extent[4], extent[0]);
    result->spacing = spacing;
    result->position = position;
    if (data == nullptr || count[0] == 0 || count[1] == 0)
        return result.release();

    for (std::uint64_t t = 0; t < count[4]; ++t) {
        for (std::uint64_t z = 0; z < count[3]; ++z) {
            for (std::uint64_t y = 0; y < count[2]; ++y) {
                const T *from = data + (t + wanted.first[4]) * frameStride +
                                (z + wanted.first[3]) * sliceStride + (y + wanted.first[2]) * rowStride +
                                wanted.first[1] * axisStrides[1] + wanted.first[0];
                T *to =
                    result->data + t * result->frameStride + z * result->sliceStride + y * result->rowStride;
                for (std::uint64_t x = 0; x < count[1]; ++x)
                    std::copy_n(from + x * axisStrides[1], count[0], to + x * result->axisStrides[1]);
            }
        }
    }
    return result.release();
}

// --- box averages ---

namespace detail {

// Adds runs of `factor` neighbouring voxels of a row, each channel for itself, to the sums of a shorter row.
template <class T>
void addRuns(const T *row, std::vector<float> &sums, std::uint64_t factor, std::uint64_t channels)
{
    float *sum = sums.data();
    for (const float *end = sum + sums.size(); sum != end; sum += channels)
        for (std::uint64_t i = 0; i < factor; ++i, row += channels)
            for (std::uint64_t channel = 0; channel < channels; ++channel)
                sum[channel] += static_cast<float>(row[channel]);
}

} // namespace detail

template <class T>
void ImageBase<T>::downsample(int fx, int fy, int fz, int ft)
{
    const std::array<int, 4> factor{fx, fy, fz, ft};
    const auto [least, most] = std::minmax_element(factor.begin(), factor.end());
    if (data == nullptr || *least < 1 || *most == 1)
        return;
    std::array<int, 4> extent;
    bool cropped = false;
    for (std::size_t axis = 0; axis < 4; ++axis) {
        extent[axis] = dimensions[axis + 1] / factor[axis];
        cropped = cropped || extent[axis] * factor[axis] != dimensions[axis + 1];
    }
    if (cropped)
        std::cout << "Warning: Image will be cropped!" << '\n';

    VoxelBuffer<T> averages = boxAverages(extent, factor);
    changeDimensions(extent[0], extent[1], extent[2], extent[3], getChannels());
    for (std::size_t axis = 0; axis < 4; ++axis)
        spacing[axis + 1] *= static_cast<float>(factor[axis]);
    adopt(std::move(averages));
    computeMinMax();
    reportSize("Image downsampled, new size ");
}

template <class T>
VoxelBuffer<T> ImageBase<T>::boxAverages(const std::array<int, 4> &extent,
                                         const std::array<int, 4> &factor) const
{
    const auto size = [](int number) { return static_cast<std::uint64_t>(number); };
    const auto channels = size(getChannels());
    const std::uint64_t rowValues = size(extent[0]) * channels;
    const std::uint64_t rows = size(extent[1]) * size(extent[2]) * size(extent[3]);
    VoxelBuffer<T> averages = newVoxels<T>(rowValues * rows);
    if (rowValues * rows == 0)
        return averages;
    const auto boxSize =
        static_cast<float>(size(factor[0]) * size(factor[1]) * size(factor[2]) * size(factor[3]));
    std::vector<float> sums(rowValues);
    T *out = averages.get();
    for (std::uint64_t row = 0; row < rows; ++row, out += rowValues) {
        const std::uint64_t firstY = row % size(extent[1]) * size(factor[1]);
        const std::uint64_t firstZ = row / size(extent[1]) % size(extent[2]) * size(factor[2]);
        const std::uint64_t firstT = row / size(extent[1]) / size(extent[2]) * size(factor[3]);
        std::fill(sums.begin(), sums.end(), 0.0f);
        for (std::uint64_t t = firstT; t < firstT + size(factor[3]); ++t)
            for (std::uint64_t z = firstZ; z < firstZ + size(factor[2]); ++z)
                for (std::uint64_t y = firstY; y < firstY + size(factor[1]); ++y)
                    detail::addRuns(data + t * frameStride + z * sliceStride + y * rowStride, sums,
                                    size(factor[0]), channels);
        std::transform(sums.begin(), sums.end(), out,
                       [boxSize](float sum) { return voxel_cast<T>(sum / boxSize); });
    }
    return averages;
}

template <class T>
void ImageBase<T>::reportSize(const char *text) const
{
    if (verbose != 0)
        std::cout << text << getWidth() << " x " << getHeight() << " x " << getDepth() << '\n';
}

// --- resampling ---

namespace detail {

// Step, extent and clamping of one axis of a resampling.
struct ResampledAxis
{
    Axis source;
    int extent;  // new
    bool clamps; // keeps coordinates below the last index
    float step = 1.0f;

    ResampledAxis(const Axis &oldAxis, int newExtent, bool clampsCoordinates)
        : source(oldAxis)
        , extent(newExtent)
        , clamps(clampsCoordinates)
    {
        if (newExtent > 1)
            step = static_cast<float>(oldAxis.extent - 1) / static_cast<float>(newExtent - 1);
    }

    float coordinate(int index) const
    {
        // The float constant 0.0001.
        constexpr double margin = 9.999999747378752e-5;
        const float place = static_cast<float>(index) * step;
        if (clamps && place >= static_cast<float>(source.extent - 1) && place > 1.0f)
            return static_cast<float>(source.extent - 1 - margin);
        return place;
    }

    // What the given function makes of each coordinate and the axis.
    template <class Function>
    auto map(const Function &function) const
    {
        std::vector<decltype(function(0.0f, source))> all;
        all.reserve(static_cast<std::size_t>(extent));
        for (int index = 0; index < extent; ++index)
            all.push_back(function(coordinate(index), source));
        return all;
    }
};

inline std::uint64_t planeOffset(float coordinate, const Axis &axis)
{
    return clampedOffset(static_cast<std::int64_t>(coordinate), axis);
}

struct ResampledGrid
{
    ResampledAxis x;
    ResampledAxis y;
    ResampledAxis z;
    ResampledAxis t;
    int channels;
};

} // namespace detail

// The destination in stored order: rowReader(t, z, y) gives a function of x and the first value of a channel.
template <class T>
template <class RowReader>
void ImageBase<T>::fillRows(const detail::ResampledGrid &grid, bool firstChannelOnly, T *out,
                            const RowReader &rowReader) const
{
    const auto size = [](int number) { return static_cast<std::size_t>(number); };
    for (std::size_t t = 0; t < size(grid.t.extent); ++t) {
        for (std::size_t z = 0; z < size(grid.z.extent); ++z) {
            for (std::size_t y = 0; y < size(grid.y.extent); ++y) {
                const auto read = rowReader(t, z, y);
                for (std::size_t x = 0; x < size(grid.x.extent); ++x)
                    for (int channel = 0; channel < grid.channels; ++channel)
                        *out++ = read(x, data + (firstChannelOnly ? 0 : channel));
            }
        }
    }
}

template <class T>
void ImageBase<T>::resampleNearest(const detail::ResampledGrid &grid, T *out) const
{
    const auto offset = [](float place, const detail::Axis &axis) {
        return detail::nearestOffset(place, axis);
    };
    const auto xs = grid.x.map(offset);
    const auto ys = grid.y.map(offset);
    const auto zs = grid.z.map(offset);
    fillRows(grid, true, out, [&](std::size_t, std::size_t z, std::size_t y) {
        const std::uint64_t row = ys[y] + zs[z];
        // Through float, as by the reader.
        return [&xs, row](std::size_t x, const T *values) {
            return voxel_cast<T>(static_cast<float>(values[row + xs[x]]));
        };
    });
}

template <class T>
void ImageBase<T>::resampleLinear(const detail::ResampledGrid &grid, int interpolation, T *out) const
{
    const auto xs = grid.x.map(detail::linearTaps);
    const auto ys = grid.y.map(detail::linearTaps);
    const auto zs = grid.z.map(detail::linearTaps);
    const auto ts = grid.t.map(detail::linearTaps);
    const auto slices = grid.z.map(detail::planeOffset);
    const auto frames = grid.t.map(detail::planeOffset);
    const auto reader = [&xs](const auto &rows, std::uint64_t plane) {
        return [&xs, rows, plane](std::size_t x, const T *values) {
            return voxel_cast<T>(detail::weightedSum(values + plane, rows, xs[x]));
        };
    };
    if (interpolation == 5)
        fillRows(grid, false, out, [&](std::size_t t, std::size_t z, std::size_t y) {
            return reader(ys[y], slices[z] + frames[t]);
        });
    else if (interpolation == 6)
        fillRows(grid, false, out, [&](std::size_t t, std::size_t z, std::size_t y) {
            return reader(combine(combine(ts[t], zs[z]), ys[y]), 0);
        });
    else
        fillRows(grid, false, out, [&](std::size_t t, std::size_t z, std::size_t y) {
            return reader(combine(zs[z], ys[y]), frames[t]);
        });
}

template <class T>
void ImageBase<T>::resampleTricubic(const detail::ResampledGrid &grid, T *out) const
{
    const auto xs = grid.x.map(detail::cubicTaps);
    const auto ys = grid.y.map(detail::cubicTaps);
    const auto zs = grid.z.map(detail::cubicTaps);
    fillRows(grid, true, out, [&](std::size_t, std::size_t z, std::size_t y) {
        return [&xs, rows = combine(zs[z], ys[y])](std::size_t x, const T *values) {
            return voxel_cast<T>(detail::weightedSum(values, rows, xs[x]));
        };
    });
}

template <class T>
void ImageBase<T>::resampleBilinearCubic(const detail::ResampledGrid &grid, T *out) const
{
    const auto xs = grid.x.map(detail::linearTaps);
    const auto ys = grid.y.map(detail::linearTaps);
    const auto zs = grid.z.map(detail::cubicTaps);
    fillRows(grid, true, out, [&](std::size_t, std::size_t z, std::size_t y) {
        return [&xs, rows = ys[y], slices = zs[z]](std::size_t x, const T *values) {
            return voxel_cast<T>(detail::bilinearCubicSum(values, slices, rows, xs[x]));
        };
    });
}

template <class T>
void ImageBase<T>::resampleInto(const detail::ResampledGrid &grid, int interpolation, T *out) const
{
    if (valueCount == 0)
        return;
    switch (interpolation) {
    case 1:
    case 5:
    case 6:
        return resampleLinear(grid, interpolation, out);
    case 3:
        return resampleTricubic(grid, out);
    case 4:
        return resampleBilinearCubic(grid, out);
    default:
        return resampleNearest(grid, out);
    }
}

namespace detail {

// The kind that takes the place of one that needs more slices or frames than asked for.
inline int possibleInterpolation(int interpolation, int depth, int frames, std::ostream &warnings)
{
    if (depth < 2 && (interpolation == 1 || interpolation == 3)) {
        warnings << "Warning: TriLinear/Tricubic Interpolation requested, but only one dimension of slices "
                    "found.\nSwitching to BiLinear Interpolation\n";
        interpolation = 5;
    }
    if (frames <= 1 && interpolation == 6) {
        warnings << "Warning: QuadriLinear Interpolation requested, but only one dimension of time "
                    "found.\nSwitching to TriLinear Interpolation\n";
        interpolation = 1;
    }
    return interpolation;
}

} // namespace detail

template <class T>
void ImageBase<T>::resample(int width, int height, int interpolation)
{
    resample(width, height, getDepth(), getFrames(), interpolation, false);
}

template <class T>
Image *ImageBase<T>::resample(int width, int height, int depth, int frames, int interpolation,
                              bool intoNewImage)
{
    if (width < 1 || height < 1 || depth < 1 || frames < 1)
        return nullptr;
    interpolation = detail::possibleInterpolation(interpolation, depth, frames, std::cerr);
    if (data == nullptr)
        return nullptr;
    std::unique_ptr<ImageBase<T>> result = resampled(width, height, depth, frames, interpolation);
    if (intoNewImage) {
        result->computeMinMax();
        return result.release();
    }
    takeGrid(*result);
    reportSize("Image resampled, new size ");
    return nullptr;
}

template <class T>
std::unique_ptr<ImageBase<T>> ImageBase<T>::resampled(int width, int height, int depth, int frames,
                                                      int interpolation) const
{
    // At the old size every coordinate is an index, and clamping would blend the last voxels of each axis.
    const bool clamps =
        width != getWidth() || height != getHeight() || depth != getDepth() || frames != getFrames();
    const detail::ResampledGrid grid{{axis(0), width, clamps},
                                     {axis(1), height, clamps},
                                     {axis(2), depth, clamps},
                                     {axis(3), frames, clamps},
                                     getChannels()};
    auto result = std::make_unique<ImageBase<T>>();
    result->setDimensions(width, height, depth, frames, getChannels());
    result->setSpacing(grid.x.step * spacing[1], grid.y.step * spacing[2], grid.z.step * spacing[3],
                       grid.t.step * spacing[4]);
    resampleInto(grid, interpolation, result->data);
    return result;
}

template <class T>
void ImageBase<T>::takeGrid(ImageBase<T> &other)
{
    copyShape(other);
    spacing = other.spacing;
    adopt(std::move(other.owned));
    computeMinMax();
}

namespace detail {

inline int powerOfTwoExtent(int extent)
{
    // Beyond 2^30 there is none that fits.
    return extent > 1 && extent <= (1 << 30) ? static_cast<int>(std::bit_ceil(static_cast<unsigned>(extent)))
                                             : extent;
}

} // namespace detail

template <class T>
void ImageBase<T>::scaleToPowerOfTwo(int interpolation)
{
    const int width = detail::powerOfTwoExtent(getWidth());
    const int height = detail::powerOfTwoExtent(getHeight());
    const int depth = detail::powerOfTwoExtent(getDepth());
    if (data == nullptr || (width == getWidth() && height == getHeight() && depth == getDepth()))
        return;
    resample(width, height, depth, getFrames(), interpolation, false);
    if (verbose != 0)
        std::cout << "Scaled to power of two, new width = " << width << ", height = " << height
                  << ", depth = " << depth << '\n';
}

template <class T>
void ImageBase<T>::scaleToPowerOfTwo2D(int interpolation)
{
    const int width = detail::powerOfTwoExtent(getWidth());
    const int height = detail::powerOfTwoExtent(getHeight());
    if (data == nullptr || valueCount == 0 || (width == getWidth() && height == getHeight()))
        return;
    std::ostream nowhere(nullptr);
    const int kind = detail::possibleInterpolation(interpolation, getDepth(), getFrames(), nowhere);
    takeGrid(*resampled(width, height, getDepth(), getFrames(), kind));
}

// --- quarter turns ---

namespace detail {

// Copies the voxels of a plane, in tiles that keep both sides in the cache. Steps are in values.
template <class T>
struct PlaneCopy
{
    // As wide as the steps: the end of the last tile may lie beyond what an int holds.
    std::ptrdiff_t columns;
    std::ptrdiff_t rows;
    std::ptrdiff_t fromColumn;
    std::ptrdiff_t fromRow;
    std::ptrdiff_t toColumn;
    std::ptrdiff_t toRow;
    std::ptrdiff_t channels;

    void operator()(const T *from, T *to) const
    {
        constexpr std::ptrdiff_t tile = 32;
        for (std::ptrdiff_t firstRow = 0; firstRow < rows; firstRow += tile)
            for (std::ptrdiff_t firstColumn = 0; firstColumn < columns; firstColumn += tile)
                copyTile(from, to, firstColumn, std::min(firstColumn + tile, columns), firstRow,
                         std::min(firstRow + tile, rows));
    }

private:
    void copyTile(const T *from, T *to, std::ptrdiff_t firstColumn, std::ptrdiff_t endColumn,
                  std::ptrdiff_t firstRow, std::ptrdiff_t endRow) const
    {
        for (std::ptrdiff_t column = firstColumn; column < endColumn; ++column) {
            for (std::ptrdiff_t row = firstRow; row < endRow; ++row) {
                const T *source = from + column * fromColumn + row * fromRow;
                T *target = to + column * toColumn + row * toRow;
                for (std::ptrdiff_t channel = 0; channel < channels; ++channel)
                    target[channel] = source[channel];
            }
        }
    }
};

} // namespace detail

template <class T>
void ImageBase<T>::rotate(int number)
{
    if (data == nullptr || number < 0 || number > 2)
        return;
    VoxelBuffer<T> turned = newVoxels<T>(valueCount);
    for (std::uint64_t start = 0; start < valueCount; start += frameStride)
        turnFrame(number, data + start, turned.get() + start);

    // The two axes beside the one turned around.
    const std::size_t first = number == 0 ? 2 : 1;
    const std::size_t second = number == 2 ? 2 : 3;
    std::array<int, 5> size = dimensions;
    std::swap(size[first], size[second]);
    changeDimensions(size[1], size[2], size[3], size[4], size[0]);
    std::swap(spacing[first], spacing[second]);
    adopt(std::move(turned));
    if (verbose != 0)
        std::cout << "Rotated image around axis " << number << '\n';
}

template <class T>
void ImageBase<T>::turnFrame(int number, const T *from, T *to) const
{
    const std::ptrdiff_t width = getWidth();
    const std::ptrdiff_t height = getHeight();
    const std::ptrdiff_t depth = getDepth();
    const int channels = getChannels();
    const auto row = static_cast<std::ptrdiff_t>(rowStride);
    const auto slice = static_cast<std::ptrdiff_t>(sliceStride);
    if (number == 0) {
        for (std::ptrdiff_t z = 0; z < depth; ++z)
            for (std::ptrdiff_t y = 0; y < height; ++y, from += row)
                std::copy_n(from, row, to + ((height - y - 1) * depth + z) * row);
    } else if (number == 1) {
        const detail::PlaneCopy<T> copy{getWidth(), getDepth(), channels, slice, height * depth * channels,
                                        -channels,  channels};
        for (std::ptrdiff_t y = 0; y < height; ++y)
            copy(from + y * row, to + ((y + 1) * depth - 1) * channels);
    } else {
        const detail::PlaneCopy<T> copy{getWidth(),         getHeight(), channels, row,
                                        -height * channels, channels,    channels};
        for (std::ptrdiff_t z = 0; z < depth; ++z)
            copy(from + z * slice, to + ((z + 1) * width - 1) * height * channels);
    }
}

// --- mirroring ---

namespace detail {

// Swaps a row with another one, or with itself, reversing its voxels, the channels within them, or both.
template <class T>
class RowSwap
{
public:
    RowSwap(std::uint64_t rowVoxels, std::uint64_t voxelChannels, bool reversesVoxels, bool reversesChannels)
        : voxels(rowVoxels)
        , channels(voxelChannels)
        , flipsVoxels(reversesVoxels)
        , flipsChannels(reversesChannels)
    {
        // A whole row reversed, or not at all, is one voxel of many channels.
        if (flipsVoxels == flipsChannels || channels == 1) {
            flipsChannels = flipsVoxels || (flipsChannels && channels != 1);
            flipsVoxels = false;
            channels *= voxels;
            voxels = 1;
        }
    }

    void operator()(T *a, T *b) const
    {
        const bool same = a == b;
        for (std::uint64_t voxel = 0; voxel < (same && flipsVoxels ? voxels / 2 : voxels); ++voxel) {
            T *first = a + voxel * channels;
            T *second = b + (flipsVoxels ? voxels - voxel - 1 : voxel) * channels;
            if (!flipsChannels)
                std::swap_ranges(first, first + channels, second);
            else if (same)
                std::reverse(first, first + channels);
            else
                std::swap_ranges(first, first + channels, std::make_reverse_iterator(second + channels));
        }
    }

    bool changesRows() const { return flipsVoxels || flipsChannels; }

private:
    std::uint64_t voxels;
    std::uint64_t channels;
    bool flipsVoxels;
    bool flipsChannels;
};

} // namespace detail

// Two or more axes of which none is even, in a volume with at most one odd axis longer than 1: nothing is
// mirrored then, on purpose.
template <class T>
bool ImageBase<T>::mirrorIsVoid(const std::array<bool, 5> &flags) const
{
    std::size_t oddAxes = 0;
    std::size_t flagged = 0;
    bool halved = false;
    for (std::size_t axis = 0; axis < 5; ++axis) {
        const bool even = dimensions[axis] % 2 == 0;
        oddAxes += !even && dimensions[axis] > 1;
        flagged += flags[axis];
        halved = halved || (flags[axis] && even);
    }
    return flagged == 0 || (flagged > 1 && oddAxes <= 1 && !halved);
}

template <class T>
void ImageBase<T>::mirror(bool x, bool y, bool z, bool t, bool channels)
{
    if (data == nullptr || valueCount == 0 || mirrorIsVoid({channels, x, y, z, t}))
        return;
    const auto size = [](int number) { return static_cast<std::uint64_t>(number); };
    const detail::RowSwap<T> swapRows(size(getWidth()), size(getChannels()), x, channels);
    const std::uint64_t rows = valueCount / rowStride;
    for (std::uint64_t row = 0; row < rows; ++row) {
        const std::uint64_t rowY = row % size(getHeight());
        const std::uint64_t rowZ = row / size(getHeight()) % size(getDepth());
        const std::uint64_t rowT = row / size(getHeight()) / size(getDepth());
        const std::uint64_t otherY = y ? size(getHeight()) - rowY - 1 : rowY;
        const std::uint64_t otherZ = z ? size(getDepth()) - rowZ - 1 : rowZ;
        const std::uint64_t otherT = t ? size(getFrames()) - rowT - 1 : rowT;
        const std::uint64_t other = (otherT * size(getDepth()) + otherZ) * size(getHeight()) + otherY;
        if (row < other || (row == other && swapRows.changesRows()))
            swapRows(data + row * rowStride, data + other * rowStride);
        if (rowY == 0)
            reportProgress(row, rows);
    }
}

} // namespace MERV
