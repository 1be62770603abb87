#pragma once

#include "contours/EdgePoint.h"
#include "objects/Vector3.h"

// The point of the set that a mouse at (x, y) mm snaps to: near and strong ones win, excluded ones never do,
// the first one on ties; z plays no part. Where none is good enough, a new point at (x, y, z) with strength
// 0.
EdgePoint bestEdgePoint(const EdgePointList &set, double x, double y, double z);

// The nearest of the points, the first on ties; the origin for an empty list.
Vector3 nearestPoint(const QList<Vector3> &points, const Vector3 &position);
