#pragma once

#include "meshes/geometry/TriFace.h"

#include <malloc.h>

#include <cmath>
#include <cstddef>
#include <vector>

// The mesh of 100,000 faces that the benchmarks of drawing share: a waving sheet over 75 x 60 mm. With more
// rows it is longer and has more faces.
namespace WavySheet {

constexpr int columns = 250, rows = 200; // of cells with two faces each
constexpr double faceCount = 2.0 * columns * rows;

inline MERV::BRep::Point at(int column, int row)
{
    return {0.3 * column, 0.3 * row, 5.0 * std::sin(0.05 * column) * std::cos(0.04 * row)};
}

inline std::vector<MERV::BRep::TriFace> faces(int rowCount = rows)
{
    std::vector<MERV::BRep::TriFace> sheet;
    sheet.reserve(std::size_t{2} * columns * static_cast<std::size_t>(rowCount));
    for (int row = 0; row < rowCount; ++row)
        for (int column = 0; column < columns; ++column) {
            sheet.emplace_back(at(column, row), at(column + 1, row), at(column + 1, row + 1));
            sheet.emplace_back(at(column, row), at(column + 1, row + 1), at(column, row + 1));
        }
    return sheet;
}

// What the program has allocated at present.
inline std::size_t heapBytes()
{
    const struct mallinfo2 heap = mallinfo2();
    return heap.uordblks + heap.hblkhd;
}

} // namespace WavySheet
