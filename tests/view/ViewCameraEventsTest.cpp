#include "meshes/SlicedContoursTriangulator.h"
#include "shell/help/Help.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/XHand.h"
#include "tests/view/ViewScene.h"

#include <QApplication>
#include <QBoxLayout>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QScreen>
#include <QSignalSpy>
#include <QSplitter>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

// The keys of the modes that have one, in the order of their numbers.
struct ModeKey
{
    const char *key;
    InteractMode mode;
    void (QStackedSliceView::*entered)();
    void (QStackedSliceView::*baseSet)();
};

using View = QStackedSliceView;
const ModeKey modeKeys[] = {
    {"p", InteractMode::Perspective, &View::interactModePerspectiveEntered,
     &View::interactBaseModePerspectiveSet},
    {"space", InteractMode::Move, &View::interactModeMoveEntered, &View::interactBaseModeMoveSet},
    {"z", InteractMode::Zoom, &View::interactModeZoomEntered, &View::interactBaseModeZoomSet},
    {"w", InteractMode::Window, &View::interactModeWindowEntered, &View::interactBaseModeWindowSet},
    {"t", InteractMode::Trace, &View::interactModeTraceEntered, &View::interactBaseModeTraceSet},
    {"g", InteractMode::Guess, &View::interactModeGuessEntered, &View::interactBaseModeGuessSet},
    {"e", InteractMode::Erase, &View::interactModeEraseEntered, &View::interactBaseModeEraseSet},
    {"l", InteractMode::Load, &View::interactModeLoadEntered, &View::interactBaseModeLoadSet},
};

constexpr QPoint middle(160, 160);

bool isNear(double actual, double expected, double tolerance = 1e-6)
{
    return std::abs(actual - expected) <= tolerance;
}

// Where a position in mm is going to be in view space once the target is reached.
Vector4 onTarget(const ViewState &state, double x, double y, double z = 1.0)
{
    return transformed(state.targetViewMatrix, {x, y, z, 1.0});
}

bool isEqual(const Matrix4 &a, const Matrix4 &b)
{
    return std::equal(&a.m[0][0], &a.m[0][0] + 16, &b.m[0][0]);
}

// The help page of a topic, with a text of its own, for the time of a scope.
class HelpPage
{
public:
    explicit HelpPage(const QString &topic)
    {
        const QString folder = QCoreApplication::applicationDirPath() + "/help";
        QDir().mkpath(folder);
        page.setFileName(folder + "/" + topic + ".html");
        if (page.open(QIODevice::WriteOnly))
            page.write("page of " + topic.toUtf8());
        page.close();
    }
    ~HelpPage() { page.remove(); }
    HelpPage(const HelpPage &) = delete;
    HelpPage &operator=(const HelpPage &) = delete;

private:
    QFile page;
};

} // namespace

class ViewCameraEventsTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void start_isMoveModeAndAxialPlane();
    void resetView_showsTheFirstObjectAtItsFirstZ();
    void resetView_onEmptyContours_staysFinite();
    void resetView_onContoursWithoutALevel_keepsThePlane();
    void resetView_onAMeshAlone_staysFinite();
    void heldKey_isATemporaryMode();
    void shiftedKey_setsTheBaseMode();
    void baseModeOfTheTemporaryMode_isRefused();
    void presentBaseMode_isRefusedDuringATemporaryMode();
    void repeatedReleases_endNoTemporaryMode();
    void baseMode_isAnnouncedBeforeItIsEntered();
    void modes_haveCursorsAndHelpTopics();
    void drawnCursors_pointWithTheirCentre();
    void reservedMode_onlyStoresItsNumber();
    void arrowKeys_moveViewAndTarget();
    void controlPlusAndMinus_scaleTheTarget();
    void pageKeys_stepThroughSlices();
    void wheel_stepsThroughSlicesAndMakesThePlaneAxial();
    void wheelWithControl_keepsThePointUnderTheMouse();
    void horizontalWheel_doesNothing();
    void wheelWithAlt_steps();
    void cursor_followsTheMouseOnThePlane();
    void cursorOnASkewedRay_isLeftAlone();
    void animation_reachesTheTargetAndSaysSo();
    void perspectiveDrags_shearAndStrengthen();
    void perspectiveDoubleClicks_reset();
    void cube_spinsWhileInPerspectiveAndFades();
    void moveLeftDrag_movesAtOnce();
    void moveCursor_isAFistWhilePressed();
    void moveMiddleDrag_stepsEveryTwelvePixels();
    void moveMiddleDrag_shiftsAnObliquePlane();
    void moveRightDrag_turnsCameraOrPlane();
    void moveRightDrag_withoutMovement_leavesThePlaneAxial();
    void moveDoubleClicks();
    void shiftDoubleClick_turnsThePlaneFromAxisToAxis();
    void zoomClicks_keepThePointThatWasClicked();
    void zoomRectangle_isEnlarged();
    void zoomRightDrag_doesNothing();
    void windowDrags_changeTheWindow();
    void windowDrag_onAnotherCurrentRow_doesNothing();
    void windowDrag_withTheMiddleButton_doesNothing();
    void windowDoubleClicks();
    void nKey_selectsTheNextFragment();
    void tab_staysInTheView();
    void keysWithoutMeaning_areIgnored();
    void fullScreen_fromASplitterAndBack();
    void fullScreen_fromALayoutAndBack();
    void fullScreen_fromAPlainParentAndBack();
    void coordinatesText_hasThreeDecimals();
    void manyUpdates_paintAtOnce();

private:
    std::unique_ptr<ViewScene> scene;
    std::unique_ptr<XHand> hand;
    std::unique_ptr<CapturedOutput> output;
};

void ViewCameraEventsTest::init()
{
    output = std::make_unique<CapturedOutput>();
    scene = std::make_unique<ViewScene>();
    QVERIFY(scene->show());
    hand = std::make_unique<XHand>(scene->view);
    hand->moveTo({5, 5});
}

void ViewCameraEventsTest::cleanup()
{
    hand.reset();
    scene.reset();
    output.reset();
    QVERIFY(QApplication::topLevelWidgets().isEmpty());
}

void ViewCameraEventsTest::start_isMoveModeAndAxialPlane()
{
    QStackedSliceView view(nullptr);
    QVERIFY(view.imageComposition() != nullptr && view.imageComposition()->QObject::parent() == &view);
    QCOMPARE(view.state().interactMode, InteractMode::Move);
    QCOMPARE(view.state().interactBaseMode, InteractMode::Move);
    QCOMPARE(view.state().workingPlane, (Plane{0, 0, 1, 0}));
    QVERIFY(view.state().workingPlaneAxial);
    QCOMPARE(view.windowTitle(), QString("Stacked Slice View"));
    QCOMPARE(view.minimumSize(), QSize(200, 200));
    QVERIFY(view.hasMouseTracking() && view.testAttribute(Qt::WA_DeleteOnClose));
    QCOMPARE(view.focusPolicy(), Qt::StrongFocus);
}

void ViewCameraEventsTest::resetView_showsTheFirstObjectAtItsFirstZ()
{
    const Matrix4 &view = scene->state().viewMatrix;
    // 40 mm in 320 pixels; (20, 20) in the middle.
    QCOMPARE(view.m[0][0], 8.0);
    QCOMPARE(view.m[0][3], -160.0);
    QCOMPARE(view.m[1][3], -160.0);
    QVERIFY(!scene->state().animatingView);
    QCOMPARE(scene->state().workingZ, 1.0f);
    QCOMPARE(scene->state().workingPlane, (Plane{0, 0, 1, -1}));
}

void ViewCameraEventsTest::resetView_onEmptyContours_staysFinite()
{
    ImageComposition composition;
    SlicedContoursObject empty("empty");
    composition.addImageObject(&empty);
    QStackedSliceView view(nullptr, &composition);
    view.setWorkingZ(3.0f);
    view.resetView();
    QCOMPARE(view.state().workingZ, 3.0f); // its first z is the largest number there is
    QCOMPARE(view.state().viewMatrix.m[0][0], 1.0);
    view.fitView();
    QVERIFY(view.state().animatingView);
    QCOMPARE(view.state().targetViewMatrix.m[0][0], 1.0);
    QCOMPARE(view.state().targetViewMatrix.m[0][3], 0.0);
}

void ViewCameraEventsTest::resetView_onContoursWithoutALevel_keepsThePlane()
{
    for (const float z : {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity()}) {
        SlicedContoursObject nowhere("nowhere");
        ViewScene::line(nowhere.newFragment("astray"), z, {{5, 5}, {15, 25}});
        QVERIFY(nowhere.hasContent());
        ImageComposition composition;
        composition.addImageObject(&nowhere);
        QStackedSliceView view(nullptr, &composition);
        view.setWorkingZ(3.0f);
        view.resetView();
        QCOMPARE(view.state().workingZ, 3.0f);
        QCOMPARE(view.state().workingPlane, (Plane{0, 0, 1, -3}));
        QCOMPARE(view.state().cursorWorld[2], 3.0);
    }
}

// A mesh has no extent.
void ViewCameraEventsTest::resetView_onAMeshAlone_staysFinite()
{
    ViewScene::line(scene->bone, 1.0f, {{5, 5}, {15, 25}});
    ViewScene::line(scene->bone, 3.0f, {{5, 6}, {15, 26}});
    SlicedContoursTriangulator mesh(scene->contours.get());
    QCOMPARE(mesh.extentX(), 0.0f);
    ImageComposition composition;
    composition.addImageObject(&mesh);
    QStackedSliceView view(nullptr, &composition);
    view.resize(ViewScene::size, ViewScene::size);
    view.resetView();
    QVERIFY(isEqual(view.state().viewMatrix, Matrix4::identity()));
    view.translateView(40.0, 0.0);
    view.fitView(); // back
    QVERIFY(QTest::qWaitFor([&] { return !view.state().animatingView; }));
    QVERIFY(isEqual(view.state().viewMatrix, Matrix4::identity()));
}

void ViewCameraEventsTest::heldKey_isATemporaryMode()
{
    for (const ModeKey &entry : modeKeys) {
        if (entry.mode == InteractMode::Move)
            continue;
        QSignalSpy entered(scene->view, entry.entered);
        QSignalSpy baseSet(scene->view, entry.baseSet);
        QSignalSpy moveEntered(scene->view, &View::interactModeMoveEntered);
        hand->keyDown(entry.key);
        QCOMPARE(scene->state().interactMode, entry.mode);
        QCOMPARE(scene->state().interactBaseMode, InteractMode::Move);
        QCOMPARE(entered.count(), 1);
        hand->keyUp(entry.key);
        QCOMPARE(scene->state().interactMode, InteractMode::Move);
        QCOMPARE(moveEntered.count(), 1);
        QCOMPARE(baseSet.count(), 0);
    }
    QSignalSpy moveEntered(scene->view, &View::interactModeMoveEntered);
    hand->key("space"); // the mode that is there already
    QCOMPARE(moveEntered.count(), 0);
    // The release of another mode's key ends nothing.
    hand->keyDown("z");
    hand->keyDown("w");
    hand->keyUp("z");
    QCOMPARE(scene->state().interactMode, InteractMode::Window);
    hand->keyUp("w");
    QCOMPARE(scene->state().interactMode, InteractMode::Move);
}

void ViewCameraEventsTest::shiftedKey_setsTheBaseMode()
{
    hand->keyDown("Shift_L");
    hand->key("space"); // it is the base mode
    for (const ModeKey &entry : modeKeys) {
        if (entry.mode == InteractMode::Move)
            continue;
        QSignalSpy entered(scene->view, entry.entered);
        QSignalSpy baseSet(scene->view, entry.baseSet);
        hand->key(entry.key);
        QCOMPARE(scene->state().interactMode, entry.mode);
        QCOMPARE(scene->state().interactBaseMode, entry.mode);
        QCOMPARE(entered.count(), 1);
        QCOMPARE(baseSet.count(), 1);
    }
    hand->keyUp("Shift_L");
    // Space returns to Load, the last of them.
    hand->keyDown("space");
    QCOMPARE(scene->state().interactMode, InteractMode::Move);
    hand->keyUp("space");
    QCOMPARE(scene->state().interactMode, InteractMode::Load);
}

void ViewCameraEventsTest::baseModeOfTheTemporaryMode_isRefused()
{
    scene->view->setInteractBaseModeZoom();
    hand->keyDown("space");
    QSignalSpy set(scene->view, &View::interactBaseModeMoveSet);
    scene->view->setInteractBaseModeMove();
    QCOMPARE(set.count(), 0);
    QCOMPARE(scene->state().interactBaseMode, InteractMode::Zoom);
    hand->keyUp("space");
    QCOMPARE(scene->state().interactMode, InteractMode::Zoom);
    scene->view->setInteractBaseModeDraw();
    QCOMPARE(scene->state().interactMode, InteractMode::Draw);
}

void ViewCameraEventsTest::presentBaseMode_isRefusedDuringATemporaryMode()
{
    hand->keyDown("z");
    QSignalSpy set(scene->view, &View::interactBaseModeMoveSet);
    QSignalSpy entered(scene->view, &View::interactModeMoveEntered);
    scene->view->setInteractBaseModeMove();
    hand->keyDown("Shift_L");
    hand->key("space");
    hand->keyUp("Shift_L");
    QCOMPARE(scene->state().interactMode, InteractMode::Zoom);
    QCOMPARE(set.count(), 0);
    QCOMPARE(entered.count(), 0);
    hand->keyUp("z");
    QCOMPARE(scene->state().interactMode, InteractMode::Move);
}

void ViewCameraEventsTest::repeatedReleases_endNoTemporaryMode()
{
    hand->keyDown("z");
    QKeyEvent repeated(QEvent::KeyRelease, Qt::Key_Z, Qt::NoModifier, QString(), true);
    QApplication::sendEvent(scene->view, &repeated);
    QCOMPARE(scene->state().interactMode, InteractMode::Zoom);
    hand->keyUp("z");
    QCOMPARE(scene->state().interactMode, InteractMode::Move);
}

void ViewCameraEventsTest::baseMode_isAnnouncedBeforeItIsEntered()
{
    QStringList announced;
    const QObject listener; // ends the connections before the list goes
    connect(scene->view, &View::interactBaseModeZoomSet, &listener, [&] {
        announced << "set";
        QCOMPARE(scene->state().interactBaseMode, InteractMode::Zoom);
        QCOMPARE(scene->state().interactMode, InteractMode::Move);
    });
    connect(scene->view, &View::interactModeZoomEntered, &listener, [&] {
        announced << "entered";
        QCOMPARE(scene->state().interactMode, InteractMode::Zoom);
        QCOMPARE(scene->view->cursor().shape(), Qt::BitmapCursor);
    });
    scene->view->setInteractBaseModeZoom();
    QCOMPARE(announced, (QStringList{"set", "entered"}));
}

void ViewCameraEventsTest::modes_haveCursorsAndHelpTopics()
{
    const ViewCursors &cursors = scene->view->cursors();
    const std::tuple<InteractMode, QCursor, QString> table[] = {
        {InteractMode::Perspective, Qt::ArrowCursor, "stacked_slice_view_perspective"},
        {InteractMode::Zoom, cursors.magnifier, "stacked_slice_view_zoom"},
        {InteractMode::Draw, Qt::CrossCursor, ""},
        {InteractMode::Window, cursors.window, "stacked_slice_view_window"},
        {InteractMode::Trace, Qt::ArrowCursor, "stacked_slice_view_trace"},
        {InteractMode::Guess, Qt::ArrowCursor, "stacked_slice_view_guess"},
        {InteractMode::Erase, Qt::UpArrowCursor, "stacked_slice_view_erase"},
        {InteractMode::Load, Qt::ArrowCursor, "stacked_slice_view_load"},
        {InteractMode::Move, cursors.hand, "stacked_slice_view_move"}};
    for (const auto &[mode, cursor, topic] : table) {
        const HelpPage page(topic);
        QStringList shown;
        const auto following =
            connect(Help::instance(), &Help::textChanged, this, [&](const QString &text) { shown << text; });
        scene->view->enterMode(mode);
        disconnect(following);
        QCOMPARE(scene->view->cursor().shape(), cursor.shape());
        QCOMPARE(scene->view->cursor().pixmap().cacheKey(), cursor.pixmap().cacheKey());
        QCOMPARE(shown, topic.isEmpty() ? QStringList() : QStringList{"page of " + topic});
    }
}

void ViewCameraEventsTest::drawnCursors_pointWithTheirCentre()
{
    const ViewCursors &cursors = scene->view->cursors();
    for (const QCursor &cursor : {cursors.hand, cursors.fist, cursors.magnifier, cursors.magnifierPlus,
                                  cursors.magnifierMinus, cursors.window}) {
        QVERIFY(!cursor.pixmap().isNull());
        QCOMPARE(cursor.hotSpot(), QPoint(cursor.pixmap().width() / 2, cursor.pixmap().height() / 2));
    }
}

void ViewCameraEventsTest::reservedMode_onlyStoresItsNumber()
{
    scene->view->enterMode(InteractMode::Perspective);
    QSignalSpy help(Help::instance(), &Help::textChanged);
    scene->view->enterMode(InteractMode::Reserved);
    QCOMPARE(scene->state().interactMode, InteractMode::Reserved);
    QCOMPARE(static_cast<int>(scene->state().interactMode), 7);
    QVERIFY(!scene->state().cubeActive);
    QCOMPARE(help.count(), 0);
}

void ViewCameraEventsTest::arrowKeys_moveViewAndTarget()
{
    const std::tuple<const char *, double, double> keys[] = {
        {"Up", 0, -10}, {"Down", 0, 10}, {"Left", 10, 0}, {"Right", -10, 0}};
    double x = -160.0, y = -160.0;
    for (const auto &[key, dx, dy] : keys) {
        hand->key(key);
        x += dx;
        y += dy;
        for (const Matrix4 *matrix : {&scene->state().viewMatrix, &scene->state().targetViewMatrix}) {
            QCOMPARE(matrix->m[0][3], x);
            QCOMPARE(matrix->m[1][3], y);
        }
    }
}

void ViewCameraEventsTest::controlPlusAndMinus_scaleTheTarget()
{
    QTest::keyClick(scene->view, Qt::Key_Plus, Qt::ControlModifier);
    QVERIFY(isNear(scene->state().targetViewMatrix.m[0][0], 8.8));
    QTest::keyClick(scene->view, Qt::Key_Minus, Qt::ControlModifier);
    QVERIFY(isNear(scene->state().targetViewMatrix.m[0][0], 7.92));
    QVERIFY(isNear(scene->state().targetViewMatrix.m[0][3], -158.4));
    QTest::keyClick(scene->view, Qt::Key_Plus); // without Control it means nothing
    QVERIFY(isNear(scene->state().targetViewMatrix.m[0][0], 7.92));
}

void ViewCameraEventsTest::pageKeys_stepThroughSlices()
{
    // Centres at 1, 3, 5, 7, 9.
    for (const float z : {3.0f, 5.0f, 7.0f, 9.0f, 9.0f}) {
        hand->key("Page_Down");
        QCOMPARE(scene->state().workingZ, z);
    }
    hand->key("Page_Up");
    QCOMPARE(scene->state().workingZ, 7.0f);
    QCOMPARE(scene->state().workingPlane, (Plane{0, 0, 1, -7}));
    QCOMPARE(scene->state().cursorWorld[2], 7.0);
}

void ViewCameraEventsTest::wheel_stepsThroughSlicesAndMakesThePlaneAxial()
{
    hand->wheel(true);
    QCOMPARE(scene->state().workingZ, 3.0f);
    scene->view->rotate(0.3, 0.2, 0.0, false, false);
    QVERIFY(!scene->state().workingPlaneAxial);
    hand->wheel(true);
    QVERIFY(scene->state().workingPlaneAxial);
    QCOMPARE(scene->state().workingPlane, (Plane{0, 0, 1, -5}));
    hand->wheel(false);
    QCOMPARE(scene->state().workingZ, 3.0f);
    QCOMPARE(scene->state().cursorWorld[2], 3.0);
}

void ViewCameraEventsTest::wheelWithControl_keepsThePointUnderTheMouse()
{
    hand->moveTo({200, 100}); // (40, 60) from the middle: (25, 27.5) mm
    hand->keyDown("Control_L");
    hand->wheel(true);
    hand->keyUp("Control_L");
    const double factor = std::pow(2.0, 120.0 / 300.0);
    QVERIFY(isNear(scene->state().targetViewMatrix.m[0][0], 8.0 * factor));
    const Vector4 there = onTarget(scene->state(), 25.0, 27.5);
    QVERIFY(isNear(there[0], 40.0) && isNear(there[1], 60.0));
    QVERIFY(scene->state().animatingView);
    QCOMPARE(scene->state().workingZ, 1.0f);
    QVERIFY(output->standardOutput().contains("wheelEvent->delta() = 120\n"));
}

void ViewCameraEventsTest::horizontalWheel_doesNothing()
{
    hand->key("Page_Down");
    const auto send = [this](QPoint delta, Qt::KeyboardModifiers modifiers) {
        QWheelEvent event(QPointF(middle), scene->view->mapToGlobal(QPointF(middle)), QPoint(), delta,
                          Qt::NoButton, modifiers, Qt::NoScrollPhase, false);
        QApplication::sendEvent(scene->view, &event);
    };
    send({120, 0}, Qt::NoModifier);
    send({0, 0}, Qt::NoModifier);
    send({0, 0}, Qt::ControlModifier);
    QCOMPARE(scene->state().workingZ, 3.0f);
    QVERIFY(!scene->state().animatingView);
    send({120, 0}, Qt::AltModifier); // how a vertical step arrives with Alt
    QCOMPARE(scene->state().workingZ, 5.0f);
    send({0, 1}, Qt::NoModifier); // a touchpad's small step
    QCOMPARE(scene->state().workingZ, 7.0f);
}

void ViewCameraEventsTest::wheelWithAlt_steps()
{
    hand->keyDown("Alt_L");
    hand->wheel(true);
    hand->keyUp("Alt_L");
    QCOMPARE(scene->state().workingZ, 3.0f);
}

void ViewCameraEventsTest::cursor_followsTheMouseOnThePlane()
{
    QSignalSpy changed(scene->view, &View::currentCoordinatesChanged);
    hand->moveTo(ViewScene::pixel(25.0, 17.5));
    QCOMPARE(changed.count(), 1);
    QCOMPARE(scene->state().cursorWorld, (Vector4{25.0, 17.5, 1.0, 1.0}));
    QCOMPARE(scene->state().lastPosition, QPoint(40, -20));
    // A plane z = x at y = 0: normal (-1, 0, 1). The ray through x = 25 meets it at z = 25.
    scene->view->setWorkingPlane({-1, 0, 1, 0});
    hand->moveTo(ViewScene::pixel(25.0, 20.0));
    QVERIFY(isNear(scene->state().cursorWorld[2], 25.0, 1e-9));
    QVERIFY(!scene->state().workingPlaneAxial);
}

void ViewCameraEventsTest::cursorOnASkewedRay_isLeftAlone()
{
    // A plane along the line of sight: the cursor is no number, and the tools leave it alone.
    scene->view->setWorkingPlane({1, 0, 0, -5});
    hand->moveTo({100, 100});
    QVERIFY(!std::isfinite(scene->state().cursorWorld[0]));
    scene->view->setInteractBaseModeTrace();
    hand->moveTo({110, 100});
    hand->click(Qt::LeftButton);
    scene->view->setInteractBaseModeGuess();
    hand->click(Qt::LeftButton);
    scene->view->setInteractBaseModeMove();
    hand->keyDown("Shift_L");
    hand->doubleClick(Qt::RightButton);
    hand->keyUp("Shift_L");
    QCOMPARE(scene->bone->segmentCount(), 0);
    QVERIFY(scene->state().edgeMarkers.empty());
    QVERIFY(!scene->state().guessStartSet);
    QCOMPARE(scene->state().workingPlane, (Plane{1, 0, 0, -5}));
    // A view that cannot be inverted keeps the cursor that it had.
    scene->view->setWorkingZ(1.0f);
    const Vector4 before = scene->state().cursorWorld;
    for (int i = 0; i < 8000; ++i)
        scene->view->scaleTarget(0.5);
    QTRY_VERIFY(!scene->state().animatingView);
    hand->moveTo({150, 150});
    QCOMPARE(scene->state().cursorWorld, before);
}

void ViewCameraEventsTest::animation_reachesTheTargetAndSaysSo()
{
    scene->view->translateTarget(100.0, 0.0);
    QVERIFY(scene->state().animatingView);
    QTRY_VERIFY(!scene->state().animatingView);
    QCOMPARE(scene->state().viewMatrix.m[0][3], -60.0);
    QVERIFY(output->standardOutput().endsWith("Target view matrix reached.\n"));
}

void ViewCameraEventsTest::perspectiveDrags_shearAndStrengthen()
{
    scene->view->setInteractBaseModePerspective();
    hand->drag(Qt::LeftButton, {100, 100}, {150, 60});
    QVERIFY(isNear(scene->state().perspectiveShearX, 0.05));
    QVERIFY(isNear(scene->state().perspectiveShearY, 0.04));
    QVERIFY(isNear(scene->state().projectionMatrix.m[0][2], 2.0 * 0.05 / 320.0));
    hand->drag(Qt::RightButton, {100, 100}, {100, 140}); // 40 down
    QVERIFY(isNear(scene->state().perspectiveStrength, 0.0004, 1e-9));
    QVERIFY(isNear(scene->state().projectionMatrix.m[3][2], -0.0004, 1e-9));
    hand->drag(Qt::RightButton, {100, 100}, {100, 300});
    QCOMPARE(scene->state().perspectiveStrength, 0.001f);
    hand->drag(Qt::RightButton, {100, 300}, {100, 100});
    QCOMPARE(scene->state().perspectiveStrength, 0.0f);
    scene->view->setPerspective(0.99f, -0.99f, 0.0f);
    hand->drag(Qt::LeftButton, {100, 100}, {150, 150});
    QCOMPARE(scene->state().perspectiveShearX, 1.0f);
    QCOMPARE(scene->state().perspectiveShearY, -1.0f);
}

void ViewCameraEventsTest::perspectiveDoubleClicks_reset()
{
    scene->view->setInteractBaseModePerspective();
    scene->view->setPerspective(0.25f, 0.5f, 0.0005f);
    hand->doubleClick(Qt::LeftButton);
    QCOMPARE(scene->state().perspectiveShearX, 0.0f);
    QCOMPARE(scene->state().perspectiveShearY, 0.0f);
    QCOMPARE(scene->state().perspectiveStrength, 0.0005f);
    hand->doubleClick(Qt::RightButton);
    QCOMPARE(scene->state().perspectiveStrength, 0.0f);
}

void ViewCameraEventsTest::cube_spinsWhileInPerspectiveAndFades()
{
    hand->keyDown("p");
    QVERIFY(scene->state().cubeActive);
    QCOMPARE(scene->state().cubeAlpha, 1.0f);
    const float angle = scene->state().cubeAngle;
    QTRY_VERIFY(scene->state().cubeAngle >= angle + 3.0f);
    QCOMPARE(scene->state().cubeAlpha, 1.0f);
    hand->keyUp("p");
    QVERIFY(!scene->state().cubeActive);
    QTRY_COMPARE(scene->state().cubeAlpha, 0.0f);
    const float end = scene->state().cubeAngle;
    QTest::qWait(100);
    QCOMPARE(scene->state().cubeAngle, end);
}

void ViewCameraEventsTest::moveLeftDrag_movesAtOnce()
{
    hand->drag(Qt::LeftButton, {100, 100}, {130, 80});
    QCOMPARE(scene->state().viewMatrix.m[0][3], -130.0);
    QCOMPARE(scene->state().viewMatrix.m[1][3], -140.0);
    QCOMPARE(scene->state().targetViewMatrix.m[0][3], -130.0);
}

void ViewCameraEventsTest::moveCursor_isAFistWhilePressed()
{
    const auto picture = [this] { return scene->view->cursor().pixmap().cacheKey(); };
    QCOMPARE(picture(), scene->view->cursors().hand.pixmap().cacheKey());
    hand->press(Qt::LeftButton);
    QCOMPARE(picture(), scene->view->cursors().fist.pixmap().cacheKey());
    hand->release(Qt::LeftButton);
    QCOMPARE(picture(), scene->view->cursors().hand.pixmap().cacheKey());
}

void ViewCameraEventsTest::moveMiddleDrag_stepsEveryTwelvePixels()
{
    hand->moveTo({100, 200});
    hand->press(Qt::MiddleButton);
    hand->moveTo({100, 188}); // 12 are not more than 12
    QCOMPARE(scene->state().workingZ, 1.0f);
    hand->moveTo({100, 187});
    QCOMPARE(scene->state().workingZ, 3.0f);
    hand->moveTo({100, 163}); // 25 above the new origin: two steps
    QCOMPARE(scene->state().workingZ, 7.0f);
    hand->moveTo({100, 177}); // 13 down
    QCOMPARE(scene->state().workingZ, 5.0f);
    hand->release(Qt::MiddleButton);
    QCOMPARE(scene->state().cursorWorld[2], 5.0);
}

void ViewCameraEventsTest::moveMiddleDrag_shiftsAnObliquePlane()
{
    scene->view->setWorkingPlane({0, 3, 4, -50}); // normal of length 5
    hand->drag(Qt::MiddleButton, {100, 100}, {100, 90});
    QVERIFY(isNear(scene->state().workingPlane.d, -50.0 + 10.0 * 0.1 / 5.0, 1e-12));
    QCOMPARE(scene->state().workingPlane.b, 3.0);
    QVERIFY(output->standardOutput().contains("Working plane:        0 3 4 -49.8\n"));
}

void ViewCameraEventsTest::moveRightDrag_turnsCameraOrPlane()
{
    hand->drag(Qt::RightButton, {100, 100}, {150, 100}); // 50 to the right: 0.5 about y
    QVERIFY(isNear(scene->state().viewMatrix.m[0][0], 8.0 * std::cos(0.5)));
    QVERIFY(isNear(scene->state().viewMatrix.m[2][0], -8.0 * std::sin(0.5)));
    QCOMPARE(scene->state().workingPlane, (Plane{0, 0, 1, -1}));
    QVERIFY(scene->state().workingPlaneAxial);
    const Matrix4 before = scene->state().viewMatrix;
    hand->keyDown("Shift_L");
    hand->drag(Qt::RightButton, {100, 100}, {100, 70}); // 30 up: -0.3 about x
    hand->keyUp("Shift_L");
    QCOMPARE(scene->state().viewMatrix.m[0][0], before.m[0][0]);
    QVERIFY(!scene->state().workingPlaneAxial);
    // Rx(-0.3) on (0, 0, 1): (0, sin 0.3, cos 0.3).
    QVERIFY(isNear(scene->state().workingPlane.b, std::sin(0.3)));
    QVERIFY(isNear(scene->state().workingPlane.c, std::cos(0.3)));
    QVERIFY(isNear(scene->state().workingPlane.d, -1.0));
}

// Movements of parts of a pixel come as such events on fine screens.
void ViewCameraEventsTest::moveRightDrag_withoutMovement_leavesThePlaneAxial()
{
    const auto drag = [this](const QPoint &position) {
        QMouseEvent move(QEvent::MouseMove, position, scene->view->mapToGlobal(position), Qt::NoButton,
                         Qt::RightButton, Qt::ShiftModifier);
        QApplication::sendEvent(scene->view, &move);
    };
    QTest::mousePress(scene->view, Qt::RightButton, Qt::ShiftModifier, middle);
    drag(middle);
    QVERIFY(scene->state().workingPlaneAxial);
    QCOMPARE(scene->state().workingZ, 1.0f);
    QCOMPARE(scene->state().workingPlane, (Plane{0, 0, 1, -1}));
    drag(middle + QPoint(1, 0));
    QVERIFY(!scene->state().workingPlaneAxial);
    QVERIFY(isNear(scene->state().workingPlane.a, std::sin(0.01)));
    QTest::mouseRelease(scene->view, Qt::RightButton, Qt::ShiftModifier, middle);
}

void ViewCameraEventsTest::moveDoubleClicks()
{
    scene->view->translateView(77.0, 33.0);
    hand->doubleClick(Qt::LeftButton);
    QCOMPARE(scene->state().targetViewMatrix.m[0][3], -160.0);
    QVERIFY(scene->state().animatingView);
    scene->view->rotate(0.2, 0.3, 0.0, true, true);
    hand->doubleClick(Qt::RightButton);
    const Matrix4 &target = scene->state().targetViewMatrix;
    QVERIFY(isNear(target.m[0][0], 8.0) && isNear(target.m[0][1], 0.0) && isNear(target.m[0][2], 0.0));
    QVERIFY(scene->state().animatingView);
}

void ViewCameraEventsTest::shiftDoubleClick_turnsThePlaneFromAxisToAxis()
{
    hand->moveTo(ViewScene::pixel(25.0, 15.0));
    hand->keyDown("Shift_L");
    hand->doubleClick(Qt::RightButton);
    hand->keyUp("Shift_L");
    QCOMPARE(scene->state().workingPlane, (Plane{-1, 0, 0, 25}));
    QVERIFY(!scene->state().workingPlaneAxial);
    QVERIFY(output->standardOutput().endsWith(
        "Working plane before: 0 0 1 -1\nWorking plane after:  -1 0 0 25\n"));
    // Seen from the side its points are numbers again; y, then z, then x follow.
    scene->view->rotate(0.0, 1.0, 0.0, true, true);
    scene->view->setWorkingPlane({0, -1, 0, 15});
    scene->view->rotate(1.0, 0.0, 0.0, true, true);
    hand->moveTo({161, 170});
    hand->keyDown("Shift_L");
    hand->doubleClick(Qt::RightButton);
    hand->keyUp("Shift_L");
    QCOMPARE(scene->state().workingPlane.c, -1.0);
    QVERIFY(scene->state().workingPlaneAxial);
    QCOMPARE(scene->state().workingZ, static_cast<float>(scene->state().workingPlane.d));
}

void ViewCameraEventsTest::zoomClicks_keepThePointThatWasClicked()
{
    scene->view->setInteractBaseModeZoom();
    const auto cursorKey = [this] { return scene->view->cursor().pixmap().cacheKey(); };
    const ViewCursors &cursors = scene->view->cursors();
    hand->moveTo({200, 100}); // (25, 27.5) mm
    hand->press(Qt::LeftButton);
    QCOMPARE(cursorKey(), cursors.magnifierPlus.pixmap().cacheKey());
    hand->release(Qt::LeftButton);
    QCOMPARE(cursorKey(), cursors.magnifier.pixmap().cacheKey());
    Vector4 there = onTarget(scene->state(), 25.0, 27.5);
    QVERIFY(isNear(there[0], 40.0) && isNear(there[1], 60.0));
    QCOMPARE(scene->state().targetViewMatrix.m[0][0], 16.0);
    hand->press(Qt::RightButton);
    QCOMPARE(cursorKey(), cursors.magnifierMinus.pixmap().cacheKey());
    hand->release(Qt::RightButton);
    QCOMPARE(cursorKey(), cursors.magnifier.pixmap().cacheKey());
    there = onTarget(scene->state(), 25.0, 27.5);
    QVERIFY(isNear(there[0], 40.0) && isNear(there[1], 60.0));
    QCOMPARE(scene->state().targetViewMatrix.m[0][0], 8.0);
}

void ViewCameraEventsTest::zoomRectangle_isEnlarged()
{
    scene->view->setInteractBaseModeZoom();
    hand->moveTo({161, 161}); // (1, -1) from the middle
    hand->press(Qt::LeftButton);
    hand->moveTo({165, 157}); // 4 pixels are a click still
    QVERIFY(!scene->state().rubberBandActive);
    hand->moveTo({241, 121}); // (81, 39): 80 x 40 pixels
    QVERIFY(scene->state().rubberBandActive);
    QCOMPARE(scene->state().rubberBandAlpha, 0.5f);
    const auto &corners = scene->state().rubberBandCorners;
    const std::array<std::array<double, 2>, 4> expected{{{1, -1}, {1, 39}, {81, 39}, {81, -1}}};
    for (std::size_t i = 0; i < 4; ++i) {
        const Vector4 seen = transformed(scene->state().viewMatrix, corners[i]);
        QVERIFY(isNear(seen[0], expected[i][0]) && isNear(seen[1], expected[i][1]));
    }
    hand->release(Qt::LeftButton);
    // 320 / 80 is smaller than 320 / 40. Centre: (82 / 2, 38 / 2).
    const Matrix4 &target = scene->state().targetViewMatrix;
    QVERIFY(isNear(target.m[0][0], 32.0));
    QVERIFY(isNear(target.m[0][3], 4.0 * (-160.0 - 41.0)) && isNear(target.m[1][3], 4.0 * (-160.0 - 19.0)));
    QTRY_VERIFY(!scene->state().rubberBandActive); // with the end of the animation
    QTRY_COMPARE(scene->state().rubberBandAlpha, 0.0f);
}

void ViewCameraEventsTest::zoomRightDrag_doesNothing()
{
    scene->view->setInteractBaseModeZoom();
    hand->drag(Qt::RightButton, {100, 100}, {150, 150});
    QVERIFY(!scene->state().animatingView && !scene->state().rubberBandActive);
    // A flat rectangle: only the width counts.
    hand->drag(Qt::LeftButton, {100, 100}, {140, 100});
    QVERIFY(isNear(scene->state().targetViewMatrix.m[0][0], 64.0));
}

void ViewCameraEventsTest::windowDrags_changeTheWindow()
{
    scene->view->setInteractBaseModeWindow();
    QCOMPARE(scene->image->windowLow(), 0.0f);
    QCOMPARE(scene->image->windowHigh(), 200.0f);
    hand->drag(Qt::LeftButton, {100, 200}, {164, 168}); // 64 to the right, 32 up: wider
    // 0 - (64 + 16) / 1024 * 200, 200 - (64 - 16) / 1024 * 200
    QCOMPARE(scene->image->windowLow(), -15.625f);
    QCOMPARE(scene->image->windowHigh(), 190.625f);
    scene->image->setWindow(0.0f, 200.0f);
    hand->drag(Qt::RightButton, {100, 250}, {100, 150}); // 100 up: narrower
    const double growth = (std::pow(2.0, 100.0 / 1024.0) - 1.0) / 2.0;
    QVERIFY(isNear(scene->image->windowLow(), 200.0 * growth, 1e-4));
    QVERIFY(isNear(scene->image->windowHigh(), 200.0 - 200.0 * growth, 1e-4));
    const QString printed = output->standardOutput();
    QVERIFY(printed.contains("WindowMin, WindowMax: 7."));
    // Bright for x = 20 .. 39, all y, all z: (29.5, 19.5, 2).
    QVERIFY(printed.contains("Center of Mass: 29.5, 19.5, 2\n"));
    hand->moveTo({120, 150}); // no button held
    QVERIFY(isNear(scene->image->windowLow(), 200.0 * growth, 1e-4));
}

void ViewCameraEventsTest::windowDrag_onAnotherCurrentRow_doesNothing()
{
    scene->view->setInteractBaseModeWindow();
    scene->composition->setCurrentRow(1); // contours
    hand->drag(Qt::LeftButton, {100, 200}, {164, 168});
    hand->doubleClick(Qt::RightButton);
    QCOMPARE(scene->image->windowLow(), 0.0f);
    QCOMPARE(scene->image->windowHigh(), 200.0f);
}

void ViewCameraEventsTest::windowDrag_withTheMiddleButton_doesNothing()
{
    scene->view->setInteractBaseModeWindow();
    QTRY_VERIFY(!scene->state().repaintPending && !scene->state().animatingView);
    QMouseEvent drag(QEvent::MouseMove, middle, scene->view->mapToGlobal(middle), Qt::NoButton,
                     Qt::MiddleButton, Qt::NoModifier);
    QApplication::sendEvent(scene->view, &drag);
    QVERIFY(!scene->state().repaintPending);
    QCOMPARE(scene->image->windowLow(), 0.0f);
    QCOMPARE(scene->image->windowHigh(), 200.0f);
}

void ViewCameraEventsTest::windowDoubleClicks()
{
    scene->view->setInteractBaseModeWindow();
    hand->doubleClick(Qt::RightButton);
    QCOMPARE(scene->image->windowLow(), 0.0f);
    QCOMPARE(scene->image->windowHigh(), 1.0f);
    hand->doubleClick(Qt::LeftButton);
    QCOMPARE(scene->image->windowHigh(), 200.0f);
}

void ViewCameraEventsTest::nKey_selectsTheNextFragment()
{
    QCOMPARE(scene->composition->editedObject(), scene->bone);
    hand->key("n");
    QCOMPARE(scene->composition->editedObject(), scene->surface);
    hand->key("n");
    QCOMPARE(scene->composition->editedObject(), scene->bone);
    QCOMPARE(output->standardOutput().count("Selecting next graphics object for editing ..."), 2);
}

void ViewCameraEventsTest::tab_staysInTheView()
{
    QSplitter splitter;
    auto *neighbour = new QLineEdit;
    splitter.addWidget(scene->view);
    splitter.addWidget(neighbour);
    splitter.show();
    QVERIFY(QTest::qWaitForWindowActive(&splitter));
    scene->view->setFocus();
    QTRY_VERIFY(scene->view->hasFocus());
    hand->key("Tab");
    QVERIFY(scene->view->hasFocus() && !neighbour->hasFocus());
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent event(type, Qt::Key_Tab, Qt::NoModifier);
        QVERIFY(QApplication::sendEvent(scene->view, &event));
        QVERIFY(event.isAccepted()); // or the parents would take it as theirs
        QVERIFY(scene->view->hasFocus());
    }
    scene->view->setParent(nullptr);
}

void ViewCameraEventsTest::keysWithoutMeaning_areIgnored()
{
    const auto isAccepted = [this](int key, Qt::KeyboardModifiers modifiers, bool repeated = false) {
        QKeyEvent event(QEvent::KeyPress, key, modifiers, QString(), repeated);
        event.ignore();
        QApplication::sendEvent(scene->view, &event);
        return event.isAccepted();
    };
    QVERIFY(!isAccepted(Qt::Key_Q, Qt::NoModifier));
    QVERIFY(!isAccepted(Qt::Key_Escape, Qt::NoModifier));
    QVERIFY(!isAccepted(Qt::Key_C, Qt::NoModifier));
    QVERIFY(!isAccepted(Qt::Key_Z, Qt::NoModifier, true)); // a repeated key of a mode
    QCOMPARE(scene->state().interactMode, InteractMode::Move);
    QVERIFY(isAccepted(Qt::Key_Up, Qt::NoModifier, true));
    QVERIFY(isAccepted(Qt::Key_C, Qt::ControlModifier));
    QVERIFY(isAccepted(Qt::Key_D, Qt::ControlModifier));
    QVERIFY(isAccepted(Qt::Key_D, Qt::ControlModifier | Qt::ShiftModifier));
    QVERIFY(isAccepted(Qt::Key_ScrollLock, Qt::NoModifier));
}

void ViewCameraEventsTest::fullScreen_fromASplitterAndBack()
{
    QSplitter splitter(Qt::Vertical);
    auto *above = new QWidget;
    splitter.addWidget(above);
    splitter.addWidget(scene->view);
    splitter.addWidget(new QWidget);
    splitter.resize(400, 700);
    splitter.show();
    QVERIFY(QTest::qWaitForWindowActive(&splitter));
    const QList<int> sizes = splitter.sizes();
    scene->view->setFocus();
    hand->keyIntoOtherWindow("F11");
    QVERIFY(scene->view->isFullScreenView());
    QTRY_COMPARE(scene->view->size(), QGuiApplication::primaryScreen()->size());
    QTRY_VERIFY(scene->view->hasFocus());
    QTRY_COMPARE(scene->state().width, QGuiApplication::primaryScreen()->size().width());
    QVERIFY(scene->view->parentWidget() == nullptr);
    hand->keyDown("z"); // the modes go on
    QCOMPARE(scene->state().interactMode, InteractMode::Zoom);
    hand->keyUp("z");
    hand->keyIntoOtherWindow("Escape");
    QVERIFY(!scene->view->isFullScreenView());
    QCOMPARE(splitter.indexOf(scene->view), 1);
    QTRY_COMPARE(splitter.sizes(), sizes);
    QCOMPARE(splitter.focusProxy(), scene->view.data());
    QTRY_VERIFY(scene->view->isVisible());
    scene->view->setParent(nullptr);
}

void ViewCameraEventsTest::fullScreen_fromALayoutAndBack()
{
    QWidget window;
    auto *layout = new QVBoxLayout(&window);
    layout->addWidget(new QWidget);
    layout->addWidget(scene->view);
    window.resize(400, 500);
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    scene->view->setFocus();
    hand->keyIntoOtherWindow("F11");
    QTRY_COMPARE(scene->view->size(), QGuiApplication::primaryScreen()->size());
    QCOMPARE(layout->indexOf(scene->view), -1);
    QTRY_VERIFY(scene->view->hasFocus());
    hand->keyIntoOtherWindow("F11");
    QCOMPARE(layout->indexOf(scene->view), 1);
    QTRY_VERIFY(scene->view->isVisible() && scene->view->width() < 500);
    scene->view->setParent(nullptr);
}

void ViewCameraEventsTest::fullScreen_fromAPlainParentAndBack()
{
    QWidget window;
    QPixmap red(16, 16);
    red.fill(Qt::red);
    window.setWindowIcon(red);
    window.resize(400, 400);
    scene->view->setParent(&window);
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    scene->view->enterFullScreen();
    QVERIFY(scene->view->parentWidget() == nullptr);
    QCOMPARE(scene->view->windowIcon().pixmap(16).toImage().pixelColor(8, 8), QColor(Qt::red));
    scene->view->leaveFullScreen();
    QCOMPARE(scene->view->parentWidget(), &window);
    QCOMPARE(window.focusProxy(), scene->view.data());
    QTRY_VERIFY(scene->view->isVisible());
    scene->view->setParent(nullptr);
}

void ViewCameraEventsTest::coordinatesText_hasThreeDecimals()
{
    hand->moveTo(ViewScene::pixel(25.0, 17.5));
    QLocale::setDefault(QLocale::C);
    QCOMPARE(scene->view->coordinatesText(), QString("x = 25.000 mm; y = 17.500 mm; z = 1.000 mm"));
    QLocale::setDefault(QLocale(QLocale::German));
    QCOMPARE(scene->view->coordinatesText(), QString("x = 25,000 mm; y = 17,500 mm; z = 1,000 mm"));
    QLocale::setDefault(QLocale::C);
}

void ViewCameraEventsTest::manyUpdates_paintAtOnce()
{
    int paints = 0;
    const QObject counter; // ends the connection before paints goes
    connect(scene->view, &QOpenGLWidget::aboutToCompose, &counter, [&] { ++paints; });
    for (int i = 0; i < 20; ++i)
        emit scene->image->updated();
    QCOMPARE(paints, 20);
}

int main(int argc, char **argv)
{
    QApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QApplication application(argc, argv);
    ViewCameraEventsTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "ViewCameraEventsTest.moc"
