#include "meshes/geometry/FourBoxes.h"

#include <algorithm>
#include <limits>

namespace MERV::BRep {

namespace {

constexpr float rim = 0x1p-20f;
// Where boxes without content lie; the square is still a number.
constexpr float farAway = 0x1p50f;

using Frame = std::array<Vector, 3>;

bool isFinite(const Vector &v)
{
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

// The unit vector perpendicular to a unit vector and next to the direction, or any one for want of it.
Vector perpendicular(const Vector &unit, const Vector &direction)
{
    const Vector aside = cross(unit, direction);
    const Vector result = normalized(cross(normalized(aside), unit));
    if (isFinite(result))
        return result;
    const Vector other = std::abs(unit.x) < 0.5f ? Vector{1.0f, 0.0f, 0.0f} : Vector{0.0f, 1.0f, 0.0f};
    return normalized(cross(unit, other));
}

Frame frameOf(const Vector &normal, const Vector &direction)
{
    const Vector given = normalized(normal);
    const Vector up = isFinite(given) ? given : Vector{0.0f, 0.0f, 1.0f};
    const Vector along = perpendicular(up, direction);
    return {along, normalized(cross(up, along)), up};
}

struct Interval
{
    float low, high;
};

Interval intervalOf(Float4 low, Float4 high)
{
    return {std::min({low[0], low[1], low[2], low[3]}), std::max({high[0], high[1], high[2], high[3]})};
}

std::array<Interval, 3> extentAlong(const Frame &frame, std::span<const FourTriangles> content)
{
    constexpr float most = std::numeric_limits<float>::max();
    std::array<Vector4, 3> axes{};
    for (std::size_t k = 0; k < axes.size(); ++k)
        for (std::size_t lane = 0; lane < lanes; ++lane)
            setLane(axes[k], lane, frame[k]);
    const Float4 start{most, most, most, most};
    std::array<Float4, 3> low{start, start, start}, high{-start, -start, -start};
    for (const FourTriangles &triangles : content)
        for (const Vector4 &corner : triangles.corners())
            for (std::size_t k = 0; k < axes.size(); ++k) {
                const Float4 at = dot(corner, axes[k]);
                low[k] = smaller(low[k], at);
                high[k] = larger(high[k], at);
            }
    return {intervalOf(low[0], high[0]), intervalOf(low[1], high[1]), intervalOf(low[2], high[2])};
}

} // namespace

FourBoxes::FourBoxes()
{
    for (std::size_t lane = 0; lane < lanes; ++lane) {
        setLane(center, lane, {farAway, farAway, farAway});
        setLane(axes[0], lane, {1.0f, 0.0f, 0.0f});
        setLane(axes[1], lane, {0.0f, 1.0f, 0.0f});
        setLane(axes[2], lane, {0.0f, 0.0f, 1.0f});
    }
    half = {};
}

void FourBoxes::fit(std::size_t lane, std::span<const FourTriangles> content, const Vector &normal,
                    const Vector &direction)
{
    const Frame frame = frameOf(normal, direction);
    const std::array<Interval, 3> extent = extentAlong(frame, content);
    Vector middle{};
    float size = 1.0f;
    for (const auto &[low, high] : extent)
        size += high - low;
    for (std::size_t k = 0; k < frame.size(); ++k) {
        const auto [low, high] = extent[k];
        middle = middle + frame[k] * (0.5f * (low + high));
        half[k][lane] = 0.5f * (high - low) + rim * size;
        setLane(axes[k], lane, frame[k]);
    }
    setLane(center, lane, middle);
}

} // namespace MERV::BRep
