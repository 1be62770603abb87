// Operations on the grid of a voxel image, each beside the same voxels through the virtual interface.
#include "Common/ImageBase.h"
#include "Common/VoxelCast.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <memory>

using MERV::Image;
using MERV::ImageBase;

namespace {

constexpr int width = 128;
constexpr int height = 128;
constexpr int depth = 64;
constexpr int frames = 2;

template <class T>
ImageBase<T> scattered(int frameCount = 1)
{
    ImageBase<T> image;
    image.setVerbose(0);
    image.setDimensions(width, height, depth, frameCount, 1);
    std::uint32_t state = 12345;
    for (T &value : image) {
        state = state * 1664525u + 1013904223u;
        value = static_cast<T>((state >> 16) % 127);
    }
    return image;
}

void countVoxels(benchmark::State &state, std::uint64_t voxels)
{
    state.SetItemsProcessed(static_cast<std::int64_t>(voxels) * state.iterations());
}

// One axis of the doubled grid, clamped as resampling does it.
float place(int index, int before)
{
    const float step = static_cast<float>(before - 1) / static_cast<float>(2 * before - 1);
    const float coordinate = static_cast<float>(index) * step;
    if (coordinate >= static_cast<float>(before - 1) && coordinate > 1.0f)
        return static_cast<float>(before - 1 - 9.999999747378752e-5);
    return coordinate;
}

float read(const Image &image, int kind, float x, float y, float z, float t)
{
    switch (kind) {
    case 1:
        return image.getTrilinear(x, y, z, static_cast<int>(t), 0);
    case 3:
        return image.getTricubic(x, y, z);
    case 4:
        return image.getBilinearCubic(x, y, z);
    case 5:
        return image.getBilinear(x, y, static_cast<int>(z), static_cast<int>(t), 0);
    case 6:
        return image.getQuadrilinear(x, y, z, t, 0);
    default:
        return image.getNearest(x, y, z);
    }
}

// Kind 6 needs frames to blend.
int framesFor(int kind)
{
    return kind == 6 ? frames : 1;
}

template <class T>
void resample(benchmark::State &state)
{
    const int kind = static_cast<int>(state.range(0));
    ImageBase<T> image = scattered<T>(framesFor(kind));
    std::uint64_t voxels = 0;
    for (auto _ : state) {
        const std::unique_ptr<Image> result(
            image.resample(2 * width, 2 * height, 2 * depth, framesFor(kind), kind, true));
        voxels = result->getValueCount();
    }
    countVoxels(state, voxels);
}

template <class T>
void resampleVirtually(benchmark::State &state)
{
    const int kind = static_cast<int>(state.range(0));
    const std::unique_ptr<Image> image(scattered<T>(framesFor(kind)).clone());
    const std::unique_ptr<Image> result(MERV::createImage(image->getDataType()));
    for (auto _ : state) {
        result->setDimensions(0, 0, 0, 0, 0);
        result->setDimensions(2 * width, 2 * height, 2 * depth, framesFor(kind), 1);
        auto *out = static_cast<T *>(result->getData());
        for (int t = 0; t < framesFor(kind); ++t)
            for (int z = 0; z < 2 * depth; ++z)
                for (int y = 0; y < 2 * height; ++y)
                    for (int x = 0; x < 2 * width; ++x)
                        *out++ = MERV::voxel_cast<T>(read(*image, kind, place(x, width), place(y, height),
                                                          place(z, depth), static_cast<float>(t)));
        result->computeMinMax();
    }
    countVoxels(state, result->getValueCount());
}

BENCHMARK_TEMPLATE(resample, short)->DenseRange(0, 6)->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(resampleVirtually, short)->DenseRange(0, 6)->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(resample, float)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(resampleVirtually, float)->Arg(1)->Unit(benchmark::kMillisecond);

void mirror(benchmark::State &state)
{
    ImageBase<short> image = scattered<short>();
    for (auto _ : state)
        image.mirror(state.range(0) & 1, state.range(0) & 2, state.range(0) & 4, false, false);
    countVoxels(state, image.getValueCount());
}

void mirrorVirtually(benchmark::State &state)
{
    const std::unique_ptr<Image> image(scattered<short>().clone());
    const bool flags[3]{(state.range(0) & 1) != 0, (state.range(0) & 2) != 0, (state.range(0) & 4) != 0};
    // The flagged axis of the largest stride is halved.
    const int lastAxis = flags[2] ? 2 : flags[1] ? 1 : 0;
    const int end[3]{lastAxis == 0 ? width / 2 : width, lastAxis == 1 ? height / 2 : height,
                     lastAxis == 2 ? depth / 2 : depth};
    for (auto _ : state)
        for (int z = 0; z < end[2]; ++z)
            for (int y = 0; y < end[1]; ++y)
                for (int x = 0; x < end[0]; ++x) {
                    const int otherX = flags[0] ? width - x - 1 : x;
                    const int otherY = flags[1] ? height - y - 1 : y;
                    const int otherZ = flags[2] ? depth - z - 1 : z;
                    const float value = image->getVoxel(x, y, z, 0, 0);
                    image->setVoxel(image->getVoxel(otherX, otherY, otherZ, 0, 0), x, y, z, 0, 0);
                    image->setVoxel(value, otherX, otherY, otherZ, 0, 0);
                }
    countVoxels(state, image->getValueCount());
}

// The argument holds one bit for each of x, y and z.
BENCHMARK(mirror)->Arg(1)->Arg(2)->Arg(4)->Arg(7)->Unit(benchmark::kMillisecond);
BENCHMARK(mirrorVirtually)->Arg(1)->Arg(2)->Arg(4)->Arg(7)->Unit(benchmark::kMillisecond);

void rotate(benchmark::State &state)
{
    ImageBase<short> image = scattered<short>();
    for (auto _ : state)
        image.rotate(static_cast<int>(state.range(0)));
    countVoxels(state, image.getValueCount());
}

void rotateVirtually(benchmark::State &state)
{
    const std::unique_ptr<Image> image(scattered<short>().clone());
    const std::unique_ptr<Image> result(image->clone());
    const std::int64_t axis = state.range(0);
    for (auto _ : state)
        for (int z = 0; z < depth; ++z)
            for (int y = 0; y < height; ++y)
                for (int x = 0; x < width; ++x) {
                    const int index = axis == 0   ? ((height - y - 1) * depth + z) * width + x
                                      : axis == 1 ? (x * height + y + 1) * depth - z - 1
                                                  : ((z + 1) * width - x - 1) * height + y;
                    result->setValue(image->getVoxel(x, y, z, 0, 0), static_cast<std::uint64_t>(index));
                }
    countVoxels(state, image->getValueCount());
}

BENCHMARK(rotate)->DenseRange(0, 2)->Unit(benchmark::kMillisecond);
BENCHMARK(rotateVirtually)->DenseRange(0, 2)->Unit(benchmark::kMillisecond);

void downsample(benchmark::State &state)
{
    const ImageBase<short> image = scattered<short>();
    for (auto _ : state) {
        state.PauseTiming();
        const std::unique_ptr<Image> copy(image.clone());
        state.ResumeTiming();
        copy->downsample(2, 2, 2, 1);
    }
    countVoxels(state, image.getValueCount());
}

void downsampleVirtually(benchmark::State &state)
{
    const std::unique_ptr<Image> image(scattered<short>().clone());
    const std::unique_ptr<Image> result(MERV::createImage(image->getDataType()));
    result->setDimensions(width / 2, height / 2, depth / 2, 1, 1);
    for (auto _ : state) {
        result->resetCursor();
        for (int z = 0; z < depth; z += 2)
            for (int y = 0; y < height; y += 2)
                for (int x = 0; x < width; x += 2) {
                    float sum = 0.0f;
                    for (int i = 0; i < 8; ++i)
                        sum += image->getVoxel(x + (i & 1), y + (i >> 1 & 1), z + (i >> 2), 0, 0);
                    result->setNextValue(sum / 8.0f);
                }
        result->computeMinMax();
    }
    countVoxels(state, image->getValueCount());
}

BENCHMARK(downsample)->Unit(benchmark::kMillisecond);
BENCHMARK(downsampleVirtually)->Unit(benchmark::kMillisecond);

template <class T>
void minMax(benchmark::State &state)
{
    ImageBase<T> image = scattered<T>();
    for (auto _ : state) {
        image.computeMinMax();
        benchmark::DoNotOptimize(image.getMaximum());
    }
    countVoxels(state, image.getValueCount());
}

template <class T>
void minMaxVirtually(benchmark::State &state)
{
    const std::unique_ptr<Image> image(scattered<T>().clone());
    for (auto _ : state) {
        float value = 0.0f;
        image->resetCursor();
        image->getNextValue(value);
        float low = value;
        float high = value;
        while (image->getNextValue(value)) {
            low = std::min(low, value);
            high = std::max(high, value);
        }
        image->setMinMax(low, high);
    }
    countVoxels(state, image->getValueCount());
}

BENCHMARK_TEMPLATE(minMax, unsigned char)->Unit(benchmark::kMicrosecond);
BENCHMARK_TEMPLATE(minMax, short)->Unit(benchmark::kMicrosecond);
BENCHMARK_TEMPLATE(minMax, unsigned int)->Unit(benchmark::kMicrosecond);
BENCHMARK_TEMPLATE(minMax, float)->Unit(benchmark::kMicrosecond);
BENCHMARK_TEMPLATE(minMax, double)->Unit(benchmark::kMicrosecond);
BENCHMARK_TEMPLATE(minMaxVirtually, short)->Unit(benchmark::kMicrosecond);
BENCHMARK_TEMPLATE(minMaxVirtually, float)->Unit(benchmark::kMicrosecond);

} // namespace
