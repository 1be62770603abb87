#include "shell/MainWindow.h"

#include "contours/SlicedContour.h"
#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "contours/SlicedContoursSegment.h"
#include "contours/metrics/SlicedMetricsModel.h"
#include "contours/metrics/viewer/SlicedMetricsViewer.h"
#include "meshes/BitPlaneRasterizerObject.h"
#include "meshes/ColoringTriMeshRenderer.h"
#include "meshes/SlicedContoursTriangulator.h"
#include "meshes/TriMeshDistanceMeasurer.h"
#include "tests/shell/MainWindowScene.h"
#include "tests/support/DialogDriver.h"
#include "tests/support/PrivateSettings.h"
#include "tests/support/RasterRun.h"
#include "view/ImageComposition.h"
#include "view/QStackedSliceViewer.h"

#include <QSignalSpy>

#include <cmath>

// Everything that the segmentation of a patella builds follows the lines as they are edited.
class PatellaLiveTest : public QObject
{
    Q_OBJECT

public:
    static void initMain()
    {
        static const PrivateSettings settings;
        QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    }

private:
    std::unique_ptr<MainWindowScene> scene;
    SlicedContoursObject *contours = nullptr;
    BitPlaneRasterizerObject *rasterizer = nullptr;
    SlicedContoursTriangulator *triangulator = nullptr;
    TriMeshDistanceMeasurer *thickness = nullptr;
    TriMeshDistanceMeasurer *minimum = nullptr;

    SlicedContoursFragment *bone() const { return contours->fragment(0); }
    SlicedContoursFragment *surface() const { return contours->fragment(1); }
    TriMeshFragment *boneMesh() const { return triangulator->triangulationOf(bone()); }
    TriMeshFragment *surfaceMesh() const { return triangulator->triangulationOf(surface()); }

    // The bone side runs along y = 10, the surface along y = boneToSurface + 10, both from x = 10 to 20, on
    // the slices at z = 1 and z = 3. Short lines close the ends of the first slice; they stand behind the
    // first line of their slice, and so are no part of the ribbon.
    void draw(double boneToSurface) const
    {
        const double y = 10 + boneToSurface;
        for (const float z : {1.0f, 3.0f}) {
            bone()->newSegment({10, 10}, z)->addPointBack({20, 10});
            surface()->newSegment({20, y}, z)->addPointBack({10, y});
        }
        surface()->newSegment({20, 10}, 1.0f)->addPointBack({20, y});
        surface()->newSegment({10, y}, 1.0f)->addPointBack({10, 10});
    }

    static void erase(SlicedContoursFragment *fragment)
    {
        while (fragment->segmentCount() > 0)
            delete fragment->segment(0);
    }

    bool measured(double maximum) const
    {
        const auto is = [maximum](const TriMeshDistanceMeasurer *measurer) {
            return !measurer->isPending() &&
                   std::abs(measurer->sampleAt(TriMeshDistanceMeasurer::maximumKey) - maximum) < 1e-9;
        };
        return is(thickness) && is(minimum);
    }

    // The voxels of a slice with the code of the contour.
    int voxelsInside(int slice) const { return countOf(*rasterizer, slice, 127); }

    static QString cell(const SlicedMetricsViewer &viewer, int row, int column)
    {
        return viewer.model()->data(viewer.model()->index(row, column)).toString();
    }

private slots:
    void init()
    {
        scene = std::make_unique<MainWindowScene>();
        auto voxels = newVolume(MERV::TypeUShort, {30, 30, 3}, [](int x, int, int) { return x; });
        voxels->setSpacing(1.0f, 1.0f, 2.0f, 1.0f);
        scene->addVolume("knee", std::move(voxels));
        scene->select({0});
        DialogDriver driver;
        driver.expect<QMessageBox>(
            "question", [&](QMessageBox *box) { driver.click(box, box->button(QMessageBox::Yes)); });
        scene->window.startSegmentation();
        QVERIFY2(driver.verify(), driver.report());
        contours = dynamic_cast<SlicedContoursObject *>(scene->manager().image(1));
        rasterizer = dynamic_cast<BitPlaneRasterizerObject *>(scene->manager().image(3));
        triangulator = dynamic_cast<SlicedContoursTriangulator *>(scene->manager().image(4));
        thickness = dynamic_cast<TriMeshDistanceMeasurer *>(scene->manager().image(5));
        minimum = dynamic_cast<TriMeshDistanceMeasurer *>(scene->manager().image(6));
        QVERIFY(contours && rasterizer && triangulator && thickness && minimum);
    }
    void cleanup() { scene.reset(); }

    void meshesThicknessesAndRasterFollowTheLines()
    {
        QCOMPARE(boneMesh()->faceCount(), 0);
        draw(2);
        QCOMPARE(boneMesh()->faceCount(), 2); // at once
        QCOMPARE(surfaceMesh()->faceCount(), 2);
        QTRY_VERIFY(measured(2.0));
        // 10 mm x 2 mm inside the closed line of the first slice, with voxels of 1 mm; the second slice has
        // open lines.
        QTRY_COMPARE(voxelsInside(0), 20);
        QTRY_VERIFY(!rasterizer->isStale());
        QCOMPARE(voxelOf(*rasterizer, 10, 10, 0), 127);
        QCOMPARE(voxelOf(*rasterizer, 19, 11, 0), 127);
        QCOMPARE(voxelsInside(1), 0);

        erase(surface());
        QCOMPARE(surfaceMesh()->faceCount(), 0);
        QTRY_VERIFY(!thickness->isPending() && thickness->samples()->empty());
        QTRY_VERIFY(!minimum->isPending() && minimum->samples()->empty());
        QTRY_COMPARE(voxelsInside(0), 0);

        erase(bone());
        draw(5);
        QTRY_VERIFY(measured(5.0));
        QTRY_COMPARE(voxelsInside(0), 50);

        // A point more on the bone side of both slices, 1 mm below the line: 6 mm on the shortest way, and
        // the ribbons have a face more per slice.
        bone()->segment(0)->addPointBack({25, 5});
        bone()->segment(1)->addPointBack({25, 5});
        QCOMPARE(boneMesh()->faceCount(), 4);
        // (25, 5) is (5, 10) away from the surface's end at (20, 15).
        QTRY_VERIFY(!minimum->isPending() &&
                    std::abs(minimum->sampleAt({25, 5, 1}) - std::sqrt(125.0)) < 1e-9);
    }

    void coloringsStandOnTheMeshAndTheMeasurements()
    {
        for (const int row : {7, 8}) {
            const auto *coloring = dynamic_cast<ColoringTriMeshRenderer *>(scene->manager().image(row));
            QVERIFY(coloring);
            QCOMPARE(coloring->sources(),
                     (QList<ImageObject *>{triangulator, row == 7 ? thickness : minimum}));
        }
        // A view of a colouring hears of a new measurement.
        auto *viewer = MainWindowScene::topLevels<QStackedSliceViewer>().first();
        QTRY_VERIFY(!thickness->isPending() && !minimum->isPending());
        viewer->addObject(scene->manager().image(7));
        QSignalSpy repaints(viewer->imageComposition(), &ImageComposition::updated);
        int published = 0; // counted in this thread; a spy would write in the worker's
        const QObject counter;
        connect(thickness, qOverload<>(&GraphicsObject::updated), &counter, [&] { ++published; });
        thickness->remeasure();
        QTRY_COMPARE(published, 1);
        QTRY_VERIFY(repaints.count() > 0);
    }

    void metricsWindowsFollow()
    {
        scene->select({1});
        scene->window.newMetricsView();
        scene->select({5});
        scene->window.newMetricsView();
        const auto viewers = MainWindowScene::topLevels<SlicedMetricsViewer>();
        QCOMPARE(viewers.size(), 2);
        const bool inOrder = viewers[0]->windowTitle().contains("Segmentation");
        const std::unique_ptr<SlicedMetricsViewer> lines(viewers[inOrder ? 0 : 1]);
        const std::unique_ptr<SlicedMetricsViewer> depths(viewers[inOrder ? 1 : 0]);
        QCOMPARE(cell(*depths, 0, 0), QString("0 mm"));
        draw(2);
        // Rows are the slices at z = 1 and 3 and the totals; columns the contour, bone side and surface.
        QCOMPARE(cell(*lines, 0, 0), QString("20 mm^2"));
        QCOMPARE(cell(*lines, 0, 1), QString("10 mm"));
        QTRY_COMPARE(cell(*depths, 0, 0), QString("2 mm"));
        erase(surface());
        erase(bone());
        draw(4);
        QCOMPARE(cell(*lines, 0, 0), QString("40 mm^2"));
        QTRY_COMPARE(cell(*depths, 0, 0), QString("4 mm"));
    }

    // Closing what others stand on leaves them with what they have.
    void closingTheContours_leavesTheRest()
    {
        draw(2);
        QTRY_VERIFY(measured(2.0));
        QTRY_COMPARE(voxelsInside(0), 20);
        scene->manager().closeImage(scene->manager().index(1, 0));
        QCOMPARE(scene->manager().imageCount(), 8);
        QVERIFY(triangulator->sources().isEmpty());
        QVERIFY(rasterizer->sources().isEmpty());
        QTest::qWait(100);
        QCOMPARE(voxelsInside(0), 20);
        QVERIFY(measured(2.0));
        scene->manager().closeImage(scene->manager().index(3, 0)); // the triangulation
        QVERIFY(thickness->sources().isEmpty());
    }
};

QTEST_MAIN(PatellaLiveTest)
#include "PatellaLiveTest.moc"
