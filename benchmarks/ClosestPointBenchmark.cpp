// The closest points of one ribbon to all vertices of another one 3 mm away, by the index (built and asked)
// and by the plain scan.
#include "meshes/geometry/ClosestPointIndex.h"
#include "tests/support/RibbonMesh.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>

using MERV::BRep::ClosestPointIndex;
using MERV::BRep::FacePoint;
using MERV::BRep::Point;
using MERV::BRep::TriFace;

namespace {

struct Ribbons
{
    std::vector<TriFace> base;
    std::vector<Point> queries; // each vertex of the other one once, in the order of its lines
};

Ribbons ribbons(std::int64_t faces)
{
    const int levels = faces < 5000 ? 18 : 56;
    const int points = static_cast<int>(faces / 2 / (levels - 1)) + 1;
    Ribbons result{ribbonMesh(levels, points, 0.0, 1), {}};
    for (const TriFace &face : ribbonMesh(levels, points, 3.0, 2))
        for (int i = 0; i < 3; ++i)
            result.queries.push_back(face.vertex(i));
    const auto key = [](const Point &p) { return std::array{p.z, p.y, p.x}; };
    std::sort(result.queries.begin(), result.queries.end(),
              [&](const Point &a, const Point &b) { return key(a) < key(b); });
    result.queries.erase(std::unique(result.queries.begin(), result.queries.end(),
                                     [&](const Point &a, const Point &b) { return key(a) == key(b); }),
                         result.queries.end());
    return result;
}

void buildIndex(benchmark::State &state)
{
    const Ribbons meshes = ribbons(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(ClosestPointIndex(meshes.base));
}

void askIndex(benchmark::State &state, bool hints)
{
    const Ribbons meshes = ribbons(state.range(0));
    for (auto _ : state) {
        const ClosestPointIndex index(meshes.base);
        FacePoint answer;
        for (const Point &query : meshes.queries) {
            answer = index.closestPoint(query, hints ? answer.face : ClosestPointIndex::noHint);
            benchmark::DoNotOptimize(answer);
        }
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(meshes.queries.size()) * state.iterations());
}

void withHints(benchmark::State &state)
{
    askIndex(state, true);
}

void withoutHints(benchmark::State &state)
{
    askIndex(state, false);
}

// Of 100 of the queries; allQueries is the time for all of them, worked out from these.
void scanOf100Queries(benchmark::State &state)
{
    const Ribbons meshes = ribbons(state.range(0));
    constexpr std::size_t sample = 100;
    for (auto _ : state)
        for (std::size_t i = 0; i < sample; ++i)
            benchmark::DoNotOptimize(
                closestPointByScan(meshes.base, meshes.queries[i * meshes.queries.size() / sample]));
    const auto times = static_cast<double>(state.iterations());
    state.counters["allQueries"] =
        benchmark::Counter(times * sample / static_cast<double>(meshes.queries.size()),
                           benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
    state.SetItemsProcessed(static_cast<std::int64_t>(sample) * state.iterations());
}

BENCHMARK(buildIndex)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(withHints)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(withoutHints)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(scanOf100Queries)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

} // namespace
