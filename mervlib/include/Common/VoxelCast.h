#pragma once

#include <cmath>
#include <limits>
#include <type_traits>

namespace MERV {

// Converts a computed value to a voxel: truncates toward zero and saturates for integer voxels, NaN gives 0;
// float and double pass through. Plain casts would be undefined out of range and differ between processors.
template <class T, class V>
constexpr T voxel_cast(V value)
{
    static_assert(std::is_floating_point_v<V>);
    if constexpr (std::is_floating_point_v<T>) {
        return static_cast<T>(value);
    } else {
        // The limits of up to 32 bits are exact in double.
        const double wide = static_cast<double>(value);
        constexpr double low = static_cast<double>(std::numeric_limits<T>::min());
        constexpr double high = static_cast<double>(std::numeric_limits<T>::max());
        if (!(wide > low))
            return wide <= low ? std::numeric_limits<T>::min() : T(0);
        return wide >= high ? std::numeric_limits<T>::max() : static_cast<T>(wide);
    }
}

} // namespace MERV
