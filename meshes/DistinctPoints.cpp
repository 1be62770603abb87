#include "meshes/DistinctPoints.h"

#include "meshes/DistinctItems.h"

#include <array>
#include <bit>
#include <cstdint>

namespace {

struct SameBits
{
    static std::size_t hash(const Vector3 &point) { return hashOfNumbers({point.x, point.y, point.z}); }
    static bool same(const Vector3 &left, const Vector3 &right)
    {
        using Bits = std::array<std::uint64_t, 3>;
        return std::bit_cast<Bits>(left) == std::bit_cast<Bits>(right);
    }
};

} // namespace

DistinctPoints::DistinctPoints(std::span<const Vector3> list)
{
    DistinctItems<Vector3, SameBits> known(list.size());
    places.reserve(list.size());
    for (const Vector3 &point : list)
        places.push_back(known.add(point));
    distinct = known.take();
}
