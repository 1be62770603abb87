// Windowed slices, frames and volumes in 8 and 16 bit, and slices as images.
#pragma once

#include "Common/ImageBase.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <stdexcept>

namespace MERV {

namespace detail {

// Smallest power of two not below a dimension; 0 stays 0.
inline std::uint64_t paddedExtent(int extent, bool powerOfTwo)
{
    const auto size = static_cast<std::uint64_t>(extent);
    return powerOfTwo && extent > 0 ? std::bit_ceil(size) : size;
}

// A rectangle of pixels with interleaved channels inside a buffer.
struct Canvas
{
    std::uint64_t width;
    std::uint64_t height;

    std::uint64_t size() const { return width * height; }
    // First pixel of a rectangle in the middle.
    std::uint64_t centred(int innerWidth, int innerHeight) const
    {
        return (height - static_cast<std::uint64_t>(innerHeight)) / 2 * width +
               (width - static_cast<std::uint64_t>(innerWidth)) / 2;
    }
};

inline Canvas canvasFor(int width, int height, bool powerOfTwo)
{
    return {paddedExtent(width, powerOfTwo), paddedExtent(height, powerOfTwo)};
}

template <class Out>
Out *zeroed(Out *destination, std::uint64_t count)
{
    if (destination == nullptr)
        return new Out[count]();
    std::fill_n(destination, count, Out(0));
    return destination;
}

inline std::uint64_t modulo(std::int64_t value, std::int64_t count)
{
    return static_cast<std::uint64_t>((value % count + count) % count);
}

// Maps low..high to the whole range of Out. An undefined quotient gives 0, an infinite one an end of the
// range.
template <class Out>
class Window
{
public:
    Window(float windowLow, float windowHigh)
        : low(windowLow)
        , extent(windowHigh - windowLow)
    {}

    template <class T>
    Out operator()(T value) const
    {
        constexpr float most = std::numeric_limits<Out>::max();
        const float scaled = (static_cast<float>(value) - low) * most / extent;
        const float notBelow = scaled > 0.0f ? scaled : 0.0f;
        return static_cast<Out>(static_cast<int>(notBelow < most ? notBelow : most));
    }

private:
    float low;
    float extent;
};

// count values, each step after the last, into neighbouring places that are outStep apart.
template <class T, class Out>
void convertRow(const T *values, std::ptrdiff_t step, Out *out, std::ptrdiff_t outStep, int count,
                const Window<Out> &window)
{
    if (step == 1 && outStep == 1) {
        std::transform(values, values + count, out, window);
        return;
    }
    for (std::ptrdiff_t i = 0; i < count; ++i)
        out[i * outStep] = window(values[i * step]);
}

} // namespace detail

template <class T>
template <class Out>
Out *ImageBase<T>::getVolume(Out *destination, bool powerOfTwo) const
{
    if (data == nullptr || valueCount == 0)
        return destination;
    const detail::Canvas canvas = detail::canvasFor(getWidth(), getHeight(), powerOfTwo);
    const auto channels = static_cast<std::ptrdiff_t>(getChannels());
    const std::uint64_t pitch = canvas.width * static_cast<std::uint64_t>(channels);
    destination =
        detail::zeroed(destination, pitch * canvas.height * detail::paddedExtent(getDepth(), powerOfTwo));
    for (int channel = 0; channel < getChannels(); ++channel) {
        const detail::Window<Out> window(getLow(channel), getHigh(channel));
        const T *row = data + channel;
        for (std::uint64_t z = 0; z < static_cast<std::uint64_t>(getDepth()); ++z) {
            Out *out = destination + z * canvas.height * pitch + channel;
            for (int y = 0; y < getHeight(); ++y, row += rowStride, out += pitch)
                detail::convertRow(row, channels, out, channels, getWidth(), window);
        }
    }
    return destination;
}

template <class T>
unsigned char *ImageBase<T>::getVolumeUByte(unsigned char *dst, bool powerOfTwo) const
{
    return getVolume(dst, powerOfTwo);
}

template <class T>
unsigned short *ImageBase<T>::getVolumeUShort(unsigned short *dst, bool powerOfTwo) const
{
    return getVolume(dst, powerOfTwo);
}

template <class T>
template <class Out>
Out *ImageBase<T>::getScaledFrame(Out *destination, int frame) const
{
    destination = detail::zeroed(destination, frameStride);
    const T *values = data + static_cast<std::uint64_t>(frame) * frameStride;
    std::transform(values, values + frameStride, destination, detail::Window<Out>(minimum, maximum));
    return destination;
}

// The frame is checked, but the first one is read whatever it is, on purpose.
template <class T>
unsigned short *ImageBase<T>::getFrameUShort(unsigned short *dst, int frame) const
{
    if (data == nullptr || frame < 0 || frame >= getFrames())
        return nullptr;
    return getScaledFrame(dst, 0);
}

template <class T>
unsigned char *ImageBase<T>::getFrameUByte(unsigned char *dst, int frame) const
{
    if (data == nullptr || frame < 0 || frame >= getFrames())
        return nullptr;
    return getScaledFrame(dst, frame);
}

template <class T>
unsigned char *ImageBase<T>::getCornerSlice(unsigned char *destination, std::uint64_t offset, int channel,
                                            bool powerOfTwo) const
{
    const detail::Canvas canvas = detail::canvasFor(getWidth(), getHeight(), powerOfTwo);
    if (destination == nullptr)
        destination = new unsigned char[canvas.size()]();
    if (!hasChannel(channel))
        return destination;
    const detail::Window<unsigned char> window(getLow(channel), getHigh(channel));
    const T *row = data + offset + channel;
    unsigned char *out = destination;
    for (int y = 0; y < getHeight(); ++y, row += rowStride, out += canvas.width)
        detail::convertRow(row, getChannels(), out, 1, getWidth(), window);
    return destination;
}

template <class T>
unsigned char *ImageBase<T>::getSliceUByte(unsigned char *dst, int slice, int channel, bool powerOfTwo) const
{
    if (data == nullptr || valueCount == 0)
        return dst;
    return getCornerSlice(dst, sliceStride * detail::modulo(slice, getDepth()), channel, powerOfTwo);
}

// The offset is the product of slice and frame on purpose: frame 0 always yields slice 0.
template <class T>
unsigned char *ImageBase<T>::getSliceUByte(unsigned char *dst, int slice, int frame, int channel,
                                           bool powerOfTwo) const
{
    if (data == nullptr || valueCount == 0)
        return dst;
    const std::uint64_t slices = detail::modulo(slice, getDepth()) * detail::modulo(frame, getFrames());
    return getCornerSlice(dst, sliceStride * slices, channel, powerOfTwo);
}

template <class T>
unsigned char *ImageBase<T>::getCentredSlice(unsigned char *destination, const SliceWalk &walk, int channel,
                                             bool powerOfTwo) const
{
    const detail::Canvas canvas = detail::canvasFor(walk.width, walk.height, powerOfTwo);
    destination = detail::zeroed(destination, canvas.size());
    if (walk.first >= valueCount || !hasChannel(channel))
        return destination;
    const detail::Window<unsigned char> window(getLow(channel), getHigh(channel));
    unsigned char *out = destination + canvas.centred(walk.width, walk.height);
    for (int row = 0; row < walk.height; ++row, out += canvas.width) {
        // The first place of a row is on the left, or on the right when the walk goes leftwards.
        const int number = walk.rowsReversed ? walk.height - 1 - row : row;
        const T *values = data + walk.first + static_cast<std::uint64_t>(number) * walk.rowStep + channel;
        if (walk.columnsReversed)
            detail::convertRow(values, walk.columnStep, out + walk.width - 1, -1, walk.width, window);
        else
            detail::convertRow(values, walk.columnStep, out, 1, walk.width, window);
    }
    return destination;
}

template <class T>
typename ImageBase<T>::SliceWalk ImageBase<T>::axialWalk(std::uint64_t first) const
{
    return {getWidth(), getHeight(), first, getChannels(), rowStride, false, false};
}

template <class T>
unsigned char *ImageBase<T>::getAxialSliceUByte(unsigned char *dst, int slice, int channel,
                                                bool powerOfTwo) const
{
    if (data == nullptr || valueCount == 0)
        return dst;
    return getCentredSlice(dst, axialWalk(sliceStride * detail::modulo(slice, getDepth())), channel,
                           powerOfTwo);
}

// The slice is taken as it stands; one that leaves the buffer gives zeros.
template <class T>
unsigned char *ImageBase<T>::getAxialSliceUByte(unsigned char *dst, int slice, int frame, int channel,
                                                bool powerOfTwo) const
{
    if (data == nullptr || valueCount == 0)
        return dst;
    const std::uint64_t first =
        detail::modulo(frame, getFrames()) * frameStride + static_cast<std::uint64_t>(slice) * sliceStride;
    return getCentredSlice(dst, axialWalk(first), channel, powerOfTwo);
}

// z runs upwards and y leftwards; the x index is not multiplied by the channels, on purpose.
template <class T>
unsigned char *ImageBase<T>::getSagittalSliceUByte(unsigned char *dst, int slice, int channel,
                                                   bool powerOfTwo) const
{
    if (slice < 0 || slice > getWidth() - 1)
        throw std::out_of_range("getSagittalSliceUByte, slice exceeds number of sagittal slices in volume!");
    if (data == nullptr || valueCount == 0)
        return dst;
    const SliceWalk walk{getHeight(),
                         getDepth(),
                         static_cast<std::uint64_t>(slice),
                         static_cast<std::ptrdiff_t>(rowStride),
                         sliceStride,
                         true,
                         true};
    return getCentredSlice(dst, walk, channel, powerOfTwo);
}

// z runs upwards.
template <class T>
unsigned char *ImageBase<T>::getCoronalSliceUByte(unsigned char *dst, int slice, int channel,
                                                  bool powerOfTwo) const
{
    if (slice < 0 || slice > getHeight() - 1)
        throw std::out_of_range("getCoronalSliceUByte, slice exceeds number of coronal slices in volume!");
    if (data == nullptr || valueCount == 0)
        return dst;
    const SliceWalk walk{getWidth(),    getDepth(),  static_cast<std::uint64_t>(slice) * rowStride,
                         getChannels(), sliceStride, true,
                         false};
    return getCentredSlice(dst, walk, channel, powerOfTwo);
}

template <class T>
unsigned char *ImageBase<T>::getAxialSliceAllChannelsUByte(unsigned char *dst, int slice,
                                                           bool powerOfTwo) const
{
    if (data == nullptr || valueCount == 0)
        return dst;
    const detail::Canvas canvas = detail::canvasFor(getWidth(), getHeight(), powerOfTwo);
    const auto channels = static_cast<std::uint64_t>(getChannels());
    dst = detail::zeroed(dst, canvas.size() * channels);
    for (int channel = 0; channel < getChannels(); ++channel) {
        const detail::Window<unsigned char> window(getLow(channel), getHigh(channel));
        const T *row = data + sliceStride * detail::modulo(slice, getDepth()) + channel;
        unsigned char *out = dst + canvas.centred(getWidth(), getHeight()) * channels + channel;
        for (int y = 0; y < getHeight(); ++y, row += rowStride, out += canvas.width * channels)
            detail::convertRow(row, getChannels(), out, getChannels(), getWidth(), window);
    }
    return dst;
}

template <class T>
void ImageBase<T>::shapeSliceImage(ImageBase<T> &output, int width, int height) const
{
    if (output.getChannels() == getChannels() && output.getWidth() == width && output.getHeight() == height &&
        output.data != nullptr && output.valueCount >= output.sliceStride)
        return;
    output.setDimensions(width, height, 1, 1, getChannels());
}

template <class T>
void ImageBase<T>::getSagittalSliceImage(ImageBase<T> &output, int slice, int frame) const
{
    if (slice < 0 || slice >= getWidth())
        throw std::out_of_range("getSagittalSliceImage, sagittalSliceNumber exceeds number of sagittal "
                                "slices in volume!");
    if (frame < 0 || frame >= getFrames())
        throw std::out_of_range("getSagittalSliceImage, frameNr exceeds number of frames in volume!");
    if (&output == this)
        return ImageBase(*this).getSagittalSliceImage(output, slice, frame);
    shapeSliceImage(output, getHeight(), getDepth());
    if (data == nullptr || output.data == nullptr)
        return;
    // The x index is not multiplied by the channels, on purpose.
    const T *values = data + static_cast<std::uint64_t>(frame) * frameStride + slice;
    T *out = output.data;
    for (std::uint64_t row = 0; row < axisStrides[4] / rowStride; ++row, values += rowStride)
        out = std::copy_n(values, getChannels(), out);
}

template <class T>
void ImageBase<T>::getCoronalSliceImage(ImageBase<T> &output, int slice, int frame) const
{
    if (slice < 0 || slice >= getHeight())
        throw std::out_of_range("getCoronalSliceImage, coronalSliceImage exceeds number of coronal slices "
                                "in volume!");
    if (frame < 0 || frame >= getFrames())
        throw std::out_of_range("getCoronalSliceImage, frameNr exceeds number of frames in volume!");
    if (&output == this)
        return ImageBase(*this).getCoronalSliceImage(output, slice, frame);
    shapeSliceImage(output, getWidth(), getDepth());
    if (data == nullptr || output.data == nullptr)
        return;
    // The frame enters squared, on purpose; where that leaves the buffer the slice is zero.
    const auto number = static_cast<std::uint64_t>(frame);
    const bool inside = number * number < static_cast<std::uint64_t>(getFrames());
    const T *values =
        data + (inside ? number * number * frameStride : 0) + static_cast<std::uint64_t>(slice) * rowStride;
    T *out = output.data;
    for (int z = 0; z < getDepth(); ++z, values += sliceStride)
        out = inside ? std::copy_n(values, rowStride, out) : std::fill_n(out, rowStride, T(0));
}

} // namespace MERV
