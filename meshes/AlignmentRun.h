#pragma once

#include "Common/Matrix4.h"
#include "meshes/MeshCorners.h"
#include "meshes/RigidStep.h"
#include "meshes/geometry/ClosestPointIndex.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

class TriMeshFragment;

// The rounds that move free faces onto a base fragment. Each searches the closest point of each distinct
// corner once, several at a time, and then sums over all corners one after the other in the order of the
// faces: the result has the bits of the plain rounds on any number of cores.
class AlignmentRun
{
public:
    // Copies what it needs of the faces.
    explicit AlignmentRun(std::span<const MERV::BRep::TriFace> freeFaces);

    // Without corners there is nothing to align.
    bool isEmpty() const { return corners.order().empty(); }
    // One round, with its lines on standard output. Pairs that are not finite take no part; without a pair,
    // and with a result that is not finite, everything stays where it is. The base may have changed since the
    // last round, but must not do so during this one.
    void round(int number, const TriMeshFragment &base);
    // The free faces where they are now.
    std::vector<MERV::BRep::TriFace> faces() const { return corners.movedFaces(transformation); }

private:
    // A free point where it is now, with its closest point on the base.
    struct Pair
    {
        Vector3 freePoint, basePoint;
        std::size_t face = MERV::BRep::ClosestPointIndex::noHint;
        bool valid = false;
    };

    void follow(const TriMeshFragment &base);
    void findPairs();
    void findPair(std::size_t point);
    PairSums sums() const;
    void apply(RigidStep step);

    const MeshCorners corners;
    const Vector3 mean;
    MERV::Matrix4 transformation = MERV::Matrix4::identity();
    std::vector<Pair> pairs;                            // of each distinct corner
    std::optional<MERV::BRep::ClosestPointIndex> index; // of the base as it was at baseRevision
    std::uint64_t baseRevision = 0;
};
