#include "objects/SampleCross.h"

namespace {

constexpr double reachMm = 0.3; // of a stroke to either side

} // namespace

SampleCross sampleCross(const Vector3 &position, double value)
{
    const auto [x, y, z] = position;
    return {{{{{{x - reachMm, y, z}, {x + reachMm, y, z}}},
              {{{x, y - reachMm, z}, {x, y + reachMm, z}}},
              {{{x, y, z - reachMm}, {x, y, z + reachMm}}}}},
            {2.0 * value, value / 2.0, value / 8.0}};
}
