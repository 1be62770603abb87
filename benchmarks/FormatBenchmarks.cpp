// Reading a volume of 160 (and of 320) x 512 x 512 x 16 bit from MetaImage, with its range of values, beside
// a plain read of the same bytes into fresh memory and one pass over them. The file is in the system's cache
// after its writing.
#include "Common/MetaImage.h"
#include "tests/support/DicomFileBuilder.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <iostream>
#include <map>
#include <memory>
#include <string>

namespace {

constexpr int width = 512;
constexpr int height = 512;

std::size_t valueCount(std::int64_t depth)
{
    return std::size_t{width} * height * static_cast<std::size_t>(depth);
}

// The volume on disk, for as long as the program runs.
class VolumeFile
{
public:
    explicit VolumeFile(int depth)
    {
        const std::unique_ptr<MERV::Image> image(MERV::createImage(MERV::TypeShort));
        image->setDimensions(width, height, depth, 1, 1);
        auto *values = static_cast<short *>(image->getData());
        std::uint32_t noise = 1;
        for (std::size_t i = 0; i < valueCount(depth); ++i) {
            noise = noise * 1664525u + 1013904223u;
            values[i] = static_cast<short>(noise >> 20);
        }
        MERV::saveMetaImage((folder / "volume").c_str(), image.get());
    }

    std::string header() const { return (folder / "volume.mhd").string(); }
    std::string voxels() const { return (folder / "volume.raw").string(); }

private:
    TemporaryFolder folder;
};

const VolumeFile &volumeFile(std::int64_t depth)
{
    static std::map<std::int64_t, VolumeFile> files;
    return files.try_emplace(depth, static_cast<int>(depth)).first->second;
}

void plainReadAndPass(benchmark::State &state)
{
    const std::string path = volumeFile(state.range(0)).voxels();
    const std::size_t count = valueCount(state.range(0));
    for (auto _ : state) {
        const auto values = std::make_unique_for_overwrite<short[]>(count);
        std::ifstream file(path, std::ios::binary);
        file.read(reinterpret_cast<char *>(values.get()),
                  static_cast<std::streamsize>(count * sizeof(short)));
        short low = values[0];
        short high = values[0];
        for (std::size_t i = 0; i < count; ++i) {
            low = std::min(low, values[i]);
            high = std::max(high, values[i]);
        }
        benchmark::DoNotOptimize(low);
        benchmark::DoNotOptimize(high);
    }
    state.SetBytesProcessed(state.iterations() *
                            static_cast<std::int64_t>(valueCount(state.range(0)) * sizeof(short)));
}

void loadMetaImage(benchmark::State &state)
{
    const std::string path = volumeFile(state.range(0)).header();
    std::streambuf *output = std::cout.rdbuf(nullptr);
    for (auto _ : state) {
        const std::unique_ptr<MERV::Image> image(MERV::loadMetaImage(path.c_str()));
        if (image == nullptr || image->getMaximum() <= image->getMinimum()) {
            state.SkipWithError("not loaded");
            break;
        }
        benchmark::DoNotOptimize(image->getData());
    }
    std::cout.rdbuf(output);
    state.SetBytesProcessed(state.iterations() *
                            static_cast<std::int64_t>(valueCount(state.range(0)) * sizeof(short)));
}

} // namespace

BENCHMARK(plainReadAndPass)->Arg(160)->Unit(benchmark::kMillisecond);
BENCHMARK(loadMetaImage)->Arg(160)->Arg(320)->Unit(benchmark::kMillisecond);
