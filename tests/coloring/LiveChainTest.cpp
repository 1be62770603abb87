// From the edit of a line to the picture on the screen, through all that is derived from it.
#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "contours/SlicedContoursSegment.h"
#include "meshes/ColoringTriMeshRenderer.h"
#include "meshes/SlicedContoursTriangulator.h"
#include "meshes/TriMeshDistanceMeasurer.h"
#include "meshes/TriMeshFragment.h"
#include "objects/MervImageObject.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/GoldenPicture.h"
#include "tests/support/TestVolume.h"
#include "view/DisplayScope.h"
#include "view/GraphicsPod.h"
#include "view/ImageComposition.h"
#include "view/QStackedSliceView.h"

#include <QScreen>
#include <QTest>

#include <memory>
#include <vector>

namespace {

constexpr int size = 320;

// A view of 320 x 320 pixels with 8 pixels per mm and (20, 20) mm in its middle, which shows one object.
class Window
{
public:
    Window(ImageObject &frame, ImageObject &shown, int scope)
    {
        composition.addImageObject(&frame); // gives the view its extent
        composition.pod(0)->setDisplay(false);
        composition.addImageObject(&shown);
        composition.pod(1)->setDisplayScope(scope);
        view = std::make_unique<QStackedSliceView>(nullptr, &composition);
    }

    bool show(QPoint place)
    {
        view->setWindowFlag(Qt::FramelessWindowHint);
        view->resize(size, size);
        view->move(place);
        view->show();
        const bool isUp = QTest::qWaitForWindowExposed(view.get());
        view->resetView();
        return isUp && view->width() == size && view->height() == size;
    }

    // What stands on the screen: the view is neither asked nor painted.
    QImage screen() const
    {
        const QPoint corner = view->mapToGlobal(QPoint(0, 0));
        const QPixmap pixels = view->screen()->grabWindow(0, corner.x(), corner.y(), size, size);
        return opaquePicture(pixels.toImage());
    }

    // The colour at a position in mm.
    QColor at(double x, double y) const
    {
        return probe(screen(), size / 2 + static_cast<int>((x - 20.0) * 8.0),
                     size / 2 - static_cast<int>((y - 20.0) * 8.0));
    }

    ImageComposition composition;
    std::unique_ptr<QStackedSliceView> view;
};

// A line along x on one slice.
SlicedContoursSegment *addLine(SlicedContoursFragment *fragment, double y, float z, double from, double to)
{
    SlicedContoursSegment *segment = fragment->newSegment({from, y}, z);
    segment->addPointBack({to, y});
    return segment;
}

// Draws the lines of the fragment anew.
void replaceLines(SlicedContoursFragment *fragment, double yOfBoth)
{
    while (fragment->segmentCount() > 0)
        delete fragment->segment(0);
    addLine(fragment, yOfBoth, 1.0f, 5.0, 35.0);
    addLine(fragment, yOfBoth, 3.0f, 5.0, 35.0);
}

// Contours with two fragments on the slices at z = 1 and 3: the bone side, a ribbon that rises from y = 10 to
// y = 18 for x from 10 to 30, and the surface side, an upright ribbon at one y beyond it. The distance of a
// corner of the first to the second is the difference in y.
struct Knee
{
    std::unique_ptr<MervImageObject> frame;
    std::unique_ptr<SlicedContoursObject> contours = std::make_unique<SlicedContoursObject>("lines");
    SlicedContoursFragment *bone = contours->newFragment("cartilage bone interface");
    SlicedContoursFragment *surface = contours->newFragment("cartilage surface");

    Knee()
    {
        auto volume = newVolume(MERV::TypeUShort, {40, 40, 5}, [](int, int, int) { return 0; });
        volume->setSpacing(1.0f, 1.0f, 2.0f, 1.0f);
        frame = std::make_unique<MervImageObject>(volume.release(), "/somewhere/frame.mhd");
        addLine(bone, 10.0, 1.0f, 10.0, 30.0);
        addLine(bone, 18.0, 3.0f, 10.0, 30.0);
        replaceLines(surface, 26.0);
    }
};

bool isColoured(const QColor &colour, int red, int green, int blue)
{
    return isNear(colour, red, green, blue, 3);
}

// The ribbon has the normal (0, -2, 8) / sqrt(68). Lit along (1, 1, 1) by 0.2 + 0.25 and 0.75 * 0.4201 it
// shows 0.7651 of a colour, and as highlight 0.2 * 0.7827^2 = 0.1225: a channel of 0 is 31, one of 1 is 226.
constexpr int dark = 31, bright = 226;

} // namespace

class LiveChainTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { output = std::make_unique<CapturedOutput>(); }
    void cleanup() { output.reset(); }

    void editedContour_changesTheColouringOnTheScreen();
    void closedSamples_leaveThePicture();
    void closedMesh_leavesThePicture();
    void editedContour_changesItsTriangulationOnTheScreen();
    void editedContour_showsInASecondView();

private:
    std::unique_ptr<CapturedOutput> output;
};

void LiveChainTest::editedContour_changesTheColouringOnTheScreen()
{
    Knee knee;
    SlicedContoursTriangulator triangulator(knee.contours.get());
    TriMeshFragment *ribbon = triangulator.triangulationOf(knee.bone);
    TriMeshDistanceMeasurer thickness(ribbon, triangulator.triangulationOf(knee.surface),
                                      TriMeshDistanceMeasurer::MinimalDistance, "thickness");
    ColoringTriMeshRenderer coloring(ribbon, &thickness, "coloring");
    Window window(*knee.frame, coloring, ScopeVolume);
    QVERIFY(window.show({40, 40}));

    // The middle of the pixel is at y = 15.9375. 16 mm at y = 10 and 8 mm, half of it, at y = 18: the
    // fraction is 0.6289, 0.517 of the way from green to yellow.
    QTRY_VERIFY(isColoured(window.at(20, 16), 132, bright, dark));
    QVERIFY(isColoured(window.at(20, 25), 0, 0, 0));
    QCOMPARE(thickness.sampleAt({10, 10, 1}), 16.0);
    QCOMPARE(thickness.sampleAt({30, 18, 3}), 8.0);
    const QImage before = window.screen();

    // 10 mm and 2 mm: 0.40625, 0.636 of the way from cyan to green.
    replaceLines(knee.surface, 20.0);
    QTRY_VERIFY(isColoured(window.at(20, 16), dark, bright, 102));
    QVERIFY(window.screen() != before);
    QCOMPARE(goldenFault(window.screen(), "coloring_live"), QString());

    // A bone line goes: no ribbon, nothing to colour.
    delete knee.bone->segment(1);
    QTRY_VERIFY(isColoured(window.at(20, 16), 0, 0, 0));
}

void LiveChainTest::closedSamples_leaveThePicture()
{
    Knee knee;
    SlicedContoursTriangulator triangulator(knee.contours.get());
    TriMeshFragment *ribbon = triangulator.triangulationOf(knee.bone);
    auto thickness =
        std::make_unique<TriMeshDistanceMeasurer>(ribbon, triangulator.triangulationOf(knee.surface),
                                                  TriMeshDistanceMeasurer::MinimalDistance, "thickness");
    ColoringTriMeshRenderer coloring(ribbon, thickness.get(), "coloring");
    Window window(*knee.frame, coloring, ScopeVolume);
    QVERIFY(window.show({40, 40}));
    QTRY_VERIFY(isColoured(window.at(20, 16), 132, bright, dark));
    coloring.detachFrom(thickness.get());
    window.composition.detachFrom(thickness.get());
    thickness.reset();
    QTRY_VERIFY(isColoured(window.at(20, 16), 0, 0, 0));
    replaceLines(knee.surface, 20.0);
    window.view->repaintNow();
}

void LiveChainTest::closedMesh_leavesThePicture()
{
    Knee knee;
    auto triangulator = std::make_unique<SlicedContoursTriangulator>(knee.contours.get());
    TriMeshFragment *ribbon = triangulator->triangulationOf(knee.bone);
    TriMeshDistanceMeasurer thickness(ribbon, triangulator->triangulationOf(knee.surface),
                                      TriMeshDistanceMeasurer::MinimalDistance, "thickness");
    ColoringTriMeshRenderer coloring(ribbon, &thickness, "coloring");
    Window window(*knee.frame, coloring, ScopeVolume);
    QVERIFY(window.show({40, 40}));
    QTRY_VERIFY(isColoured(window.at(20, 16), 132, bright, dark));
    for (ImageObject *object :
         {static_cast<ImageObject *>(&coloring), static_cast<ImageObject *>(&thickness)})
        object->detachFrom(triangulator.get());
    window.composition.detachFrom(triangulator.get());
    triangulator.reset();
    QTRY_VERIFY(isColoured(window.at(20, 16), 0, 0, 0));
    QTRY_VERIFY(thickness.samples()->empty()); // the last run tells the view, which still draws nothing
    QTest::qWait(50);
    QVERIFY(isColoured(window.at(20, 16), 0, 0, 0));
}

void LiveChainTest::editedContour_changesItsTriangulationOnTheScreen()
{
    Knee knee;
    SlicedContoursTriangulator triangulator(knee.contours.get());
    Window window(*knee.frame, triangulator, ScopeVolume);
    QVERIFY(window.show({40, 40}));
    QTRY_VERIFY(window.at(20, 14).green() > 0);
    QVERIFY(isColoured(window.at(20, 8), 0, 0, 0));
    // The lower line moves from y = 10 to y = 6.
    delete knee.bone->segment(0);
    addLine(knee.bone, 6.0, 1.0f, 10.0, 30.0);
    QTRY_VERIFY(window.at(20, 8).green() > 0);
}

void LiveChainTest::editedContour_showsInASecondView()
{
    Knee knee;
    Window first(*knee.frame, *knee.contours, ScopeSlice);
    Window second(*knee.frame, *knee.contours, ScopeSlice);
    QVERIFY(first.show({40, 40}));
    QVERIFY(second.show({400, 40}));
    // Both show the slice at z = 1 with the line at y = 10.
    for (const Window *window : {&first, &second}) {
        QTRY_VERIFY(window->screen().pixel(160, 240) != qRgb(0, 0, 0) ||
                    window->screen().pixel(160, 239) != qRgb(0, 0, 0));
        QVERIFY(isColoured(window->at(20, 5), 0, 0, 0));
    }
    addLine(knee.bone, 5.0, 1.0f, 10.0, 30.0);
    for (const Window *window : {&first, &second})
        QTRY_VERIFY(window->screen().pixel(160, 280) != qRgb(0, 0, 0) ||
                    window->screen().pixel(160, 279) != qRgb(0, 0, 0));
}

QTEST_MAIN(LiveChainTest)
#include "LiveChainTest.moc"
