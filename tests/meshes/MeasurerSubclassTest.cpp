#include "meshes/TriMeshDistanceMeasurer.h"
#include "meshes/TriMeshFragment.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/FlatSheet.h"

#include <QTest>

#include <atomic>
#include <chrono>
#include <stdexcept>
#include <thread>

// Apart from the other tests: the worker may make its first run while the derived class is still being made,
// which a thread sanitizer reports.
namespace {

class FailingMeasurer : public TriMeshDistanceMeasurer
{
public:
    using TriMeshDistanceMeasurer::TriMeshDistanceMeasurer;
    ~FailingMeasurer() override { shutdown(); }

    std::atomic<bool> fails{false};
    std::atomic<int> runs{0};

protected:
    void measure() override
    {
        ++runs;
        if (fails)
            throw std::runtime_error("no memory");
        TriMeshDistanceMeasurer::measure();
    }
};

void waitUntilIdle(const TriMeshDistanceMeasurer &measurer)
{
    while (measurer.isPending())
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

} // namespace

class MeasurerSubclassTest : public QObject
{
    Q_OBJECT

private slots:
    // A thickness of before must not pass for that of the mesh which could not be measured.
    void failedRunPublishesNothing()
    {
        const CapturedOutput output;
        TriMeshFragment base, remote;
        base.setFaces(flatSheet(2, 2, 10.0));
        remote.setFaces(flatSheet(2, 2, 12.0));
        FailingMeasurer measurer(&base, &remote, "thickness");
        waitUntilIdle(measurer);
        QCOMPARE(measurer.samples()->size(), std::size_t(9 + 4));
        std::atomic<int> announced{0};
        connect(
            &measurer, &TriMeshDistanceMeasurer::updated, &measurer, [&] { ++announced; },
            Qt::DirectConnection);
        measurer.fails = true;
        measurer.remeasure();
        waitUntilIdle(measurer);
        QCOMPARE(measurer.samples()->size(), std::size_t(0));
        QCOMPARE(announced.load(), 1);
        measurer.fails = false;
        measurer.remeasure();
        waitUntilIdle(measurer);
        QCOMPARE(measurer.samples()->size(), std::size_t(9 + 4));
        QVERIFY(measurer.runs >= 2);
        measurer.stopWorking();
        QCOMPARE(output.standardError(), QStringLiteral("Could not measure distance: no memory\n"));
    }
};

QTEST_GUILESS_MAIN(MeasurerSubclassTest)
#include "MeasurerSubclassTest.moc"
