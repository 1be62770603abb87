// A view that moves from a screen with one pixel for each logical one to a screen with two, and back. The
// test has an X server of its own with two screens.
#include "tests/hidpi/DrawnScene.h"
#include "tests/hidpi/PictureComparison.h"
#include "tests/support/CapturedOutput.h"

#include <QProcess>
#include <QScreen>
#include <QWindow>

namespace {

// Two screens of an X server share no windows: the toolkit makes another one.
void moveTo(DrawnScene &scene, QScreen *screen)
{
    scene.view->hide();
    scene.view->windowHandle()->setScreen(screen);
    scene.view->show();
}

} // namespace

class ScreenChangeTest : public QObject
{
    Q_OBJECT

private slots:
    void movedView_isDrawnAnewInTheResolutionOfItsScreen();
};

void ScreenChangeTest::movedView_isDrawnAnewInTheResolutionOfItsScreen()
{
    const QList<QScreen *> screens = QGuiApplication::screens();
    QCOMPARE(screens.size(), 2);
    QCOMPARE(screens[0]->devicePixelRatio(), 1.0);
    QCOMPARE(screens[1]->devicePixelRatio(), 2.0);
    const CapturedOutput output;
    DrawnScene scene;
    scene.view->setScreen(screens[0]);
    QVERIFY(scene.show());
    scene.display(DrawnScene::Volume, ScopeSlice);
    scene.display(DrawnScene::Contours, ScopeSlice);
    scene.view->enterMode(InteractMode::Zoom);
    const QImage before = scene.picture();
    QCOMPARE(before.size(), QSize(320, 320));
    QCOMPARE(scene.view->cursor().pixmap().size(), QSize(32, 32));

    moveTo(scene, screens[1]);
    QTRY_COMPARE(scene.view->devicePixelRatioF(), 2.0);
    QTRY_COMPARE(scene.view->cursor().pixmap().size(), QSize(64, 64));
    QVERIFY(QTest::qWaitForWindowExposed(scene.view.get()));
    QTRY_COMPARE(scene.view->size(), QSize(320, 320));
    const QImage fine = scene.picture();
    QCOMPARE(fine.size(), QSize(640, 640));
    QCOMPARE(scene.view->state().width, 320);
    const Agreement agreement = agreementOf(before, fine, 32);
    QVERIFY2(agreement.share() < 0.01 && std::abs(agreement.light - 1.0) < 0.03,
             qPrintable(agreement.text()));
    // What stands on the screen is the new picture too.
    const QPoint corner = scene.view->mapToGlobal(QPoint(0, 0));
    const auto onScreen = [&] {
        return opaquePicture(screens[1]
                                 ->grabWindow(0, corner.x() - screens[1]->geometry().x(),
                                              corner.y() - screens[1]->geometry().y(), 320, 320)
                                 .toImage());
    };
    QTRY_COMPARE(onScreen().pixel(480, 320), fine.pixel(480, 320));

    moveTo(scene, screens[0]);
    QTRY_COMPARE(scene.view->devicePixelRatioF(), 1.0);
    QVERIFY(QTest::qWaitForWindowExposed(scene.view.get()));
    QTRY_COMPARE(scene.view->cursor().pixmap().size(), QSize(32, 32));
    QTRY_COMPARE(scene.picture(), before);
}

int main(int argc, char **argv)
{
    QProcess server;
    server.start("Xvfb", {"-displayfd", "1", "-screen", "0", "800x600x24", "-screen", "1", "800x700x24",
                          "-nolisten", "tcp", "-extension", "RANDR"});
    if (!server.waitForStarted() || !server.waitForReadyRead())
        return 1;
    qputenv("DISPLAY", ":" + server.readAllStandardOutput().trimmed());
    qputenv("QT_SCREEN_SCALE_FACTORS", "1;2");
    qunsetenv("QT_SCALE_FACTOR");
    int result = 0;
    {
        QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
        QApplication application(argc, argv);
        ScreenChangeTest test;
        result = QTest::qExec(&test, argc, argv);
    }
    server.terminate();
    server.waitForFinished();
    return result;
}

#include "ScreenChangeTest.moc"
