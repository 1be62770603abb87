#pragma once

#include "meshes/geometry/TriFace.h"

#include <cstddef>
#include <span>

namespace MERV::BRep {

// The answer to a search over faces in stored order.
struct FacePoint
{
    Point point;                                     // invalid if no face has an answer
    std::size_t face = static_cast<std::size_t>(-1); // the first face with this answer
};

// TriFace::closestPointTo() over all faces in stored order: the answer with the smallest distance (the
// rounded distances are compared, not their squares), the first of equal ones. This plain scan defines the
// answer; ClosestPointIndex finds the same one faster.
FacePoint closestPointByScan(std::span<const TriFace> faces, const Point &point);

} // namespace MERV::BRep
