// Stepping through the slices of a volume as a view does: what a step costs with converted slices, right
// after a change of the window, and with the plain way of converting at each step. Planes are cut as often as
// they are drawn.
#include "Common/Image.h"
#include "objects/MervImageObject.h"
#include "objects/ObliquePlane.h"

#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

namespace {

constexpr int width = 512;
constexpr int height = 512;
constexpr int depth = 60;

std::unique_ptr<MERV::Image> newKnee()
{
    std::unique_ptr<MERV::Image> image(MERV::createImage(MERV::TypeUShort));
    image->setVerbose(0);
    image->setDimensions(width, height, depth, 1, 1);
    auto *voxel = static_cast<unsigned short *>(image->getData());
    for (std::uint64_t index = 0; index < image->getValueCount(); ++index)
        voxel[index] = static_cast<unsigned short>((index * 2654435761U) >> 20);
    image->setSpacing(0.3125f, 0.3125f, 1.5f, 1.0f);
    image->computeMinMax();
    return image;
}

void stepThroughConvertedSlices(benchmark::State &state)
{
    MervImageObject object(newKnee().release(), QString());
    int slice = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(object.displaySlice(slice));
        slice = (slice + 1) % depth;
    }
}

void stepAfterEachWindowChange(benchmark::State &state)
{
    MervImageObject object(newKnee().release(), QString());
    int slice = 0;
    for (auto _ : state) {
        object.setWindow(0.0f, 1000.0f + static_cast<float>(slice));
        benchmark::DoNotOptimize(object.displaySlice(slice));
        slice = (slice + 1) % depth;
    }
}

void stepConvertingEachTime(benchmark::State &state)
{
    const auto image = newKnee();
    std::vector<unsigned char> buffer(static_cast<std::size_t>(width) * height);
    int slice = 0;
    for (auto _ : state) {
        image->getSliceUByte(buffer.data(), slice, 0, true);
        benchmark::DoNotOptimize(buffer.data());
        slice = (slice + 1) % depth;
    }
}

void openVolume(benchmark::State &state)
{
    for (auto _ : state) {
        state.PauseTiming();
        auto image = newKnee();
        state.ResumeTiming();
        const MervImageObject object(image.release(), QString());
        benchmark::DoNotOptimize(object.textureRowPitch());
    }
}

void cutPlane(benchmark::State &state, const std::array<double, 4> &equation)
{
    const VoxelGrid grid{{width, height, depth}, {0.3125, 0.3125, 1.5}};
    std::vector<PlanePiece> pieces;
    std::size_t count = 0;
    for (auto _ : state) {
        const ObliquePlane plane(grid, equation);
        count = 0;
        for (int row = 0; row < plane.rowCount(); ++row) {
            pieces.clear();
            plane.appendRow(row, pieces);
            count += pieces.size();
        }
        benchmark::DoNotOptimize(count);
    }
    state.counters["pieces"] = static_cast<double>(count);
}

void cutPlaneThroughAllColumns(benchmark::State &state)
{
    cutPlane(state, {0.1, 0.1, 1.0, -60.0});
}

void cutPlaneThroughACorner(benchmark::State &state)
{
    cutPlane(state, {1.0, 1.0, 1.0, -30.0});
}

} // namespace

BENCHMARK(stepThroughConvertedSlices);
BENCHMARK(stepAfterEachWindowChange)->Unit(benchmark::kMicrosecond);
BENCHMARK(stepConvertingEachTime)->Unit(benchmark::kMicrosecond);
BENCHMARK(openVolume)->Unit(benchmark::kMillisecond);
BENCHMARK(cutPlaneThroughAllColumns)->Unit(benchmark::kMillisecond);
BENCHMARK(cutPlaneThroughACorner)->Unit(benchmark::kMillisecond);
