#include "shell/MainWindow.h"

#include "Common/Image.h"
#include "contours/SlicedContoursObject.h"
#include "meshes/TriMeshDistanceMeasurer.h"
#include "meshes/TriMeshObject.h"
#include "objects/MervImageObject.h"
#include "objects/SliceSelector.h"
#include "objects/manager/ImageManager.h"
#include "serialization/dialogs/FileDroppableQListView.h"
#include "shell/help/Help.h"
#include "tests/support/DialogDriver.h"

#include <QAction>
#include <QDir>
#include <QFile>
#include <QItemSelectionModel>
#include <QMenu>
#include <QMenuBar>
#include <QSettings>
#include <QTest>

namespace {

// One string per entry: text, shortcut, "checkable", or "---".
QStringList inventory(const QMenu &menu)
{
    QStringList lines;
    for (const QAction *action : menu.actions()) {
        if (action->isSeparator()) {
            lines << "---";
            continue;
        }
        QString line = action->text();
        if (!action->shortcut().isEmpty())
            line += "|" + action->shortcut().toString();
        if (action->isCheckable())
            line += "|checkable";
        if (action->menu() != nullptr)
            line += "|submenu";
        lines << line;
    }
    return lines;
}

MervImageObject *volume(const QString &label)
{
    MERV::Image *image = MERV::createImage(MERV::TypeUChar);
    image->setVerbose(0);
    image->setDimensions(4, 4, 2, 1, 1);
    auto *object = new MervImageObject(image, QString());
    object->setLabel(label);
    return object;
}

} // namespace

class MainWindowMenusTest : public QObject
{
    Q_OBJECT

    static QMenu *menu(MainWindow &window, int position)
    {
        return window.menuBar()->actions().at(position)->menu();
    }

    static void select(MainWindow &window, const QList<int> &rows)
    {
        auto *selection = window.findChild<FileDroppableQListView *>()->selectionModel();
        selection->clear();
        for (const int row : rows) {
            const QModelIndex index = window.imageManager()->index(row, 0);
            selection->setCurrentIndex(index, QItemSelectionModel::Select);
        }
    }

    // Opens each menu with the real keys and returns the texts of the enabled entries of all of them.
    static QStringList enabledEntries(MainWindow &window)
    {
        QStringList enabled;
        for (int position = 0; position < 4; ++position) {
            QMenu *opened = menu(window, position);
            opened->popup(window.mapToGlobal(QPoint(20, 20)));
            for (const QAction *action : opened->actions()) {
                if (action->menu() != nullptr) {
                    for (const QAction *inner : action->menu()->actions())
                        if (inner->isEnabled())
                            enabled << inner->text();
                } else if (!action->isSeparator() && action->isEnabled()) {
                    enabled << action->text();
                }
            }
            opened->close();
        }
        return enabled;
    }

private slots:
    void initTestCase()
    {
        QCoreApplication::setOrganizationName("TevoraTest");
        QCoreApplication::setApplicationName("Tevora");
    }
    void init() { QSettings().clear(); }

    void menusInTheirOrder()
    {
        MainWindow window;
        QStringList titles;
        for (const QAction *action : window.menuBar()->actions())
            titles << action->text();
        QCOMPARE(titles, (QStringList{"&File", "Image", "View", "Procedures", "Help"}));
    }

    void entriesShortcutsAndSeparators()
    {
        MainWindow window;
        QCOMPARE(
            inventory(*menu(window, 0)),
            (QStringList{"&Open Single File ...|Ctrl+O", "Open &Dicom Series ...",
                         "Open Dicom Series with Input Filter ...", "---", "Close Image", "---",
                         "&Save as Single File ...|Ctrl+S", "Save as Dicom Series ...", "---", "E&xit"}));
        QCOMPARE(inventory(*menu(window, 1)),
                 (QStringList{"New|submenu", "---", "Add fragment ...", "---", "Extract Edge Points ...",
                              "Triangulate", "Align", "Measure Thickness ...", "Color Triangulation",
                              "Rasterize ...", "---", "Mirror ...", "---", "Set selector plane ..."}));
        QCOMPARE(inventory(*menu(window, 1)->actions().at(0)->menu()),
                 (QStringList{"New sliced contours", "New slice selector"}));
        QCOMPARE(inventory(*menu(window, 2)),
                 (QStringList{"Show in new view ...", "Show metrics ...", "---", "Show center of mass ...",
                              "---", "Properties ..."}));
        QCOMPARE(inventory(*menu(window, 3)), (QStringList{"Start Segmentation of Patella ...",
                                                           "Start Segmentation of Femur and Tibia ...", "---",
                                                           "Test Mesh Alignment ..."}));
        QCOMPARE(inventory(*menu(window, 4)),
                 (QStringList{"Show Online Help|checkable", "How to Acknowledge ...", "About Tevora ...",
                              "About Qt ..."}));
    }

    void beforeAMenuOpens_onlyTwoEntriesAreDisabled()
    {
        MainWindow window;
        QStringList disabled;
        for (const QAction *action : window.findChildren<QAction *>())
            if (!action->isEnabled() && !action->isSeparator() && !action->text().isEmpty() &&
                action->parent() != nullptr && action->text() != "Copy")
                disabled << action->text();
        disabled.sort();
        QCOMPARE(disabled, (QStringList{"Color Triangulation", "Measure Thickness ..."}));
    }

    void unlistedActionsExistAndAreInNoMenu()
    {
        MainWindow window;
        for (const char *text : {"Open Single File (obsolete) ...", "Show edge point histograms",
                                 "Load Contour of Patella...", "Load Segmentation of Patella ..."}) {
            bool found = false;
            for (const QAction *action : window.findChildren<QAction *>()) {
                if (action->text() != text)
                    continue;
                found = true;
                QVERIFY(action->associatedObjects().isEmpty());
            }
            QVERIFY2(found, text);
        }
    }

    void unlistedActionsAreConnected_andFollowTheProceduresMenu()
    {
        MainWindow window;
        const auto action = [&window](const char *text) -> QAction * {
            for (QAction *candidate : window.findChildren<QAction *>())
                if (candidate->text() == text)
                    return candidate;
            return nullptr;
        };
        window.imageManager()->addImage(volume("a"));
        window.imageManager()->addImage(new SlicedContoursObject("contours", nullptr));
        QAction *contour = action("Load Contour of Patella...");
        QAction *segmentation = action("Load Segmentation of Patella ...");
        QVERIFY(contour->isEnabled() && segmentation->isEnabled());
        const QList<QList<int>> selections = {{}, {1}, {0, 1}, {0}}; // one row, of any class, enables
        for (const QList<int> &rows : selections) {
            select(window, rows);
            window.configureProceduresMenu();
            QCOMPARE(contour->isEnabled(), rows.size() == 1);
            QCOMPARE(segmentation->isEnabled(), rows.size() == 1);
        }
        DialogDriver driver;
        driver.expectFileDialog("Open a single file", QString());
        action("Open Single File (obsolete) ...")->trigger();
        driver.expectFileDialog("Load images", QString());
        contour->trigger();
        driver.expectFileDialog("Load the segmentation", QString());
        segmentation->trigger();
        action("Show edge point histograms")->trigger(); // does nothing
        QVERIFY2(driver.verify(), driver.report());
        QCOMPARE(window.imageManager()->imageCount(), 2);
    }

    void withoutImages_onlyWhatMakesImagesIsEnabled()
    {
        MainWindow window;
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QCOMPARE(enabledEntries(window),
                 (QStringList{"&Open Single File ...", "Open &Dicom Series ...",
                              "Open Dicom Series with Input Filter ...", "E&xit", "New sliced contours"}));
    }

    // The number comes from the selection, the class of a single row from the current one, which may lie
    // outside of it.
    void currentRowOutsideTheSelection_tellsTheClass()
    {
        MainWindow window;
        ImageManager &manager = *window.imageManager();
        manager.addImage(volume("a"));
        manager.addImage(new SlicedContoursObject("contours", nullptr));
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        select(window, {0});
        window.findChild<FileDroppableQListView *>()->selectionModel()->setCurrentIndex(
            manager.index(1, 0), QItemSelectionModel::NoUpdate);
        const QStringList enabled = enabledEntries(window);
        QVERIFY(enabled.contains("Add fragment ...") && enabled.contains("Triangulate"));
        QVERIFY(!enabled.contains("Mirror ...") && !enabled.contains("Extract Edge Points ..."));
        window.triangulateSlicedContours();
        QCOMPARE(manager.imageCount(), 3);
        QCOMPARE(manager.image(2)->sources(), QList<ImageObject *>{manager.image(1)});
    }

    void enablingRules_data()
    {
        QTest::addColumn<QList<int>>("rows");
        QTest::addColumn<QStringList>("enabled");
        // Rows: 0 and 1 volumes, 2 contours, 3 slice selector, 4 and 5 meshes, 6 a measurement.
        const QStringList always{"&Open Single File ...", "Open &Dicom Series ...",
                                 "Open Dicom Series with Input Filter ...", "E&xit", "New sliced contours"};
        const QStringList one{"Close Image",          "&Save as Single File ...", "Rasterize ...",
                              "Show in new view ...", "Show metrics ...",         "Properties ..."};
        const QStringList volumes{"Save as Dicom Series ...",
                                  "New slice selector",
                                  "Extract Edge Points ...",
                                  "Mirror ...",
                                  "Show center of mass ...",
                                  "Start Segmentation of Patella ...",
                                  "Start Segmentation of Femur and Tibia ...",
                                  "Test Mesh Alignment ..."};
        const QStringList meshes{"Align", "Measure Thickness ..."};
        const QStringList two{"Close Image", "Properties ..."};
        QTest::newRow("nothing") << QList<int>{} << always;
        QTest::newRow("volume") << QList<int>{0} << always + one + volumes;
        QTest::newRow("contours") << QList<int>{2}
                                  << always + one + QStringList{"Add fragment ...", "Triangulate"};
        QTest::newRow("selector") << QList<int>{3}
                                  << always + one + volumes + QStringList{"Set selector plane ..."};
        QTest::newRow("mesh") << QList<int>{4} << always + one + meshes;
        QTest::newRow("measurement") << QList<int>{6} << always + one;
        QTest::newRow("two volumes") << QList<int>{0, 1} << always + two;
        QTest::newRow("two meshes") << QList<int>{4, 5} << always + two + meshes;
        QTest::newRow("mesh and volume") << QList<int>{4, 0} << always + two;
        QTest::newRow("mesh, measurement")
            << QList<int>{4, 6} << always + two + QStringList{"Color Triangulation"};
        QTest::newRow("measurement, mesh")
            << QList<int>{6, 4} << always + two + QStringList{"Color Triangulation"};
        QTest::newRow("three meshes") << QList<int>{4, 5, 6} << always + two;
    }
    void enablingRules()
    {
        QFETCH(QList<int>, rows);
        QFETCH(QStringList, enabled);
        MainWindow window;
        ImageManager &manager = *window.imageManager();
        manager.addImage(volume("a"));
        manager.addImage(volume("b"));
        manager.addImage(new SlicedContoursObject("contours", nullptr));
        manager.addImage(
            new SliceSelector(dynamic_cast<MervImageObject *>(manager.image(0)), SliceDirection::Z, 0));
        manager.addImage(new TriMeshObject("mesh", nullptr));
        manager.addImage(new TriMeshObject("another mesh", nullptr));
        auto *measurer = new TriMeshDistanceMeasurer(nullptr, nullptr, "thickness");
        measurer->stopWorking(); // images outlive the window
        manager.addImage(measurer);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        select(window, rows);
        QStringList found = enabledEntries(window);
        found.sort();
        enabled.sort();
        QCOMPARE(found, enabled);
        // Asking again after the selection is gone gives the rules of an empty selection.
        select(window, {});
        window.findChild<FileDroppableQListView *>()->selectionModel()->clearCurrentIndex();
        QCOMPARE(enabledEntries(window).size(), 5);
    }

    void eachMenuAndTheListAskForTheirHelpPage()
    {
        const QString folder = QCoreApplication::applicationDirPath() + "/help";
        QDir(folder).removeRecursively();
        QVERIFY(QDir().mkpath(folder));
        const char *const topics[] = {"menu_file",       "menu_image", "menu_view",
                                      "menu_procedures", "menu_help",  "main_window_image_list"};
        for (const char *topic : topics) {
            QFile page(folder + "/" + topic + ".html");
            QVERIFY(page.open(QIODevice::WriteOnly));
            page.write(topic);
        }
        MainWindow window;
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        window.activateWindow(); // the window manager may still be busy with the menus of earlier windows
        QVERIFY(QTest::qWaitForWindowActive(&window));
        for (int position = 0; position < 5; ++position) {
            menu(window, position)->popup(window.mapToGlobal(QPoint(20, 20)));
            QCOMPARE(Help::instance()->currentText(), QString(topics[position]));
            menu(window, position)->close();
        }
        window.menuBar()->setFocus();
        window.findChild<FileDroppableQListView *>()->setFocus(Qt::MouseFocusReason);
        QTRY_COMPARE(Help::instance()->currentText(), QString("main_window_image_list"));
        QDir(folder).removeRecursively();
    }
};

int main(int argc, char **argv)
{
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    QApplication application(argc, argv);
    MainWindowMenusTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "MainWindowMenusTest.moc"
