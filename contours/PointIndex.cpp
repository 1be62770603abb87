#include "contours/PointIndex.h"

#include "contours/ContourGeometry.h"

#include <array>
#include <bit>
#include <cmath>

namespace {

// A little more than the distance within which points are the same.
constexpr double reachMm = 1.1e-12;
// The width of a cell is 2^-38 mm, about 3.6e-12 mm and so more than twice the reach: the points that are the
// same as a given one lie in two cells per axis at most.
constexpr double cellsPerMm = 0x1p38;
// From here on neighbouring numbers differ by more than the reach, so that each is a cell of its own.
constexpr double coarseMm = 0x1p15;

qint64 cellOf(double coordinate)
{
    if (std::abs(coordinate) < coarseMm)
        return static_cast<qint64>(std::floor(coordinate * cellsPerMm));
    return std::bit_cast<qint64>(coordinate);
}

// Nothing is the same as a point that is not finite, not even itself.
bool isFinite(const QPointF &point)
{
    return std::isfinite(point.x()) && std::isfinite(point.y());
}

bool identical(const QPointF &left, const QPointF &right)
{
    return left.x() == right.x() && left.y() == right.y();
}

} // namespace

PointIndex::PointIndex(std::span<const QPointF> line)
{
    for (std::size_t count = 1; count <= line.size(); ++count)
        append(line.first(count));
}

PointIndex::Cell PointIndex::cellOf(const QPointF &point)
{
    return {::cellOf(point.x()), ::cellOf(point.y())};
}

void PointIndex::append(std::span<const QPointF> line)
{
    const QPointF &point = line.back();
    previous.push_back(-1);
    if (!isFinite(point) || identical(point, line.front()))
        return;
    const auto index = static_cast<std::ptrdiff_t>(line.size()) - 1;
    const auto cell = newest.find(cellOf(point));
    if (cell == newest.end())
        newest.insert(cellOf(point), index);
    else
        previous.back() = std::exchange(*cell, index);
}

void PointIndex::removeLast(std::span<const QPointF> line)
{
    const QPointF &point = line.back();
    const std::ptrdiff_t older = previous.back();
    previous.pop_back();
    if (!isFinite(point) || identical(point, line.front()))
        return;
    if (older < 0)
        newest.remove(cellOf(point));
    else
        newest[cellOf(point)] = older;
}

std::ptrdiff_t PointIndex::firstOccurrence(std::span<const QPointF> line, const QPointF &point) const
{
    if (!isFinite(point))
        return -1;
    const Cell low = cellOf(point - QPointF(reachMm, reachMm));
    const Cell high = cellOf(point + QPointF(reachMm, reachMm));
    std::ptrdiff_t first = -1;
    const auto search = [&](const Cell &cell) {
        for (std::ptrdiff_t i = newest.value(cell, -1); i >= 0; i = previous[static_cast<std::size_t>(i)])
            if (samePoint(line[static_cast<std::size_t>(i)], point) && (first < 0 || i < first))
                first = i;
    };
    search(low);
    if (high.first != low.first)
        search({high.first, low.second});
    if (high.second != low.second)
        search({low.first, high.second});
    if (high.first != low.first && high.second != low.second)
        search(high);
    return first;
}
