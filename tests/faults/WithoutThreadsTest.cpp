// The system gives no more threads: workers do not run, and everything else goes on.
#include "Common/ParallelFor.h"
#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "contours/SlicedContoursSegment.h"
#include "demo/PhantomVolume.h"
#include "meshes/BitPlaneRasterizerObject.h"
#include "meshes/TriMeshDistanceMeasurer.h"
#include "objects/manager/LoadProgress.h"
#include "platform/WorkerThread.h"
#include "tests/shell/MainWindowScene.h"
#include "tests/support/DicomFileBuilder.h"
#include "tests/support/NoThreads.h"
#include "tests/support/PrivateSettings.h"

#include <QRegularExpression>
#include <QTest>

#include <algorithm>
#include <numeric>
#include <stdexcept>
#include <system_error>
#include <thread>

class WithoutThreadsTest : public QObject
{
    Q_OBJECT

public:
    static void initMain()
    {
        static const PrivateSettings settings;
        QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    }

private:
    static void expectOneLine()
    {
        QTest::ignoreMessage(QtCriticalMsg, QRegularExpression("^QThread::start: Thread creation error"));
    }

private slots:
    // The threads of the OpenGL driver are there from now on.
    void initTestCase()
    {
        const CapturedOutput output;
        SlicedContoursObject source;
        BitPlaneRasterizerObject(&source, 4, 4, 2, 1, 1, 1);
    }
    void init() { QTest::failOnWarning(QRegularExpression(".*")); }

    void thereAreNoThreads()
    {
        const NoThreads none;
        QVERIFY(none.isSet);
        QVERIFY_THROWS_EXCEPTION(std::system_error, std::thread([] {}).join());
    }

    void workerThread_joinsAtOnce()
    {
        bool ran = false;
        WorkerThread worker([&ran] { ran = true; });
        {
            const NoThreads none;
            expectOneLine();
            worker.start();
        }
        worker.join();
        QVERIFY(!ran);
        worker.start();
        worker.join();
        QVERIFY(ran);
    }

    void parallelFor_worksAlone()
    {
        const NoThreads none;
        std::vector<int> numbers(100);
        MERV::parallelFor(
            100, [&](int i) { numbers[static_cast<std::size_t>(i)] = i; }, 8);
        QCOMPARE(std::accumulate(numbers.begin(), numbers.end(), 0), 4950);
    }

    // As when a volume is saved, whose file is open and empty by then.
    void workApart_isDoneInPlace()
    {
        const NoThreads none;
        std::thread::id worker;
        QVERIFY(LoadProgress::runApart([&] {
            worker = std::this_thread::get_id();
            return true;
        }));
        QVERIFY(worker == std::this_thread::get_id());
        QVERIFY(!LoadProgress::runApart([] { return false; }));
        QVERIFY_THROWS_EXCEPTION(std::runtime_error, LoadProgress::runApart([]() -> bool {
                                     throw std::runtime_error("the disk is full");
                                 }));
    }

    void measurer_hasNoSamples()
    {
        MainWindowScene scene;
        const auto *mesh = scene.addMesh("mesh", {"bone", "surface"});
        {
            const NoThreads none;
            expectOneLine();
            scene.add(new TriMeshDistanceMeasurer(mesh->fragment(0), mesh->fragment(1), "thickness"));
        }
        auto *measurer = scene.fromEnd<TriMeshDistanceMeasurer>();
        measurer->remeasure();
        QTest::qWait(50);
        QVERIFY(measurer->isPending());
        QVERIFY(measurer->samples()->empty());
        scene.manager().stopWorkers();
        scene.select({1});
        scene.window.closeImage();
        QCOMPARE(scene.manager().imageCount(), 1);
    }

    void rasterizer_staysStaleAndEmpty()
    {
        MainWindowScene scene;
        auto *contours = scene.add(new SlicedContoursObject("lines"));
        {
            const NoThreads none;
            expectOneLine();
            scene.add(new BitPlaneRasterizerObject(contours, 8, 8, 2, 1, 1, 1));
        }
        auto *raster = scene.fromEnd<BitPlaneRasterizerObject>();
        raster->invalidateRasterization();
        QTest::qWait(50);
        QVERIFY(raster->isStale());
        QCOMPARE(raster->voxels()->getMaximum(), 0.0f);
        scene.select({0});
        scene.window.closeImage();
        scene.select({0});
        scene.window.closeImage();
        QCOMPARE(scene.manager().imageCount(), 0);
    }

    void segmentation_isSetUp()
    {
        MainWindowScene scene;
        scene.addVolume("knee", newVolume(MERV::TypeUShort, {8, 8, 2}));
        scene.select({0});
        {
            const NoThreads none;
            expectOneLine();
            scene.window.startSegmentationFemurTibia();
        }
        QCOMPARE(scene.manager().imageCount(), 4);
    }

    void phantom_isMade()
    {
        const NoThreads none;
        demo::PhantomParameters parameters;
        parameters.width = parameters.height = 16;
        parameters.slices = 5;
        const std::vector<std::int16_t> voxels = demo::phantomVoxels(parameters);
        QCOMPARE(voxels.size(), std::size_t(16 * 16 * 5));
        QVERIFY(
            std::any_of(voxels.end() - 16 * 16, voxels.end(), [](std::int16_t value) { return value > 0; }));
    }

    void dicomSeries_isLoaded()
    {
        const TemporaryFolder folder;
        for (int i = 0; i < 20; ++i)
            dicomSlice(2, 2, {1, 2, 3, 4}, i).write(folder / std::to_string(i));
        MainWindowScene scene;
        const NoThreads none;
        QCOMPARE(scene.manager().loadDicomSeries(QString::fromStdString(folder.string())).size(), 1);
        QCOMPARE(scene.fromEnd<MervImageObject>()->voxels()->getDepth(), 20);
    }
};

QTEST_MAIN(WithoutThreadsTest)
#include "WithoutThreadsTest.moc"
