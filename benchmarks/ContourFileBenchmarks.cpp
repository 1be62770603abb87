// Contours of 20,000 points on 56 slices to a file, to memory and back, beside a bare walk over the same
// bytes: numbers put together one by one, and read one by one into lists of points.
#include "contours/SlicedContour.h"
#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "contours/SlicedContoursSegment.h"
#include "serialization/formats/SlicSerializer.h"
#include "serialization/formats/SlicUnserializer.h"
#include "tests/formats/SlicBytes.h"
#include "tests/support/DicomFileBuilder.h"

#include <benchmark/benchmark.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <functional>
#include <istream>
#include <iterator>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace {

constexpr int slices = 56;

// The argument of all benchmarks is the number of points in each slice.
std::unique_ptr<SlicedContoursObject> drawn(const benchmark::State &state)
{
    auto contours = std::make_unique<SlicedContoursObject>("lines");
    SlicedContoursFragment *fragment = contours->newFragment("bone");
    contours->newContour("solid")->addFragmentReference(fragment);
    for (int slice = 0; slice < slices; ++slice) {
        const auto at = [&](std::int64_t i) {
            const double angle = 0.3 + 2.4 * static_cast<double>(i) / static_cast<double>(state.range(0) - 1);
            return QPointF(60.0 + (22.0 + 0.1 * slice) * std::cos(angle), 40.0 + 22.0 * std::sin(angle));
        };
        SlicedContoursSegment *line = fragment->newSegment(at(0), (static_cast<float>(slice) + 0.5f) * 1.5f);
        line->beginUpdates();
        for (std::int64_t i = 1; i < state.range(0); ++i)
            line->addPointBack(at(i));
        line->endUpdates();
    }
    return contours;
}

void save(benchmark::State &state)
{
    const TemporaryFolder folder;
    const auto contours = drawn(state);
    for (auto _ : state) {
        std::ofstream file(folder / "lines.slic", std::ios::binary);
        if (!SlicSerializer().serialize(contours.get(), file))
            state.SkipWithError("not written");
    }
}

std::string plainBytes(const SlicedContoursObject &contours)
{
    const SlicedContoursFragment &fragment = *contours.fragment(0);
    std::string lines;
    for (int i = 0; i < fragment.segmentCount(); ++i) {
        const SegmentSnapshot line = fragment.segment(i)->snapshot();
        std::string points = SlicBytes::name("some graphics object");
        for (const QPointF &point : line.points)
            points += SlicBytes::point(point.x(), point.y(), static_cast<double>(line.z));
        lines += SlicBytes::chunk("SEGM", 1, points);
    }
    return SlicBytes::chunk(
        "SLIC", 2, SlicBytes::name("lines") + SlicBytes::chunk("FRAG", 3, SlicBytes::name("bone") + lines));
}

void savePlain(benchmark::State &state)
{
    const TemporaryFolder folder;
    const auto contours = drawn(state);
    for (auto _ : state) {
        std::ofstream file(folder / "lines.slic", std::ios::binary);
        file << plainBytes(*contours);
    }
}

// What keeping for recovery costs the thread of the windows: the bytes and whether they have changed.
void snapshot(benchmark::State &state)
{
    const auto contours = drawn(state);
    std::size_t bytes = 0;
    for (auto _ : state) {
        std::ostringstream stream;
        SlicSerializer().serialize(contours.get(), stream);
        const std::string text = std::move(stream).str();
        benchmark::DoNotOptimize(std::hash<std::string>()(text));
        bytes = text.size();
    }
    state.counters["bytes"] = static_cast<double>(bytes);
}

void snapshotPlain(benchmark::State &state)
{
    const auto contours = drawn(state);
    for (auto _ : state)
        benchmark::DoNotOptimize(plainBytes(*contours));
}

std::string savedBytes(const benchmark::State &state)
{
    std::ostringstream stream;
    SlicSerializer().serialize(drawn(state).get(), stream);
    return std::move(stream).str();
}

class SavedFile
{
public:
    explicit SavedFile(const benchmark::State &state)
    {
        std::ofstream(path(), std::ios::binary) << savedBytes(state);
    }
    std::string path() const { return (folder / "lines.slic").string(); }

private:
    TemporaryFolder folder;
};

void load(benchmark::State &state)
{
    const SavedFile saved(state);
    for (auto _ : state) {
        std::ifstream file(saved.path(), std::ios::binary);
        char head[8];
        file.read(head, sizeof(head));
        const std::unique_ptr<ImageObject> contours(SlicUnserializer().unserialize(file, head, sizeof(head)));
        if (!contours)
            state.SkipWithError("not read");
    }
}

double number(std::istream &stream)
{
    std::uint64_t bits = 0;
    for (int shift = 0; shift < 64; shift += 8)
        bits |= static_cast<std::uint64_t>(stream.get() & 0xFF) << shift;
    return std::bit_cast<double>(bits);
}

// Every point into one list: no lines, no thinning.
void loadPlain(benchmark::State &state)
{
    const SavedFile saved(state);
    for (auto _ : state) {
        std::ifstream file(saved.path(), std::ios::binary);
        const std::string bytes{std::istreambuf_iterator<char>(file), {}};
        const std::string tag = SlicBytes::text("POIN");
        std::vector<QPointF> points;
        for (std::size_t at = bytes.find(tag); at != std::string::npos; at = bytes.find(tag, at + 1)) {
            std::istringstream body(bytes.substr(at + 24, 16));
            const double x = number(body);
            points.emplace_back(x, number(body));
        }
        benchmark::DoNotOptimize(points.data());
    }
}

BENCHMARK(save)->Arg(358)->Arg(716)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(savePlain)->Arg(358)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(snapshot)->Arg(358)->Arg(716)->Unit(benchmark::kMillisecond);
BENCHMARK(snapshotPlain)->Arg(358)->Unit(benchmark::kMillisecond);
BENCHMARK(load)->Arg(358)->Arg(716)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(loadPlain)->Arg(358)->UseRealTime()->Unit(benchmark::kMillisecond);

} // namespace
