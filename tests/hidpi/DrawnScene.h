#pragma once

#include "contours/ConventionalSliceEdgePointExtractor.h"
#include "contours/SlicedContour.h"
#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "meshes/ColoringTriMeshRenderer.h"
#include "meshes/SlicedContoursTriangulator.h"
#include "meshes/TriMeshFragment.h"
#include "objects/MervImageObject.h"
#include "objects/SliceSelector.h"
#include "objects/SparselySampledImageObject.h"
#include "tests/support/DrawnContours.h"
#include "tests/support/GoldenPicture.h"
#include "tests/support/TestVolume.h"
#include "view/DisplayScope.h"
#include "view/GraphicsPod.h"
#include "view/ImageComposition.h"
#include "view/QStackedSliceView.h"

#include <QApplication>
#include <QMouseEvent>
#include <QTest>

#include <cmath>
#include <memory>

// One object of each kind in a view of 320 x 320 logical pixels, all hidden at first. After resetView() one
// mm is 8 logical pixels, (20, 20) mm is in the middle and the plane is at z = 1, on the first of five
// slices.
class DrawnScene
{
public:
    static constexpr int size = 320;

    enum Row : int
    {
        Volume,
        Vectors0, // one row for each component
        Vectors1,
        Vectors2,
        Sagittal,
        Contours,
        Edges,
        Ribbons,
        Coloring,
        Samples
    };

    DrawnScene()
    {
        drawContours();
        // Values beyond the window: cut obliquely, they are hatched.
        volume.setWindow(0.0f, 150.0f);
        ribbons = std::make_unique<SlicedContoursTriangulator>(&contours);
        measure();
        coloring = std::make_unique<ColoringTriMeshRenderer>(ribbons->triangulationOf(ribbon), &thickness,
                                                             "coloring");
        for (int i = 0; i < 9; ++i)
            crosses.setSample({8.0 + 3.0 * i, 12.0 + 2.0 * (i % 4), 1.0}, 0.3 + 0.05 * i);
        for (ImageObject *object : std::initializer_list<ImageObject *>{
                 &volume, &vectors, &sagittal, &contours, &edges, ribbons.get(), coloring.get(), &crosses})
            composition.addImageObject(object);
        for (int row = 0; row < composition.podCount(); ++row)
            composition.pod(row)->setDisplay(false);
        composition.setData(composition.index(Edges, ImageComposition::AnalyzeColumn), true);
        composition.setData(
            composition.index(1, ImageComposition::EditColumn, composition.index(Contours, 0)), true);
        view = std::make_unique<QStackedSliceView>(nullptr, &composition);
    }

    // False if the window does not come up.
    bool show()
    {
        view->setWindowFlag(Qt::FramelessWindowHint);
        view->resize(size, size);
        view->move(0, 0);
        view->show();
        const bool isUp = QTest::qWaitForWindowExposed(view.get());
        view->resetView();
        return isUp && view->width() == size && view->height() == size;
    }

    void display(Row row, int scope)
    {
        composition.pod(row)->setDisplay(true);
        composition.pod(row)->setDisplayScope(scope);
    }
    void sendMouse(QEvent::Type type, QPoint at, Qt::MouseButton button, Qt::MouseButtons held)
    {
        QMouseEvent event(type, at, QPointF(), button, held, Qt::NoModifier);
        QApplication::sendEvent(view.get(), &event);
    }
    QImage picture()
    {
        view->repaintNow();
        return opaquePicture(view->grabFramebuffer());
    }

    MervImageObject volume{makeVolume().release(), "/somewhere/knee.mhd"};
    MervImageObject vectors{makeVectors().release(), "/somewhere/vectors.mhd"};
    SliceSelector sagittal{&volume, SliceDirection::X, 30.0};
    SlicedContoursObject contours{"lines"};
    SlicedContour *contour = contours.newContour("cartilage");
    SlicedContoursFragment *outline = contours.newFragment("outline");
    SlicedContoursFragment *ribbon = contours.newFragment("ribbon");
    ConventionalSliceEdgePointExtractor edges{&volume};
    SparselySampledImageObject thickness{"thickness", nullptr};
    SparselySampledImageObject crosses{"samples", nullptr};
    std::unique_ptr<SlicedContoursTriangulator> ribbons;
    std::unique_ptr<ColoringTriMeshRenderer> coloring;
    ImageComposition composition;
    std::unique_ptr<QStackedSliceView> view;

private:
    // Dark to the left of x = 20; to the right rings of three greys.
    static std::unique_ptr<MERV::Image> makeVolume()
    {
        auto image = newVolume(MERV::TypeUShort, {40, 40, 5}, [](int x, int y, int z) {
            if (x < 20)
                return 10 * z;
            return 100 + 50 * (static_cast<int>(std::hypot(x - 30, y - 20) / 4.0) % 3);
        });
        image->setSpacing(1.0f, 1.0f, 2.0f, 1.0f);
        return image;
    }
    // (9, 7, 5) mm everywhere.
    static std::unique_ptr<MERV::Image> makeVectors()
    {
        auto image = newVolume(MERV::TypeFloat, {40, 40, 5, 1, 3});
        image->setSpacing(1.0f, 1.0f, 2.0f, 1.0f);
        for (int z = 0; z < 5; ++z)
            for (int y = 0; y < 40; ++y)
                for (int x = 0; x < 40; ++x)
                    for (int channel = 0; channel < 3; ++channel)
                        image->setVoxel(9.0f - 2.0f * static_cast<float>(channel), x, y, z, 0, channel);
        return image;
    }
    void drawContours()
    {
        contour->addFragmentReference(outline);
        drawn::rectangle(outline, 1.0f, 6, 6, 17, 14);
        drawn::line(outline, 1.0f, {{24, 5}, {30, 9}, {36, 6}});
        drawn::line(ribbon, 1.0f, {{6, 22}, {14, 30}, {22, 26}, {34, 34}});
        drawn::line(ribbon, 3.0f, {{8, 24}, {16, 34}, {24, 29}, {33, 37}});
        drawn::line(ribbon, 5.0f, {{10, 26}, {18, 37}, {26, 32}, {32, 39}});
    }
    // A value at each corner of the ribbon with x below 23; beyond, faces are hatched.
    void measure()
    {
        for (const float z : {1.0f, 3.0f, 5.0f})
            for (int i = 0; i < ribbon->segmentCount(); ++i)
                for (const QPointF &point : ribbon->segment(i)->snapshot().points)
                    if (ribbon->segment(i)->z() == z && point.x() < 23.0)
                        thickness.setSample({point.x(), point.y(), static_cast<double>(z)},
                                            1.0 + 0.1 * point.x());
    }
};
