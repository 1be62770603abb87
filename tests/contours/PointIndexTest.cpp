#include "contours/PointIndex.h"
#include "contours/ContourGeometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace {

using Points = std::vector<QPointF>;

std::ptrdiff_t walk(const Points &line, const QPointF &point)
{
    for (std::size_t i = 0; i < line.size(); ++i)
        if (samePoint(line[i], point))
            return static_cast<std::ptrdiff_t>(i);
    return -1;
}

} // namespace

TEST(PointIndex, findsTheLowestIndex)
{
    const Points line{{0, 0}, {1, 2}, {3, 4}, {1, 2}, {5, 6}, {3, 4}};
    const PointIndex index(line);
    EXPECT_EQ(index.firstOccurrence(line, {1, 2}), 1);
    EXPECT_EQ(index.firstOccurrence(line, {3, 4}), 2);
    EXPECT_EQ(index.firstOccurrence(line, {5, 6}), 4);
    EXPECT_EQ(index.firstOccurrence(line, {1, 4}), -1);
}

TEST(PointIndex, toleranceReachesIntoNeighbouringCells)
{
    // Around multiples of the cell width 2^-38, from each side and across corners.
    for (const double cell :
         {0.0, 0x1p-38, -0x1p-38, 1.0, 1.0 + 0x1p-37, -7.0, 0.1, 8191.0, 16384.0, 32768.0})
        for (int i = -12; i <= 12; ++i)
            for (int k = -12; k <= 12; ++k) {
                const Points line{{100, 100}, {cell, cell}};
                const QPointF point(cell + i * 2e-13, cell + k * 2e-13);
                EXPECT_EQ(PointIndex(line).firstOccurrence(line, point), walk(line, point))
                    << cell << ' ' << i << ' ' << k;
            }
}

TEST(PointIndex, pointsThatAreNotFiniteAreNeverFound)
{
    constexpr double inf = std::numeric_limits<double>::infinity();
    Points line{{NAN, 0}, {inf, 0}, {0, -inf}, {NAN, 1}, {2, 2}};
    PointIndex index(line);
    for (const QPointF &point : Points{{NAN, 0}, {inf, 0}, {0, -inf}, {NAN, 1}})
        EXPECT_EQ(index.firstOccurrence(line, point), -1);
    EXPECT_EQ(index.firstOccurrence(line, {2, 2}), 4);
    while (line.size() > 1) {
        index.removeLast(line);
        line.pop_back();
    }
    EXPECT_EQ(index.firstOccurrence(line, {2, 2}), -1);
}

TEST(PointIndex, immenseCoordinatesAreFound)
{
    const Points line{{0, 0}, {1e300, -1e300}, {1e20, 1e-300}};
    const PointIndex index(line);
    EXPECT_EQ(index.firstOccurrence(line, {1e300, -1e300}), 1);
    EXPECT_EQ(index.firstOccurrence(line, {1e20, -0.0}), 2);
    EXPECT_EQ(index.firstOccurrence(line, {std::nextafter(1e20, 0.0), 0}), -1);
}

// Copies of the first point, near ones among them, and points in its cell that are others.
TEST(PointIndex, answersAsAWalkOverTheLine)
{
    std::mt19937 random(7);
    const auto small = [&](int steps) {
        return static_cast<int>(random() % static_cast<unsigned>(steps)) - steps / 2;
    };
    for (const double scale : {4e-13, 0.125, 3e4}) {
        Points line{{scale, -scale}};
        PointIndex index(line);
        int found = 0;
        for (int i = 0; i < 20000; ++i) {
            const QPointF point(small(40) * scale + small(5) * 4e-13, small(40) * scale + small(5) * 4e-13);
            if (!samePoint(line.front(), point)) {
                const std::ptrdiff_t expected = walk(line, point);
                ASSERT_EQ(index.firstOccurrence(line, point), expected);
                found += expected >= 0 ? 1 : 0;
            }
            if (line.size() > 300 || (line.size() > 1 && random() % 3 == 0)) {
                index.removeLast(line);
                line.pop_back();
            } else {
                line.push_back(random() % 9 == 0 ? line.front() : point);
                index.append(line);
            }
        }
        EXPECT_GT(found, 100);
    }
}
