// Images are opened, derived from one another, shown, saved and closed in random orders while workers measure
// and rasterize, windows repaint, and what is drawn is kept for recovery. After each step the list, the
// viewers and the tables of metrics hold what they should and nothing that has gone.
//
// TEVORA_ORDERS sets the number of orders, TEVORA_STRESS_SEED the first one. Most of the time goes into
// windows that software draws: a thousand orders take some minutes, and the same for the last hundred as for
// the first.
#include "contours/ConventionalSliceEdgePointExtractor.h"
#include "contours/SlicedContour.h"
#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "contours/SlicedContoursSegment.h"
#include "contours/metrics/SlicedMetricsModel.h"
#include "contours/metrics/viewer/SlicedMetricsViewer.h"
#include "meshes/BitPlaneRasterizerObject.h"
#include "meshes/ColoringTriMeshRenderer.h"
#include "meshes/SlicedContoursTriangulator.h"
#include "meshes/TriMeshAligner.h"
#include "meshes/TriMeshDistanceMeasurer.h"
#include "objects/SliceSelector.h"
#include "recovery/RecoveryFiles.h"
#include "recovery/RecoveryJournal.h"
#include "tests/shell/MainWindowScene.h"
#include "tests/support/DialogDriver.h"
#include "tests/support/NoTimeLimit.h"
#include "tests/support/PrivateSettings.h"
#include "view/EnhancedQTreeView.h"
#include "view/GraphicsPod.h"
#include "view/ImageComposition.h"
#include "view/QStackedSliceView.h"
#include "view/QStackedSliceViewer.h"

#include <QAction>
#include <QActionGroup>
#include <QDir>
#include <QElapsedTimer>
#include <QPointer>
#include <QTemporaryDir>
#include <QTest>

#include <functional>
#include <memory>
#include <random>
#include <set>
#include <utility>
#include <vector>

namespace {

constexpr int volumeSize = 16, volumeDepth = 4;
constexpr int stepsPerOrder = 25;
constexpr int ordersOfSuite = 80, ordersPerReport = 100;
constexpr int mostImages = 14, mostViewers = 3, mostTables = 3;

// What a viewer should show: the images that were added and live, in this order.
struct ExpectedViewer
{
    QPointer<QStackedSliceViewer> viewer;
    QList<ImageObject *> shown;
};

struct ExpectedTable
{
    QPointer<SlicedMetricsViewer> viewer;
    const ImageObject *source; // null when it has gone
};

} // namespace

class ClosingOrdersTest : public QObject
{
    Q_OBJECT

public:
    static void initMain()
    {
        static const PrivateSettings settings;
        liftTimeLimit();
        QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    }

private:
    int below(int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); }
    ImageObject *someImage() { return images.isEmpty() ? nullptr : images[below(int(images.size()))]; }
    template <class Class>
    Class *some()
    {
        QList<Class *> fitting;
        for (ImageObject *image : std::as_const(images))
            if (auto *wanted = dynamic_cast<Class *>(image))
                fitting.append(wanted);
        return fitting.isEmpty() ? nullptr : fitting[below(int(fitting.size()))];
    }
    TriMeshFragment *someFragment()
    {
        const auto *mesh = some<TriMeshObject>();
        return mesh != nullptr && mesh->meshCount() > 0 ? mesh->fragment(below(mesh->meshCount())) : nullptr;
    }
    void select(const ImageObject *image) { scene->select({int(images.indexOf(image))}); }
    // What a command of the window has appended.
    void expectOneMore()
    {
        QCOMPARE(scene->manager().imageCount(), images.size() + 1);
        images.append(scene->manager().image(int(images.size())));
    }
    void add(ImageObject *image)
    {
        scene->manager().addImage(image);
        images.append(image);
    }

    // --- images ---

    void openVolume()
    {
        images.append(scene->addVolume(
            "volume", newVolume(MERV::TypeUShort, {volumeSize, volumeSize, volumeDepth},
                                [](int x, int y, int) { return x < volumeSize / 2 ? 10 * y : 900; })));
    }
    // A ribbon on each side, through all slices.
    void newContours()
    {
        scene->window.newSlicedContours();
        expectOneMore();
        ++contoursDrawn;
        auto *contours = dynamic_cast<SlicedContoursObject *>(images.last());
        SlicedContour *contour = contours->newContour("cartilage");
        for (const double y : {4.0, 9.0}) {
            SlicedContoursFragment *fragment = contours->newFragment("side");
            contour->addFragmentReference(fragment);
            for (int slice = 0; slice < volumeDepth; ++slice)
                drawLine(*fragment, slice, y + below(3));
        }
    }
    void drawLine(SlicedContoursFragment &fragment, int slice, double y)
    {
        SlicedContoursSegment *line = fragment.newSegment({2, y}, static_cast<float>(slice) + 0.5f);
        for (int x = 3; x < 12; ++x)
            line->addPointBack({double(x), y + below(2)});
    }
    void deriveFromVolume()
    {
        auto *volume = some<MervImageObject>();
        if (volume == nullptr)
            return;
        select(volume);
        if (below(2) == 0)
            scene->window.extractEdgePoints();
        else
            scene->window.newSliceSelector();
        expectOneMore();
    }
    void triangulate()
    {
        if (auto *contours = some<SlicedContoursObject>()) {
            select(contours);
            scene->window.triangulateSlicedContours();
            expectOneMore();
        }
    }
    void align()
    {
        TriMeshFragment *base = someFragment();
        if (TriMeshFragment *free = someFragment(); base != nullptr && base != free)
            add(new TriMeshAligner(base, free));
    }
    void measure()
    {
        TriMeshFragment *base = someFragment();
        if (TriMeshFragment *remote = someFragment(); base != nullptr) {
            auto *measurer = new TriMeshDistanceMeasurer(base, remote, below(3), "thickness");
            add(measurer);
            measurer->remeasure();
        }
    }
    void colour()
    {
        TriMeshFragment *fragment = someFragment();
        if (auto *measurer = some<TriMeshDistanceMeasurer>(); measurer != nullptr && fragment != nullptr)
            add(new ColoringTriMeshRenderer(fragment, measurer, "coloring"));
    }
    void rasterize()
    {
        if (ImageObject *source = someImage()) {
            auto *raster = new BitPlaneRasterizerObject(source, volumeSize, volumeSize, volumeDepth, 1, 1, 1);
            raster->setDefaultBitCode(-1);
            raster->setBitCode(source, 127);
            add(raster);
            raster->invalidateRasterization();
        }
    }
    void editLines()
    {
        auto *contours = some<SlicedContoursObject>();
        if (contours == nullptr || contours->fragmentCount() == 0)
            return;
        SlicedContoursFragment *fragment = contours->fragment(below(contours->fragmentCount()));
        switch (below(4)) {
        case 0:
            if (fragment->segmentCount() > 0)
                delete fragment->segment(below(fragment->segmentCount()));
            break;
        case 1:
            if (contours->fragmentCount() > 1)
                delete fragment;
            else
                contours->newFragment("more");
            break;
        default:
            drawLine(*fragment, below(volumeDepth), below(12));
        }
    }
    // Seldom, for the dialog takes its time.
    void saveContours()
    {
        auto *contours = some<SlicedContoursObject>();
        if (contours == nullptr || below(5) > 0)
            return;
        DialogDriver driver;
        driver.expectFileDialog("Save Image as", folder.filePath(QString("%1.slic").arg(++filesSaved)));
        QVERIFY(scene->manager().saveImage(contours));
        QVERIFY2(driver.verify(), driver.report());
    }
    void closeImage()
    {
        if (ImageObject *closing = someImage())
            close(closing);
    }
    void close(ImageObject *closing)
    {
        const QPointer<ImageObject> watched = closing;
        select(closing);
        scene->window.closeImage();
        QVERIFY(watched.isNull());
        images.removeOne(closing);
        for (ExpectedViewer &entry : viewers)
            entry.shown.removeAll(closing);
        for (ExpectedTable &entry : tables)
            entry.source = entry.source == closing ? nullptr : entry.source;
    }

    // --- windows ---

    void openViewer()
    {
        ImageObject *image = someImage();
        if (image == nullptr || viewers.size() >= mostViewers)
            return;
        const auto before = MainWindowScene::topLevels<QStackedSliceViewer>();
        select(image);
        scene->window.newView();
        for (QStackedSliceViewer *viewer : MainWindowScene::topLevels<QStackedSliceViewer>()) {
            if (before.contains(viewer))
                continue;
            viewer->resize(240, 260);
            viewers.push_back({viewer, {image}});
        }
    }
    ExpectedViewer *someViewer()
    {
        return viewers.empty() ? nullptr : &viewers[static_cast<std::size_t>(below(int(viewers.size())))];
    }
    void showMore()
    {
        ExpectedViewer *entry = someViewer();
        if (ImageObject *image = someImage(); entry != nullptr && image != nullptr) {
            entry->viewer->addObject(image);
            entry->shown.append(image);
            entry->viewer->imageComposition()->pod(int(entry->shown.size()) - 1)->setDisplayScope(below(8));
        }
    }
    void workInViewer()
    {
        const ExpectedViewer *entry = someViewer();
        if (entry == nullptr || entry->shown.isEmpty())
            return;
        ImageComposition *model = entry->viewer->imageComposition();
        const QModelIndex row = model->index(below(model->podCount()), ImageComposition::ImageColumn);
        model->setData(row.siblingAtColumn(ImageComposition::AnalyzeColumn), true);
        if (model->hasChildren(row))
            model->setData(model->index(below(model->rowCount(row)), ImageComposition::EditColumn, row),
                           below(3) > 0);
        entry->viewer->findChild<EnhancedQTreeView *>()->setCurrentIndex(row);
        entry->viewer->findChild<QActionGroup *>()->actions().at(below(8))->trigger();
        QTest::keyClick(entry->viewer->stackedSliceView(), below(2) == 0 ? Qt::Key_N : Qt::Key_PageDown);
        entry->viewer->stackedSliceView()->requestRepaint();
    }
    void closeViewer()
    {
        if (viewers.empty())
            return;
        const int at = below(int(viewers.size()));
        viewers[std::size_t(at)].viewer->close();
        goneWindows.append(viewers[std::size_t(at)].viewer.data());
        viewers.erase(viewers.begin() + at);
    }
    void openTable()
    {
        ImageObject *image = someImage();
        if (image == nullptr || tables.size() >= mostTables)
            return;
        const auto before = MainWindowScene::topLevels<SlicedMetricsViewer>();
        select(image);
        scene->window.newMetricsView();
        for (SlicedMetricsViewer *viewer : MainWindowScene::topLevels<SlicedMetricsViewer>())
            if (!before.contains(viewer))
                tables.push_back({viewer, image});
    }
    void closeTable()
    {
        if (tables.empty())
            return;
        const int at = below(int(tables.size()));
        tables[std::size_t(at)].viewer->close();
        goneWindows.append(tables[std::size_t(at)].viewer.data());
        tables.erase(tables.begin() + at);
    }

    // --- what must hold after each step ---

    void verifyImages()
    {
        const ImageManager &manager = scene->manager();
        QCOMPARE(manager.imageCount(), images.size());
        QCOMPARE(manager.rowCount(QModelIndex()), images.size());
        for (int row = 0; row < images.size(); ++row) {
            QCOMPARE(manager.image(row), images[row]);
            QVERIFY(!manager.index(row, 0).data().toString().isEmpty());
            for (ImageObject *source : images[row]->sources())
                QVERIFY(images.contains(source));
        }
        const auto *list = scene->window.findChild<FileDroppableQListView *>();
        for (const QModelIndex &index : list->selectionModel()->selectedIndexes())
            QVERIFY(index.isValid() && index.row() < images.size());
    }
    void verifyViewers()
    {
        for (const ExpectedViewer &entry : viewers) {
            QVERIFY(!entry.viewer.isNull());
            const ImageComposition *composition = entry.viewer->imageComposition();
            QCOMPARE(composition->podCount(), entry.shown.size());
            QCOMPARE(composition->rowCount(), entry.shown.size());
            for (int row = 0; row < entry.shown.size(); ++row)
                QCOMPARE(composition->pod(row)->object(), entry.shown[row]);
            QVERIFY(composition->analyzedObject() == nullptr ||
                    entry.shown.contains(composition->analyzedObject()));
            GraphicsObject *edited = composition->editedObject();
            QVERIFY(edited == nullptr || entry.shown.contains(rootImageObject(edited)));
        }
    }
    void verifyTables()
    {
        for (const ExpectedTable &entry : tables) {
            QVERIFY(!entry.viewer.isNull());
            SlicedMetricsModel *model = entry.viewer->model();
            if (entry.source == nullptr)
                QCOMPARE(model->rowCount(), 1); // the cell that says so
            for (int row = 0; row < model->rowCount(); ++row)
                for (int column = 0; column < model->columnCount(); ++column)
                    model->index(row, column).data();
        }
    }

    void act()
    {
        using Self = ClosingOrdersTest;
        using Act = void (Self::*)();
        static constexpr Act growing[] = {&Self::openVolume,  &Self::newContours, &Self::deriveFromVolume,
                                          &Self::triangulate, &Self::triangulate, &Self::align,
                                          &Self::measure,     &Self::colour,      &Self::rasterize};
        static constexpr Act useful[] = {&Self::editLines,    &Self::openViewer, &Self::showMore,
                                         &Self::workInViewer, &Self::openTable,  &Self::saveContours};
        static constexpr Act ending[] = {&Self::closeImage, &Self::closeViewer, &Self::closeTable};
        const int kind = below(10);
        if (kind < 4 && images.size() < mostImages)
            (this->*growing[below(int(std::size(growing)))])();
        else if (kind < 8)
            (this->*useful[below(int(std::size(useful)))])();
        else
            (this->*ending[below(int(std::size(ending)))])();
    }
    void verifyAll()
    {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        verifyImages();
        verifyViewers();
        verifyTables();
    }
    void verifyNoWindows()
    {
        for (const QPointer<QWidget> &window : std::as_const(goneWindows))
            QVERIFY(window.isNull());
        goneWindows.clear();
        QCOMPARE(MainWindowScene::topLevels<QStackedSliceViewer>().size(), 0);
        QCOMPARE(MainWindowScene::topLevels<SlicedMetricsViewer>().size(), 0);
    }
    void runOrder(unsigned seed)
    {
        random.seed(seed);
        openVolume();
        newContours();
        for (int step = 0; step < stepsPerOrder && !QTest::currentTestFailed(); ++step) {
            act();
            verifyAll();
        }
        // All that is left, in any order.
        while (!QTest::currentTestFailed() && (!images.isEmpty() || !viewers.empty() || !tables.empty())) {
            const int kind = below(3);
            kind == 0 ? closeViewer() : kind == 1 ? closeTable() : closeImage();
            verifyAll();
        }
    }

    // The contours that generations are of.
    std::set<int> objectsKept() const
    {
        std::set<int> objects;
        for (const QString &name : QDir(session()).entryList({"*.slic"}, QDir::Files))
            objects.insert(RecoveryFiles::parse(name)->object);
        return objects;
    }
    QString session() const { return folder.filePath("session"); }

    const QTemporaryDir folder;
    std::mt19937 random;
    std::unique_ptr<MainWindowScene> scene;
    int contoursDrawn = 0, filesSaved = 0;
    QList<ImageObject *> images; // in the order of the list
    std::vector<ExpectedViewer> viewers;
    std::vector<ExpectedTable> tables;
    QList<QPointer<QWidget>> goneWindows;

private slots:
    void anyOrder_leavesNothingBehind()
    {
        bool given = false;
        const int wanted = qEnvironmentVariableIntValue("TEVORA_ORDERS", &given);
        const int orders = given ? wanted : ordersOfSuite;
        const int first = qEnvironmentVariableIntValue("TEVORA_STRESS_SEED");
        QElapsedTimer clock;
        clock.start();
        scene = std::make_unique<MainWindowScene>();
        auto journal = std::make_unique<RecoveryJournal>(scene->manager(), session());
        scene->window.resize(400, 300);
        scene->window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&scene->window));
        for (int order = 0; order < orders; ++order) {
            runOrder(static_cast<unsigned>(first + order + 1));
            verifyNoWindows();
            if (QTest::currentTestFailed()) {
                qInfo("order %d", first + order);
                return;
            }
            if ((order + 1) % ordersPerReport == 0)
                qInfo("%d orders in %lld s", order + 1, clock.elapsed() / 1000);
        }
        journal.reset();
        QCOMPARE(objectsKept().size(), static_cast<std::size_t>(contoursDrawn));
        scene.reset();
        QVERIFY(QApplication::topLevelWidgets().isEmpty());
    }
};

QTEST_MAIN(ClosingOrdersTest)
#include "ClosingOrdersTest.moc"
