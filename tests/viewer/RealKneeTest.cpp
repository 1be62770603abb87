// The main job on a real knee: open the series through menus and dialogs, trace the bone side and the surface
// side of the femoral cartilage. With TEVORA_WRITE_PICTURES=1 the traced slice becomes docs/knee.png.
#include "contours/ConventionalSliceEdgePointExtractor.h"
#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "contours/SlicedContoursSegment.h"
#include "tests/support/PrivateSettings.h"
#include "tests/viewer/KneeLines.h"
#include "tests/viewer/RealKneeScene.h"

#include <QInputDialog>
#include <QLineEdit>

#include <atomic>
#include <cmath>
#include <memory>
#include <thread>

using knee_lines::inMm, knee_lines::distance, knee_lines::length, knee_lines::tracedSlice;

namespace {

constexpr double tracedZ = knee_lines::zOf(tracedSlice);
constexpr double searchMm = 2.5; // around the mouse, each way

} // namespace

class RealKneeTest : public QObject
{
    Q_OBJECT

public:
    static void initMain()
    {
        static const PrivateSettings settings;
        QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    }

private:
    void addFragment(const QString &name)
    {
        scene->driver.expect<QInputDialog>("name of a fragment", [name](QInputDialog *dialog) {
            auto *edit = dialog->findChild<QLineEdit *>();
            QTest::keyClicks(edit, name);
            QTest::keyClick(edit, Qt::Key_Return);
        });
        scene->chooseEntry("Image", "Add fragment ...");
        QVERIFY2(scene->driver.verify(), scene->driver.report());
    }
    void dragIntoViewer(int row)
    {
        const QPoint from = scene->list()->viewport()->mapToGlobal(scene->rowCentre(row));
        const QPoint to = scene->view()->mapToGlobal(scene->view()->rect().center());
        const int before = scene->composition()->podCount();
        std::atomic<bool> released = false;
        std::thread hand([&] {
            XTestDevice().carry(from, to);
            released = true;
        });
        const bool dropped =
            QTest::qWaitFor([&] { return released && scene->composition()->podCount() > before; }, 10000);
        hand.join();
        QVERIFY(dropped);
    }
    void verifyTrace(SlicedContoursFragment *fragment, const QList<QPointF> &line)
    {
        QCOMPARE(fragment->segmentCount(), 1);
        const auto points = fragment->segment(0)->snapshot().points;
        QVERIFY(points.size() > 30);
        double sum = 0.0;
        for (const QPointF &point : points) {
            const double away = knee_lines::distanceToLine(point, line);
            QVERIFY2(away < searchMm * std::sqrt(2.0), qPrintable(QString::number(away)));
            sum += away;
            const std::unique_ptr<EdgePointList> near(edges->edgePointsAround(
                static_cast<float>(point.x()), static_cast<float>(point.y()), float(tracedZ), 0.001f));
            QVERIFY2(!near->isEmpty(),
                     qPrintable(QString("no edge point at %1, %2").arg(point.x()).arg(point.y())));
        }
        // The line itself is good to about a pixel.
        QVERIFY2(sum / double(points.size()) < knee_lines::pixelMm,
                 qPrintable(QString::number(sum / double(points.size()))));
        const QList<QPointF> traced(points.begin(), points.end());
        QVERIFY(distance(traced.first(), line.first()) < 2.0);
        QVERIFY(distance(traced.last(), line.last()) < 2.0);
        QVERIFY2(length(traced) > 0.9 * length(line) && length(traced) < 1.5 * length(line),
                 qPrintable(QString::number(length(traced) / length(line))));
    }
    void makeContoursAndEdgePoints();
    void showInViewer();
    void zoomAndBrighten();
    void traceBothSides(const QList<QPointF> (&sides)[2]);
    void colorFragment(int fragment, const QString &color);

    std::unique_ptr<RealKneeScene> scene;
    SlicedContoursObject *contours = nullptr;
    ConventionalSliceEdgePointExtractor *edges = nullptr;

private slots:
    void init() { scene = std::make_unique<RealKneeScene>(); }
    void cleanup() { scene.reset(); }

    void seriesWithInputFilter_asksForEchoTimeAndDistance()
    {
        const QString folder = RealKneeScene::dataFolder("knee-ge-mese");
        if (folder.isEmpty())
            QSKIP("no real knee");
        scene->openKnee(folder);
        auto *volume = qobject_cast<MervImageObject *>(scene->manager().image(0));
        QVERIFY(volume != nullptr);
        QCOMPARE(volume->label(), " (tE = 6.312 ms)");
        QCOMPARE(volume->voxels()->getWidth(), 256);
        QCOMPARE(volume->voxels()->getHeight(), 256);
        QCOMPARE(volume->voxels()->getDepth(), 24);
        QCOMPARE(volume->voxels()->getSpacing(0), 0.625F);
        QCOMPARE(volume->voxels()->getSpacing(1), 0.625F);
        QCOMPARE(volume->voxels()->getSpacing(2), 4.0F);
    }

    void wholeSeries_hasASliceForEveryFile()
    {
        const QString folder = RealKneeScene::dataFolder("knee-ge-mese");
        if (folder.isEmpty())
            QSKIP("no real knee");
        scene->driver.expectFileDialog("Select a directory containing the series.", folder);
        scene->chooseEntry("File", "Open Dicom Series ...");
        QTRY_COMPARE_WITH_TIMEOUT(scene->manager().imageCount(), 1, 20000);
        QVERIFY2(scene->driver.verify(), scene->driver.report());
        auto *volume = qobject_cast<MervImageObject *>(scene->manager().image(0));
        QVERIFY(volume != nullptr);
        QCOMPARE(volume->voxels()->getDepth(), 192);
    }

    void seriesWithoutSliceLocation_offersNoSuchDistance()
    {
        const QString folder = RealKneeScene::dataFolder("t1-no-sliceloc");
        if (folder.isEmpty())
            QSKIP("no real T1 series");
        scene->expectSeries(folder, "Jane_Doe; anat-T1w", 1, "",
                            {"Image Position (Patient) based algorithm; result: 0.660688 mm*",
                             "GDCM internal algorithm; result: 0.666667 mm"},
                            0);
        scene->chooseEntry("File", "Open Dicom Series with Input Filter ...");
        QTRY_COMPARE_WITH_TIMEOUT(scene->manager().imageCount(), 1, 20000);
        QVERIFY2(scene->driver.verify(), scene->driver.report());
        auto *volume = qobject_cast<MervImageObject *>(scene->manager().image(0));
        QCOMPARE(volume->voxels()->getDepth(), 60);
        QVERIFY(std::abs(double(volume->voxels()->getSpacing(2)) - 0.660688) < 1e-6);
    }

    void femoralCartilage_isTracedAlongItsEdges()
    {
        const QString folder = RealKneeScene::dataFolder("knee-ge-mese");
        if (folder.isEmpty())
            QSKIP("no real knee");
        scene->openKnee(folder);
        using Step = void (RealKneeTest::*)();
        for (const Step step : {&RealKneeTest::makeContoursAndEdgePoints, &RealKneeTest::showInViewer,
                                &RealKneeTest::zoomAndBrighten}) {
            if (QTest::currentTestFailed())
                return;
            (this->*step)();
        }
        const QList<QPointF> sides[] = {inMm(knee_lines::boneSide), inMm(knee_lines::surfaceSide)};
        traceBothSides(sides);
        if (QTest::currentTestFailed())
            return;
        scene->writePicture("knee.png");
        for (int side = 0; side < 2; ++side)
            verifyTrace(contours->fragment(side), sides[side]);
    }
};

void RealKneeTest::makeContoursAndEdgePoints()
{
    ImageManager &manager = scene->manager();
    scene->selectRow(0);
    scene->chooseEntry("Image", "New", "New sliced contours");
    QTRY_COMPARE(manager.imageCount(), 2);
    contours = qobject_cast<SlicedContoursObject *>(manager.image(1));
    QVERIFY(contours != nullptr);
    scene->selectRow(1);
    addFragment("bone side");
    addFragment("surface side");
    QCOMPARE(contours->fragmentCount(), 2);
    scene->selectRow(0);
    scene->chooseEntry("Image", "Extract Edge Points ...");
    QTRY_COMPARE(manager.imageCount(), 3);
    edges = qobject_cast<ConventionalSliceEdgePointExtractor *>(manager.image(2));
    QVERIFY(edges != nullptr);
}

// The volume, the edge points and the contours, on the slice to trace.
void RealKneeTest::showInViewer()
{
    scene->selectRow(0);
    scene->chooseEntry("View", "Show in new view ...");
    scene->placeViewer();
    if (QTest::currentTestFailed())
        return;
    dragIntoViewer(2);
    dragIntoViewer(1);
    scene->tick(scene->composition()->index(1, ImageComposition::AnalyzeColumn));
    scene->enlargeView();
    scene->goToSlice(tracedSlice);
}

void RealKneeTest::zoomAndBrighten()
{
    scene->zoomToTheJoint();
    scene->brighten();
}

void RealKneeTest::traceBothSides(const QList<QPointF> (&sides)[2])
{
    scene->chooseMode("Trace");
    if (QTest::currentTestFailed())
        return;
    const QModelIndex lines = scene->composition()->index(2, 0);
    for (int side = 0; side < 2; ++side) {
        scene->tick(scene->composition()->index(side, ImageComposition::EditColumn, lines));
        scene->trace(sides[side], Qt::LeftButton);
    }
    colorFragment(0, "#ffc83c");
    colorFragment(1, "#3cc8ff");
}

// Types the colour into its cell.
void RealKneeTest::colorFragment(int fragment, const QString &color)
{
    const ImageComposition *composition = scene->composition();
    const QModelIndex cell =
        composition->index(fragment, ImageComposition::ColorColumn, composition->index(2, 0));
    scene->click(scene->tree()->viewport(), scene->tree()->visualRect(cell).center());
    QTRY_VERIFY(qobject_cast<QLineEdit *>(QApplication::focusWidget()));
    auto *line = qobject_cast<QLineEdit *>(QApplication::focusWidget());
    line->selectAll();
    QTest::keyClicks(line, color);
    QTest::keyClick(line, Qt::Key_Return);
    QTRY_COMPARE(cell.data().toString(), color);
}

QTEST_MAIN(RealKneeTest)
#include "RealKneeTest.moc"
