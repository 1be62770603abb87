#pragma once

#include "meshes/geometry/TriFace.h"

#include <cmath>
#include <random>
#include <vector>

// A curved sheet of two faces per pair of points, like a cartilage drawn slice by slice: `levels` lines of
// `points` points each, 1.5 mm apart, on part of a bulging cylinder of about 80 mm of arc. The coordinates
// are generic: points are scattered along their lines. `offset` in mm moves the sheet outwards.
inline std::vector<MERV::BRep::TriFace> ribbonMesh(int levels, int points, double offset, unsigned seed)
{
    using MERV::BRep::Point;
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> scatter(-0.3, 0.3);
    const auto line = [&](int level) {
        std::vector<Point> result;
        for (int i = 0; i < points; ++i) {
            const double along = (i + scatter(random)) / (points - 1);
            const double z = 1.5 * level + 0.75;
            const double angle = 2.2 * along + 0.1 * std::sin(0.05 * z);
            const double radius = 36.0 + offset + 2.0 * std::sin(0.07 * z + 3.0 * along);
            result.emplace_back(121.3 + radius * std::cos(angle), 95.7 + radius * std::sin(angle), z);
        }
        return result;
    };
    std::vector<MERV::BRep::TriFace> faces;
    std::vector<Point> below = line(0);
    for (int level = 1; level < levels; ++level) {
        std::vector<Point> above = line(level);
        for (std::size_t i = 0; i + 1 < below.size(); ++i) {
            faces.emplace_back(below[i], above[i], below[i + 1]);
            faces.emplace_back(above[i], above[i + 1], below[i + 1]);
        }
        below = std::move(above);
    }
    return faces;
}
