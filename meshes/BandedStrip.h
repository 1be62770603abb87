#pragma once

#include "meshes/ColourScale.h"
#include "objects/Vector3.h"

#include <array>
#include <cstddef>
#include <span>

// The corners of a triangle, 0 to 2, in order of rising value.
struct RisingOrder
{
    int lo = 0;
    int mid = 1;
    int hi = 2;
    bool isReversed = false; // lo, mid, hi run round the triangle the other way than 0, 1, 2
};

RisingOrder risingOrder(const std::array<double, 3> &fractions);

struct StripVertex
{
    Vector3 position; // mm
    RgbaColour colour{};
};

// A triangle cut along the breaks of a colour scale into a strip of triangles, so that each band of colour
// has exact borders.
struct BandedStrip
{
    // Three corners, and two vertices for each of 11 breaks.
    static constexpr std::size_t capacity = 25;

    std::array<StripVertex, capacity> storage;
    std::size_t count = 0;
    // The strip runs round its triangles the other way than the corners do.
    bool isReversed = false;

    std::span<const StripVertex> vertices() const { return {storage.data(), count}; }
};

// fractions are the values at the corners, relative to the largest value of all; the scale has at most 11
// breaks. A triangle with a fraction that is not finite, as all are when the largest value is 0, is not cut:
// three vertices in the scale's first colour.
BandedStrip bandedStrip(const std::array<Vector3, 3> &corners, const std::array<double, 3> &fractions,
                        const ColourScale &scale);
