#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace MERV::BRep {

// Four numbers on which arithmetic and comparisons work side by side, a vector of the compiler.
using Float4 = float __attribute__((vector_size(16)));

inline constexpr std::size_t lanes = 4;

// The answer of a comparison: all bits are set in the lanes where it holds.
using Mask4 = std::int32_t __attribute__((vector_size(16)));

inline bool anyLane(Mask4 mask)
{
    const auto halves = std::bit_cast<std::array<std::uint64_t, 2>>(mask);
    return (halves[0] | halves[1]) != 0;
}

inline Float4 magnitude(Float4 a)
{
    return std::bit_cast<Float4>(std::bit_cast<Mask4>(a) & 0x7fffffff);
}

inline Float4 inAllLanes(float value)
{
    return Float4{value, value, value, value};
}

inline Float4 smaller(Float4 a, Float4 b)
{
    return a < b ? a : b;
}

inline Float4 larger(Float4 a, Float4 b)
{
    return a > b ? a : b;
}

struct RankedLane
{
    float value;
    std::size_t lane;
};

// Of values that are not negative; each is told lower by at most three units in its last place. Without
// branches, which could not be foreseen.
inline std::array<RankedLane, lanes> fromFarToNear(Float4 values)
{
    const auto key = [&values](std::uint32_t lane) {
        return (std::bit_cast<std::uint32_t>(static_cast<float>(values[lane])) & ~3u) | lane;
    };
    const auto order = [](std::uint32_t &far, std::uint32_t &near) {
        const std::uint32_t low = far < near ? far : near;
        far = far < near ? near : far;
        near = low;
    };
    std::uint32_t a = key(0), b = key(1), c = key(2), d = key(3);
    order(a, b);
    order(c, d);
    order(a, c);
    order(b, d);
    order(b, c);
    const auto ranked = [](std::uint32_t k) { return RankedLane{std::bit_cast<float>(k & ~3u), k & 3u}; };
    return {ranked(a), ranked(b), ranked(c), ranked(d)};
}

// Three coordinates: of one vector (T is float) or of four of them side by side (Float4).
template <class T>
struct Triple
{
    T x, y, z;
};

using Vector = Triple<float>;
using Vector4 = Triple<Float4>;

template <class T, class U>
auto operator-(const Triple<T> &a, const Triple<U> &b)
{
    return Triple<decltype(a.x - b.x)>{a.x - b.x, a.y - b.y, a.z - b.z};
}

template <class T>
Triple<T> operator+(const Triple<T> &a, const Triple<T> &b)
{
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}

template <class T>
Triple<T> operator*(const Triple<T> &a, T factor)
{
    return {a.x * factor, a.y * factor, a.z * factor};
}

template <class T>
T dot(const Triple<T> &a, const Triple<T> &b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

template <class T>
Triple<T> cross(const Triple<T> &a, const Triple<T> &b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

// Of length 1; not a number for a vector of length 0.
inline Vector normalized(const Vector &vector)
{
    return vector * (1.0f / std::sqrt(dot(vector, vector)));
}

inline Vector laneOf(const Vector4 &vectors, std::size_t lane)
{
    return {vectors.x[lane], vectors.y[lane], vectors.z[lane]};
}

inline void setLane(Vector4 &vectors, std::size_t lane, const Vector &value)
{
    vectors.x[lane] = value.x;
    vectors.y[lane] = value.y;
    vectors.z[lane] = value.z;
}

} // namespace MERV::BRep
