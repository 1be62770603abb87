#include "contours/EdgePointSelection.h"

#include <cmath>
#include <limits>

EdgePoint bestEdgePoint(const EdgePointList &set, double x, double y, double z)
{
    constexpr double leastScore = 0.1;
    const EdgePoint *best = nullptr;
    double bestScore = 0.0;
    for (const EdgePoint *point : set) {
        if (point->excluded)
            continue;
        const double dx = static_cast<double>(point->x) - x;
        const double dy = static_cast<double>(point->y) - y;
        const double score =
            std::exp2(-std::sqrt(dx * dx + dy * dy)) + static_cast<double>(point->strength) / 2.0;
        if (score > bestScore) {
            bestScore = score;
            best = point;
        }
    }
    if (best != nullptr && bestScore >= leastScore)
        return *best;
    return EdgePoint(static_cast<float>(x), static_cast<float>(y), static_cast<float>(z), 0.0f);
}

Vector3 nearestPoint(const QList<Vector3> &points, const Vector3 &position)
{
    Vector3 nearest;
    double best = std::numeric_limits<float>::max();
    for (const Vector3 &point : points) {
        const double dx = point.x - position.x;
        const double dy = point.y - position.y;
        const double dz = point.z - position.z;
        const double distance = std::sqrt(dx * dx + dy * dy + dz * dz);
        if (distance < best) {
            best = distance;
            nearest = point;
        }
    }
    return nearest;
}
