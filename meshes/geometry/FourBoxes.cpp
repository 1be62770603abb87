#include "meshes/geometry/FourBoxes.h"

#include <algorithm>
#include <limits>

namespace MERV::BRep {

namespace {

constexpr float rim = 0x1p-21f;

bool isFinite(const Vector &v)
{
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

// Any unit vector perpendicular to a unit vector.
Vector anyPerpendicular(const Vector &unit)
{
    const Vector away = std::abs(unit.x) < 0.5f ? Vector{1.0f, 0.0f, 0.0f} : Vector{0.0f, 1.0f, 0.0f};
    return normalized(cross(unit, away));
}

Vector meanOf(std::span<const Vector> points)
{
    Vector sum{};
    for (const Vector &point : points)
        sum = sum + point;
    return sum * (1.0f / static_cast<float>(points.size()));
}

// The unit vector u or v or between them along which the points spread most: the larger principal axis of
// their second moments.
Vector widestDirection(std::span<const Vector> points, const Vector &u, const Vector &v)
{
    const Vector mean = meanOf(points);
    float uu = 0.0f, uv = 0.0f, vv = 0.0f;
    for (const Vector &point : points) {
        const Vector d = point - mean;
        const float x = dot(d, u), y = dot(d, v);
        uu += x * x;
        uv += x * y;
        vv += y * y;
    }
    const float difference = 0.5f * (uu - vv);
    const float root = std::sqrt(difference * difference + uv * uv);
    const Vector direction =
        difference > 0.0f ? u * (difference + root) + v * uv : u * uv + v * (root - difference);
    const Vector unit = normalized(direction);
    return isFinite(unit) ? unit : u;
}

} // namespace

FourBoxes::FourBoxes()
{
    const Vector infinity{farAway, farAway, farAway};
    for (std::size_t lane = 0; lane < lanes; ++lane)
        fit(lane, {&infinity, 1}, {0.0f, 0.0f, 1.0f});
}

void FourBoxes::fit(std::size_t lane, std::span<const Vector> points, const Vector &normal)
{
    const Vector given = normalized(normal);
    const Vector upright = isFinite(given) ? given : Vector{0.0f, 0.0f, 1.0f};
    const Vector flat = anyPerpendicular(upright);
    const Vector widest = widestDirection(points, flat, cross(upright, flat));
    const std::array<Vector, 3> frame{widest, normalized(cross(upright, widest)), upright};

    Vector middle{};
    for (std::size_t k = 0; k < frame.size(); ++k) {
        float low = std::numeric_limits<float>::max(), high = -low;
        for (const Vector &point : points) {
            const float at = dot(point, frame[k]);
            low = std::min(low, at);
            high = std::max(high, at);
        }
        middle = middle + frame[k] * (0.5f * (low + high));
        half[k][lane] = 0.5f * (high - low) + rim;
        setLane(axes[k], lane, frame[k]);
    }
    setLane(center, lane, middle);
}

std::array<Vector, 8> FourBoxes::corners(std::size_t lane) const
{
    std::array<Vector, 8> result;
    for (std::size_t i = 0; i < result.size(); ++i) {
        result[i] = laneOf(center, lane);
        for (std::size_t k = 0; k < axes.size(); ++k) {
            const float part = (i >> k & 1) != 0 ? half[k][lane] : -half[k][lane];
            result[i] = result[i] + laneOf(axes[k], lane) * part;
        }
    }
    return result;
}

} // namespace MERV::BRep
