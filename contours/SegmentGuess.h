#pragma once

#include "contours/EdgePoint.h"
#include "objects/Vector3.h"

#include <QList>

class SlicedContoursSegment;

// What a guess needs to know of the image that it works on.
class EdgePointSource
{
public:
    // The edge points whose coordinates all lie within radius; the caller owns the list, not the points.
    virtual EdgePointList *edgePointsNear(float x, float y, float z, float radius) = 0;
    // The smallest meaningful step in mm.
    virtual float analyzedGranularity() const = 0;

protected:
    EdgePointSource() = default;
    EdgePointSource(const EdgePointSource &) = default;
    EdgePointSource &operator=(const EdgePointSource &) = default;
    ~EdgePointSource() = default;
};

// Extends target along path (mm): a walker goes along the path in small steps, and beside it an edge position
// hops from edge point to edge point, which become points of target. Leaves target as it is where no edge
// points are. Returns target. Main thread; target emits as its own editing operations do.
SlicedContoursSegment *guessSegment(SlicedContoursSegment *target, const QList<Vector3> &path,
                                    EdgePointSource &source);
