// A mask of 512 x 512 x 56 voxels from outlines of 400 and 200 points per slice: the whole run of a
// rasterizer, from the request to the updated image, beside a plain scan conversion of the same outlines.
// Needs an X display.
#include "contours/SlicedContour.h"
#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "contours/SlicedContoursSegment.h"
#include "meshes/BitPlaneRasterizerObject.h"
#include "tests/support/ScanConversion.h"

#include <QApplication>
#include <QEventLoop>
#include <QThread>

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <numbers>

namespace {

constexpr int width = 512, height = 512;
constexpr double spacing = 0.3125;
constexpr float thickness = 1.5f;

// A wavy circle around the middle, in mm, closed by its first point.
std::vector<QPointF> wavyCircle(int points, double radiusMm)
{
    std::vector<QPointF> outline;
    for (int i = 0; i < points; ++i) {
        const double angle = 2.0 * std::numbers::pi * i / points;
        const double radius = radiusMm * (1.0 + 0.1 * std::sin(9.0 * angle));
        outline.emplace_back(width * spacing / 2.0 + radius * std::cos(angle),
                             height * spacing / 2.0 + radius * std::sin(angle));
    }
    outline.push_back(outline.front());
    return outline;
}

struct Knee
{
    SlicedContoursObject contours{"outlines"};
    std::vector<std::vector<QPointF>> outlines{wavyCircle(400, 50.0), wavyCircle(200, 25.0)};

    explicit Knee(std::int64_t depth)
    {
        SlicedContoursFragment *fragment = contours.newFragment("outline");
        contours.newContour("solid")->addFragmentReference(fragment);
        for (std::int64_t slice = 0; slice < depth; ++slice)
            for (const std::vector<QPointF> &outline : outlines)
                addLine(*fragment, (static_cast<float>(slice) + 0.5f) * thickness, outline);
    }

    static void addLine(SlicedContoursFragment &fragment, float z, const std::vector<QPointF> &points)
    {
        SlicedContoursSegment *segment = fragment.newSegment(points.front(), z);
        for (auto point = points.begin() + 1; point != points.end(); ++point)
            segment->addPointBack(*point);
    }
};

// The argument is the number of slices.
void rasterize(benchmark::State &state)
{
    const auto depth = static_cast<int>(state.range(0));
    Knee knee(depth);
    BitPlaneRasterizerObject raster(&knee.contours, width, height, depth, static_cast<float>(spacing),
                                    static_cast<float>(spacing), thickness);
    raster.setBitCode(knee.contours.contour(0), 127);
    QEventLoop waiting;
    QObject::connect(&raster, qOverload<>(&GraphicsObject::updated), &waiting, &QEventLoop::quit);
    for (auto _ : state) {
        raster.invalidateRasterization();
        waiting.exec();
    }
}
BENCHMARK(rasterize)->Arg(56)->Arg(112)->Unit(benchmark::kMillisecond)->UseRealTime();

void scanConvertPlain(benchmark::State &state)
{
    Knee knee(state.range(0));
    for (std::vector<QPointF> &outline : knee.outlines)
        for (QPointF &point : outline)
            point /= spacing;
    for (auto _ : state)
        for (std::int64_t slice = 0; slice < state.range(0); ++slice) {
            ScanConversion picture(width, height);
            for (const std::vector<QPointF> &outline : knee.outlines)
                picture.toggle(outline);
            benchmark::DoNotOptimize(picture.isInside(0, 0));
        }
}
BENCHMARK(scanConvertPlain)->Arg(56)->Unit(benchmark::kMillisecond)->UseRealTime();

// Making and deleting a rasterizer, most of it the OpenGL context.
void makeAndDelete(benchmark::State &state)
{
    Knee knee(56);
    for (auto _ : state)
        BitPlaneRasterizerObject(&knee.contours, 64, 64, 4, 1.0f, 1.0f, 1.0f);
}
BENCHMARK(makeAndDelete)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
