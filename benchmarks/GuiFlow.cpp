// The main job in the real windows, step by step, on a real knee (if it is there) and on a large volume with
// 20,000 points. The time of a step is the longest for which the thread of the windows did not come back to
// its event loop; the label says in which event that was. Needs a display.
#include "Common/MetaImage.h"
#include "benchmarks/TimedApplication.h"
#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "contours/SlicedContoursSegment.h"
#include "meshes/RasterizerObject.h"
#include "meshes/TriMeshDistanceMeasurer.h"
#include "objects/MervImageObject.h"
#include "objects/manager/ImageManager.h"
#include "objects/manager/ImageRelationsGraph.h"
#include "recovery/RecoveryJournal.h"
#include "serialization/dialogs/FileDroppableQListView.h"
#include "serialization/dialogs/ListChoiceDialog.h"
#include "serialization/dialogs/SliceDistanceDialog.h"
#include "serialization/formats/SlicSerializer.h"
#include "shell/MainWindow.h"
#include "shell/Startup.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/DialogDriver.h"
#include "tests/support/PrivateSettings.h"
#include "tests/support/TestData.h"
#include "tests/viewer/KneeLines.h"
#include "view/EnhancedQTreeView.h"
#include "view/ImageComposition.h"
#include "view/QStackedSliceView.h"
#include "view/QStackedSliceViewer.h"

#include <QRadioButton>
#include <QTemporaryDir>
#include <QTest>
#include <QWheelEvent>

#include <benchmark/benchmark.h>

#include <cmath>
#include <fstream>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace {

struct StepTime
{
    std::string name;
    TimedApplication::Standstill longest;
};

// What the two runs differ in.
struct Subject
{
    QString name;
    std::function<void(ImageManager &, DialogDriver &)> open;
    std::function<void(SlicedContoursObject &)> draw; // lines on many slices
    int slice;                                        // that is traced
    float sliceMm;
    QList<QPointF> line; // to trace, mm
};

constexpr int edgesPod = 1, contoursPod = 2;

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
    MinimumColoringRow
};

class Flow
{
public:
    Flow(TimedApplication &timedApplication, Subject newSubject)
        : application(timedApplication)
        , subject(std::move(newSubject))
    {
        window.setGeometry(10, 30, 700, 300);
        window.show();
        settle();
    }
    ~Flow()
    {
        delete viewer;
        while (manager().imageCount() > 0)
            manager().closeImage(manager().index(0, 0));
    }
    Flow(const Flow &) = delete;
    Flow &operator=(const Flow &) = delete;

    std::vector<StepTime> run();

private:
    void begin();
    void look();
    void edit();
    void end();

    ImageManager &manager() { return *window.imageManager(); }
    template <class Object>
    Object *object(int row)
    {
        return dynamic_cast<Object *>(manager().image(row));
    }
    QStackedSliceView *view() const { return viewer->stackedSliceView(); }
    ImageComposition *shown() const { return viewer->imageComposition(); }
    SlicedContoursSegment *lineOf(int fragment, int slice);
    void goToSlice(int slice);

    void step(const char *name, const std::function<void()> &action);
    void command(const std::function<void()> &action);
    void settle();
    void select(int row);
    void mouse(QEvent::Type type, const QPoint &position, Qt::MouseButton button,
               Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void click(const QPoint &position, Qt::MouseButton button,
               Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void wheel(bool up);
    void drag(Qt::MouseButton button, const QPoint &from, const QPoint &to);
    void trace(const QList<QPointF> &line);
    QPoint pixelOf(const QPointF &mm) const;

    const CapturedOutput output;
    TimedApplication &application;
    const Subject subject;
    DialogDriver driver;
    const QTemporaryDir folder;
    MainWindow window;
    RecoveryJournal journal{*window.imageManager(), folder.filePath("session")};
    QPointer<QStackedSliceViewer> viewer;
    bool drawn = false; // the raster stays stale until something is drawn
    std::vector<StepTime> times;
};

// Handles events until nobody has anything left to do.
void Flow::settle()
{
    const auto isBusy = [this] {
        for (int row = 0; row < manager().imageCount(); ++row) {
            const auto *raster = object<RasterizerObject>(row);
            const auto *measurer = object<TriMeshDistanceMeasurer>(row);
            if ((raster != nullptr && drawn && raster->isStale()) ||
                (measurer != nullptr && measurer->isPending()))
                return true;
        }
        return false;
    };
    QTest::qWait(60);
    static_cast<void>(QTest::qWaitFor([&] { return !isBusy(); }, 60000));
    QTest::qWait(60);
}

void Flow::step(const char *name, const std::function<void()> &action)
{
    settle();
    application.takeLongest();
    action();
    settle();
    times.push_back({subject.name.toStdString() + "/" + name, application.takeLongest()});
}

// As an event of its own.
void Flow::command(const std::function<void()> &action)
{
    bool done = false;
    QMetaObject::invokeMethod(
        &window,
        [&] {
            action();
            done = true;
        },
        Qt::QueuedConnection);
    static_cast<void>(QTest::qWaitFor([&] { return done; }, 600000));
}

void Flow::select(int row)
{
    window.findChild<FileDroppableQListView *>()->setCurrentIndex(manager().index(row, 0));
}

void Flow::mouse(QEvent::Type type, const QPoint &position, Qt::MouseButton button,
                 Qt::KeyboardModifiers modifiers)
{
    const bool isMove = type == QEvent::MouseMove;
    QMouseEvent event(type, position, view()->mapToGlobal(position), isMove ? Qt::NoButton : button,
                      type == QEvent::MouseButtonRelease ? Qt::NoButton : button, modifiers);
    QApplication::sendEvent(view(), &event);
    QCoreApplication::processEvents();
}

void Flow::click(const QPoint &position, Qt::MouseButton button, Qt::KeyboardModifiers modifiers)
{
    mouse(QEvent::MouseMove, position, Qt::NoButton, modifiers);
    mouse(QEvent::MouseButtonPress, position, button, modifiers);
    mouse(QEvent::MouseButtonRelease, position, button, modifiers);
}

void Flow::wheel(bool up)
{
    const QPoint middle = view()->rect().center();
    QWheelEvent event(middle, view()->mapToGlobal(middle), {}, QPoint(0, up ? 120 : -120), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(view(), &event);
    QCoreApplication::processEvents();
}

void Flow::drag(Qt::MouseButton button, const QPoint &from, const QPoint &to)
{
    constexpr int moves = 20;
    mouse(QEvent::MouseMove, from, Qt::NoButton);
    mouse(QEvent::MouseButtonPress, from, button);
    for (int i = 1; i <= moves; ++i)
        mouse(QEvent::MouseMove, from + (to - from) * i / moves, button);
    mouse(QEvent::MouseButtonRelease, to, button);
}

void Flow::trace(const QList<QPointF> &line)
{
    const QList<QPointF> path = knee_lines::walked(line, 0.4);
    mouse(QEvent::MouseMove, pixelOf(path.first()), Qt::NoButton);
    mouse(QEvent::MouseButtonPress, pixelOf(path.first()), Qt::LeftButton);
    for (const QPointF &point : path)
        mouse(QEvent::MouseMove, pixelOf(point), Qt::LeftButton);
    mouse(QEvent::MouseButtonRelease, pixelOf(path.last()), Qt::LeftButton);
}

QPoint Flow::pixelOf(const QPointF &mm) const
{
    const ViewState &state = view()->state();
    const Vector4 seen =
        transformed(state.viewMatrix, {mm.x(), mm.y(), static_cast<double>(state.workingZ), 1.0});
    const QPoint middle(view()->width() / 2, view()->height() / 2);
    return {static_cast<int>(std::lround(middle.x() + seen[0])),
            static_cast<int>(std::lround(middle.y() - seen[1]))};
}

std::vector<StepTime> Flow::run()
{
    begin();
    look();
    edit();
    end();
    return std::move(times);
}

void Flow::begin()
{
    step("open", [this] { command([this] { subject.open(manager(), driver); }); });
    select(VolumeRow);
    step("first_picture", [this] { command([this] { window.newView(); }); });
    delete window.findChild<QStackedSliceViewer *>();
    driver.expect<QMessageBox>("thickness", [](QMessageBox *box) { box->button(QMessageBox::Yes)->click(); });
    step("start_procedure", [this] { command([this] { window.startSegmentation(); }); });
    viewer = window.findChild<QStackedSliceViewer *>();
    viewer->setGeometry(270, 210, 1000, 790);
    step("reset_view", [this] { command([this] { viewer->resetView(); }); });
}

void Flow::look()
{
    step("slice_step", [this] {
        for (int i = 0; i < 10; ++i)
            wheel(true);
        for (int i = 0; i < 10; ++i)
            wheel(false);
    });
    step("move_drag", [this] { drag(Qt::LeftButton, {300, 200}, {400, 300}); });
    view()->setBaseMode(InteractMode::Window);
    step("window_drag", [this] { drag(Qt::LeftButton, {300, 100}, {500, 300}); });
    view()->setBaseMode(InteractMode::Move);
    step("oblique_plane", [this] {
        command([this] { view()->rotate(0.3, 0.2, 0.0, false, false); });
        drag(Qt::RightButton, {300, 200}, {340, 240});
    });
    step("axial_plane", [this] { command([this] { viewer->resetView(); }); });
    step("collapse_and_expand", [this] {
        auto *tree = viewer->findChild<EnhancedQTreeView *>();
        command([tree] { tree->collapseAll(); });
        command([tree] { tree->expandAll(); });
    });
}

SlicedContoursSegment *Flow::lineOf(int fragment, int slice)
{
    const float z = (static_cast<float>(slice) + 0.5f) * subject.sliceMm;
    SlicedContoursFragment *lines = object<SlicedContoursObject>(ContoursRow)->fragment(fragment);
    for (int i = 0; i < lines->segmentCount(); ++i)
        if (lines->segment(i)->z() == z)
            return lines->segment(i);
    return nullptr;
}

void Flow::goToSlice(int slice)
{
    command([this, slice] {
        view()->setWorkingZ((static_cast<float>(slice) + 0.5f) * subject.sliceMm);
        view()->repaintNow();
    });
}

void Flow::edit()
{
    auto &contours = *object<SlicedContoursObject>(ContoursRow);
    drawn = true;
    command([&] { subject.draw(contours); });
    step("add_rows", [this] {
        for (const int row : {RasterRow, MeshRow, MinimumColoringRow})
            command([this, row] { viewer->addObject(manager().image(row)); });
    });
    step("metrics_windows", [this] {
        for (const int row : {ContoursRow, ThicknessRow, MinimumRow})
            command([this, row] { window.newMetricsView(manager().index(row, 0)); });
    });
    shown()->setData(shown()->index(edgesPod, ImageComposition::AnalyzeColumn), true);
    shown()->setData(shown()->index(1, ImageComposition::EditColumn, shown()->index(contoursPod, 0)), true);
    goToSlice(subject.slice);
    view()->setBaseMode(InteractMode::Trace);
    command([this] { delete lineOf(0, subject.slice); });
    step("trace", [this] { trace(subject.line); });
    command([this] { delete lineOf(0, subject.slice + 1); });
    goToSlice(subject.slice + 1);
    view()->setBaseMode(InteractMode::Guess);
    step("guess", [this] {
        click(pixelOf(subject.line.first()), Qt::LeftButton);
        click(pixelOf(subject.line.last()), Qt::RightButton);
    });
    view()->setBaseMode(InteractMode::Erase);
    goToSlice(subject.slice);
    step("erase", [this] {
        if (const SlicedContoursSegment *line = lineOf(0, subject.slice))
            click(pixelOf(line->point(line->pointCount() / 2)), Qt::LeftButton, Qt::ShiftModifier);
    });
    view()->setBaseMode(InteractMode::Move);
    step("slice_step_with_all", [this] {
        for (int i = 0; i < 10; ++i)
            wheel(i < 5);
    });
    step("volume_scope", [this] {
        for (int row = 2; row < shown()->podCount(); ++row)
            command([this, row] {
                shown()->setData(shown()->index(row, ImageComposition::DisplayScopeColumn), "Volume");
            });
        command([this] { view()->rotate(0.3, 0.2, 0.0, true, true); });
    });
    step("relations_graph",
         [this] { command([this] { window.findChild<ImageRelationsGraph *>()->repaint(); }); });
    step("snapshot", [this] {
        command([this] {
            lineOf(1, subject.slice)
                ->addPointBack(lineOf(1, subject.slice)->lastPoint() +
                               QPointF(0.2, 0.1)); // something to keep
        });
        settle();
        application.takeLongest();
        command([this] { journal.writeNow(); });
    });
    step("timers", [] { QTest::qWait(11000); });
    step("load_contours", [this] {
        const QString path = folder.filePath("contours.slic");
        std::ofstream file(path.toStdString(), std::ios::binary);
        SlicSerializer().serialize(manager().image(ContoursRow), file);
        file.close();
        command([this, path] { manager().loadFile(path, nullptr); });
    });
}

void Flow::end()
{
    step("close_viewer", [this] { command([this] { viewer->close(); }); });
    // In the middle of a measurement and a rasterization.
    step("close_while_measuring", [this] {
        command([this] {
            auto *contours = object<SlicedContoursObject>(ContoursRow);
            emit contours->updated(contours);
        });
        QTest::qWait(40);
        for (const int row : {MinimumRow, RasterRow, ContoursRow})
            command([this, row] { manager().closeImage(manager().index(row, 0)); });
    });
    step("close_rest", [this] {
        while (manager().imageCount() > 0)
            command([this] { manager().closeImage(manager().index(0, 0)); });
    });
    for (QWidget *widget : QApplication::topLevelWidgets())
        if (widget != &window && widget->isVisible())
            widget->close();
}

QList<QPointF> moved(QList<QPointF> line, const QPointF &by)
{
    for (QPointF &point : line)
        point += by;
    return line;
}

void addLine(SlicedContoursFragment &fragment, const QList<QPointF> &points, float z)
{
    SlicedContoursSegment *segment = fragment.newSegment(points.first(), z);
    segment->beginUpdates();
    for (const QPointF &point : points)
        segment->addPointBack(point);
    segment->endUpdates();
}

Subject knee(const QString &folder)
{
    using namespace knee_lines;
    Subject subject{"knee", {}, {}, tracedSlice, static_cast<float>(sliceMm), inMm(boneSide)};
    subject.open = [folder](ImageManager &manager, DialogDriver &driver) {
        driver.expect<ListChoiceDialog>("series", [](ListChoiceDialog *dialog) { dialog->accept(); });
        driver.expect<ListChoiceDialog>("echo", [](ListChoiceDialog *dialog) { dialog->accept(); });
        driver.expect<SliceDistanceDialog>("distance", [](SliceDistanceDialog *dialog) {
            for (QRadioButton *choice : dialog->findChildren<QRadioButton *>())
                if (choice->text().endsWith(" 4 mm"))
                    choice->click();
            dialog->accept();
        });
        manager.loadDicomSeriesInteractively(folder);
    };
    subject.draw = [](SlicedContoursObject &contours) {
        for (int slice = 2; slice < 22; ++slice) {
            const QPointF aside = QPointF(0.5, 0.9) * (slice - tracedSlice);
            const auto z = static_cast<float>(zOf(slice));
            addLine(*contours.fragment(0), walked(moved(inMm(boneSide), aside), 0.4), z);
            addLine(*contours.fragment(1), walked(moved(inMm(surfaceSide), aside), 0.4), z);
        }
    };
    return subject;
}

constexpr float largeSpacingMm = 0.3125f, largeSliceMm = 1.5f;
constexpr int largeSize = 512, largeDepth = 160;

QList<QPointF> arc(double radiusMm, int points)
{
    QList<QPointF> line;
    for (int i = 0; i < points; ++i) {
        const double angle = 0.3 + 2.4 * i / (points - 1);
        line.append({80.0 + radiusMm * std::cos(angle), 80.0 + radiusMm * std::sin(angle)});
    }
    return line;
}

// Rings of bright and dark, 12 pixels from ring to ring, with a little noise.
void writeRings(const QString &path)
{
    const std::unique_ptr<MERV::Image> image(MERV::createImage(MERV::TypeShort));
    image->setVerbose(0);
    image->setDimensions(largeSize, largeSize, largeDepth, 1, 1);
    image->setSpacing(largeSpacingMm, largeSpacingMm, largeSliceMm, 1.0f);
    std::vector<float> ring;
    for (int y = 0; y < largeSize; ++y)
        for (int x = 0; x < largeSize; ++x)
            ring.push_back(500.0f + 400.0f * std::sin(0.5f * std::hypot(static_cast<float>(x - 256),
                                                                        static_cast<float>(y - 256))));
    auto *voxel = static_cast<short *>(image->getData());
    unsigned int noise = 1;
    for (int z = 0; z < largeDepth; ++z)
        for (const float value : ring) {
            noise = noise * 1664525U + 1013904223U;
            *voxel++ = static_cast<short>(value + static_cast<float>(noise >> 27));
        }
    MERV::saveMetaImage(path.toLocal8Bit().constData(), image.get());
}

Subject large(const QString &path)
{
    Subject subject{"large", {}, {}, 70, largeSliceMm, arc(40.0, 60)};
    subject.open = [path](ImageManager &manager, DialogDriver &) { manager.loadFile(path, nullptr); };
    subject.draw = [](SlicedContoursObject &contours) {
        for (int slice = 50; slice < 106; ++slice) {
            const float z = (static_cast<float>(slice) + 0.5f) * largeSliceMm;
            addLine(*contours.fragment(0), arc(40.0 + 0.05 * (slice - 70), 179), z);
            addLine(*contours.fragment(1), arc(43.0 + 0.05 * (slice - 70), 179), z);
        }
    };
    return subject;
}

void report(const std::vector<StepTime> &times)
{
    for (const StepTime &time : times)
        benchmark::RegisterBenchmark(time.name.c_str(),
                                     [time](benchmark::State &state) {
                                         for (auto _ : state)
                                             state.SetIterationTime(time.longest.milliseconds / 1000.0);
                                         state.SetLabel(time.longest.event.toStdString());
                                     })
            ->UseManualTime()
            ->Iterations(1)
            ->Unit(benchmark::kMillisecond);
}

} // namespace

int main(int argc, char **argv)
{
    const PrivateSettings settings;
    prepareApplication();
    TimedApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    const QTemporaryDir folder;
    const QString rings = folder.filePath("rings");
    {
        const CapturedOutput output;
        writeRings(rings);
    }
    const QString series = QString::fromStdString(testDataFolder()) + "/knee-ge-mese/dicom";
    if (QFileInfo(series).isDir())
        report(Flow(application, knee(series)).run());
    report(Flow(application, large(rings + ".mhd")).run());
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
