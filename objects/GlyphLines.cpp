#include "objects/GlyphLines.h"

GlyphLines glyphLines(const std::array<float, 3> &point, const std::array<float, 3> &vector)
{
    const GlyphLines::Position tip = {point[0] + vector[0], point[1] + vector[1], point[2] + vector[2]};
    const GlyphLines::Position alongX = {tip[0], point[1], point[2]};
    const GlyphLines::Position below = {tip[0], tip[1], point[2]};
    return {{point, tip}, {point, below}, {{{point, alongX}, {alongX, below}, {below, tip}}}};
}
