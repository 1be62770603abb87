#include "serialization/dicom/DicomLoader.h"
#include "tests/support/DicomFileBuilder.h"

#include <benchmark/benchmark.h>
#include <gdcmImage.h>
#include <gdcmImageReader.h>

#include <algorithm>
#include <iostream>
#include <random>

// Loading a series with all its tags, beside the DICOM library reading and decoding the same files one after
// the other into one buffer, without tags. The files are written anew for each run of the program.

namespace {

constexpr int fileCount = 160;
constexpr unsigned side = 512;
constexpr int furtherTags = 140; // with those of an ordinary slice about 165 in each file

class SeriesFolder
{
public:
    explicit SeriesFolder(DicomFileBuilder::Encoding encoding)
    {
        std::mt19937 random(1);
        std::vector<int> numbers(fileCount);
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

const SeriesFolder &series(DicomFileBuilder::Encoding encoding)
{
    static const SeriesFolder little(DicomFileBuilder::Encoding::explicitLittle);
    static const SeriesFolder big(DicomFileBuilder::Encoding::explicitBig);
    return encoding == DicomFileBuilder::Encoding::explicitBig ? big : little;
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
    const SeriesFolder &files = series(static_cast<DicomFileBuilder::Encoding>(state.range(0)));
    const Quiet quiet;
    for (auto _ : state) {
        const auto image = dicom::loadSeries(files.folder.string(), false, 0, false, true);
        if (!image || image->getDepth() != fileCount)
            state.SkipWithError("the series did not load");
        benchmark::DoNotOptimize(image);
    }
}

void plainReadByTheLibrary(benchmark::State &state)
{
    const SeriesFolder &files = series(static_cast<DicomFileBuilder::Encoding>(state.range(0)));
    constexpr std::size_t fileBytes = std::size_t(side) * side * 2;
    for (auto _ : state) {
        std::vector<char> buffer(fileBytes * fileCount);
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
    benchmark->ArgName("encoding")
        ->Arg(static_cast<int>(DicomFileBuilder::Encoding::explicitLittle))
        ->Arg(static_cast<int>(DicomFileBuilder::Encoding::explicitBig))
        ->Unit(benchmark::kMillisecond)
        ->MeasureProcessCPUTime()
        ->UseRealTime();
}

BENCHMARK(loadSeriesWithAllTags)->Apply(encodings);
BENCHMARK(plainReadByTheLibrary)->Apply(encodings);

} // namespace
