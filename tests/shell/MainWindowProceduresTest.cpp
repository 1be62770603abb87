#include "shell/MainWindow.h"

#include "contours/ConventionalSliceEdgePointExtractor.h"
#include "contours/SlicedContour.h"
#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "contours/SlicedContoursSegment.h"
#include "meshes/BitPlaneRasterizerObject.h"
#include "meshes/ColoringTriMeshRenderer.h"
#include "meshes/SlicedContoursTriangulator.h"
#include "meshes/TriMeshAligner.h"
#include "meshes/TriMeshDistanceMeasurer.h"
#include "serialization/formats/MhdSerializer.h"
#include "serialization/formats/SlicSerializer.h"
#include "tests/shell/MainWindowScene.h"
#include "tests/support/DialogDriver.h"
#include "tests/support/DrawnBox.h"
#include "tests/support/PrivateSettings.h"
#include "tests/support/RasterRun.h"
#include "view/GraphicsPod.h"
#include "view/ImageComposition.h"
#include "view/QStackedSliceViewer.h"

#include <QDir>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <chrono>
#include <cmath>
#include <fstream>
#include <future>
#include <thread>

namespace {

const QString question("Do you want the thickness to be automatically calculated? Note that this might "
                       "impact performance during segmentation.");

// 30 x 20 voxels in 3 slices of 1 x 0.5 x 2 mm.
std::unique_ptr<MERV::Image> kneeVoxels()
{
    auto voxels = newVolume(MERV::TypeUShort, {30, 20, 3}, [](int x, int, int) { return x < 15 ? 0 : 200; });
    voxels->setSpacing(1.0f, 0.5f, 2.0f, 1.0f);
    return voxels;
}

// The question of the patella, answered with a click on a button that bears the text.
void expectQuestion(DialogDriver &driver, const MainWindow &window, const QString &answer)
{
    driver.expectBox(QMessageBox::Question, "Start Segmentation of Patella ...", question, answer,
                     [&driver, &window](QMessageBox *box) {
                         driver.check("buttons", QString::number(box->standardButtons()),
                                      QString::number(QMessageBox::Yes | QMessageBox::No));
                         driver.check("default", box->defaultButton()->text().remove('&'), "No");
                         driver.check("parent", box->parent() == &window ? "window" : "other", "window");
                     });
}

QStringList labelsIn(ImageManager &manager, int firstRow)
{
    QStringList labels;
    for (int row = firstRow; row < manager.imageCount(); ++row)
        labels << manager.image(row)->label();
    return labels;
}

QStringList classesIn(ImageManager &manager, int firstRow)
{
    QStringList classes;
    for (int row = firstRow; row < manager.imageCount(); ++row)
        classes << manager.image(row)->metaObject()->className();
    return classes;
}

QList<ImageObject *> shownIn(const QStackedSliceViewer *viewer)
{
    QList<ImageObject *> shown;
    for (int row = 0; row < viewer->imageComposition()->podCount(); ++row)
        shown << viewer->imageComposition()->pod(row)->object();
    return shown;
}

// The names of contours with their fragments, for comparison: "contour: fragment, fragment".
QStringList structureOf(const SlicedContoursObject &contours)
{
    QStringList lines;
    for (int i = 0; i < contours.contourCount(); ++i) {
        QStringList fragments;
        for (int k = 0; k < contours.contour(i)->fragmentCount(); ++k)
            fragments << contours.contour(i)->fragment(k)->label();
        lines << contours.contour(i)->label() + ": " + fragments.join(", ");
    }
    return lines;
}

SlicedContoursSegment *drawLine(SlicedContoursFragment *fragment, float z, const QPointF &from,
                                const QPointF &to)
{
    SlicedContoursSegment *segment = fragment->newSegment(from, z);
    segment->addPointBack(to);
    return segment;
}

// A closed rectangle of two lines, one in each fragment.
void drawRectangle(SlicedContoursFragment *left, SlicedContoursFragment *right, float z, const QRectF &box)
{
    SlicedContoursSegment *segment = left->newSegment(box.topLeft(), z);
    segment->addPointBack(box.bottomLeft());
    segment->addPointBack(box.bottomRight());
    segment = right->newSegment(box.bottomRight(), z);
    segment->addPointBack(box.topRight());
    segment->addPointBack(box.topLeft());
}

bool near(double value, double wanted)
{
    return std::abs(value - wanted) < 1e-6;
}

SampleMap samplesOf(const SparselySampledImageObject &object)
{
    const LockedSamples samples = object.samples();
    return *samples;
}

} // namespace

class MainWindowProceduresTest : public QObject
{
    Q_OBJECT

public:
    static void initMain()
    {
        static const PrivateSettings settings;
        QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    }

private:
    QTemporaryDir folder;

    // Contours with two lines per fragment, on the planes z = 1 and z = 3: the first fragment along y = 10,
    // the others 2 above it at x = 10 and 12 above it at x = 20.
    QString writeContours(const QString &name, int fragments, bool withContour = true)
    {
        SlicedContoursObject contours("saved");
        if (withContour)
            contours.newContour("patellar cartilage");
        for (int i = 0; i < fragments; ++i) {
            SlicedContoursFragment *fragment = contours.newFragment(QString("fragment %1").arg(i));
            for (const float z : {1.0f, 3.0f})
                drawLine(fragment, z, QPointF(10, i == 0 ? 10 : 12), QPointF(20, i == 0 ? 10 : 22));
        }
        const QString path = folder.filePath(name);
        std::ofstream stream(path.toStdString(), std::ios::binary);
        return SlicSerializer().serialize(&contours, stream) ? path : QString();
    }

    QString writeVolume(const QString &name, std::unique_ptr<MERV::Image> voxels)
    {
        MervImageObject volume(voxels.release(), QString());
        const QString path = folder.filePath(name);
        return MhdSerializer().serialize(&volume, path.toStdWString().c_str()) ? path : QString();
    }

    static void expectLoaded(DialogDriver &driver, const QString &path)
    {
        driver.expectFileDialog("Load images", path);
        driver.expectBox(QMessageBox::Information, "Tevora", "1 image(s) have been loaded.", QMessageBox::Ok);
    }

    static void runPatella(MainWindowScene &scene, const QString &answer)
    {
        DialogDriver driver;
        expectQuestion(driver, scene.window, answer);
        scene.window.startSegmentation();
        QVERIFY2(driver.verify(), driver.report());
    }

    static QStackedSliceViewer *onlyViewer()
    {
        const auto viewers = MainWindowScene::topLevels<QStackedSliceViewer>();
        return viewers.size() == 1 ? viewers.first() : nullptr;
    }

private slots:
    void initTestCase() { QVERIFY(folder.isValid()); }
    void init() { QDir::setCurrent(folder.path()); }
    void cleanup() { QVERIFY(MainWindowScene::topLevels<QStackedSliceViewer>().isEmpty()); }

    void patella_withoutThickness_hasFourNewRows()
    {
        MainWindowScene scene;
        MervImageObject *volume = scene.addVolume("knee", kneeVoxels());
        scene.select({0});
        runPatella(scene, "No");
        QCOMPARE(classesIn(scene.manager(), 1),
                 (QStringList{"SlicedContoursObject", "ConventionalSliceEdgePointExtractor",
                              "BitPlaneRasterizerObject", "SlicedContoursTriangulator"}));
        QCOMPARE(scene.manager().image(1)->label(), QString("Segmentation of knee"));
        auto *contours = dynamic_cast<SlicedContoursObject *>(scene.manager().image(1));
        ImageObject *extractor = scene.manager().image(2);
        auto *rasterizer = dynamic_cast<BitPlaneRasterizerObject *>(scene.manager().image(3));
        auto *triangulator = dynamic_cast<SlicedContoursTriangulator *>(scene.manager().image(4));
        QCOMPARE(structureOf(*contours),
                 QStringList{"patellar cartilage: cartilage bone interface, cartilage surface"});
        QCOMPARE(contours->fragmentCount(), 2);
        QCOMPARE(extractor->sources(), QList<ImageObject *>{volume});
        QCOMPARE(rasterizer->sources(), QList<ImageObject *>{contours});
        QCOMPARE(triangulator->sources(), QList<ImageObject *>{contours});
        for (int row = 1; row < 5; ++row)
            QVERIFY(scene.manager().image(row)->parent() == nullptr);
        QCOMPARE(rasterizer->voxels()->getWidth(), 30);
        QCOMPARE(rasterizer->voxels()->getHeight(), 20);
        QCOMPARE(rasterizer->voxels()->getDepth(), 3);
        QCOMPARE(rasterizer->voxels()->getSpacing(0), 1.0f);
        QCOMPARE(rasterizer->voxels()->getSpacing(1), 0.5f);
        QCOMPARE(rasterizer->voxels()->getSpacing(2), 2.0f);
        QCOMPARE(int(rasterizer->bitCode(contours->contour(0))), 127);
        QCOMPARE(rasterizer->value(contours, 2, 8), 255u);
        QVERIFY(!rasterizer->isStale()); // nothing asks for the first raster
        QPointer<QStackedSliceViewer> viewer = onlyViewer();
        QVERIFY(viewer && viewer->isVisible());
        QCOMPARE(viewer->parent(), &scene.window);
        QCOMPARE(shownIn(viewer), (QList<ImageObject *>{volume, extractor, contours}));
        // Closing the viewer leaves the objects.
        viewer->close();
        QTRY_VERIFY(viewer.isNull());
        QCOMPARE(scene.manager().imageCount(), 5);
    }

    // The default answer is No.
    void patella_returnAnswersNo()
    {
        MainWindowScene scene;
        scene.addVolume("knee", kneeVoxels());
        scene.select({0});
        DialogDriver driver;
        driver.expect<QMessageBox>("question",
                                   [](QMessageBox *box) { QTest::keyClick(box, Qt::Key_Return); });
        scene.window.startSegmentation();
        QVERIFY2(driver.verify(), driver.report());
        QCOMPARE(scene.manager().imageCount(), 5);
    }

    void patella_withThickness_hasEightNewRows()
    {
        MainWindowScene scene;
        scene.addVolume("knee", kneeVoxels());
        scene.select({0});
        runPatella(scene, "Yes");
        QCOMPARE(
            classesIn(scene.manager(), 1),
            (QStringList{"SlicedContoursObject", "ConventionalSliceEdgePointExtractor",
                         "BitPlaneRasterizerObject", "SlicedContoursTriangulator", "TriMeshDistanceMeasurer",
                         "TriMeshDistanceMeasurer", "ColoringTriMeshRenderer", "ColoringTriMeshRenderer"}));
        QCOMPARE(labelsIn(scene.manager(), 5),
                 (QStringList{
                     "thickness of knee", "minimum thickness of knee",
                     "coloring of cartilage bone interface (triangulated) according to thickness",
                     "coloring of cartilage bone interface (triangulated) according to minimum thickness"}));
        ImageObject *triangulator = scene.manager().image(4);
        for (const int row : {5, 6}) {
            QCOMPARE(scene.manager().image(row)->sources(), QList<ImageObject *>{triangulator});
            QCOMPARE(scene.manager().image(row + 2)->sources(),
                     (QList<ImageObject *>{triangulator, scene.manager().image(row)}));
        }
        QCOMPARE(shownIn(onlyViewer()),
                 (QList<ImageObject *>{scene.manager().image(0), scene.manager().image(2),
                                       scene.manager().image(1)}));
    }

    // One measurement follows the normals, the other one takes the shortest way, both from bone to surface.
    void patella_measuresBothThicknesses()
    {
        MainWindowScene scene;
        scene.addVolume("knee", kneeVoxels());
        scene.select({0});
        runPatella(scene, "Yes");
        auto *contours = dynamic_cast<SlicedContoursObject *>(scene.manager().image(1));
        const auto *thickness = dynamic_cast<TriMeshDistanceMeasurer *>(scene.manager().image(5));
        const auto *minimum = dynamic_cast<TriMeshDistanceMeasurer *>(scene.manager().image(6));
        for (const float z : {1.0f, 3.0f}) {
            drawLine(contours->fragment(0), z, {10, 10}, {20, 10});
            drawLine(contours->fragment(1), z, {10, 12}, {20, 22});
        }
        QTRY_VERIFY(thickness->hasSample({20, 10, 3}));
        QTRY_VERIFY(minimum->hasSample({20, 10, 3}));
        QTRY_VERIFY(!thickness->isPending() && !minimum->isPending());
        // Along y the surface is 2 and 12 away; the foot of (20, 10) on the line y = x + 2 is (14, 16), that
        // of (10, 10) would lie before its end at (10, 12).
        QVERIFY(near(thickness->sampleAt({10, 10, 1}), 2.0));
        QVERIFY(near(thickness->sampleAt({20, 10, 1}), 12.0));
        QVERIFY(near(minimum->sampleAt({10, 10, 1}), 2.0));
        QVERIFY(near(minimum->sampleAt({20, 10, 1}), 6.0 * std::sqrt(2.0)));
    }

    void patella_colorsTheBoneSide()
    {
        MainWindowScene scene;
        scene.addVolume("knee", kneeVoxels());
        scene.select({0});
        runPatella(scene, "Yes");
        auto *contours = dynamic_cast<SlicedContoursObject *>(scene.manager().image(1));
        // Ribbons from y = 10 up to 14 on the bone side, from 22 to 26 on the surface.
        for (const float z : {1.0f, 3.0f}) {
            drawLine(contours->fragment(0), z, {10, 8.0 + 2.0 * z}, {20, 8.0 + 2.0 * z});
            drawLine(contours->fragment(1), z, {10, 20.0 + 2.0 * z}, {20, 20.0 + 2.0 * z});
        }
        for (const int row : {7, 8}) {
            const QRectF box = drawnBox(*scene.manager().image(row));
            QVERIFY(!box.isEmpty());
            QVERIFY(QRectF(9.5, 9.5, 11, 5).contains(box));
        }
    }

    void labels_takeTheNameAsItIs()
    {
        MainWindowScene scene;
        scene.addVolume("a%1b%s", kneeVoxels());
        scene.select({0});
        runPatella(scene, "Yes");
        QCOMPARE(scene.manager().image(1)->label(), QString("Segmentation of a%1b%s"));
        QCOMPARE(scene.manager().image(5)->label(), QString("thickness of a%1b%s"));
        QCOMPARE(scene.manager().image(6)->label(), QString("minimum thickness of a%1b%s"));
        scene.window.startSegmentationFemurTibia();
        QCOMPARE(scene.manager().image(9)->label(), QString("Segmentation of a%1b%s"));
    }

    void secondRun_buildsANetworkOfItsOwn()
    {
        MainWindowScene scene;
        scene.addVolume("knee", kneeVoxels());
        scene.select({0});
        runPatella(scene, "Yes");
        scene.select({0});
        runPatella(scene, "Yes");
        QCOMPARE(scene.manager().imageCount(), 17);
        QCOMPARE(classesIn(scene.manager(), 1).mid(0, 8), classesIn(scene.manager(), 9));
        QCOMPARE(MainWindowScene::topLevels<QStackedSliceViewer>().size(), 2);
        auto *first = dynamic_cast<SlicedContoursObject *>(scene.manager().image(1));
        auto *second = dynamic_cast<SlicedContoursObject *>(scene.manager().image(9));
        QSignalSpy own(scene.manager().image(4), SIGNAL(updated()));
        QSignalSpy others(scene.manager().image(12), SIGNAL(updated()));
        drawLine(first->fragment(0), 1.0f, {1, 1}, {5, 1});
        QVERIFY(own.count() > 0);
        QCOMPARE(others.count(), 0);
        QCOMPARE(second->fragment(0)->segmentCount(), 0);
        QCOMPARE(scene.manager().image(12)->sources(), QList<ImageObject *>{second});
    }

    void femurAndTibia_haveThreeNewRows()
    {
        MainWindowScene scene;
        MervImageObject *volume = scene.addVolume("knee", kneeVoxels());
        scene.select({0});
        DialogDriver driver; // nothing is asked
        scene.window.startSegmentationFemurTibia();
        QVERIFY2(driver.verify(), driver.report());
        QCOMPARE(
            classesIn(scene.manager(), 1),
            (QStringList{"SlicedContoursObject", "BitPlaneRasterizerObject", "SlicedContoursTriangulator"}));
        auto *contours = dynamic_cast<SlicedContoursObject *>(scene.manager().image(1));
        QCOMPARE(contours->label(), QString("Segmentation of knee"));
        QCOMPARE(
            structureOf(*contours),
            (QStringList{"femoral cartilage: femoral cartilage bone interface, femoral cartilage surface",
                         "tibial cartilage: tibial cartilage bone interface, tibial cartilage surface"}));
        auto *rasterizer = dynamic_cast<BitPlaneRasterizerObject *>(scene.manager().image(2));
        QCOMPARE(int(rasterizer->bitCode(contours->contour(0))), 127);
        QCOMPARE(int(rasterizer->bitCode(contours->contour(1))), 0); // no code of its own
        QCOMPARE(rasterizer->value(contours, 2, 8), 255u);
        QCOMPARE(shownIn(onlyViewer()), (QList<ImageObject *>{volume, contours}));
        QVERIFY(onlyViewer()->isVisible());
    }

    void tibia_isRasterizedWithTheDefaultCode()
    {
        MainWindowScene scene;
        scene.addVolume("knee", kneeVoxels());
        scene.select({0});
        scene.window.startSegmentationFemurTibia();
        auto *contours = dynamic_cast<SlicedContoursObject *>(scene.manager().image(1));
        auto *rasterizer = dynamic_cast<BitPlaneRasterizerObject *>(scene.manager().image(2));
        // Voxels are 1 x 0.5 mm: 4 mm x 3 mm are 4 x 6 voxels, 6 mm x 2 mm are 6 x 4 voxels.
        drawRectangle(contours->fragment(0), contours->fragment(1), 1.0f, QRectF(2, 2, 4, 3));
        drawRectangle(contours->fragment(2), contours->fragment(3), 3.0f, QRectF(12, 4, 6, 2));
        QTRY_COMPARE(countOf(*rasterizer, 0, 127), 24);
        QTRY_COMPARE(countOf(*rasterizer, 1, 255), 24);
        QTRY_VERIFY(!rasterizer->isStale());
        QCOMPARE(countOf(*rasterizer, 0, 0), 600 - 24);
        QCOMPARE(countOf(*rasterizer, 1, 0), 600 - 24);
        QCOMPARE(voxelOf(*rasterizer, 12, 8, 1), 255);
        QCOMPARE(voxelOf(*rasterizer, 17, 11, 1), 255);
        QCOMPARE(countOf(*rasterizer, 2, 0), 600);
    }

    void onAnotherObject_onlyAViewerOpens_data()
    {
        QTest::addColumn<int>("row");
        QTest::newRow("contours") << 0;
        QTest::newRow("mesh") << 1;
        QTest::newRow("volume without voxels") << 2;
    }
    void onAnotherObject_onlyAViewerOpens()
    {
        QFETCH(int, row);
        MainWindowScene scene;
        scene.add(new SlicedContoursObject("lines"));
        scene.addMesh("mesh", {"one"});
        scene.add(new MervImageObject(nullptr, QString()));
        scene.select({row});
        DialogDriver driver;
        for (auto procedure : {&MainWindow::startSegmentation, &MainWindow::startSegmentationFemurTibia,
                               &MainWindow::testMeshAlignment}) {
            (scene.window.*procedure)();
            QStackedSliceViewer *viewer = onlyViewer();
            QVERIFY(viewer && viewer->isVisible());
            if (row == 2) // nothing to show in it
                QVERIFY(shownIn(viewer).isEmpty());
            else
                QCOMPARE(shownIn(viewer), QList<ImageObject *>{scene.manager().image(row)});
            delete viewer;
        }
        QVERIFY2(driver.verify(), driver.report());
        QCOMPARE(scene.manager().imageCount(), 3);
    }

    void withoutACurrentObject_nothingHappens()
    {
        MainWindowScene scene;
        scene.addVolume("knee", kneeVoxels());
        scene.select({});
        DialogDriver driver;
        for (auto procedure :
             {&MainWindow::startSegmentation, &MainWindow::startSegmentationFemurTibia,
              &MainWindow::testMeshAlignment, &MainWindow::loadContour, &MainWindow::loadSegmentation})
            (scene.window.*procedure)();
        QVERIFY2(driver.verify(), driver.report());
        QCOMPARE(scene.manager().imageCount(), 1);
        QVERIFY(MainWindowScene::topLevels<QStackedSliceViewer>().isEmpty());
    }

    void loadContour_wiresTheLoadedContours()
    {
        MainWindowScene scene;
        MervImageObject *volume = scene.addVolume("knee", kneeVoxels());
        scene.select({0});
        DialogDriver driver;
        expectLoaded(driver, writeContours("two.slic", 2));
        scene.window.loadContour();
        QVERIFY2(driver.verify(), driver.report());
        QCOMPARE(
            classesIn(scene.manager(), 1),
            (QStringList{"SlicedContoursObject", "BitPlaneRasterizerObject", "SlicedContoursTriangulator",
                         "TriMeshDistanceMeasurer", "TriMeshDistanceMeasurer", "ColoringTriMeshRenderer",
                         "ColoringTriMeshRenderer"}));
        QCOMPARE(labelsIn(scene.manager(), 4),
                 (QStringList{"thickness of knee", "minimum thickness of knee",
                              "coloring of fragment 0 (triangulated) according to thickness",
                              "coloring of fragment 0 (triangulated) according to minimum thickness"}));
        auto *loaded = dynamic_cast<SlicedContoursObject *>(scene.manager().image(1));
        auto *rasterizer = dynamic_cast<BitPlaneRasterizerObject *>(scene.manager().image(2));
        QCOMPARE(rasterizer->voxels()->getWidth(), 30);
        QCOMPARE(rasterizer->voxels()->getSpacing(1), 0.5f);
        QCOMPARE(int(rasterizer->bitCode(loaded->contour(0))), 1);
        QCOMPARE(rasterizer->value(loaded, 2, 8), 128u);
        QVERIFY(!rasterizer->isStale());
        ImageObject *triangulator = scene.manager().image(3);
        for (const int row : {4, 5}) {
            QCOMPARE(scene.manager().image(row)->sources(), QList<ImageObject *>{triangulator});
            QCOMPARE(scene.manager().image(row + 2)->sources(),
                     (QList<ImageObject *>{triangulator, scene.manager().image(row)}));
        }
        QCOMPARE(shownIn(onlyViewer()), (QList<ImageObject *>{volume, loaded}));
        QVERIFY(onlyViewer()->isVisible());
    }

    // Both measure along the normals, whatever their names.
    void loadContour_measuresTheSameTwice()
    {
        MainWindowScene scene;
        scene.addVolume("knee", kneeVoxels());
        scene.select({0});
        DialogDriver driver;
        expectLoaded(driver, writeContours("tilted.slic", 2));
        scene.window.loadContour();
        QVERIFY2(driver.verify(), driver.report());
        const auto *thickness = dynamic_cast<TriMeshDistanceMeasurer *>(scene.manager().image(4));
        const auto *minimum = dynamic_cast<TriMeshDistanceMeasurer *>(scene.manager().image(5));
        QTRY_VERIFY(!thickness->isPending() && !minimum->isPending());
        for (const auto *measurer : {thickness, minimum}) {
            QVERIFY(near(measurer->sampleAt({10, 10, 1}), 2.0));
            QVERIFY(near(measurer->sampleAt({20, 10, 3}), 12.0));
            QVERIFY(near(measurer->sampleAt({0, 0, 0}), 12.0)); // the largest one
        }
        const SampleMap one = samplesOf(*thickness), other = samplesOf(*minimum);
        QCOMPARE(one.size(), other.size());
        QVERIFY(std::equal(one.begin(), one.end(), other.begin(), [](const auto &left, const auto &right) {
            return left.first.x == right.first.x && left.first.y == right.first.y &&
                   left.first.z == right.first.z && left.second == right.second;
        }));
    }

    void loadContour_withoutAContour_wiresTheRest()
    {
        MainWindowScene scene;
        scene.addVolume("knee", kneeVoxels());
        scene.select({0});
        DialogDriver driver;
        expectLoaded(driver, writeContours("bare.slic", 2, false));
        scene.window.loadContour();
        QVERIFY2(driver.verify(), driver.report());
        QCOMPARE(scene.manager().imageCount(), 8);
    }

    void loadContour_withThreeFragments_buildsNothing()
    {
        MainWindowScene scene;
        scene.addVolume("knee", kneeVoxels());
        scene.select({0});
        DialogDriver driver;
        expectLoaded(driver, writeContours("three.slic", 3));
        scene.window.loadContour();
        QVERIFY2(driver.verify(), driver.report());
        QCOMPARE(classesIn(scene.manager(), 1), QStringList{"SlicedContoursObject"});
        QVERIFY(onlyViewer() && !onlyViewer()->isVisible());
    }

    void loadContour_cancelled_takesTheLastObject()
    {
        MainWindowScene scene;
        scene.addVolume("knee", kneeVoxels());
        scene.select({0});
        DialogDriver driver;
        driver.expectFileDialog("Load images", QString());
        scene.window.loadContour();
        QVERIFY2(driver.verify(), driver.report());
        QCOMPARE(scene.manager().imageCount(), 1);
        QVERIFY(onlyViewer() && !onlyViewer()->isVisible());
        delete onlyViewer();
        // Contours of an earlier time that happen to be the last ones.
        auto *old = scene.add(new SlicedContoursObject("old"));
        old->newFragment("one");
        old->newFragment("two");
        driver.expectFileDialog("Load images", QString());
        scene.window.loadContour();
        QVERIFY2(driver.verify(), driver.report());
        QCOMPARE(scene.manager().imageCount(), 8);
        QVERIFY(onlyViewer() && onlyViewer()->isVisible());
    }

    void loadSegmentation_showsTheVolumeInsideTheMask()
    {
        MainWindowScene scene;
        scene.addVolume("knee", newVolume(MERV::TypeUShort, {4, 3, 2},
                                          [](int x, int y, int z) { return 10 + x + 4 * y + 12 * z; }));
        // The mask has a slice more than the volume; its value is 255 in two columns, 254 and 3 elsewhere.
        const QString path =
            writeVolume("mask.mhd", newVolume(MERV::TypeUChar, {4, 3, 3}, [](int x, int, int) {
                            return x < 2 ? 255 : x == 2 ? 254 : 3;
                        }));
        scene.select({0});
        DialogDriver driver;
        driver.expectFileDialog("Load the segmentation", path, [&](QFileDialog *dialog) {
            driver.check("filters", DialogDriver::shownFilters(dialog).join("|"),
                         "all supported Files (*.mhd; *.bmp; *.vis; *.hdr)|Meta Images (*.mhd)|"
                         "Windows Bitmaps (*.bmp)|Tallowbrook VIS Files (*.vis)|Analyze Image (*.hdr)");
            driver.check("parent", dialog->parent() == &scene.window ? "window" : "other", "window");
        });
        scene.window.loadSegmentation();
        QVERIFY2(driver.verify(), driver.report());
        QCOMPARE(scene.manager().imageCount(), 3);
        QCOMPARE(scene.manager().image(1)->label(), QString("mask"));
        QCOMPARE(scene.manager().image(2)->label(), QString("Reload of mask"));
        auto *mask = scene.fromEnd<MervImageObject>(1);
        auto *overlay = scene.fromEnd<MervImageObject>(0);
        for (int z = 0; z < 3; ++z) {
            for (int y = 0; y < 3; ++y) {
                for (int x = 0; x < 4; ++x) {
                    const int masked = x < 2 ? 255 : x == 2 ? 254 : 3;
                    const int wanted = x < 2 && z < 2 ? 10 + x + 4 * y + 12 * z : masked;
                    QCOMPARE(int(mask->voxels()->getVoxel(x, y, z, 0, 0)), masked);
                    QCOMPARE(int(overlay->voxels()->getVoxel(x, y, z, 0, 0)), wanted);
                }
            }
        }
        QCOMPARE(overlay->voxels()->getMinimum(), 3.0f);
        QCOMPARE(overlay->voxels()->getMaximum(), 255.0f);
        // The picture of a slice is converted anew: black at the smallest value, no longer white inside.
        QCOMPARE(int(overlay->displaySlice(0)[3]), 0);
        QVERIFY(int(overlay->displaySlice(0)[0]) < 30);
    }

    // A raster as the volume: its worker holds the voxels when both copies are there, and writes then.
    void loadSegmentation_waitsForAWorkerThatWritesTheVolume()
    {
        MainWindowScene scene;
        MervImageObject *volume =
            scene.addVolume("raster", newVolume(MERV::TypeUChar, {4, 3, 2}, [](int, int, int) { return 7; }));
        const QString path = writeVolume(
            "mask3.mhd", newVolume(MERV::TypeUChar, {4, 3, 2}, [](int, int, int) { return 255; }));
        scene.select({0});
        std::promise<void> locked;
        std::promise<void> loaded;
        connect(&scene.manager(), &ImageManager::layoutChanged, &scene.window, [&] {
            if (scene.manager().imageCount() == 3)
                loaded.set_value();
        });
        const std::jthread worker([&] {
            const auto lock = volume->lockVoxels();
            locked.set_value();
            loaded.get_future().wait_for(std::chrono::seconds(20));
            QThread::msleep(50); // time enough to copy the old voxels, if the lock were not heeded
            for (int z = 0; z < 2; ++z)
                for (int y = 0; y < 3; ++y)
                    for (int x = 0; x < 4; ++x)
                        volume->voxels()->setVoxel(9, x, y, z, 0, 0);
        });
        locked.get_future().wait();
        DialogDriver driver;
        driver.expectFileDialog("Load the segmentation", path);
        scene.window.loadSegmentation();
        QVERIFY2(driver.verify(), driver.report());
        auto *overlay = scene.fromEnd<MervImageObject>();
        QCOMPARE(overlay->label(), QString("Reload of mask3"));
        for (int slice = 0; slice < 2; ++slice)
            QCOMPARE(countOf(*overlay, slice, 9), 12);
    }

    void loadSegmentation_ofAnotherSize_staysAsItIs()
    {
        MainWindowScene scene;
        scene.addVolume("knee", newVolume(MERV::TypeUShort, {4, 4, 2}, [](int, int, int) { return 7; }));
        const QString path =
            writeVolume("wide.mhd", newVolume(MERV::TypeUChar, {5, 4, 2}, [](int, int, int) { return 255; }));
        scene.select({0});
        DialogDriver driver;
        driver.expectFileDialog("Load the segmentation", path);
        scene.window.loadSegmentation();
        QVERIFY2(driver.verify(), driver.report());
        auto *overlay = scene.fromEnd<MervImageObject>();
        QCOMPARE(overlay->label(), QString("Reload of wide"));
        QCOMPARE(int(overlay->voxels()->getVoxel(0, 0, 0, 0, 0)), 255);
    }

    // From any current object, as the file stands in the list then; but there is nothing to copy from.
    void loadSegmentation_withoutAVolume_loadsTwiceAndLabels()
    {
        MainWindowScene scene;
        scene.add(new SlicedContoursObject("lines"));
        const QString path = writeVolume(
            "mask2.mhd", newVolume(MERV::TypeUChar, {5, 4, 2}, [](int, int, int) { return 255; }));
        scene.select({0});
        DialogDriver driver;
        driver.expectFileDialog("Load the segmentation", path);
        scene.window.loadSegmentation();
        QVERIFY2(driver.verify(), driver.report());
        QCOMPARE(labelsIn(scene.manager(), 1), (QStringList{"mask2", "Reload of mask2"}));
    }

    void loadSegmentation_startsFarUp_andCancelledLoadsNothing()
    {
        MainWindowScene scene;
        scene.addVolume("knee", kneeVoxels());
        scene.select({0});
        const QString deep = folder.path() + "/1/2/3/4/5";
        QVERIFY(QDir().mkpath(deep));
        QDir::setCurrent(deep);
        DialogDriver driver;
        driver.expectFileDialog("Load the segmentation", QString(), [&](QFileDialog *dialog) {
            driver.check("start", dialog->directory().canonicalPath(), QDir(folder.path()).canonicalPath());
        });
        scene.window.loadSegmentation();
        QVERIFY2(driver.verify(), driver.report());
        QCOMPARE(scene.manager().imageCount(), 1);
    }

    void meshAlignment_hasFiveNewRows()
    {
        MainWindowScene scene;
        MervImageObject *volume = scene.addVolume("knee", kneeVoxels());
        scene.select({0});
        scene.window.testMeshAlignment();
        QCOMPARE(classesIn(scene.manager(), 1),
                 (QStringList{"SlicedContoursObject", "SlicedContoursTriangulator", "TriMeshAligner",
                              "TriMeshDistanceMeasurer", "ColoringTriMeshRenderer"}));
        QCOMPARE(labelsIn(scene.manager(), 1),
                 (QStringList{"Fragments in knee", "Triangulation of Fragments in knee",
                              "free (triangulated) aligned to base (triangulated)",
                              "distance of aligned from base fragment",
                              "coloring of base fragment according to distance of aligned fragment"}));
        auto *contours = dynamic_cast<SlicedContoursObject *>(scene.manager().image(1));
        QCOMPARE(contours->contourCount(), 0);
        QCOMPARE(contours->fragmentCount(), 2);
        QCOMPARE(contours->fragment(0)->label(), QString("base"));
        QCOMPARE(contours->fragment(1)->label(), QString("free"));
        ImageObject *triangulator = scene.manager().image(2);
        ImageObject *aligner = scene.manager().image(3);
        ImageObject *distance = scene.manager().image(4);
        QCOMPARE(aligner->sources(), QList<ImageObject *>{triangulator});
        QCOMPARE(distance->sources(), (QList<ImageObject *>{triangulator, aligner}));
        QCOMPARE(scene.manager().image(5)->sources(), (QList<ImageObject *>{triangulator, distance}));
        QCOMPARE(shownIn(onlyViewer()), (QList<ImageObject *>{volume, contours}));
        QVERIFY(onlyViewer()->isVisible());
    }

    void meshAlignment_freeDrawnBeforeBase_followsWithoutNaN()
    {
        MainWindowScene scene;
        scene.addVolume("knee", kneeVoxels());
        scene.select({0});
        scene.window.testMeshAlignment();
        auto *contours = dynamic_cast<SlicedContoursObject *>(scene.manager().image(1));
        const auto *aligner = dynamic_cast<TriMeshAligner *>(scene.manager().image(3));
        const auto *distance = dynamic_cast<TriMeshDistanceMeasurer *>(scene.manager().image(4));
        const auto cornerY = [&] {
            const MERV::BRep::Point corner = aligner->fragment(0)->face(0).vertex(0);
            return corner.y / corner.w;
        };
        // Two flat ribbons of the same shape, the free one 3 mm above the base.
        for (const float z : {1.0f, 3.0f})
            drawLine(contours->fragment(1), z, {10, 13}, {20, 13});
        QCOMPARE(aligner->fragment(0)->faceCount(), 2);
        QCOMPARE(cornerY(), 13.0); // there is nothing to align it to
        for (const float z : {1.0f, 3.0f})
            drawLine(contours->fragment(0), z, {10, 10}, {20, 10});
        // The triangulator rebuilds both fragments for a change of either.
        QTRY_VERIFY(distance->hasSample({20, 10, 3}));
        contours->fragment(1)->segment(0)->setZ(1.5f);
        contours->fragment(1)->segment(0)->setZ(1.0f);
        QTRY_VERIFY(!distance->isPending());
        QTRY_VERIFY(near(distance->sampleAt({0, 0, 0}), 0.0)); // the largest distance
        QVERIFY(near(cornerY(), 10.0));
        const SampleMap samples = samplesOf(*distance);
        QCOMPARE(samples.size(), std::size_t(4 + 4)); // vertices and summary
        for (const auto &[position, value] : samples)
            QVERIFY(std::isfinite(value) && near(value, 0.0));
        for (int face = 0; face < aligner->fragment(0)->faceCount(); ++face)
            for (int corner = 0; corner < 3; ++corner)
                QVERIFY(std::isfinite(aligner->fragment(0)->face(face).vertex(corner).x));
    }
};

QTEST_MAIN(MainWindowProceduresTest)
#include "MainWindowProceduresTest.moc"
