#include "meshes/TriMeshDistanceMeasurer.h"
#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "contours/SlicedContoursSegment.h"
#include "contours/metrics/SlicedMetricsModel.h"
#include "meshes/SlicedContoursTriangulator.h"
#include "meshes/TriMeshFragment.h"
#include "meshes/TriMeshObject.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/FlatSheet.h"
#include "tests/support/RibbonMesh.h"

#include <QAbstractItemModelTester>
#include <QElapsedTimer>
#include <QLocale>
#include <QTest>

#include <atomic>
#include <chrono>
#include <cmath>
#include <memory>
#include <mutex>
#include <thread>

namespace {

using Measurer = TriMeshDistanceMeasurer;

constexpr double roundingMm = 1e-9;
const char *const begins = "Measuring distance ...\n";
const char *const ends = "... finished measuring distance ... now swapping sample buffers.\n";

int count(const CapturedOutput &output, const char *line)
{
    return static_cast<int>(output.standardOutput().count(QLatin1String(line)));
}

void rest(int milliseconds)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

// Two sheets of 3 x 2 squares in two mesh objects, 2 mm apart, away from the places of the summary.
struct Sheets
{
    TriMeshObject bones{"bones", nullptr}, surfaces{"surfaces", nullptr};
    TriMeshFragment *bone = bones.addFragment("bone");
    TriMeshFragment *surface = surfaces.addFragment("surface");

    Sheets()
    {
        bone->setFaces(flatSheet(3, 2, 10.0));
        surface->setFaces(flatSheet(3, 2, 12.0));
    }
};

// Two meshes that take a while.
struct Ribbons
{
    TriMeshObject bones{"bones", nullptr}, surfaces{"surfaces", nullptr};
    TriMeshFragment *bone = bones.addFragment("bone");
    TriMeshFragment *surface = surfaces.addFragment("surface");

    explicit Ribbons(int pointsPerSlice)
    {
        bone->setFaces(ribbonMesh(30, pointsPerSlice, 0.0, 1));
        surface->setFaces(ribbonMesh(30, pointsPerSlice, 3.0, 2));
    }
};

void waitUntilIdle(const Measurer &measurer)
{
    while (measurer.isPending())
        rest(1);
}

std::size_t sampleCount(const Measurer &measurer)
{
    return measurer.samples()->size();
}

bool near(double left, double right)
{
    return std::abs(left - right) <= roundingMm;
}

// Holds the worker in the announcement of its result, before the run is over.
class Gate
{
public:
    explicit Gate(Measurer &measurer)
    {
        QObject::connect(
            &measurer, &Measurer::updated, &measurer,
            [this] {
                reached = true;
                while (!open)
                    rest(1);
            },
            Qt::DirectConnection);
    }
    ~Gate() { open = true; }

    void waitUntilReached() const
    {
        while (!reached)
            rest(1);
    }

    std::atomic<bool> reached{false}, open{false};
};

// The results that a measurer announces, counted where they are announced.
class Announcements
{
public:
    explicit Announcements(Measurer &measurer)
    {
        QObject::connect(
            &measurer, &Measurer::updated, &measurer, [this] { ++count; }, Qt::DirectConnection);
    }

    std::atomic<int> count{0};
};

SlicedContoursSegment *addLine(SlicedContoursFragment *fragment, float z, const std::vector<QPointF> &points)
{
    SlicedContoursSegment *segment = fragment->newSegment(points.front(), z);
    for (auto point = points.begin() + 1; point != points.end(); ++point)
        segment->addPointBack(*point);
    return segment;
}

QStringList cells(const SlicedMetricsModel &model)
{
    QStringList texts;
    for (int row = 0; row < model.rowCount(); ++row)
        texts.append(model.data(model.index(row, 0)).toString());
    return texts;
}

} // namespace

class TriMeshDistanceMeasurerTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { QLocale::setDefault(QLocale::c()); }

    void measuresOnceWhenMade()
    {
        const CapturedOutput output;
        Sheets sheets;
        Measurer measurer(sheets.bone, sheets.surface, "thickness");
        QCOMPARE(measurer.label(), QStringLiteral("thickness"));
        QCOMPARE(measurer.imageType(), static_cast<int>(ImageTypeOther));
        QVERIFY(measurer.isRunning());
        waitUntilIdle(measurer);
        rest(60); // three looks at the flags
        QCOMPARE(sampleCount(measurer), std::size_t(12 + 4));
        for (const auto &[position, value] : *measurer.samples())
            QVERIFY(near(value, position.x == 0 && position.y == 0 && position.z == 3 ? 0.0 : 2.0));
        QVERIFY(measurer.hasSample({3, 2, 10}));
        QVERIFY(measurer.hasSample(Measurer::maximumKey));
        QVERIFY(measurer.hasSample(Measurer::meanOfMaximaKey));
        QVERIFY(measurer.hasSample(Measurer::meanKey));
        QVERIFY(measurer.hasSample(Measurer::standardDeviationKey));
        measurer.stopWorking();
        QCOMPARE(output.standardOutput(), QString::fromLatin1(begins) + ends);
    }

    void onlyAMissingLabelIsReplaced()
    {
        Measurer missing(nullptr, nullptr, QString());
        QCOMPARE(missing.label(), QStringLiteral("some distance measurer for triangle meshes"));
        Measurer empty(nullptr, nullptr, QStringLiteral(""));
        QCOMPARE(empty.label(), QString());
        Measurer german(nullptr, nullptr, 2, QStringLiteral("neue Dickenmessung"));
        QCOMPARE(german.label(), QStringLiteral("neue Dickenmessung"));
    }

    // The corner (0, 0, 7) sees a wall 5 mm above it and has another one 3 mm beside it.
    void definition_data()
    {
        QTest::addColumn<int>("definition");
        QTest::addColumn<double>("distance");
        QTest::newRow("along normal") << 0 << 5.0;
        QTest::newRow("perpendicular to base") << 1 << 5.0;
        QTest::newRow("minimal distance") << 2 << 3.0;
        QTest::newRow("any other") << 3 << 5.0;
    }
    void definition()
    {
        QFETCH(int, definition);
        QFETCH(double, distance);
        TriMeshFragment base, remote;
        base.addFace({{0, 0, 7}, {1, 0, 7}, {0, 1, 7}});
        remote.addFace({{-10, -10, 12}, {30, -10, 12}, {-10, 30, 12}});
        remote.addFace({{-3, -10, -10}, {-3, 30, -10}, {-3, -10, 30}});
        Measurer measurer(&base, &remote, definition, "thickness");
        waitUntilIdle(measurer);
        QVERIFY(near(measurer.sampleAt({0, 0, 7}), distance));
    }

    void withoutDefinitionMeasuresAlongNormals()
    {
        TriMeshFragment base, remote;
        base.addFace({{0, 0, 7}, {1, 0, 7}, {0, 1, 7}});
        remote.addFace({{-10, -10, 12}, {30, -10, 12}, {-10, 30, 12}});
        remote.addFace({{-3, -10, -10}, {-3, 30, -10}, {-3, -10, 30}});
        Measurer measurer(&base, &remote, "thickness");
        waitUntilIdle(measurer);
        QVERIFY(near(measurer.sampleAt({0, 0, 7}), 5.0));
    }

    // Distances 1, 5, 3, 7 in this order, below a wall of steps: maximum 7, of the records 1, 5, 7 the mean
    // is 13 / 3, mean 4, deviation sqrt(5).
    void summaryStandsAtItsPlaces()
    {
        TriMeshFragment base, remote;
        const double heights[] = {1, 5, 3, 7};
        for (int i = 0; i < 4; ++i) {
            const double x = 100.0 * i, z = 20.0 + heights[i];
            base.addFace({{x, 0, 20}, {x, 0, 20}, {x, 0, 20}}); // measured without a normal
            remote.addFace({{x - 10, -10, z}, {x + 20, -10, z}, {x - 10, 20, z}});
        }
        Measurer measurer(&base, &remote, Measurer::MinimalDistance, "thickness");
        waitUntilIdle(measurer);
        QCOMPARE(sampleCount(measurer), std::size_t(4 + 4));
        QVERIFY(near(measurer.sampleAt({200, 0, 20}), 3.0));
        QVERIFY(near(measurer.sampleAt({0, 0, 0}), 7.0));
        QVERIFY(near(measurer.sampleAt({0, 0, 1}), 13.0 / 3.0));
        QVERIFY(near(measurer.sampleAt({0, 0, 2}), 4.0));
        QVERIFY(near(measurer.sampleAt({0, 0, 3}), std::sqrt(5.0)));
    }

    // A corner at each place, 8, 7, 6 and 5 mm below the wall at z = 8, and one 4 mm below it.
    void summaryTakesThePlaceOfVerticesThere()
    {
        TriMeshFragment base, remote;
        base.addFace({{0, 0, 0}, {0, 0, 1}, {0, 0, 2}});
        base.addFace({{0, 0, 3}, {0, 0, 4}, {0, 0, 3}});
        remote.addFace({{-10, -10, 8}, {30, -10, 8}, {-10, 30, 8}});
        Measurer measurer(&base, &remote, Measurer::MinimalDistance, "thickness");
        waitUntilIdle(measurer);
        QCOMPARE(sampleCount(measurer), std::size_t(5));
        QVERIFY(near(measurer.sampleAt({0, 0, 4}), 4.0));
        QVERIFY(near(measurer.sampleAt({0, 0, 0}), 8.0));
        QVERIFY(near(measurer.sampleAt({0, 0, 1}), 6.0)); // all are records
        QVERIFY(near(measurer.sampleAt({0, 0, 2}), 6.0));
        QVERIFY(near(measurer.sampleAt({0, 0, 3}), std::sqrt(2.0))); // deviations 2, 1, 0, -1, -2
    }

    void meshHasNoDistanceToItself()
    {
        TriMeshFragment mesh;
        mesh.setFaces(flatSheet(3, 2, 10.0));
        for (const int definition : {0, 1, 2}) {
            Measurer measurer(&mesh, &mesh, definition, "thickness");
            waitUntilIdle(measurer);
            QCOMPARE(sampleCount(measurer), std::size_t(12 + 4));
            for (const auto &[position, value] : *measurer.samples())
                QVERIFY(near(value, 0.0));
        }
    }

    // (1, 0, 0, 1) and (2, 0, 0, 2): one place, two distances.
    void sameVertexInAnotherHomogeneousFormIsOneSample()
    {
        TriMeshFragment base, remote;
        base.addFace({{1, 0, 9}, {2, 0, 18, 2}, {0, 1, 9}});
        remote.addFace({{-10, -10, 8}, {30, -10, 8}, {-10, 30, 8}});
        Measurer measurer(&base, &remote, Measurer::MinimalDistance, "thickness");
        waitUntilIdle(measurer);
        QCOMPARE(sampleCount(measurer), std::size_t(2 + 4));
    }

    // A corner at infinity has no place that could be a key.
    void vertexThatIsNoPlaceIsNotStored()
    {
        TriMeshFragment base, remote;
        base.addFace({{1, 0, 9}, {std::nan(""), 0, 9}, {1, 0, 0, 0}});
        remote.addFace({{-10, -10, 8}, {30, -10, 8}, {-10, 30, 8}});
        Measurer measurer(&base, &remote, Measurer::MinimalDistance, "thickness");
        waitUntilIdle(measurer);
        for (const auto &[position, value] : *measurer.samples())
            QVERIFY(!std::isnan(position.x) && !std::isnan(position.y) && !std::isnan(position.z));
        QVERIFY(near(measurer.sampleAt({1, 0, 9}), 1.0));
    }

    void missingFragmentPublishesNothing_data()
    {
        QTest::addColumn<bool>("hasBase");
        QTest::addColumn<bool>("hasRemote");
        QTest::newRow("none") << false << false;
        QTest::newRow("no base") << false << true;
        QTest::newRow("no remote") << true << false;
    }
    void missingFragmentPublishesNothing()
    {
        QFETCH(bool, hasBase);
        QFETCH(bool, hasRemote);
        const CapturedOutput output;
        Sheets sheets;
        Measurer measurer(hasBase ? sheets.bone : nullptr, hasRemote ? sheets.surface : nullptr, "thickness");
        waitUntilIdle(measurer);
        const Announcements announcements(measurer);
        measurer.remeasure();
        waitUntilIdle(measurer);
        QCOMPARE(announcements.count.load(), 1);
        QCOMPARE(sampleCount(measurer), std::size_t(0));
        QCOMPARE(output.standardOutput(), (QString::fromLatin1(begins) + ends).repeated(2));
    }

    void emptyMeshesHaveNoSummary()
    {
        Sheets sheets;
        TriMeshFragment empty;
        for (const int definition : {1, 2}) {
            Measurer noBase(&empty, sheets.surface, definition, "thickness");
            Measurer noRemote(sheets.bone, &empty, definition, "thickness");
            waitUntilIdle(noBase);
            waitUntilIdle(noRemote);
            QCOMPARE(sampleCount(noBase), std::size_t(0));
            QCOMPARE(sampleCount(noRemote), std::size_t(0));
        }
    }

    void resultReachesTheMainThreadAsAQueuedSignal()
    {
        Sheets sheets;
        Measurer measurer(sheets.bone, sheets.surface, "thickness");
        QObject receiver;
        int updates = 0;
        const bool *here = nullptr;
        const thread_local bool mark = true;
        connect(&measurer, &Measurer::updated, &receiver, [&] {
            ++updates;
            here = &mark;
        });
        QTRY_COMPARE(updates, 1);
        QCOMPARE(here, &mark);
        measurer.remeasure();
        QTRY_COMPARE(updates, 2);
    }

    void everySignalOfEitherFragmentIsFollowed()
    {
        Sheets sheets;
        Measurer measurer(sheets.bone, sheets.surface, "thickness");
        waitUntilIdle(measurer);
        Announcements announcements(measurer);
        const auto runs = [&] {
            waitUntilIdle(measurer);
            return announcements.count.exchange(0);
        };
        emit sheets.bone->updated();
        QCOMPARE(runs(), 1);
        emit sheets.surface->updated();
        QCOMPARE(runs(), 1);
        sheets.bone->notifyFragmentUpdated();
        QCOMPARE(runs(), 1);
        sheets.surface->notifyFragmentUpdated();
        QCOMPARE(runs(), 1);
        measurer.remeasure(&sheets.bones);
        QCOMPARE(runs(), 1);
        QCOMPARE(runs(), 0);
    }

    void changeOfAMeshChangesTheSamples()
    {
        Sheets sheets;
        Measurer measurer(sheets.bone, sheets.surface, "thickness");
        waitUntilIdle(measurer);
        sheets.surface->setFaces(flatSheet(3, 2, 7.0));
        emit sheets.surface->updated();
        waitUntilIdle(measurer);
        QVERIFY(near(measurer.sampleAt({3, 2, 10}), 3.0));
        sheets.bone->setFaces(flatSheet(1, 1, 8.0));
        emit sheets.bone->updated();
        waitUntilIdle(measurer);
        QCOMPARE(sampleCount(measurer), std::size_t(4 + 4));
        QVERIFY(near(measurer.sampleAt({1, 1, 8}), 1.0));
        QVERIFY(!measurer.hasSample({3, 2, 10}));
    }

    // The former result stays whole until the next one replaces it.
    void formerResultStaysUntilTheSwap()
    {
        Ribbons ribbons(120);
        Measurer measurer(ribbons.bone, ribbons.surface, Measurer::MinimalDistance, "thickness");
        waitUntilIdle(measurer);
        const std::size_t all = 30 * 120 + 4;
        bool whole = sampleCount(measurer) == all;
        measurer.remeasure();
        while (measurer.isPending())
            whole = whole && sampleCount(measurer) == all;
        QVERIFY(whole);
    }

    void burstOfEditsDuringARunLeadsToOneMoreRun()
    {
        const CapturedOutput output;
        Sheets sheets;
        Measurer measurer(sheets.bone, sheets.surface, "thickness");
        waitUntilIdle(measurer);
        const int before = count(output, ends);
        {
            Gate gate(measurer);
            measurer.remeasure();
            gate.waitUntilReached();
            for (int i = 1; i <= 100; ++i) {
                sheets.surface->setFaces(flatSheet(3, 2, 10.0 + i));
                emit sheets.surface->updated();
                sheets.surface->notifyFragmentUpdated();
            }
            QVERIFY(measurer.isPending());
            gate.open = true;
            waitUntilIdle(measurer);
        }
        QCOMPARE(count(output, ends) - before, 2);
        QVERIFY(near(measurer.sampleAt({3, 2, 10}), 100.0)); // the last edit
        measurer.stopWorking();
    }

    void isPendingFromTheRequestToTheEndOfItsRun()
    {
        Sheets sheets;
        Measurer measurer(sheets.bone, sheets.surface, "thickness");
        waitUntilIdle(measurer);
        rest(60);
        QVERIFY(!measurer.isPending());
        Gate gate(measurer);
        measurer.remeasure();
        QVERIFY(measurer.isPending());
        gate.waitUntilReached();
        QVERIFY(measurer.isPending());
        gate.open = true;
        waitUntilIdle(measurer);
        QVERIFY(!measurer.isPending());
        measurer.stopWorking();
    }

    void sourcesAreTheOwnersOfTheFragments()
    {
        Sheets sheets;
        TriMeshFragment *second = sheets.bones.addFragment("second");
        TriMeshFragment loose;
        const auto sources = [](TriMeshFragment *base, TriMeshFragment *remote) {
            return Measurer(base, remote, "thickness").sources();
        };
        QList<ImageObject *> both{&sheets.bones, &sheets.surfaces}, reversed{&sheets.surfaces, &sheets.bones};
        QCOMPARE(sources(sheets.bone, sheets.surface), both);
        QCOMPARE(sources(sheets.surface, sheets.bone), reversed);
        QCOMPARE(sources(sheets.bone, second), QList<ImageObject *>{&sheets.bones});
        QCOMPARE(sources(sheets.bone, sheets.bone), QList<ImageObject *>{&sheets.bones});
        QCOMPARE(sources(nullptr, sheets.surface), QList<ImageObject *>{&sheets.surfaces});
        QCOMPARE(sources(sheets.bone, nullptr), QList<ImageObject *>{&sheets.bones});
        QCOMPARE(sources(&loose, nullptr), QList<ImageObject *>{});
        // A mesh object is the root of its tree, whatever its own parent.
        TriMeshObject inner("inner", &sheets.bones);
        QCOMPARE(sources(inner.addFragment("part"), nullptr), QList<ImageObject *>{&inner});
    }

    void closedSourceIsLetGo_data()
    {
        QTest::addColumn<bool>("base");
        QTest::newRow("base") << true;
        QTest::newRow("remote") << false;
    }
    void closedSourceIsLetGo()
    {
        QFETCH(bool, base);
        auto closing = std::make_unique<TriMeshObject>("closing", nullptr);
        TriMeshObject staying("staying", nullptr);
        TriMeshFragment *first = closing->addFragment("first"), *second = staying.addFragment("second");
        first->setFaces(flatSheet(3, 2, 10.0));
        second->setFaces(flatSheet(3, 2, 12.0));
        Measurer measurer(base ? first : second, base ? second : first, "thickness");
        waitUntilIdle(measurer);
        const Announcements announcements(measurer);
        ImageObject other;
        measurer.detachFrom(&other);
        measurer.detachFrom(nullptr);
        measurer.detachFrom(&measurer);
        QVERIFY(!measurer.isPending());
        QCOMPARE(sampleCount(measurer), std::size_t(16));
        measurer.detachFrom(closing.get());
        closing.reset();
        waitUntilIdle(measurer);
        QCOMPARE(announcements.count.load(), 1);
        QCOMPARE(sampleCount(measurer), std::size_t(0));
        QCOMPARE(measurer.sources(), QList<ImageObject *>{&staying});
        emit second->updated();
        waitUntilIdle(measurer);
        QCOMPARE(announcements.count.load(), 2);
        QCOMPARE(sampleCount(measurer), std::size_t(0));
    }

    void deletedFragmentIsLetGo()
    {
        Sheets sheets;
        auto loose = std::make_unique<TriMeshFragment>();
        loose->setFaces(flatSheet(3, 2, 12.0));
        Measurer toLoose(sheets.bone, loose.get(), "thickness"),
            within(loose.get(), loose.get(), "thickness");
        waitUntilIdle(toLoose);
        waitUntilIdle(within);
        QCOMPARE(sampleCount(within), std::size_t(16));
        loose.reset();
        waitUntilIdle(toLoose);
        waitUntilIdle(within);
        QCOMPARE(sampleCount(toLoose), std::size_t(0));
        QCOMPARE(sampleCount(within), std::size_t(0));
        QCOMPARE(toLoose.sources(), QList<ImageObject *>{&sheets.bones});
        QCOMPARE(within.sources(), QList<ImageObject *>{});
    }

    // The meshes go while they are measured, at another moment each time.
    void sourcesCloseDuringARun()
    {
        const CapturedOutput output;
        for (int i = 0; i < 40; ++i) {
            const int begun = count(output, begins);
            auto ribbons = std::make_unique<Ribbons>(40);
            Measurer measurer(ribbons->bone, ribbons->surface, i % 3, "thickness");
            while (count(output, begins) == begun)
                std::this_thread::yield();
            std::this_thread::sleep_for(std::chrono::microseconds(100 * i));
            measurer.detachFrom(&ribbons->bones);
            measurer.detachFrom(&ribbons->surfaces);
            ribbons.reset();
            waitUntilIdle(measurer);
            QCOMPARE(sampleCount(measurer), std::size_t(0));
            QCOMPARE(measurer.sources(), QList<ImageObject *>{});
            measurer.stopWorking();
        }
    }

    // A measurement that is left publishes nothing; at least one of the runs is caught in its middle.
    void stoppedRunPublishesNothing()
    {
        const CapturedOutput output;
        Ribbons ribbons(400);
        int stopped = 0;
        for (int i = 0; i < 50 && stopped == 0; ++i) {
            const int begun = count(output, begins), ended = count(output, ends);
            Measurer measurer(ribbons.bone, ribbons.surface, i % 3, "thickness");
            const Announcements announcements(measurer);
            while (count(output, begins) == begun)
                std::this_thread::yield();
            measurer.stopWorking();
            QVERIFY(!measurer.isRunning());
            const int finished = count(output, ends) - ended;
            QVERIFY(announcements.count <= finished);
            QCOMPARE(sampleCount(measurer) == 0, finished == 0);
            stopped += finished == 0 ? 1 : 0;
        }
        QCOMPARE(stopped, 1);
    }

    void stoppedMeasurerKeepsItsSamples()
    {
        Sheets sheets;
        Measurer measurer(sheets.bone, sheets.surface, "thickness");
        waitUntilIdle(measurer);
        measurer.stopWorking();
        measurer.stopWorking();
        measurer.wait();
        QVERIFY(!measurer.isRunning());
        emit sheets.bone->updated();
        rest(60);
        QCOMPARE(sampleCount(measurer), std::size_t(16));
        measurer.detachFrom(&sheets.bones);
        QCOMPARE(measurer.sources(), QList<ImageObject *>{&sheets.surfaces});
    }

    void comesAndGoesAThousandTimesDuringRuns()
    {
        const CapturedOutput output;
        Sheets sheets;
        Ribbons ribbons(12);
        for (int i = 0; i < 1000; ++i) {
            const bool small = i % 2 == 0;
            TriMeshFragment *base = small ? sheets.bone : ribbons.bone;
            TriMeshFragment *remote = small ? sheets.surface : ribbons.surface;
            Measurer measurer(base, remote, i % 3, "thickness");
            if (i % 5 == 0)
                waitUntilIdle(measurer);
            if (i % 7 == 0)
                emit base->updated();
            if (i % 11 == 0)
                base->setFaces(flatSheet(5, 5, 0.25 * i));
            std::this_thread::sleep_for(std::chrono::microseconds(i % 17 * 30));
        }
        QVERIFY(count(output, begins) >= 200);
        QVERIFY(count(output, ends) <= count(output, begins));
    }

    // The main thread reads and edits without a pause while the worker measures without a pause. All vertices
    // of one reading are of one mesh, at one height.
    void samplesAreWholeWhileMeshesChange()
    {
        const CapturedOutput output;
        Sheets sheets;
        Measurer measurer(sheets.bone, sheets.surface, "thickness");
        int readings = 0, edits = 0;
        bool whole = true;
        const auto read = [&] {
            const LockedSamples samples = measurer.samples();
            const double z = samples->empty() ? 0.0 : samples->rbegin()->first.z;
            for (const auto &[position, value] : *samples)
                whole = whole && (position.z < 4.0 || position.z == z);
            readings += samples->empty() ? 0 : 1;
        };
        QElapsedTimer elapsed;
        elapsed.start();
        while (elapsed.elapsed() < 2000 || readings < 100) {
            read();
            if (readings % 50 == 1) {
                sheets.bone->setFaces(flatSheet(3, 2, 10.0 + edits++ % 50));
                emit sheets.bone->updated();
            }
            measurer.remeasure();
        }
        QVERIFY(whole);
        QVERIFY(edits > 1);
        QVERIFY(count(output, ends) > 10);
        measurer.stopWorking();
    }

    // From the pencil to the table: surface lines 3 mm from bone lines, on two slices. The point (14, 5) on
    // one of them is 5 mm away, so the mean is (4 * 3 + 5) / 5, the deviation sqrt((4 * 0.4^2 + 1.6^2) / 5),
    // the records 3 and 5.
    void editOfAContourReachesTheMetrics()
    {
        SlicedContoursObject contours("patella");
        SlicedContoursFragment *bone = contours.newFragment("bone");
        SlicedContoursFragment *surface = contours.newFragment("surface");
        addLine(bone, 20, {{10, 0}, {14, 0}});
        addLine(bone, 21, {{10, 0}, {14, 0}});
        SlicedContoursSegment *edited = addLine(surface, 20, {{10, 3}, {14, 3}});
        addLine(surface, 21, {{10, 3}, {14, 3}});
        SlicedContoursTriangulator meshes(&contours);
        Measurer measurer(meshes.triangulationOf(surface), meshes.triangulationOf(bone),
                          Measurer::MinimalDistance, "minimum thickness");
        SlicedMetricsModel metrics(&measurer);
        const QAbstractItemModelTester tester(&metrics,
                                              QAbstractItemModelTester::FailureReportingMode::QtTest);
        QCOMPARE(measurer.sources(), QList<ImageObject *>{&meshes});
        int changes = 0;
        connect(&metrics, &QAbstractItemModel::dataChanged, &metrics, [&] { ++changes; });
        QTRY_COMPARE(changes, 1);
        QCOMPARE(cells(metrics), (QStringList{"3 mm", "3 mm", "3 mm", "0 mm"}));
        QCOMPARE(sampleCount(measurer), std::size_t(4 + 4));

        edited->addPointBack({14, 5});
        QTRY_COMPARE(cells(metrics), (QStringList{"5 mm", "4 mm", "3.4 mm", "0.8 mm"}));
        QVERIFY(near(measurer.sampleAt({14, 5, 20}), 5.0));
        QTRY_VERIFY(changes >= 2);
        QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
        QCOMPARE(cells(metrics)[2], QStringLiteral("3,4 mm"));
        QLocale::setDefault(QLocale::c());

        // With one line left there is no ribbon and no thickness.
        delete edited;
        QTRY_COMPARE(cells(metrics), (QStringList{"0 mm", "0 mm", "0 mm", "0 mm"}));
        QCOMPARE(sampleCount(measurer), std::size_t(0));
        QCOMPARE(metrics.rowCount(), 4);
    }

    void meshesGoWhileTheMetricsStayOpen()
    {
        auto contours = std::make_unique<SlicedContoursObject>("patella");
        SlicedContoursFragment *bone = contours->newFragment("bone");
        addLine(bone, 20, {{10, 0}, {14, 0}});
        addLine(bone, 21, {{10, 0}, {14, 0}});
        auto meshes = std::make_unique<SlicedContoursTriangulator>(contours.get());
        auto measurer = std::make_unique<Measurer>(meshes->fragment(0), meshes->fragment(0), "thickness");
        SlicedMetricsModel metrics(measurer.get());
        measurer->detachFrom(contours.get());
        meshes->detachFrom(contours.get());
        contours.reset();
        waitUntilIdle(*measurer);
        QCOMPARE(sampleCount(*measurer), std::size_t(4 + 4)); // the triangulation keeps its last mesh
        measurer->detachFrom(meshes.get());
        meshes.reset();
        waitUntilIdle(*measurer);
        QCOMPARE(sampleCount(*measurer), std::size_t(0));
        metrics.detachFrom(measurer.get());
        measurer.reset();
        QCOMPARE(cells(metrics), QStringList{"Sliced metrics cannot be computed for this image."});
    }
};

QTEST_GUILESS_MAIN(TriMeshDistanceMeasurerTest)
#include "TriMeshDistanceMeasurerTest.moc"
