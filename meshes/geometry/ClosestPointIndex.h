#pragma once

#include "meshes/geometry/ClosestPoint.h"

#include <cstddef>
#include <span>

namespace MERV::BRep {

// Answers closestPointByScan() over a fixed list of faces without looking at all of them. The faces must
// outlive the index and stay as they are. After construction any number of threads may ask at once.
class ClosestPointIndex
{
public:
    static constexpr std::size_t noHint = static_cast<std::size_t>(-1);

    explicit ClosestPointIndex(std::span<const TriFace> newFaces)
        : faces(newFaces)
    {}

    // The same point, bit by bit, and the same face as closestPointByScan(). The hint, any number, changes
    // only the time: best is the face of the answer to a point nearby.
    FacePoint closestPoint(const Point &query, std::size_t hint = noHint) const;

private:
    std::span<const TriFace> faces;
};

} // namespace MERV::BRep
