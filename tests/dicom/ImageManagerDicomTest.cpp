#include "objects/manager/ImageManager.h"

#include "objects/MervImageObject.h"
#include "serialization/dialogs/ListChoiceDialog.h"
#include "serialization/dialogs/SliceDistanceDialog.h"
#include "serialization/formats/DcmUnserializer.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/DialogDriver.h"
#include "tests/support/DicomFileBuilder.h"
#include "tests/support/PrivateSettings.h"
#include "tests/support/TestData.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTest>

namespace {

const QString echoLabel("Select the echo time to be loaded.");
const QString distanceLabel("There are several ways to determine the slice distance of the Dicom series. "
                            "Select on which algorithm's result to rely.");

QStringList entriesOf(const QListWidget &list)
{
    QStringList entries;
    for (int row = 0; row < list.count(); ++row)
        entries << list.item(row)->text();
    return entries;
}

QPushButton *standardButton(QDialog *dialog, QDialogButtonBox::StandardButton button)
{
    return dialog->findChild<QDialogButtonBox *>()->button(button);
}

} // namespace

class ImageManagerDicomTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { static const PrivateSettings settings; }

private:
    // Answers the next list dialog: checks title, label and entries, moves down to `row` and presses OK.
    // A row of -1 cancels.
    void expectChoice(const QString &title, const QString &label, const QStringList &entries, int row)
    {
        driver->expect<ListChoiceDialog>(title, [=, this](ListChoiceDialog *dialog) {
            driver->check("title", dialog->windowTitle(), title);
            const auto *labelWidget = dialog->findChild<QLabel *>();
            driver->check("label", labelWidget == nullptr ? QString() : labelWidget->text(), label);
            auto *list = dialog->findChild<QListWidget *>();
            driver->check("entries", entriesOf(*list).join("|"), entries.join("|"));
            driver->check("first row", QString::number(list->currentRow()), "0");
            list->setFocus();
            for (int i = 0; i < row; ++i)
                QTest::keyClick(list, Qt::Key_Down);
            driver->click(dialog,
                          standardButton(dialog, row < 0 ? QDialogButtonBox::Cancel : QDialogButtonBox::Ok));
        });
    }

    // Answers the distance dialog: checks its texts from the top and that the first choice is checked, clicks
    // on the choice with the number `row` (-1: none) and presses the button.
    void expectDistances(const QStringList &texts, int row,
                         QDialogButtonBox::StandardButton button = QDialogButtonBox::Ok)
    {
        driver->expect<SliceDistanceDialog>("distances", [=, this](SliceDistanceDialog *dialog) {
            driver->check("title", dialog->windowTitle(), "Select Slice Distance Algorithm");
            driver->check("label", dialog->findChild<QLabel *>()->text(), distanceLabel);
            QList<QRadioButton *> choices = dialog->findChildren<QRadioButton *>();
            std::sort(choices.begin(), choices.end(),
                      [](const QRadioButton *a, const QRadioButton *b) { return a->y() < b->y(); });
            QStringList shown;
            for (const QRadioButton *choice : choices)
                shown << choice->text() + (choice->isChecked() ? "*" : "");
            QStringList expected = texts;
            if (!expected.isEmpty())
                expected.first() += "*";
            driver->check("choices", shown.join("|"), expected.join("|"));
            if (row >= 0)
                QTest::mouseClick(choices[row], Qt::LeftButton, Qt::NoModifier, QPoint(8, 8));
            driver->click(dialog, standardButton(dialog, button));
        });
    }

    // Series, echo time and slice distance, as they are preselected.
    void acceptAllDialogs()
    {
        const auto accept = [this](QDialog *dialog) {
            driver->click(dialog, standardButton(dialog, QDialogButtonBox::Ok));
        };
        for (const char *what : {"series", "echo time", "distance"})
            driver->expect<QDialog>(what, accept);
    }

    DicomFileBuilder slice(const std::string &uid, double zMm, const std::string &echoTime = "9.2")
    {
        DicomFileBuilder file = dicomSlice(2, 2, {1, 2, 3, 4}, zMm);
        file.text(0x0020000E, "UI", uid);
        file.text(0x00180081, "DS", echoTime);
        return file;
    }

    // Two series, the second with two echoes of three slices, 2 mm apart.
    void writeSeries()
    {
        DicomFileBuilder other = slice("1.2.3", 0);
        other.text(0x00100010, "PN", "<b>First</b> %1");
        other.text(0x0008103E, "LO", "scout");
        other.write(*folder / "z");
        int number = 0;
        for (const std::string echo : {"9.2", "18.4"}) {
            for (const double z : {4.0, 0.0, 2.0}) {
                DicomFileBuilder file = slice("1.2.4", z, echo);
                file.text(0x00201041, "DS", std::to_string(1.5 * z));
                file.write(*folder / std::to_string(number++));
            }
        }
    }

    ImageObject *load()
    {
        return manager->loadDicomSeriesInteractively(QString::fromStdString(folder->string()));
    }
    QString folderName() const { return QString::fromStdString(folder->string()); }

    const QStringList bothSeries{"<b>First</b> %1; scout", "Doe^Jane; knee"};
    const QStringList allDistances{"Image Position (Patient) based algorithm; result: 2 mm",
                                   "GDCM internal algorithm; result: 4 mm",
                                   "Slice Location based algorithm; result: 3 mm"};

    std::unique_ptr<TemporaryFolder> folder;
    std::unique_ptr<ImageManager> manager;
    std::unique_ptr<DialogDriver> driver;

private slots:
    void init()
    {
        QDir::setCurrent("/");
        folder = std::make_unique<TemporaryFolder>();
        manager = std::make_unique<ImageManager>(nullptr);
        driver = std::make_unique<DialogDriver>();
    }

    void interactiveRouteTakesTheChoices_data()
    {
        QTest::addColumn<int>("choice");
        QTest::addColumn<float>("spacing");
        QTest::newRow("preselected") << -1 << 2.0F;
        QTest::newRow("position") << 0 << 2.0F;
        QTest::newRow("library") << 1 << 4.0F;
        QTest::newRow("location") << 2 << 3.0F;
    }
    void interactiveRouteTakesTheChoices()
    {
        QFETCH(int, choice);
        QFETCH(float, spacing);
        writeSeries();
        expectChoice("Select Series", "", bothSeries, 1);
        expectChoice("Select Echo Time", echoLabel, {"18.4", "9.2"}, 1);
        expectDistances(allDistances, choice);
        QSignalSpy changes(manager.get(), &ImageManager::layoutChanged);
        auto *object = dynamic_cast<MervImageObject *>(load());
        QVERIFY2(driver->verify(), driver->report());
        QVERIFY(object != nullptr);
        QCOMPARE(manager->image(0), object);
        QCOMPARE(object->parent(), nullptr);
        QCOMPARE(object->label(), "Doe^Jane (tE = 9.2 ms)");
        QCOMPARE(object->filePath(), folderName());
        QCOMPARE(object->voxels()->getDepth(), 3);
        QCOMPARE(object->voxels()->getSpacing(2), spacing);
        // Ascending order: the first file is the one at z 0.
        QCOMPARE(object->voxels()->getPosition()[2], 0.0F);
        QCOMPARE(changes.count(), 1);
        QVERIFY(manager->columnCount() > 10);
        QCOMPARE(QDir::currentPath(), QFileInfo(folderName()).canonicalFilePath());
    }

    void labelKeepsPercentSignsOfNames()
    {
        writeSeries();
        expectChoice("Select Series", "", bothSeries, 0);
        expectChoice("Select Echo Time", echoLabel, {"9.2"}, 0);
        const auto *object = load();
        QVERIFY2(driver->verify(), driver->report()); // a single file: no question for its distance
        QCOMPARE(const_cast<ImageObject *>(object)->label(), "<b>First</b> %1 (tE = 9.2 ms)");
    }

    void singleFileTakesItsOwnDistance()
    {
        DicomFileBuilder file = slice("1.2.3", 7);
        file.text(0x00180088, "DS", "-2.5");
        file.write(*folder / "one");
        expectChoice("Select Series", "", {"Doe^Jane; knee"}, 0);
        expectChoice("Select Echo Time", echoLabel, {"9.2"}, 0);
        auto *object = dynamic_cast<MervImageObject *>(load());
        QVERIFY2(driver->verify(), driver->report());
        QCOMPARE(object->voxels()->getSpacing(2), 2.5F);
    }

    void eachDialogCancels_data()
    {
        QTest::addColumn<int>("dialogs");
        QTest::newRow("series") << 1;
        QTest::newRow("echo time") << 2;
        QTest::newRow("distance") << 3;
    }
    void eachDialogCancels()
    {
        QFETCH(int, dialogs);
        writeSeries();
        expectChoice("Select Series", "", bothSeries, dialogs == 1 ? -1 : 1);
        if (dialogs > 1)
            expectChoice("Select Echo Time", echoLabel, {"18.4", "9.2"}, dialogs == 2 ? -1 : 0);
        if (dialogs > 2)
            expectDistances(allDistances, -1, QDialogButtonBox::Cancel);
        QCOMPARE(load(), nullptr);
        QVERIFY2(driver->verify(), driver->report());
        QCOMPARE(manager->imageCount(), 0);
        QCOMPARE(QDir::currentPath(), "/");
        QVERIFY(QApplication::topLevelWidgets().isEmpty());
    }

    void distancesWithoutAnAnswerAreNotOffered_data()
    {
        QTest::addColumn<double>("lastZ");
        QTest::addColumn<bool>("lastHasLocation");
        QTest::addColumn<QString>("thickness");
        QTest::addColumn<QStringList>("texts");
        QTest::addColumn<float>("spacing");
        const QString position("Image Position (Patient) based algorithm; result: 2 mm");
        const QString library("GDCM internal algorithm; result: 5 mm");
        const QString location("Slice Location based algorithm; result: 2 mm");
        QTest::newRow("no location in the last file")
            << 2.0 << false << "5" << QStringList{position, library} << 2.0F;
        QTest::newRow("all at one place") << 0.0 << false << "5" << QStringList{library} << 5.0F;
        QTest::newRow("nothing known") << 0.0 << false << "0" << QStringList{} << 0.0F;
        QTest::newRow("all but the library's")
            << 2.0 << true << "0" << QStringList{position, location} << 2.0F;
    }
    void distancesWithoutAnAnswerAreNotOffered()
    {
        QFETCH(double, lastZ);
        QFETCH(bool, lastHasLocation);
        QFETCH(QString, thickness);
        QFETCH(QStringList, texts);
        QFETCH(float, spacing);
        for (const int number : {1, 2}) {
            DicomFileBuilder file = slice("1.2.3", number == 1 ? 0.0 : lastZ);
            file.remove(0x00180088);
            file.text(0x00180050, "DS", thickness.toStdString());
            file.text(0x00200013, "IS", std::to_string(number));
            if (number == 2 && !lastHasLocation)
                file.remove(0x00201041);
            file.write(*folder / std::to_string(number));
        }
        expectChoice("Select Series", "", {"Doe^Jane; knee"}, 0);
        expectChoice("Select Echo Time", echoLabel, {"9.2"}, 0);
        expectDistances(texts, -1);
        auto *object = dynamic_cast<MervImageObject *>(load());
        QVERIFY2(driver->verify(), driver->report());
        QVERIFY(object != nullptr);
        QCOMPARE(object->voxels()->getSpacing(2), spacing);
    }

    void seriesWithoutImageTypeIsNamedOnStandardOutput()
    {
        DicomFileBuilder file = slice("1.2.3", 0);
        file.us(0x00280002, 3);
        file.write(*folder / "colour");
        expectChoice("Select Series", "", {"Doe^Jane; knee"}, 0);
        expectChoice("Select Echo Time", echoLabel, {"9.2"}, 0);
        const CapturedOutput output;
        QCOMPARE(load(), nullptr);
        QVERIFY2(driver->verify(), driver->report());
        QCOMPARE(output.standardOutput(), "Could not load series 1.2.3 in " + folderName() + "\n");
        QCOMPARE(manager->imageCount(), 0);
        QCOMPARE(QDir::currentPath(), "/");
    }

    void missingNameDescriptionAndEchoTimeAreEmpty()
    {
        DicomFileBuilder file = slice("1.2.3", 0);
        for (const std::uint32_t tag : {0x00100010U, 0x0008103EU, 0x00180081U})
            file.remove(tag);
        file.write(*folder / "bare");
        expectChoice("Select Series", "", {"; "}, 0);
        expectChoice("Select Echo Time", echoLabel, {""}, 0);
        ImageObject *object = load();
        QVERIFY2(driver->verify(), driver->report());
        QVERIFY(object != nullptr);
        QCOMPARE(object->label(), " (tE =  ms)");
    }

    void emptyOrMissingFolderAsksNothing()
    {
        QCOMPARE(load(), nullptr);
        QCOMPARE(manager->loadDicomSeriesInteractively("/absent"), nullptr);
        QVERIFY2(driver->verify(), driver->report());
    }

    void plainRouteLoadsEverySeriesWithoutColumns()
    {
        writeSeries();
        QSignalSpy changes(manager.get(), &ImageManager::layoutChanged);
        const CapturedOutput output;
        const QList<ImageObject *> loaded = manager->loadDicomSeries(folderName());
        QVERIFY2(driver->verify(), driver->report());
        QCOMPARE(loaded.size(), 2);
        QCOMPARE(loaded, (QList<ImageObject *>{manager->image(0), manager->image(1)}));
        QCOMPARE(loaded[0]->label(), "<b>First</b> %1");
        QCOMPARE(loaded[1]->label(), "Doe^Jane");
        QCOMPARE(loaded[1]->parent(), manager.get());
        QCOMPARE(loaded[1]->filePath(), folderName());
        QCOMPARE(manager->columnCount(), 1);
        QCOMPARE(changes.count(), 1);
        QCOMPARE(QDir::currentPath(), QFileInfo(folderName()).canonicalFilePath());
        const QStringList lines = output.standardOutput().split("\n");
        QCOMPARE(lines[0], "Loading Series #0 ...");
        QCOMPARE(lines[1], "Dir Name :[" + folderName() + "]");
        QCOMPARE(lines.filter("Loading Series #1 ...").size(), 1);
        // Places are shared by the echoes, all numbers are 1: the order is that of the names, descending.
        auto *volume = dynamic_cast<MervImageObject *>(loaded[1]);
        QCOMPARE(volume->voxels()->getDepth(), 6);
        QCOMPARE(volume->voxels()->getSliceMetaData(0, "Echo Time"), std::string("18.4"));
        QCOMPARE(volume->voxels()->getSliceMetaData(5, "Echo Time"), std::string("9.2"));
    }

    void failedSeriesPutsTheLastImageIntoTheResultAgain()
    {
        DicomFileBuilder first = slice("1.2.1", 0);
        first.us(0x00280002, 3);
        first.write(*folder / "a");
        slice("1.2.2", 0).write(*folder / "b");
        DicomFileBuilder last = slice("1.2.3", 0);
        last.us(0x00280100, 1);
        last.write(*folder / "c");
        const CapturedOutput output;
        const QList<ImageObject *> loaded = manager->loadDicomSeries(folderName());
        QCOMPARE(manager->imageCount(), 1);
        QCOMPARE(loaded, (QList<ImageObject *>{manager->image(0), manager->image(0)}));
        const QString printed = output.standardOutput();
        QVERIFY(printed.contains("Could not load series #0in" + folderName() + "\n"));
        QVERIFY(printed.contains("Could not load series #2in" + folderName() + "\n"));
    }

    void folderWithoutSeriesOnlyMovesTheCurrentDirectory()
    {
        QSignalSpy changes(manager.get(), &ImageManager::layoutChanged);
        QVERIFY(manager->loadDicomSeries(folderName()).isEmpty());
        QCOMPARE(changes.count(), 0);
        QCOMPARE(QDir::currentPath(), QFileInfo(folderName()).canonicalFilePath());
    }

    void exportIsTrueOnlyWhenEverySliceWasWritten()
    {
        slice("1.2.3", 0).write(*folder / "one");
        auto *object = dynamic_cast<MervImageObject *>(manager->loadDicomSeries(folderName()).value(0));
        QVERIFY(object != nullptr);
        const TemporaryFolder target;
        const QString path = QString::fromStdString(target.string());
        QVERIFY(manager->saveDicomSeries(object, path));
        QVERIFY(QFileInfo::exists(path + "/slice0000.dcm"));
        const CapturedOutput output;
        QVERIFY(!manager->saveDicomSeries(object, path + "/absent"));
        QCOMPARE(output.standardOutput(), "Error: Could not write DICOM file!\n");
        QVERIFY(!manager->saveDicomSeries(nullptr, path));
        MervImageObject empty(nullptr, QString());
        QVERIFY(!manager->saveDicomSeries(&empty, path));
    }

    // A colleague tidies up while the dialogs are open.
    void folderThatVanishesBehindTheDialogsIsNamedAndLeavesNoImage()
    {
        writeSeries();
        expectChoice("Select Series", "", bothSeries, 1);
        expectChoice("Select Echo Time", echoLabel, {"18.4", "9.2"}, 1);
        driver->expect<SliceDistanceDialog>("distances", [this](SliceDistanceDialog *dialog) {
            std::filesystem::remove_all(folder->path());
            driver->click(dialog, standardButton(dialog, QDialogButtonBox::Ok));
        });
        const CapturedOutput output;
        QCOMPARE(load(), nullptr);
        QVERIFY2(driver->verify(), driver->report());
        QVERIFY(output.standardOutput().endsWith("Could not load series 1.2.4 in " + folderName() + "\n"));
        QCOMPARE(manager->imageCount(), 0);
        QCOMPARE(QDir::currentPath(), "/");
    }

    void folderThatVanishesBehindTheCountHasNoSeries()
    {
        writeSeries();
        QCOMPARE(manager->countDicomSeries(folderName()), 2);
        std::filesystem::remove_all(folder->path());
        QVERIFY(manager->loadDicomSeries(folderName()).isEmpty());
        QCOMPARE(manager->imageCount(), 0);
        QCOMPARE(QDir::currentPath(), "/");
    }

    // Every tag that the loader looks at, missing in all three files: the commands for series with and
    // without questions, and for single files.
    void eachTagMayBeMissingForEachCommand_data()
    {
        QTest::addColumn<std::uint32_t>("tag");
        QTest::addColumn<bool>("isNeeded");
        for (const std::uint32_t tag :
             {0x00080005U, 0x00080016U, 0x0008103EU, 0x00100010U, 0x00180050U, 0x00180081U,
              0x00180088U, 0x0020000EU, 0x00200013U, 0x00200032U, 0x00200037U, 0x00201041U,
              0x00280002U, 0x00280004U, 0x00280030U, 0x00280100U, 0x00280101U, 0x00280102U,
              0x00280103U, 0x00280010U, 0x00280011U, 0x7FE00010U})
            QTest::addRow("%08x", tag)
                << tag << (tag == 0x00280010 || tag == 0x00280011 || tag == 0x7FE00010);
    }
    void eachTagMayBeMissingForEachCommand()
    {
        QFETCH(std::uint32_t, tag);
        QFETCH(bool, isNeeded);
        for (const int number : {1, 2, 3}) {
            DicomFileBuilder file = slice("1.2.3", 2 * number);
            file.text(0x00200013, "IS", std::to_string(number));
            file.remove(tag);
            file.write(*folder / (std::to_string(number) + ".dcm"));
        }
        const CapturedOutput output;
        QCOMPARE(manager->countDicomSeries(folderName()), isNeeded ? 0 : 1);
        QCOMPARE(manager->loadDicomSeries(folderName()).size(), isNeeded ? 0 : 1);
        if (!isNeeded)
            acceptAllDialogs();
        QCOMPARE(load() != nullptr, !isNeeded);
        QVERIFY2(driver->verify(), driver->report());

        DcmUnserializer reader;
        manager->addUnserializer(&reader);
        QString error;
        QCOMPARE(manager->loadFile(folderName() + "/2.dcm", &error) != nullptr, !isNeeded);
        const QString failure("The following unserializer(s) assured their capability to unserialize this "
                              "file, but they failed to do so: Dicom file");
        QCOMPARE(error, isNeeded ? failure : QString());
        QCOMPARE(manager->imageCount(), isNeeded ? 0 : 3);
        for (int row = 0; row < manager->imageCount(); ++row) {
            auto *volume = dynamic_cast<MervImageObject *>(manager->image(row));
            QCOMPARE(volume->voxels()->getDepth(), row < 2 ? 3 : 1);
            QVERIFY(volume->displaySlice(0) != nullptr);
        }
    }

    void kneeSeriesShowsThreeDifferentDistances()
    {
        const QString data = QString::fromStdString(testDataFolder()) + "/knee-ge-mese/dicom";
        if (!QFileInfo(data).isDir())
            QSKIP("no real series");
        expectChoice("Select Series", "", {"; "}, 0);
        expectChoice("Select Echo Time", echoLabel,
                     {"12.624", "18.936", "25.248", "31.56", "37.872", "44.184", "50.496", "6.312"}, 7);
        expectDistances({"Image Position (Patient) based algorithm; result: 0.577143 mm",
                         "GDCM internal algorithm; result: 4 mm",
                         "Slice Location based algorithm; result: 3.95689 mm"},
                        1);
        auto *object = dynamic_cast<MervImageObject *>(manager->loadDicomSeriesInteractively(data));
        QVERIFY2(driver->verify(), driver->report());
        QVERIFY(object != nullptr);
        QCOMPARE(object->voxels()->getDepth(), 24);
        QCOMPARE(object->voxels()->getSpacing(2), 4.0F);
        QCOMPARE(object->label(), " (tE = 6.312 ms)");
    }

    void seriesWithoutLocationsHasNoSuchButton()
    {
        const QString data = QString::fromStdString(testDataFolder()) + "/t1-no-sliceloc/dicom";
        if (!QFileInfo(data).isDir())
            QSKIP("no real series");
        expectChoice("Select Series", "", {"Jane_Doe; anat-T1w"}, 0);
        expectChoice("Select Echo Time", echoLabel, {""}, 0);
        expectDistances({"Image Position (Patient) based algorithm; result: 0.660688 mm",
                         "GDCM internal algorithm; result: 0.666667 mm"},
                        -1);
        auto *object = dynamic_cast<MervImageObject *>(manager->loadDicomSeriesInteractively(data));
        QVERIFY2(driver->verify(), driver->report());
        QVERIFY(object != nullptr);
        QCOMPARE(object->label(), "Jane_Doe (tE =  ms)");
    }
};

QTEST_MAIN(ImageManagerDicomTest)
#include "ImageManagerDicomTest.moc"
