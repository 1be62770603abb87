#pragma once

#include <compare>

// A position in patient space, in mm.
struct Vector3
{
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};

// Total order of positions: by x, then y, then z. -0.0 and 0.0 are the same coordinate; a NaN has its place
// too, so that positions serve as keys whatever they hold.
struct Vector3Order
{
    bool operator()(const Vector3 &left, const Vector3 &right) const
    {
        const auto x = std::weak_order(left.x, right.x);
        const auto y = std::weak_order(left.y, right.y);
        const auto z = std::weak_order(left.z, right.z);
        return std::is_lt(std::is_neq(x) ? x : std::is_neq(y) ? y : z);
    }
};
