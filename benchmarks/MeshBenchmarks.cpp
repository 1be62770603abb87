#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "contours/SlicedContoursSegment.h"
#include "meshes/AlignmentRun.h"
#include "meshes/SlicedContoursTriangulator.h"
#include "meshes/TriMeshAligner.h"
#include "meshes/TriMeshFragment.h"
#include "meshes/geometry/ClosestPoint.h"
#include "meshes/geometry/ClosestPointIndex.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/PlainAlignment.h"
#include "tests/support/PlainRibbons.h"

#include <benchmark/benchmark.h>

#include <array>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <map>
#include <random>
#include <span>

// The rebuild of a triangulation and the 50 rounds of an alignment, each beside its plain transcription on
// the same data. A fast result that differs from the plain one stops the benchmark with an error.
namespace {

using MERV::BRep::ClosestPointIndex;
using MERV::BRep::Point;
using MERV::BRep::TriFace;
using Faces = std::vector<TriFace>;

constexpr int slices = 56;
constexpr float sliceDistance = 1.5f;

// A line like the edge of a patella's cartilage: 140 degrees of an arc with the unrest of a hand.
std::vector<QPointF> arc(int slice, int count, std::mt19937 &random)
{
    std::uniform_real_distribution<double> unrest(-0.05, 0.05);
    const double radius = 22.0 + 4.0 * std::sin(0.05 * slice);
    std::vector<QPointF> points;
    for (int i = 0; i < count; ++i) {
        const double angle = 0.3 + 2.44 * i / (count - 1);
        points.emplace_back(60.0 + radius * std::cos(angle) + unrest(random),
                            40.0 + radius * std::sin(angle) + unrest(random));
    }
    return points;
}

// 56 slices with 358 points each are 20,048 points in one fragment.
struct ContourScene
{
    explicit ContourScene(int pointsPerSlice)
    {
        std::mt19937 random(1);
        fragment = contours.newFragment(QStringLiteral("bone"));
        for (int slice = 0; slice < slices; ++slice) {
            const std::vector<QPointF> points = arc(slice, pointsPerSlice, random);
            const float z = (static_cast<float>(slice) + 0.5f) * sliceDistance;
            auto *segment = fragment->newSegment(points.front(), z);
            segment->beginUpdates();
            for (const QPointF &point : points)
                segment->addPointBack(point);
            segment->endUpdates();
        }
    }

    int pointCount() const
    {
        int points = 0;
        for (int s = 0; s < fragment->segmentCount(); ++s)
            points += fragment->segment(s)->pointCount();
        return points;
    }

    SlicedContoursObject contours;
    SlicedContoursFragment *fragment = nullptr;
};

// The argument is the number of points in each slice.
ContourScene &contourScene(const benchmark::State &state)
{
    static std::map<std::int64_t, ContourScene> made;
    return made.try_emplace(state.range(0), static_cast<int>(state.range(0))).first->second;
}

// Level by level with a scan of all lines, face by face under the lock.
void retriangulatePlainly(const SlicedContoursFragment &fragment, TriMeshFragment &mesh)
{
    mesh.clear();
    std::vector<SegmentSnapshot> lines;
    lines.reserve(static_cast<std::size_t>(fragment.segmentCount()));
    for (int s = 0; s < fragment.segmentCount(); ++s)
        lines.push_back(fragment.segment(s)->snapshot());
    plainRibbons(lines, [&mesh](const TriFace &face) { mesh.addFace(face); });
}

bool sameFaces(std::span<const TriFace> left, std::span<const TriFace> right)
{
    if (left.size() != right.size())
        return false;
    for (std::size_t f = 0; f < left.size(); ++f)
        for (int i = 0; i < 3; ++i)
            if (!left[f].vertex(i).sameCoordinates(right[f].vertex(i)))
                return false;
    return true;
}

void retriangulationPlain(benchmark::State &state)
{
    ContourScene &scene = contourScene(state);
    TriMeshFragment mesh;
    for (auto _ : state)
        retriangulatePlainly(*scene.fragment, mesh);
    state.counters["faces"] = mesh.faceCount();
}

void retriangulation(benchmark::State &state)
{
    ContourScene &scene = contourScene(state);
    SlicedContoursTriangulator triangulator(&scene.contours);
    for (auto _ : state)
        triangulator.retriangulate();
    TriMeshFragment plain;
    retriangulatePlainly(*scene.fragment, plain);
    if (!sameFaces(triangulator.fragment(0)->all(), plain.all()))
        state.SkipWithError("differs from the plain rebuild");
    state.counters["points"] = scene.pointCount();
    state.counters["faces"] = triangulator.fragment(0)->faceCount();
}

// A ribbon over 51 slices; 101 points each make 10,000 faces. The free one is 3 mm farther out, moved and
// turned a little.
Faces ribbon(int points, double outwards, double turn, unsigned seed)
{
    std::mt19937 random(seed);
    std::vector<SegmentSnapshot> lines;
    for (int slice = 0; slice <= 50; ++slice) {
        lines.push_back({arc(slice, points, random), static_cast<float>(slice) * sliceDistance});
        for (QPointF &point : lines.back().points) {
            const QPointF from = point - QPointF(60.0, 40.0);
            const double scale = 1.0 + outwards / std::hypot(from.x(), from.y());
            const double c = std::cos(turn), s = std::sin(turn);
            point = {60.0 + scale * (c * from.x() - s * from.y()),
                     40.0 + scale * (s * from.x() + c * from.y())};
        }
    }
    Faces faces;
    plainRibbons(lines, [&faces](const TriFace &face) { faces.push_back(face); });
    return faces;
}

struct AlignmentScene
{
    explicit AlignmentScene(int points)
    {
        base.setFaces(ribbon(points, 0.0, 0.0, 2));
        free.setFaces(ribbon(points, 3.0, 0.05, 3));
    }

    TriMeshFragment base, free;
};

// One search for each distinct corner of the free faces, in the order of the mesh.
double passSeconds(const AlignmentScene &scene, const ClosestPointIndex &index)
{
    const MeshCorners corners(scene.free.all());
    const auto begin = std::chrono::steady_clock::now();
    std::size_t face = ClosestPointIndex::noHint;
    for (const Vector3 &corner : corners.points()) {
        face = index.closestPoint({corner.x, corner.y, corner.z}, face).face;
        benchmark::DoNotOptimize(face);
    }
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

void closestPointPass(benchmark::State &state)
{
    const AlignmentScene scene(static_cast<int>(state.range(0)));
    const ClosestPointIndex index(scene.base.all());
    for (auto _ : state)
        state.SetIterationTime(passSeconds(scene, index));
    state.counters["faces"] = scene.base.faceCount();
    state.counters["corners"] = static_cast<double>(MeshCorners(scene.free.all()).points().size());
}

// passes: how many of the passes above, one after the other on one core, take as long as the 50 rounds.
void alignment(benchmark::State &state)
{
    AlignmentScene scene(static_cast<int>(state.range(0)));
    const CapturedOutput quiet;
    TriMeshAligner aligner(&scene.base, &scene.free);
    const ClosestPointIndex index(scene.base.all());
    double rounds = 0.0, passes = 0.0;
    for (auto _ : state) {
        const auto begin = std::chrono::steady_clock::now();
        aligner.realign();
        const double seconds =
            std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
        state.SetIterationTime(seconds);
        rounds += seconds;
        passes += passSeconds(scene, index);
    }
    state.counters["passes"] = rounds / passes;
}

// The searches of 50 rounds by the plain scan, each corner of each face by itself. One of 150 corners is
// asked; whole_ms is the time for all of them in all rounds, worked out from these.
void alignmentPlain(benchmark::State &state)
{
    const AlignmentScene scene(static_cast<int>(state.range(0)));
    constexpr std::size_t share = 50; // faces for each that is asked
    const std::span<const TriFace> free = scene.free.all();
    double seconds = 0.0;
    for (auto _ : state) {
        const auto begin = std::chrono::steady_clock::now();
        for (std::size_t f = 0; f < free.size(); f += share)
            benchmark::DoNotOptimize(closestPointByScan(scene.base.all(), free[f].vertex(0)));
        seconds += std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    }
    const std::size_t asked =
        (free.size() + share - 1) / share * static_cast<std::size_t>(state.iterations());
    state.counters["whole_ms"] =
        1000.0 * seconds / static_cast<double>(asked) * 3.0 * static_cast<double>(free.size()) * 50.0;
}

// The same ten rounds on meshes that are small enough for the plain ones.
void tenRoundsPlain(benchmark::State &state)
{
    const AlignmentScene scene(static_cast<int>(state.range(0)));
    const Faces base(scene.base.all().begin(), scene.base.all().end());
    const Faces free(scene.free.all().begin(), scene.free.all().end());
    for (auto _ : state) {
        PlainAlignment plain(base, free);
        for (int i = 0; i < 10; ++i)
            plain.round();
        benchmark::DoNotOptimize(plain.faces().size());
    }
    state.counters["faces"] = scene.base.faceCount();
}

void tenRounds(benchmark::State &state)
{
    const AlignmentScene scene(static_cast<int>(state.range(0)));
    const CapturedOutput quiet;
    Faces aligned;
    for (auto _ : state) {
        AlignmentRun run(scene.free.all());
        for (int i = 0; i < 10; ++i)
            run.round(i, scene.base);
        aligned = run.faces();
    }
    const Faces base(scene.base.all().begin(), scene.base.all().end());
    const Faces free(scene.free.all().begin(), scene.free.all().end());
    PlainAlignment plain(base, free);
    for (int i = 0; i < 10; ++i)
        plain.round();
    if (!sameFaces(aligned, plain.faces()))
        state.SkipWithError("differs from the plain rounds");
}

} // namespace

BENCHMARK(retriangulationPlain)->Arg(358)->Unit(benchmark::kMillisecond);
BENCHMARK(retriangulation)->Arg(358)->Arg(716)->Unit(benchmark::kMillisecond);
BENCHMARK(closestPointPass)->Arg(101)->Unit(benchmark::kMillisecond)->UseManualTime();
BENCHMARK(alignmentPlain)->Arg(101)->Unit(benchmark::kMillisecond);
BENCHMARK(alignment)->Arg(101)->Arg(201)->Unit(benchmark::kMillisecond)->UseManualTime();
BENCHMARK(tenRoundsPlain)->Arg(11)->Unit(benchmark::kMillisecond);
BENCHMARK(tenRounds)->Arg(11)->Unit(benchmark::kMillisecond)->UseRealTime();
