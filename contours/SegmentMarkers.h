#pragma once

#include <QPointF>

#include <array>
#include <vector>

// The small filled shapes on a segment's points, in the plane of its slice; sizes in mm.

// A narrow octagon on one point.
std::array<QPointF, 8> vertexOctagon(const QPointF &centre);

// Diamonds on the first and the last point, four corners each: larger ones first if highlighted, then in
// every case the plain ones. Empty without points.
std::vector<QPointF> endDiamonds(const std::vector<QPointF> &points, bool highlighted);
