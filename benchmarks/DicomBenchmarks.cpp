#include "serialization/dicom/DicomLoader.h"
#include "tests/support/DicomFileBuilder.h"
#include "tests/support/TestData.h"

#include <benchmark/benchmark.h>
#include <gdcmImage.h>
#include <gdcmImageReader.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <iostream>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

// Loading a series with all its tags, beside the DICOM library reading and decoding the same files one after
// the other into one buffer, without tags. The files are written anew for each run of the program.

namespace {

constexpr unsigned side = 512;
constexpr int furtherTags = 140; // with those of an ordinary slice about 165 in each file

class SeriesFolder
{
public:
    SeriesFolder(DicomFileBuilder::Encoding encoding, int fileCount)
    {
        std::mt19937 random(1);
        std::vector<int> numbers(static_cast<std::size_t>(fileCount));
        for (int i = 0; i < fileCount; ++i)
            numbers[static_cast<std::size_t>(i)] = i;
        std::shuffle(numbers.begin(), numbers.end(), random);
        std::vector<std::uint64_t> pixels(std::size_t(side) * side);
        for (int i = 0; i < fileCount; ++i) {
            for (std::uint64_t &pixel : pixels)
                pixel = random() % 4096;
            DicomFileBuilder file = dicomSlice(side, side, pixels, i, encoding);
            file.text(0x00200013, "IS", std::to_string(i + 1));
            for (unsigned tag = 0; tag < furtherTags; ++tag)
                file.text(0x00191000 + tag, "LO",
                          tag % 2 == 0 ? "the same in all files" : "file " + std::to_string(i));
            paths.push_back(folder / std::to_string(numbers[static_cast<std::size_t>(i)]));
            file.write(paths.back());
        }
    }

    TemporaryFolder folder;
    std::vector<std::string> paths;
};

// Arguments: the encoding and the number of files.
const SeriesFolder &series(const benchmark::State &state)
{
    static std::map<std::pair<std::int64_t, std::int64_t>, SeriesFolder> made;
    return made
        .try_emplace({state.range(0), state.range(1)},
                     static_cast<DicomFileBuilder::Encoding>(state.range(0)),
                     static_cast<int>(state.range(1)))
        .first->second;
}

// Keeps the progress lines away from the benchmark's table.
class Quiet
{
public:
    Quiet()
        : former(std::cout.rdbuf(nullptr))
    {}
    ~Quiet() { std::cout.rdbuf(former); }
    Quiet(const Quiet &) = delete;
    Quiet &operator=(const Quiet &) = delete;

private:
    std::streambuf *former;
};

void loadSeriesWithAllTags(benchmark::State &state)
{
    const SeriesFolder &files = series(state);
    const Quiet quiet;
    for (auto _ : state) {
        const auto image = dicom::loadSeries(files.folder.string(), false, 0, false, true);
        if (!image || image->getDepth() != state.range(1))
            state.SkipWithError("the series did not load");
        benchmark::DoNotOptimize(image);
    }
}

void plainReadByTheLibrary(benchmark::State &state)
{
    const SeriesFolder &files = series(state);
    constexpr std::size_t fileBytes = std::size_t(side) * side * 2;
    for (auto _ : state) {
        std::vector<char> buffer(fileBytes * files.paths.size());
        std::size_t offset = 0;
        for (const std::string &path : files.paths) {
            gdcm::ImageReader reader;
            reader.SetFileName(path.c_str());
            if (!reader.Read() || !reader.GetImage().GetBuffer(buffer.data() + offset))
                state.SkipWithError("the library cannot read a file");
            offset += fileBytes;
        }
        benchmark::DoNotOptimize(buffer);
    }
}

void encodings(benchmark::internal::Benchmark *benchmark)
{
    benchmark->ArgNames({"encoding", "files"})
        ->Args({static_cast<int>(DicomFileBuilder::Encoding::explicitLittle), 160})
        ->Args({static_cast<int>(DicomFileBuilder::Encoding::explicitLittle), 320})
        ->Args({static_cast<int>(DicomFileBuilder::Encoding::explicitBig), 160})
        ->Unit(benchmark::kMillisecond)
        ->MeasureProcessCPUTime()
        ->UseRealTime();
}

BENCHMARK(loadSeriesWithAllTags)->Apply(encodings);
BENCHMARK(plainReadByTheLibrary)->Apply(encodings);

// Empty when there are no real data.
std::string realSeries()
{
    const std::string folder = testDataFolder();
    return folder.empty() ? folder : folder + "/knee-ge-mese/dicom";
}

void loadRealSeries(benchmark::State &state)
{
    const Quiet quiet;
    for (auto _ : state)
        if (!dicom::loadSeries(realSeries(), false, 0, false, true)) {
            state.SkipWithError("no real data");
            break;
        }
}
BENCHMARK(loadRealSeries)->UseRealTime()->Unit(benchmark::kMillisecond);

void plainReadOfRealSeries(benchmark::State &state)
{
    std::vector<std::string> paths;
    std::error_code none;
    for (const auto &entry : std::filesystem::directory_iterator(realSeries(), none))
        paths.push_back(entry.path().string());
    if (paths.empty())
        state.SkipWithError("no real data");
    for (auto _ : state)
        for (const std::string &path : paths) {
            gdcm::ImageReader reader;
            reader.SetFileName(path.c_str());
            std::vector<char> buffer;
            if (!reader.Read())
                continue;
            buffer.resize(reader.GetImage().GetBufferLength());
            benchmark::DoNotOptimize(reader.GetImage().GetBuffer(buffer.data()));
        }
}
BENCHMARK(plainReadOfRealSeries)->UseRealTime()->Unit(benchmark::kMillisecond);

} // namespace
