#include "objects/SlicePositions.h"

#include <algorithm>
#include <cmath>

namespace {

// z in units of slices. A z that is a slice centre but for the rounding to single precision becomes exactly
// that centre: the relative error of a rounded centre exceeds the fixed tolerances below from about slice 130
// on.
double sliceCoordinate(float z, float spacingZ)
{
    const double q = static_cast<double>(z) / static_cast<double>(spacingZ);
    const double tolerance = std::max(1e-5, std::abs(q) * 0x1p-22);
    const double centre = std::floor(q) + 0.5;
    return std::abs(q - centre) <= tolerance ? centre : q;
}

bool canStep(float z, float spacingZ, int sliceCount)
{
    return std::isfinite(z) && std::isfinite(spacingZ) && spacingZ > 0.0f && sliceCount > 0;
}

} // namespace

float sliceCentre(int slice, float spacingZ)
{
    return static_cast<float>((slice + 0.5) * static_cast<double>(spacingZ));
}

float nextSliceCentre(float z, float spacingZ, int sliceCount)
{
    if (!canStep(z, spacingZ, sliceCount))
        return z;
    const double m = sliceCoordinate(z, spacingZ) - 0.49999;
    const double next = std::floor(std::max(-0.5, m)) + 1.0;
    return sliceCentre(static_cast<int>(std::min(next, sliceCount - 1.0)), spacingZ);
}

float previousSliceCentre(float z, float spacingZ, int sliceCount)
{
    if (!canStep(z, spacingZ, sliceCount))
        return z;
    const double above = std::ceil(sliceCoordinate(z, spacingZ) - 0.50001);
    const double previous = std::trunc(std::min(above, sliceCount + 0.5)) - 1.0;
    return sliceCentre(static_cast<int>(std::max(previous, 0.0)), spacingZ);
}
