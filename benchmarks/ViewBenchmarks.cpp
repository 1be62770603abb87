// What a reader feels in a viewer, each with its repaint: the first picture, a step through the slices, a
// movement of the mouse while the window is changed and while a line is traced; the plain ones ask and
// convert all anew each time. Needs a display.
#include "contours/ConventionalSliceEdgePointExtractor.h"
#include "contours/EdgePointSelection.h"
#include "contours/SlicedContour.h"
#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "contours/SlicedContoursSegment.h"
#include "contours/metrics/SlicedMetricsModel.h"
#include "objects/MervImageObject.h"
#include "objects/manager/ImageManager.h"
#include "shell/Startup.h"
#include "tests/support/PrivateSettings.h"
#include "view/ImageComposition.h"
#include "view/QStackedSliceView.h"
#include "view/QStackedSliceViewer.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QMouseEvent>
#include <QWheelEvent>

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <memory>

namespace {

constexpr float spacing = 0.3125f, thickness = 1.5f;
constexpr int tracedSlice = 28, contourSlices = 56;
constexpr double traceRadiusMm = 40.0;

// Rings of bright and dark around the middle, 12 pixels from ring to ring, with a little noise.
std::unique_ptr<MERV::Image> rings(int width, int height, int depth)
{
    std::unique_ptr<MERV::Image> image(MERV::createImage(MERV::TypeShort));
    image->setVerbose(0);
    image->setDimensions(width, height, depth, 1, 1);
    image->setSpacing(spacing, spacing, thickness, 1.0f);
    auto *voxel = static_cast<short *>(image->getData());
    unsigned int noise = 1;
    for (int z = 0; z < depth; ++z)
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) {
                noise = noise * 1664525U + 1013904223U;
                const double distance = std::hypot(x - width / 2, y - height / 2);
                *voxel++ = static_cast<short>(500.0 + 400.0 * std::sin(distance / 2.0) + (noise >> 28));
            }
    image->computeMinMax();
    return image;
}

void fill(SlicedContoursObject &contours, int pointsPerSlice)
{
    const double middle = 256 * static_cast<double>(spacing);
    SlicedContoursFragment *fragment = contours.newFragment("edited");
    contours.newContour("solid")->addFragmentReference(fragment);
    for (int slice = 0; slice < contourSlices; ++slice) {
        SlicedContoursSegment *line =
            fragment->newSegment({middle + 50.0, middle}, (static_cast<float>(slice) + 0.5f) * thickness);
        line->beginUpdates();
        for (int i = 1; i < pointsPerSlice; ++i) {
            const double angle = 6.28 * i / pointsPerSlice;
            line->addPointBack({middle + 50.0 * std::cos(angle), middle + 50.0 * std::sin(angle)});
        }
        line->endUpdates();
    }
}

// A viewer on the screen with a volume, and with contours and edge points if there are points.
class Desk
{
public:
    Desk(int width, int height, int depth, int pointsPerSlice = 0)
        : image(rings(width, height, depth).release(), "/rings.mhd")
    {
        viewer->addObject(&image);
        if (pointsPerSlice > 0) {
            fill(contours, pointsPerSlice);
            edges = std::make_unique<ConventionalSliceEdgePointExtractor>(&image);
            viewer->addObject(edges.get());
            viewer->addObject(&contours);
            ImageComposition &shown = *viewer->imageComposition();
            shown.setData(shown.index(1, ImageComposition::AnalyzeColumn), true);
            shown.setData(shown.index(1, ImageComposition::EditColumn, shown.index(2, 0)), true);
        }
        show();
    }

    QStackedSliceView &view() const { return *viewer->stackedSliceView(); }

    void send(QEvent::Type type, const QPointF &position, Qt::MouseButton held) const
    {
        const bool isPress = type == QEvent::MouseButtonPress;
        QMouseEvent event(type, position, position, isPress ? held : Qt::NoButton, held, Qt::NoModifier);
        QApplication::sendEvent(&view(), &event);
    }
    void wheel(bool up) const
    {
        const QPointF middle = view().rect().center();
        QWheelEvent event(middle, middle, {}, {0, up ? 120 : -120}, Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(&view(), &event);
    }
    // To and fro on an arc around the middle of the image.
    Vector4 onArc(int step) const
    {
        const double angle = 0.01 * (step % 200 < 100 ? step % 200 : 200 - step % 200);
        const double middle = 256 * static_cast<double>(spacing);
        return {middle + traceRadiusMm * std::cos(angle), middle + traceRadiusMm * std::sin(angle),
                static_cast<double>(view().state().workingZ), 1.0};
    }
    QPointF pixelOf(const Vector4 &mm) const
    {
        const Vector4 seen = transformed(view().state().viewMatrix, mm);
        return {0.5 * view().width() + seen[0], 0.5 * view().height() - seen[1]};
    }

    MervImageObject image;
    SlicedContoursObject contours{"lines"};
    std::unique_ptr<ConventionalSliceEdgePointExtractor> edges;

private:
    void show()
    {
        bool painted = false;
        const QObject context;
        QObject::connect(&view(), &QOpenGLWidget::frameSwapped, &context, [&] { painted = true; });
        viewer->resize(1000, 790);
        viewer->show();
        viewer->resetView();
        while (!painted)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

    ImageManager manager{nullptr};
    std::unique_ptr<QStackedSliceViewer> viewer = std::make_unique<QStackedSliceViewer>(&manager, nullptr);
};

// From the volume to the viewer that has been painted. The argument is the number of slices.
void firstPicture(benchmark::State &state)
{
    MervImageObject image(rings(512, 512, static_cast<int>(state.range(0))).release(), "/rings.mhd");
    ImageManager manager(nullptr);
    for (auto _ : state) {
        QElapsedTimer clock;
        clock.start();
        const auto viewer = std::make_unique<QStackedSliceViewer>(&manager, nullptr);
        bool painted = false;
        QObject::connect(viewer->stackedSliceView(), &QOpenGLWidget::frameSwapped, viewer.get(),
                         [&] { painted = true; });
        viewer->addObject(&image);
        viewer->show();
        viewer->resetView();
        while (!painted)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        state.SetIterationTime(static_cast<double>(clock.nsecsElapsed()) / 1e9);
    }
}
BENCHMARK(firstPicture)->Arg(160)->Arg(320)->UseManualTime()->Unit(benchmark::kMillisecond);

// The argument is the height of the slices; the plain way converts each slice anew.
void sliceStep(benchmark::State &state, bool plainly)
{
    Desk desk(512, static_cast<int>(state.range(0)), 60);
    int step = 0;
    for (auto _ : state) {
        if (plainly)
            desk.image.invalidateTextures();
        desk.wheel(step++ % 50 < 25);
    }
}
BENCHMARK_CAPTURE(sliceStep, ours, false)->Arg(512)->Arg(1024)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(sliceStep, plain, true)->Arg(512)->UseRealTime()->Unit(benchmark::kMillisecond);

// One move of the mouse. The argument is the number of slices; the plain way converts all of them.
void windowDrag(benchmark::State &state, bool plainly)
{
    const auto depth = static_cast<int>(state.range(0));
    Desk desk(512, 512, depth);
    desk.view().setBaseMode(InteractMode::Window);
    desk.send(QEvent::MouseButtonPress, {300, 300}, Qt::LeftButton);
    int step = 0;
    for (auto _ : state) {
        ++step;
        desk.send(QEvent::MouseMove, {300.0 + step % 2, 300.0 - step % 2}, Qt::LeftButton);
        for (int slice = 0; plainly && slice < depth; ++slice)
            benchmark::DoNotOptimize(desk.image.displaySlice(slice));
    }
}
BENCHMARK_CAPTURE(windowDrag, ours, false)->Arg(160)->Arg(320)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(windowDrag, plain, true)->Arg(160)->UseRealTime()->Unit(benchmark::kMillisecond);

bool isWithin(double a, double b, double radius)
{
    return std::abs(a - b) <= radius;
}

// What a move asks for, by walking over all edge points of the slice and all points of all contours.
void askPlainly(const Desk &desk, const Vector4 &at)
{
    EdgePointList marks;
    for (const EdgePoint &point : desk.edges->slicePoints(tracedSlice))
        if (isWithin(static_cast<double>(point.x), at[0], 2.5) &&
            isWithin(static_cast<double>(point.y), at[1], 2.5))
            marks.append(const_cast<EdgePoint *>(&point));
    benchmark::DoNotOptimize(bestEdgePoint(marks, at[0], at[1], at[2]));
    QList<Vector3> ends;
    const SlicedContoursFragment *edited = desk.contours.fragment(0);
    for (int i = 0; i < edited->segmentCount(); ++i) {
        const SegmentSnapshot line = edited->segment(i)->snapshot();
        for (const QPointF &p : line.points)
            if (isWithin(static_cast<double>(line.z), at[2], 0.15) && isWithin(p.x(), at[0], 0.15) &&
                isWithin(p.y(), at[1], 0.15))
                ends.append({p.x(), p.y(), at[2]});
    }
    benchmark::DoNotOptimize(ends);
}

// The argument is the number of contour points in each of 56 slices; 358 are 20,000 in all. Without its
// event the plain way asks by walking, adds a point and repaints.
void traceMove(benchmark::State &state, bool plainly)
{
    Desk desk(512, 512, contourSlices, static_cast<int>(state.range(0)));
    desk.view().setWorkingZ((tracedSlice + 0.5f) * thickness);
    desk.view().setBaseMode(InteractMode::Trace);
    int step = 0;
    desk.send(QEvent::MouseMove, desk.pixelOf(desk.onArc(step)), Qt::NoButton);
    desk.send(QEvent::MouseButtonPress, desk.pixelOf(desk.onArc(step)), Qt::LeftButton);
    SlicedContoursSegment *line = desk.view().state().activeSegment;
    if (line == nullptr) {
        state.SkipWithError("nothing is traced");
        return;
    }
    for (auto _ : state) {
        const Vector4 at = desk.onArc(++step);
        if (!plainly) {
            desk.send(QEvent::MouseMove, desk.pixelOf(at), Qt::LeftButton);
            continue;
        }
        askPlainly(desk, at);
        line->addPointBack({at[0], at[1]}); // which repaints
    }
    state.counters["points"] = line->pointCount();
    state.counters["marks"] = static_cast<double>(desk.view().state().edgeMarkers.size());
}
BENCHMARK_CAPTURE(traceMove, ours, false)->Arg(358)->Arg(716)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(traceMove, plain, true)->Arg(358)->UseRealTime()->Unit(benchmark::kMillisecond);

// The texts of all cells and headers. The argument is as before.
void metricsTable(benchmark::State &state)
{
    SlicedContoursObject contours("lines");
    fill(contours, static_cast<int>(state.range(0)));
    SlicedMetricsModel table(&contours);
    for (auto _ : state)
        for (int row = 0; row < table.rowCount(); ++row) {
            benchmark::DoNotOptimize(table.headerData(row, Qt::Vertical));
            for (int column = 0; column < table.columnCount(); ++column)
                benchmark::DoNotOptimize(table.data(table.index(row, column)));
        }
    state.counters["rows"] = table.rowCount();
}
BENCHMARK(metricsTable)->Arg(358)->Arg(716)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    const PrivateSettings settings;
    prepareApplication();
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
