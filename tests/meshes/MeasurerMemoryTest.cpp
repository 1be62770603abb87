// A measurement that gets no memory. A program of its own: its allocations can be refused.
#include "meshes/TriMeshDistanceMeasurer.h"
#include "meshes/TriMeshFragment.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/FlatSheet.h"

#include <QTest>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <new>
#include <thread>

namespace {

constexpr std::size_t largeBytes = 65536; // a copy of one of the meshes has more
std::atomic<bool> refusing{false};
std::atomic<int> refusals{0};

} // namespace

void *operator new(std::size_t size)
{
    if (refusing && size >= largeBytes) {
        ++refusals;
        throw std::bad_alloc();
    }
    if (void *memory = std::malloc(size > 0 ? size : 1))
        return memory;
    throw std::bad_alloc();
}
void operator delete(void *memory) noexcept
{
    std::free(memory);
}
void operator delete(void *memory, std::size_t) noexcept
{
    std::free(memory);
}

namespace {

constexpr int squares = 40; // along each side: 3,200 faces
constexpr std::size_t vertexCount = 41 * 41, summaryCount = 4;

void waitUntilIdle(const TriMeshDistanceMeasurer &measurer)
{
    while (measurer.isPending())
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

} // namespace

class MeasurerMemoryTest : public QObject
{
    Q_OBJECT

private slots:
    // A thickness of before must not pass for that of the mesh which could not be measured.
    void failedRunPublishesNothing()
    {
        const CapturedOutput output;
        TriMeshFragment base, remote;
        base.setFaces(flatSheet(squares, squares, 10.0));
        remote.setFaces(flatSheet(squares, squares, 12.0));
        TriMeshDistanceMeasurer measurer(&base, &remote, "thickness");
        waitUntilIdle(measurer);
        QCOMPARE(measurer.samples()->size(), vertexCount + summaryCount);
        std::atomic<int> announced{0};
        connect(
            &measurer, &TriMeshDistanceMeasurer::updated, &measurer, [&] { ++announced; },
            Qt::DirectConnection);
        refusing = true;
        measurer.remeasure();
        waitUntilIdle(measurer);
        refusing = false;
        QCOMPARE(refusals.load(), 1);
        QCOMPARE(measurer.samples()->size(), std::size_t(0));
        QCOMPARE(announced.load(), 1);
        measurer.remeasure();
        waitUntilIdle(measurer);
        QCOMPARE(measurer.samples()->size(), vertexCount + summaryCount);
        QCOMPARE(announced.load(), 2);
        measurer.stopWorking();
        QCOMPARE(output.standardError(), QStringLiteral("Could not measure distance: std::bad_alloc\n"));
    }
};

QTEST_GUILESS_MAIN(MeasurerMemoryTest)
#include "MeasurerMemoryTest.moc"
