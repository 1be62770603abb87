#pragma once

#include "contours/ConventionalSliceEdgePointExtractor.h"
#include "contours/SlicedContour.h"
#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "contours/SlicedContoursSegment.h"
#include "objects/MervImageObject.h"
#include "tests/support/TestVolume.h"
#include "view/GraphicsPod.h"
#include "view/ImageComposition.h"
#include "view/QStackedSliceView.h"

#include <QPointer>
#include <QTest>

#include <memory>

// A view of 320 x 320 pixels on a volume of 40 x 40 x 5 voxels of 1 x 1 x 2 mm, dark (0) for x < 20 and
// bright (200) beyond, with contours (one contour, two fragments; the first one is edited) and edge points,
// which are analyzed. After resetView() one mm is 8 pixels, (20, 20) mm is in the middle and the plane is at
// z = 1.
class ViewScene
{
public:
    static constexpr int size = 320;
    static constexpr double pixelsPerMm = 8.0;

    ViewScene()
    {
        auto volume =
            newVolume(MERV::TypeUShort, {40, 40, 5}, [](int x, int, int) { return x < 20 ? 0 : 200; });
        volume->setSpacing(1.0f, 1.0f, 2.0f, 1.0f);
        image = std::make_unique<MervImageObject>(volume.release(), "/somewhere/knee.mhd");
        contours = std::make_unique<SlicedContoursObject>("lines");
        contour = contours->newContour("cartilage");
        bone = contours->newFragment("bone side");
        surface = contours->newFragment("surface side");
        contour->addFragmentReference(bone);
        edges = std::make_unique<ConventionalSliceEdgePointExtractor>(image.get());
        composition = std::make_unique<ImageComposition>();
        composition->addImageObject(image.get());
        composition->addImageObject(contours.get());
        composition->addImageObject(edges.get());
        composition->setData(composition->index(2, ImageComposition::AnalyzeColumn), true);
        edit(1);
        view = new QStackedSliceView(nullptr, composition.get());
    }
    ~ViewScene() { delete view; }
    ViewScene(const ViewScene &) = delete;
    ViewScene &operator=(const ViewScene &) = delete;

    // Shows the view as a window of its own. False if it does not come up.
    bool show()
    {
        view->resize(size, size);
        view->show();
        view->activateWindow();
        const bool isUp = QTest::qWaitForWindowActive(view);
        view->setFocus();
        view->resetView();
        return isUp && view->width() == size && view->height() == size;
    }

    // Edits the child row of the contours; -1 for none.
    void edit(int childRow)
    {
        const QModelIndex parent = composition->index(1, 0);
        composition->setData(
            composition->index(childRow < 0 ? 1 : childRow, ImageComposition::EditColumn, parent),
            childRow >= 0);
    }

    // Where a position in mm is in the widget after resetView().
    static QPoint pixel(double x, double y)
    {
        constexpr int middle = size / 2;
        return {static_cast<int>(middle + (x - 20.0) * pixelsPerMm),
                static_cast<int>(middle - (y - 20.0) * pixelsPerMm)};
    }

    const ViewState &state() const { return view->state(); }

    // A segment with all points as they are, those on a straight line too.
    static SlicedContoursSegment *line(SlicedContoursFragment *fragment, float z,
                                       std::initializer_list<QPointF> points)
    {
        SlicedContoursSegment *segment = fragment->newSegment(*(points.end() - 1), z);
        for (auto point = points.end() - 1; point != points.begin();)
            segment->addPointFront(*--point);
        return segment;
    }

    static QList<QPointF> pointsOf(const SlicedContoursSegment *segment)
    {
        const auto points = segment->snapshot().points;
        return QList<QPointF>(points.begin(), points.end());
    }

    std::unique_ptr<MervImageObject> image;
    std::unique_ptr<SlicedContoursObject> contours;
    SlicedContour *contour = nullptr;
    SlicedContoursFragment *bone = nullptr;
    SlicedContoursFragment *surface = nullptr;
    std::unique_ptr<ConventionalSliceEdgePointExtractor> edges;
    std::unique_ptr<ImageComposition> composition;
    QPointer<QStackedSliceView> view;
};
