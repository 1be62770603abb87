#include "contours/ContourGeometry.h"

#include <algorithm>
#include <cmath>
#include <numeric>

bool samePoint(const QPointF &left, const QPointF &right)
{
    constexpr double toleranceMm = 1e-12;
    return std::abs(left.x() - right.x()) <= toleranceMm && std::abs(left.y() - right.y()) <= toleranceMm;
}

double squaredDistance(const QPointF &left, const QPointF &right)
{
    const double dx = left.x() - right.x();
    const double dy = left.y() - right.y();
    return dx * dx + dy * dy;
}

bool liesInSlab(float z, float z0, float z1)
{
    return z0 == z1 ? z == z0 : z0 <= z && z < z1;
}

float polylineLength(std::span<const QPointF> points, std::ptrdiff_t first, std::ptrdiff_t last)
{
    float sum = 0.0f;
    for (std::ptrdiff_t i = first; i < last; ++i)
        sum += static_cast<float>(std::sqrt(
            squaredDistance(points[static_cast<std::size_t>(i)], points[static_cast<std::size_t>(i + 1)])));
    return sum;
}

std::optional<std::vector<std::size_t>> pullLoop(std::span<const SegmentSnapshot> pool)
{
    if (pool.empty())
        return std::nullopt;
    std::vector<std::size_t> loop{0};
    std::vector<std::size_t> rest(pool.size() - 1);
    std::iota(rest.begin(), rest.end(), std::size_t{1});
    const QPointF start = pool[0].first();
    QPointF head = pool[0].last();
    while (!samePoint(head, start)) {
        const auto next = std::find_if(rest.begin(), rest.end(), [&](std::size_t i) {
            return samePoint(pool[i].first(), head) || samePoint(pool[i].last(), head);
        });
        if (next == rest.end())
            return std::nullopt;
        const SegmentSnapshot &segment = pool[*next];
        head = samePoint(segment.first(), head) ? segment.last() : segment.first();
        loop.push_back(*next);
        rest.erase(next);
    }
    return loop;
}

std::vector<Vector3> loopOutline(std::span<const SegmentSnapshot> pool, std::span<const std::size_t> loop)
{
    std::vector<Vector3> outline;
    if (loop.empty())
        return outline;
    const auto manhattan = [](const QPointF &a, const QPointF &b) { return (a - b).manhattanLength(); };
    QPointF end = pool[loop.front()].first();
    for (const std::size_t index : loop) {
        const SegmentSnapshot &segment = pool[index];
        const auto append = [&](const QPointF &point) {
            outline.push_back({point.x(), point.y(), segment.z});
        };
        if (manhattan(end, segment.last()) <= manhattan(end, segment.first())) {
            std::for_each(segment.points.rbegin(), segment.points.rend(), append);
            end = segment.first();
        } else {
            std::for_each(segment.points.begin(), segment.points.end(), append);
            end = segment.last();
        }
    }
    return outline;
}

std::vector<std::vector<Vector3>> closedOutlines(std::vector<SegmentSnapshot> pool)
{
    std::vector<std::vector<Vector3>> outlines;
    while (!pool.empty()) {
        std::vector<std::size_t> used{0};
        if (const auto loop = pullLoop(pool)) {
            if (std::vector<Vector3> outline = loopOutline(pool, *loop); !outline.empty())
                outlines.push_back(std::move(outline));
            used = *loop;
            std::sort(used.begin(), used.end());
        }
        std::for_each(used.rbegin(), used.rend(),
                      [&](std::size_t i) { pool.erase(pool.begin() + static_cast<std::ptrdiff_t>(i)); });
    }
    return outlines;
}

double loopArea(std::span<const SegmentSnapshot> pool)
{
    if (pool.size() < 2)
        return 0.0;
    const auto loop = pullLoop(pool);
    if (!loop)
        return 0.0;
    const std::vector<Vector3> outline = loopOutline(pool, *loop);
    double sum = 0.0;
    for (std::size_t i = 0; i < outline.size(); ++i) {
        const Vector3 &a = outline[i];
        const Vector3 &b = outline[(i + 1) % outline.size()];
        sum += a.x * b.y - b.x * a.y;
    }
    return std::abs(sum / 2.0);
}
