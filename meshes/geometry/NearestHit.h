#pragma once

#include "meshes/geometry/ClosestPoint.h"

namespace MERV::BRep {

// TriFace::intersection(line) over all faces in stored order: the hit with the smallest squared distance to
// `from`, on either side of it, the first of equal ones. This plain scan defines the answer; NearestHitIndex
// finds the same one faster.
FacePoint nearestHitByScan(std::span<const TriFace> faces, const Line &line, const Point &from);

} // namespace MERV::BRep
