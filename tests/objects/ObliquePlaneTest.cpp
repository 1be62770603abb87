#include "objects/ObliquePlane.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace {

using Point = std::array<double, 3>;

std::vector<PlanePiece> allPieces(const ObliquePlane &plane)
{
    std::vector<PlanePiece> pieces;
    for (int row = 0; row < plane.rowCount(); ++row)
        plane.appendRow(row, pieces);
    return pieces;
}

VoxelGrid unitGrid(int x, int y, int z)
{
    return {{x, y, z}, {1.0, 1.0, 1.0}};
}

// The plane z = z0 + slopeX x + slopeY y.
std::array<double, 4> heightPlane(double z0, double slopeX, double slopeY)
{
    return {-slopeX, -slopeY, 1.0, -z0};
}

void expectPiece(const PlanePiece &piece, PieceShape shape, const std::array<int, 3> &voxel,
                 const std::vector<Point> &vertices)
{
    EXPECT_EQ(piece.shape, shape);
    EXPECT_EQ(piece.voxel, voxel);
    ASSERT_EQ(static_cast<std::size_t>(piece.vertexCount), vertices.size());
    for (std::size_t vertex = 0; vertex < vertices.size(); ++vertex) {
        for (std::size_t axis = 0; axis < 3; ++axis)
            EXPECT_NEAR(piece.vertices[vertex][axis], vertices[vertex][axis], 1e-12)
                << "vertex " << vertex << " axis " << axis;
    }
}

// True if (p, q) lies inside the convex outline of the piece, seen along axis m.
bool covers(const PlanePiece &piece, std::size_t u, std::size_t v, double p, double q)
{
    bool left = false;
    bool right = false;
    for (int vertex = 0; vertex < piece.vertexCount; ++vertex) {
        const Point &from = piece.vertices[static_cast<std::size_t>(vertex)];
        const Point &to = piece.vertices[static_cast<std::size_t>((vertex + 1) % piece.vertexCount)];
        const double side = (to[u] - from[u]) * (q - from[v]) - (to[v] - from[v]) * (p - from[u]);
        left = left || side > 0.0;
        right = right || side < 0.0;
    }
    return !(left && right);
}

} // namespace

TEST(ObliquePlane, flatPlaneGivesOneQuadPerCell)
{
    const ObliquePlane plane(unitGrid(2, 3, 4), heightPlane(2.5, 0.0, 0.0));
    EXPECT_EQ(plane.projectionAxis(), 2);
    const auto pieces = allPieces(plane);
    ASSERT_EQ(pieces.size(), 6U);
    // Rows run along x, cells along y.
    expectPiece(pieces[1], PieceShape::Quad, {0, 1, 2}, {{0, 1, 2.5}, {1, 1, 2.5}, {1, 2, 2.5}, {0, 2, 2.5}});
    expectPiece(pieces[3], PieceShape::Quad, {1, 0, 2}, {{1, 0, 2.5}, {2, 0, 2.5}, {2, 1, 2.5}, {1, 1, 2.5}});
}

TEST(ObliquePlane, outsideTheVolumeNothingIsMade)
{
    EXPECT_TRUE(allPieces(ObliquePlane(unitGrid(4, 4, 4), heightPlane(4.5, 0.0, 0.0))).empty());
    EXPECT_TRUE(allPieces(ObliquePlane(unitGrid(4, 4, 4), heightPlane(-0.5, 0.0, 0.0))).empty());
    // z = 4 is the top surface: the layer above it is not in the volume. z = 0 lies in the first one.
    EXPECT_TRUE(allPieces(ObliquePlane(unitGrid(4, 4, 4), heightPlane(4.0, 0.0, 0.0))).empty());
    EXPECT_EQ(allPieces(ObliquePlane(unitGrid(4, 4, 4), heightPlane(0.0, 0.0, 0.0))).size(), 16U);
}

TEST(ObliquePlane, axisOfLeastSteepness)
{
    EXPECT_EQ(ObliquePlane(unitGrid(4, 4, 4), {1.0, 0.0, 0.0, -2.0}).projectionAxis(), 0);
    EXPECT_EQ(ObliquePlane(unitGrid(4, 4, 4), {0.5, 1.0, 0.2, -2.0}).projectionAxis(), 1);
    EXPECT_EQ(ObliquePlane(unitGrid(4, 4, 4), {0.3, 0.2, 1.0, -2.0}).projectionAxis(), 2);
    // Ties go on to the later axis.
    EXPECT_EQ(ObliquePlane(unitGrid(4, 4, 4), {1.0, 1.0, 1.0, -2.0}).projectionAxis(), 2);
    EXPECT_EQ(ObliquePlane(unitGrid(4, 4, 4), {1.0, 1.0, 0.0, -2.0}).projectionAxis(), 1);
    // Slices of 5 mm: |a| / 5 = 0.1 is not above |c| / 1 = 0.3 although a is larger.
    const VoxelGrid thick{{4, 4, 4}, {1.0, 1.0, 5.0}};
    EXPECT_EQ(ObliquePlane(thick, {0.5, 0.0, 0.3, -2.0}).projectionAxis(), 2);
}

TEST(ObliquePlane, offsetOfZeroOrOneIsKept)
{
    // 0: the plane z = x through the origin. In the cell (0, 0) the corners lie at 0, 1, 1, 0: layers 0
    // and 1.
    const auto diagonal = allPieces(ObliquePlane(unitGrid(1, 1, 2), {-1.0, 0.0, 1.0, 0.0}));
    ASSERT_FALSE(diagonal.empty());
    EXPECT_EQ(diagonal[0].voxel, (std::array<int, 3>{0, 0, 0}));
    // 1: 1 - z / 2 = 0.
    const auto second = allPieces(ObliquePlane(unitGrid(1, 1, 3), {0.0, 0.0, -0.5, 1.0}));
    ASSERT_EQ(second.size(), 1U);
    EXPECT_EQ(second[0].voxel, (std::array<int, 3>{0, 0, 2}));
}

TEST(ObliquePlane, oppositeEdgesGiveTwoQuads)
{
    // Heights of the corners 0.5, 1.25, 1.25, 0.5; z = 1 is reached at x = 0.5 / 0.75 = 2/3.
    const auto pieces = allPieces(ObliquePlane(unitGrid(1, 1, 2), heightPlane(0.5, 0.75, 0.0)));
    ASSERT_EQ(pieces.size(), 2U);
    const double x = 2.0 / 3.0;
    expectPiece(pieces[0], PieceShape::Quad, {0, 0, 0}, {{0, 0, 0.5}, {x, 0, 1}, {x, 1, 1}, {0, 1, 0.5}});
    expectPiece(pieces[1], PieceShape::Quad, {0, 0, 1}, {{x, 0, 1}, {1, 0, 1.25}, {1, 1, 1.25}, {x, 1, 1}});
}

TEST(ObliquePlane, oppositeEdgesOfTheOtherPairGiveTwoQuads)
{
    // Heights 1.25, 1.25, 0.5, 0.5: edges 1 and 3. z = 1 at y = 1/3.
    const auto pieces = allPieces(ObliquePlane(unitGrid(1, 1, 2), heightPlane(1.25, 0.0, -0.75)));
    ASSERT_EQ(pieces.size(), 2U);
    const double y = 1.0 / 3.0;
    expectPiece(pieces[0], PieceShape::Quad, {0, 0, 1}, {{1, 0, 1.25}, {1, y, 1}, {0, y, 1}, {0, 0, 1.25}});
    expectPiece(pieces[1], PieceShape::Quad, {0, 0, 0}, {{1, y, 1}, {1, 1, 0.5}, {0, 1, 0.5}, {0, y, 1}});
}

TEST(ObliquePlane, adjacentEdgesGiveATriangleAndAPentagon)
{
    // Heights 0.5, 0.9, 1.2, 0.8: only corner 2 is above 1. On x = 1: 0.9 + 0.3 y = 1, y = 1/3; on y = 1:
    // 0.8 + 0.4 x = 1, x = 1/2.
    const auto pieces = allPieces(ObliquePlane(unitGrid(1, 1, 2), heightPlane(0.5, 0.4, 0.3)));
    ASSERT_EQ(pieces.size(), 2U);
    expectPiece(pieces[0], PieceShape::Triangle, {0, 0, 1}, {{1, 1.0 / 3.0, 1}, {1, 1, 1.2}, {0.5, 1, 1}});
    expectPiece(pieces[1], PieceShape::Polygon, {0, 0, 0},
                {{1, 0, 0.9}, {1, 1.0 / 3.0, 1}, {0.5, 1, 1}, {0, 1, 0.8}, {0, 0, 0.5}});
}

TEST(ObliquePlane, edgesAroundTheFirstCornerGiveATriangleThere)
{
    // Heights 0.9, 1.2, 1.4, 1.1: edges 0 and 3. On x = 0: 0.9 + 0.2 y = 1, y = 1/2; on y = 0: x = 1/3.
    const auto pieces = allPieces(ObliquePlane(unitGrid(1, 1, 2), heightPlane(0.9, 0.3, 0.2)));
    ASSERT_EQ(pieces.size(), 2U);
    expectPiece(pieces[0], PieceShape::Triangle, {0, 0, 0}, {{0, 0.5, 1}, {0, 0, 0.9}, {1.0 / 3.0, 0, 1}});
    expectPiece(pieces[1], PieceShape::Polygon, {0, 0, 1},
                {{0, 1, 1.1}, {0, 0.5, 1}, {1.0 / 3.0, 0, 1}, {1, 0, 1.2}, {1, 1, 1.4}});
}

TEST(ObliquePlane, fourEdgesGiveTriangleHexagonTriangle)
{
    // Heights 0.5, 1.3, 2.05, 1.25: layers 0, 1, 2, 1. Crossings: edge 3 (x = 0) 0.5 + 0.75 y = 1, y = 2/3;
    // edge 0 (y = 0) 0.5 + 0.8 x = 1, x = 5/8; edge 1 (x = 1) 1.3 + 0.75 y = 2, y = 14/15; edge 2 (y = 1)
    // 1.25 + 0.8 x = 2, x = 15/16.
    const auto pieces = allPieces(ObliquePlane(unitGrid(1, 1, 3), heightPlane(0.5, 0.8, 0.75)));
    ASSERT_EQ(pieces.size(), 3U);
    const Point left = {0, 2.0 / 3.0, 1};
    const Point front = {0.625, 0, 1};
    const Point right = {1, 14.0 / 15.0, 2};
    const Point back = {0.9375, 1, 2};
    expectPiece(pieces[0], PieceShape::Triangle, {0, 0, 0}, {left, {0, 0, 0.5}, front});
    expectPiece(pieces[1], PieceShape::Polygon, {0, 0, 1},
                {front, {1, 0, 1.3}, right, back, {0, 1, 1.25}, left});
    expectPiece(pieces[2], PieceShape::Triangle, {0, 0, 2}, {right, {1, 1, 2.05}, back});
}

TEST(ObliquePlane, fourEdgesWithTheTipsAtTheOtherCorners)
{
    // Heights 1.5, 0.7, 1.45, 2.25: layers 1, 0, 1, 2.
    const auto pieces = allPieces(ObliquePlane(unitGrid(1, 1, 3), heightPlane(1.5, -0.8, 0.75)));
    ASSERT_EQ(pieces.size(), 3U);
    EXPECT_EQ(pieces[0].voxel[2], 0);
    EXPECT_EQ(pieces[0].vertices[1], (Point{1, 0, pieces[0].vertices[1][2]}));
    EXPECT_EQ(pieces[1].voxel[2], 1);
    EXPECT_EQ(pieces[1].vertexCount, 6);
    EXPECT_EQ(pieces[2].voxel[2], 2);
    EXPECT_EQ(pieces[2].vertices[1], (Point{0, 1, pieces[2].vertices[1][2]}));
}

TEST(ObliquePlane, onlyLayersInsideTheVolumeAreMade)
{
    // As in oppositeEdgesGiveTwoQuads, but the volume has one layer: the part above z = 1 is missing.
    const auto pieces = allPieces(ObliquePlane(unitGrid(1, 1, 1), heightPlane(0.5, 0.75, 0.0)));
    ASSERT_EQ(pieces.size(), 1U);
    EXPECT_EQ(pieces[0].voxel, (std::array<int, 3>{0, 0, 0}));
}

TEST(ObliquePlane, unusablePlanesAndGridsHaveNoRows)
{
    const double nan = std::nan("");
    EXPECT_EQ(ObliquePlane(unitGrid(3, 3, 3), {nan, 0.0, 1.0, -1.0}).rowCount(), 0);
    EXPECT_EQ(ObliquePlane(unitGrid(3, 3, 3), {0.5, 0.0, 1.0, nan}).rowCount(), 0);
    EXPECT_EQ(ObliquePlane(unitGrid(3, 3, 3), {0.0, 0.0, 0.0, -1.0}).rowCount(), 0);
    EXPECT_EQ(ObliquePlane({{3, 3, 3}, {1.0, 0.0, 1.0}}, {0.5, 0.0, 1.0, -1.0}).rowCount(), 0);
    EXPECT_EQ(ObliquePlane({{3, 3, 3}, {1.0, nan, 1.0}}, {0.5, 0.0, 1.0, -1.0}).rowCount(), 0);
    EXPECT_EQ(ObliquePlane(unitGrid(0, 3, 3), {0.5, 0.0, 1.0, -1.0}).rowCount(), 0);
}

// Random planes against the definition: a point of the plane inside the volume lies in exactly one piece,
// whose voxel is the one around the point.
TEST(ObliquePlane, piecesShowTheVoxelAroundEachPoint)
{
    std::mt19937 random(7);
    std::uniform_real_distribution<double> uniform(-1.0, 1.0);
    const VoxelGrid grid{{6, 5, 7}, {0.5, 0.8, 1.3}};
    int checked = 0;
    for (int trial = 0; trial < 300; ++trial) {
        const Point normal = {uniform(random), uniform(random), uniform(random)};
        const Point through = {1.5 + 1.4 * uniform(random), 2.0 + 1.9 * uniform(random),
                               4.5 + 4.0 * uniform(random)};
        const double d = -(normal[0] * through[0] + normal[1] * through[1] + normal[2] * through[2]);
        const ObliquePlane plane(grid, {normal[0], normal[1], normal[2], d});
        const auto m = static_cast<std::size_t>(plane.projectionAxis());
        const std::size_t u = (m + 1) % 3;
        const std::size_t v = (m + 2) % 3;
        const auto pieces = allPieces(plane);
        for (int sample = 0; sample < 200; ++sample) {
            Point point{};
            point[u] = (0.5 + 0.5 * uniform(random)) * grid.size[u] * grid.spacing[u];
            point[v] = (0.5 + 0.5 * uniform(random)) * grid.size[v] * grid.spacing[v];
            point[m] = (-d - normal[u] * point[u] - normal[v] * point[v]) / normal[m];
            const double layer = point[m] / grid.spacing[m];
            if (layer < 0.5 || layer > grid.size[m] - 0.5 || std::abs(layer - std::round(layer)) < 1e-6)
                continue; // at the volume's border a cell may be left out
            int hits = 0;
            for (const PlanePiece &piece : pieces) {
                if (!covers(piece, u, v, point[u], point[v]))
                    continue;
                ++hits;
                for (std::size_t axis = 0; axis < 3; ++axis)
                    EXPECT_EQ(piece.voxel[axis],
                              static_cast<int>(std::floor(point[axis] / grid.spacing[axis])));
            }
            EXPECT_EQ(hits, 1);
            ++checked;
        }
    }
    EXPECT_GT(checked, 10000);
}

// The cells that are passed over could not show anything: no corner of theirs begins in -1 .. size.
TEST(ObliquePlane, visitedCellsLeaveNothingOut)
{
    std::mt19937 random(11);
    std::uniform_real_distribution<double> uniform(-1.0, 1.0);
    const VoxelGrid grid{{40, 30, 6}, {0.4, 0.4, 1.5}};
    int skipped = 0;
    for (int trial = 0; trial < 300; ++trial) {
        const Point normal = {uniform(random), uniform(random), 0.3 * uniform(random)};
        const double d = 10.0 * uniform(random);
        const ObliquePlane plane(grid, {normal[0], normal[1], normal[2], d});
        const auto m = static_cast<std::size_t>(plane.projectionAxis());
        const std::size_t u = (m + 1) % 3;
        const std::size_t v = (m + 2) % 3;
        for (int i = 0; i < plane.rowCount(); ++i) {
            const auto [first, last] = plane.visitedCells(i);
            EXPECT_LE(0, first);
            EXPECT_LE(first, last);
            EXPECT_LE(last, grid.size[v]);
            for (int j = 0; j < grid.size[v]; ++j) {
                if (j >= first && j < last)
                    continue;
                const double w =
                    (-d - normal[u] * i * grid.spacing[u] - normal[v] * j * grid.spacing[v]) / normal[m];
                const double layer = std::floor(w / grid.spacing[m]);
                EXPECT_TRUE(layer < -1.0 || layer > grid.size[m]);
                ++skipped;
            }
        }
    }
    EXPECT_GT(skipped, 1000);
}

// The message is for planes that are not plane, which only rounding could bring about: ordinary ones never
// cause it.
TEST(ObliquePlane, ordinaryPlanesPrintNothing)
{
    testing::internal::CaptureStdout();
    std::mt19937 random(13);
    std::uniform_int_distribution<int> eighths(-8, 8);
    for (int trial = 0; trial < 2000; ++trial) {
        const std::array<double, 4> plane = {eighths(random) / 8.0, eighths(random) / 8.0,
                                             eighths(random) / 8.0, eighths(random) / 2.0};
        allPieces(ObliquePlane(unitGrid(8, 8, 8), plane));
    }
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

// Planes of 45 degrees run through the corners of voxels, where rounding decides about each corner.
TEST(ObliquePlane, planesThroughTheCornersOfVoxelsHaveNoHoles)
{
    const auto diagonal = static_cast<float>(std::sqrt(0.5));
    for (const auto &[a, b, c] :
         {std::array{diagonal, 0.0f, diagonal}, std::array{diagonal, 0.0f, -diagonal},
          std::array{0.0f, diagonal, -diagonal}, std::array{-diagonal, diagonal, 0.0f}}) {
        for (int cut = -14; cut <= 14; ++cut) {
            const double offset = static_cast<double>(diagonal) * cut;
            const ObliquePlane plane(unitGrid(8, 8, 8), {a, b, c, offset});
            testing::internal::CaptureStdout();
            const auto pieces = allPieces(plane);
            EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
            // The area seen along the axis: 8 voxels along the free axis times the length of the cut.
            const auto m = static_cast<std::size_t>(plane.projectionAxis());
            const std::size_t u = (m + 1) % 3;
            const std::size_t v = (m + 2) % 3;
            double area = 0.0;
            for (const PlanePiece &piece : pieces) {
                double twice = 0.0;
                for (int vertex = 0; vertex < piece.vertexCount; ++vertex) {
                    const Point &from = piece.vertices[static_cast<std::size_t>(vertex)];
                    const Point &to =
                        piece.vertices[static_cast<std::size_t>((vertex + 1) % piece.vertexCount)];
                    twice += from[u] * to[v] - from[v] * to[u];
                }
                area += std::abs(twice) / 2.0;
            }
            // p + q = -cut cuts the square 0..8 x 0..8 for cut -16..0, p - q = -cut for cut -8..8, on a range
            // of p as long as 8 minus the distance from the middle.
            const bool falling = (a > 0 && c > 0);
            const int fromMiddle = falling ? std::abs(-cut - 8) : std::abs(cut);
            EXPECT_NEAR(area, 8.0 * std::max(0, 8 - fromMiddle), 1e-6)
                << a << ' ' << b << ' ' << c << ' ' << cut;
        }
    }
}

TEST(WindowedColour, isTheValuesPlaceInTheWindow)
{
    // low 100, window 200: 150 lies at a quarter.
    const PieceColour quarter = windowedColour(150.0f, 100.0f, 200.0f, {1.0f, 0.5f, 0.0f, 0.75f});
    EXPECT_EQ(quarter.rgba, (std::array<float, 4>{0.25f, 0.125f, 0.0f, 0.75f}));
    EXPECT_FALSE(quarter.outsideWindow);
}

TEST(WindowedColour, valuesOutsideTheWindowAreNotClampedAndMarked)
{
    const std::array<float, 4> white = {1.0f, 1.0f, 1.0f, 1.0f};
    EXPECT_FALSE(windowedColour(100.0f, 100.0f, 200.0f, white).outsideWindow); // t = 0
    EXPECT_FALSE(windowedColour(300.0f, 100.0f, 200.0f, white).outsideWindow); // t = 1
    const PieceColour above = windowedColour(400.0f, 100.0f, 200.0f, white);   // t = 1.5
    EXPECT_TRUE(above.outsideWindow);
    EXPECT_EQ(above.rgba[0], 1.5f);
    const PieceColour below = windowedColour(50.0f, 100.0f, 200.0f, white); // t = -0.25
    EXPECT_TRUE(below.outsideWindow);
    EXPECT_EQ(below.rgba[0], -0.25f);
}

TEST(WindowedColour, emptyWindowShowsBlack)
{
    const std::array<float, 4> grey = {0.5f, 0.5f, 0.5f, 1.0f};
    const std::array<float, 4> black = {0.0f, 0.0f, 0.0f, 1.0f};
    const PieceColour at = windowedColour(7.0f, 7.0f, 0.0f, grey); // 0 / 0
    EXPECT_EQ(at.rgba, black);
    EXPECT_FALSE(at.outsideWindow);
    const PieceColour above = windowedColour(8.0f, 7.0f, 0.0f, grey); // 1 / 0
    EXPECT_EQ(above.rgba, black);
    EXPECT_TRUE(above.outsideWindow);
}
