#pragma once

#include "demo/xtest/XTestDevice.h"
#include "objects/MervImageObject.h"
#include "objects/manager/ImageManager.h"
#include "serialization/dialogs/FileDroppableQListView.h"
#include "serialization/dialogs/ListChoiceDialog.h"
#include "serialization/dialogs/SliceDistanceDialog.h"
#include "shell/MainWindow.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/DialogDriver.h"
#include "tests/support/TestData.h"
#include "tests/support/XHand.h"
#include "tests/viewer/KneeLines.h"
#include "view/EnhancedQCheckBox.h"
#include "view/EnhancedQTreeView.h"
#include "view/ImageComposition.h"
#include "view/QStackedSliceView.h"
#include "view/QStackedSliceViewer.h"

#include <QAction>
#include <QDialogButtonBox>
#include <QImage>
#include <QListWidget>
#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>
#include <QSplitter>
#include <QTest>
#include <QToolBar>

#include <algorithm>
#include <cmath>

// A main window and one viewer, worked by mouse and keys of the X server as a user works them on a real knee.
// Where a step fails the test has failed: see QTest::currentTestFailed().
class RealKneeScene
{
public:
    RealKneeScene()
    {
        window.setGeometry(10, 30, 700, 300);
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        QTest::qWait(200);
    }
    ~RealKneeScene()
    {
        delete viewer;
        while (manager().imageCount() > 0)
            manager().closeImage(manager().index(0, 0));
    }
    RealKneeScene(const RealKneeScene &) = delete;
    RealKneeScene &operator=(const RealKneeScene &) = delete;

    // The folder of a series; null if it is not here.
    static QString dataFolder(const QString &name)
    {
        const QString folder = QString::fromStdString(testDataFolder()) + "/" + name + "/dicom";
        return QFileInfo(folder).isDir() ? folder : QString();
    }

    ImageManager &manager() const { return *window.imageManager(); }
    QStackedSliceView *view() const { return viewer->stackedSliceView(); }
    ImageComposition *composition() const { return viewer->imageComposition(); }
    EnhancedQTreeView *tree() const { return viewer->findChild<EnhancedQTreeView *>(); }
    FileDroppableQListView *list() const { return window.findChild<FileDroppableQListView *>(); }

    static QAction *actionOf(const QWidget *widget, const QString &text)
    {
        for (QAction *action : widget->actions())
            if (action->text().remove('&') == QString(text).remove('&'))
                return action;
        return nullptr;
    }
    static void click(QWidget *widget, const QPoint &position)
    {
        XHand hand(widget);
        hand.moveTo(position);
        hand.clickIntoDialog(Qt::LeftButton);
    }
    // Opens a menu and clicks an entry, and one of the menu that the entry opens.
    void chooseEntry(const QString &title, const QString &entry, const QString &inner = QString())
    {
        QMenuBar *bar = window.menuBar();
        QAction *menuAction = actionOf(bar, title);
        click(bar, bar->actionGeometry(menuAction).center());
        QMenu *menu = menuAction->menu();
        QTRY_VERIFY(menu->isVisible());
        QAction *action = actionOf(menu, entry);
        QVERIFY2(action != nullptr && action->isEnabled(), qPrintable(entry));
        click(menu, menu->actionGeometry(action).center());
        if (inner.isNull())
            return;
        QTRY_VERIFY(action->menu()->isVisible());
        click(action->menu(), action->menu()->actionGeometry(actionOf(action->menu(), inner)).center());
    }
    // In the list of images, whose rows may be wider than its window.
    QPoint rowCentre(int row) const
    {
        list()->scrollTo(manager().index(row, 0));
        return (list()->visualRect(manager().index(row, 0)) & list()->viewport()->rect()).center();
    }
    void selectRow(int row)
    {
        click(list()->viewport(), rowCentre(row));
        QCOMPARE(list()->currentIndex().row(), row);
    }
    // A click on a button of a dialog.
    static void press(QWidget *button) { click(button, button->rect().center()); }

    // Announces the dialogs of a series whose distances of slices are these texts, the one in use with "*".
    void expectSeries(const QString &folder, const QString &series, int echoTimes, const QString &echoTime,
                      const QStringList &distances, int chosenDistance)
    {
        driver.expectFileDialog("Select a directory containing the series.", folder);
        expectChoice("Select Series", 1, series);
        expectChoice("Select Echo Time", echoTimes, echoTime);
        expectDistances(distances, chosenDistance);
    }
    // One echo of the knee through the menu.
    void openKnee(const QString &folder)
    {
        expectSeries(folder, "; ", 8, "6.312",
                     {"Image Position (Patient) based algorithm; result: 0.577143 mm*",
                      "GDCM internal algorithm; result: 4 mm",
                      "Slice Location based algorithm; result: 3.95689 mm"},
                     1);
        chooseEntry("File", "Open Dicom Series with Input Filter ...");
        QTRY_COMPARE_WITH_TIMEOUT(manager().imageCount(), 1, 20000);
        QVERIFY2(driver.verify(), driver.report());
    }

    // The viewer that a command has opened goes below the list of the main window.
    void placeViewer()
    {
        viewer = window.findChild<QStackedSliceViewer *>();
        QVERIFY(viewer);
        QVERIFY(QTest::qWaitForWindowExposed(viewer));
        viewer->setGeometry(270, 210, 1000, 790);
        QTest::qWait(300);
    }
    // With the tree below it as low as it may be; the picture fits the view.
    void enlargeView()
    {
        viewer->findChild<QSplitter *>()->setSizes({570, 150});
        QTest::qWait(200);
        XHand hand(view());
        hand.moveTo(view()->rect().center());
        hand.doubleClick(Qt::LeftButton);
        QTRY_VERIFY(!view()->state().animatingView);
    }
    void goToSlice(int slice)
    {
        XHand hand(view());
        hand.moveTo(view()->rect().center());
        const auto shown = static_cast<double>(view()->state().workingZ);
        const auto notches =
            static_cast<int>(std::lround((knee_lines::zOf(slice) - shown) / knee_lines::sliceMm));
        for (int notch = 0; notch < std::abs(notches); ++notch)
            hand.wheel(notches > 0);
        QCOMPARE(double(view()->state().workingZ), knee_lines::zOf(slice));
    }
    void tick(const QModelIndex &cell)
    {
        auto *box = qobject_cast<EnhancedQCheckBox *>(tree()->indexWidget(cell));
        QVERIFY(box != nullptr);
        if (!box->isChecked())
            click(box, QPoint(8, box->height() / 2));
        QVERIFY(box->isChecked());
    }
    void chooseMode(const QString &text)
    {
        for (QToolBar *bar : viewer->findChildren<QToolBar *>())
            if (QAction *action = actionOf(bar, text)) {
                press(bar->widgetForAction(action));
                QVERIFY(action->isChecked());
            }
    }
    // Where a position of the shown slice is in the view.
    QPoint pixelOf(const QPointF &mm) const
    {
        const ViewState &state = view()->state();
        const Vector4 seen =
            transformed(state.viewMatrix, {mm.x(), mm.y(), static_cast<double>(state.workingZ), 1.0});
        const QPoint middle(view()->width() / 2, view()->height() / 2);
        return {static_cast<int>(std::lround(middle.x() + seen[0])),
                static_cast<int>(std::lround(middle.y() - seen[1]))};
    }
    // Along the line: the left button keeps to edge points, the right one to the line.
    void trace(const QList<QPointF> &line, Qt::MouseButton button)
    {
        constexpr double stepMm = 0.4;
        XHand hand(view());
        const QList<QPointF> path = knee_lines::walked(line, stepMm);
        hand.moveTo(pixelOf(path.first()));
        hand.press(button);
        for (const QPointF &point : path)
            hand.moveTo(pixelOf(point));
        hand.release(button);
    }
    void zoomToTheJoint()
    {
        chooseMode("Zoom");
        XHand hand(view());
        const auto corner = [&](double column, double row) {
            return pixelOf(knee_lines::inMm({QPointF(column, row)}).first());
        };
        hand.drag(Qt::LeftButton, corner(5, 42), corner(225, 172));
        QTRY_VERIFY(!view()->state().animatingView);
    }
    // A left drag of (x, 2 x) pixels, downwards, leaves the darkest value and lowers the brightest.
    void brighten()
    {
        auto *volume = qobject_cast<MervImageObject *>(manager().image(0));
        const float low = volume->windowLow(), high = volume->windowHigh();
        // Window mode works on the image of the current row.
        click(tree()->viewport(), tree()->visualRect(composition()->index(0, 0)).center());
        QCOMPARE(composition()->windowedImage(), volume);
        chooseMode("Window");
        XHand hand(view());
        const QPoint start(300, 30);
        hand.moveTo(start);
        hand.press(Qt::LeftButton);
        for (int x = 0; x <= 240; x += 10)
            hand.moveTo(start + QPoint(x, 2 * x));
        hand.release(Qt::LeftButton);
        QVERIFY(std::abs(volume->windowLow() - low) < 1.0f);
        // Each of 24 steps takes 20 / 1024 of what is left: 0.62.
        const float left = (volume->windowHigh() - low) / (high - low);
        QVERIFY2(left > 0.61f && left < 0.63f, qPrintable(QString::number(double(left))));
    }
    // The viewer on the screen as docs/NAME, if pictures are asked for.
    void writePicture(const QString &name) const
    {
        if (qEnvironmentVariable("TEVORA_WRITE_PICTURES") != "1")
            return;
        const QRect onScreen(viewer->mapToGlobal(QPoint(0, 0)), viewer->size());
        XTestDevice().moveTo({1279, 1023});
        QTest::qWait(300);
        const QString path = qEnvironmentVariable("TEVORA_SOURCE_DIR") + "/docs/" + name;
        QVERIFY(XTestDevice().screenshot().copy(onScreen).save(path));
    }

    const CapturedOutput output; // first, as workers write until the images are closed
    DialogDriver driver;
    MainWindow window;
    QPointer<QStackedSliceViewer> viewer;

private:
    static void accept(QDialog *dialog)
    {
        press(dialog->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok));
    }
    void expectChoice(const QString &title, int entries, const QString &chosen)
    {
        driver.expect<ListChoiceDialog>(title, [=, this](ListChoiceDialog *dialog) {
            QTest::qWait(100);
            driver.check("title", dialog->windowTitle(), title);
            auto *choices = dialog->findChild<QListWidget *>();
            driver.check("entries of " + title, QString::number(choices->count()), QString::number(entries));
            const auto found = choices->findItems(chosen, Qt::MatchExactly);
            driver.check("entry " + chosen, QString::number(found.size()), "1");
            if (!found.isEmpty()) {
                choices->scrollToItem(found.first());
                click(choices->viewport(), choices->visualItemRect(found.first()).center());
            }
            accept(dialog);
        });
    }
    // The choices from the top with their check mark; clicks the one with this number.
    void expectDistances(const QStringList &texts, int row)
    {
        driver.expect<SliceDistanceDialog>("distances", [=, this](SliceDistanceDialog *dialog) {
            QTest::qWait(100);
            QList<QRadioButton *> choices = dialog->findChildren<QRadioButton *>();
            std::sort(choices.begin(), choices.end(),
                      [](const QRadioButton *a, const QRadioButton *b) { return a->y() < b->y(); });
            QStringList shown;
            for (const QRadioButton *choice : choices)
                shown << choice->text() + (choice->isChecked() ? "*" : "");
            driver.check("choices", shown.join("|"), texts.join("|"));
            if (row < choices.size())
                click(choices[row], QPoint(8, choices[row]->height() / 2));
            accept(dialog);
        });
    }
};
