#pragma once

#include <QPointF>

#include <vector>

// The points (x and y in mm) and the z of a segment at one moment. Plain data: any thread.
struct SegmentSnapshot
{
    std::vector<QPointF> points;
    float z = 0.0f;

    // The null point for a segment without points.
    QPointF first() const { return points.empty() ? QPointF() : points.front(); }
    QPointF last() const { return points.empty() ? QPointF() : points.back(); }
};
