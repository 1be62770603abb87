// The thickness between two ribbons 3 mm apart: from the edit of a contour to the published samples, and the
// measurement alone, beside the plain scans.
#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "contours/SlicedContoursSegment.h"
#include "meshes/SlicedContoursTriangulator.h"
#include "meshes/ThicknessMeasurement.h"
#include "meshes/TriMeshDistanceMeasurer.h"
#include "meshes/TriMeshFragment.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/PlainThickness.h"
#include "tests/support/RibbonMesh.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <memory>
#include <thread>

using MERV::BRep::TriFace;

namespace {

using Clock = std::chrono::steady_clock;

double millisecondsSince(Clock::time_point start)
{
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

// An open line on one slice, as ribbonMesh() has it.
void addLine(SlicedContoursFragment *fragment, float z, int points, double offset)
{
    SlicedContoursSegment *segment = nullptr;
    for (int i = 0; i < points; ++i) {
        const double angle = 2.2 * i / (points - 1);
        const double radius = 36.0 + offset + 2.0 * std::sin(0.07 * static_cast<double>(z) + angle);
        const QPointF point(121.3 + radius * std::cos(angle), 95.7 + radius * std::sin(angle));
        if (segment == nullptr)
            segment = fragment->newSegment(point, z);
        else
            segment->addPointBack(point);
    }
}

// 20,048 points on 56 slices, in two fragments.
struct Patella
{
    static constexpr int slices = 56, pointsPerLine = 179;

    SlicedContoursObject contours{"patella"};
    SlicedContoursFragment *bone = contours.newFragment("bone");
    SlicedContoursFragment *surface = contours.newFragment("surface");

    Patella()
    {
        for (int slice = 0; slice < slices; ++slice) {
            const float z = 1.5f * static_cast<float>(slice) + 0.75f;
            addLine(bone, z, pointsPerLine, 0.0);
            addLine(surface, z, pointsPerLine, 3.0);
        }
    }
};

void waitUntilIdle(const TriMeshDistanceMeasurer &measurer)
{
    while (measurer.isPending())
        std::this_thread::sleep_for(std::chrono::microseconds(200));
}

// A point is added to a line in the middle; the time ends with the last result that follows from it. Of it,
// up to 20 ms pass before the worker looks at its flags, and as long again if it looked between the two
// ribbons.
void fromEditToSamples(benchmark::State &state, int definition)
{
    const CapturedOutput output;
    Patella patella;
    SlicedContoursTriangulator meshes(&patella.contours);
    TriMeshDistanceMeasurer measurer(meshes.triangulationOf(patella.bone),
                                     meshes.triangulationOf(patella.surface), definition, "thickness");
    waitUntilIdle(measurer);
    SlicedContoursSegment *edited = patella.surface->segment(Patella::slices / 2);
    double worst = 0.0, rebuilding = 0.0;
    int edits = 0;
    for (auto _ : state) {
        std::this_thread::sleep_for(std::chrono::milliseconds(edits * 7 % 20)); // any phase of the polling
        const auto start = Clock::now();
        const QPointF last = edited->lastPoint();
        edited->addPointBack(last + QPointF(-0.2, edits++ % 2 == 0 ? 0.1 : -0.1));
        rebuilding += millisecondsSince(start);
        waitUntilIdle(measurer);
        const double elapsed = millisecondsSince(start);
        worst = std::max(worst, elapsed);
        state.SetIterationTime(elapsed / 1000.0);
    }
    state.counters["faces"] = meshes.triangulationOf(patella.bone)->faceCount() +
                              meshes.triangulationOf(patella.surface)->faceCount();
    state.counters["rebuild_ms"] = rebuilding / edits;
    state.counters["worst_ms"] = worst;
    measurer.stopWorking();
}

struct Ribbons
{
    std::vector<TriFace> base, remote;

    explicit Ribbons(std::int64_t faces)
        : base(ribbonMesh(levels(faces), points(faces), 0.0, 1))
        , remote(ribbonMesh(levels(faces), points(faces), 3.0, 2))
    {}

    static int levels(std::int64_t faces) { return faces < 5000 ? 18 : 56; }
    static int points(std::int64_t faces) { return static_cast<int>(faces / 2 / (levels(faces) - 1)) + 1; }
};

void measure(benchmark::State &state, ThicknessDirection direction)
{
    const Ribbons meshes(state.range(0));
    std::size_t samples = 0;
    for (auto _ : state)
        samples = measureThickness(meshes.base, meshes.remote, direction, [] { return false; })->size();
    state.counters["samples"] = static_cast<double>(samples);
}

// The plain way on a part of the base; the counter whole_ms is its time scaled up to the whole base.
void measurePlainly(benchmark::State &state, ThicknessDirection direction)
{
    const Ribbons meshes(state.range(0));
    const std::size_t part = std::min<std::size_t>(meshes.base.size(), 500);
    const std::span<const TriFace> some = std::span(meshes.base).first(part);
    const auto whole =
        measureThickness(meshes.base, meshes.base, ThicknessDirection::Closest, [] { return false; })->size();
    double elapsed = 0.0;
    std::size_t samples = 0;
    for (auto _ : state) {
        const auto start = Clock::now();
        const PlainThickness plain(some, meshes.remote, direction == ThicknessDirection::AlongNormal);
        elapsed += millisecondsSince(start);
        samples = plain.samples.size();
    }
    state.counters["samples"] = static_cast<double>(samples);
    state.counters["whole_ms"] = elapsed / static_cast<double>(state.iterations()) *
                                 static_cast<double>(whole) / static_cast<double>(samples);
}

// From the request to stop in the middle of a run to the end of the worker.
void stopInARun(benchmark::State &state, int definition)
{
    const CapturedOutput output;
    const Ribbons meshes(state.range(0));
    TriMeshFragment base, remote;
    base.setFaces(meshes.base);
    remote.setFaces(meshes.remote);
    double worst = 0.0;
    int runs = 0;
    for (auto _ : state) {
        TriMeshDistanceMeasurer measurer(&base, &remote, definition, "thickness");
        std::this_thread::sleep_for(std::chrono::milliseconds(5 * (runs++ % 40)));
        const auto start = Clock::now();
        measurer.stopWorking();
        const double elapsed = millisecondsSince(start);
        worst = std::max(worst, elapsed);
        state.SetIterationTime(elapsed / 1000.0);
    }
    state.counters["worst_ms"] = worst;
}

} // namespace

BENCHMARK_CAPTURE(fromEditToSamples, minimal_distance, 2)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(fromEditToSamples, along_normal, 0)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(measure, closest, ThicknessDirection::Closest)
    ->Arg(1000)
    ->Arg(2000)
    ->Arg(10000)
    ->Arg(20000)
    ->Arg(100000)
    ->Arg(200000)
    ->MeasureProcessCPUTime()
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(measure, along_normal, ThicknessDirection::AlongNormal)
    ->Arg(1000)
    ->Arg(2000)
    ->Arg(10000)
    ->Arg(20000)
    ->Arg(100000)
    ->Arg(200000)
    ->MeasureProcessCPUTime()
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(measurePlainly, closest, ThicknessDirection::Closest)
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(100000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(measurePlainly, along_normal, ThicknessDirection::AlongNormal)
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(100000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(stopInARun, closest, 2)
    ->Arg(100000)
    ->Iterations(80)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(stopInARun, along_normal, 0)
    ->Arg(100000)
    ->Iterations(80)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
