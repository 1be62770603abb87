#include "meshes/TriMeshDistanceMeasurer.h"
#include "contours/metrics/SlicedMetricsModel.h"
#include "meshes/TriMeshFragment.h"
#include "meshes/TriMeshObject.h"
#include "tests/support/SharedOutput.h"
#include "tests/support/TestMeshes.h"

#include <QSignalSpy>
#include <QTest>

#include <atomic>
#include <chrono>
#include <memory>
#include <stdexcept>
#include <thread>

namespace {

using Measurer = TriMeshDistanceMeasurer;

constexpr double roundingMm = 1e-9;
const char *const begins = "Measuring distance ...\n";
const char *const ends = "... finished measuring distance ... now swapping sample buffers.\n";

// Two sheets of 3 x 2 squares in two mesh objects, 2 mm apart.
struct Sheets
{
    TriMeshObject bones{"bones", nullptr}, surfaces{"surfaces", nullptr};
    TriMeshFragment *bone = bones.addFragment("bone");
    TriMeshFragment *surface = surfaces.addFragment("surface");

    Sheets()
    {
        bone->setFaces(flatSheet(3, 2, 0.0));
        surface->setFaces(flatSheet(3, 2, 2.0));
    }
};

// Without an event loop: also the workers' part of what a test counts is over when this returns.
void waitUntilIdle(const Measurer &measurer)
{
    while (measurer.isPending())
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

std::size_t sampleCount(const Measurer &measurer)
{
    return measurer.samples()->size();
}

bool near(double left, double right)
{
    return std::abs(left - right) <= roundingMm;
}

} // namespace

class TriMeshDistanceMeasurerTest : public QObject
{
    Q_OBJECT

private slots:
    void measuresOnceWhenMade()
    {
        const SharedOutput output;
        Sheets sheets;
        Measurer measurer(sheets.bone, sheets.surface, "thickness");
        waitUntilIdle(measurer);
        QCOMPARE(sampleCount(measurer), std::size_t(12 + 3)); // one vertex lies at the first key
        QVERIFY(near(measurer.sampleAt({3, 2, 0}), 2.0));
        QVERIFY(near(measurer.sampleAt(Measurer::maximumKey), 2.0));
        QVERIFY(near(measurer.sampleAt(Measurer::meanOfMaximaKey), 2.0));
        QVERIFY(near(measurer.sampleAt(Measurer::meanKey), 2.0));
        QVERIFY(near(measurer.sampleAt(Measurer::standardDeviationKey), 0.0));
        measurer.stopWorking();
        QCOMPARE(output.all(), QString::fromLatin1(begins) + ends);
    }
};

QTEST_GUILESS_MAIN(TriMeshDistanceMeasurerTest)
#include "TriMeshDistanceMeasurerTest.moc"
