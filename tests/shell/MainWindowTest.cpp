#include "shell/MainWindow.h"

#include "Common/Image.h"
#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "contours/metrics/viewer/SlicedMetricsViewer.h"
#include "objects/ImagePropertiesDialog.h"
#include "objects/MervImageObject.h"
#include "objects/SliceSelector.h"
#include "objects/manager/ImageManager.h"
#include "objects/manager/ImageRelationsGraph.h"
#include "serialization/dialogs/FileDroppableQListView.h"
#include "shell/AcknowledgementDialog.h"
#include "shell/HelpViewer.h"
#include "tests/support/DialogDriver.h"
#include "view/EnhancedQTableView.h"
#include "view/QStackedSliceViewer.h"

#include <QAction>
#include <QClipboard>
#include <QDir>
#include <QHelpEvent>
#include <QInputDialog>
#include <QItemSelectionModel>
#include <QMenuBar>
#include <QProgressDialog>
#include <QPushButton>
#include <QSettings>
#include <QSplitter>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTextDocument>
#include <QToolBar>
#include <QToolTip>

namespace {

MervImageObject *volume(const QString &label, int dataType = MERV::TypeShort)
{
    MERV::Image *image = MERV::createImage(dataType);
    image->setVerbose(0);
    image->setDimensions(8, 6, 2, 1, 1);
    image->setMetaData("Patient's Name", "A");
    auto *object = new MervImageObject(image, QString());
    object->setLabel(label);
    return object;
}

template <class Window>
Window *topLevel()
{
    for (QWidget *widget : QApplication::topLevelWidgets())
        if (auto *found = qobject_cast<Window *>(widget))
            return found;
    return nullptr;
}

// Counts the events of a type from the moment on that `started` is true.
class EventCounter : public QObject
{
public:
    EventCounter(QEvent::Type counted, const bool *startFlag)
        : type(counted)
        , started(startFlag)
    {}
    bool eventFilter(QObject *, QEvent *event) override
    {
        count += *started && event->type() == type ? 1 : 0;
        return false;
    }
    int count = 0;

private:
    QEvent::Type type;
    const bool *started;
};

} // namespace

class MainWindowTest : public QObject
{
    Q_OBJECT

    QTemporaryDir folder;

    static void selectRow(MainWindow &window, int row)
    {
        auto *list = window.findChild<FileDroppableQListView *>();
        list->selectionModel()->setCurrentIndex(window.imageManager()->index(row, 0),
                                                QItemSelectionModel::ClearAndSelect);
    }

private slots:
    void initTestCase()
    {
        QCoreApplication::setOrganizationName("TevoraTest");
        QCoreApplication::setApplicationName("Tevora");
        QVERIFY(folder.isValid());
    }
    void init()
    {
        QSettings().clear();
        QDir::setCurrent(folder.path());
    }

    void frame_hasTheTabsTheTableAndTheGraph()
    {
        MainWindow window;
        QCOMPARE(window.windowTitle(), QString("Tevora"));
        QVERIFY(!window.windowIcon().isNull());
        auto *splitter = qobject_cast<QSplitter *>(window.centralWidget());
        QVERIFY(splitter);
        QCOMPARE(splitter->orientation(), Qt::Horizontal);
        auto *outer = qobject_cast<QTabWidget *>(splitter->widget(0));
        QVERIFY(outer);
        QVERIFY(qobject_cast<ImageRelationsGraph *>(splitter->widget(1)));
        QCOMPARE(outer->tabPosition(), QTabWidget::West);
        QCOMPARE(outer->count(), 1);
        QCOMPARE(outer->tabText(0), QString("Image List"));
        auto *inner = qobject_cast<QTabWidget *>(outer->widget(0));
        QVERIFY(inner);
        QCOMPARE(inner->tabPosition(), QTabWidget::North);
        QCOMPARE(inner->tabText(0), QString("Icon View"));
        QCOMPARE(inner->tabText(1), QString("Properties Table"));
        QCOMPARE(inner->count(), 2);

        auto *list = qobject_cast<FileDroppableQListView *>(inner->widget(0));
        QVERIFY(list);
        QCOMPARE(list->model(), window.imageManager());
        QCOMPARE(list->viewMode(), QListView::ListMode);
        QCOMPARE(list->iconSize(), QSize(32, 32));
        QVERIFY(list->isWrapping());
        QCOMPARE(list->resizeMode(), QListView::Adjust);
        QCOMPARE(list->textElideMode(), Qt::ElideMiddle);
        QCOMPARE(list->gridSize(), QSize(400, 40));
        QCOMPARE(list->movement(), QListView::Free);
        QCOMPARE(list->selectionMode(), QAbstractItemView::ExtendedSelection);
        QCOMPARE(list->editTriggers(), QAbstractItemView::EditTriggers(QAbstractItemView::SelectedClicked |
                                                                       QAbstractItemView::EditKeyPressed));
        QCOMPARE(list->dragDropMode(), QAbstractItemView::DragDrop);
        QVERIFY(list->acceptDrops());
        QVERIFY(list->showDropIndicator());

        auto *toolBar = inner->widget(1)->findChild<QToolBar *>();
        QCOMPARE(toolBar->toolButtonStyle(), Qt::ToolButtonTextBesideIcon);
        QCOMPARE(toolBar->actions().size(), 1);
        const QAction *copy = toolBar->actions().constFirst();
        QCOMPARE(copy->text(), QString("Copy"));
        QCOMPARE(copy->toolTip(), QString("Copies the selection from the properties table to the clipboard"));
        QCOMPARE(copy->shortcut(), QKeySequence(QKeySequence::Copy));
    }

    void copyTakesTheTablesSelection()
    {
        MainWindow window;
        window.imageManager()->addImage(volume("knee"));
        auto *table = window.findChild<EnhancedQTableView *>();
        table->selectAll();
        window.findChild<QToolBar *>()->actions().constFirst()->trigger();
        QCOMPARE(QGuiApplication::clipboard()->text(), QString("\tFile Name\tPatient's Name\r\n\tknee\tA"));
    }

    void settings_areWrittenAtTheEndAndReadAtTheStart()
    {
        QByteArray layout;
        QPoint position;
        {
            MainWindow window;
            QCOMPARE(window.pos(), QPoint(0, 0));
            window.show();
            QVERIFY(QTest::qWaitForWindowExposed(&window));
            window.move(90, 70);
            window.resize(700, 500);
            QTRY_COMPARE(window.size(), QSize(700, 500));
            qobject_cast<QSplitter *>(window.centralWidget())->setSizes({500, 200});
            layout = qobject_cast<QSplitter *>(window.centralWidget())->saveState();
            position = window.pos();
        }
        const QSettings settings;
        QCOMPARE(settings.value("MainWindow/Position").toPoint(), position);
        QCOMPARE(settings.value("MainWindow/Size").toSize(), QSize(700, 500));
        QCOMPARE(settings.value("MainWindow/SplitterLayout").toByteArray(), layout);
        const MainWindow again;
        QCOMPARE(again.pos(), position);
        QCOMPARE(again.size(), QSize(700, 500));
    }

    void firstStart_isAtTheOriginWithTheSmallestSize()
    {
        MainWindow window;
        QCOMPARE(window.pos(), QPoint(0, 0));
        QCOMPARE(window.size(), window.minimumSize());
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QCOMPARE(window.size(), window.minimumSizeHint().expandedTo(window.minimumSize()));
    }

    void positionOutsideAllScreens_isRestored()
    {
        QSettings().setValue("MainWindow/Position", QPoint(30000, -20000));
        const MainWindow window;
        QCOMPARE(window.pos(), QPoint(30000, -20000));
    }

    void settingsOfAWrongType_countAsMissing()
    {
        for (const char *key : {"MainWindow/Position", "MainWindow/Size", "MainWindow/SplitterLayout"})
            QSettings().setValue(key, "nonsense");
        const MainWindow window;
        QCOMPARE(window.pos(), QPoint(0, 0));
        QCOMPARE(window.size(), window.minimumSize());
    }

    // The images of a series go with the manager, which goes before the views.
    void windowWithOpenViewsOfASeries_goesWhole()
    {
        const QString target = folder.path() + "/series";
        QVERIFY(QDir().mkpath(target));
        QPointer<SlicedMetricsViewer> metrics;
        QPointer<QStackedSliceViewer> viewer;
        {
            MainWindow window;
            ImageManager &manager = *window.imageManager();
            const std::unique_ptr<MervImageObject> image(volume("knee"));
            QVERIFY(manager.saveDicomSeries(image.get(), target));
            const QList<ImageObject *> series = manager.loadDicomSeries(target);
            QCOMPARE(series.size(), 1);
            selectRow(window, 0);
            window.newSliceSelector();
            window.extractEdgePoints();
            window.show();
            QVERIFY(QTest::qWaitForWindowExposed(&window));
            window.newView();
            window.newMetricsView();
            viewer = topLevel<QStackedSliceViewer>();
            metrics = topLevel<SlicedMetricsViewer>();
            QVERIFY(viewer && metrics);
            viewer->addObject(manager.image(1));
            QVERIFY(QTest::qWaitForWindowExposed(viewer));
            QTest::qWait(100); // paints
        }
        QVERIFY(viewer.isNull());
        QVERIFY(metrics && metrics->isVisible()); // it has no parent
        QTest::qWait(50);
        delete metrics;
    }

    void closeEvent_endsTheEventLoopAndIsIgnored()
    {
        MainWindow window;
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        bool closed = true;
        QTimer::singleShot(0, &window, [&] { closed = window.close(); });
        QCOMPARE(QApplication::exec(), 0);
        QVERIFY(!closed);
        QVERIFY(window.isVisible());
    }

    void openViewWithoutImages_saysSo_alsoForMetrics()
    {
        MainWindow window;
        for (auto slot : {qOverload<>(&MainWindow::newView), qOverload<>(&MainWindow::newMetricsView)}) {
            DialogDriver driver;
            driver.expectBox(QMessageBox::Information, "Tevora", "Cannot open new view. No image loaded.",
                             QMessageBox::Ok);
            (window.*slot)();
            QVERIFY2(driver.verify(), driver.report());
        }
        QVERIFY(!topLevel<QStackedSliceViewer>());
    }

    void openViewWithoutACurrentRow_opensNothing()
    {
        MainWindow window;
        window.imageManager()->addImage(volume("knee"));
        DialogDriver driver;
        window.newView();
        window.newMetricsView();
        QVERIFY2(driver.verify(), driver.report());
        QVERIFY(!topLevel<QStackedSliceViewer>());
        QVERIFY(!topLevel<SlicedMetricsViewer>());
    }

    void activatingARow_opensAView_andTheMenuAMetricsWindow()
    {
        MainWindow window;
        window.imageManager()->addImage(volume("knee"));
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        auto *list = window.findChild<FileDroppableQListView *>();
        selectRow(window, 0);
        list->setFocus();
        QTest::keyClick(list, Qt::Key_Return);
        QPointer<QStackedSliceViewer> viewer = topLevel<QStackedSliceViewer>();
        QVERIFY(viewer);
        QTRY_VERIFY(viewer->isVisible());
        delete viewer;
        window.newMetricsView();
        QPointer<SlicedMetricsViewer> metrics = topLevel<SlicedMetricsViewer>();
        QVERIFY(metrics);
        QCOMPARE(metrics->windowTitle(), QString("Metrics of knee"));
        delete metrics;
    }

    void newObjects_haveTheirLabelsAndClasses()
    {
        MainWindow window;
        ImageManager &manager = *window.imageManager();
        window.newSlicedContours();
        QCOMPARE(manager.imageCount(), 1);
        QCOMPARE(manager.image(0)->label(), QString("new sliced contours"));
        QVERIFY(qobject_cast<SlicedContoursObject *>(manager.image(0)));

        window.newSliceSelector(); // nothing is selected
        selectRow(window, 0);
        window.newSliceSelector(); // contours are no volume
        QCOMPARE(manager.imageCount(), 1);
        manager.addImage(volume("a%1"));
        selectRow(window, 1);
        window.newSliceSelector();
        QCOMPARE(manager.imageCount(), 3);
        QCOMPARE(manager.image(2)->label(), QString("selected slice from a%1"));
        const auto *selector = qobject_cast<SliceSelector *>(manager.image(2));
        QVERIFY(selector);
        QCOMPARE(selector->direction(), SliceDirection::Z);
        QCOMPARE(selector->position(), 0.0);
        window.extractEdgePoints();
        QCOMPARE(manager.imageCount(), 4);
        QCOMPARE(manager.image(3)->sources(), QList<ImageObject *>{manager.image(1)});
    }

    void addFragment_takesTheAnswerAlsoWhenCancelled()
    {
        MainWindow window;
        auto *contours = new SlicedContoursObject("contours", nullptr);
        window.imageManager()->addImage(contours);
        selectRow(window, 0);
        const auto answer = [&](bool accept) {
            DialogDriver driver;
            driver.expect<QInputDialog>("name", [&](QInputDialog *dialog) {
                driver.check("title", dialog->windowTitle(), "Tevora");
                driver.check("label", dialog->labelText(), "Enter a name for the new fragment:");
                driver.check("text", dialog->textValue(), "");
                if (accept) {
                    QTest::keyClicks(dialog->findChild<QLineEdit *>(), "bone side");
                    QTest::keyClick(dialog, Qt::Key_Return);
                } else {
                    QTest::keyClick(dialog, Qt::Key_Escape);
                }
            });
            window.addFragment();
            QVERIFY2(driver.verify(), driver.report());
        };
        answer(true);
        answer(false);
        QCOMPARE(contours->fragmentCount(), 2);
        QCOMPARE(contours->fragment(0)->label(), QString("bone side"));
        QCOMPARE(contours->fragment(1)->label(), QString());
    }

    void labelsThatLookLikeMarkup_areShownAsTheyAre()
    {
        MainWindow window;
        window.imageManager()->addImage(volume("<b>knee</b> of A"));
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        auto *tabs = qobject_cast<QTabWidget *>(
            qobject_cast<QTabWidget *>(qobject_cast<QSplitter *>(window.centralWidget())->widget(0))
                ->widget(0));
        const QList<QAbstractItemView *> views = {window.findChild<FileDroppableQListView *>(),
                                                  window.findChild<EnhancedQTableView *>()};
        for (int page = 0; page < 2; ++page) {
            tabs->setCurrentIndex(page);
            QAbstractItemView *view = views[page];
            const QPoint position = view->visualRect(window.imageManager()->index(0, 0)).center();
            QHelpEvent event(QEvent::ToolTip, position, view->viewport()->mapToGlobal(position));
            QCoreApplication::sendEvent(view->viewport(), &event);
            QTextDocument shown;
            shown.setHtml(QToolTip::text());
            QCOMPARE(shown.toPlainText(), QString("<b>knee</b> of A"));
            QToolTip::hideText();
            QTRY_VERIFY(QToolTip::text().isEmpty());
        }
    }

    void properties_renameTheImage_andTheGraphShowsTheNewName()
    {
        MainWindow window;
        window.imageManager()->addImage(volume("knee"));
        DialogDriver driver;
        window.showImageProperties(); // no current row: no dialog
        selectRow(window, 0);
        window.resize(900, 500); // wide enough for the graph
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        auto *graph = window.findChild<ImageRelationsGraph *>();
        QVERIFY(!graph->visibleRegion().isEmpty());
        bool renamed = false;
        EventCounter paints(QEvent::Paint, &renamed);
        graph->installEventFilter(&paints);
        driver.expect<ImagePropertiesDialog>("properties", [&](ImagePropertiesDialog *dialog) {
            driver.check("title", dialog->windowTitle(), "Properties of knee");
            driver.type(dialog->findChild<QLineEdit *>(), "hip");
            connect(dialog, &QObject::destroyed, &window, [&] { renamed = true; });
            QTest::keyClick(dialog, Qt::Key_Return);
        });
        window.showImageProperties();
        QVERIFY2(driver.verify(), driver.report());
        QCOMPARE(window.imageManager()->image(0)->label(), QString("hip"));
        QTRY_VERIFY(paints.count > 0);
    }

    void closeImage_closesTheCurrentRowOnly()
    {
        MainWindow window;
        ImageManager &manager = *window.imageManager();
        for (const char *label : {"a", "b", "c"})
            manager.addImage(volume(label));
        selectRow(window, 1);
        window.closeImage();
        QCOMPARE(manager.imageCount(), 2);
        QCOMPARE(manager.image(0)->label(), QString("a"));
        QCOMPARE(manager.image(1)->label(), QString("c"));
        window.closeImage(); // no current row any more
        QCOMPARE(manager.imageCount(), 2);
    }

    void saveWithoutASelection_findsNoSerializer()
    {
        MainWindow window;
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        DialogDriver driver;
        driver.expectBox(
            QMessageBox::Critical, "Tevora",
            "The image cannot be saved for there is no serializer installed to handle this type of "
            "image.",
            QMessageBox::Ok);
        QTest::keyClick(&window, Qt::Key_S, Qt::ControlModifier);
        QTRY_VERIFY2(driver.verify(), driver.report());
    }

    void obsoleteOpen_hasItsCaptionStartAndFilters()
    {
        MainWindow window;
        const QString deep = folder.path() + "/1/2/3/4/5";
        QVERIFY(QDir().mkpath(deep));
        QDir::setCurrent(deep);
        DialogDriver driver;
        driver.expectFileDialog("Open a single file", QString(), [&](QFileDialog *dialog) {
            driver.check("start", dialog->directory().canonicalPath(), QDir(folder.path()).canonicalPath());
            driver.check("filters", DialogDriver::shownFilters(dialog).join("|"),
                         "all supported Files (*.dcm; *.mhd; *.bmp; *.vis; *.hdr)|DICOM Images (*.dcm)|"
                         "Meta Images (*.mhd)|Windows Bitmaps (*.bmp)|Tallowbrook VIS Files (*.vis)|"
                         "Analyze Image (*.hdr)");
        });
        window.openFileObsolete(); // the empty path fails without a report
        QVERIFY2(driver.verify(), driver.report());
        QCOMPARE(window.imageManager()->imageCount(), 0);
    }

    void openDicomSeries_withNoSeries_warns_andCancelled_saysNothing()
    {
        MainWindow window;
        QVERIFY(QDir().mkpath(folder.path() + "/empty"));
        DialogDriver driver;
        driver.expectFileDialog("Select a directory containing the series.", folder.path() + "/empty");
        driver.expectBox(QMessageBox::Warning, "Tevora",
                         "No DICOM series could be found at this location in the file system.",
                         QMessageBox::Ok);
        window.openDicomSeries();
        QVERIFY2(driver.verify(), driver.report());
        driver.expectFileDialog("Select a directory containing the series.", QString());
        window.openDicomSeries();
        QVERIFY2(driver.verify(), driver.report());
        QVERIFY(window.findChildren<QProgressDialog *>().isEmpty());
    }

    void openDicomSeries2_asksForADirectoryOnly()
    {
        MainWindow window;
        DialogDriver driver;
        driver.expectFileDialog(
            "Select a directory containing the series.", QString(), [&](QFileDialog *dialog) {
                driver.check("start", dialog->directory().canonicalPath(),
                             QDir(folder.path()).canonicalPath());
                driver.check("mode", QString::number(dialog->fileMode()),
                             QString::number(QFileDialog::Directory));
                driver.check("directories only",
                             QString::number(dialog->testOption(QFileDialog::ShowDirsOnly)), "1");
            });
        window.openDicomSeries2();
        QVERIFY2(driver.verify(), driver.report());
        QCOMPARE(window.imageManager()->imageCount(), 0);
    }

    void openFile_asksForImages()
    {
        MainWindow window;
        DialogDriver driver;
        driver.expectFileDialog("Load images", QString());
        window.openFile();
        QVERIFY2(driver.verify(), driver.report());
    }

    void openDicomSeries_tellsItsProgress()
    {
        MainWindow window;
        const QString target = folder.path() + "/progress";
        QVERIFY(QDir().mkpath(target));
        const std::unique_ptr<MervImageObject> image(volume("knee"));
        QVERIFY(window.imageManager()->saveDicomSeries(image.get(), target));
        QStringList seen;
        const auto note = [&] {
            const auto *progress = window.findChild<QProgressDialog *>();
            seen << (progress == nullptr ? QString("none")
                                         : QString("%1|%2|%3 in %4 to %5|%6")
                                               .arg(progress->windowTitle(), progress->labelText())
                                               .arg(progress->value())
                                               .arg(progress->minimum())
                                               .arg(progress->maximum())
                                               .arg(progress->findChildren<QPushButton *>().size()));
        };
        connect(window.imageManager(), &ImageManager::layoutChanged, &window, note);
        DialogDriver driver;
        driver.expectFileDialog("Select a directory containing the series.", folder.path() + "/empty");
        driver.expectBox(QMessageBox::Warning, "Tevora",
                         "No DICOM series could be found at this location in the file system.", "OK",
                         [&](QMessageBox *) { note(); });
        QVERIFY(QDir().mkpath(folder.path() + "/empty"));
        window.openDicomSeries();
        driver.expectFileDialog("Select a directory containing the series.", target);
        window.openDicomSeries();
        QVERIFY2(driver.verify(), driver.report());
        // A blank stands in front of the first dots, a no-break space in front of the second ones; nothing
        // can be cancelled.
        QCOMPARE(
            seen,
            (QStringList{
                QString::fromUtf8("Opening DICOM series \u2026|Checking directory \u2026|1 in 0 to 3|0"),
                QString::fromUtf8("Opening DICOM series \u2026|Loading data\u00A0\u2026|2 in 0 to 3|0")}));
        QVERIFY(window.findChildren<QProgressDialog *>().isEmpty());
    }

    void commandsOnUnfitSelections_endSilently()
    {
        MainWindow window;
        ImageManager &manager = *window.imageManager();
        manager.addImage(volume("a"));
        manager.addImage(volume("b"));
        DialogDriver driver; // any dialog is a fault
        selectRow(window, 0);
        window.addFragment();
        window.triangulateSlicedContours();
        window.findChild<FileDroppableQListView *>()->selectAll();
        window.saveDicomSeries();
        window.findChild<FileDroppableQListView *>()->selectionModel()->clear();
        window.saveDicomSeries();
        window.addFragment();
        window.newSliceSelector();
        window.extractEdgePoints();
        window.triangulateSlicedContours();
        window.showImageProperties();
        window.closeImage();
        QVERIFY2(driver.verify(), driver.report());
        QCOMPARE(manager.imageCount(), 2);
    }

    void dicomExport_roundTrip_andMessageOnFailure()
    {
        MainWindow window;
        ImageManager &manager = *window.imageManager();
        manager.addImage(volume("knee"));
        selectRow(window, 0);
        const QString target = folder.path() + "/export";
        QVERIFY(QDir().mkpath(target));
        DialogDriver driver;
        driver.expectFileDialog("Select a directory to save the series.", target);
        window.saveDicomSeries();
        QVERIFY2(driver.verify(), driver.report());
        QVERIFY(QFile::exists(target + "/slice0000.dcm"));
        QVERIFY(QFile::exists(target + "/slice0001.dcm"));
        QCOMPARE(QDir::current().canonicalPath(), QDir(target).canonicalPath());

        driver.expectFileDialog("Select a directory containing the series.", target);
        window.openDicomSeries();
        QVERIFY2(driver.verify(), driver.report());
        QCOMPARE(manager.imageCount(), 2);
        auto *loaded = dynamic_cast<MervImageObject *>(manager.image(1));
        QVERIFY(loaded);
        QCOMPARE(loaded->voxels()->getWidth(), 8);
        QCOMPARE(loaded->voxels()->getHeight(), 6);
        QCOMPARE(loaded->voxels()->getDepth(), 2);

        manager.addImage(volume("float", MERV::TypeFloat));
        selectRow(window, 2);
        driver.expectFileDialog("Select a directory to save the series.", target);
        driver.expectBox(QMessageBox::Warning, "Save as Dicom series",
                         "The image could not be saved to:\n\n" + target, QMessageBox::Ok);
        window.saveDicomSeries();
        QVERIFY2(driver.verify(), driver.report());
    }

    void severalSeries_areAskedFor()
    {
        MainWindow window;
        ImageManager &manager = *window.imageManager();
        const QString target = folder.path() + "/two";
        QVERIFY(QDir().mkpath(target));
        // The export knows one series only: the second one gets another UID of the same length.
        const std::unique_ptr<MervImageObject> image(volume("knee"));
        for (const char uid : {'4', '5'}) {
            QVERIFY(manager.saveDicomSeries(image.get(), target));
            for (const int slice : {0, 1}) {
                QFile file(QString("%1/slice000%2.dcm").arg(target).arg(slice));
                QVERIFY(file.open(QIODevice::ReadOnly));
                QByteArray bytes = file.readAll();
                file.close();
                QVERIFY(bytes.contains("1.2.3.4."));
                bytes.replace("1.2.3.4.", QByteArray("1.2.3.") + uid + ".");
                QFile copy(QString("%1/%2-%3.dcm").arg(target).arg(uid).arg(slice));
                QVERIFY(copy.open(QIODevice::WriteOnly));
                QCOMPARE(copy.write(bytes), bytes.size());
                copy.close();
                QVERIFY(file.remove());
            }
        }
        const auto run = [&](const char *button) {
            DialogDriver driver;
            driver.expectFileDialog("Select a directory containing the series.", target);
            driver.expectBox(QMessageBox::Information, "Tevora", "2 DICOM series will be loaded.", button);
            window.openDicomSeries();
            QVERIFY2(driver.verify(), driver.report());
        };
        run("Cancel");
        QCOMPARE(manager.imageCount(), 0);
        run("OK");
        QCOMPARE(manager.imageCount(), 2);
    }

    void helpWindow_andItsEntryStayInStep()
    {
        MainWindow window;
        QAction *entry = window.menuBar()->actions().at(4)->menu()->actions().constFirst();
        entry->trigger();
        QPointer<HelpViewer> viewer = topLevel<HelpViewer>();
        QVERIFY(viewer);
        QVERIFY(entry->isChecked());
        entry->trigger();
        QVERIFY(viewer.isNull());
        QVERIFY(!entry->isChecked());
        entry->trigger();
        viewer = topLevel<HelpViewer>();
        QVERIFY(QTest::qWaitForWindowExposed(viewer));
        viewer->close();
        QTRY_VERIFY(viewer.isNull());
        QVERIFY(!entry->isChecked());
        entry->trigger();
        viewer = topLevel<HelpViewer>();
        QVERIFY(viewer && entry->isChecked());
    }

    void theHelpWindowGoesWithTheMainWindow()
    {
        {
            MainWindow window;
            window.showHelp();
            QVERIFY(topLevel<HelpViewer>());
        }
        QVERIFY(!topLevel<HelpViewer>());
        QVERIFY(QSettings().contains("HelpWindow/Size"));
    }

    void aboutAndAcknowledgement()
    {
        MainWindow window;
        DialogDriver driver;
        driver.expectBox(
            QMessageBox::Information, "About Tevora",
            "Tevora\n[Tevora Suite]\n\nby the Tevora developers\n\ncompiled using Qt version 4.6.4 as "
            "of 2011-06-23",
            "OK", [&](QMessageBox *box) { QCOMPARE(box->buttons().size(), 1); });
        window.about();
        QVERIFY2(driver.verify(), driver.report());
        driver.expect<AcknowledgementDialog>("acknowledgement",
                                             [](AcknowledgementDialog *dialog) { dialog->accept(); });
        window.showAcknowledgement();
        QVERIFY2(driver.verify(), driver.report());
        QCOMPARE(window.findChildren<AcknowledgementDialog *>().size(), 1);
    }
};

int main(int argc, char **argv)
{
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QApplication application(argc, argv);
    MainWindowTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "MainWindowTest.moc"
