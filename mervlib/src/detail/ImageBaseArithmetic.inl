// Region walking, element-wise operators and windowing in place.
#pragma once

#include "Common/ImageBase.h"
#include "Common/VoxelCast.h"

#include <algorithm>
#include <functional>
#include <iostream>
#include <limits>
#include <type_traits>

namespace MERV {

// --- regions ---

template <class T>
typename ImageBase<T>::RegionIterator &ImageBase<T>::RegionIterator::operator++()
{
    if (--remaining == 0)
        return *this;
    ++current;
    for (std::size_t axis = 0; ++index[axis] == size[axis]; ++axis) {
        index[axis] = 0;
        current += gap[axis];
    }
    return *this;
}

template <class T>
typename ImageBase<T>::RegionIterator ImageBase<T>::regionBegin()
{
    RegionIterator iterator;
    if (data == nullptr || valueCount == 0)
        return iterator;
    iterator.remaining = 1;
    iterator.current = data;
    for (std::size_t axis = 0; axis < 5; ++axis) {
        const auto extent = static_cast<std::uint32_t>(dimensions[axis]);
        const std::uint32_t first = std::min(region.first[axis], extent);
        iterator.size[axis] = std::min(region.size[axis], extent - first);
        iterator.current += first * axisStrides[axis];
        iterator.remaining *= iterator.size[axis];
        iterator.gap[axis] = (extent - iterator.size[axis]) * axisStrides[axis];
    }
    return iterator;
}

template <class T>
typename ImageBase<T>::RegionIterator ImageBase<T>::regionEnd()
{
    return {};
}

template <class T>
void ImageBase<T>::setRegion(const Region &newRegion)
{
    region = newRegion;
}

// --- element-wise operators ---

namespace detail {

// Arithmetic of a voxel type: integers wrap, also where the processor would trap.
template <class T>
struct Wrapping
{
    using Wide = std::conditional_t<std::is_integral_v<T>, unsigned int, T>;

    static T add(T a, T b) { return static_cast<T>(static_cast<Wide>(a) + static_cast<Wide>(b)); }
    static T subtract(T a, T b) { return static_cast<T>(static_cast<Wide>(a) - static_cast<Wide>(b)); }
    static T multiply(T a, T b) { return static_cast<T>(static_cast<Wide>(a) * static_cast<Wide>(b)); }
    static T divide(T a, T b)
    {
        if constexpr (std::is_integral_v<T>) {
            if (b == T(0))
                return T(0);
            if (std::is_signed_v<T> && b == static_cast<T>(-1))
                return subtract(T(0), a);
        }
        return static_cast<T>(a / b);
    }
};

} // namespace detail

template <class T>
template <class Operation>
ImageBase<T> &ImageBase<T>::combineWith(const ImageBase &other, const Operation &operation)
{
    // Of images of different sizes, the values that both have.
    const std::uint64_t count =
        data == nullptr || other.data == nullptr ? 0 : std::min(valueCount, other.valueCount);
    std::transform(data, data + count, other.data, data, operation);
    return *this;
}

template <class T>
template <class Operation>
ImageBase<T> &ImageBase<T>::combineWith(T scalar, const Operation &operation)
{
    if (data != nullptr)
        std::transform(begin(), end(), begin(), [&](T value) { return operation(value, scalar); });
    return *this;
}

template <class T>
ImageBase<T> ImageBase<T>::operator+(const ImageBase &other) const
{
    ImageBase result(*this);
    result += other;
    return result;
}

template <class T>
ImageBase<T> ImageBase<T>::operator-(const ImageBase &other) const
{
    ImageBase result(*this);
    result -= other;
    return result;
}

template <class T>
ImageBase<T> ImageBase<T>::operator*(const ImageBase &other) const
{
    ImageBase result(*this);
    result *= other;
    return result;
}

template <class T>
ImageBase<T> ImageBase<T>::operator/(const ImageBase &other) const
{
    ImageBase result(*this);
    result /= other;
    return result;
}

template <class T>
ImageBase<T> &ImageBase<T>::operator+=(T scalar)
{
    return combineWith(scalar, [](T a, T b) { return detail::Wrapping<T>::add(a, b); });
}

template <class T>
ImageBase<T> &ImageBase<T>::operator-=(T scalar)
{
    return combineWith(scalar, [](T a, T b) { return detail::Wrapping<T>::subtract(a, b); });
}

template <class T>
ImageBase<T> &ImageBase<T>::operator*=(T scalar)
{
    return combineWith(scalar, [](T a, T b) { return detail::Wrapping<T>::multiply(a, b); });
}

template <class T>
ImageBase<T> &ImageBase<T>::operator/=(T scalar)
{
    return combineWith(scalar, [](T a, T b) { return detail::Wrapping<T>::divide(a, b); });
}

template <class T>
ImageBase<T> &ImageBase<T>::operator+=(const ImageBase &other)
{
    return combineWith(other, [](T a, T b) { return detail::Wrapping<T>::add(a, b); });
}

template <class T>
ImageBase<T> &ImageBase<T>::operator-=(const ImageBase &other)
{
    return combineWith(other, [](T a, T b) { return detail::Wrapping<T>::subtract(a, b); });
}

template <class T>
ImageBase<T> &ImageBase<T>::operator*=(const ImageBase &other)
{
    return combineWith(other, [](T a, T b) { return detail::Wrapping<T>::multiply(a, b); });
}

template <class T>
ImageBase<T> &ImageBase<T>::operator/=(const ImageBase &other)
{
    return combineWith(other, [](T a, T b) { return detail::Wrapping<T>::divide(a, b); });
}

// --- windowing in place ---

// All channels use the window of the first, on purpose. Integer voxels take its truncated ends, which may lie
// outside the voxel type.
template <class T>
void ImageBase<T>::applyWindowLevel(bool inverted)
{
    if (data == nullptr || valueCount == 0)
        return;
    using Wide = std::conditional_t<std::is_integral_v<T>, std::int64_t, T>;
    const Wide low = voxel_cast<Wide>(getLow(0));
    const Wide high = voxel_cast<Wide>(getHigh(0));
    for (T &value : *this) {
        Wide clamped = value; // NOLINT(bugprone-signed-char-misuse): char is a signed voxel here
        clamped = clamped < low ? low : clamped;
        clamped = clamped > high ? high : clamped;
        const double shifted = inverted ? static_cast<double>(high) - static_cast<double>(clamped)
                                        : static_cast<double>(clamped) - static_cast<double>(low);
        value = voxel_cast<T>(shifted);
    }
    if (verbose != 0)
        std::cout << "Window/Level setting applied" << '\n';
}

} // namespace MERV
