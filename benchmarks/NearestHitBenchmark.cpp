// The nearest hit of a line, asked for at every vertex of one mesh against another one 3 mm apart, along the
// normal of the first face that reaches the vertex: the index built and asked, beside the plain scan. The
// scan is timed on a sample of the lines and its time scaled to all of them, as its label says.
#include "meshes/geometry/NearestHit.h"
#include "meshes/geometry/NearestHitIndex.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace {

using MERV::BRep::FacePoint;
using MERV::BRep::Line;
using MERV::BRep::NearestHitIndex;
using MERV::BRep::Point;
using MERV::BRep::TriFace;

enum Shape
{
    Curved,
    HandDrawn,
    Planar,
    SameMesh
};

struct Query
{
    Line line;
    Point from;
};

struct Grid
{
    int levels, points;
    std::vector<Point> vertices;

    const Point &at(int level, int point) const
    {
        const int index = level * points + point;
        return vertices[static_cast<std::size_t>(index)];
    }
};

class Noise
{
public:
    explicit Noise(double newSize)
        : size(newSize)
    {}
    double operator()()
    {
        state = state * 6364136223846793005u + 1442695040888963407u;
        return size * (static_cast<double>(state >> 40) / 0x1p24 - 0.5);
    }

private:
    double size;
    std::uint64_t state = 1;
};

// Part of a cartilage about 100 mm wide, its radius changing from level to level; or a plane on a grid of
// sixteenths.
Point vertexOf(Shape shape, double along, double level, double apart)
{
    if (shape == Planar)
        return {std::floor(along * 1600.0) / 16.0, std::floor(level * 1600.0) / 16.0, apart};
    const double radius = 40.0 + 5.0 * std::sin(4.0 * level) + apart, angle = 0.4 + 2.0 * along;
    return {120.0 + radius * std::cos(angle), 90.0 + 0.8 * radius * std::sin(angle), 20.0 + 80.0 * level};
}

Grid gridOf(Shape shape, int faceCount, double apart)
{
    const int points = static_cast<int>(std::lround(std::sqrt(faceCount / 2.0))) + 1;
    const int levels = faceCount / 2 / (points - 1) + 1;
    Grid grid{levels, points, {}};
    Noise noise(shape == HandDrawn ? 0.15 : 0.001);
    for (int k = 0; k < levels; ++k) {
        for (int i = 0; i < points; ++i) {
            Point p = vertexOf(shape, static_cast<double>(i) / (points - 1),
                               static_cast<double>(k) / (levels - 1), apart);
            if (shape != Planar) {
                p.x += noise();
                p.y += noise();
            }
            grid.vertices.push_back(p);
        }
    }
    return grid;
}

std::vector<TriFace> facesOf(const Grid &grid)
{
    std::vector<TriFace> faces;
    for (int k = 0; k + 1 < grid.levels; ++k) {
        for (int i = 0; i + 1 < grid.points; ++i) {
            faces.emplace_back(grid.at(k, i), grid.at(k, i + 1), grid.at(k + 1, i));
            faces.emplace_back(grid.at(k, i + 1), grid.at(k + 1, i + 1), grid.at(k + 1, i));
        }
    }
    return faces;
}

// Each vertex once, with the first face that has it.
std::vector<Query> queriesOf(const Grid &grid)
{
    std::vector<Query> queries;
    for (int k = 0; k < grid.levels; ++k) {
        for (int i = 0; i < grid.points; ++i) {
            const int row = std::max(k - 1, 0), column = std::max(i - 1, 0);
            const bool second = row < k && column < i;
            const TriFace face =
                second ? TriFace(grid.at(row, column + 1), grid.at(row + 1, column + 1),
                                 grid.at(row + 1, column))
                       : TriFace(grid.at(row, column), grid.at(row, column + 1), grid.at(row + 1, column));
            const Point &p = grid.at(k, i), n = face.normal();
            queries.push_back({Line(p, {p.x + n.x, p.y + n.y, p.z + n.z}), p});
        }
    }
    return queries;
}

struct Task
{
    std::vector<TriFace> remote;
    std::vector<Query> queries;

    explicit Task(const benchmark::State &state)
    {
        const auto shape = static_cast<Shape>(state.range(0));
        const auto count = static_cast<int>(state.range(1));
        queries = queriesOf(gridOf(shape, count, 0.0));
        remote = facesOf(gridOf(shape, count, shape == SameMesh ? 0.0 : 3.0));
    }
};

void builtAndAsked(benchmark::State &state)
{
    const Task task(state);
    std::size_t bytes = 0;
    for (auto _ : state) {
        const NearestHitIndex index(task.remote);
        bytes = index.bytes();
        for (const Query &query : task.queries)
            benchmark::DoNotOptimize(index.nearestHit(query.line, query.from));
    }
    state.counters["lines"] = static_cast<double>(task.queries.size());
    state.counters["bytesPerFace"] = static_cast<double>(bytes) / static_cast<double>(task.remote.size());
}

void builtOnly(benchmark::State &state)
{
    const Task task(state);
    for (auto _ : state)
        benchmark::DoNotOptimize(NearestHitIndex(task.remote).bytes());
}

void plainScan(benchmark::State &state)
{
    const Task task(state);
    const std::size_t step = std::max<std::size_t>(1, task.remote.size() / 2000);
    std::size_t asked = 0;
    for (auto _ : state) {
        asked = 0;
        for (std::size_t i = 0; i < task.queries.size(); i += step, ++asked)
            benchmark::DoNotOptimize(
                nearestHitByScan(task.remote, task.queries[i].line, task.queries[i].from));
    }
    const double share = static_cast<double>(task.queries.size()) / static_cast<double>(asked);
    state.SetLabel("one line of " + std::to_string(step) + "; allLines is the time scaled to all of them");
    state.counters["allLines"] = benchmark::Counter(
        1.0 / share, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void arguments(benchmark::internal::Benchmark *each)
{
    each->ArgNames({"shape", "faces"})->Unit(benchmark::kMillisecond);
    for (const int shape : {Curved, HandDrawn, Planar, SameMesh}) {
        for (const int faces : {1000, 10000, 100000})
            each->Args({shape, faces});
    }
}

BENCHMARK(plainScan)->Apply(arguments);
BENCHMARK(builtOnly)->Apply(arguments);
BENCHMARK(builtAndAsked)->Apply(arguments);

} // namespace
