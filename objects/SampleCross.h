#pragma once

#include "objects/Vector3.h"

#include <array>

// The mark of one sample: three strokes through its position along x, y and z, and their colour.
struct SampleCross
{
    std::array<std::array<Vector3, 2>, 3> strokes; // in mm
    std::array<double, 3> colour;                  // red, green, blue; not clamped to 0..1
};

SampleCross sampleCross(const Vector3 &position, double value);
