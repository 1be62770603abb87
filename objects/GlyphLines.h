#pragma once

#include <array>

// The lines by which a vector at a point is shown: an arrow's shaft, its projection on the plane of constant
// z through the point, and the way from the point to the tip along the axes. Each line is a pair of positions
// in mm.
struct GlyphLines
{
    using Position = std::array<float, 3>;
    using Line = std::array<Position, 2>;

    Line shaft;
    Line projection;
    std::array<Line, 3> legs; // along x, then y, then z
};

GlyphLines glyphLines(const std::array<float, 3> &point, const std::array<float, 3> &vector);
