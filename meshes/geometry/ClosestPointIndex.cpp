#include "meshes/geometry/ClosestPointIndex.h"

namespace MERV::BRep {

FacePoint ClosestPointIndex::closestPoint(const Point &query, std::size_t) const
{
    return closestPointByScan(faces, query);
}

} // namespace MERV::BRep
