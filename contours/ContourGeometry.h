#pragma once

#include "contours/SegmentSnapshot.h"
#include "objects/Vector3.h"

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

// Whether the coordinates differ by at most 1e-12 each.
bool samePoint(const QPointF &left, const QPointF &right);
double squaredDistance(const QPointF &left, const QPointF &right);

// Whether z lies in z0 <= z < z1, or at z0 if both limits are equal.
bool liesInSlab(float z, float z0, float z1);

// The sum of the edges from point first to point last, 0 for an empty or reversed range; both must be valid
// indices where the range is not empty. Summed in single precision.
float polylineLength(std::span<const QPointF> points, std::ptrdiff_t first, std::ptrdiff_t last);

// The indices of the segments that form a closed loop with the first one of the pool, in the order of the
// loop. At each end the first matching segment of the pool is taken, without a second try: nothing when this
// leads nowhere, or for an empty pool.
std::optional<std::vector<std::size_t>> pullLoop(std::span<const SegmentSnapshot> pool);

// The points of the segments of a loop one after the other, each segment turned so that it begins at the end
// of the one before it.
std::vector<Vector3> loopOutline(std::span<const SegmentSnapshot> pool, std::span<const std::size_t> loop);

// The outlines of all loops in the pool. Segments that close no loop are left out.
std::vector<std::vector<Vector3>> closedOutlines(std::vector<SegmentSnapshot> pool);

// The area in mm^2 inside the loop that the first segment belongs to; other loops do not count. 0 for fewer
// than two segments and for an open line.
double loopArea(std::span<const SegmentSnapshot> pool);
