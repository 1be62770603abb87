// One move of the mouse while a contour is traced, from the event to the finished model, without drawing (the
// view is hidden). 56 slices of 512 x 512 pixels, 20,000 points of contours.
#include "contours/ConventionalSliceEdgePointExtractor.h"
#include "contours/EdgePointSelection.h"
#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "contours/SlicedContoursSegment.h"
#include "objects/MervImageObject.h"
#include "view/ImageComposition.h"
#include "view/QStackedSliceView.h"

#include <QApplication>
#include <QMouseEvent>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <memory>

namespace {

constexpr int width = 512, height = 512, depth = 56, middleSlice = depth / 2;
constexpr int pointsPerSlice = 358; // 56 * 358 = 20,048
constexpr float spacing = 0.3f, thickness = 1.5f;
constexpr double centreMm = width * 0.3 / 2.0;
constexpr double traceRadiusMm = 40.0;

// Rings of bright and dark, 12 pixels from ring to ring, with a little noise.
MERV::Image *newRings()
{
    MERV::Image *image = MERV::createImage(MERV::TypeUShort);
    image->setVerbose(0);
    image->setDimensions(width, height, depth, 1, 1);
    image->setSpacing(spacing, spacing, thickness, 1.0f);
    unsigned int noise = 1;
    auto *voxel = static_cast<unsigned short *>(image->getData());
    for (int z = 0; z < depth; ++z)
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) {
                noise = noise * 1664525U + 1013904223U;
                const double distance = std::hypot(x - width / 2, y - height / 2);
                *voxel++ =
                    static_cast<unsigned short>(500.0 + 400.0 * std::sin(distance / 2.0) + (noise >> 28));
            }
    image->computeMinMax();
    return image;
}

struct Workplace
{
    MervImageObject image{newRings(), "/rings.mhd"};
    ConventionalSliceEdgePointExtractor edges{&image};
    SlicedContoursObject contours{"lines"};
    SlicedContoursFragment *edited = contours.newFragment("edited");
    ImageComposition composition;
    QStackedSliceView view{nullptr, &composition};

    Workplace()
    {
        for (int slice = 0; slice < depth; ++slice)
            addCircle((static_cast<float>(slice) + 0.5f) * thickness);
        composition.addImageObject(&image);
        composition.addImageObject(&edges);
        composition.addImageObject(&contours);
        composition.setData(composition.index(1, ImageComposition::AnalyzeColumn), true);
        composition.setData(composition.index(0, ImageComposition::EditColumn, composition.index(2, 0)),
                            true);
        view.setInteractBaseModeTrace();
        view.setWorkingZ((middleSlice + 0.5f) * thickness);
    }

    void addCircle(float z)
    {
        SlicedContoursSegment *circle = edited->newSegment({centreMm + 50.0, centreMm}, z);
        for (int i = 1; i < pointsPerSlice; ++i) {
            const double angle = 6.28 * i / pointsPerSlice;
            circle->addPointFront({centreMm + 50.0 * std::cos(angle), centreMm + 50.0 * std::sin(angle)});
        }
    }

    // A hidden view shows 1 mm as a pixel; its middle is at the corner of the image.
    QPointF position(int step) const
    {
        const double angle = 0.01 * (step % 200 < 100 ? step % 200 : 200 - step % 200); // to and fro
        return {centreMm + traceRadiusMm * std::cos(angle), -(centreMm + traceRadiusMm * std::sin(angle))};
    }

    void send(QEvent::Type type, int step)
    {
        const bool isPress = type == QEvent::MouseButtonPress;
        QMouseEvent event(type, position(step), position(step), isPress ? Qt::LeftButton : Qt::NoButton,
                          Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&view, &event);
    }
};

Workplace &workplace()
{
    static Workplace place;
    return place;
}

void traceMove(benchmark::State &state)
{
    Workplace &place = workplace();
    int step = 0;
    place.send(QEvent::MouseButtonPress, step);
    for (auto _ : state)
        place.send(QEvent::MouseMove, ++step);
    state.counters["points"] = place.view.state().activeSegment->pointCount();
    state.counters["marks"] = static_cast<double>(place.view.state().edgeMarkers.size());
    delete place.view.state().activeSegment.data();
}
BENCHMARK(traceMove)->Unit(benchmark::kMicrosecond);

bool isWithin(double a, double b, double radius)
{
    return std::abs(a - b) <= radius;
}

// The same questions by walking over all edge points of the slice and all points of all contours.
void traceMovePlain(benchmark::State &state)
{
    Workplace &place = workplace();
    SlicedContoursSegment *active = place.edited->newSegment({centreMm + traceRadiusMm, centreMm}, -1.0f);
    const float z = (middleSlice + 0.5f) * thickness;
    int step = 0;
    for (auto _ : state) {
        const QPointF at = place.position(++step);
        const double x = at.x(), y = -at.y();
        EdgePointList marks;
        for (const EdgePoint &point : place.edges.slicePoints(middleSlice))
            if (isWithin(static_cast<double>(point.x), x, 2.5) &&
                isWithin(static_cast<double>(point.y), y, 2.5))
                marks.append(const_cast<EdgePoint *>(&point));
        QList<Vector3> ends;
        for (int i = 0; i < place.edited->segmentCount(); ++i) {
            const SlicedContoursSegment *segment = place.edited->segment(i);
            for (int k = 0; k < segment->pointCount(); ++k) {
                const QPointF p = segment->point(k);
                if (isWithin(static_cast<double>(segment->z()), static_cast<double>(z), 0.15) &&
                    isWithin(p.x(), x, 0.15) && isWithin(p.y(), y, 0.15))
                    ends.append({p.x(), p.y(), static_cast<double>(z)});
            }
        }
        benchmark::DoNotOptimize(ends);
        const EdgePoint best = bestEdgePoint(marks, x, y, static_cast<double>(z));
        active->addPointBack({static_cast<double>(best.x), static_cast<double>(best.y)});
    }
    delete active;
}
BENCHMARK(traceMovePlain)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
