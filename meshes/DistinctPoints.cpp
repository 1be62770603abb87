#include "meshes/DistinctPoints.h"

#include <array>
#include <bit>
#include <cstdint>
#include <unordered_map>

namespace {

using Bits = std::array<std::uint64_t, 3>;

struct BitsHash
{
    std::size_t operator()(const Bits &bits) const
    {
        std::uint64_t hash = 0;
        for (const std::uint64_t word : bits) {
            hash = (hash ^ word) * 0x9E3779B97F4A7C15u; // 2^64 divided by the golden ratio
            hash ^= hash >> 32;
        }
        return hash;
    }
};

} // namespace

DistinctPoints::DistinctPoints(std::span<const Vector3> list)
{
    std::unordered_map<Bits, std::size_t, BitsHash> known;
    known.reserve(list.size() / 3);
    places.reserve(list.size());
    for (const Vector3 &point : list) {
        const Bits bits{std::bit_cast<std::uint64_t>(point.x), std::bit_cast<std::uint64_t>(point.y),
                        std::bit_cast<std::uint64_t>(point.z)};
        const auto [entry, isNew] = known.try_emplace(bits, distinct.size());
        if (isNew)
            distinct.push_back(point);
        places.push_back(entry->second);
    }
}
