#include "objects/manager/ImageManager.h"

#include "tests/manager/Fakes.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/DialogDriver.h"
#include "tests/support/PrivateSettings.h"

#include <QDir>
#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QStandardItemModel>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <stdexcept>

namespace {

const QString
    question("You can retry saving to this file, give a different file name, or abort saving the image.");

// A serializer that is neither of the two kinds.
class OtherWriter : public AbstractImageObjectSerializer
{
public:
    using AbstractImageObjectSerializer::AbstractImageObjectSerializer;
    bool canSerialize(ImageObject *object) override { return object != nullptr; }
};

} // namespace

class ImageManagerSavingTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { static const PrivateSettings settings; }

private:
    QString inFolder(const QString &name) const { return folder->filePath(name); }
    static QByteArray contentOf(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(not there)");
    }
    static QStringList recoveryFiles()
    {
        const QDir recovery(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + "/recovery");
        QStringList paths;
        for (const QFileInfo &file : recovery.entryInfoList(QDir::Files))
            paths << file.filePath();
        return paths;
    }
    QString canonicalFolder() const { return QFileInfo(folder->path()).canonicalFilePath(); }

    // The box that follows a failed attempt, answered by the button with this text.
    void expectFailure(DialogDriver &driver, const QString &path, const QString &button)
    {
        driver.expectBox(QMessageBox::Warning, "Tevora",
                         "The image could not be saved to\n\n" + path + "\n\n", button);
    }

    std::unique_ptr<QTemporaryDir> folder;
    std::unique_ptr<ImageManager> manager;
    FakeImage *image = nullptr;

private slots:
    void init()
    {
        folder = std::make_unique<QTemporaryDir>();
        manager = std::make_unique<ImageManager>(nullptr); // moves to the directory of the last test
        QDir::setCurrent(folder->path());
        image = new FakeImage("knee");
        manager->addImage(image);
    }
    void cleanup()
    {
        QDir::setCurrent("/");
        manager.reset();
    }

    void withoutSerializer_saysSo()
    {
        DialogDriver driver;
        for (int i = 0; i < 2; ++i) {
            driver.expectBox(
                QMessageBox::Critical, "Tevora",
                "The image cannot be saved for there is no serializer installed to handle this type "
                "of image.",
                QMessageBox::Ok);
        }
        QVERIFY(!manager->saveImage(image));
        QVERIFY(!manager->saveImage(QModelIndex())); // no image at all: nobody can write it
        QVERIFY2(driver.verify(), driver.report());
    }

    void dialog_offersTheApplicableFiltersAndTheFirstOnesName()
    {
        FakeStreamWriter first("First", "x/1", "one");
        FakeStreamWriter second("Second (tab separated)", "x/2", "");
        class Refusing : public FakeStreamWriter
        {
        public:
            using FakeStreamWriter::FakeStreamWriter;
            bool canSerialize(ImageObject *) override { return false; }
        } refusing("Refusing", "x/3", "no");
        FakeFileWriter third("Third", "x/4", "three");
        for (AbstractImageObjectSerializer *serializer :
             std::initializer_list<AbstractImageObjectSerializer *>{&refusing, &first, &second, &third})
            manager->addSerializer(serializer);
        DialogDriver driver;
        driver.expectFileDialog("Save Image as", QString(), [&](QFileDialog *dialog) {
            driver.check("filters", DialogDriver::shownFilters(dialog).join("\n"),
                         "First (*.one)\nSecond (tab separated) (*)\nThird (*.three)");
            driver.check("selected", dialog->findChild<QComboBox *>("fileTypeCombo")->currentText(),
                         "First (*.one)");
            driver.check("proposal", dialog->findChild<QLineEdit *>("fileNameEdit")->text(), "knee.one");
            driver.check("folder", QFileInfo(dialog->directory().path()).canonicalFilePath(),
                         canonicalFolder());
        });
        QVERIFY(!manager->saveImage(manager->index(0, 0))); // cancelled
        QVERIFY2(driver.verify(), driver.report());
    }

    void streamSerializer_writesAndMovesTheCurrentDirectory()
    {
        FakeStreamWriter writer("Writer", "x/1", "one");
        manager->addSerializer(&writer);
        QVERIFY(QDir(folder->path()).mkpath("süb dir"));
        const QString path = inFolder("süb dir/膝 a.one");
        DialogDriver driver;
        driver.expectFileDialog("Save Image as", path);
        QVERIFY(manager->saveImage(image));
        QVERIFY2(driver.verify(), driver.report());
        QCOMPARE(contentOf(path), QByteArray("knee"));
        QCOMPARE(QDir::currentPath(), canonicalFolder() + "/süb dir");
    }

    void streamSerializer_truncatesWhatWasThere()
    {
        FakeStreamWriter writer("Writer", "x/1", "one");
        manager->addSerializer(&writer);
        const QString path = inFolder("a.one");
        QFile old(path);
        QVERIFY(old.open(QIODevice::WriteOnly));
        old.write("much longer than the new content");
        old.close();
        DialogDriver driver;
        driver.expectFileDialog("Save Image as", path);
        driver.expect<QMessageBox>("question about overwriting", [&](QMessageBox *box) {
            driver.click(box, box->button(QMessageBox::Yes)); // the toolkit's own
        });
        QVERIFY(manager->saveImage(image));
        QVERIFY2(driver.verify(), driver.report());
        QCOMPARE(contentOf(path), QByteArray("knee"));
    }

    void chosenFilter_selectsTheSerializer_theNameStays()
    {
        FakeStreamWriter first("First", "x/1", "one");
        FakeStreamWriter second("Second", "x/2", "two");
        second.write = [](ImageObject *, std::ostream &stream) {
            stream << "second";
            return true;
        };
        manager->addSerializer(&first);
        manager->addSerializer(&second);
        DialogDriver driver;
        driver.expectFileDialog("Save Image as", inFolder("a.one"),
                                [&](QFileDialog *dialog) { driver.selectFilter(dialog, "Second (*.two)"); });
        QVERIFY(manager->saveImage(image));
        QVERIFY2(driver.verify(), driver.report());
        QCOMPARE(contentOf(inFolder("a.one")), QByteArray("second"));
    }

    void fileSystemSerializer_getsThePathAndLeavesTheCurrentDirectory()
    {
        FakeFileWriter writer("slic writer", "x/1", "one");
        QString seen;
        writer.write = [&](ImageObject *object, const QString &path) {
            seen = path;
            return object == image;
        };
        manager->addSerializer(&writer);
        int tables = 0;
        manager->setMetricsModelFactory([&](ImageObject *) {
            ++tables;
            return nullptr;
        });
        QVERIFY(QDir(folder->path()).mkpath("sub"));
        DialogDriver driver;
        driver.expectFileDialog("Save Image as", inFolder("sub/ä膝.one"));
        QVERIFY(manager->saveImage(image));
        QVERIFY2(driver.verify(), driver.report());
        QCOMPARE(seen, inFolder("sub/ä膝.one"));
        QCOMPARE(QDir::currentPath(), canonicalFolder());
        QCOMPARE(tables, 0); // no metrics either, whatever the filter
    }

    void fileThatDoesNotOpen_isWarnedAndAskedForAgain()
    {
        FakeStreamWriter writer("Writer", "x/1", "one");
        manager->addSerializer(&writer);
        // A link to itself: not even an administrator can open it.
        QVERIFY(QDir(folder->path()).mkpath("sub"));
        const QString impossible = inFolder("sub/ring.one");
        QVERIFY(QFile::link("ring.one", impossible));
        DialogDriver driver;
        driver.expectFileDialog("Save Image as", impossible);
        driver.expectBox(QMessageBox::Warning, "Tevora", "The selected file could not be opened for writing.",
                         QMessageBox::Ok);
        driver.expectFileDialog("Save Image as", QString(), [&](QFileDialog *dialog) {
            driver.check("current directory", QDir::currentPath(), canonicalFolder() + "/sub");
            driver.check("proposal", dialog->findChild<QLineEdit *>("fileNameEdit")->text(), "ring.one");
        });
        QVERIFY(!manager->saveImage(image));
        QVERIFY2(driver.verify(), driver.report());
    }

    void failure_retry_writesAgainWithoutTheFileDialog()
    {
        FakeStreamWriter writer("Writer", "x/1", "one");
        int attempts = 0;
        writer.write = [&](ImageObject *, std::ostream &stream) {
            stream << ++attempts;
            return attempts == 3;
        };
        manager->addSerializer(&writer);
        const QString path = inFolder("<b>a.one"); // no markup
        DialogDriver driver;
        driver.expectFileDialog("Save Image as", path);
        driver.expect<QMessageBox>("failure", [&](QMessageBox *box) {
            driver.check("informative text", box->informativeText(), question);
            QStringList buttons;
            for (const QAbstractButton *button : box->buttons())
                buttons << button->text().remove('&');
            buttons.sort();
            driver.check("buttons", buttons.join(" | "), "Abort | Different File | Retry");
            driver.check("default", box->defaultButton()->text(), "Different File");
            driver.check("escape", box->escapeButton()->text().remove('&'), "Abort");
            driver.check("role of retry",
                         QString::number(box->buttonRole(DialogDriver::buttonNamed(box, "Retry"))),
                         QString::number(QMessageBox::AcceptRole));
            driver.check("role of different file", QString::number(box->buttonRole(box->defaultButton())),
                         QString::number(QMessageBox::ActionRole));
            driver.check("format", QString::number(box->textFormat()), QString::number(Qt::PlainText));
            driver.click(box, DialogDriver::buttonNamed(box, "Retry"));
        });
        expectFailure(driver, path, "Retry");
        QVERIFY(manager->saveImage(image));
        QVERIFY2(driver.verify(), driver.report());
        QCOMPARE(contentOf(path), QByteArray("3"));
    }

    void failure_differentFile_asksAgain()
    {
        FakeStreamWriter writer("Writer", "x/1", "one");
        bool good = false;
        writer.write = [&](ImageObject *, std::ostream &) { return std::exchange(good, true); };
        manager->addSerializer(&writer);
        DialogDriver driver;
        driver.expectFileDialog("Save Image as", inFolder("a.one"));
        // The default button, by Return.
        driver.expect<QMessageBox>("failure",
                                   [&](QMessageBox *box) { QTest::keyClick(box, Qt::Key_Return); });
        driver.expectFileDialog("Save Image as", inFolder("b.one"), [&](QFileDialog *dialog) {
            driver.check("proposal", dialog->findChild<QLineEdit *>("fileNameEdit")->text(), "a.one");
        });
        QVERIFY(manager->saveImage(image));
        QVERIFY2(driver.verify(), driver.report());
        QVERIFY(QFile::exists(inFolder("b.one")));
    }

    void failure_abortAndEscape_giveUp()
    {
        FakeFileWriter writer("Writer", "x/1", "one");
        writer.write = [](ImageObject *, const QString &) { return false; };
        manager->addSerializer(&writer);
        DialogDriver driver;
        driver.expectFileDialog("Save Image as", inFolder("a.one"));
        expectFailure(driver, inFolder("a.one"), "Abort");
        QVERIFY(!manager->saveImage(image));
        driver.expectFileDialog("Save Image as", inFolder("a.one"));
        driver.expect<QMessageBox>("failure",
                                   [&](QMessageBox *box) { QTest::keyClick(box, Qt::Key_Escape); });
        QVERIFY(!manager->saveImage(image));
        QVERIFY2(driver.verify(), driver.report());
    }

    void fileThatCannotTakeAllBytes_isNoSuccess()
    {
        if (!QFile::exists("/dev/full"))
            QSKIP("no device that is always full");
        FakeStreamWriter writer("Writer", "x/1", "one"); // says true: its bytes are still in the buffer
        manager->addSerializer(&writer);
        const QString full = inFolder("full.one");
        QVERIFY(QFile::link("/dev/full", full));
        DialogDriver driver;
        driver.expectFileDialog("Save Image as", full);
        driver.expect<QMessageBox>(
            "overwrite?", [&](QMessageBox *box) { driver.click(box, box->button(QMessageBox::Yes)); });
        expectFailure(driver, full, "Abort");
        QVERIFY(!manager->saveImage(image));
        QVERIFY2(driver.verify(), driver.report());
    }

    void serializerOfNeitherKind_fails()
    {
        OtherWriter writer("Writer", "x/1", "one");
        manager->addSerializer(&writer);
        DialogDriver driver;
        driver.expectFileDialog("Save Image as", inFolder("a.one"));
        expectFailure(driver, inFolder("a.one"), "Abort");
        QVERIFY(!manager->saveImage(image));
        QVERIFY2(driver.verify(), driver.report());
        QVERIFY(!QFile::exists(inFolder("a.one")));
    }

    void serializerThatThrows_fails()
    {
        FakeStreamWriter writer("Writer", "x/1", "one");
        writer.write = [](ImageObject *, std::ostream &) -> bool { throw std::runtime_error("no memory"); };
        manager->addSerializer(&writer);
        const CapturedOutput output;
        DialogDriver driver;
        driver.expectFileDialog("Save Image as", inFolder("a.one"));
        expectFailure(driver, inFolder("a.one"), "Abort");
        QVERIFY(!manager->saveImage(image));
        QVERIFY2(driver.verify(), driver.report());
    }

    void retryThatDoesNotOpen_asksForAnotherFile()
    {
        FakeStreamWriter writer("Writer", "x/1", "one");
        QVERIFY(QDir(folder->path()).mkpath("sub"));
        writer.write = [&](ImageObject *, std::ostream &) {
            QDir(inFolder("sub")).removeRecursively();
            return false;
        };
        manager->addSerializer(&writer);
        DialogDriver driver;
        driver.expectFileDialog("Save Image as", inFolder("sub/a.one"));
        expectFailure(driver, inFolder("sub/a.one"), "Retry");
        driver.expectBox(QMessageBox::Warning, "Tevora", "The selected file could not be opened for writing.",
                         QMessageBox::Ok);
        driver.expectFileDialog("Save Image as", QString());
        QVERIFY(!manager->saveImage(image));
        QVERIFY2(driver.verify(), driver.report());
    }

    void contours_areFollowedByTheirMetrics()
    {
        FakeStreamWriter writer("Sliced Contours", "x/1", "slic");
        manager->addSerializer(&writer);
        QStandardItemModel model(2, 2);
        model.setItem(0, 0, new QStandardItem("12.5 mm"));
        model.setItem(0, 1, new QStandardItem("12.5 mm^2"));
        model.setItem(1, 0, new QStandardItem("0 mm^3"));
        model.setItem(1, 1, new QStandardItem("unavailable"));
        QList<ImageObject *> asked;
        manager->setMetricsModelFactory([&](ImageObject *object) {
            asked << object;
            return &model;
        });
        QVERIFY(QDir(folder->path()).mkpath("Segmentation slic"));
        QVERIFY(QDir(folder->path()).mkpath("Metrics txt"));
        const QString path = inFolder("Segmentation slic/Segmentation of slice.slic");
        DialogDriver driver;
        driver.expectFileDialog("Save Image as", path);
        QVERIFY(manager->saveImage(image));
        QVERIFY2(driver.verify(), driver.report());
        QCOMPARE(asked, QList<ImageObject *>({image}));
        QCOMPARE(contentOf(path), QByteArray("knee"));
        // Names of folders are replaced too, and so is the "slic" of "slice".
        const QString metrics = inFolder("Metrics txt/Metrics of txte.txt");
        QCOMPARE(contentOf(metrics), QByteArray("12.5\t\00012.52\n\00003\t\0unavailabl\n\0", 29));
        QCOMPARE(QDir::currentPath(), canonicalFolder() + "/Metrics txt");
        QVERIFY(recoveryFiles().isEmpty());
    }

    void metricsFileThatDoesNotOpen_isNotReported()
    {
        FakeStreamWriter writer("Sliced Contours", "x/1", "slic");
        manager->addSerializer(&writer);
        QStandardItemModel model(1, 1);
        manager->setMetricsModelFactory([&](ImageObject *) { return &model; });
        QVERIFY(QDir(folder->path()).mkpath("Segmentation"));
        const QString before = QDir::currentPath();
        DialogDriver driver;
        driver.expectFileDialog("Save Image as", inFolder("Segmentation/a.slic"));
        QVERIFY(manager->saveImage(image));
        QVERIFY2(driver.verify(), driver.report());
        QCOMPARE(QDir::currentPath(), before); // that of the metrics does not exist
    }

    void metricsOverwriteContours_whoseNameHoldsNeitherWord_butACopyIsKept()
    {
        FakeStreamWriter writer("Sliced Contours", "x/1", "slic");
        manager->addSerializer(&writer);
        QStandardItemModel model(1, 1);
        model.setItem(0, 0, new QStandardItem("1 mm"));
        manager->setMetricsModelFactory([&](ImageObject *) { return &model; });
        const QString path = inFolder("by hand.dat");
        for (int save = 1; save <= 2; ++save) {
            QFile::remove(path);
            image->setLabel(QString("contours %1").arg(save));
            const CapturedOutput output;
            DialogDriver driver;
            driver.expectFileDialog("Save Image as", path);
            QVERIFY(manager->saveImage(image));
            QVERIFY2(driver.verify(), driver.report());
            QCOMPARE(contentOf(path), QByteArray("1\n\0", 3));
            const QStringList copies = recoveryFiles();
            QCOMPARE(copies.size(), save); // a new name each time
            QVERIFY(output.standardError().contains(path));
            const QString written = output.standardError().section(" kept in ", 1).trimmed();
            QVERIFY(copies.contains(written));
            QCOMPARE(contentOf(written), QString("contours %1").arg(save).toUtf8());
        }
    }

    void contoursOfWhichNoCopyCanBeKept_areNotOverwritten()
    {
        FakeStreamWriter writer("Sliced Contours", "x/1", "slic");
        manager->addSerializer(&writer);
        QStandardItemModel model(1, 1);
        manager->setMetricsModelFactory([&](ImageObject *) { return &model; });
        const QString data = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
        QDir(data).removeRecursively();
        QVERIFY(QDir().mkpath(QFileInfo(data).path()));
        QFile obstacle(data); // a file where the folder would be
        QVERIFY(obstacle.open(QIODevice::WriteOnly));
        const QString path = inFolder("by hand.dat");
        const CapturedOutput output;
        DialogDriver driver;
        driver.expectFileDialog("Save Image as", path);
        QVERIFY(manager->saveImage(image));
        QVERIFY2(driver.verify(), driver.report());
        QVERIFY(obstacle.remove());
        QCOMPARE(contentOf(path), QByteArray("knee"));
        QVERIFY(output.standardError().contains(path));
    }

    void metricsThatAreTheContoursByAnotherName_keepACopyToo()
    {
        FakeStreamWriter writer("Sliced Contours", "x/1", "slic");
        manager->addSerializer(&writer);
        QStandardItemModel model(1, 1);
        manager->setMetricsModelFactory([&](ImageObject *) { return &model; });
        QVERIFY(QDir(folder->path()).mkpath("Metrics"));
        QVERIFY(QFile::link("Metrics", inFolder("Segmentation")));
        const qsizetype before = recoveryFiles().size();
        const CapturedOutput output;
        DialogDriver driver;
        driver.expectFileDialog("Save Image as", inFolder("Segmentation/a.dat"));
        QVERIFY(manager->saveImage(image));
        QVERIFY2(driver.verify(), driver.report());
        QCOMPARE(recoveryFiles().size(), before + 1);
    }

    void otherFormats_writeNoMetrics()
    {
        FakeStreamWriter writer("Text SLIC", "x/1", "txt"); // "slic" is told from "SLIC"
        manager->addSerializer(&writer);
        int tables = 0;
        manager->setMetricsModelFactory([&](ImageObject *) {
            ++tables;
            return nullptr;
        });
        DialogDriver driver;
        driver.expectFileDialog("Save Image as", inFolder("a.slic"));
        QVERIFY(manager->saveImage(image));
        QVERIFY2(driver.verify(), driver.report());
        QCOMPARE(tables, 0);
    }
};

QTEST_MAIN(ImageManagerSavingTest)
#include "ImageManagerSavingTest.moc"
