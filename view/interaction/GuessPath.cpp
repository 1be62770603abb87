#include "view/interaction/GuessPath.h"

#include <cmath>
#include <cstddef>
#include <limits>

namespace {

// The nearest point in the plane, the first one on ties.
std::ptrdiff_t nearestIndex(std::span<const QPointF> points, const Vector3 &position)
{
    std::ptrdiff_t best = 0;
    double bestDistance = std::numeric_limits<double>::infinity();
    for (std::size_t i = 0; i < points.size(); ++i) {
        const double distance = std::hypot(points[i].x() - position.x, points[i].y() - position.y);
        if (distance < bestDistance) {
            bestDistance = distance;
            best = static_cast<std::ptrdiff_t>(i);
        }
    }
    return best;
}

double stepLength(const QPointF &from, const QPointF &to)
{
    return std::hypot(to.x() - from.x(), to.y() - from.y());
}

} // namespace

QList<Vector3> guessPath(const Vector3 &start, const Vector3 &end, std::span<const QPointF> guide)
{
    QList<Vector3> path{start};
    if (!guide.empty()) {
        const std::ptrdiff_t first = nearestIndex(guide, start);
        const std::ptrdiff_t last = nearestIndex(guide, end);
        const std::ptrdiff_t step = last >= first ? 1 : -1;
        const auto at = [&](std::ptrdiff_t k) -> const QPointF & {
            return guide[static_cast<std::size_t>(k)];
        };
        const QPointF startBend(start.x - at(first).x(), start.y - at(first).y());
        const QPointF endBend(end.x - at(last).x(), end.y - at(last).y());
        double length = 0.0;
        for (std::ptrdiff_t k = first; k != last; k += step)
            length += stepLength(at(k), at(k + step));
        double walked = 0.0;
        for (std::ptrdiff_t k = first;; k += step) {
            const double w = length > 0.0 ? walked / length : 0.0;
            const double atStart = (1.0 - w) * (1.0 - w);
            const double atEnd = w * w;
            path.append({at(k).x() + atStart * startBend.x() + atEnd * endBend.x(),
                         at(k).y() + atStart * startBend.y() + atEnd * endBend.y(), start.z});
            if (k == last)
                break;
            walked += stepLength(at(k), at(k + step));
        }
    }
    path.append(end);
    return path;
}
