// The mouse of the X server on a viewer whose logical pixels are any number of those of the screen: runs with
// the factor that QT_SCALE_FACTOR names. All positions and pictures are in pixels of the screen.
#include "demo/xtest/XTestDevice.h"
#include "tests/hidpi/XScreen.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/DialogDriver.h"
#include "tests/support/DrawnContours.h"
#include "tests/support/GoldenPicture.h"
#include "tests/viewer/ViewerScene.h"

#include <QListView>
#include <QScreen>
#include <QTemporaryDir>

#include <atomic>
#include <cmath>
#include <thread>

namespace {

constexpr double middleMm = 20.0; // of the volume, seen in the middle of the view

} // namespace

class ScaledMouseTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void factor_isTheOneThatWasAskedFor();
    void pointer_isAtTheMmOfItsPixel();
    void edgeOnTheScreen_isWhereThePointerFindsIt();
    void tracedPoints_areUnderThePointer();
    void tracedEdge_isSnappedTo();
    void erase_takesTheLineUnderThePointer();
    void wheelWithControl_keepsThePointUnderThePointer();
    void draggedScene_followsThePointer();
    void zoomedRectangle_fillsTheView();
    void cursors_areAsLargeAsTheirLogicalSize();
    void listRow_isDroppedWhereThePointerIs();
    void fullScreen_fillsTheScreenAndComesBack();
    void screenshot_isThePictureOnTheScreen();

private:
    QStackedSliceView *view() const { return scene->view(); }
    const ViewState &state() const { return view()->state(); }
    double factor() const { return view()->devicePixelRatioF(); }
    double logicalPerMm() const { return state().viewMatrix.m[0][0]; }
    double mmPerPixel() const { return 1.0 / (logicalPerMm() * factor()); }

    // The pixel of the screen at a position in the widget in logical pixels.
    QPoint onScreen(const QWidget *widget, const QPointF &position) const
    {
        const QPointF inWindow = QPointF(widget->mapTo(widget->window(), QPoint(0, 0))) + position;
        return device.originOf(widget->window()->winId()) +
               (inWindow * widget->devicePixelRatioF()).toPoint();
    }
    QPoint onScreen(double x, double y) const
    {
        return onScreen(view(), QPointF(middle().x() + (x - middleMm) * logicalPerMm(),
                                        middle().y() - (y - middleMm) * logicalPerMm()));
    }
    // The mm that this pixel of the screen shows, by its upper left corner.
    QPointF mmAt(const QPoint &pixel) const
    {
        const QPointF inView = QPointF(pixel - device.originOf(view()->window()->winId())) / factor() -
                               QPointF(view()->mapTo(view()->window(), QPoint(0, 0)));
        return {middleMm + (inView.x() - middle().x()) / logicalPerMm(),
                middleMm + (middle().y() - inView.y()) / logicalPerMm()};
    }
    QPoint middle() const { return {state().width / 2, state().height / 2}; }
    QPointF cursorMm() const { return {state().cursorWorld[0], state().cursorWorld[1]}; }
    static bool isAt(const QPointF &position, const QPointF &expected, double mm)
    {
        const QPointF apart = position - expected;
        return std::abs(apart.x()) < mm && std::abs(apart.y()) < mm;
    }
    void pointAt(const QPoint &pixel)
    {
        device.moveTo(pixel);
        QVERIFY2(QTest::qWaitFor([&] { return isAt(cursorMm(), mmAt(pixel), exactMm); }, 3000),
                 qPrintable(QString("%1, %2 mm instead of %3, %4")
                                .arg(cursorMm().x())
                                .arg(cursorMm().y())
                                .arg(mmAt(pixel).x())
                                .arg(mmAt(pixel).y())));
    }
    void edit(int childRow)
    {
        scene->composition()->setData(scene->childCell(1, childRow, ImageComposition::EditColumn), true);
    }
    void showContours()
    {
        scene->viewer->addObject(scene->contours);
        scene->viewer->addObject(scene->edges);
        scene->composition()->setData(scene->cell(2, ImageComposition::AnalyzeColumn), true);
        edit(1);
    }
    SlicedContoursFragment *edited() const { return scene->contours->fragment(0); }
    void key(const char *name)
    {
        device.tapKey(name);
        QTest::qWait(50);
    }

    static constexpr double exactMm = 1e-6;

    std::unique_ptr<CapturedOutput> output;
    std::unique_ptr<ViewerScene> scene;
    XTestDevice device;
};

void ScaledMouseTest::init()
{
    output = std::make_unique<CapturedOutput>();
    scene = std::make_unique<ViewerScene>();
    scene->viewer->resize(420, 460);
    QVERIFY(scene->show());
    scene->viewer->move(20, 20);
    scene->viewer->addObject(scene->volume);
    QTest::qWait(100);
    scene->viewer->resetView();
    view()->repaintNow();
    QCOMPARE(logicalPerMm(), std::min(state().width, state().height) / 40.0);
    // The first movement into the window is told with a rounded position.
    device.moveTo(onScreen(1.0, 39.0));
    QTest::qWait(100);
    device.moveTo(onScreen(2.0, 38.0));
    QTest::qWait(100);
}

void ScaledMouseTest::cleanup()
{
    scene.reset();
    output.reset();
}

void ScaledMouseTest::factor_isTheOneThatWasAskedFor()
{
    const QString asked = qEnvironmentVariable("QT_SCALE_FACTOR", "1");
    QCOMPARE(factor(), asked.toDouble());
}

void ScaledMouseTest::pointer_isAtTheMmOfItsPixel()
{
    const QPoint middle = onScreen(middleMm, middleMm);
    // Also at pixels between the logical ones.
    for (const QPoint offset : {QPoint(0, 0), QPoint(1, 0), QPoint(0, 1), QPoint(-31, 17), QPoint(50, -23)}) {
        pointAt(middle + offset);
        if (QTest::currentTestFailed())
            return;
        const QPointF mm = mmAt(middle + offset);
        const auto number = [](double value) { return QLocale().toString(value, 'f', 3); };
        QCOMPARE(scene->coordinatesLabel()->text(),
                 QString("x = %1 mm; y = %2 mm; z = %3 mm").arg(number(mm.x()), number(mm.y()), number(1.0)));
    }
}

// The volume is bright from x = 20 mm on, and ends at y = 0 and 40.
void ScaledMouseTest::edgeOnTheScreen_isWhereThePointerFindsIt()
{
    device.moveTo({1279, 1023});
    QTest::qWait(200);
    const QImage screen = opaquePicture(device.screenshot());
    const auto isBright = [&](const QPoint &pixel) { return qGray(screen.pixel(pixel)) > 200; };
    QPoint left = onScreen(15.0, 15.0);
    while (left.x() < screen.width() - 1 && !isBright(left))
        left.rx() += 1;
    QVERIFY(isAt(mmAt(left), {20.0, 15.0}, 1.01 * mmPerPixel()));
    pointAt(left);
    QVERIFY(isAt(cursorMm(), {20.0, 15.0}, 1.01 * mmPerPixel()));
}

void ScaledMouseTest::tracedPoints_areUnderThePointer()
{
    showContours();
    view()->setInteractBaseModeTrace();
    const QPoint from = onScreen(6.0, 6.0) + QPoint(1, 1), over = onScreen(9.0, 12.0),
                 to = onScreen(14.0, 7.0);
    const QList<QPointF> expected{mmAt(from), mmAt(over), mmAt(to)};
    pointAt(from);
    device.press(XTestDevice::Right);
    QTRY_VERIFY(state().activeSegment);
    pointAt(over);
    pointAt(to);
    device.release(XTestDevice::Right);
    QTRY_VERIFY(!state().activeSegment);
    QCOMPARE(edited()->segmentCount(), 1);
    const auto points = edited()->segment(0)->snapshot().points;
    QCOMPARE(points.size(), std::size_t(3));
    for (int i = 0; i < 3; ++i)
        QVERIFY(isAt(points[static_cast<std::size_t>(i)], expected[i], exactMm));
}

void ScaledMouseTest::tracedEdge_isSnappedTo()
{
    showContours();
    view()->setInteractBaseModeTrace();
    pointAt(onScreen(20.8, 10.0));
    device.press(XTestDevice::Left);
    QTRY_VERIFY(state().activeSegment);
    pointAt(onScreen(20.8, 14.0));
    device.release(XTestDevice::Left);
    QTRY_VERIFY(!state().activeSegment);
    QCOMPARE(edited()->segmentCount(), 1);
    for (const QPointF &point : edited()->segment(0)->snapshot().points)
        QVERIFY(std::abs(point.x() - 20.0) <= 0.5); // the step between two voxels
}

// Two lines 1 mm apart; the step of the volume is 1 mm, so half a mm around the pointer is taken.
void ScaledMouseTest::erase_takesTheLineUnderThePointer()
{
    showContours();
    drawn::line(edited(), 1.0f, {{5, 10}, {15, 10}});
    auto *kept = drawn::line(edited(), 1.0f, {{5, 11}, {15, 11}});
    view()->setInteractBaseModeErase();
    pointAt(onScreen(5.0, 10.2)); // beside its first point
    device.pressKey("Shift_L");
    device.press(XTestDevice::Left);
    device.release(XTestDevice::Left);
    QTRY_COMPARE(edited()->segmentCount(), 1);
    device.releaseKey("Shift_L");
    QCOMPARE(edited()->segment(0), kept);
}

void ScaledMouseTest::wheelWithControl_keepsThePointUnderThePointer()
{
    const QPoint pixel = onScreen(12.0, 26.0) + QPoint(1, 1);
    pointAt(pixel);
    const QPointF before = cursorMm();
    device.pressKey("Control_L");
    device.click(pixel, XTestDevice::WheelUp);
    QTRY_VERIFY(state().animatingView);
    device.releaseKey("Control_L");
    QTRY_VERIFY(!state().animatingView);
    QVERIFY(logicalPerMm() > 1.2 * std::min(state().width, state().height) / 40.0);
    view()->updateCursor(); // the pointer has not moved, the scene has
    QVERIFY(isAt(cursorMm(), before, exactMm));
}

void ScaledMouseTest::draggedScene_followsThePointer()
{
    const QPoint from = onScreen(15.0, 15.0);
    const QPoint way = QPoint(30, -24); // whole logical pixels at each of the factors
    pointAt(from);
    const QPointF grabbed = cursorMm();
    device.press(XTestDevice::Left);
    device.moveTo(from + way);
    QTRY_VERIFY(std::abs(state().viewMatrix.m[0][3] + 20.0 * logicalPerMm() - way.x() / factor()) < exactMm);
    device.release(XTestDevice::Left);
    QTest::qWait(50);
    view()->updateCursor();
    QVERIFY(isAt(cursorMm(), grabbed, 1.01 * mmPerPixel()));
}

void ScaledMouseTest::zoomedRectangle_fillsTheView()
{
    view()->setInteractBaseModeZoom();
    const QPoint from = onScreen(10.0, 30.0), to = onScreen(20.0, 20.0);
    pointAt(from);
    device.press(XTestDevice::Left);
    QTRY_VERIFY(isAt(QPointF(state().rubberBandCorners[0][0], state().rubberBandCorners[0][1]), {10.0, 30.0},
                     2.0 / logicalPerMm()));
    device.moveTo(to);
    QTRY_VERIFY(state().rubberBandActive);
    device.release(XTestDevice::Left);
    QTRY_VERIFY(state().animatingView);
    QTRY_VERIFY(!state().animatingView);
    // Four times as large, and the middle of the rectangle in the middle, to a logical pixel of before.
    const double pixelMm = 40.0 / std::min(state().width, state().height);
    QVERIFY(std::abs(logicalPerMm() * pixelMm - 4.0) < 0.1);
    const auto back = inverseOf(state().viewMatrix);
    QVERIFY(back);
    const Vector4 middle = transformed(*back, {0.0, 0.0, 0.0, 1.0});
    QVERIFY(isAt({middle[0], middle[1]}, {15.0, 25.0}, 1.5 * pixelMm));
}

void ScaledMouseTest::cursors_areAsLargeAsTheirLogicalSize()
{
    const int size = static_cast<int>(std::lround(32.0 * factor()));
    pointAt(onScreen(middleMm, middleMm));
    for (const InteractMode mode : {InteractMode::Zoom, InteractMode::Move, InteractMode::Window}) {
        view()->enterMode(mode);
        QTRY_COMPARE(XScreen::cursor().size, QSize(size, size));
        QCOMPARE(XScreen::cursor().hotSpot, QPoint(size / 2, size / 2));
    }
}

void ScaledMouseTest::listRow_isDroppedWhereThePointerIs()
{
    QListView list;
    list.setModel(&scene->manager);
    list.setDragEnabled(true);
    list.setWindowFlag(Qt::FramelessWindowHint);
    list.setGeometry(450, 20, 180, 120); // beside the viewer, also on the smallest screen
    list.show();
    QVERIFY(QTest::qWaitForWindowExposed(&list));
    QTest::qWait(200);
    const QRect row = list.visualRect(scene->manager.index(ViewerScene::ContoursRow, 0));
    const QPoint from = onScreen(list.viewport(), row.center()), to = onScreen(middleMm, middleMm);
    std::atomic<bool> released = false;
    std::thread hand([&] {
        XTestDevice().carry(from, to);
        released = true;
    });
    const bool dropped =
        QTest::qWaitFor([&] { return released && scene->composition()->podCount() > 1; }, 10000);
    hand.join();
    QVERIFY(dropped);
    QCOMPARE(scene->composition()->pod(1)->object(), scene->contours);
}

void ScaledMouseTest::fullScreen_fillsTheScreenAndComesBack()
{
    const QImage before = opaquePicture(view()->grabFramebuffer());
    const QSize size = view()->size();
    view()->enterFullScreen();
    QTRY_COMPARE(view()->size(), view()->screen()->size());
    QTRY_COMPARE(state().width, view()->width());
    QCOMPARE(device.originOf(view()->window()->winId()), QPoint(0, 0));
    device.moveTo({1279, 1023});
    view()->resetView();
    view()->repaintNow();
    QTest::qWait(300);
    // The scene is 1024 pixels high in the middle of 1280: bright from the middle to x = 1152.
    const QImage screen = opaquePicture(device.screenshot());
    QVERIFY(isNear(probe(screen, 120, 500), 0, 0, 0));
    QVERIFY(isNear(probe(screen, 630, 500), 0, 0, 0));
    QVERIFY(probe(screen, 650, 10).red() > 250);
    QVERIFY(probe(screen, 1145, 1015).red() > 250);
    QVERIFY(isNear(probe(screen, 1160, 500), 0, 0, 0));
    pointAt(QPoint(701, 333));
    view()->leaveFullScreen();
    QTRY_COMPARE(view()->size(), size);
    QTRY_COMPARE(state().width, size.width());
    view()->resetView();
    view()->repaintNow();
    QCOMPARE(opaquePicture(view()->grabFramebuffer()), before);
    pointAt(onScreen(middleMm, middleMm));
}

// Pixel by pixel, in those of the screen.
void ScaledMouseTest::screenshot_isThePictureOnTheScreen()
{
    showContours();
    drawn::line(edited(), 1.0f, {{5, 10}, {15, 12}, {11, 30}});
    device.moveTo({1279, 1023});
    QTest::qWait(300);
    const QPoint corner = onScreen(view(), QPointF(0, 0));
    const QImage picture = opaquePicture(view()->grabFramebuffer());
    const QImage shown = opaquePicture(device.screenshot()).copy(QRect(corner, picture.size()));
    QCOMPARE(picture.size(), (QSizeF(view()->size()) * factor()).toSize());

    const QTemporaryDir folder;
    const QString path = folder.filePath("view.png");
    DialogDriver driver;
    driver.expectFileDialog("Save Screenshot as", path);
    scene->action("Screenshot")->trigger();
    QVERIFY2(driver.verify(), driver.report());
    const QImage saved = QImage(path).convertToFormat(QImage::Format_RGB32);
    QCOMPARE(saved.size(), picture.size());
    QCOMPARE(saved, shown);
}

int main(int argc, char **argv)
{
    QApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    QApplication application(argc, argv);
    ScaledMouseTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "ScaledMouseTest.moc"
