#pragma once

#include <array>
#include <initializer_list>
#include <utility>
#include <vector>

// The voxels of a volume: numbers and sizes (mm) along x, y, z. The first voxel's corner is at the origin.
struct VoxelGrid
{
    std::array<int, 3> size{};
    std::array<double, 3> spacing{};
};

enum class PieceShape
{
    Quad,     // 4 vertices
    Triangle, // 3 vertices
    Polygon   // 5 or 6 vertices
};

// A part of the plane that lies in one voxel (that is, in one layer of one column of cells).
struct PlanePiece
{
    PieceShape shape = PieceShape::Quad;
    int vertexCount = 0;
    std::array<std::array<double, 3>, 6> vertices{}; // in mm, convex
    std::array<int, 3> voxel{};                      // x, y, z index, inside the volume
};

// How one voxel's value is shown.
struct PieceColour
{
    std::array<float, 4> rgba{}; // not clamped to 0..1; always finite
    bool outsideWindow = false;  // overlaid with red hatching
};

// The colour (r, g, b, a) darkened by the value's place in the window. A window of size 0 shows black.
PieceColour windowedColour(float value, float low, float window, const std::array<float, 4> &colour);

// An oblique plane through a volume, as the voxels that it cuts. The cells of the grid that faces the plane
// best are projected on it along the third axis; a cell that reaches through several layers of voxels is
// split at the borders between them. Pure geometry, no OpenGL.
class ObliquePlane
{
public:
    // plane: a x + b y + c z + d = 0. A plane or grid that is not finite or has no extent has no rows.
    ObliquePlane(const VoxelGrid &grid, const std::array<double, 4> &plane);

    // The axis (0 x, 1 y, 2 z) along which cells are projected; rows run along axis (m + 1) mod 3.
    int projectionAxis() const { return m; }
    int rowCount() const;
    // Appends the pieces of one row of cells, in the order of the cells along axis (m + 2) mod 3. Only cells
    // that can lie in the volume are visited.
    void appendRow(int row, std::vector<PlanePiece> &pieces) const;
    // The cells of the row that are visited: first, one behind the last.
    std::pair<int, int> visitedCells(int row) const;

private:
    struct Cell;

    double layerCoordinate(int i, int j) const;
    int layerOf(double coordinate) const;
    std::array<double, 3> cornerPoint(int i, int j) const;
    std::array<double, 3> crossing(const Cell &cell, int edge) const;
    void appendCell(int i, int j, std::vector<PlanePiece> &pieces) const;
    void splitOpposite(const Cell &cell, int edge, std::vector<PlanePiece> &pieces) const;
    void splitAdjacent(const Cell &cell, int first, int second, std::vector<PlanePiece> &pieces) const;
    void splitTwice(const Cell &cell, std::vector<PlanePiece> &pieces) const;
    void append(const Cell &cell, int layer, PieceShape shape,
                std::initializer_list<std::array<double, 3>> vertices, std::vector<PlanePiece> &pieces) const;

    VoxelGrid grid;
    std::array<double, 3> normal{};
    double offset = 0.0;
    int m = 2;
    int u = 0;
    int v = 1;
    bool drawable = false;
};
