// A reader's network under a random hand: contours are drawn, joined, erased and closed while two
// measurements, a raster and a repainting view follow. What the workers leave when they have caught up is
// compared with plain scans of the mesh that stands there.
//
// TEVORA_STRESS_SECONDS sets the time, TEVORA_STRESS_SEED the hand. With TEVORA_PLANT_RACE=1 a second thread
// reads a flag that this one writes without any lock, to see that the sanitizer looks.
#include "contours/SlicedContour.h"
#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "contours/SlicedContoursSegment.h"
#include "contours/metrics/SlicedMetricsModel.h"
#include "meshes/BitPlaneRasterizerObject.h"
#include "meshes/ColoringTriMeshRenderer.h"
#include "meshes/SlicedContoursTriangulator.h"
#include "meshes/TriMeshDistanceMeasurer.h"
#include "meshes/TriMeshFragment.h"
#include "meshes/geometry/ClosestPoint.h"
#include "objects/MervImageObject.h"
#include "objects/manager/ImageManager.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/TestVolume.h"
#include "view/GraphicsPod.h"
#include "view/ImageComposition.h"
#include "view/QStackedSliceView.h"
#include "view/QStackedSliceViewer.h"

#include <QElapsedTimer>
#include <QTest>

#include <map>
#include <memory>
#include <random>
#include <thread>

namespace {

constexpr int volumeSize = 40, volumeDepth = 6;
constexpr float sliceMm = 2.0f;
constexpr int fewestActions = 100;

// One loop a slice: the bone side runs along y = 10, the surface side comes back over y = 20.
void drawLoop(SlicedContoursObject &contours, int slice, double wave)
{
    const float z = (static_cast<float>(slice) + 0.5f) * sliceMm;
    SlicedContoursSegment *bone = contours.fragment(0)->newSegment({5, 10}, z);
    bone->beginUpdates();
    for (int x = 6; x <= 30; ++x)
        bone->addPointBack({static_cast<double>(x), 10 + wave * (x % 3)});
    bone->endUpdates();
    SlicedContoursSegment *surface = contours.fragment(1)->newSegment({5, 10}, z);
    surface->beginUpdates();
    for (int x = 6; x < 30; ++x)
        surface->addPointBack({static_cast<double>(x), 20 - wave * (x % 4)});
    surface->addPointBack({30, bone->lastPoint().y()});
    surface->endUpdates();
}

// The faces that a fragment's lines make: the first line of each level is stitched to that of the next one.
int expectedFaces(const SlicedContoursFragment &fragment)
{
    std::map<float, int> levels;
    for (int i = 0; i < fragment.segmentCount(); ++i)
        levels.emplace(fragment.segment(i)->z(), fragment.segment(i)->pointCount());
    int faces = 0;
    for (auto level = levels.begin(), next = level; level != levels.end(); level = next) {
        if (++next != levels.end() && level->second > 0 && next->second > 0)
            faces += level->second + next->second - 2;
    }
    return faces;
}

} // namespace

class NetworkStressTest : public QObject
{
    Q_OBJECT

private:
    template <class Object>
    Object *find() const
    {
        for (int row = 0; row < manager->imageCount(); ++row)
            if (auto *object = qobject_cast<Object *>(manager->image(row)))
                return object;
        return nullptr;
    }
    void close(ImageObject *object)
    {
        for (int row = 0; row < manager->imageCount(); ++row)
            if (manager->image(row) == object)
                return manager->closeImage(manager->index(row, 0));
    }
    int below(int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); }
    QPointF somewhere() { return {below(400) / 10.0, below(400) / 10.0}; }

    void addMeasurer(int definition)
    {
        auto *mesh = find<SlicedContoursTriangulator>();
        auto *measurer =
            new TriMeshDistanceMeasurer(mesh->fragment(0), mesh->fragment(1), definition, "thickness");
        manager->addImage(measurer);
        auto *coloring = new ColoringTriMeshRenderer(mesh->fragment(0), measurer, "coloring");
        manager->addImage(coloring);
        show(coloring);
    }
    void show(ImageObject *object)
    {
        viewer->addObject(object);
        ImageComposition *composition = viewer->imageComposition();
        composition->pod(composition->podCount() - 1)->setDisplayScope(3 + below(3));
    }
    void build()
    {
        auto *contours = new SlicedContoursObject("lines");
        SlicedContour *contour = contours->newContour("cartilage");
        for (const char *label : {"bone", "surface"})
            contour->addFragmentReference(contours->newFragment(label));
        manager->addImage(contours);
        auto *raster =
            new BitPlaneRasterizerObject(contours, volumeSize, volumeSize, volumeDepth, 1, 1, sliceMm);
        raster->setBitCode(contour, 127);
        raster->setDefaultBitCode(-1);
        manager->addImage(raster);
        manager->addImage(new SlicedContoursTriangulator(contours));
        for (ImageObject *object :
             std::initializer_list<ImageObject *>{contours, raster, find<SlicedContoursTriangulator>()})
            show(object);
        for (const int definition : {0, 2})
            addMeasurer(definition);
        for (int slice = 0; slice < volumeDepth; ++slice)
            drawLoop(*contours, slice, below(20) / 10.0);
    }
    void tearDownAllButTheVolume()
    {
        while (manager->imageCount() > 1)
            manager->closeImage(manager->index(1 + below(manager->imageCount() - 1), 0));
    }

    void editALine(SlicedContoursObject &contours)
    {
        SlicedContoursFragment *fragment = contours.fragment(below(contours.fragmentCount()));
        const int count = fragment->segmentCount();
        SlicedContoursSegment *any = count == 0 ? nullptr : fragment->segment(below(count));
        const auto newLine = [&](int points) {
            auto *line =
                fragment->newSegment(somewhere(), (static_cast<float>(below(volumeDepth)) + 0.5f) * sliceMm);
            line->beginUpdates();
            for (int i = 0; i < points; ++i)
                line->addPointBack(somewhere());
            line->endUpdates();
        };
        switch (below(7)) {
        case 0:
            newLine(below(10));
            break;
        case 1:
            if (count > 3)
                delete any;
            break;
        case 2:
            if (any != nullptr)
                any->addPointFront(somewhere());
            break;
        case 3:
            if (any != nullptr && any->pointCount() > 1) {
                auto *patch = fragment->newSegment(any->point(0), any->z());
                patch->addPointBack(somewhere());
                patch->addPointBack(any->lastPoint());
                any->replaceWith(patch, nullptr);
            }
            break;
        case 4:
            if (contours.fragmentCount() < 6)
                contours.newFragment("another")->newSegment(somewhere(), sliceMm)->addPointBack(somewhere());
            else
                delete contours.fragment(contours.fragmentCount() - 1);
            break;
        default:
            for (int i = 0; any != nullptr && i < 2; ++i)
                any->addPointBack(somewhere());
        }
    }
    void actOnce()
    {
        auto *contours = find<SlicedContoursObject>();
        const int choice = below(40);
        if (contours == nullptr || choice == 0) {
            tearDownAllButTheVolume();
            build();
        } else if (choice == 1) {
            manager->closeImage(manager->index(1 + below(manager->imageCount() - 1), 0));
        } else if (choice == 2 && find<SlicedContoursTriangulator>() != nullptr &&
                   manager->imageCount() < 14) {
            addMeasurer(below(3));
        } else if (auto *raster = find<BitPlaneRasterizerObject>(); choice == 3 && raster != nullptr) {
            raster->setBitCode(contours->contour(0), below(256));
            raster->setDefaultBitCode(below(256) - 128);
            raster->invalidateRasterization();
        } else {
            editALine(*contours);
        }
    }

    bool workersAreIdle() const
    {
        for (int row = 0; row < manager->imageCount(); ++row) {
            const auto *measurer = qobject_cast<TriMeshDistanceMeasurer *>(manager->image(row));
            const auto *raster = qobject_cast<RasterizerObject *>(manager->image(row));
            if ((measurer != nullptr && measurer->isPending()) || (raster != nullptr && raster->isStale()))
                return false;
        }
        return true;
    }
    // A fragment that was only added, or a line that was only begun, announces nothing: hence the rebuilding.
    void verifyMesh()
    {
        auto *mesh = find<SlicedContoursTriangulator>();
        auto *contours = find<SlicedContoursObject>();
        if (mesh == nullptr || contours == nullptr)
            return;
        mesh->retriangulate();
        for (int i = 0; i < contours->fragmentCount(); ++i) {
            const TriMeshFragment *ribbon = mesh->triangulationOf(contours->fragment(i));
            QVERIFY((ribbon != nullptr) || mesh->sources().isEmpty());
            if (ribbon != nullptr)
                QCOMPARE(ribbon->faceCount(), expectedFaces(*contours->fragment(i)));
        }
    }
    // Against a scan of the meshes as they are now.
    void verifyMinimalThickness(const TriMeshDistanceMeasurer &measurer)
    {
        QTRY_VERIFY_WITH_TIMEOUT(workersAreIdle(), 30000);
        auto *mesh = find<SlicedContoursTriangulator>();
        const LockedSamples samples = measurer.samples();
        for (const MERV::BRep::TriFace &face : mesh->fragment(0)->all()) {
            for (int corner = 0; corner < 3; ++corner) {
                const MERV::BRep::Point &vertex = face.vertex(corner);
                const auto nearest = MERV::BRep::closestPointByScan(mesh->fragment(1)->all(), vertex);
                const Vector3 key{vertex.x, vertex.y, vertex.z};
                QCOMPARE(samples.contains(key), nearest.point.valid);
                if (nearest.point.valid)
                    QCOMPARE(samples.value(key), distance(nearest.point, vertex));
            }
        }
    }

    std::unique_ptr<CapturedOutput> output;
    std::unique_ptr<ImageManager> manager;
    QPointer<QStackedSliceViewer> viewer;
    std::mt19937 random;

private slots:
    void init()
    {
        output = std::make_unique<CapturedOutput>();
        manager = std::make_unique<ImageManager>(nullptr);
        auto image = newVolume(MERV::TypeUShort, {volumeSize, volumeSize, volumeDepth},
                               [](int x, int y, int) { return x + y; });
        image->setSpacing(1.0f, 1.0f, sliceMm, 1.0f);
        manager->addImage(new MervImageObject(image.release(), "/somewhere/knee.mhd"));
        viewer = new QStackedSliceViewer(manager.get(), nullptr);
        viewer->resize(300, 320);
        viewer->addObject(manager->image(0));
        viewer->show();
        QVERIFY(QTest::qWaitForWindowExposed(viewer));
        random.seed(static_cast<unsigned>(qEnvironmentVariableIntValue("TEVORA_STRESS_SEED") + 1));
    }
    void cleanup()
    {
        delete viewer;
        while (manager->imageCount() > 0)
            manager->closeImage(manager->index(0, 0));
        manager.reset();
        output.reset();
    }

    void editingWhileWorkersRunAndAViewRepaints()
    {
        int seconds = qEnvironmentVariableIntValue("TEVORA_STRESS_SECONDS");
        seconds = seconds > 0 ? seconds : 4;
        build();
        viewer->resetView();
        QElapsedTimer clock;
        clock.start();
        int rounds = 0;
        for (; rounds < fewestActions || clock.elapsed() < seconds * 1000; ++rounds) {
            actOnce();
            if (QTest::currentTestFailed())
                return;
            viewer->stackedSliceView()->requestRepaint();
            QCoreApplication::processEvents();
            if (rounds % 100 == 0)
                verifyMesh();
        }
        qInfo("%d actions", rounds);
        tearDownAllButTheVolume();
        build();
        TriMeshDistanceMeasurer *minimal = nullptr; // the second one that build() makes
        for (int row = 0; row < manager->imageCount(); ++row)
            if (auto *measurer = qobject_cast<TriMeshDistanceMeasurer *>(manager->image(row)))
                minimal = measurer;
        QVERIFY(minimal != nullptr);
        for (int round = 0; round < 5 && !QTest::currentTestFailed(); ++round) {
            for (int i = 0; i < 10; ++i)
                editALine(*find<SlicedContoursObject>());
            verifyMesh();
            verifyMinimalThickness(*minimal);
        }
    }
};

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIntValue("TEVORA_PLANT_RACE") == 1) {
        int unguarded = 0;
        std::thread reader([&unguarded] {
            for (int i = 0; i < 1000; ++i)
                if (unguarded < 0)
                    std::abort();
        });
        for (int i = 0; i < 1000; ++i)
            ++unguarded;
        reader.join();
        return 0;
    }
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QApplication application(argc, argv);
    NetworkStressTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "NetworkStressTest.moc"
