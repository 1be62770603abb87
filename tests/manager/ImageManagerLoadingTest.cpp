#include "objects/manager/ImageManager.h"

#include "tests/manager/Fakes.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/DialogDriver.h"
#include "tests/support/PrivateSettings.h"

#include <QDir>
#include <QFile>
#include <QLabel>
#include <QMimeData>
#include <QProgressDialog>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

#include <cstring>
#include <stdexcept>
#include <sys/stat.h>

namespace {

const QString noneText("There was no appropriate unserializer.");
const QString
    failedText("The following unserializer(s) assured their capability to unserialize this file, but they "
               "failed to do so: ");

} // namespace

class ImageManagerLoadingTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { static const PrivateSettings settings; }

private:
    QString newFile(const QString &name, const QByteArray &bytes)
    {
        QFile file(folder->filePath(name));
        const bool written = file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
        return written ? file.fileName() : QString();
    }
    QString canonical(const QString &path) const { return QFileInfo(path).canonicalFilePath(); }

    // A manager with the readers "S" and "T" for streams and "F" and "G" for files, registered as F, S, G, T.
    void setUpReaders()
    {
        manager = std::make_unique<ImageManager>(nullptr);
        manager->addUnserializer(&f);
        manager->addUnserializer(&s);
        manager->addUnserializer(&g);
        manager->addUnserializer(&t);
    }
    template <class... Readers>
    static void refuseAll(Readers &...readers)
    {
        ((readers.accept = [](const auto &) { return false; }), ...);
    }

    std::unique_ptr<QTemporaryDir> folder;
    std::unique_ptr<ImageManager> manager;
    QStringList calls;
    FakeFileReader f{"F", {"ff"}, &calls}, g{"G", {"gg"}, &calls};
    FakeStreamReader s{"S", {"ss"}, &calls}, t{"T", {"tt"}, &calls};

private slots:
    void init()
    {
        QDir::setCurrent("/");
        folder = std::make_unique<QTemporaryDir>();
        calls.clear();
        for (FakeFileReader *reader : {&f, &g}) {
            reader->accept = [](const QString &) { return true; };
            reader->read = [](const QString &) { return nullptr; };
        }
        for (FakeStreamReader *reader : {&s, &t}) {
            reader->accept = [](const std::string &) { return true; };
            reader->read = [](std::istream &) { return nullptr; };
        }
        setUpReaders();
    }
    void cleanup()
    {
        manager.reset();
        QDir::setCurrent("/");
    }

    void loadFile_asksStreamReadersBeforeFileReaders()
    {
        QString error("untouched");
        QCOMPARE(manager->loadFile(newFile("a.x", "abc"), &error), nullptr);
        QCOMPARE(calls,
                 QStringList({"S:can", "S:read", "T:can", "T:read", "F:can", "F:read", "G:can", "G:read"}));
        QCOMPARE(error, failedText + "S, T, F, G");
        QCOMPARE(manager->imageCount(), 0);
    }

    void loadFile_stopsAtTheFirstSuccess()
    {
        auto *image = new FakeImage("read");
        s.accept = [](const std::string &) { return false; };
        t.read = [&](std::istream &) { return image; };
        QString error("untouched");
        QCOMPARE(manager->loadFile(newFile("a.x", "abc"), &error), image);
        QCOMPARE(calls, QStringList({"S:can", "T:can", "T:read"}));
        QCOMPARE(manager->image(0), image);
        QCOMPARE(error, QString("untouched"));
    }

    void loadFile_aFailingReaderDoesNotEndTheSearch()
    {
        auto *image = new FakeImage("read");
        f.accept = [](const QString &) { return false; };
        g.read = [&](const QString &) { return image; };
        QCOMPARE(manager->loadFile(newFile("a.x", "abc"), nullptr), image);
        QCOMPARE(calls, QStringList({"S:can", "S:read", "T:can", "T:read", "F:can", "G:can", "G:read"}));
    }

    void loadFile_thatNobodyTakes()
    {
        refuseAll(f, g);
        refuseAll(s, t);
        QString error;
        QCOMPARE(manager->loadFile(newFile("a.x", "abc"), &error), nullptr);
        QCOMPARE(error, noneText);
        QCOMPARE(manager->loadFile(newFile("a.x", "abc"), nullptr), nullptr);
    }

    void loadFile_thatCannotBeOpened_hasTheSameMessage()
    {
        refuseAll(f, g);
        QString error;
        QCOMPARE(manager->loadFile(folder->filePath("missing"), &error), nullptr);
        QCOMPARE(calls, QStringList({"F:can", "G:can"}));
        QCOMPARE(error, noneText);
        QCOMPARE(QDir::currentPath(), QString("/"));
    }

    void loadFile_readFromAPathThatDoesNotOpen_leavesTheTextAboutOpening()
    {
        auto *image = new FakeImage;
        f.read = [&](const QString &) { return image; };
        QString error;
        QCOMPARE(manager->loadFile(folder->path(), &error), image);
        QCOMPARE(error, QString("The file could not be opened for reading."));
    }

    void loadFile_ofADirectory_asksFileReadersOnly()
    {
        QString error;
        QCOMPARE(manager->loadFile(folder->path(), &error), nullptr);
        QCOMPARE(calls, QStringList({"F:can", "F:read", "G:can", "G:read"}));
        QCOMPARE(error, failedText + "F, G");
        QCOMPARE(QDir::currentPath(), QString("/")); // did not move
    }

    void loadFile_ofAPipe_doesNotWaitForAWriter()
    {
        refuseAll(f, g);
        const QString pipe = folder->filePath("pipe");
        QCOMPARE(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        QCOMPARE(manager->loadFile(pipe, nullptr), nullptr);
        QCOMPARE(calls, QStringList({"F:can", "G:can"}));
    }

    void loadFile_movesTheCurrentDirectory_alsoWhenItFails()
    {
        manager->loadFile(newFile("a.x", "abc"), nullptr);
        QCOMPARE(QDir::currentPath(), canonical(folder->path()));
    }

    void loadFile_withARelativePath_holdsAfterTheDirectoryMoved()
    {
        QVERIFY(QDir(folder->path()).mkpath("sub"));
        newFile("sub/a.x", "abc");
        QDir::setCurrent(folder->path());
        QString seen;
        f.read = [&](const QString &path) {
            seen = path;
            return nullptr;
        };
        manager->loadFile("sub/a.x", nullptr);
        QCOMPARE(canonical(seen), canonical(folder->filePath("sub/a.x")));
        QCOMPARE(QDir::currentPath(), canonical(folder->filePath("sub")));
    }

    void loadFile_pathWithBlanksUmlautsAndOtherScripts_reachesAllReaders()
    {
        const QString path = newFile("Knie äöü 膝 \U0001F9B5.x", "abc");
        std::string content;
        s.read = [&](std::istream &stream) {
            std::getline(stream, content);
            return nullptr;
        };
        manager->loadFile(path, nullptr);
        QCOMPARE(content, std::string("abc"));
        QCOMPARE(f.askedPath, path);
    }

    void probe_isTheFirst1024BytesFilledUpWithZeros()
    {
        manager->loadFile(newFile("long", QByteArray(1023, 'a') + "bc"), nullptr);
        std::string expected(1023, 'a');
        expected += 'b';
        QCOMPARE(s.head, expected);
        manager->loadFile(newFile("short", "SLIC"), nullptr);
        expected = "SLIC";
        expected.resize(1024);
        QCOMPARE(s.head, expected);
        manager->loadFile(newFile("empty", ""), nullptr); // nothing of the former file is left
        QCOMPARE(s.head, std::string(1024, '\0'));
    }

    void stream_standsAtTheStartAndIsNotRewoundBetweenReaders()
    {
        std::string first, second;
        s.read = [&](std::istream &stream) {
            stream >> first;
            return nullptr;
        };
        t.read = [&](std::istream &stream) {
            stream >> second;
            return nullptr;
        };
        manager->loadFile(newFile("a", "one two"), nullptr);
        QCOMPARE(first, std::string("one"));
        QCOMPARE(second, std::string("two"));
    }

    void readerThatThrows_countsAsFailed()
    {
        const CapturedOutput output;
        s.read = [](std::istream &) -> ImageObject * { throw std::bad_alloc(); };
        f.read = [](const QString &) -> ImageObject * { throw std::runtime_error("bad file"); };
        refuseAll(t);
        refuseAll(g);
        QString error;
        QCOMPARE(manager->loadFile(newFile("a", "x"), &error), nullptr);
        QCOMPARE(error, failedText + "S, F");
    }

    void failedLoad_addsNeitherImagesNorColumns()
    {
        manager->loadFile(newFile("a", "x"), nullptr);
        QCOMPARE(manager->rowCount(), 0);
        QCOMPARE(manager->columnCount(), 1);
    }

    void emptyPath_failsSilently()
    {
        refuseAll(f, g);
        QString error;
        QCOMPARE(manager->loadFile(QString(), &error), nullptr);
        QCOMPARE(error, noneText);
        QCOMPARE(f.askedPath, QString());
    }

    void loadInteractively_withoutReaders()
    {
        ImageManager empty(nullptr);
        DialogDriver driver;
        driver.expectBox(QMessageBox::Critical, "Tevora",
                         "No image can be loaded due to no unserializer being installed.", QMessageBox::Ok);
        QCOMPARE(empty.loadInteractively(), 0);
        QVERIFY2(driver.verify(), driver.report());
    }

    void loadInteractively_cancelled_reportsNothing()
    {
        DialogDriver driver;
        driver.expectFileDialog("Load images", QString());
        QCOMPARE(manager->loadInteractively(), 0);
        QVERIFY2(driver.verify(), driver.report());
        QVERIFY(calls.isEmpty());
    }

    void loadInteractively_startsHereWithAllFiltersAndTheirPatternsMatch()
    {
        newFile("one.ff", "x");
        newFile("two.gg", "x");
        newFile("three.other", "x");
        FakeFileReader h("H", {"", "ff"}, &calls);
        manager->addUnserializer(&h);
        QDir::setCurrent(folder->path());
        const QString here = canonical(folder->path());
        DialogDriver driver;
        driver.expectFileDialog("Load images", QString(), [&](QFileDialog *dialog) {
            // Qt hides the last group in brackets, which repeats the patterns in its own manner.
            driver.check("filters", DialogDriver::shownFilters(dialog).join("\n"),
                         "all supported files (*; *.ff; *.ff; *.gg; *.ss; *.tt)\n"
                         "F (*.ff)\nS (*.ss)\nG (*.gg)\nT (*.tt)\nH (*; *.ff)\nall files (*)");
            driver.check("directory", canonical(dialog->directory().path()), here);
            driver.check("mode", QString::number(dialog->fileMode()),
                         QString::number(QFileDialog::ExistingFiles));
            driver.selectFilter(dialog, "G (*.gg)");
            auto *view = dialog->findChild<QAbstractItemView *>("listView");
            const auto shown = [view] {
                QStringList names;
                for (int i = 0; i < view->model()->rowCount(view->rootIndex()); ++i)
                    names << view->model()->index(i, 0, view->rootIndex()).data().toString();
                return names.join(" ");
            };
            QTRY_COMPARE(shown(), QString("two.gg"));
            driver.selectFilter(dialog, "H (*; *.ff)");
            QTRY_COMPARE(shown(), QString("one.ff three.other two.gg"));
        });
        QCOMPARE(manager->loadInteractively(), 0);
        QVERIFY2(driver.verify(), driver.report());
    }

    void loadInteractively_allLoaded_isInformed()
    {
        f.read = [](const QString &) { return new FakeImage; };
        refuseAll(s, t);
        const QString path = newFile("a.ff", "x");
        DialogDriver driver;
        driver.expectFileDialog("Load images", path);
        driver.expectBox(QMessageBox::Information, "Tevora", "1 image(s) have been loaded.", QMessageBox::Ok);
        QCOMPARE(manager->loadInteractively(), 1);
        QVERIFY2(driver.verify(), driver.report());
        QCOMPARE(manager->imageCount(), 1);
    }

    void loadInteractively_someFailed_isWarned()
    {
        refuseAll(s, t);
        refuseAll(g);
        f.accept = [](const QString &path) { return !path.endsWith("3"); };
        f.read = [](const QString &path) { return path.endsWith("1") ? new FakeImage : nullptr; };
        const QString folderPath = folder->path();
        newFile("<i>1", "x");
        newFile("<i>2", "x");
        newFile("<i>3", "x");
        QDir::setCurrent(folderPath);
        DialogDriver driver;
        driver.expectFileDialog("Load images", "\"<i>1\" \"<i>2\" \"<i>3\"");
        driver.expect<QMessageBox>("report", [&](QMessageBox *box) {
            driver.check("title", box->windowTitle(), "Tevora");
            driver.check(
                "text", box->text(),
                "1 image(s) have been successfully loaded, whereas with the following 2 image(s), errors "
                "occured while attempting to load them:");
            driver.check("details", box->informativeText(),
                         folderPath + "/<i>2 (reason: " + failedText + "F)" + QChar(0x2029) + folderPath +
                             "/<i>3 (reason: " + noneText + ")");
            // Names of files are no markup.
            for (const QLabel *label : box->findChildren<QLabel *>()) {
                if (!label->text().isEmpty())
                    driver.check("format", QString::number(label->textFormat()),
                                 QString::number(Qt::PlainText));
            }
            driver.check("icon", QString::number(box->icon()), QString::number(QMessageBox::Warning));
            driver.check("buttons", QString::number(box->standardButtons()),
                         QString::number(QMessageBox::Ok));
            driver.click(box, box->button(QMessageBox::Ok));
        });
        QCOMPARE(manager->loadInteractively(), 1);
        QVERIFY2(driver.verify(), driver.report());
    }

    void loadInteractively_allFailed_isWarned()
    {
        refuseAll(s, t);
        refuseAll(g, f);
        const QString path = newFile("a %2.ff", "x");
        DialogDriver driver;
        driver.expectFileDialog("Load images", path);
        driver.expect<QMessageBox>("report", [&](QMessageBox *box) {
            driver.check("text", box->text(),
                         "Errors occured while attempting to load the following 1 image(s):");
            driver.check("details", box->informativeText(), path + " (reason: " + noneText + ")");
            driver.click(box, box->button(QMessageBox::Ok));
        });
        QCOMPARE(manager->loadInteractively(), 0);
        QVERIFY2(driver.verify(), driver.report());
    }

    void drop_withoutUrls_isRefused()
    {
        QMimeData data;
        data.setData(ImageManager::indexMimeType(), "x");
        QVERIFY(!manager->dropMimeData(&data, Qt::CopyAction, -1, -1, QModelIndex()));
        data.setUrls({}); // a list, with nothing in it
        QVERIFY(data.hasUrls());
        QVERIFY(!manager->dropMimeData(&data, Qt::CopyAction, -1, -1, QModelIndex()));
        QVERIFY(calls.isEmpty());
    }

    void drop_loadsEachUrlAndSaysNothingOfFailures()
    {
        refuseAll(s, t);
        refuseAll(g);
        f.accept = [](const QString &path) { return path.endsWith(".ff"); };
        f.read = [](const QString &) { return new FakeImage; };
        const QUrl good = QUrl::fromLocalFile(newFile("a b.ff", "x"));
        const QUrl bad = QUrl::fromLocalFile(newFile("c.bad", "x"));
        const QUrl remote("http://example.org/d.ff");
        QMimeData data;
        data.setUrls({good, bad, remote, good});
        DialogDriver driver; // no box may come; the progress dialog is not answered
        driver.expect<QProgressDialog>("progress", [&](QProgressDialog *progress) {
            driver.check("title", progress->windowTitle(), "Tevora");
            driver.check("label", progress->labelText(), "Loading images ...");
            driver.check("range", QString::number(progress->maximum()), "4");
            driver.check("modality", QString::number(progress->windowModality()),
                         QString::number(Qt::WindowModal));
        });
        const CapturedOutput output;
        QVERIFY(manager->dropMimeData(&data, Qt::IgnoreAction, 5, 7, QModelIndex()));
        QCOMPARE(manager->imageCount(), 2);
        QCOMPARE(output.standardOutput(),
                 QStringList({good.toString(), bad.toString(), remote.toString(), good.toString(), ""})
                     .join("\n"));
        QCOMPARE(f.askedPath, good.toLocalFile());
    }

    void drop_stopsWhenCancelled()
    {
        refuseAll(s, t);
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(newFile("1.ff", "x")), QUrl::fromLocalFile(newFile("2.ff", "x")),
                      QUrl::fromLocalFile(newFile("3.ff", "x"))});
        f.read = [this](const QString &) {
            if (calls.filter("F:read").size() == 2) {
                for (QWidget *widget : QApplication::topLevelWidgets()) {
                    if (auto *progress = qobject_cast<QProgressDialog *>(widget))
                        QTest::mouseClick(DialogDriver::buttonNamed(progress, "Cancel"), Qt::LeftButton);
                }
            }
            return new FakeImage;
        };
        const CapturedOutput output;
        QVERIFY(manager->dropMimeData(&data, Qt::CopyAction, -1, -1, QModelIndex()));
        QCOMPARE(manager->imageCount(), 2);
    }

    void drop_stopsWhenTheProgramExits()
    {
        refuseAll(s, t);
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(newFile("1.ff", "x")), QUrl::fromLocalFile(newFile("2.ff", "x"))});
        f.read = [](const QString &) {
            QCoreApplication::exit(0);
            return new FakeImage;
        };
        const CapturedOutput output;
        QTimer::singleShot(0, manager.get(),
                           [&] { manager->dropMimeData(&data, Qt::CopyAction, -1, -1, {}); });
        QCOMPARE(QApplication::exec(), 0);
        QCOMPARE(manager->imageCount(), 1);
    }

    void drop_loadsNothingWhenTheExitIsDueAlready()
    {
        refuseAll(s, t);
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(newFile("1.ff", "x")), QUrl::fromLocalFile(newFile("2.ff", "x"))});
        f.read = [](const QString &) { return new FakeImage; };
        const CapturedOutput output;
        QTimer::singleShot(0, manager.get(), [&] {
            QMetaObject::invokeMethod(
                qApp, [] { QCoreApplication::exit(0); }, Qt::QueuedConnection);
            manager->dropMimeData(&data, Qt::CopyAction, -1, -1, {});
        });
        QCOMPARE(QApplication::exec(), 0);
        QCOMPARE(manager->imageCount(), 0);
    }

    // As by the menu: the exit is one of the events that are handled between two files.
    void drop_stopsWhenTheUserExitsBetweenTwoFiles()
    {
        refuseAll(s, t);
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(newFile("1.ff", "x")), QUrl::fromLocalFile(newFile("2.ff", "x")),
                      QUrl::fromLocalFile(newFile("3.ff", "x"))});
        f.read = [](const QString &) {
            QMetaObject::invokeMethod(
                qApp, [] { QCoreApplication::exit(0); }, Qt::QueuedConnection);
            return new FakeImage;
        };
        const CapturedOutput output;
        QTimer::singleShot(0, manager.get(),
                           [&] { manager->dropMimeData(&data, Qt::CopyAction, -1, -1, {}); });
        QCOMPARE(QApplication::exec(), 0);
        QCOMPARE(manager->imageCount(), 1);
    }
};

QTEST_MAIN(ImageManagerLoadingTest)
#include "ImageManagerLoadingTest.moc"
