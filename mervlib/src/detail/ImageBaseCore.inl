// Construction, memory, dimensions, windows, values by index, cursor, statistics and metadata.
#pragma once

#include "Common/ImageBase.h"
#include "Common/Progress.h"
#include "Common/VoxelCast.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <iostream>
#include <limits>
#include <map>
#include <memory>
#include <stdexcept>
#include <type_traits>

namespace MERV {

// --- construction ---

template <class T>
ImageBase<T>::ImageBase() = default;

template <class T>
ImageBase<T>::ImageBase(const ImageBase &other)
    : Image()
    , spacing(other.spacing)
    , verbose(other.verbose)
    , position(other.position)
    , metaData(other.metaData)
{
    copyShape(other);
    sliceMetaData = other.sliceMetaData;
    region = other.region;
    if (other.data == nullptr)
        return;
    allocate(valueCount);
    std::copy_n(other.data, valueCount, data);
    computeMinMax();
}

template <class T>
ImageBase<T>::ImageBase(ImageBase &&other) noexcept
    : externalBuffer(std::exchange(other.externalBuffer, false))
    , data(std::exchange(other.data, nullptr))
    , owned(std::move(other.owned))
    , dimensions(std::exchange(other.dimensions, {}))
    , spacing(other.spacing)
    , commonWindow(other.commonWindow)
    , channelWindows(std::exchange(other.channelWindows, {}))
    , minimum(other.minimum)
    , maximum(other.maximum)
    , verbose(other.verbose)
    , rowStride(std::exchange(other.rowStride, 0))
    , sliceStride(std::exchange(other.sliceStride, 0))
    , frameStride(std::exchange(other.frameStride, 0))
    , valueCount(std::exchange(other.valueCount, 0))
    , cursor(other.cursor.load(std::memory_order_relaxed))
    , position(other.position)
    , orientation(other.orientation)
    , name(std::move(other.name))
    , axisStrides(std::exchange(other.axisStrides, {}))
    , region(std::exchange(other.region, {}))
    , metaData(std::move(other.metaData))
    , sliceMetaData(std::exchange(other.sliceMetaData, {}))
{}

template <class T>
ImageBase<T>::~ImageBase() = default;

template <class T>
Image *ImageBase<T>::clone() const
{
    return new ImageBase<T>(*this);
}

template <class T>
Image *ImageBase<T>::cloneSlices(int first, int last) const
{
    auto copy = std::make_unique<ImageBase<T>>();
    copy->spacing = spacing;
    copy->position = position;
    copy->verbose = verbose;
    copy->metaData = metaData;
    constexpr std::int64_t deepest = std::numeric_limits<std::int32_t>::max();
    const std::int64_t depth = std::max<std::int64_t>(std::int64_t(last) - first, 0);
    if (depth > deepest)
        throwOutOfMemory();
    copy->setDimensions(getWidth(), getHeight(), static_cast<int>(depth), getFrames(), getChannels());

    const std::int64_t from = std::max<std::int64_t>(first, 0);
    const std::int64_t to = std::min<std::int64_t>(last, getDepth());
    if (from >= to)
        return copy.release();
    const auto end = sliceMetaData.lower_bound(static_cast<int>(to));
    for (auto entry = sliceMetaData.lower_bound(static_cast<int>(from)); entry != end; ++entry)
        copy->sliceMetaData[entry->first - first] = entry->second;
    if (data == nullptr || copy->data == nullptr)
        return copy.release();
    // Only as many values as slices were asked for: of several frames the first alone is filled, on purpose.
    std::copy(data + std::uint64_t(from) * sliceStride, data + std::uint64_t(to) * sliceStride,
              copy->data + std::uint64_t(from - first) * sliceStride);
    copy->computeMinMax();
    return copy.release();
}

// --- memory and dimensions ---

template <class T>
void ImageBase<T>::adopt(VoxelBuffer<T> buffer)
{
    owned = std::move(buffer);
    data = owned.get();
    externalBuffer = false;
}

template <class T>
void ImageBase<T>::allocate(std::uint64_t count)
{
    freeBuffer();
    owned = newVoxels<T>(count);
    data = owned.get();
}

template <class T>
void ImageBase<T>::freeBuffer()
{
    owned.reset();
    data = nullptr;
}

template <class T>
void ImageBase<T>::setBufferExternal()
{
    freeBuffer();
    externalBuffer = true;
}

// A foreign buffer stays in use and stays foreign: only what this object allocated is ever freed by it.
template <class T>
void ImageBase<T>::clearBufferExternal()
{
    externalBuffer = false;
}

template <class T>
void ImageBase<T>::setExternalBuffer(T *buffer)
{
    setBufferExternal();
    data = buffer;
}

template <class T>
bool ImageBase<T>::hasExternalBuffer() const
{
    return externalBuffer;
}

template <class T>
void ImageBase<T>::changeDimensions(int width, int height, int depth, int frames, int channels)
{
    const std::array<std::int32_t, 5> size{std::max(channels, 0), std::max(width, 0), std::max(height, 0),
                                           std::max(depth, 0), std::max(frames, 0)};
    constexpr std::uint64_t most = std::numeric_limits<std::ptrdiff_t>::max() / sizeof(T);
    std::array<std::uint64_t, 6> strides{1};
    for (std::size_t axis = 0; axis < 5; ++axis) {
        const auto extent = static_cast<std::uint64_t>(size[axis]);
        if (extent != 0 && strides[axis] > most / extent)
            throwOutOfMemory();
        strides[axis + 1] = strides[axis] * extent;
    }
    commonWindow = {};
    channelWindows.clear();
    sliceMetaData.erase(sliceMetaData.lower_bound(size[3]), sliceMetaData.end());
    if (strides[5] != valueCount)
        freeBuffer();
    dimensions = size;
    std::copy_n(strides.begin(), 5, axisStrides.begin());
    rowStride = strides[2];
    sliceStride = strides[3];
    frameStride = strides[4];
    valueCount = strides[5];
    region = wholeRegion();
}

template <class T>
Region ImageBase<T>::wholeRegion() const
{
    Region whole;
    for (std::size_t axis = 0; axis < 5; ++axis) {
        whole.size[axis] = static_cast<std::uint32_t>(dimensions[axis]);
        whole.last[axis] = whole.size[axis] == 0 ? 0 : whole.size[axis] - 1;
    }
    return whole;
}

template <class T>
void ImageBase<T>::copyShape(const ImageBase &other)
{
    changeDimensions(other.getWidth(), other.getHeight(), other.getDepth(), other.getFrames(),
                     other.getChannels());
}

template <class T>
int ImageBase<T>::setDimensions(int width, int height, int depth, int frames, int channels)
{
    changeDimensions(width, height, depth, frames, channels);
    if (!externalBuffer && data == nullptr && valueCount != 0)
        allocate(valueCount);
    return 0;
}

template <class T>
void ImageBase<T>::clear()
{
    if (!externalBuffer && data == nullptr && valueCount != 0)
        allocate(valueCount);
    if (data != nullptr)
        std::fill_n(data, valueCount, T(0));
    computeMinMax();
}

template <class T>
void *ImageBase<T>::getData()
{
    return data;
}

template <class T>
void *ImageBase<T>::getFrameData(int frame)
{
    if (data == nullptr || frame < 0 || frame >= getFrames())
        return nullptr;
    return data + static_cast<std::uint64_t>(frame) * frameStride;
}

template <class T>
T *ImageBase<T>::getSlicePointer(int slice, int frame)
{
    if (data == nullptr)
        return nullptr;
    return data + (frame * static_cast<std::ptrdiff_t>(frameStride) +
                   slice * static_cast<std::ptrdiff_t>(sliceStride));
}

template <class T>
T *ImageBase<T>::voxelPointer(const std::array<std::uint32_t, 5> &index)
{
    std::uint64_t offset = 0;
    for (std::size_t axis = 0; axis < 5; ++axis)
        offset += index[axis] * axisStrides[axis];
    return data + offset;
}

template <class T>
int ImageBase<T>::getSizeX() const
{
    return dimensions[1];
}

template <class T>
int ImageBase<T>::getSizeY() const
{
    return dimensions[2];
}

template <class T>
int ImageBase<T>::getSizeZ() const
{
    return dimensions[3];
}

template <class T>
void ImageBase<T>::getAxialSliceSize(int &width, int &height) const
{
    width = getWidth();
    height = getHeight();
}

template <class T>
void ImageBase<T>::getSagittalSliceSize(int &width, int &height) const
{
    width = getHeight();
    height = getDepth();
}

template <class T>
void ImageBase<T>::getCoronalSliceSize(int &width, int &height) const
{
    width = getWidth();
    height = getDepth();
}

template <class T>
int ImageBase<T>::getDataType() const
{
    return DataTypeOf<T>::value;
}

template <class T>
int ImageBase<T>::getWidth() const
{
    return dimensions[1];
}

template <class T>
int ImageBase<T>::getHeight() const
{
    return dimensions[2];
}

template <class T>
int ImageBase<T>::getDepth() const
{
    return dimensions[3];
}

template <class T>
int ImageBase<T>::getFrames() const
{
    return dimensions[4];
}

template <class T>
int ImageBase<T>::getChannels() const
{
    return dimensions[0];
}

template <class T>
std::uint64_t ImageBase<T>::getValueCount() const
{
    return valueCount;
}

template <class T>
int ImageBase<T>::getDimension(int axis) const
{
    return axis >= -1 && axis <= 3 ? dimensions[static_cast<std::size_t>(axis) + 1] : 0;
}

template <class T>
std::uint64_t ImageBase<T>::getSize() const
{
    return valueCount;
}

template <class T>
std::uint32_t ImageBase<T>::getRowStride() const
{
    return static_cast<std::uint32_t>(rowStride);
}

template <class T>
std::uint64_t ImageBase<T>::getSliceStride() const
{
    return sliceStride;
}

// --- windows, range, spacing, patient position ---

template <class T>
bool ImageBase<T>::hasChannel(int channel) const
{
    return channel >= 0 && channel < getChannels();
}

template <class T>
float ImageBase<T>::windowEntry(int channel, std::size_t entry) const
{
    if (!hasChannel(channel))
        return 0.0f;
    const auto own = channelWindows.find(channel);
    return own == channelWindows.end() ? commonWindow[entry] : own->second[entry];
}

namespace detail {

inline std::array<float, 4> windowOfRange(float low, float high)
{
    return {high - low, (low + high) / 2, low, high};
}

} // namespace detail

template <class T>
void ImageBase<T>::setWindowEntries(int channel, const std::array<float, 4> &entries)
{
    if (hasChannel(channel))
        channelWindows[channel] = entries;
}

template <class T>
void ImageBase<T>::setWindowLevel(float window, float level, int channel)
{
    setWindowEntries(channel, {window, level, level - window / 2, level + window / 2});
}

template <class T>
void ImageBase<T>::setWindowRange(float low, float high, int channel)
{
    setWindowEntries(channel, detail::windowOfRange(low, high));
}

template <class T>
float ImageBase<T>::getWindow(int channel) const
{
    return windowEntry(channel, 0);
}

template <class T>
float ImageBase<T>::getLevel(int channel) const
{
    return windowEntry(channel, 1);
}

template <class T>
float ImageBase<T>::getLow(int channel) const
{
    return windowEntry(channel, 2);
}

template <class T>
float ImageBase<T>::getHigh(int channel) const
{
    return windowEntry(channel, 3);
}

template <class T>
void ImageBase<T>::setMinMax(float newMinimum, float newMaximum)
{
    minimum = newMinimum;
    maximum = newMaximum;
}

template <class T>
float ImageBase<T>::getMinimum() const
{
    return minimum;
}

template <class T>
float ImageBase<T>::getMaximum() const
{
    return maximum;
}

template <class T>
void ImageBase<T>::setMinimum(float v)
{
    minimum = v;
}

template <class T>
void ImageBase<T>::setMaximum(float v)
{
    maximum = v;
}

template <class T>
void ImageBase<T>::setSpacing(float x, float y, float z, float t)
{
    spacing = {0.0f, x, y, z, t};
}

template <class T>
float ImageBase<T>::getSpacing(int axis) const
{
    return axis >= -1 && axis <= 3 ? spacing[static_cast<std::size_t>(axis) + 1] : 0.0f;
}

template <class T>
void ImageBase<T>::setName(const std::string &newName)
{
    name = newName;
}

template <class T>
std::string ImageBase<T>::getName() const
{
    return name;
}

template <class T>
void ImageBase<T>::setPosition(const float newPosition[3])
{
    std::copy_n(newPosition, position.size(), position.begin());
}

template <class T>
void ImageBase<T>::setOrientation(const float newOrientation[9])
{
    std::copy_n(newOrientation, orientation.size(), orientation.begin());
}

template <class T>
const float *ImageBase<T>::getPosition() const
{
    return position.data();
}

template <class T>
const float *ImageBase<T>::getOrientation() const
{
    return orientation.data();
}

template <class T>
void ImageBase<T>::setVerbose(int newVerbose)
{
    verbose = newVerbose;
}

// --- values by index and by cursor ---

template <class T>
std::uint64_t ImageBase<T>::flatIndex(int x, int y, int z, int t, int channel) const
{
    // Modulo 2^64: what lies before the buffer becomes an index far behind it.
    return static_cast<std::uint64_t>(t) * frameStride + static_cast<std::uint64_t>(z) * sliceStride +
           static_cast<std::uint64_t>(y) * rowStride + static_cast<std::uint64_t>(x) * axisStrides[1] +
           static_cast<std::uint64_t>(channel);
}

template <class T>
float ImageBase<T>::valueAt(std::uint64_t index) const
{
    return index < valueCount && data != nullptr ? static_cast<float>(data[index]) : 0.0f;
}

template <class T>
void ImageBase<T>::storeAt(float value, std::uint64_t index)
{
    if (index < valueCount && data != nullptr)
        data[index] = voxel_cast<T>(value);
}

template <class T>
bool ImageBase<T>::getNextValue(float &value)
{
    const std::uint64_t index = cursor.load(std::memory_order_relaxed);
    if (index >= valueCount || data == nullptr)
        return false;
    value = static_cast<float>(data[index]);
    cursor.store(index + 1, std::memory_order_relaxed);
    return true;
}

template <class T>
bool ImageBase<T>::setNextValue(float value)
{
    const std::uint64_t index = cursor.load(std::memory_order_relaxed);
    if (index >= valueCount || data == nullptr)
        return false;
    data[index] = voxel_cast<T>(value);
    cursor.store(index + 1, std::memory_order_relaxed);
    return true;
}

template <class T>
void ImageBase<T>::setLastValue(float value)
{
    // At cursor 0 the index wraps and nothing is stored.
    storeAt(value, cursor.load(std::memory_order_relaxed) - 1);
}

template <class T>
void ImageBase<T>::resetCursor()
{
    cursor.store(0, std::memory_order_relaxed);
}

template <class T>
void ImageBase<T>::setValue(float value, std::uint64_t index)
{
    storeAt(value, index);
    cursor.store(index + 1, std::memory_order_relaxed);
}

template <class T>
void ImageBase<T>::setVoxel(float value, int x, int y, int z, int t, int channel)
{
    setValue(value, flatIndex(x, y, z, t, channel));
}

template <class T>
float ImageBase<T>::getValue(std::uint64_t index)
{
    cursor.store(index + 1, std::memory_order_relaxed);
    return valueAt(index);
}

template <class T>
float ImageBase<T>::getVoxel(int x, int y, int z, int t, int channel)
{
    return getValue(flatIndex(x, y, z, t, channel));
}

// The three slice readers address the buffer as if it were stored with the plane's own axes fastest; for the
// sagittal and coronal one that is not the voxel of the volume's layout, on purpose.
template <class T>
float ImageBase<T>::getPlaneVoxel(const PlaneShape &shape, int a, int b, int slice, int frame,
                                  int channel) const
{
    const auto value = [](int number) { return static_cast<std::uint64_t>(number); };
    const std::uint64_t plane = value(shape.slices) * value(frame) + value(slice);
    const std::uint64_t row = plane * value(shape.rows) + value(b);
    const std::uint64_t voxel = row * value(shape.columns) + value(a);
    return valueAt(voxel * value(getChannels()) + value(channel));
}

template <class T>
float ImageBase<T>::getAxialVoxel(int a, int b, int slice, int frame, int channel)
{
    return getPlaneVoxel({getWidth(), getHeight(), getDepth()}, a, b, slice, frame, channel);
}

template <class T>
float ImageBase<T>::getSagittalVoxel(int a, int b, int slice, int frame, int channel)
{
    return getPlaneVoxel({getHeight(), getDepth(), getWidth()}, a, b, slice, frame, channel);
}

template <class T>
float ImageBase<T>::getCoronalVoxel(int a, int b, int slice, int frame, int channel)
{
    return getPlaneVoxel({getWidth(), getDepth(), getHeight()}, a, b, slice, frame, channel);
}

// --- whole-image values ---

namespace detail {

template <class T>
struct VoxelRange
{
    T low;
    T high;
};

// Values between two reports on the progress.
constexpr std::uint64_t valuesPerReport = std::uint64_t(1) << 22U;

// Smallest and largest of count > 0 values, as one comparison after the other from the first value on would
// find them (a NaN at the start stays, later ones are skipped), in lanes that vectorise.
template <class T>
VoxelRange<T> valueRange(const T *values, std::uint64_t count)
{
    constexpr std::size_t lanes = 64 / sizeof(T);
    std::array<T, lanes> low;
    std::array<T, lanes> high;
    low.fill(values[0]);
    high.fill(values[0]);
    const std::uint64_t whole = count - count % lanes;
    for (std::uint64_t start = 0; start < whole;) {
        const std::uint64_t end = std::min(whole, start + valuesPerReport);
        for (; start < end; start += lanes) {
            for (std::size_t lane = 0; lane < lanes; ++lane) {
                const T value = values[start + lane];
                low[lane] = value < low[lane] ? value : low[lane];
                high[lane] = high[lane] < value ? value : high[lane];
            }
        }
        reportProgress(end, count);
    }
    for (std::uint64_t i = whole; i < count; ++i) {
        low[0] = values[i] < low[0] ? values[i] : low[0];
        high[0] = high[0] < values[i] ? values[i] : high[0];
    }
    VoxelRange<T> range{low[0], high[0]};
    for (std::size_t lane = 1; lane < lanes; ++lane) {
        range.low = low[lane] < range.low ? low[lane] : range.low;
        range.high = range.high < high[lane] ? high[lane] : range.high;
    }
    if constexpr (std::is_floating_point_v<T>) {
        // Of the two zeros the first in the buffer counts.
        if (range.low == T(0))
            range.low = *std::find(values, values + count, T(0));
        if (range.high == T(0))
            range.high = *std::find(values, values + count, T(0));
    }
    return range;
}

} // namespace detail

template <class T>
void ImageBase<T>::computeMinMax()
{
    setMinMax(0.0f, 0.0f);
    if (data != nullptr && valueCount != 0) {
        const detail::VoxelRange<T> range = detail::valueRange(data, valueCount);
        setMinMax(static_cast<float>(range.low), static_cast<float>(range.high));
    }
    commonWindow = detail::windowOfRange(minimum, maximum);
    channelWindows.clear();
}

// The accumulator is a float on purpose; the mean of an empty image is NaN.
template <class T>
float ImageBase<T>::getMean() const
{
    float sum = 0.0f;
    if (data != nullptr)
        for (std::uint64_t i = 0; i < valueCount; ++i)
            sum += static_cast<float>(data[i]);
    const std::uint64_t count = data != nullptr ? valueCount : 0;
    return sum / static_cast<float>(count);
}

template <class T>
void ImageBase<T>::invert()
{
    if (data == nullptr)
        return;
    const auto channels = static_cast<std::uint64_t>(getChannels());
    for (std::uint64_t channel = 0; channel < channels; ++channel) {
        const int number = static_cast<int>(channel);
        const double sum = static_cast<double>(getLow(number)) + static_cast<double>(getHigh(number));
        for (std::uint64_t i = channel; i < valueCount; i += channels)
            data[i] = voxel_cast<T>(sum - static_cast<double>(data[i]));
    }
}

template <class T>
void ImageBase<T>::swapBytes()
{
    // Values of eight bytes stay as they are, on purpose.
    if constexpr (sizeof(T) == 2 || sizeof(T) == 4) {
        auto *bytes = reinterpret_cast<unsigned char *>(data);
        const std::uint64_t count = data != nullptr ? valueCount * sizeof(T) : 0;
        for (std::uint64_t i = 0; i < count;) {
            const std::uint64_t end = std::min(count, i + detail::valuesPerReport * sizeof(T));
            for (; i < end; i += sizeof(T))
                std::reverse(bytes + i, bytes + i + sizeof(T));
            reportProgress(end, count);
        }
    }
}

// Walks the first width * height * depth values as if there were one channel, on purpose.
template <class T>
void ImageBase<T>::getCenterOfGravity(float out[3]) const
{
    std::fill_n(out, 3, std::numeric_limits<float>::quiet_NaN());
    if (data == nullptr || valueCount == 0)
        return;
    const double low = static_cast<double>(getLow(0));
    double sumX = 0.0;
    double sumY = 0.0;
    double sumZ = 0.0;
    double sum = 0.0;
    const T *value = data;
    for (int z = 0; z < getDepth(); ++z) {
        for (int y = 0; y < getHeight(); ++y) {
            for (int x = 0; x < getWidth(); ++x) {
                const double weight = static_cast<double>(*value++) - low;
                sumX += x * weight;
                sumY += y * weight;
                sumZ += z * weight;
                sum += weight;
            }
        }
    }
    out[0] = static_cast<float>(sumX / sum);
    out[1] = static_cast<float>(sumY / sum);
    out[2] = static_cast<float>(sumZ / sum);
}

namespace detail {

template <class T>
std::int64_t wholeNumber(T value)
{
    if constexpr (std::is_floating_point_v<T>)
        return voxel_cast<std::int64_t>(value);
    else
        return value;
}

} // namespace detail

template <class T>
void ImageBase<T>::writeVoxelIndices(const char *path, int value) const
{
    if (data == nullptr)
        return;
    std::ofstream file(path, std::ios::binary);
    if (!file) {
        std::cout << "Couldn't open file: " << path << '\n';
        return;
    }
    file.imbue(std::locale::classic());
    const std::uint64_t count = static_cast<std::uint64_t>(getWidth()) *
                                static_cast<std::uint64_t>(getHeight()) *
                                static_cast<std::uint64_t>(getDepth());
    // One index past the last voxel, on purpose; behind the buffer the value counts as 0.
    for (std::uint64_t i = 0; i <= count; ++i) {
        const std::int64_t found = i < valueCount ? detail::wholeNumber(data[i]) : 0;
        if (found == value)
            file << i << '\n';
    }
}

// --- metadata ---

namespace detail {

inline std::string metaValue(const MetaMap &map, const std::string &key)
{
    const auto entry = map.find(key);
    return entry == map.end() ? std::string() : entry->second;
}

inline const MetaMap &mapOfSlice(const std::map<int, MetaMap> &maps, int slice)
{
    static const MetaMap none;
    const auto entry = maps.find(slice);
    return entry == maps.end() ? none : entry->second;
}

inline void listKeys(const MetaMap &map, std::list<std::string> &keys)
{
    keys.clear();
    for (const auto &entry : map)
        keys.push_back(entry.first);
}

// The line numbers are part of the text and do not follow this file.
inline void checkSlice(int slice, int depth, int line)
{
    if (slice >= 0 && slice < depth)
        return;
    const std::string source = "mervlib/include/Common/ImageBase";
    throw Exception("Exception raised in " + source + " in line " + std::to_string(line));
}

} // namespace detail

template <class T>
std::string ImageBase<T>::getMetaData(const std::string &key) const
{
    return detail::metaValue(metaData, key);
}

template <class T>
void ImageBase<T>::setMetaData(const std::string &key, const std::string &value)
{
    metaData[key] = value;
}

template <class T>
void ImageBase<T>::getMetaDataKeys(std::list<std::string> &keys) const
{
    detail::listKeys(metaData, keys);
}

template <class T>
void ImageBase<T>::setSliceMetaData(int slice, const std::string &key, const std::string &value)
{
    detail::checkSlice(slice, getDepth(), 3567);
    sliceMetaData[slice][key] = value;
}

template <class T>
std::string ImageBase<T>::getSliceMetaData(int slice, const std::string &key) const
{
    detail::checkSlice(slice, getDepth(), 3584);
    return detail::metaValue(detail::mapOfSlice(sliceMetaData, slice), key);
}

template <class T>
void ImageBase<T>::getSliceMetaDataKeys(int slice, std::list<std::string> &keys) const
{
    detail::checkSlice(slice, getDepth(), 3599);
    detail::listKeys(detail::mapOfSlice(sliceMetaData, slice), keys);
}

} // namespace MERV
