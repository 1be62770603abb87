// Filters and gradients of the voxel library, each beside its plain formula with a virtual call per voxel, on
// a volume of 256 x 256 x 24 signed 16 bit voxels.
#include "Common/ImageBase.h"

#include <array>
#include <benchmark/benchmark.h>
#include <cmath>
#include <cstdint>
#include <memory>
#include <vector>

namespace {

using MERV::Image;
using ImagePtr = std::unique_ptr<Image>;

constexpr int width = 256, height = 256, depth = 24;
constexpr std::array<float, 27> sobel3D{1, 1, 1, 1, 2,  1,  1,  1,  1,  0,  0,  0,  0, 0,
                                        0, 0, 0, 0, -1, -1, -1, -1, -2, -1, -1, -1, -1};
constexpr std::array<float, 9> sobel{1, 2, 1, 0, 0, 0, -1, -2, -1};

ImagePtr newImage(int type, int channels)
{
    ImagePtr image(MERV::createImage(type));
    image->setVerbose(0);
    image->setDimensions(width, height, depth, 1, channels);
    return image;
}

ImagePtr testVolume()
{
    ImagePtr image = newImage(MERV::TypeShort, 1);
    std::uint32_t state = 1;
    for (std::uint64_t i = 0; i < image->getValueCount(); ++i) {
        state = state * 1664525u + 1013904223u;
        image->setValue(static_cast<float>(state >> 22), i);
    }
    return image;
}

std::vector<float> smoothing(int size, int dimensions)
{
    const auto count = static_cast<std::size_t>(std::lround(std::pow(size, dimensions)));
    return std::vector<float>(count, 1.0f / static_cast<float>(count));
}

template <class Use>
void forEachVoxel(Use &&use)
{
    for (int z = 0; z < depth; ++z)
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                use(x, y, z);
}

bool isInside(int index, int size, int margin)
{
    return index >= margin && index < size - margin;
}

void report(benchmark::State &state)
{
    state.SetItemsProcessed(state.iterations() * width * height * depth);
}

void filter2D(benchmark::State &state)
{
    const ImagePtr source = testVolume();
    const int size = static_cast<int>(state.range(0));
    const std::vector<float> kernel = smoothing(size, 2);
    for (auto _ : state)
        benchmark::DoNotOptimize(
            ImagePtr(source->computeFilteredImage2D(MERV::TypeFloat, kernel.data(), size, nullptr, 0)));
    report(state);
}

void filter2DPlain(benchmark::State &state)
{
    const ImagePtr source = testVolume();
    const int size = static_cast<int>(state.range(0)), half = (size - 1) / 2;
    const std::vector<float> kernel = smoothing(size, 2);
    for (auto _ : state) {
        const ImagePtr output = newImage(MERV::TypeFloat, 1);
        forEachVoxel([&](int x, int y, int z) {
            float r = 0.0f;
            if (isInside(x, width, half) && isInside(y, height, half))
                for (int j = 0; j < size; ++j)
                    for (int i = 0; i < size; ++i) {
                        const int index = j * size + i;
                        r += kernel[static_cast<std::size_t>(index)] *
                             source->getVoxel(x + i - half, y + j - half, z, 0, 0);
                    }
            output->setNextValue(r);
        });
        benchmark::DoNotOptimize(output.get());
    }
    report(state);
}

void filter3D(benchmark::State &state)
{
    const ImagePtr source = testVolume();
    const std::vector<float> kernel = smoothing(3, 3);
    for (auto _ : state)
        benchmark::DoNotOptimize(
            ImagePtr(source->computeFilteredImage3D(MERV::TypeShort, kernel.data(), 3, nullptr, 0)));
    report(state);
}

void filter3DPlain(benchmark::State &state)
{
    const ImagePtr source = testVolume();
    const std::vector<float> kernel = smoothing(3, 3);
    for (auto _ : state) {
        const ImagePtr output = newImage(MERV::TypeShort, 1);
        forEachVoxel([&](int x, int y, int z) {
            float r = 0.0f;
            if (isInside(x, width, 1) && isInside(y, height, 1) && isInside(z, depth, 1))
                for (int k = 0; k < 27; ++k)
                    r += kernel[static_cast<std::size_t>(k)] *
                         source->getVoxel(x + k % 3 - 1, y + k / 3 % 3 - 1, z + k / 9 - 1, 0, 0);
            output->setVoxel(static_cast<float>(std::floor(r + 0.5)), x, y, z, 0, 0);
        });
        benchmark::DoNotOptimize(output.get());
    }
    report(state);
}

void gradient2D(benchmark::State &state)
{
    const ImagePtr source = testVolume();
    for (auto _ : state)
        benchmark::DoNotOptimize(ImagePtr(source->computeGradient(0, nullptr, true, nullptr)));
    report(state);
}

void gradient2DPlain(benchmark::State &state)
{
    const ImagePtr source = testVolume();
    for (auto _ : state) {
        const ImagePtr output = newImage(MERV::TypeShort, 2);
        forEachVoxel([&](int x, int y, int z) {
            float gx = 0.0f, gy = 0.0f;
            if (isInside(x, width, 1) && isInside(y, height, 1))
                for (int k = 0; k < 9; ++k) {
                    const float f = sobel[static_cast<std::size_t>(k)];
                    if (f == 0.0f)
                        continue;
                    gx += f * source->getVoxel(x + k % 3 - 1, y + k / 3 - 1, z, 0, 0);
                    gy += f * source->getVoxel(x + k / 3 - 1, y + k % 3 - 1, z, 0, 0);
                }
            output->setNextValue(gx);
            output->setNextValue(gy);
        });
        benchmark::DoNotOptimize(output.get());
    }
    report(state);
}

void gradient3D(benchmark::State &state)
{
    const ImagePtr source = testVolume();
    for (auto _ : state)
        benchmark::DoNotOptimize(ImagePtr(source->compute3DGradient(0, nullptr, true, false, nullptr)));
    report(state);
}

void gradient3DMagnitude(benchmark::State &state)
{
    const ImagePtr source = testVolume();
    for (auto _ : state)
        benchmark::DoNotOptimize(ImagePtr(source->compute3DGradientMagnitude(0, nullptr, true, nullptr)));
    report(state);
}

void gradient3DPlain(benchmark::State &state)
{
    const ImagePtr source = testVolume();
    for (auto _ : state) {
        const ImagePtr output = newImage(MERV::TypeShort, 3);
        forEachVoxel([&](int x, int y, int z) {
            std::array<float, 3> g{};
            if (isInside(x, width, 1) && isInside(y, height, 1) && isInside(z, depth, 1))
                for (int k = 0; k < 27; ++k) {
                    const float f = sobel3D[static_cast<std::size_t>(k)];
                    const int a = k % 3 - 1, b = k % 9 / 3 - 1, c = k / 9 - 1;
                    if (f == 0.0f)
                        continue;
                    g[0] += f * source->getVoxel(x + c, y + b, z + a, 0, 0);
                    g[1] += f * source->getVoxel(x + a, y + c, z + b, 0, 0);
                    g[2] += f * source->getVoxel(x + a, y + b, z + c, 0, 0);
                }
            for (float component : g)
                output->setNextValue(component);
        });
        benchmark::DoNotOptimize(output.get());
    }
    report(state);
}

BENCHMARK(filter2D)->Arg(3)->Arg(7)->Unit(benchmark::kMillisecond);
BENCHMARK(filter2DPlain)->Arg(3)->Arg(7)->Unit(benchmark::kMillisecond);
BENCHMARK(filter3D)->Unit(benchmark::kMillisecond);
BENCHMARK(filter3DPlain)->Unit(benchmark::kMillisecond);
BENCHMARK(gradient2D)->Unit(benchmark::kMillisecond);
BENCHMARK(gradient2DPlain)->Unit(benchmark::kMillisecond);
BENCHMARK(gradient3D)->Unit(benchmark::kMillisecond);
BENCHMARK(gradient3DMagnitude)->Unit(benchmark::kMillisecond);
BENCHMARK(gradient3DPlain)->Unit(benchmark::kMillisecond);

} // namespace
