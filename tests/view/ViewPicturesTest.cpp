#include "tests/support/CapturedOutput.h"
#include "tests/support/GoldenPicture.h"
#include "tests/view/ViewScene.h"

#include <QApplication>

#include <cmath>
#include <memory>
#include <vector>

namespace {

// Writes down what it is asked to draw and how it would be clipped: '<' leaves what lies at smaller z, '>' at
// larger z, as a view from above has it.
class ListingObject : public ImageObject
{
public:
    ListingObject(const QString &objectName, QStringList &callList)
        : ImageObject(objectName, nullptr)
        , calls(callList)
    {}
    void beforePaint() override { calls << label() + " before"; }
    void renderPoint(GraphicsObjectRenderAdvisor *, float x, float y, float z) override
    {
        note(QString("point %1 %2 %3").arg(x).arg(y).arg(z));
    }
    bool renderPlane(GraphicsObjectRenderAdvisor *, const double plane[4]) override
    {
        note(QString("plane %1 %2 %3 %4").arg(plane[0]).arg(plane[1]).arg(plane[2]).arg(plane[3]));
        return true;
    }
    void render(GraphicsObjectRenderAdvisor *) override { note("whole"); }

private:
    void note(const QString &what)
    {
        QString clip;
        if (glIsEnabled(GL_CLIP_PLANE0)) {
            // Kept in eye space, as the transposed inverse of the view has turned it.
            GLdouble equation[4];
            glGetClipPlane(GL_CLIP_PLANE0, equation);
            GLdouble view[16]; // column by column
            glGetDoublev(GL_MODELVIEW_MATRIX, view);
            clip = equation[2] * view[10] > 0 ? " >" : " <";
        }
        calls << label() + ' ' + what + clip;
    }

    QStringList &calls;
};

} // namespace

// Pictures of the view, seen as resetView() shows them: 8 pixels per mm, (20, 20) mm in the middle.
class ViewPicturesTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void emptyComposition_isBlack();
    void slice_showsTheWindowedVoxels();
    void opacityAndColor_tintTheSlice();
    void obliquePlane_showsTheCutVoxels();
    void contours_withFillsAndLines();
    void scopes_drawInTheirPasses();
    void greatMagnification_cutsNothingAway();
    void objects_areDrawnBackToFrontInTheirOrder();
    void edgeMarks_areKitesAlongTheGradient();
    void rubberBand_isADashedRectangle();
    void cube_hasFaintFarAndStrongNearEdges();
    void strongPerspective_clipsBelow();
    void pictureAfterFullScreen_isTheSame();
    void pictureAfterClosing_isBlack();

private:
    QImage picture()
    {
        scene->view->repaintNow();
        return opaquePicture(scene->view->grabFramebuffer());
    }
    QColor at(const QImage &image, double x, double y) const
    {
        const QPoint pixel = ViewScene::pixel(x, y);
        return probe(image, pixel.x(), pixel.y());
    }
    // Fills the square from (8, 8) to (16, 16) and draws a line beside it.
    void addContours();
    void hide(int row) { scene->composition->pod(row)->setDisplay(false); }

    std::unique_ptr<CapturedOutput> output;
    std::unique_ptr<ViewScene> scene;
};

void ViewPicturesTest::init()
{
    output = std::make_unique<CapturedOutput>();
    scene = std::make_unique<ViewScene>();
    QVERIFY(scene->show());
}

void ViewPicturesTest::cleanup()
{
    scene.reset();
    output.reset();
}

void ViewPicturesTest::addContours()
{
    ViewScene::line(scene->bone, 1.0f, {{8, 8}, {16, 8}, {16, 16}});
    ViewScene::line(scene->bone, 1.0f, {{16, 16}, {8, 16}, {8, 8}});
    ViewScene::line(scene->surface, 1.0f, {{24, 8}, {24, 32}, {36, 32}});
    ViewScene::line(scene->surface, 3.0f, {{4, 36}, {36, 36}}); // on the next slice
}

void ViewPicturesTest::emptyComposition_isBlack()
{
    ImageComposition composition;
    QStackedSliceView view(nullptr, &composition);
    view.resize(220, 220);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    const QImage image = opaquePicture(view.grabFramebuffer());
    QCOMPARE(image.size(), QSize(220, 220));
    for (const QPoint point : {QPoint(0, 0), QPoint(110, 110), QPoint(219, 219)})
        QVERIFY(isNear(probe(image, point.x(), point.y()), 0, 0, 0));
}

void ViewPicturesTest::slice_showsTheWindowedVoxels()
{
    scene->image->setWindow(0.0f, 400.0f); // 200 of 400: half of 255
    const QImage image = picture();
    QCOMPARE(goldenFault(image, "view_slice"), QString());
    QVERIFY(isNear(at(image, 10, 20), 0, 0, 0));
    QVERIFY(isNear(at(image, 30, 20), 127, 127, 127));
    // The edge is between x = 19.75 and 20.25.
    QVERIFY(isNear(at(image, 19.75, 5), 0, 0, 0));
    QVERIFY(isNear(at(image, 20.25, 5), 127, 127, 127));
}

void ViewPicturesTest::opacityAndColor_tintTheSlice()
{
    scene->composition->setData(scene->composition->index(0, 2), "#ff8000");
    const QImage image = picture();
    QVERIFY(isNear(at(image, 30, 20), 255, 128, 0)); // 200 is the window's top: the full colour
    QVERIFY(isNear(at(image, 10, 20), 0, 0, 0));
    hide(0);
    QVERIFY(isNear(at(picture(), 30, 20), 0, 0, 0));
}

void ViewPicturesTest::obliquePlane_showsTheCutVoxels()
{
    // z = 1 + (y - 20) / 4, seen from above: within the volume (0 .. 10) for y from 16 on.
    scene->view->setWorkingPlane({0, -1, 4, 16});
    const QImage image = picture();
    QCOMPARE(goldenFault(image, "view_oblique"), QString());
    QVERIFY(isNear(at(image, 30, 14), 0, 0, 0));
    QVERIFY(isNear(at(image, 30, 20), 255, 255, 255));
    QVERIFY(isNear(at(image, 30, 38), 255, 255, 255));
    QVERIFY(isNear(at(image, 10, 20), 0, 0, 0));
}

void ViewPicturesTest::contours_withFillsAndLines()
{
    addContours();
    hide(0);
    scene->composition->setData(scene->composition->index(0, 3, scene->composition->index(1, 0)), 50);
    const QImage image = picture();
    QCOMPARE(goldenFault(image, "view_contours"), QString());
    // Fill: colour 0 (149, 49, 219) at half opacity on black.
    QVERIFY(isNear(at(image, 12, 12), 75, 25, 110, 3));
    // Line of the second fragment: colour 2, that is n = 3 times (149, 49, 219) modulo 256, two pixels wide
    // around x = 24.
    QVERIFY(isNear(at(image, 24, 20), 191, 147, 145));
    QVERIFY(isNear(at(image, 20, 36), 0, 0, 0)); // of another slice
    QVERIFY(isNear(at(image, 30, 20), 0, 0, 0));
}

void ViewPicturesTest::scopes_drawInTheirPasses()
{
    hide(1);
    GraphicsPod *pod = scene->composition->pod(0);
    // Bright on black at (30, 20): by slices at, behind (z < 5) or before (z > 5) the plane z = 5.
    const std::tuple<int, bool> table[] = {{0, false}, {1, false}, {2, false}, {3, true},
                                           {4, true},  {5, true},  {6, true},  {7, true}};
    for (const float strength : {0.0f, 0.00001f, 0.0001f, 0.001f}) { // z moves pixels only a little
        scene->view->setPerspective(0.1f, 0.1f, strength);
        scene->view->setWorkingZ(5.0f);
        for (const auto &[scope, isSeen] : table) {
            pod->setDisplayScope(scope);
            QCOMPARE(std::pair(scope, at(picture(), 30, 20).red() > 250), std::pair(scope, isSeen));
        }
        // Nothing lies before a plane above the volume, and nothing behind one below it.
        scene->view->setWorkingZ(9.5f);
        pod->setDisplayScope(7);
        QVERIFY(isNear(at(picture(), 30, 20), 0, 0, 0));
        pod->setDisplayScope(6);
        QVERIFY(at(picture(), 30, 20).red() > 250);
        scene->view->setWorkingZ(0.5f);
        QVERIFY(isNear(at(picture(), 30, 20), 0, 0, 0));
        pod->setDisplayScope(7);
        QVERIFY(at(picture(), 30, 20).red() > 250);
    }
}

// 40 voxels of 1e-9 mm in 320 pixels: 8e9 pixels per mm.
void ViewPicturesTest::greatMagnification_cutsNothingAway()
{
    auto volume = newVolume(MERV::TypeUShort, {40, 40, 5}, [](int x, int, int) { return x < 20 ? 0 : 200; });
    volume->setSpacing(1e-9f, 1e-9f, 2.0f, 1.0f);
    MervImageObject image(volume.release(), "/somewhere/tiny.mhd");
    ImageComposition composition;
    composition.addImageObject(&image);
    QStackedSliceView view(nullptr, &composition);
    view.resize(ViewScene::size, ViewScene::size);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    view.resetView();
    QVERIFY(std::abs(view.state().viewMatrix.m[0][0] / 8e9 - 1.0) < 1e-6);
    view.setWorkingZ(9.0f); // 7.2e10 pixels before the screen
    for (const float shear : {0.0f, 1e-12f}) {
        view.setPerspective(shear, 0.0f, 0.0f);
        for (const int scope : {3, 4, 5, 6}) {
            composition.pod(0)->setDisplayScope(scope);
            view.repaintNow();
            const QImage shown = opaquePicture(view.grabFramebuffer());
            QVERIFY(at(shown, 30, 20).red() > 250);
            QVERIFY(isNear(at(shown, 10, 20), 0, 0, 0));
        }
    }
}

void ViewPicturesTest::objects_areDrawnBackToFrontInTheirOrder()
{
    QStringList calls;
    std::vector<std::unique_ptr<ListingObject>> objects;
    ImageComposition composition;
    QStackedSliceView view(nullptr, &composition);
    const int scopes[] = {1, 2, 3, 4, 5, 6, 7, 0};
    for (const int scope : scopes) {
        objects.push_back(std::make_unique<ListingObject>(QString::number(scope), calls));
        composition.addImageObject(objects.back().get());
        composition.pod(composition.podCount() - 1)->setDisplayScope(scope);
    }
    view.resize(220, 220);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    view.setWorkingZ(2.0f);
    QMouseEvent move(QEvent::MouseMove, QPointF(120, 90), QPointF(), Qt::NoButton, Qt::NoButton,
                     Qt::NoModifier);
    QApplication::sendEvent(&view, &move); // (10, 20) from the middle

    QStringList before;
    for (const int scope : scopes)
        before << QString("%1 before").arg(scope);
    const QStringList behind{"4 plane 0 0 1 -2 <", "5 whole <", "6 whole <"};
    const QStringList on{"1 point 10 20 2", "3 plane 0 0 1 -2", "4 plane 0 0 1 -2"};
    const QStringList front{"4 plane 0 0 1 -2 >", "5 whole >", "7 whole >"};
    calls.clear();
    view.repaintNow();
    QCOMPARE(calls, before + behind + on + front);
    // Half a turn about y: what was behind the plane is now the nearer side.
    view.rotate(0.0, 2.0 * std::acos(0.0), 0.0, true, true);
    calls.clear();
    view.repaintNow();
    QCOMPARE(calls, before + front + on + behind);
}

void ViewPicturesTest::edgeMarks_areKitesAlongTheGradient()
{
    hide(0);
    scene->view->setInteractBaseModeTrace();
    QMouseEvent move(QEvent::MouseMove, ViewScene::pixel(20, 20), QPointF(), Qt::NoButton, Qt::NoButton,
                     Qt::NoModifier);
    QApplication::sendEvent(scene->view, &move);
    // 2.5 mm around: rows y = 17.5 .. 22.5.
    QVERIFY(scene->state().edgeMarkers.size() >= 6);
    const QImage image = picture();
    QCOMPARE(goldenFault(image, "view_edge_marks"), QString());
    // The gradient runs along x. A step between two columns of voxels gives a point to each of them, both on
    // the step: in the kites, beside their axis with its lines, a quarter of yellow lies twice on black, 255
    // * (1 - 0.75 * 0.75). Nothing lies beyond the rows.
    const EdgePoint &mark = scene->state().edgeMarkers.front();
    const double inside = static_cast<double>(mark.x + mark.gx * 0.25f);
    const double beside = static_cast<double>(mark.y + std::abs(mark.gx) * 0.25f);
    QVERIFY(isNear(at(image, inside, beside), 112, 112, 0));
    QVERIFY(isNear(at(image, 20, 26), 0, 0, 0));
    QVERIFY(isNear(at(image, 24, 20), 0, 0, 0));
}

void ViewPicturesTest::rubberBand_isADashedRectangle()
{
    hide(0);
    scene->view->setInteractBaseModeZoom();
    const auto send = [this](QEvent::Type type, QPoint point, Qt::MouseButton button) {
        QMouseEvent event(type, point, QPointF(), button, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(scene->view, &event);
    };
    send(QEvent::MouseButtonPress, {60, 80}, Qt::LeftButton);
    send(QEvent::MouseMove, {260, 240}, Qt::NoButton);
    const QImage image = picture();
    QCOMPARE(goldenFault(image, "view_rubber_band"), QString());
    // Four lines lie over each other, each with the alpha 0.5 / i of (0, 0.5, 1). Where the pattern of all
    // four has a bit (4 of 16 pixels), black takes 0.125, then 0.167, 0.25 and 0.5 of it: 0.7266 in all.
    int all = 0, lit = 0, brightest = 0;
    for (int x = 64; x < 256; ++x) { // 12 periods, without the corners
        QColor pixel = image.pixelColor(x, 78);
        for (int y = 79; y <= 82; ++y)
            if (image.pixelColor(x, y).blue() > pixel.blue())
                pixel = image.pixelColor(x, y);
        brightest = std::max(brightest, pixel.blue());
        all += isNear(pixel, 0, 93, 185) ? 1 : 0;
        lit += pixel.blue() > 10 ? 1 : 0;
    }
    QVERIFY(brightest <= 187);
    QCOMPARE(all, 48);
    // The finest line has 14 bits of 16 and the others none beyond those.
    QCOMPARE(lit, 168);
    QVERIFY(isNear(probe(image, 160, 160), 0, 0, 0));
    QVERIFY(isNear(probe(image, 160, 60), 0, 0, 0));
}

void ViewPicturesTest::cube_hasFaintFarAndStrongNearEdges()
{
    hide(0);
    hide(2);
    scene->view->resize(400, 400);
    QTRY_COMPARE(scene->state().width, 400);
    // Kept still: no tick of the timer runs between these lines.
    scene->view->enterMode(InteractMode::Perspective);
    const float angle = scene->state().cubeAngle;
    const QImage image = opaquePicture(scene->view->grabFramebuffer());
    QCOMPARE(scene->state().cubeAngle, angle);
    QCOMPARE(angle, 0.0f);
    QCOMPARE(goldenFault(image, "view_cube"), QString());
    // Seen straight on: the near side z = -1 and the far one z = 1 cover each other at +-100 pixels.
    // The near one is opaque red, two pixels wide.
    QVERIFY(isNear(probe(image, 100, 220), 255, 0, 0) && isNear(probe(image, 99, 220), 255, 0, 0));
    QVERIFY(isNear(probe(image, 97, 220), 0, 0, 0) && isNear(probe(image, 103, 220), 0, 0, 0));
    // The arrow lies on the far side z = 1 and points to -x, mirrored with the box: its tip at
    // (200 - 80, 200), faint.
    int faint = 0;
    for (int x = 118; x <= 126; ++x)
        faint = std::max(faint, image.pixelColor(x, 200).red());
    QVERIFY(faint > 40 && faint < 180);
    QVERIFY(isNear(probe(image, 50, 50), 0, 0, 0));
}

// On purpose: strong perspectives clip low parts of the picture away, however near they are.
void ViewPicturesTest::strongPerspective_clipsBelow()
{
    scene->view->setPerspective(0.0f, 0.0f, 0.001f);
    scene->view->setWorkingZ(9.0f);
    QVERIFY(probe(picture(), 260, 260).red() > 250);
    // 64 pixels per mm: the slice is at z = 576 with w = 1 - 0.576. In the row of depth A y + B <= w with
    // A = -3.825e-4 and B = 0.4118 holds for y >= -32 in view space, on the screen 75 pixels below the
    // middle.
    scene->view->scaleTarget(8.0);
    QTRY_VERIFY(!scene->state().animatingView);
    const QImage image = picture();
    QVERIFY(probe(image, 260, 60).red() > 250);
    QVERIFY(probe(image, 260, 220).red() > 250);
    QVERIFY(isNear(probe(image, 260, 250), 0, 0, 0));
    QVERIFY(isNear(probe(image, 260, 300), 0, 0, 0));
}

void ViewPicturesTest::pictureAfterFullScreen_isTheSame()
{
    // The window manager takes the wish for the full screen only of a window that it has taken over.
    QVERIFY(QTest::qWaitForWindowActive(scene->view->window()));
    const QImage before = picture();
    scene->view->enterFullScreen();
    QTRY_COMPARE(scene->view->size(), QSize(1280, 1024));
    scene->view->leaveFullScreen();
    QTRY_COMPARE(scene->view->size(), QSize(320, 320));
    QTRY_COMPARE(scene->state().width, 320);
    scene->view->resetView();
    const QImage after = picture();
    QCOMPARE(after, before);
}

void ViewPicturesTest::pictureAfterClosing_isBlack()
{
    QVERIFY(at(picture(), 30, 20).red() > 250);
    scene->composition->detachFrom(scene->image.get());
    scene->edges->detachFrom(scene->image.get());
    scene->image.reset();
    QVERIFY(isNear(at(picture(), 30, 20), 0, 0, 0));
}

int main(int argc, char **argv)
{
    QApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QApplication application(argc, argv);
    ViewPicturesTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "ViewPicturesTest.moc"
