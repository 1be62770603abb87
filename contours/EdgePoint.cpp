#include "contours/EdgePoint.h"

#include <cmath>
#include <numbers>

EdgePoint::EdgePoint(float xMm, float yMm, float zMm, float pointStrength)
    : x(xMm)
    , y(yMm)
    , z(zMm)
    , strength(pointStrength)
{}

float EdgePoint::t() const
{
    const float sign = xS * gx + yS * gy > 0.0f ? -1.0f : 1.0f;
    return sign * std::sqrt(xS * xS + yS * yS);
}

float EdgePoint::theta() const
{
    const double dx = gx;
    const double dy = gy;
    double angle = 0.0;
    if (dx < 0.0 && std::abs(dx) >= std::abs(dy))
        angle = std::atan(dy / dx);
    else if (dy < 0.0 && std::abs(dy) >= std::abs(dx))
        angle = std::numbers::pi / 2.0 - std::atan(dx / dy);
    else if (dx > 0.0 && std::abs(dx) >= std::abs(dy))
        angle = std::atan(dy / dx) + std::numbers::pi;
    else if (dy > 0.0 && std::abs(dy) >= std::abs(dx))
        angle = -std::numbers::pi / 2.0 - std::atan(dx / dy);
    if (angle >= std::numbers::pi)
        angle -= 2.0 * std::numbers::pi;
    else if (angle < -std::numbers::pi)
        angle += 2.0 * std::numbers::pi;
    return static_cast<float>(angle);
}

float EdgePoint::alpha() const
{
    return gx == 0.0f && gy == 0.0f ? 0.0f : std::atan(gy / gx);
}
