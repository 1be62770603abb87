// The segmentation procedure on a real knee: what it builds is checked against plain code while lines of the
// femoral cartilage are drawn, and stays whole while its sources are closed. With TEVORA_WRITE_PICTURES=1 the
// coloured bone side becomes docs/knee-thickness.png.
#include "contours/ConventionalSliceEdgePointExtractor.h"
#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "contours/SlicedContoursSegment.h"
#include "contours/metrics/SlicedMetricsModel.h"
#include "contours/metrics/viewer/SlicedMetricsViewer.h"
#include "meshes/BitPlaneRasterizerObject.h"
#include "meshes/ColoringTriMeshRenderer.h"
#include "meshes/SlicedContoursTriangulator.h"
#include "meshes/TriMeshDistanceMeasurer.h"
#include "meshes/TriMeshFragment.h"
#include "tests/support/PlainThickness.h"
#include "tests/support/PrivateSettings.h"
#include "tests/support/RasterRun.h"
#include "tests/support/ScanConversion.h"
#include "tests/viewer/KneeLines.h"
#include "tests/viewer/RealKneeScene.h"
#include "view/GraphicsPod.h"

#include <QComboBox>
#include <QMessageBox>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <memory>
#include <set>
#include <vector>

using knee_lines::inMm, knee_lines::tracedSlice, knee_lines::zOf;

namespace {

// Rows of the list of images, as the procedure makes them.
enum Row : int
{
    VolumeRow,
    ContoursRow,
    EdgesRow,
    RasterRow,
    MeshRow,
    ThicknessRow,
    MinimumRow,
    ThicknessColoringRow,
    MinimumColoringRow,
    rowCount
};

// Rows of the viewer.
constexpr int edgesPod = 1, contoursPod = 2, coloringPod = 3;

enum Side : int
{
    Bone,
    Surface
};

constexpr int kneeSize = 256, kneeDepth = 24;
constexpr std::array<int, 3> tracedSlices{tracedSlice - 1, tracedSlice, tracedSlice + 1};

using Parameters = std::array<double, 4>; // in the order of the metrics: see plainParameters()

// Largest, mean of the records, mean, standard deviation. Records are at most ten: a value beyond all of them
// on either side is one more, the eleventh drops the smallest.
Parameters plainParameters(const PlainThickness &plain)
{
    std::multiset<double> records;
    double sum = 0.0, squares = 0.0;
    for (const auto &[vertex, distance] : plain.samples) {
        sum += distance;
        if (records.empty() || distance > *records.rbegin() || distance < *records.begin())
            records.insert(distance);
        if (records.size() > 10)
            records.erase(records.begin());
    }
    const auto count = double(plain.samples.size());
    for (const auto &[vertex, distance] : plain.samples)
        squares += (distance - sum / count) * (distance - sum / count);
    double recordSum = 0.0;
    for (const double record : records)
        recordSum += record;
    return {*records.rbegin(), recordSum / double(records.size()), sum / count, std::sqrt(squares / count)};
}

QString fault(const QString &what, const Vector3 &place)
{
    return QString("%1 at %2, %3, %4").arg(what).arg(place.x).arg(place.y).arg(place.z);
}

// Empty if the measurement has the samples of the plain way from base to remote and nothing else.
QString faultOf(const TriMeshDistanceMeasurer &measurer, const PlainThickness &plain)
{
    SampleMap expected;
    for (const auto &[vertex, distance] : plain.samples)
        expected[{vertex.x, vertex.y, vertex.z}] = distance;
    const Parameters parameters = plainParameters(plain);
    const LockedSamples samples = measurer.samples();
    for (int i = 0; i < 4; ++i) {
        const Vector3 key{0, 0, double(i)};
        if (expected.contains(key))
            return "a vertex in the place of a parameter";
        if (!samples.contains(key) || std::abs(samples.value(key) - parameters[std::size_t(i)]) > 1e-9)
            return QString("parameter %1 is %2").arg(i).arg(samples.value(key));
    }
    if (samples->size() != expected.size() + 4)
        return QString("%1 samples").arg(samples->size());
    for (const auto &[place, distance] : expected)
        if (!samples.contains(place) || samples.value(place) != distance)
            return fault("other sample", place);
    return {};
}

std::vector<QPointF> inVoxels(const std::vector<QPointF> &mm)
{
    std::vector<QPointF> voxels;
    voxels.reserve(mm.size());
    for (const QPointF &point : mm)
        voxels.push_back(point / knee_lines::pixelMm);
    return voxels;
}

QList<QPointF> shifted(QList<QPointF> pixels, const QPointF &by)
{
    for (QPointF &pixel : pixels)
        pixel += by;
    return pixels;
}

} // namespace

class RealKneeProcedureTest : public QObject
{
    Q_OBJECT

public:
    static void initMain()
    {
        static const PrivateSettings settings;
        QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    }

private:
    // What is near enough to an edge for OpenGL to put it on either side: it works with at least 4 bits
    // behind the point, so a vertex moves by up to 1/32 of a pixel in x and in y.
    static constexpr double grantedPixels = 0.0443; // sqrt(2) / 32, rounded up

    const TriMeshFragment &mesh(Side side) const { return *triangulator->fragment(side); }
    // The line of a side on a slice.
    SegmentSnapshot lineOn(int slice, Side side) const
    {
        const auto z = static_cast<float>(zOf(slice));
        const std::vector<SegmentSnapshot> lines = contours->fragment(side)->snapshots(z, z);
        return lines.size() == 1 ? lines.front() : SegmentSnapshot();
    }
    // The closed outline on a slice in voxels, bone side first.
    std::vector<QPointF> outlineOn(int slice) const
    {
        std::vector<QPointF> outline = lineOn(slice, Bone).points;
        const std::vector<QPointF> back = lineOn(slice, Surface).points;
        outline.insert(outline.end(), back.begin(), back.end());
        return inVoxels(outline);
    }
    void edit(Side side)
    {
        // The contour stands before the fragments.
        scene->tick(scene->composition()->index(1 + side, ImageComposition::EditColumn,
                                                scene->composition()->index(contoursPod, 0)));
    }
    void openAndStart(const QString &folder);
    void verifyRows() const;
    void verifyViewer() const;
    void prepareTracing();
    void drawLoop(int slice, const QList<QPointF> &bone, const QList<QPointF> &surface);
    void drawThreeSlices();
    void waitForWorkers() const;
    void verifyRibbons() const;
    void verifySamples() const;
    QString maskFault() const;
    void verifyAll() const;
    SlicedMetricsViewer *openMetrics(int row, const QPoint &place);
    static QStringList shownIn(const SlicedMetricsViewer &metrics);
    QStringList plainMetrics(bool alongNormal) const;
    void drawBulge();
    void writePicture();
    void closeRow(ImageObject *object, const std::function<void()> &justBefore);
    void editInCode();
    void closeContours();
    void closeViewer();
    void closeTheRest();

    std::unique_ptr<RealKneeScene> scene;
    QPointer<SlicedContoursObject> contours;
    BitPlaneRasterizerObject *raster = nullptr;
    SlicedContoursTriangulator *triangulator = nullptr;
    TriMeshDistanceMeasurer *thickness = nullptr;
    TriMeshDistanceMeasurer *minimum = nullptr;

private slots:
    void init() { scene = std::make_unique<RealKneeScene>(); }
    void cleanup() { scene.reset(); }

    void everythingFollowsTheLines();
    void closingSources_data();
    void closingSources();
};

// The series through the menu, then the procedure with "Yes", and its viewer in place.
void RealKneeProcedureTest::openAndStart(const QString &folder)
{
    scene->openKnee(folder);
    if (QTest::currentTestFailed())
        return;
    scene->selectRow(VolumeRow);
    scene->driver.expect<QMessageBox>("question", [this](QMessageBox *box) {
        scene->driver.check("title", box->windowTitle(), "Start Segmentation of Patella ...");
        QTest::qWait(100);
        scene->press(box->button(QMessageBox::Yes));
    });
    scene->chooseEntry("Procedures", "Start Segmentation of Patella ...");
    QTRY_COMPARE(scene->manager().imageCount(), int(rowCount));
    QVERIFY2(scene->driver.verify(), scene->driver.report());
    const ImageManager &manager = scene->manager();
    contours = qobject_cast<SlicedContoursObject *>(manager.image(ContoursRow));
    raster = qobject_cast<BitPlaneRasterizerObject *>(manager.image(RasterRow));
    triangulator = qobject_cast<SlicedContoursTriangulator *>(manager.image(MeshRow));
    thickness = qobject_cast<TriMeshDistanceMeasurer *>(manager.image(ThicknessRow));
    minimum = qobject_cast<TriMeshDistanceMeasurer *>(manager.image(MinimumRow));
    QVERIFY(contours && raster && triangulator && thickness && minimum);
    scene->placeViewer();
}

void RealKneeProcedureTest::verifyRows() const
{
    QStringList classes, labels;
    for (int row = 0; row < rowCount; ++row) {
        classes << scene->manager().image(row)->metaObject()->className();
        labels << scene->manager().image(row)->label();
    }
    QCOMPARE(classes,
             (QStringList{"MervImageObject", "SlicedContoursObject", "ConventionalSliceEdgePointExtractor",
                          "BitPlaneRasterizerObject", "SlicedContoursTriangulator", "TriMeshDistanceMeasurer",
                          "TriMeshDistanceMeasurer", "ColoringTriMeshRenderer", "ColoringTriMeshRenderer"}));
    // The series has no name.
    QCOMPARE(labels[VolumeRow], QString(" (tE = 6.312 ms)"));
    QCOMPARE(labels[ContoursRow], QString("Segmentation of  (tE = 6.312 ms)"));
    QCOMPARE(labels[ThicknessRow], QString("thickness of  (tE = 6.312 ms)"));
    QCOMPARE(labels[MinimumRow], QString("minimum thickness of  (tE = 6.312 ms)"));
    const MERV::Image &grid = *raster->voxels();
    QCOMPARE(grid.getWidth(), kneeSize);
    QCOMPARE(grid.getHeight(), kneeSize);
    QCOMPARE(grid.getDepth(), kneeDepth);
    QCOMPARE(grid.getSpacing(0), 0.625F);
    QCOMPARE(grid.getSpacing(1), 0.625F);
    QCOMPARE(grid.getSpacing(2), 4.0F);
}

void RealKneeProcedureTest::verifyViewer() const
{
    QList<ImageObject *> shown;
    for (int pod = 0; pod < scene->composition()->podCount(); ++pod)
        shown << scene->composition()->pod(pod)->object();
    const ImageManager &manager = scene->manager();
    QCOMPARE(shown, (QList<ImageObject *>{manager.image(VolumeRow), manager.image(EdgesRow),
                                          manager.image(ContoursRow)}));
    const QModelIndex lines = scene->composition()->index(contoursPod, 0);
    QStringList children;
    for (int row = 0; row < scene->composition()->rowCount(lines); ++row)
        children << scene->composition()->index(row, 0, lines).data().toString();
    QCOMPARE(children, (QStringList{"patellar cartilage", "cartilage bone interface", "cartilage surface"}));
}

// Both sides freehand: the second line runs from the end of the first one back to its start.
void RealKneeProcedureTest::drawLoop(int slice, const QList<QPointF> &bone, const QList<QPointF> &surface)
{
    scene->goToSlice(slice);
    edit(Bone);
    scene->trace(inMm(bone), Qt::RightButton);
    const SegmentSnapshot drawn = lineOn(slice, Bone);
    QVERIFY(drawn.points.size() > 20);
    QList<QPointF> back = inMm(surface);
    std::reverse(back.begin(), back.end());
    back.prepend(drawn.last());
    back.append(drawn.first());
    edit(Surface);
    scene->trace(back, Qt::RightButton);
    const SegmentSnapshot closing = lineOn(slice, Surface);
    QCOMPARE(closing.first(), drawn.last());
    QCOMPARE(closing.last(), drawn.first());
}

// The lines of the middle slice serve on its neighbours too, a little aside.
void RealKneeProcedureTest::drawThreeSlices()
{
    for (const int slice : tracedSlices) {
        const QPointF aside = QPointF(0.8, 1.5) * (slice - tracedSlice);
        drawLoop(slice, shifted(knee_lines::boneSide, aside), shifted(knee_lines::surfaceSide, aside));
        if (QTest::currentTestFailed())
            return;
    }
}

void RealKneeProcedureTest::waitForWorkers() const
{
    QCoreApplication::processEvents(); // the raster hears of an edit by a queued call
    QTRY_VERIFY_WITH_TIMEOUT(!thickness->isPending() && !minimum->isPending() && !raster->isStale(), 20000);
}

// Each step along one of two neighbouring lines makes a face.
void RealKneeProcedureTest::verifyRibbons() const
{
    for (const Side side : {Bone, Surface}) {
        std::size_t faces = 0;
        for (std::size_t i = 1; i < tracedSlices.size(); ++i)
            faces += lineOn(tracedSlices[i - 1], side).points.size() - 1 +
                     lineOn(tracedSlices[i], side).points.size() - 1;
        QCOMPARE(mesh(side).size(), faces);
        QVERIFY(faces > 200); // lines of 43 mm or more; at worst every other step of 0.4 mm makes a point
    }
}

void RealKneeProcedureTest::verifySamples() const
{
    const auto plain = [this](bool alongNormal) {
        return PlainThickness(mesh(Bone).all(), mesh(Surface).all(), alongNormal);
    };
    QCOMPARE(faultOf(*minimum, plain(false)), QString());
    QCOMPARE(faultOf(*thickness, plain(true)), QString());
}

// Empty if the mask is that of the outlines: they and the pixels within the grant along them aside, 127
// inside and 0 everywhere else.
QString RealKneeProcedureTest::maskFault() const
{
    const std::vector<unsigned char> bytes = rasterBytes(*raster);
    std::size_t index = 0;
    for (int slice = 0; slice < kneeDepth; ++slice) {
        const std::vector<QPointF> outline = outlineOn(slice);
        ScanConversion plain(kneeSize, kneeSize);
        plain.toggle(outline);
        int inside = 0;
        for (int y = 0; y < kneeSize; ++y)
            for (int x = 0; x < kneeSize; ++x, ++index) {
                inside += bytes[index] == 127 ? 1 : 0;
                if (bytes[index] == (plain.isInside(x, y) ? 127 : 0))
                    continue;
                if (bytes[index] != 0 && bytes[index] != 127)
                    return QString("code %1 in slice %2").arg(bytes[index]).arg(slice);
                if (!(ScanConversion::distanceToEdges(x, y, {outline}) < grantedPixels))
                    return QString("voxel %1, %2 of slice %3").arg(x).arg(y).arg(slice);
            }
        if (outline.empty() != (inside == 0))
            return QString("%1 voxels inside in slice %2").arg(inside).arg(slice);
    }
    return {};
}

void RealKneeProcedureTest::verifyAll() const
{
    waitForWorkers();
    verifyRibbons();
    verifySamples();
    QTRY_COMPARE(maskFault(), QString()); // the raster is published a little after it is no longer stale
}

SlicedMetricsViewer *RealKneeProcedureTest::openMetrics(int row, const QPoint &place)
{
    const QWidgetList before = QApplication::topLevelWidgets();
    scene->selectRow(row);
    scene->chooseEntry("View", "Show metrics ...");
    for (QWidget *widget : QApplication::topLevelWidgets())
        if (auto *opened = qobject_cast<SlicedMetricsViewer *>(widget); opened && !before.contains(widget)) {
            opened->setGeometry({place, QSize(240, 170)});
            return opened;
        }
    return nullptr;
}

QStringList RealKneeProcedureTest::shownIn(const SlicedMetricsViewer &metrics)
{
    QStringList cells;
    for (int row = 0; row < metrics.model()->rowCount(); ++row)
        cells << metrics.model()->index(row, 0).data().toString();
    return cells;
}

QStringList RealKneeProcedureTest::plainMetrics(bool alongNormal) const
{
    QStringList cells;
    for (const double value :
         plainParameters(PlainThickness(mesh(Bone).all(), mesh(Surface).all(), alongNormal)))
        cells << QString("%L1 mm").arg(value);
    return cells;
}

// A line from the surface out by 2 mm and back to it.
void RealKneeProcedureTest::drawBulge()
{
    scene->goToSlice(tracedSlice);
    edit(Surface);
    scene->trace(inMm({{85, 125}, {88, 130.5}, {94, 136}, {101, 140.5}, {107, 142.5}, {110, 139.3}}),
                 Qt::RightButton);
}

void RealKneeProcedureTest::everythingFollowsTheLines()
{
    const QString folder = RealKneeScene::dataFolder("knee-ge-mese");
    if (folder.isEmpty())
        QSKIP("no real knee");
    using Step = void (RealKneeProcedureTest::*)();
    openAndStart(folder);
    if (!QTest::currentTestFailed())
        verifyRows();
    if (!QTest::currentTestFailed())
        verifyViewer();
    for (const Step step :
         {&RealKneeProcedureTest::prepareTracing, &RealKneeProcedureTest::drawThreeSlices}) {
        if (QTest::currentTestFailed())
            return;
        (this->*step)();
    }
    verifyAll();
    if (QTest::currentTestFailed())
        return;
    const std::unique_ptr<SlicedMetricsViewer> normals(openMetrics(ThicknessRow, {10, 420}));
    const std::unique_ptr<SlicedMetricsViewer> shortest(openMetrics(MinimumRow, {10, 640}));
    QVERIFY(normals && shortest);
    const QStringList before = shownIn(*shortest), beforeAlongNormals = shownIn(*normals);
    QCOMPARE(before, plainMetrics(false));
    QCOMPARE(beforeAlongNormals, plainMetrics(true));
    const std::vector<unsigned char> maskBefore = rasterBytes(*raster);
    const std::size_t facesBefore = mesh(Surface).size();

    drawBulge();
    verifyAll();
    if (QTest::currentTestFailed())
        return;
    QVERIFY(mesh(Surface).size() != facesBefore);
    QVERIFY(rasterBytes(*raster) != maskBefore);
    QCOMPARE(shownIn(*shortest), plainMetrics(false));
    QCOMPARE(shownIn(*normals), plainMetrics(true));
    for (int row = 0; row < 4; ++row) {
        QVERIFY(shownIn(*shortest)[row] != before[row]);
        QVERIFY(shownIn(*normals)[row] != beforeAlongNormals[row]);
    }
    writePicture();
}

void RealKneeProcedureTest::prepareTracing()
{
    scene->tick(scene->composition()->index(edgesPod, ImageComposition::AnalyzeColumn));
    scene->enlargeView();
    scene->goToSlice(tracedSlice);
    scene->zoomToTheJoint();
    scene->brighten();
    scene->chooseMode("Trace");
}

// The bone side as far as it lies before the middle slice, from aside.
void RealKneeProcedureTest::writePicture()
{
    if (qEnvironmentVariable("TEVORA_WRITE_PICTURES") != "1")
        return;
    scene->viewer->addObject(scene->manager().image(MinimumColoringRow));
    ImageComposition &shown = *scene->composition();
    auto *scope = qobject_cast<QComboBox *>(
        scene->tree()->indexWidget(shown.index(coloringPod, ImageComposition::DisplayScopeColumn)));
    QVERIFY(scope != nullptr);
    scope->setCurrentText("Volume");
    shown.setData(shown.index(contoursPod, ImageComposition::DisplayColumn), false);
    scene->viewer->findChild<QSplitter *>()->setSizes({550, 170});
    scene->chooseMode("Perspective");
    QTest::qWait(200);
    XHand hand(scene->view());
    hand.drag(Qt::LeftButton, {100, 450}, {900, 100});
    scene->chooseMode("Move");
    QTRY_VERIFY(scene->view()->state().cubeAlpha < 0.01f);
    scene->writePicture("knee-thickness.png");
}

void RealKneeProcedureTest::closingSources_data()
{
    QTest::addColumn<QStringList>("order");
    QStringList order{"contours", "viewer", "volume"};
    do
        QTest::newRow(qPrintable(order.join(", "))) << order;
    while (std::next_permutation(order.begin(), order.end()));
}

// By the menu, in whose last moment before the command something is done.
void RealKneeProcedureTest::closeRow(ImageObject *object, const std::function<void()> &justBefore)
{
    int row = 0;
    while (scene->manager().image(row) != object)
        ++row;
    const int rows = scene->manager().imageCount();
    scene->selectRow(row);
    const QMenu *menu = RealKneeScene::actionOf(scene->window.menuBar(), "File")->menu();
    QObject context;
    connect(menu, &QMenu::aboutToHide, &context, justBefore);
    scene->chooseEntry("File", "Close Image");
    QTRY_COMPARE(scene->manager().imageCount(), rows - 1);
}

// One point more at the end of the surface in the middle slice, on a zigzag; the loop is open from then on.
void RealKneeProcedureTest::editInCode()
{
    if (contours.isNull())
        return;
    SlicedContoursSegment *line = contours->fragment(Surface)->segment(0);
    line->addPointBack(line->lastPoint() + QPointF(1.5, line->pointCount() % 2 == 0 ? 0.7 : -0.7));
}

void RealKneeProcedureTest::closeContours()
{
    RasterRuns runs(*raster);
    QTRY_VERIFY(!raster->isStale() && runs.rests());
    const std::vector<unsigned char> voxels = rasterBytes(*raster);
    QVERIFY(std::count(voxels.begin(), voxels.end(), 127) > 0);
    const TriMeshFragment *surface = triangulator->fragment(Surface);
    std::vector<MERV::BRep::TriFace> faces;
    const std::size_t facesBefore = surface->size();
    closeRow(contours, [&] {
        editInCode();
        faces.assign(surface->all().begin(), surface->all().end());
    });
    if (QTest::currentTestFailed())
        return;
    QVERIFY(contours.isNull());
    QVERIFY(faces.size() != facesBefore);
    QCOMPARE(surface->size(), faces.size());
    for (std::size_t i = 0; i < faces.size(); ++i)
        for (int corner = 0; corner < 3; ++corner)
            QVERIFY(surface->all()[i].vertex(corner).sameCoordinates(faces[i].vertex(corner)));
    waitForWorkers();
    verifySamples();
    QVERIFY(runs.rests());
    QVERIFY(rasterBytes(*raster) == voxels);
}

void RealKneeProcedureTest::closeViewer()
{
    editInCode();
    scene->viewer->close();
    QTRY_VERIFY(scene->viewer.isNull());
}

void RealKneeProcedureTest::closingSources()
{
    const QString folder = RealKneeScene::dataFolder("knee-ge-mese");
    if (folder.isEmpty())
        QSKIP("no real knee");
    QFETCH(const QStringList, order);
    openAndStart(folder);
    if (!QTest::currentTestFailed())
        prepareTracing();
    for (const int slice : {tracedSlice, tracedSlice + 1})
        if (!QTest::currentTestFailed())
            drawLoop(slice, knee_lines::boneSide.mid(6), knee_lines::surfaceSide.mid(5));
    for (const QString &closing : order) {
        if (QTest::currentTestFailed())
            return;
        if (closing == "contours")
            closeContours();
        else if (closing == "viewer")
            closeViewer();
        else
            closeRow(scene->manager().image(VolumeRow), [this] { editInCode(); });
        waitForWorkers();
        verifySamples();
    }
    if (!QTest::currentTestFailed())
        closeTheRest();
}

void RealKneeProcedureTest::closeTheRest()
{
    QVERIFY(!minimum->samples()->empty());
    closeRow(triangulator, [this] {
        thickness->remeasure();
        minimum->remeasure();
    });
    waitForWorkers();
    QVERIFY(thickness->samples()->empty());
    QVERIFY(minimum->samples()->empty());
    while (scene->manager().imageCount() > 0 && !QTest::currentTestFailed())
        closeRow(scene->manager().image(0), [] {});
}

QTEST_MAIN(RealKneeProcedureTest)
#include "RealKneeProcedureTest.moc"
