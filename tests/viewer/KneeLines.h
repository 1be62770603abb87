#pragma once

#include <QList>
#include <QPointF>

#include <algorithm>
#include <cmath>
#include <limits>

// Lines in mm in one slice of the knee "knee-ge-mese", and their measures.
namespace knee_lines {

constexpr double pixelMm = 0.625; // of the knee, 256 x 256
constexpr double heightMm = 256 * pixelMm;
constexpr double sliceMm = 4.0;
// Instance 113, the 15th of the 24 slices, through femur, tibia and patella. Loading reverses y and z.
constexpr int tracedSlice = 23 - 14;

// The two sides of the femoral cartilage in that slice, as columns and rows of the file, read by eye from the
// enlarged picture.
inline const QList<QPointF> boneSide{{76.5, 92},   {77, 100},    {78.3, 105}, {80.1, 110},  {83, 115.5},
                                     {86.7, 120},  {90, 124},    {95, 128.8}, {100, 132.2}, {105, 134.2},
                                     {110, 135.3}, {115, 136.3}, {120, 137.0}};
inline const QList<QPointF> surfaceSide{{73.5, 109}, {75.5, 113.5}, {78, 117},    {80.7, 120.3},
                                        {85, 125},   {90, 128.6},   {95, 132.3},  {100, 135.4},
                                        {105, 138},  {110, 139.3},  {115, 140.2}, {120, 140.8}};

constexpr double zOf(int slice)
{
    return (slice + 0.5) * sliceMm;
}

// Rows of the file run downwards, y upwards.
inline QList<QPointF> inMm(const QList<QPointF> &pixels)
{
    QList<QPointF> line;
    for (const QPointF &pixel : pixels)
        line.append({pixel.x() * pixelMm, heightMm - pixel.y() * pixelMm});
    return line;
}

inline double distance(const QPointF &a, const QPointF &b)
{
    return std::hypot(a.x() - b.x(), a.y() - b.y());
}

inline double length(const QList<QPointF> &line)
{
    double sum = 0.0;
    for (qsizetype i = 1; i < line.size(); ++i)
        sum += distance(line[i - 1], line[i]);
    return sum;
}

// Points about stepMm apart along the line.
inline QList<QPointF> walked(const QList<QPointF> &line, double stepMm)
{
    QList<QPointF> points;
    for (qsizetype i = 1; i < line.size(); ++i) {
        const int steps = std::max(1, static_cast<int>(std::lround(distance(line[i - 1], line[i]) / stepMm)));
        for (int step = 0; step < steps; ++step)
            points.append(line[i - 1] + (line[i] - line[i - 1]) * step / steps);
    }
    points.append(line.last());
    return points;
}

inline double distanceToLine(const QPointF &point, const QList<QPointF> &line)
{
    double nearest = std::numeric_limits<double>::max();
    for (const QPointF &other : walked(line, 0.05))
        nearest = std::min(nearest, distance(point, other));
    return nearest;
}

} // namespace knee_lines
