#include "Common/Image.h"
#include "contours/ConventionalSliceEdgePointExtractor.h"
#include "contours/EdgePointSelection.h"
#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "contours/SlicedContoursSegment.h"
#include "objects/MervImageObject.h"
#include "tests/support/PlainEdgePoints.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <memory>
#include <random>

// The edge point extraction and what each mouse move of a trace asks for, each beside a plain walk over the
// same data. A fast result that differs from the plain one stops the benchmark with an error.
namespace {

constexpr int side = 512;
constexpr float spacing = 0.3125f;

// Waves with noise in every second square of a chess board: about 16 % of the pixels become edge points.
std::unique_ptr<MervImageObject> makeVolume(int depth)
{
    MERV::Image *image = MERV::createImage(MERV::TypeUChar);
    image->setVerbose(0);
    image->setDimensions(side, side, depth, 1, 1);
    image->setSpacing(spacing, spacing, 1.5f, 1.0f);
    std::mt19937 random(1);
    auto *voxels = static_cast<unsigned char *>(image->getData());
    for (int z = 0; z < depth; ++z)
        for (int y = 0; y < side; ++y)
            for (int x = 0; x < side; ++x) {
                const double contrast = (x / 64 + y / 64) % 2 == 0 ? 80.0 : 0.0;
                const double wave = std::sin(0.11 * x + 0.01 * z) * std::cos(0.09 * y - 0.02 * x);
                *voxels++ =
                    static_cast<unsigned char>(110.0 + contrast * wave + static_cast<double>(random() % 8));
            }
    image->setWindowRange(0.0f, 255.0f, 0);
    return std::make_unique<MervImageObject>(image, QStringLiteral("volume"));
}

MervImageObject &volume(int depth)
{
    static std::unique_ptr<MervImageObject> made;
    static int madeDepth = 0;
    if (madeDepth != depth) {
        made = makeVolume(depth);
        madeDepth = depth;
    }
    return *made;
}

std::vector<EdgePoint *> plainSlice(MervImageObject &image, int slice)
{
    return plainEdgePoints({image.displaySlice(slice), side, side, image.textureRowPitch()}, spacing, spacing,
                           (static_cast<float>(slice) + 0.5f) * 1.5f);
}

void extractionPlain(benchmark::State &state)
{
    const int depth = static_cast<int>(state.range(0));
    MervImageObject &image = volume(depth);
    std::size_t count = 0;
    for (auto _ : state) {
        std::vector<std::vector<EdgePoint *>> slices;
        slices.reserve(static_cast<std::size_t>(depth));
        for (int k = 0; k < depth; ++k)
            slices.push_back(plainSlice(image, k));
        state.PauseTiming();
        count = 0;
        for (std::vector<EdgePoint *> &slice : slices) {
            count += slice.size();
            for (const EdgePoint *point : slice)
                delete point;
        }
        state.ResumeTiming();
    }
    state.counters["share"] = static_cast<double>(count) / side / side / depth;
}

void extraction(benchmark::State &state)
{
    const int depth = static_cast<int>(state.range(0));
    MervImageObject &image = volume(depth);
    std::unique_ptr<ConventionalSliceEdgePointExtractor> extractor;
    for (auto _ : state) {
        extractor = std::make_unique<ConventionalSliceEdgePointExtractor>(&image);
        state.PauseTiming();
        if (state.iterations() < state.max_iterations)
            extractor.reset();
        state.ResumeTiming();
    }
    extractor = std::make_unique<ConventionalSliceEdgePointExtractor>(&image);
    for (int k = 0; k < depth; ++k) {
        const std::vector<EdgePoint *> plain = plainSlice(image, k);
        const std::vector<EdgePoint> &points = extractor->slicePoints(k);
        bool equal = plain.size() == points.size();
        for (std::size_t i = 0; i < plain.size(); ++i) {
            equal = equal && bitEqual(*plain[i], points[i]);
            delete plain[i];
        }
        if (!equal)
            state.SkipWithError("the points differ from the plain code's");
    }
}

// The detection alone, one slice on one core.
void detectionOfASlice(benchmark::State &state)
{
    MervImageObject &image = volume(56);
    SliceEdgeDetector detector;
    std::vector<EdgePoint> points;
    const ByteSlice slice{image.displaySlice(20), side, side, image.textureRowPitch()};
    for (auto _ : state)
        detector.detect(slice, {spacing, spacing, 30.75f}, points);
}

void detectionOfASlicePlain(benchmark::State &state)
{
    MervImageObject &image = volume(56);
    for (auto _ : state) {
        const std::vector<EdgePoint *> points = plainSlice(image, 20);
        state.PauseTiming();
        for (const EdgePoint *point : points)
            delete point;
        state.ResumeTiming();
    }
}

// 56 slices with 20,000 points on 4 lines each, and the edge points of the volume.
struct TraceScene
{
    ConventionalSliceEdgePointExtractor extractor{&volume(56)};
    SlicedContoursObject contours;
    SlicedContoursSegment *active = nullptr;

    TraceScene()
    {
        SlicedContoursFragment *fragments[] = {contours.newFragment("bone"), contours.newFragment("surface")};
        for (int k = 0; k < 56; ++k)
            for (int line = 0; line < 4; ++line) {
                const float z = (static_cast<float>(k) + 0.5f) * 1.5f;
                active = fragments[line % 2]->newSegment({20.0 + 20 * line, 40.0}, z);
                active->beginUpdates();
                for (int i = 1; i < 90; ++i)
                    active->addPointBack(
                        {20.0 + 20 * line + i * 0.4, 40.0 + 8.0 * std::sin(i * 0.13 + line)});
            }
    }
};

TraceScene &scene()
{
    static TraceScene made;
    return made;
}

// What one mouse move of a trace asks for: edge points within 2.5 mm, end points, contour points, the best
// edge point, the next and the previous level, and one point added.
void traceMove(benchmark::State &state)
{
    TraceScene &at = scene();
    double step = 0.0;
    for (auto _ : state) {
        step += 0.37;
        const double x = 60.0 + 30.0 * std::sin(step);
        const double y = 60.0 + 30.0 * std::cos(step * 0.7);
        const float z = 83.25f;
        const std::unique_ptr<EdgePointList> markers(
            at.extractor.edgePointsAround(static_cast<float>(x), static_cast<float>(y), z, 2.5f));
        benchmark::DoNotOptimize(at.contours.endPointsNear({x, y, z}, 0.5f * spacing));
        benchmark::DoNotOptimize(at.contours.contourPointsNear({x, y, z}, 2.0f * spacing));
        benchmark::DoNotOptimize(at.contours.nextSignificantZ(z));
        benchmark::DoNotOptimize(at.contours.previousSignificantZ(z));
        const EdgePoint best = bestEdgePoint(*markers, x, y, z);
        at.active->addPointBack({best.x, best.y});
    }
}

void edgePointsAround(benchmark::State &state)
{
    TraceScene &at = scene();
    double step = 0.0;
    for (auto _ : state) {
        step += 0.37;
        delete at.extractor.edgePointsAround(static_cast<float>(60.0 + 30.0 * std::sin(step)), 60.0f, 83.25f,
                                             2.5f);
    }
}

void edgePointsAroundPlain(benchmark::State &state)
{
    TraceScene &at = scene();
    double step = 0.0;
    for (auto _ : state) {
        step += 0.37;
        const auto x = static_cast<float>(60.0 + 30.0 * std::sin(step));
        auto found = std::make_unique<EdgePointList>();
        for (const EdgePoint &point : at.extractor.slicePoints(55))
            if (std::abs(point.x - x) <= 2.5f && std::abs(point.y - 60.0f) <= 2.5f &&
                std::abs(point.z - 83.25f) <= 2.5f)
                found->append(const_cast<EdgePoint *>(&point));
        benchmark::DoNotOptimize(found->size());
    }
}

void contourPointsNear(benchmark::State &state)
{
    TraceScene &at = scene();
    double step = 0.0;
    for (auto _ : state) {
        step += 0.37;
        benchmark::DoNotOptimize(
            at.contours.contourPointsNear({60.0 + 30.0 * std::sin(step), 40.0, 30.75}, 0.625f));
    }
}

void contourPointsNearPlain(benchmark::State &state)
{
    TraceScene &at = scene();
    double step = 0.0;
    for (auto _ : state) {
        step += 0.37;
        const double x = 60.0 + 30.0 * std::sin(step);
        QList<Vector3> found;
        for (int f = 0; f < at.contours.fragmentCount(); ++f)
            for (int s = 0; s < at.contours.fragment(f)->segmentCount(); ++s) {
                const SegmentSnapshot line = at.contours.fragment(f)->segment(s)->snapshot();
                for (const QPointF &point : line.points)
                    if (std::abs(line.z - 30.75) <= 0.625 && std::abs(point.x() - x) <= 0.625 &&
                        std::abs(point.y() - 40.0) <= 0.625)
                        found.append({point.x(), point.y(), line.z});
            }
        benchmark::DoNotOptimize(found.size());
    }
}

} // namespace

BENCHMARK(extractionPlain)->Arg(160)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(extraction)->Arg(160)->Arg(320)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(detectionOfASlicePlain)->Unit(benchmark::kMillisecond);
BENCHMARK(detectionOfASlice)->Unit(benchmark::kMillisecond);
BENCHMARK(traceMove)->Unit(benchmark::kMicrosecond);
BENCHMARK(edgePointsAroundPlain)->Unit(benchmark::kMicrosecond);
BENCHMARK(edgePointsAround)->Unit(benchmark::kMicrosecond);
BENCHMARK(contourPointsNearPlain)->Unit(benchmark::kMicrosecond);
BENCHMARK(contourPointsNear)->Unit(benchmark::kMicrosecond);
