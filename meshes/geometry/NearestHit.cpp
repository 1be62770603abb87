#include "meshes/geometry/NearestHit.h"

namespace MERV::BRep {

FacePoint nearestHitByScan(std::span<const TriFace> faces, const Line &line, const Point &from)
{
    FacePoint best;
    double bestDistance = 0.0;
    for (std::size_t i = 0; i < faces.size(); ++i) {
        const Point candidate = faces[i].intersection(line);
        if (!candidate.valid)
            continue;
        const double d = squaredDistance(candidate, from);
        if (!best.point.valid || bestDistance > d) {
            best = {candidate, i};
            bestDistance = d;
        }
    }
    return best;
}

} // namespace MERV::BRep
