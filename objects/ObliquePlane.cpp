#include "objects/ObliquePlane.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iostream>

namespace {

// Corners of a cell in the order (i, j), (i + 1, j), (i + 1, j + 1), (i, j + 1); edge e joins corners e and e
// + 1.
constexpr std::array<std::array<int, 2>, 4> cornerOffsets = {{{0, 0}, {1, 0}, {1, 1}, {0, 1}}};

constexpr double borderTolerance = 1e-9; // in layers

std::size_t next(int corner)
{
    return static_cast<std::size_t>((corner + 1) % 4);
}

std::size_t at(int index)
{
    return static_cast<std::size_t>(index);
}

// The axis along which the plane is least steep, in units of voxels.
int chooseAxis(const std::array<double, 3> &n, const std::array<double, 3> &spacing)
{
    if (std::abs(n[0] / spacing[1]) > std::abs(n[1] / spacing[0]) &&
        std::abs(n[0] / spacing[2]) > std::abs(n[2] / spacing[0]))
        return 0;
    return std::abs(n[1] / spacing[2]) > std::abs(n[2] / spacing[1]) ? 1 : 2;
}

} // namespace

PieceColour windowedColour(float value, float low, float window, const std::array<float, 4> &colour)
{
    const float t = (value - low) / window;
    PieceColour result;
    result.outsideWindow = t > 1.0f || t < 0.0f;
    const float factor = std::isfinite(t) ? t : 0.0f;
    result.rgba = {factor * colour[0], factor * colour[1], factor * colour[2], colour[3]};
    return result;
}

struct ObliquePlane::Cell
{
    int i;
    int j;
    std::array<double, 4> coordinate; // along m, in layers, per corner
    std::array<int, 4> layer;
};

ObliquePlane::ObliquePlane(const VoxelGrid &newGrid, const std::array<double, 4> &plane)
    : grid(newGrid)
    , normal{plane[0], plane[1], plane[2]}
    , offset(plane[3])
{
    if (offset != 0.0 && offset != 1.0) {
        for (double &component : normal)
            component /= offset;
        offset = 1.0;
    }
    drawable = std::isfinite(plane[3]);
    for (std::size_t axis = 0; axis < 3; ++axis) {
        drawable = drawable && std::isfinite(normal[axis]) && std::isfinite(grid.spacing[axis]) &&
                   grid.spacing[axis] > 0.0 && grid.size[axis] > 0;
    }
    if (!drawable)
        return;
    m = chooseAxis(normal, grid.spacing);
    u = (m + 1) % 3;
    v = (m + 2) % 3;
    drawable = normal[at(m)] != 0.0;
}

int ObliquePlane::rowCount() const
{
    return drawable ? grid.size[at(u)] : 0;
}

// Where the plane crosses the grid line (i, j), in layers along m. On a border but for rounding counts as on
// it: otherwise a plane of 45 degrees through the corners of voxels would reach layers that do not fit
// together.
double ObliquePlane::layerCoordinate(int i, int j) const
{
    const double coordinate = cornerPoint(i, j)[at(m)] / grid.spacing[at(m)];
    const double border = std::round(coordinate);
    return std::abs(coordinate - border) < borderTolerance ? border : coordinate;
}

std::array<double, 3> ObliquePlane::cornerPoint(int i, int j) const
{
    std::array<double, 3> point{};
    point[at(u)] = i * grid.spacing[at(u)];
    point[at(v)] = j * grid.spacing[at(v)];
    point[at(m)] = (-offset - normal[at(u)] * point[at(u)] - normal[at(v)] * point[at(v)]) / normal[at(m)];
    return point;
}

// The layer, limited to two beyond the volume: a cell that has a corner further outside shows nothing anyway.
int ObliquePlane::layerOf(double coordinate) const
{
    return static_cast<int>(std::floor(std::clamp(coordinate, -2.0, grid.size[at(m)] + 1.0)));
}

// A cell shows something only if the layer of its first corner lies in -1 .. size. The range is one cell
// wider than the exact solution on each side, so that rounding never loses a cell; appendCell() decides.
std::pair<int, int> ObliquePlane::visitedCells(int row) const
{
    const int count = grid.size[at(v)];
    const double start = layerCoordinate(row, 0);
    const double step = -normal[at(v)] * grid.spacing[at(v)] / (normal[at(m)] * grid.spacing[at(m)]);
    const double lowest = -1.0;
    const double highest = grid.size[at(m)] + 1.0;
    if (std::abs(step) * count < 1e-6)
        return start < lowest - 1.0 || start > highest + 1.0 ? std::pair(0, 0) : std::pair(0, count);
    double first = (lowest - start) / step;
    double last = (highest - start) / step;
    if (first > last)
        std::swap(first, last);
    const double begin = std::clamp(std::floor(first) - 1.0, 0.0, count * 1.0);
    const double end = std::clamp(std::ceil(last) + 2.0, begin, count * 1.0);
    return {static_cast<int>(begin), static_cast<int>(end)};
}

void ObliquePlane::appendRow(int row, std::vector<PlanePiece> &pieces) const
{
    const auto [first, last] = visitedCells(row);
    for (int j = first; j < last; ++j)
        appendCell(row, j, pieces);
}

void ObliquePlane::appendCell(int i, int j, std::vector<PlanePiece> &pieces) const
{
    Cell cell{i, j, {}, {}};
    for (std::size_t corner = 0; corner < 4; ++corner) {
        cell.coordinate[corner] = layerCoordinate(i + cornerOffsets[corner][0], j + cornerOffsets[corner][1]);
        cell.layer[corner] = layerOf(cell.coordinate[corner]);
    }
    std::array<int, 4> split{};
    int splitCount = 0;
    for (int edge = 0; edge < 4; ++edge) {
        if (cell.layer[at(edge)] != cell.layer[next(edge)])
            split[at(splitCount++)] = edge;
    }
    if (splitCount == 0) {
        append(cell, cell.layer[0], PieceShape::Quad,
               {cornerPoint(i, j), cornerPoint(i + 1, j), cornerPoint(i + 1, j + 1), cornerPoint(i, j + 1)},
               pieces);
        return;
    }
    if (cell.layer[0] < -1 || cell.layer[0] > grid.size[at(m)])
        return;
    if (splitCount == 2 && (split[0] ^ 2) == split[1])
        splitOpposite(cell, split[0], pieces);
    else if (splitCount == 2 && split[0] == 0 && split[1] == 3)
        splitAdjacent(cell, 3, 0, pieces); // the pair that wraps around
    else if (splitCount == 2)
        splitAdjacent(cell, split[0], split[1], pieces);
    else if (splitCount == 4 && (cell.layer[1] == cell.layer[3] || cell.layer[0] == cell.layer[2]))
        splitTwice(cell, pieces);
    else
        std::cout << "Rendering skew slice: non-planar plane encountered ... something seems to be wrong ..."
                  << std::endl;
}

// Where the edge crosses the border below the higher of its two layers.
std::array<double, 3> ObliquePlane::crossing(const Cell &cell, int edge) const
{
    const std::size_t first = at(edge);
    const std::size_t second = next(edge);
    const double border = std::max(cell.layer[first], cell.layer[second]);
    const double t = (cell.coordinate[first] - border) / (cell.coordinate[first] - cell.coordinate[second]);
    const auto from = cornerPoint(cell.i + cornerOffsets[first][0], cell.j + cornerOffsets[first][1]);
    const auto to = cornerPoint(cell.i + cornerOffsets[second][0], cell.j + cornerOffsets[second][1]);
    std::array<double, 3> point{};
    for (std::size_t axis = 0; axis < 3; ++axis)
        point[axis] = from[axis] + t * (to[axis] - from[axis]);
    point[at(m)] = border * grid.spacing[at(m)];
    return point;
}

// Two edges that face each other: two quads.
void ObliquePlane::splitOpposite(const Cell &cell, int edge, std::vector<PlanePiece> &pieces) const
{
    const auto corner = [&](int c) {
        const auto &offsets = cornerOffsets[at(c % 4)];
        return cornerPoint(cell.i + offsets[0], cell.j + offsets[1]);
    };
    const auto entry = crossing(cell, edge);
    const auto exit = crossing(cell, edge + 2);
    append(cell, cell.layer[at(edge)], PieceShape::Quad, {corner(edge), entry, exit, corner(edge + 3)},
           pieces);
    append(cell, cell.layer[at(edge + 1)], PieceShape::Quad,
           {entry, corner(edge + 1), corner(edge + 2), exit}, pieces);
}

// Two edges that meet in a corner: a triangle at that corner and the pentagon that is left.
void ObliquePlane::splitAdjacent(const Cell &cell, int first, int second,
                                 std::vector<PlanePiece> &pieces) const
{
    const auto corner = [&](int c) {
        const auto &offsets = cornerOffsets[at(c % 4)];
        return cornerPoint(cell.i + offsets[0], cell.j + offsets[1]);
    };
    const auto before = crossing(cell, first);
    const auto behind = crossing(cell, second);
    append(cell, cell.layer[at(second)], PieceShape::Triangle, {before, corner(second), behind}, pieces);
    append(cell, cell.layer[at(first)], PieceShape::Polygon,
           {corner(first), before, behind, corner(second + 1), corner(second + 2)}, pieces);
}

// All four edges: triangles at two opposite corners, in the lowest and the highest layer, and a hexagon
// between.
void ObliquePlane::splitTwice(const Cell &cell, std::vector<PlanePiece> &pieces) const
{
    const auto corner = [&](int c) {
        const auto &offsets = cornerOffsets[at(c % 4)];
        return cornerPoint(cell.i + offsets[0], cell.j + offsets[1]);
    };
    const int tip = cell.layer[1] == cell.layer[3] ? 0 : 1;
    const auto tipIn = crossing(cell, (tip + 3) % 4);
    const auto tipOut = crossing(cell, tip);
    const auto farIn = crossing(cell, tip + 1);
    const auto farOut = crossing(cell, tip + 2);
    append(cell, cell.layer[at(tip)], PieceShape::Triangle, {tipIn, corner(tip), tipOut}, pieces);
    append(cell, cell.layer[at(tip + 1)], PieceShape::Polygon,
           {tipOut, corner(tip + 1), farIn, farOut, corner(tip + 3), tipIn}, pieces);
    append(cell, cell.layer[at(tip + 2)], PieceShape::Triangle, {farIn, corner(tip + 2), farOut}, pieces);
}

void ObliquePlane::append(const Cell &cell, int layer, PieceShape shape,
                          std::initializer_list<std::array<double, 3>> vertices,
                          std::vector<PlanePiece> &pieces) const
{
    if (layer < 0 || layer >= grid.size[at(m)])
        return;
    PlanePiece piece;
    piece.shape = shape;
    piece.vertexCount = static_cast<int>(vertices.size());
    std::copy(vertices.begin(), vertices.end(), piece.vertices.begin());
    piece.voxel[at(m)] = layer;
    piece.voxel[at(u)] = cell.i;
    piece.voxel[at(v)] = cell.j;
    pieces.push_back(piece);
}
