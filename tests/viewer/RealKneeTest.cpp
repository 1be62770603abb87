// The main job on a real knee: open the series through menus and dialogs, trace the bone side and the surface
// side of the femoral cartilage. With TEVORA_WRITE_PICTURES=1 the traced slice becomes docs/knee.png.
#include "contours/ConventionalSliceEdgePointExtractor.h"
#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "contours/SlicedContoursSegment.h"
#include "demo/xtest/XTestDevice.h"
#include "objects/MervImageObject.h"
#include "objects/manager/ImageManager.h"
#include "serialization/dialogs/FileDroppableQListView.h"
#include "serialization/dialogs/ListChoiceDialog.h"
#include "serialization/dialogs/SliceDistanceDialog.h"
#include "shell/MainWindow.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/DialogDriver.h"
#include "tests/support/PrivateSettings.h"
#include "tests/support/TestData.h"
#include "tests/support/XHand.h"
#include "view/EnhancedQCheckBox.h"
#include "view/EnhancedQTreeView.h"
#include "view/ImageComposition.h"
#include "view/QStackedSliceView.h"
#include "view/QStackedSliceViewer.h"

#include <QAction>
#include <QDialogButtonBox>
#include <QImage>
#include <QInputDialog>
#include <QLabel>
#include <QListWidget>
#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>
#include <QSplitter>
#include <QToolBar>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <limits>
#include <memory>
#include <thread>

namespace {

constexpr double pixelMm = 0.625; // of the knee, 256 x 256
constexpr double heightMm = 256 * pixelMm;
// Instance 113, the 15th of the 24 slices, through femur, tibia and patella. Loading reverses y and z.
constexpr int tracedSlice = 23 - 14;
constexpr double tracedZ = (tracedSlice + 0.5) * 4.0;
constexpr double searchMm = 2.5; // around the mouse, each way

// The two sides of the femoral cartilage in that slice, as columns and rows of the file, read by eye from the
// enlarged picture.
const QList<QPointF> boneSide{{76.5, 92},   {77, 100},    {78.3, 105}, {80.1, 110},  {83, 115.5},
                              {86.7, 120},  {90, 124},    {95, 128.8}, {100, 132.2}, {105, 134.2},
                              {110, 135.3}, {115, 136.3}, {120, 137.0}};
const QList<QPointF> surfaceSide{{73.5, 109}, {75.5, 113.5}, {78, 117},    {80.7, 120.3},
                                 {85, 125},   {90, 128.6},   {95, 132.3},  {100, 135.4},
                                 {105, 138},  {110, 139.3},  {115, 140.2}, {120, 140.8}};

// Rows of the file run downwards, y upwards.
QList<QPointF> inMm(const QList<QPointF> &pixels)
{
    QList<QPointF> line;
    for (const QPointF &pixel : pixels)
        line.append({pixel.x() * pixelMm, heightMm - pixel.y() * pixelMm});
    return line;
}

double distance(const QPointF &a, const QPointF &b)
{
    return std::hypot(a.x() - b.x(), a.y() - b.y());
}

double length(const QList<QPointF> &line)
{
    double sum = 0.0;
    for (qsizetype i = 1; i < line.size(); ++i)
        sum += distance(line[i - 1], line[i]);
    return sum;
}

// Points about stepMm apart along the line.
QList<QPointF> walked(const QList<QPointF> &line, double stepMm)
{
    QList<QPointF> points;
    for (qsizetype i = 1; i < line.size(); ++i) {
        const int steps = std::max(1, static_cast<int>(std::lround(distance(line[i - 1], line[i]) / stepMm)));
        for (int step = 0; step < steps; ++step)
            points.append(line[i - 1] + (line[i] - line[i - 1]) * step / steps);
    }
    points.append(line.last());
    return points;
}

double distanceToLine(const QPointF &point, const QList<QPointF> &line)
{
    double nearest = std::numeric_limits<double>::max();
    for (const QPointF &other : walked(line, 0.05))
        nearest = std::min(nearest, distance(point, other));
    return nearest;
}

void pause(int milliseconds)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

QAction *actionOf(const QWidget *widget, const QString &text)
{
    for (QAction *action : widget->actions())
        if (action->text().remove('&') == QString(text).remove('&'))
            return action;
    return nullptr;
}

} // namespace

class RealKneeTest : public QObject
{
    Q_OBJECT

public:
    static void initMain()
    {
        static const PrivateSettings settings;
        QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    }

private:
    static QString dataFolder(const QString &name)
    {
        const QString folder = QString::fromStdString(testDataFolder()) + "/" + name + "/dicom";
        return QFileInfo(folder).isDir() ? folder : QString();
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
        QMenuBar *bar = window->menuBar();
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
        auto *list = window->findChild<FileDroppableQListView *>();
        return (list->visualRect(manager().index(row, 0)) & list->viewport()->rect()).center();
    }
    void selectRow(int row)
    {
        auto *list = window->findChild<FileDroppableQListView *>();
        click(list->viewport(), rowCentre(row));
        QCOMPARE(list->currentIndex().row(), row);
    }
    // A click on a button of a dialog through the X server.
    static void press(QDialog *dialog, QDialogButtonBox::StandardButton button)
    {
        QWidget *found = dialog->findChild<QDialogButtonBox *>()->button(button);
        click(found, found->rect().center());
    }
    void expectChoice(const QString &title, int entries, const QString &chosen)
    {
        driver.expect<ListChoiceDialog>(title, [=, this](ListChoiceDialog *dialog) {
            QTest::qWait(100);
            driver.check("title", dialog->windowTitle(), title);
            auto *list = dialog->findChild<QListWidget *>();
            driver.check("entries of " + title, QString::number(list->count()), QString::number(entries));
            const auto found = list->findItems(chosen, Qt::MatchExactly);
            driver.check("entry " + chosen, QString::number(found.size()), "1");
            if (!found.isEmpty()) {
                list->scrollToItem(found.first());
                click(list->viewport(), list->visualItemRect(found.first()).center());
            }
            press(dialog, QDialogButtonBox::Ok);
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
            press(dialog, QDialogButtonBox::Ok);
        });
    }
    void openKnee(const QString &folder)
    {
        driver.expectFileDialog("Select a directory containing the series.", folder);
        expectChoice("Select Series", 1, "; ");
        expectChoice("Select Echo Time", 8, "6.312");
        expectDistances({"Image Position (Patient) based algorithm; result: 0.577143 mm*",
                         "GDCM internal algorithm; result: 4 mm",
                         "Slice Location based algorithm; result: 3.95689 mm"},
                        1);
        chooseEntry("File", "Open Dicom Series with Input Filter ...");
        QTRY_COMPARE_WITH_TIMEOUT(manager().imageCount(), 1, 20000);
        QVERIFY2(driver.verify(), driver.report());
    }
    void addFragment(const QString &name)
    {
        driver.expect<QInputDialog>("name of a fragment", [name](QInputDialog *dialog) {
            auto *edit = dialog->findChild<QLineEdit *>();
            QTest::keyClicks(edit, name);
            QTest::keyClick(edit, Qt::Key_Return);
        });
        chooseEntry("Image", "Add fragment ...");
        QVERIFY2(driver.verify(), driver.report());
    }
    void dragIntoViewer(int row)
    {
        auto *list = window->findChild<FileDroppableQListView *>();
        const QPoint from = list->viewport()->mapToGlobal(rowCentre(row));
        const QPoint to = view()->mapToGlobal(view()->rect().center());
        const int before = composition()->podCount();
        std::atomic<bool> released = false;
        std::thread hand([&] {
            XTestDevice device;
            device.moveTo(from);
            pause(80);
            device.press(XTestDevice::Left);
            pause(80);
            for (int i = 1; i <= 8; ++i) {
                device.moveTo(from + (to - from) * i / 8);
                pause(50);
            }
            device.moveTo(to + QPoint(1, 0));
            pause(150);
            device.release(XTestDevice::Left);
            released = true;
        });
        const bool dropped =
            QTest::qWaitFor([&] { return released && composition()->podCount() > before; }, 10000);
        hand.join();
        QVERIFY(dropped);
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
                QWidget *button = bar->widgetForAction(action);
                click(button, button->rect().center());
                QVERIFY(action->isChecked());
            }
    }
    QPoint pixelOf(const QPointF &mm) const
    {
        const Vector4 seen = transformed(view()->state().viewMatrix, {mm.x(), mm.y(), tracedZ, 1.0});
        return {static_cast<int>(std::lround(view()->width() / 2 + seen[0])),
                static_cast<int>(std::lround(view()->height() / 2 - seen[1]))};
    }
    // With the left button along the line.
    void trace(const QList<QPointF> &line)
    {
        XHand hand(view());
        const QList<QPointF> path = walked(line, 0.4);
        hand.moveTo(pixelOf(path.first()));
        hand.press(Qt::LeftButton);
        for (const QPointF &point : path)
            hand.moveTo(pixelOf(point));
        hand.release(Qt::LeftButton);
    }
    void verifyTrace(SlicedContoursFragment *fragment, const QList<QPointF> &line)
    {
        QCOMPARE(fragment->segmentCount(), 1);
        const auto points = fragment->segment(0)->snapshot().points;
        QVERIFY(points.size() > 30);
        double sum = 0.0;
        for (const QPointF &point : points) {
            const double away = distanceToLine(point, line);
            QVERIFY2(away < searchMm * std::sqrt(2.0), qPrintable(QString::number(away)));
            sum += away;
            const std::unique_ptr<EdgePointList> near(edges->edgePointsAround(
                static_cast<float>(point.x()), static_cast<float>(point.y()), float(tracedZ), 0.001f));
            QVERIFY2(!near->isEmpty(),
                     qPrintable(QString("no edge point at %1, %2").arg(point.x()).arg(point.y())));
        }
        // The line itself is good to about a pixel.
        QVERIFY2(sum / double(points.size()) < pixelMm,
                 qPrintable(QString::number(sum / double(points.size()))));
        const QList<QPointF> traced(points.begin(), points.end());
        QVERIFY(distance(traced.first(), line.first()) < 2.0);
        QVERIFY(distance(traced.last(), line.last()) < 2.0);
        QVERIFY2(length(traced) > 0.9 * length(line) && length(traced) < 1.5 * length(line),
                 qPrintable(QString::number(length(traced) / length(line))));
    }
    void makeContoursAndEdgePoints();
    void showInViewer();
    void zoomToTheJoint();
    void brighten();
    void colorFragment(int fragment, const QString &color);
    void writePicture() const;

    ImageManager &manager() const { return *window->imageManager(); }
    QStackedSliceView *view() const { return viewer->stackedSliceView(); }
    ImageComposition *composition() const { return viewer->imageComposition(); }
    EnhancedQTreeView *tree() const { return viewer->findChild<EnhancedQTreeView *>(); }

    DialogDriver driver;
    std::unique_ptr<CapturedOutput> output;
    std::unique_ptr<MainWindow> window;
    QPointer<QStackedSliceViewer> viewer;
    SlicedContoursObject *contours = nullptr;
    ConventionalSliceEdgePointExtractor *edges = nullptr;

private slots:
    void init()
    {
        output = std::make_unique<CapturedOutput>();
        window = std::make_unique<MainWindow>();
        window->setGeometry(10, 30, 700, 300);
        window->show();
        window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(window.get()));
        QTest::qWait(200);
    }
    void cleanup()
    {
        delete viewer;
        while (manager().imageCount() > 0)
            manager().closeImage(manager().index(0, 0));
        window.reset();
        output.reset();
    }

    void seriesWithInputFilter_asksForEchoTimeAndDistance()
    {
        const QString folder = dataFolder("knee-ge-mese");
        if (folder.isEmpty())
            QSKIP("no real knee");
        openKnee(folder);
        auto *volume = qobject_cast<MervImageObject *>(manager().image(0));
        QVERIFY(volume != nullptr);
        QCOMPARE(volume->label(), " (tE = 6.312 ms)");
        QCOMPARE(volume->voxels()->getWidth(), 256);
        QCOMPARE(volume->voxels()->getHeight(), 256);
        QCOMPARE(volume->voxels()->getDepth(), 24);
        QCOMPARE(volume->voxels()->getSpacing(0), 0.625F);
        QCOMPARE(volume->voxels()->getSpacing(1), 0.625F);
        QCOMPARE(volume->voxels()->getSpacing(2), 4.0F);
    }

    void wholeSeries_hasASliceForEveryFile()
    {
        const QString folder = dataFolder("knee-ge-mese");
        if (folder.isEmpty())
            QSKIP("no real knee");
        driver.expectFileDialog("Select a directory containing the series.", folder);
        chooseEntry("File", "Open Dicom Series ...");
        QTRY_COMPARE_WITH_TIMEOUT(manager().imageCount(), 1, 20000);
        QVERIFY2(driver.verify(), driver.report());
        auto *volume = qobject_cast<MervImageObject *>(manager().image(0));
        QVERIFY(volume != nullptr);
        QCOMPARE(volume->voxels()->getDepth(), 192);
    }

    void seriesWithoutSliceLocation_offersNoSuchDistance()
    {
        const QString folder = dataFolder("t1-no-sliceloc");
        if (folder.isEmpty())
            QSKIP("no real T1 series");
        driver.expectFileDialog("Select a directory containing the series.", folder);
        expectChoice("Select Series", 1, "Jane_Doe; anat-T1w");
        expectChoice("Select Echo Time", 1, "");
        expectDistances({"Image Position (Patient) based algorithm; result: 0.660688 mm*",
                         "GDCM internal algorithm; result: 0.666667 mm"},
                        0);
        chooseEntry("File", "Open Dicom Series with Input Filter ...");
        QTRY_COMPARE_WITH_TIMEOUT(manager().imageCount(), 1, 20000);
        QVERIFY2(driver.verify(), driver.report());
        auto *volume = qobject_cast<MervImageObject *>(manager().image(0));
        QCOMPARE(volume->voxels()->getDepth(), 60);
        QVERIFY(std::abs(double(volume->voxels()->getSpacing(2)) - 0.660688) < 1e-6);
    }

    void femoralCartilage_isTracedAlongItsEdges()
    {
        const QString folder = dataFolder("knee-ge-mese");
        if (folder.isEmpty())
            QSKIP("no real knee");
        openKnee(folder);
        using Step = void (RealKneeTest::*)();
        for (const Step step : {&RealKneeTest::makeContoursAndEdgePoints, &RealKneeTest::showInViewer,
                                &RealKneeTest::zoomToTheJoint, &RealKneeTest::brighten}) {
            if (QTest::currentTestFailed())
                return;
            (this->*step)();
        }
        chooseMode("Trace");
        if (QTest::currentTestFailed())
            return;
        const QModelIndex lines = composition()->index(2, 0);
        const QList<QPointF> sides[] = {inMm(boneSide), inMm(surfaceSide)};
        for (int side = 0; side < 2; ++side) {
            tick(composition()->index(side, ImageComposition::EditColumn, lines));
            trace(sides[side]);
        }
        colorFragment(0, "#ffc83c");
        colorFragment(1, "#3cc8ff");
        if (QTest::currentTestFailed())
            return;
        writePicture();
        for (int side = 0; side < 2; ++side)
            verifyTrace(contours->fragment(side), sides[side]);
    }
};

void RealKneeTest::makeContoursAndEdgePoints()
{
    selectRow(0);
    chooseEntry("Image", "New", "New sliced contours");
    QTRY_COMPARE(manager().imageCount(), 2);
    contours = qobject_cast<SlicedContoursObject *>(manager().image(1));
    QVERIFY(contours != nullptr);
    selectRow(1);
    addFragment("bone side");
    addFragment("surface side");
    QCOMPARE(contours->fragmentCount(), 2);
    selectRow(0);
    chooseEntry("Image", "Extract Edge Points ...");
    QTRY_COMPARE(manager().imageCount(), 3);
    edges = qobject_cast<ConventionalSliceEdgePointExtractor *>(manager().image(2));
    QVERIFY(edges != nullptr);
}

// The viewer below the list of the main window, with the volume, the edge points and the contours; on the
// slice to trace.
void RealKneeTest::showInViewer()
{
    selectRow(0);
    chooseEntry("View", "Show in new view ...");
    viewer = window->findChild<QStackedSliceViewer *>();
    QVERIFY(viewer);
    QVERIFY(QTest::qWaitForWindowExposed(viewer));
    viewer->setGeometry(270, 210, 1000, 790);
    QTest::qWait(300);
    dragIntoViewer(2);
    dragIntoViewer(1);
    tick(composition()->index(1, ImageComposition::AnalyzeColumn));
    viewer->findChild<QSplitter *>()->setSizes({570, 150});
    QTest::qWait(200);
    XHand hand(view());
    hand.moveTo(view()->rect().center());
    for (int slice = 0; slice < tracedSlice; ++slice)
        hand.wheel(true);
    QCOMPARE(double(view()->state().workingZ), tracedZ);
    hand.doubleClick(Qt::LeftButton); // the picture fits the larger view
    QTRY_VERIFY(!view()->state().animatingView);
}

void RealKneeTest::zoomToTheJoint()
{
    chooseMode("Zoom");
    XHand hand(view());
    const auto corner = [&](double column, double row) {
        return pixelOf(inMm({QPointF(column, row)}).first());
    };
    hand.drag(Qt::LeftButton, corner(5, 42), corner(225, 172));
    QTRY_VERIFY(!view()->state().animatingView);
}

// A left drag of (x, 2 x) pixels, downwards, leaves the darkest value and lowers the brightest.
void RealKneeTest::brighten()
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

// Types the colour into its cell.
void RealKneeTest::colorFragment(int fragment, const QString &color)
{
    const QModelIndex cell =
        composition()->index(fragment, ImageComposition::ColorColumn, composition()->index(2, 0));
    click(tree()->viewport(), tree()->visualRect(cell).center());
    QTRY_VERIFY(qobject_cast<QLineEdit *>(QApplication::focusWidget()));
    auto *line = qobject_cast<QLineEdit *>(QApplication::focusWidget());
    line->selectAll();
    QTest::keyClicks(line, color);
    QTest::keyClick(line, Qt::Key_Return);
    QTRY_COMPARE(cell.data().toString(), color);
}

void RealKneeTest::writePicture() const
{
    if (qEnvironmentVariable("TEVORA_WRITE_PICTURES") != "1")
        return;
    const QRect onScreen(viewer->mapToGlobal(QPoint(0, 0)), viewer->size());
    XTestDevice().moveTo({1279, 1023});
    QTest::qWait(300);
    const QString path = qEnvironmentVariable("TEVORA_SOURCE_DIR") + "/docs/knee.png";
    QVERIFY(XTestDevice().screenshot().copy(onScreen).save(path));
}

QTEST_MAIN(RealKneeTest)
#include "RealKneeTest.moc"
