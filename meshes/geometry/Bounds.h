#pragma once

#include "meshes/geometry/Float4.h"

#include <algorithm>
#include <cstddef>

namespace MERV::BRep {

// The range of each coordinate of some vectors.
struct Bounds
{
    Triple<double> low, high;

    explicit Bounds(const Triple<double> &first)
        : low(first)
        , high(first)
    {}

    void add(const Triple<double> &v)
    {
        low = {std::min(low.x, v.x), std::min(low.y, v.y), std::min(low.z, v.z)};
        high = {std::max(high.x, v.x), std::max(high.y, v.y), std::max(high.z, v.z)};
    }
    void add(const Bounds &other)
    {
        add(other.low);
        add(other.high);
    }
    Triple<double> middle() const { return (low + high) * 0.5; }
    Triple<double> half() const { return (high - low) * 0.5; }
};

inline Vector inFloat(const Triple<double> &v)
{
    return {static_cast<float>(v.x), static_cast<float>(v.y), static_cast<float>(v.z)};
}

} // namespace MERV::BRep
