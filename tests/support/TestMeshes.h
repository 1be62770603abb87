#pragma once

#include "meshes/geometry/TriFace.h"

#include <cmath>
#include <random>
#include <vector>

// Meshes for tests and benchmarks.

using TestMesh = std::vector<MERV::BRep::TriFace>;

// (p1 - p0) x (p2 - p1) points to +z: columns x rows squares of side 1 at z, from the origin. All coordinates
// are whole numbers.
inline TestMesh flatSheet(int columns, int rows, double z)
{
    TestMesh faces;
    for (int row = 0; row < rows; ++row)
        for (int column = 0; column < columns; ++column) {
            const double x = column, y = row;
            const MERV::BRep::Point a(x, y, z), b(x + 1, y, z), c(x + 1, y + 1, z), d(x, y + 1, z);
            faces.emplace_back(a, b, c);
            faces.emplace_back(a, c, d);
        }
    return faces;
}

// A curved ribbon over slices 1.5 mm apart, as traced contours give it: uneven points, no two coordinates
// alike. offset moves it away along its normals, in mm. slices - 1 times 2 * (pointsPerSlice - 1) faces.
inline TestMesh curvedRibbon(int slices, int pointsPerSlice, double offset, unsigned seed)
{
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> jitter(-0.3, 0.3);
    std::vector<std::vector<MERV::BRep::Point>> lines(static_cast<std::size_t>(slices));
    for (int slice = 0; slice < slices; ++slice)
        for (int i = 0; i < pointsPerSlice; ++i) {
            const double angle = (i + jitter(random)) / pointsPerSlice * 2.5;
            const double radius = 25.0 + 4.0 * std::sin(slice * 0.11) + 0.3 * jitter(random) + offset;
            lines[static_cast<std::size_t>(slice)].emplace_back(
                60.0 + radius * std::cos(angle), 70.0 + radius * std::sin(angle), (slice + 0.5) * 1.5);
        }
    TestMesh faces;
    for (std::size_t slice = 1; slice < lines.size(); ++slice) {
        const auto &below = lines[slice - 1], &above = lines[slice];
        for (std::size_t i = 1; i < below.size(); ++i) {
            faces.emplace_back(below[i - 1], below[i], above[i - 1]);
            faces.emplace_back(below[i], above[i], above[i - 1]);
        }
    }
    return faces;
}
