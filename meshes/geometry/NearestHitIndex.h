#pragma once

#include "meshes/geometry/NearestHit.h"

#include <span>

namespace MERV::BRep {

// nearestHitByScan() over the same faces again and again: the same answer for every line and point, bit by
// bit, found without looking at most faces. Borrows the faces, which must outlive it unchanged. Queries only
// read: several threads may ask one index at once.
class NearestHitIndex
{
public:
    explicit NearestHitIndex(std::span<const TriFace> newFaces);

    FacePoint nearestHit(const Line &line, const Point &from) const;

private:
    std::span<const TriFace> faces;
};

} // namespace MERV::BRep
