// A long day at the program in fast motion: one patient's contours are edited, slices stepped through,
// viewers and tables of metrics opened and closed, measurements and colourings made anew, contours saved,
// while the workers follow and the recovery journal writes. The memory that the process holds must not grow.
//
// TEVORA_ENDURANCE multiplies the length: 5 is the whole day (10,000 edits, 500 steps, 50 viewers).
#include "contours/ConventionalSliceEdgePointExtractor.h"
#include "contours/SlicedContour.h"
#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "contours/metrics/SlicedMetricsModel.h"
#include "contours/metrics/viewer/SlicedMetricsViewer.h"
#include "meshes/BitPlaneRasterizerObject.h"
#include "meshes/ColoringTriMeshRenderer.h"
#include "meshes/SlicedContoursTriangulator.h"
#include "meshes/TriMeshDistanceMeasurer.h"
#include "meshes/TriMeshFragment.h"
#include "objects/MervImageObject.h"
#include "objects/manager/ImageManager.h"
#include "recovery/RecoveryJournal.h"
#include "serialization/formats/SlicSerializer.h"
#include "serialization/formats/SlicUnserializer.h"
#include "tests/endurance/ContourEditor.h"
#include "tests/endurance/Watched.h"
#include "tests/support/DialogDriver.h"
#include "tests/support/NoTimeLimit.h"
#include "tests/support/PrivateSettings.h"
#include "tests/support/Sanitized.h"
#include "tests/support/SilentOutput.h"
#include "tests/support/TestVolume.h"
#include "view/GraphicsPod.h"
#include "view/ImageComposition.h"
#include "view/QStackedSliceView.h"
#include "view/QStackedSliceViewer.h"

#include <QDir>
#include <QElapsedTimer>
#include <QPixmapCache>
#include <QPointer>
#include <QTemporaryDir>
#include <QTest>
#include <QWheelEvent>

#include <fstream>
#include <memory>

#include <malloc.h>
#include <unistd.h>

namespace {

constexpr int volumeSize = 64, volumeDepth = 10;
constexpr float sliceMm = 2.0f;
constexpr int editsPerUnit = 2000, stepsPerUnit = 100, viewersPerUnit = 10;
constexpr double allowedGrowthMb = 20.0;

// Of this process, with what is free given back, the pictures of widgets that the toolkit keeps (10 MB at
// most) among it.
double residentMb()
{
    QPixmapCache::clear();
    malloc_trim(0);
    long total = 0, resident = 0;
    std::ifstream("/proc/self/statm") >> total >> resident;
    return static_cast<double>(resident) * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1e6;
}

} // namespace

class EnduranceTest : public QObject
{
    Q_OBJECT

private:
    void buildObjects();
    void addMeasurement(int definition);
    void showAll(QStackedSliceViewer &viewer);
    void stepSlice();
    void openAndCloseWindows();
    void renewMeasurements();
    void saveContours();
    void verifyKept();
    void awaitWorkers();
    double sizeAtRest();
    void workOn(int edit);

    const QTemporaryDir folder;
    int filesSaved = 0;
    SlicSerializer serializer;
    std::unique_ptr<SilentOutput> silence;
    std::unique_ptr<ImageManager> manager;
    std::unique_ptr<RecoveryJournal> journal;
    SlicedContoursObject *contours = nullptr;
    SlicedContoursTriangulator *mesh = nullptr;
    QPointer<QStackedSliceViewer> mainViewer;
    std::vector<std::uint8_t> decisions;
    std::unique_ptr<EditSource> source;
    std::unique_ptr<ContourEditor> editor;

private slots:
    void init();
    void cleanup();
    void memoryStaysTheSame();
};

void EnduranceTest::init()
{
    constexpr std::size_t bytesPerEdit = 64;
    silence = std::make_unique<SilentOutput>();
    manager = std::make_unique<ImageManager>(nullptr);
    manager->addSerializer(&serializer);
    journal = std::make_unique<RecoveryJournal>(*manager, folder.filePath("session"));
    const int units = std::max(1, qEnvironmentVariableIntValue("TEVORA_ENDURANCE"));
    decisions = randomBytes(1, bytesPerEdit * static_cast<std::size_t>(editsPerUnit * units));
    source = std::make_unique<EditSource>(decisions);
    buildObjects();
    mainViewer = new QStackedSliceViewer(manager.get(), nullptr);
    showAll(*mainViewer);
    QVERIFY(QTest::qWaitForWindowExposed(mainViewer));
}

void EnduranceTest::cleanup()
{
    delete mainViewer;
    editor.reset();
    journal.reset();
    while (manager->imageCount() > 0)
        manager->closeImage(manager->index(0, 0));
    manager.reset();
    silence.reset();
}

// As the procedure for a patella makes them.
void EnduranceTest::buildObjects()
{
    auto image = newVolume(MERV::TypeUShort, {volumeSize, volumeSize, volumeDepth}, [](int x, int y, int z) {
        return (x - 32) * (x - 32) + (y - 32) * (y - 32) < 100 + 40 * z ? 400 : 40;
    });
    image->setSpacing(1.0f, 1.0f, sliceMm, 1.0f);
    auto *volume = new MervImageObject(image.release(), "/somewhere/knee.mhd");
    contours = new SlicedContoursObject("lines");
    editor = std::make_unique<ContourEditor>(*contours, *source, PlainContours(), ContourEditor::LineEdits);
    editor->addContour("cartilage", {"bone", "surface"});
    mesh = new SlicedContoursTriangulator(contours);
    auto *raster = new BitPlaneRasterizerObject(contours, volumeSize, volumeSize, volumeDepth, 1, 1, sliceMm);
    raster->setBitCode(contours->contour(0), 127);
    raster->setDefaultBitCode(-1);
    for (ImageObject *object : std::initializer_list<ImageObject *>{
             volume, new ConventionalSliceEdgePointExtractor(volume), contours, mesh, raster})
        manager->addImage(object);
    for (const int definition : {0, 2})
        addMeasurement(definition);
}

void EnduranceTest::addMeasurement(int definition)
{
    auto *measurer =
        new TriMeshDistanceMeasurer(mesh->fragment(0), mesh->fragment(1), definition, "thickness");
    manager->addImage(measurer);
    manager->addImage(new ColoringTriMeshRenderer(mesh->fragment(0), measurer, "coloring"));
}

void EnduranceTest::showAll(QStackedSliceViewer &viewer)
{
    for (int row = 0; row < manager->imageCount(); ++row) {
        viewer.addObject(manager->image(row));
        ImageComposition *composition = viewer.imageComposition();
        composition->pod(composition->podCount() - 1)->setDisplayScope(3 + row % 3);
    }
    viewer.resize(280, 300);
    viewer.show();
    viewer.resetView();
}

void EnduranceTest::stepSlice()
{
    QStackedSliceView *view = mainViewer->stackedSliceView();
    const QPointF centre = view->rect().center();
    const int notch = view->state().workingZ < sliceMm * volumeDepth / 2 || source->oneIn(2) ? 120 : -120;
    QWheelEvent wheel(centre, view->mapToGlobal(centre), {}, {0, notch}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(view, &wheel);
}

void EnduranceTest::openAndCloseWindows()
{
    auto *viewer = new QStackedSliceViewer(manager.get(), nullptr);
    showAll(*viewer);
    QVERIFY(QTest::qWaitForWindowExposed(viewer));
    auto *table = new SlicedMetricsViewer(contours);
    manager->addClosingListener(table,
                                [table](ImageObject *closing) { table->model()->detachFrom(closing); });
    table->show();
    QVERIFY(QTest::qWaitForWindowExposed(table));
    for (int i = 0; i < 5; ++i) {
        editor->step();
        viewer->stackedSliceView()->repaintNow();
        QCoreApplication::processEvents();
    }
    const QPointer<QWidget> first = viewer, second = table;
    viewer->close();
    table->close();
    QTRY_VERIFY(first.isNull() && second.isNull());
}

void EnduranceTest::renewMeasurements()
{
    for (int row = manager->imageCount() - 1; row >= 0; --row) {
        const ImageObject *object = manager->image(row);
        if (qobject_cast<const TriMeshDistanceMeasurer *>(object) != nullptr ||
            qobject_cast<const ColoringTriMeshRenderer *>(object) != nullptr)
            manager->closeImage(manager->index(row, 0));
    }
    for (const int definition : {0, 2})
        addMeasurement(definition);
    for (int row = manager->imageCount() - 4; row < manager->imageCount(); ++row)
        mainViewer->addObject(manager->image(row));
}

void EnduranceTest::saveContours()
{
    DialogDriver driver;
    driver.expectFileDialog("Save Image as", folder.filePath(QString("%1.slic").arg(++filesSaved)));
    QVERIFY(manager->saveImage(contours));
    QVERIFY2(driver.verify(), driver.report());
}

// The last generation is what has been drawn.
void EnduranceTest::verifyKept()
{
    journal->writeNow();
    const QFileInfoList kept =
        QDir(folder.filePath("session")).entryInfoList({"*.slic"}, QDir::Files, QDir::Time);
    QVERIFY(!kept.isEmpty());
    std::ifstream stream(kept.first().filesystemFilePath(), std::ios::binary);
    SlicUnserializer reader;
    const std::unique_ptr<ImageObject> object(
        static_cast<StreamImageObjectUnserializer &>(reader).unserialize(stream));
    const auto *read = qobject_cast<SlicedContoursObject *>(object.get());
    QVERIFY(read != nullptr);
    ContourEditor::verifyEqual(*read, editor->plain().asReadBack());
}

void EnduranceTest::awaitWorkers()
{
    const auto isIdle = [this] {
        for (int row = 0; row < manager->imageCount(); ++row) {
            const auto *measurer = qobject_cast<TriMeshDistanceMeasurer *>(manager->image(row));
            const auto *raster = qobject_cast<RasterizerObject *>(manager->image(row));
            if ((measurer != nullptr && measurer->isPending()) || (raster != nullptr && raster->isStale()))
                return false;
        }
        return true;
    };
    QTRY_VERIFY_WITH_TIMEOUT(isIdle(), 60000);
}

double EnduranceTest::sizeAtRest()
{
    awaitWorkers();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
    return residentMb();
}

// The parts of the day that fall on this edit. Fast motion: the view is painted for some edits together.
void EnduranceTest::workOn(int edit)
{
    constexpr int editsPerPicture = 10;
    const auto fallsOn = [edit](int interval) { return edit % interval == interval - 1; };
    editor->step();
    if (fallsOn(editsPerPicture))
        QCoreApplication::processEvents();
    if (fallsOn(editsPerUnit / stepsPerUnit))
        stepSlice();
    if (fallsOn(editsPerUnit / viewersPerUnit)) {
        openAndCloseWindows();
        renewMeasurements();
        saveContours();
        editor->verify();
    }
}

void EnduranceTest::memoryStaysTheSame()
{
    const int edits = editsPerUnit * std::max(1, qEnvironmentVariableIntValue("TEVORA_ENDURANCE"));
    QElapsedTimer clock;
    clock.start();
    double sizes[3]{};
    const int marks[]{edits / 10, edits / 2, edits};
    for (int edit = 0, mark = 0; edit < edits; ++edit) {
        workOn(edit);
        if (QTest::currentTestFailed())
            return;
        if (edit + 1 == marks[mark])
            sizes[mark++] = sizeAtRest();
    }
    qInfo("%d edits in %.1f s; resident at 10 %%, 50 %%, 100 %%: %.1f, %.1f, %.1f MB", edits,
          static_cast<double>(clock.elapsed()) / 1000, sizes[0], sizes[1], sizes[2]);
    QVERIFY(!source->atEnd());
    verifyKept();
    QVERIFY(sizes[0] > 0);
    if (!sanitized)
        QVERIFY2(sizes[2] - sizes[0] < allowedGrowthMb,
                 qPrintable(QString("grown by %1 MB").arg(sizes[2] - sizes[0])));
}

int main(int argc, char **argv)
{
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    const PrivateSettings settings;
    liftTimeLimit();
    QApplication application(argc, argv);
    EnduranceTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "EnduranceTest.moc"
