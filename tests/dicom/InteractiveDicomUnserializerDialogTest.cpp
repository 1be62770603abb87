#include "serialization/dialogs/InteractiveDicomUnserializerDialog.h"

#include "serialization/dialogs/DroppedFilesModel.h"
#include "serialization/dialogs/FileDroppableQListView.h"
#include "serialization/formats/InteractiveDicomUnserializer.h"
#include "tests/support/DialogDriver.h"
#include "tests/support/DicomFileBuilder.h"
#include "tests/support/PrivateSettings.h"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QLabel>
#include <QMimeData>
#include <QProgressDialog>
#include <QPushButton>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>
#include <QTreeWidget>
#include <QUrl>

using Dialog = InteractiveDicomUnserializerDialog;

namespace {

QStringList headers(const QTreeWidget &tree)
{
    QStringList labels;
    for (int column = 0; column < tree.columnCount(); ++column)
        labels << tree.headerItem()->text(column);
    return labels;
}

QStringList texts(const QTreeWidgetItem &item, int columns)
{
    QStringList values;
    for (int column = 0; column < columns; ++column)
        values << item.text(column);
    return values;
}

// The rows of the tree of series as "patient/series: file names".
QStringList groupsOf(const QTreeWidget &tree)
{
    QStringList groups;
    for (int row = 0; row < tree.topLevelItemCount(); ++row) {
        const QTreeWidgetItem *group = tree.topLevelItem(row);
        QStringList names;
        for (int child = 0; child < group->childCount(); ++child)
            names << QFileInfo(group->child(child)->text(2)).fileName();
        groups << group->text(1) + "/" + group->text(0) + ": " + names.join(" ");
    }
    return groups;
}

} // namespace

class InteractiveDicomUnserializerDialogTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { static const PrivateSettings settings; }

private:
    void write(const std::string &name, const std::string &patient, const std::string &uid, double zMm)
    {
        DicomFileBuilder file = dicomSlice(2, 2, {1, 2, 3, 4}, zMm);
        file.text(0x00100010, "PN", patient);
        file.text(0x0020000E, "UI", uid);
        file.write(*folder / name);
    }
    void makeDialog()
    {
        dialog = std::make_unique<Dialog>();
        dialog->addDirectory(folderName());
        dialog->show();
        QVERIFY(QTest::qWaitForWindowExposed(dialog.get()));
        tabs = dialog->findChild<QTabWidget *>();
        seriesTree = tabs->widget(0)->findChild<QTreeWidget *>();
        filterTree = tabs->widget(1)->findChild<QTreeWidget *>();
    }
    void clickTab(int page)
    {
        QTest::mouseClick(tabs->tabBar(), Qt::LeftButton, {}, tabs->tabBar()->tabRect(page).center());
        QCOMPARE(tabs->currentIndex(), page);
    }
    void clickButton(const QString &text)
    {
        auto *button = qobject_cast<QPushButton *>(DialogDriver::buttonNamed(dialog.get(), text));
        QVERIFY(button != nullptr);
        QTest::mouseClick(button, Qt::LeftButton);
    }
    QStringList paths() const { return dialog->findChild<DroppedFilesModel *>()->stringList(); }
    bool drop(const QList<QUrl> &urls)
    {
        QMimeData data;
        data.setUrls(urls);
        auto *list = dialog->findChild<FileDroppableQListView *>();
        // A drop reaches the widget that the drag has entered.
        QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(list->viewport(), &enter);
        QDropEvent event(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        event.setDropAction(Qt::CopyAction);
        QApplication::sendEvent(list->viewport(), &event);
        return event.dropAction() == Qt::CopyAction;
    }
    QString folderName() const { return QString::fromStdString(folder->string()); }

    std::unique_ptr<TemporaryFolder> folder;
    std::unique_ptr<Dialog> dialog;
    QTabWidget *tabs = nullptr;
    QTreeWidget *seriesTree = nullptr;
    QTreeWidget *filterTree = nullptr;

private slots:
    void init() { folder = std::make_unique<TemporaryFolder>(); }
    void cleanup() { dialog.reset(); }

    void textsOfThePages()
    {
        makeDialog();
        QCOMPARE(dialog->windowTitle(), "Load Dicom series");
        QCOMPARE(tabs->count(), 3);
        QCOMPARE(tabs->tabText(0), "Files");
        QCOMPARE(tabs->tabText(1), "Filters and Axes");
        QCOMPARE(headers(*seriesTree), (QStringList{"Series", "Patient", "File name"}));
        QCOMPARE(headers(*filterTree), (QStringList{"Axis", "Filter", "**)", "*)", "Tag", "Property"}));
        for (const QString text : {"Add directory ...", "Add files ...", "Move up", "Move down", "Select",
                                   "Unselect", "OK", "Cancel"})
            QVERIFY2(DialogDriver::buttonNamed(dialog.get(), text) != nullptr, qPrintable(text));
        QCOMPARE(tabs->widget(1)->findChild<QLabel *>()->text(),
                 "Key: *) number of unique values **) ~ after filtering");
        QCOMPARE(qobject_cast<QLabel *>(tabs->widget(2))->text(), "not yet implemented");
        QCOMPARE(filterTree->topLevelItemCount(), 1);
        QCOMPARE(texts(*filterTree->topLevelItem(0), 6).join(""), "[meta property name]");
        QVERIFY(groupsOf(*seriesTree).isEmpty());
    }

    void directoryGivesItsDicomFilesUnderPlaceholders()
    {
        write("b.dcm", "P", "1.2", 0);
        write("a.dcm", "P", "1.2", 1);
        write("c.DCM", "P", "1.2", 2);
        std::ofstream(*folder / "d.txt") << "text";
        std::filesystem::create_directory(*folder / "e.dcm");
        makeDialog();
        const QString root = folderName();
        QCOMPARE(paths(), (QStringList{root + "/a.dcm", root + "/b.dcm", root + "/c.DCM"}));
        QCOMPARE(groupsOf(*seriesTree), QStringList{"[patient]/[series]: a.dcm b.dcm c.DCM"});
        QCOMPARE(seriesTree->topLevelItem(0)->child(0)->text(2), root + "/a.dcm");
    }

    void filterTreeListsTagsThatTellFilesApart()
    {
        write("a.dcm", "P", "1.2", 0);
        write("b.dcm", "P", "1.2", 1);
        write("c.dcm", "Q", "1.2", 2);
        std::ofstream(*folder / "bad.dcm") << "no DICOM";
        makeDialog();
        clickTab(1);
        QStringList rows;
        for (int row = 1; row < filterTree->topLevelItemCount(); ++row)
            rows << texts(*filterTree->topLevelItem(row), 6).join("|");
        QCOMPARE(rows,
                 (QStringList{"||2|2|0010, 0010|Patient's Name", "||3|3|0020, 0032|Image Position (Patient)",
                              "||3|3|0020, 1041|Slice Location"}));
    }

    void gatheringShowsProgressWithoutCancelButton()
    {
        for (int i = 0; i < 5; ++i)
            write(std::string(1, static_cast<char>('a' + i)) + ".dcm", "P", "1.2", i);
        makeDialog();
        DialogDriver driver;
        QString title;
        int maximum = 0;
        bool cancellable = true;
        bool ended = false;
        QTimer watch;
        connect(&watch, &QTimer::timeout, this, [&] {
            auto *progress = dialog->findChild<QProgressDialog *>();
            if (progress == nullptr || !title.isEmpty())
                return;
            title = progress->windowTitle();
            maximum = progress->maximum();
            cancellable = progress->findChild<QPushButton *>() != nullptr;
            dialog->reject(); // must not close the dialog under its work
            ended = !dialog->isVisible();
        });
        watch.start(0);
        clickTab(1);
        QCOMPARE(title, "Gathering metadata");
        QCOMPARE(maximum, 5);
        QVERIFY(!cancellable);
        QVERIFY(!ended);
        QVERIFY(filterTree->topLevelItemCount() > 1);
    }

    void seriesAreGroupedOnceTheTagsAreKnown()
    {
        write("a.dcm", "P", "1.2", 0);
        write("b.dcm", "Q", "1.3", 1);
        write("c.dcm", "P", "1.2", 2);
        std::ofstream(*folder / "bad.dcm") << "no DICOM";
        makeDialog();
        clickTab(1);
        clickTab(0);
        QCOMPARE(groupsOf(*seriesTree),
                 (QStringList{"P/knee: a.dcm c.dcm", "Q/knee: b.dcm", "[patient]/[series]: bad.dcm"}));
    }

    void filesMoveAmongTheirSiblings()
    {
        for (const std::string name : {"a.dcm", "b.dcm", "c.dcm"})
            write(name, "P", "1.2", 0);
        makeDialog();
        clickButton("Move up"); // nothing is current yet
        seriesTree->setCurrentItem(seriesTree->topLevelItem(0)->child(0));
        clickButton("Move up");
        QCOMPARE(groupsOf(*seriesTree), QStringList{"[patient]/[series]: a.dcm b.dcm c.dcm"});
        clickButton("Move down");
        clickButton("Move down");
        clickButton("Move down");
        QCOMPARE(groupsOf(*seriesTree), QStringList{"[patient]/[series]: b.dcm c.dcm a.dcm"});
        clickButton("Move up");
        QCOMPARE(groupsOf(*seriesTree), QStringList{"[patient]/[series]: b.dcm a.dcm c.dcm"});
    }

    void selectedFilesAreCheckedAndUnchecked()
    {
        for (const std::string name : {"a.dcm", "b.dcm"})
            write(name, "P", "1.2", 0);
        makeDialog();
        QTreeWidgetItem *first = seriesTree->topLevelItem(0)->child(0);
        QTreeWidgetItem *second = seriesTree->topLevelItem(0)->child(1);
        first->setSelected(true);
        clickButton("Unselect");
        QCOMPARE(first->checkState(0), Qt::Unchecked);
        QCOMPARE(second->checkState(0), Qt::Checked);
        clickButton("Select");
        QCOMPARE(first->checkState(0), Qt::Checked);
    }

    void droppedLocalFilesAreAddedOthersIgnored()
    {
        write("a.dcm", "P", "1.2", 0);
        makeDialog();
        const TemporaryFolder other;
        dicomSlice(1, 1, {1}, 0).write(other / "x");
        dicomSlice(1, 1, {1}, 0).write(other / "y.dcm");
        const QString root = QString::fromStdString(other.string());
        QVERIFY(!drop({QUrl("http://example.org/z.dcm")}));
        QCOMPARE(paths().size(), 1);
        QVERIFY(drop({QUrl("http://example.org/z.dcm"), QUrl::fromLocalFile(root + "/x")}));
        QCOMPARE(paths(), (QStringList{folderName() + "/a.dcm", root + "/x"}));
        QVERIFY(drop({QUrl::fromLocalFile(root)})); // a folder gives its files
        QCOMPARE(paths(), (QStringList{folderName() + "/a.dcm", root + "/x", root + "/y.dcm"}));
    }

    void filesAndFoldersAreAddedByDialogs()
    {
        makeDialog();
        const TemporaryFolder other;
        dicomSlice(1, 1, {1}, 0).write(other / "y.dcm");
        const QString root = QString::fromStdString(other.string());
        DialogDriver driver;
        driver.expectFileDialog("Add files", "y.dcm",
                                [root](QFileDialog *shown) { shown->setDirectory(root); });
        clickButton("Add files ...");
        QVERIFY2(driver.verify(), driver.report());
        QCOMPARE(paths(), QStringList{root + "/y.dcm"});
        write("a.dcm", "P", "1.2", 0);
        const QFileInfo added(folderName());
        driver.expectFileDialog("Add directory", added.fileName(),
                                [added](QFileDialog *shown) { shown->setDirectory(added.path()); });
        clickButton("Add directory ...");
        QVERIFY2(driver.verify(), driver.report());
        QCOMPARE(paths(), (QStringList{root + "/y.dcm", folderName() + "/a.dcm"}));
        driver.expectFileDialog("Add directory", QString());
        clickButton("Add directory ...");
        QCOMPARE(paths().size(), 2);
    }

    void okAndCancelCloseTheDialog()
    {
        makeDialog();
        clickButton("OK");
        QVERIFY(!dialog->isVisible());
        QCOMPARE(dialog->result(), static_cast<int>(QDialog::Accepted));
        makeDialog();
        clickButton("Cancel");
        QCOMPARE(dialog->result(), static_cast<int>(QDialog::Rejected));
    }

    void readerTakesDirectoriesAndAnswersNothing()
    {
        write("a.dcm", "P", "1.2", 0);
        InteractiveDicomUnserializer reader;
        QCOMPARE(reader.name(), "Dicom Series");
        QCOMPARE(reader.mimeTypes(), QStringList{"application/x-dicom-series"});
        QCOMPARE(reader.extensions(), QStringList{"dcm"});
        QCOMPARE(reader.unattendedObjectCount(), 0);
        QVERIFY(reader.canUnserialize(folderName().toStdWString().c_str()));
        QVERIFY(!reader.canUnserialize((folderName() + "/a.dcm").toStdWString().c_str()));
        QCOMPARE(reader.unserialize((folderName() + "/a.dcm").toStdWString().c_str()), nullptr);
        DialogDriver driver;
        driver.expect<Dialog>("preview", [&](Dialog *shown) {
            driver.check("files", shown->findChild<DroppedFilesModel *>()->stringList().join("|"),
                         folderName() + "/a.dcm");
            driver.click(shown, DialogDriver::buttonNamed(shown, "OK"));
        });
        QCOMPARE(reader.unserialize(folderName().toStdWString().c_str()), nullptr);
        QVERIFY2(driver.verify(), driver.report());
    }
};

QTEST_MAIN(InteractiveDicomUnserializerDialogTest)
#include "InteractiveDicomUnserializerDialogTest.moc"
