// Reading a volume of 160 x 512 x 512 x 16 bit from MetaImage, with its range of values, beside a plain read
// of the same bytes into fresh memory and one pass over them. The file is in the system's cache after its
// writing.
#include "Common/MetaImage.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <string>

namespace {

constexpr int width = 512;
constexpr int height = 512;
constexpr int depth = 160;
constexpr std::size_t valueCount = std::size_t{width} * height * depth;

// The volume on disk, for as long as the program runs.
class VolumeFile
{
public:
    VolumeFile()
        : folder(std::filesystem::temp_directory_path() / "tevora_format_benchmark")
    {
        std::filesystem::create_directories(folder);
        const std::unique_ptr<MERV::Image> image(MERV::createImage(MERV::TypeShort));
        image->setDimensions(width, height, depth, 1, 1);
        auto *values = static_cast<short *>(image->getData());
        std::uint32_t noise = 1;
        for (std::size_t i = 0; i < valueCount; ++i) {
            noise = noise * 1664525u + 1013904223u;
            values[i] = static_cast<short>(noise >> 20);
        }
        MERV::saveMetaImage((folder / "volume").c_str(), image.get());
    }
    ~VolumeFile() { std::filesystem::remove_all(folder); }

    std::string header() const { return folder / "volume.mhd"; }
    std::string voxels() const { return folder / "volume.raw"; }

private:
    std::filesystem::path folder;
};

const VolumeFile &volumeFile()
{
    static const VolumeFile file;
    return file;
}

void plainReadAndPass(benchmark::State &state)
{
    const std::string path = volumeFile().voxels();
    for (auto _ : state) {
        const auto values = std::make_unique_for_overwrite<short[]>(valueCount);
        std::ifstream file(path, std::ios::binary);
        file.read(reinterpret_cast<char *>(values.get()), valueCount * sizeof(short));
        short low = values[0];
        short high = values[0];
        for (std::size_t i = 0; i < valueCount; ++i) {
            low = std::min(low, values[i]);
            high = std::max(high, values[i]);
        }
        benchmark::DoNotOptimize(low);
        benchmark::DoNotOptimize(high);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(valueCount * sizeof(short)));
}

void loadMetaImage(benchmark::State &state)
{
    const std::string path = volumeFile().header();
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
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(valueCount * sizeof(short)));
}

} // namespace

BENCHMARK(plainReadAndPass)->Unit(benchmark::kMillisecond);
BENCHMARK(loadMetaImage)->Unit(benchmark::kMillisecond);
