#pragma once

#include "contours/ContourGeometry.h"
#include "objects/Vector3.h"

#include <array>
#include <cstddef>
#include <span>
#include <vector>

// One segment of a chain: its index in the level, and the direction in which it is walked, +1 or -1.
struct ChainLink
{
    std::size_t segment = 0;
    int direction = 1;

    bool operator==(const ChainLink &) const = default;
};

// One flat triangle of a skin; the normal is not normalised, and zero for a triangle without area.
struct SkinTriangle
{
    Vector3 normal;
    std::array<Vector3, 3> corners;
};

// Orders the segments of one level into a chain in which the end of each is near the beginning of the next,
// as far as nearest neighbours lead from the first segment in both directions. Segments that are not reached
// are left out. Distances are taken in the plane.
std::vector<ChainLink> orderChain(std::span<const SegmentSnapshot> level);

// The triangles between two chains of neighbouring levels. The upper chain is walked backwards if its ends
// then lie nearer to those of the lower one. No triangle spans the gap between two segments of a chain.
std::vector<SkinTriangle> stitchChains(std::span<const SegmentSnapshot> lower,
                                       std::span<const SegmentSnapshot> upper);

// The skin over all levels: the segments grouped by z, each level stitched to the next higher one. Segments
// whose z is no number take no part.
std::vector<SkinTriangle> skinOf(std::span<const SegmentSnapshot> segments);
