#pragma once

#include "meshes/geometry/TriFace.h"

#include <vector>

// Columns x rows squares of side 1 at z, from the origin, two faces each with normals along +z. With whole
// numbers for coordinates nothing is rounded.
inline std::vector<MERV::BRep::TriFace> flatSheet(int columns, int rows, double z)
{
    std::vector<MERV::BRep::TriFace> faces;
    for (int row = 0; row < rows; ++row)
        for (int column = 0; column < columns; ++column) {
            const double x = column, y = row;
            const MERV::BRep::Point a(x, y, z), b(x + 1, y, z), c(x + 1, y + 1, z), d(x, y + 1, z);
            faces.emplace_back(a, b, c);
            faces.emplace_back(a, c, d);
        }
    return faces;
}
