// The window, its tool bars and its commands.
#include "demo/xtest/XTestDevice.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/DialogDriver.h"
#include "tests/support/PrivateSettings.h"
#include "tests/support/XHand.h"
#include "tests/viewer/ViewerScene.h"

#include <QFile>
#include <QHeaderView>
#include <QImageReader>
#include <QLayout>
#include <QScreen>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QToolBar>

#include <cmath>
#include <memory>

namespace {

// The label's numbers are written as the reader's language has them.
double number(const QString &text)
{
    return QLocale().toDouble(text);
}

struct Mode
{
    const char *text;
    const char *toolTip;
    InteractMode mode;
    void (QStackedSliceView::*entered)();
    void (QStackedSliceView::*set)();
};

using View = QStackedSliceView;
const Mode modeTable[] = {
    {"Perspective", "allows to adjust the parameters of the projection", InteractMode::Perspective,
     &View::interactModePerspectiveEntered, &View::setInteractBaseModePerspective},
    {"Window", "allows to adjust brightness and contrast", InteractMode::Window,
     &View::interactModeWindowEntered, &View::setInteractBaseModeWindow},
    {"Move", "enables moving the displayed image around the screen", InteractMode::Move,
     &View::interactModeMoveEntered, &View::setInteractBaseModeMove},
    {"Zoom", "allows to adjust the magnification of the display", InteractMode::Zoom,
     &View::interactModeZoomEntered, &View::setInteractBaseModeZoom},
    {"Trace", "enables drawing contours along automatically detected edge points", InteractMode::Trace,
     &View::interactModeTraceEntered, &View::setInteractBaseModeTrace},
    // On purpose: Guess bears the tip of Erase.
    {"Guess", "can be used to delete contour points or segments", InteractMode::Guess,
     &View::interactModeGuessEntered, &View::setInteractBaseModeGuess},
    {"Erase", "Erase", InteractMode::Erase, &View::interactModeEraseEntered,
     &View::setInteractBaseModeErase}, // no tip of its own: the toolkit answers with the text
    {"Load", "enables loading contours of all slices", InteractMode::Load, &View::interactModeLoadEntered,
     &View::setInteractBaseModeLoad},
};

QByteArray firstBytes(const QString &path, int count)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.read(count) : QByteArray();
}

const QByteArray pngStart("\x89PNG", 4);
const QByteArray jpegStart("\xff\xd8\xff", 3);

} // namespace

class ViewerWindowTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { static const PrivateSettings settings; }

private:
    QToolBar *toolBarOf(QAction *action) const
    {
        for (QToolBar *bar : scene->viewer->findChildren<QToolBar *>())
            if (bar->actions().contains(action))
                return bar;
        return nullptr;
    }
    void clickAction(const QString &text)
    {
        QAction *action = scene->action(text);
        QWidget *button = toolBarOf(action)->widgetForAction(action);
        XHand hand(button);
        hand.moveTo(button->rect().center());
        hand.click(Qt::LeftButton);
    }
    // Shows the volume on its first slice, without motion.
    void showVolume()
    {
        scene->viewer->addObject(scene->volume);
        QVERIFY(scene->show());
        scene->viewer->resetView();
        QTRY_VERIFY(!scene->view()->state().animatingView);
        QTest::qWait(100);
    }
    QString saveScreenshot(const QString &name)
    {
        const QString path = folder.filePath(name);
        DialogDriver driver;
        driver.expectFileDialog("Save Screenshot as", path);
        scene->action("Screenshot")->trigger();
        return driver.verify() ? path : QString(driver.report());
    }

    QTemporaryDir folder;
    std::unique_ptr<CapturedOutput> output;
    std::unique_ptr<ViewerScene> scene;

private slots:
    void init()
    {
        output = std::make_unique<CapturedOutput>();
        scene = std::make_unique<ViewerScene>();
    }
    void cleanup()
    {
        scene.reset();
        output.reset();
        QVERIFY(QApplication::topLevelWidgets().isEmpty());
    }

    void frame()
    {
        QStackedSliceViewer *viewer = scene->viewer;
        QCOMPARE(viewer->windowTitle(), "Stacked Slice Viewer");
        QVERIFY(!viewer->windowIcon().isNull());
        QVERIFY(viewer->acceptDrops());
        QVERIFY(viewer->testAttribute(Qt::WA_DeleteOnClose));
        QVERIFY(viewer->isWindow());
        QCOMPARE(viewer->sizeHint(), QSize(800, 600));
        QCOMPARE(viewer->layout()->contentsMargins(), QMargins(0, 0, 0, 0));
        QCOMPARE(viewer->focusProxy(), scene->view());
        auto *splitter = viewer->findChild<QSplitter *>();
        QCOMPARE(splitter->orientation(), Qt::Vertical);
        QCOMPARE(splitter->contentsMargins(), QMargins(8, 4, 8, 0));
        QCOMPARE(splitter->widget(0), scene->view());
        QCOMPARE(splitter->widget(1), scene->tree());
        QVERIFY(!splitter->isCollapsible(0));
        QVERIFY(splitter->isCollapsible(1));
        QCOMPARE(scene->view()->sizePolicy().verticalStretch(), 1);
        QCOMPARE(scene->tree()->sizePolicy().verticalStretch(), 0);
    }

    void tree()
    {
        EnhancedQTreeView *tree = scene->tree();
        QCOMPARE(tree->toolTip(), "Image Composition Tree");
        QCOMPARE(tree->model(), scene->composition());
        QCOMPARE(tree->editTriggers(),
                 QAbstractItemView::CurrentChanged | QAbstractItemView::SelectedClicked);
        QCOMPARE(tree->selectionBehavior(), QAbstractItemView::SelectItems);
        QCOMPARE(tree->columnWidth(0), 200);
        QCOMPARE(tree->columnWidth(1), 32);
    }

    void modeActions_areInOneGroupAndOneToolBar()
    {
        QVERIFY(scene->viewer->findChild<QActionGroup *>()->isEnabled());
        const QList<QAction *> modes = scene->modes();
        QCOMPARE(modes.size(), qsizetype(std::size(modeTable)));
        for (qsizetype i = 0; i < modes.size(); ++i) {
            QCOMPARE(modes[i]->text(), modeTable[i].text);
            QCOMPARE(modes[i]->toolTip(), modeTable[i].toolTip);
            QCOMPARE(modes[i]->statusTip(), i == 0 ? "test tip" : "");
            QVERIFY(modes[i]->isCheckable());
        }
        QCOMPARE(toolBarOf(modes[0])->actions(), modes);
        QAction *screenshot = scene->action("Screenshot");
        QVERIFY(toolBarOf(screenshot) != nullptr && toolBarOf(screenshot) != toolBarOf(modes[0]));
        QVERIFY(!screenshot->isCheckable());
    }

    void moveIsCheckedAtTheStart()
    {
        QCOMPARE(scene->checkedMode(), "Move");
        QCOMPARE(scene->view()->state().interactMode, InteractMode::Move);
        QCOMPARE(scene->view()->state().interactBaseMode, InteractMode::Move);
    }

    void clickingAMode_setsTheBaseModeOfTheView()
    {
        QVERIFY(scene->show());
        for (const Mode &mode : modeTable) {
            clickAction(mode.text);
            QCOMPARE(scene->checkedMode(), mode.text);
            QCOMPARE(scene->view()->state().interactMode, mode.mode);
            QCOMPARE(scene->view()->state().interactBaseMode, mode.mode);
            clickAction(mode.text); // once more changes nothing
            QCOMPARE(scene->checkedMode(), mode.text);
            QCOMPARE(scene->view()->state().interactBaseMode, mode.mode);
        }
    }

    void aModeOfTheView_checksItsAction()
    {
        for (const Mode &mode : modeTable) {
            (scene->view()->*mode.set)();
            QCOMPARE(scene->checkedMode(), mode.text);
            QCOMPARE(scene->view()->state().interactBaseMode, mode.mode);
        }
        for (const Mode &mode : modeTable) {
            emit(scene->view()->*mode.entered)();
            QCOMPARE(scene->checkedMode(), mode.text);
        }
    }

    void baseModeSignals_checkTheirActions()
    {
        scene->action("Load")->trigger();
        emit scene->view()->interactBaseModeTraceSet();
        QCOMPARE(scene->checkedMode(), "Trace");
        emit scene->view()->interactBaseModeZoomSet();
        QCOMPARE(scene->checkedMode(), "Zoom");
        emit scene->view()->interactBaseModeMoveSet();
        QCOMPARE(scene->checkedMode(), "Move");
    }

    void drawMode_hasNoAction()
    {
        scene->action("Zoom")->trigger();
        scene->view()->setInteractBaseModeDraw();
        QCOMPARE(scene->checkedMode(), "Zoom");
        QCOMPARE(scene->view()->state().interactMode, InteractMode::Draw);
    }

    void heldSpace_checksMove_andReleaseTheBaseModeAgain()
    {
        QVERIFY(scene->show());
        clickAction("Trace");
        scene->view()->setFocus();
        XHand hand(scene->view());
        hand.keyDown("space");
        QCOMPARE(scene->checkedMode(), "Move");
        QCOMPARE(scene->view()->state().interactMode, InteractMode::Move);
        QCOMPARE(scene->view()->state().interactBaseMode, InteractMode::Trace);
        hand.keyUp("space");
        QCOMPARE(scene->checkedMode(), "Trace");
        QCOMPARE(scene->view()->state().interactMode, InteractMode::Trace);
        QCOMPARE(scene->view()->state().interactBaseMode, InteractMode::Trace);
    }

    void everyHeldModeKey_movesOnlyTheCheckMark()
    {
        QVERIFY(scene->show());
        XHand hand(scene->view());
        const std::pair<const char *, const char *> keys[] = {
            {"z", "Zoom"},  {"w", "Window"}, {"t", "Trace"}, {"p", "Perspective"},
            {"g", "Guess"}, {"e", "Erase"},  {"l", "Load"}};
        for (const auto &[key, text] : keys) {
            hand.keyDown(key);
            QCOMPARE(scene->checkedMode(), text);
            QCOMPARE(scene->view()->state().interactBaseMode, InteractMode::Move);
            hand.keyUp(key);
            QCOMPARE(scene->checkedMode(), "Move");
        }
    }

    void shiftWithAModeKey_changesTheBaseMode()
    {
        QVERIFY(scene->show());
        XHand hand(scene->view());
        hand.keyDown("Shift_L");
        hand.key("z");
        hand.keyUp("Shift_L");
        QCOMPARE(scene->checkedMode(), "Zoom");
        QCOMPARE(scene->view()->state().interactBaseMode, InteractMode::Zoom);
    }

    void coordinates_followTheMouse()
    {
        showVolume();
        const QRect area = scene->view()->rect();
        XHand hand(scene->view());
        hand.moveTo(area.center() - QPoint(30, 20));
        hand.moveTo(area.center());
        QCOMPARE(scene->coordinatesLabel()->text(), scene->view()->coordinatesText());
        const QRegularExpression pattern("^x = (\\S+) mm; y = (\\S+) mm; z = (\\S+) mm$");
        const auto atCentre = pattern.match(scene->coordinatesLabel()->text());
        QVERIFY(atCentre.hasMatch());
        // All 40 mm fit the smaller side; the middle of the volume is in the middle of the view, at most a
        // pixel away; the label has three digits.
        const double mmPerPixel = ViewerScene::extentMm / std::min(area.width(), area.height());
        QVERIFY(std::abs(number(atCentre.captured(1)) - 20.0) < mmPerPixel + 0.0006);
        QVERIFY(std::abs(number(atCentre.captured(2)) - 20.0) < mmPerPixel + 0.0006);
        QCOMPARE(number(atCentre.captured(3)), 1.0);
        // 30 pixels to the right, 20 up.
        hand.moveTo(area.center() + QPoint(30, -20));
        const auto later = pattern.match(scene->coordinatesLabel()->text());
        const auto moved = [&](int part) {
            return number(later.captured(part)) - number(atCentre.captured(part));
        };
        QVERIFY(std::abs(moved(1) - 30 * mmPerPixel) < 0.01);
        QVERIFY(std::abs(moved(2) - 20 * mmPerPixel) < 0.01);
        hand.wheel(true);
        QVERIFY(scene->coordinatesLabel()->text().endsWith("z = " + QLocale().toString(3.0, 'f', 3) + " mm"));
        QCOMPARE(scene->coordinatesLabel()->parentWidget(), scene->viewer->findChild<QStatusBar *>());
        QVERIFY(scene->coordinatesLabel()->isVisible());
    }

    void screenshot_isWhatTheScreenShows()
    {
        showVolume();
        scene->volume->setLabel("a"); // nothing in the picture
        const QRect onScreen(scene->view()->mapToGlobal(QPoint(0, 0)), scene->view()->size());
        XTestDevice().moveTo({1279, 1023});
        QTest::qWait(200);
        const QImage shown = XTestDevice().screenshot().copy(onScreen);
        const QString path = saveScreenshot("view.png");
        const QImage saved(path);
        QVERIFY2(!saved.isNull(), qPrintable(path));
        QVERIFY(!saved.hasAlphaChannel());
        QCOMPARE(saved.size(), scene->view()->size());
        QCOMPARE(saved.convertToFormat(QImage::Format_RGB32), shown);
        // Dark on the left, bright on the right.
        QVERIFY(qGray(saved.pixel(saved.width() / 2 - 30, saved.height() / 2)) < 10);
        QVERIFY(qGray(saved.pixel(saved.width() / 2 + 30, saved.height() / 2)) > 240);
    }

    void screenshot_isJpegForJpgInAnyCase_andPngOtherwise()
    {
        showVolume();
        QCOMPARE(firstBytes(saveScreenshot("small.jpg"), 3), jpegStart);
        QCOMPARE(firstBytes(saveScreenshot("Large.JPG"), 3), jpegStart);
        QCOMPARE(firstBytes(saveScreenshot("a.png"), 4), pngStart);
        QCOMPARE(firstBytes(saveScreenshot("x.jpeg"), 4), pngStart);
        QCOMPARE(firstBytes(saveScreenshot("none"), 4), pngStart);
    }

    void screenshot_isAnnouncedBeforeItIsWritten()
    {
        showVolume();
        QList<bool> existed;
        connect(&scene->manager, &ImageManager::aboutToWrite, this,
                [&] { existed << QFile::exists(folder.filePath("announced.png")); });
        {
            DialogDriver driver;
            driver.expectFileDialog("Save Screenshot as", QString());
            scene->action("Screenshot")->trigger();
            QVERIFY2(driver.verify(), driver.report());
        }
        QCOMPARE(existed, QList<bool>());
        QVERIFY(QFile::exists(saveScreenshot("announced.png")));
        QCOMPARE(existed, QList<bool>{false});
    }

    void screenshot_asksInTheProgramsFolder_withTwoFilters()
    {
        showVolume();
        DialogDriver driver;
        driver.expectFileDialog("Save Screenshot as", QString(), [&](QFileDialog *dialog) {
            driver.check("filters", DialogDriver::shownFilters(dialog).join("|"),
                         "JPEG Image (*.jpg)|Portable Network Graphics (*.png)");
            driver.check("folder", dialog->directory().absolutePath(),
                         QCoreApplication::applicationDirPath());
        });
        clickAction("Screenshot");
        QVERIFY2(driver.verify(), driver.report());
    }

    void screenshot_thatCannotBeSaved_isNotReported()
    {
        showVolume();
        QVERIFY(!QFile::exists(saveScreenshot("missing/view.png")));
    }

    void f11_showsTheViewAlone_andBack()
    {
        showVolume();
        auto *splitter = scene->viewer->findChild<QSplitter *>();
        const QSize before = scene->view()->size();
        XHand hand(scene->view());
        hand.keyIntoOtherWindow("F11");
        QVERIFY(QTest::qWaitForWindowActive(scene->view()));
        QTRY_COMPARE(scene->view()->size(), QGuiApplication::primaryScreen()->size());
        QCOMPARE(splitter->count(), 1);
        hand.keyIntoOtherWindow("F11");
        QVERIFY(QTest::qWaitForWindowActive(scene->viewer));
        QCOMPARE(splitter->widget(0), scene->view());
        QCOMPARE(splitter->widget(1), scene->tree());
        QTRY_COMPARE(scene->view()->size(), before);
        QCOMPARE(scene->viewer->focusProxy(), scene->view());
        QTRY_VERIFY(scene->view()->hasFocus());
        QCOMPARE(QApplication::activeWindow(), scene->viewer);
        hand.keyDown("z");
        QCOMPARE(scene->checkedMode(), "Zoom");
        hand.keyUp("z");
    }

    void viewClosedInFullScreen_leavesAWindowThatDoesNoHarm()
    {
        showVolume();
        XHand hand(scene->view());
        hand.keyIntoOtherWindow("F11");
        QVERIFY(QTest::qWaitForWindowActive(scene->view()));
        scene->view()->close();
        QTRY_COMPARE(scene->view(), nullptr);
        scene->viewer->resetView();
        scene->viewer->updateCoordinates();
        scene->viewer->saveScreenshot(); // asks nothing: a dialog would block here for ever
        scene->viewer->addObject(scene->contours);
        QCOMPARE(scene->composition()->podCount(), 2);
        for (QAction *mode : scene->modes())
            mode->trigger();
        scene->viewer->close();
        QTRY_VERIFY(scene->viewer.isNull());
    }

    void viewerClosedWhileInFullScreen_takesTheViewWithIt()
    {
        showVolume();
        const QPointer<QStackedSliceView> view = scene->view();
        XHand hand(view);
        hand.keyIntoOtherWindow("F11");
        QVERIFY(QTest::qWaitForWindowActive(view));
        scene->viewer->close();
        QTRY_VERIFY(scene->viewer.isNull());
        QVERIFY(view.isNull());
    }

    void resetView_expandsTheTree()
    {
        scene->viewer->addObject(scene->contours);
        QVERIFY(scene->show());
        scene->tree()->collapseAll();
        scene->viewer->resetView();
        QVERIFY(scene->tree()->isExpanded(scene->cell(0, 0)));
    }
};

QTEST_MAIN(ViewerWindowTest)
#include "ViewerWindowTest.moc"
