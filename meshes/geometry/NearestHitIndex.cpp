#include "meshes/geometry/NearestHitIndex.h"

namespace MERV::BRep {

NearestHitIndex::NearestHitIndex(std::span<const TriFace> newFaces)
    : faces(newFaces)
{}

FacePoint NearestHitIndex::nearestHit(const Line &line, const Point &from) const
{
    return nearestHitByScan(faces, line, from);
}

} // namespace MERV::BRep
