#include "meshes/geometry/ClosestPoint.h"

namespace MERV::BRep {

FacePoint closestPointByScan(std::span<const TriFace> faces, const Point &point)
{
    FacePoint best;
    double bestDistance = 0.0;
    for (std::size_t i = 0; i < faces.size(); ++i) {
        const Point candidate = faces[i].closestPointTo(point);
        if (!candidate.valid)
            continue;
        const double d = distance(candidate, point);
        if (!best.point.valid || bestDistance > d) {
            best = {candidate, i};
            bestDistance = d;
        }
    }
    return best;
}

} // namespace MERV::BRep
