#pragma once

#include <QHash>
#include <QPointF>

#include <cstddef>
#include <span>
#include <utility>
#include <vector>

// Finds a point in a line that grows and shrinks at its end, without a walk over the line: a hash of its
// points by tiny squares. Answers as samePoint() does, point by point. Holds no points: it is told of each
// change. Points equal to the first one to the last bit, by which a line closes, are kept out.
class PointIndex
{
public:
    // Of a line with at least one point.
    explicit PointIndex(std::span<const QPointF> line);

    // After a point was added at the end of the line, and before the last one is removed. The first one
    // stays.
    void append(std::span<const QPointF> line);
    void removeLast(std::span<const QPointF> line);

    // The lowest index of a point that is the same as this one; -1 for none. The point must not be the same
    // as the first one of the line.
    std::ptrdiff_t firstOccurrence(std::span<const QPointF> line, const QPointF &point) const;

private:
    using Cell = std::pair<qint64, qint64>;

    static Cell cellOf(const QPointF &point);

    QHash<Cell, std::ptrdiff_t> newest;   // of the points in a cell
    std::vector<std::ptrdiff_t> previous; // the next older point in the same cell, -1 for none
};
