// Fields of binary headers, little-endian as the processors this runs on.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstring>
#include <span>
#include <type_traits>

namespace MERV::detail {

static_assert(std::endian::native == std::endian::little, "headers and voxels are stored as in memory");

template <class T>
T fieldAt(std::span<const unsigned char> header, std::size_t offset)
{
    static_assert(std::is_arithmetic_v<T>);
    T value;
    std::memcpy(&value, header.subspan(offset, sizeof(T)).data(), sizeof(T));
    return value;
}

// The field as a machine of the other byte order wrote it.
template <class T>
T swappedFieldAt(std::span<const unsigned char> header, std::size_t offset)
{
    std::array<unsigned char, sizeof(T)> bytes;
    std::reverse_copy(header.begin() + static_cast<std::ptrdiff_t>(offset),
                      header.begin() + static_cast<std::ptrdiff_t>(offset + sizeof(T)), bytes.begin());
    return fieldAt<T>(bytes, 0);
}

template <class T>
void storeField(std::span<unsigned char> header, std::size_t offset, T value)
{
    static_assert(std::is_arithmetic_v<T>);
    std::memcpy(header.subspan(offset, sizeof(T)).data(), &value, sizeof(T));
}

} // namespace MERV::detail
