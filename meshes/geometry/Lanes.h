#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace MERV::BRep {

// Four numbers that are computed with at once. Comparisons give all bits set in a lane where they hold.
inline constexpr std::size_t lanes = 4;
using Float4 = float __attribute__((vector_size(16)));
using Mask4 = std::int32_t __attribute__((vector_size(16)));

using Vector4 = std::array<Float4, 3>; // four vectors of three elements

inline Float4 inAllLanes(float value)
{
    return Float4{value, value, value, value};
}

inline Float4 absolute(Float4 value)
{
    return std::bit_cast<Float4>(std::bit_cast<Mask4>(value) & 0x7fffffff);
}

inline Vector4 absolute(const Vector4 &v)
{
    return {absolute(v[0]), absolute(v[1]), absolute(v[2])};
}

inline Float4 dot(const Vector4 &a, const Vector4 &b)
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

inline Vector4 operator-(const Vector4 &a, const Vector4 &b)
{
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

inline Vector4 cross(const Vector4 &a, const Vector4 &b)
{
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

inline bool anyLane(Mask4 mask)
{
    const auto halves = std::bit_cast<std::array<std::uint64_t, 2>>(mask);
    return (halves[0] | halves[1]) != 0;
}

} // namespace MERV::BRep
