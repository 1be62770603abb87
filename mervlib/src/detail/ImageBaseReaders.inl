// Interpolating readers. Every neighbour index is moved into the volume, so that the border repeats outwards;
// a coordinate that is no index at all reads 0.
#pragma once

#include "Common/ImageBase.h"
#include "mervlib/src/detail/Taps.h"

#include <algorithm>

namespace MERV {

template <class T>
detail::Axis ImageBase<T>::axis(int number) const
{
    const auto entry = static_cast<std::size_t>(number) + 1;
    return {dimensions[entry], axisStrides[entry]};
}

template <class T>
bool ImageBase<T>::isReadable(float x, float y, float z) const
{
    return data != nullptr && valueCount != 0 && detail::isIndexable(x) && detail::isIndexable(y) &&
           detail::isIndexable(z);
}

// One value for each channel by the given reader of the values from a channel on.
template <class T>
template <class Reader>
void ImageBase<T>::readChannels(float *out, bool readable, const Reader &reader) const
{
    for (int channel = 0; channel < getChannels(); ++channel)
        out[channel] = readable ? reader(data + channel) : 0.0f;
}

template <class T>
void ImageBase<T>::getNearest(float *out, float x, float y, float z) const
{
    const bool readable = isReadable(x, y, z);
    const std::uint64_t offset = readable ? nearestOffset(x, y, z) : 0;
    readChannels(out, readable, [&](const T *values) { return static_cast<float>(values[offset]); });
}

template <class T>
std::uint64_t ImageBase<T>::nearestOffset(float x, float y, float z) const
{
    return detail::nearestOffset(x, axis(0)) + detail::nearestOffset(y, axis(1)) +
           detail::nearestOffset(z, axis(2));
}

template <class T>
float ImageBase<T>::getNearest(float x, float y, float z) const
{
    return isReadable(x, y, z) ? static_cast<float>(data[nearestOffset(x, y, z)]) : 0.0f;
}

template <class T>
float ImageBase<T>::getBilinear(float x, float y, int slice, int frame, int channel) const
{
    if (!isReadable(x, y, 0.0f) || !hasChannel(channel))
        return 0.0f;
    const T *values = data + clampedOffset(slice, axis(2)) + clampedOffset(frame, axis(3)) + channel;
    return detail::weightedSum(values, detail::linearTaps(y, axis(1)), detail::linearTaps(x, axis(0)));
}

template <class T>
void ImageBase<T>::getTrilinear(float *out, float x, float y, float z) const
{
    if (!isReadable(x, y, z))
        return readChannels(out, false, [](const T *) { return 0.0f; });
    const auto rows = combine(detail::linearTaps(z, axis(2)), detail::linearTaps(y, axis(1)));
    const auto columns = detail::linearTaps(x, axis(0));
    readChannels(out, true, [&](const T *values) { return detail::weightedSum(values, rows, columns); });
}

template <class T>
float ImageBase<T>::getTrilinear(float x, float y, float z, int frame, int channel) const
{
    if (!isReadable(x, y, z) || !hasChannel(channel))
        return 0.0f;
    const T *values = data + clampedOffset(frame, axis(3)) + channel;
    const auto rows = combine(detail::linearTaps(z, axis(2)), detail::linearTaps(y, axis(1)));
    return detail::weightedSum(values, rows, detail::linearTaps(x, axis(0)));
}

template <class T>
float ImageBase<T>::getQuadrilinear(float x, float y, float z, float t, int channel) const
{
    if (!isReadable(x, y, z) || !detail::isIndexable(t) || !hasChannel(channel))
        return 0.0f;
    const auto slices = combine(detail::linearTaps(t, axis(3)), detail::linearTaps(z, axis(2)));
    const auto rows = combine(slices, detail::linearTaps(y, axis(1)));
    return detail::weightedSum(data + channel, rows, detail::linearTaps(x, axis(0)));
}

template <class T>
void ImageBase<T>::getTricubic(float *out, float x, float y, float z) const
{
    if (!isReadable(x, y, z))
        return readChannels(out, false, [](const T *) { return 0.0f; });
    const auto rows = combine(detail::cubicTaps(z, axis(2)), detail::cubicTaps(y, axis(1)));
    const auto columns = detail::cubicTaps(x, axis(0));
    readChannels(out, true, [&](const T *values) { return detail::weightedSum(values, rows, columns); });
}

template <class T>
float ImageBase<T>::getTricubic(float x, float y, float z) const
{
    if (!isReadable(x, y, z))
        return 0.0f;
    const auto rows = combine(detail::cubicTaps(z, axis(2)), detail::cubicTaps(y, axis(1)));
    return detail::weightedSum(data, rows, detail::cubicTaps(x, axis(0)));
}

template <class T>
void ImageBase<T>::getBilinearCubic(float *out, float x, float y, float z) const
{
    if (!isReadable(x, y, z))
        return readChannels(out, false, [](const T *) { return 0.0f; });
    const auto slices = detail::cubicTaps(z, axis(2));
    const auto rows = detail::linearTaps(y, axis(1));
    const auto columns = detail::linearTaps(x, axis(0));
    readChannels(out, true, [&](const T *values) { return bilinearCubicSum(values, slices, rows, columns); });
}

template <class T>
float ImageBase<T>::getBilinearCubic(float x, float y, float z) const
{
    if (!isReadable(x, y, z))
        return 0.0f;
    return bilinearCubicSum(data, detail::cubicTaps(z, axis(2)), detail::linearTaps(y, axis(1)),
                            detail::linearTaps(x, axis(0)));
}

} // namespace MERV
