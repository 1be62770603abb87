#include "objects/manager/LoadProgress.h"

#include "Common/Progress.h"
#include "demo/xtest/XTestDevice.h"
#include "objects/manager/ImageManager.h"
#include "tests/manager/Fakes.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/DialogDriver.h"
#include "tests/support/DicomFileBuilder.h"
#include "tests/support/PrivateSettings.h"

#include <QCloseEvent>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QProgressBar>
#include <QProgressDialog>
#include <QPushButton>
#include <QScreen>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>
#include <QVBoxLayout>

#include <algorithm>
#include <atomic>
#include <fstream>
#include <stdexcept>
#include <sys/stat.h>
#include <thread>

namespace {

// After this a test gives up.
constexpr int longestWaitMs = 20000;
constexpr int mostWaits = longestWaitMs; // of a millisecond

qint64 nowMs = 0;  // of the clock that the display is given
qint64 stepMs = 0; // by which each look at the clock advances it

qint64 testClock()
{
    return nowMs += stepMs;
}

// A main window: a label above a line for text, which counts the requests to close it.
class PaintedWindow : public QWidget
{
public:
    PaintedWindow()
    {
        auto *layout = new QVBoxLayout(this);
        layout->addWidget(&label);
        layout->addWidget(&edit);
        label.setAutoFillBackground(true);
        setColor(Qt::blue);
        setGeometry(100, 100, 400, 200);
    }
    void setColor(const QColor &color)
    {
        QPalette palette;
        palette.setColor(QPalette::Window, color);
        label.setPalette(palette);
    }
    // What the screen shows near the upper left corner of the label.
    QColor shownColor() const
    {
        const QPoint place = label.mapToGlobal(QPoint(5, 5));
        return screen()->grabWindow(0, place.x(), place.y(), 1, 1).toImage().pixelColor(0, 0);
    }

    QLabel label;
    QLineEdit edit;
    int closeRequests = 0;

protected:
    void closeEvent(QCloseEvent *event) override
    {
        ++closeRequests;
        event->ignore();
    }
};

QList<QProgressDialog *> progressDialogs()
{
    QList<QProgressDialog *> dialogs;
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (auto *dialog = qobject_cast<QProgressDialog *>(widget))
            dialogs << dialog;
    }
    return dialogs;
}

QString barOf(const QProgressDialog *dialog)
{
    return QString("%1 in %2 to %3").arg(dialog->value()).arg(dialog->minimum()).arg(dialog->maximum());
}

// Lets `ms` pass and reports this much of the work; waits in real time for what the X server sends meanwhile.
void work(qint64 ms, unsigned percent)
{
    nowMs += ms;
    MERV::reportProgress(percent, 100);
}

// Works on until something is so.
template <class Condition>
bool workUntil(const Condition &condition)
{
    for (int i = 0; i < mostWaits && !condition(); ++i) {
        work(100, 50);
        QThread::msleep(1);
    }
    return condition();
}

} // namespace

class LoadProgressTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { static const PrivateSettings settings; }

private:
    QString newFile(const QString &name)
    {
        QFile file(folder->filePath(name));
        return file.open(QIODevice::WriteOnly) && file.write("x") == 1 ? file.fileName() : QString();
    }

    // Loads one file with a reader that does this.
    ImageObject *loadBy(const std::function<void()> &course)
    {
        reader.read = [course](const QString &) {
            course();
            return new FakeImage;
        };
        return manager->loadFile(newFile("knee.x"), nullptr);
    }

    std::unique_ptr<QTemporaryDir> folder;
    std::unique_ptr<ImageManager> manager;
    QStringList calls;
    FakeFileReader reader{"reader", {"x"}, &calls};

private slots:
    void init()
    {
        nowMs = 5000;
        stepMs = 0;
        LoadProgress::setClock(testClock);
        folder = std::make_unique<QTemporaryDir>();
        manager = std::make_unique<ImageManager>(nullptr);
        manager->addUnserializer(&reader);
        reader.read = [](const QString &) { return new FakeImage; };
    }
    void cleanup()
    {
        LoadProgress::setClock(nullptr);
        QDir::setCurrent("/");
        QVERIFY(!LoadProgress::isActive());
        QVERIFY(progressDialogs().isEmpty());
    }

    void loadOfLessThanASecond_showsNothingAndHandlesNoEvents()
    {
        bool handled = false;
        QMetaObject::invokeMethod(
            this, [&] { handled = true; }, Qt::QueuedConnection);
        int shown = 0;
        QVERIFY(loadBy([&] {
            for (unsigned percent = 0; percent < 100; ++percent) {
                work(percent < 99 ? 10 : 9, percent); // up to 999 ms
                shown += static_cast<int>(progressDialogs().size());
            }
        }));
        QCOMPARE(shown, 0);
        QVERIFY(!handled);
        QCoreApplication::processEvents();
        QVERIFY(handled);
    }

    void longerLoad_showsTheNameAndHowFarItIs()
    {
        PaintedWindow window;
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window, longestWaitMs));
        QVERIFY(loadBy([&] {
            work(1000, 25);
            const QList<QProgressDialog *> dialogs = progressDialogs();
            QCOMPARE(dialogs.size(), 1);
            QVERIFY(dialogs[0]->isVisible());
            QCOMPARE(dialogs[0]->windowTitle(), QString("Tevora"));
            QCOMPARE(barOf(dialogs[0]), QString("25 in 0 to 100"));
            QCOMPARE(dialogs[0]->findChildren<QPushButton *>().size(), 0);
            QCOMPARE(dialogs[0]->labelText(), folder->filePath("knee.x"));
            QCOMPARE(dialogs[0]->findChild<QLabel *>()->textFormat(), Qt::PlainText);
            work(49, 60); // too soon for another look at the screen
            QCOMPARE(barOf(dialogs[0]), QString("25 in 0 to 100"));
            work(1, 60);
            QCOMPARE(barOf(dialogs[0]), QString("60 in 0 to 100"));
            QVERIFY(workUntil([&] { return dialogs[0]->windowHandle()->isExposed(); }));
            QVERIFY(window.isActiveWindow());
        }));
        QVERIFY(progressDialogs().isEmpty());
    }

    void longName_isShortenedInTheMiddle()
    {
        const QString longName = QString(200, 'k') + ".x";
        reader.read = [&](const QString &) {
            work(1000, 1);
            const QString text = progressDialogs().value(0)->labelText();
            const QStringList ends = text.split(QChar(0x2026));
            if (ends.size() == 2 && folder->filePath(longName).startsWith(ends[0]) &&
                longName.endsWith(ends[1]) && progressDialogs()[0]->width() < 500)
                return new FakeImage;
            return static_cast<FakeImage *>(nullptr);
        };
        QVERIFY(manager->loadFile(newFile(longName), nullptr) != nullptr);
    }

    void windowThatChanges_isRepaintedMeanwhile()
    {
        PaintedWindow window;
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QTRY_COMPARE(window.shownColor(), QColor(Qt::blue));
        QVERIFY(loadBy([&] {
            work(1500, 10);
            window.setColor(Qt::red);
            QVERIFY(workUntil([&] { return window.shownColor() == QColor(Qt::red); }));
        }));
    }

    void windowThatWasCovered_isRepaintedMeanwhile()
    {
        PaintedWindow window;
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QWidget cover;
        cover.setPalette(QPalette(Qt::green));
        cover.setGeometry(window.frameGeometry().adjusted(-20, -20, 20, 20));
        cover.show();
        QVERIFY(QTest::qWaitForWindowExposed(&cover));
        QTRY_COMPARE(window.shownColor(), QColor(Qt::green));
        QVERIFY(loadBy([&] {
            work(1500, 10);
            cover.hide();
            QVERIFY(workUntil([&] { return window.shownColor() == QColor(Qt::blue); }));
        }));
    }

    void inputOfTheUser_waits()
    {
        PaintedWindow window;
        window.show();
        window.edit.setFocus();
        QVERIFY(QTest::qWaitForWindowActive(&window, longestWaitMs));
        XTestDevice user;
        QVERIFY(loadBy([&] {
            work(1500, 10);
            user.tapKey("k");
            window.setColor(Qt::red); // what comes behind the key is handled
            QVERIFY(workUntil([&] { return window.shownColor() == QColor(Qt::red); }));
            QCOMPARE(window.edit.text(), QString());
        }));
        QTRY_COMPARE(window.edit.text(), QString("k"));
    }

    void requestToCloseAWindow_waits()
    {
        PaintedWindow window;
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        XTestDevice windowManager;
        QVERIFY(loadBy([&] {
            work(1500, 10);
            windowManager.askToClose(window.winId());
            window.setColor(Qt::red);
            QVERIFY(workUntil([&] { return window.shownColor() == QColor(Qt::red); }));
            QCOMPARE(window.closeRequests, 0);
        }));
        QTRY_COMPARE(window.closeRequests, 1);
    }

    void dialogOfTheCommand_isDividedInsteadOfASecondOne()
    {
        QWidget window;
        window.show();
        QProgressDialog progress("Loading data", QString(), 0, 3, &window);
        progress.setWindowTitle("Opening");
        progress.setValue(2);
        QVERIFY(loadBy([&] {
            work(999, 40);
            QVERIFY(!progress.isVisible());
            work(1, 50);
            QVERIFY(progress.isVisible());
            QCOMPARE(progressDialogs(), QList<QProgressDialog *>{&progress});
            QCOMPARE(progress.labelText(), QString("Loading data"));
            QCOMPARE(progress.windowTitle(), QString("Opening"));
            QCOMPARE(barOf(&progress), QString("250 in 0 to 300"));
        }));
        QCOMPARE(barOf(&progress), QString("2 in 0 to 3"));
        progress.setValue(3);
        QVERIFY(!progress.isVisible());
    }

    void drop_dividesTheStepsOfItsDialog()
    {
        QStringList seen;
        reader.read = [&](const QString &) {
            work(1200, 50);
            for (const QProgressDialog *dialog : progressDialogs())
                seen << dialog->labelText() + ": " + barOf(dialog);
            return new FakeImage;
        };
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(newFile("1.x")), QUrl::fromLocalFile(newFile("2.x"))});
        const CapturedOutput output;
        QVERIFY(manager->dropMimeData(&data, Qt::CopyAction, -1, -1, {}));
        QCOMPARE(manager->imageCount(), 2);
        QCOMPARE(seen,
                 QStringList({"Loading images ...: 50 in 0 to 200", "Loading images ...: 150 in 0 to 200"}));
    }

    // Its dialog handles the events of the user when it is given a new value.
    void drop_isCancelledBetweenTwoFilesOnly()
    {
        int loading = 0;
        reader.read = [&](const QString &) {
            ++loading;
            work(1200, 50);
            QTest::mousePress(DialogDriver::buttonNamed(progressDialogs().value(0), "Cancel"),
                              Qt::LeftButton);
            XTestDevice user;
            user.tapKey("space");
            work(100, 60);
            if (progressDialogs()[0]->wasCanceled())
                loading = 100;
            progressDialogs()[0]->cancel();
            work(100, 70);
            return new FakeImage;
        };
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(newFile("1.x")), QUrl::fromLocalFile(newFile("2.x"))});
        const CapturedOutput output;
        QVERIFY(manager->dropMimeData(&data, Qt::CopyAction, -1, -1, {}));
        QCOMPARE(loading, 1);
        QCOMPARE(manager->imageCount(), 1);
    }

    void dropDuringALoad_isRefused()
    {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(newFile("other.x"))});
        bool accepted = true;
        QVERIFY(loadBy([&] { accepted = manager->dropMimeData(&data, Qt::CopyAction, -1, -1, {}); }));
        QVERIFY(!accepted);
        QCOMPARE(manager->imageCount(), 1);
    }

    void reportsFromHandledEvents_doNotCount()
    {
        QVERIFY(loadBy([&] {
            work(1000, 10);
            int inside = 0;
            QMetaObject::invokeMethod(
                this,
                [&] {
                    ++inside;
                    const MERV::ProgressStage stage(0.9);
                    work(5000, 90);
                },
                Qt::QueuedConnection);
            work(100, 20);
            QCOMPARE(inside, 1);
            QCOMPARE(barOf(progressDialogs().value(0)), QString("20 in 0 to 100"));
        }));
    }

    void timeThatTheUserTakesForAnAnswer_doesNotCount()
    {
        QVERIFY(loadBy([&] {
            work(1200, 10);
            QCOMPARE(progressDialogs().size(), 1);
            {
                const MERV::ProgressPause pause;
                QVERIFY(progressDialogs().isEmpty());
                nowMs += 60000;
            }
            work(999, 20);
            QVERIFY(progressDialogs().isEmpty());
            work(1, 30);
            QCOMPARE(barOf(progressDialogs().value(0)), QString("30 in 0 to 100"));
        }));
    }

    void readersThatFailOrThrow_leaveNoDialog()
    {
        reader.read = [](const QString &) {
            work(2000, 10);
            return nullptr;
        };
        QCOMPARE(manager->loadFile(newFile("a.x"), nullptr), nullptr);
        QVERIFY(progressDialogs().isEmpty());
        const CapturedOutput output;
        reader.read = [](const QString &) -> ImageObject * {
            const MERV::ProgressStage stage(0.5);
            work(2000, 10);
            throw std::runtime_error("bad file");
        };
        QCOMPARE(manager->loadFile(newFile("a.x"), nullptr), nullptr);
        QVERIFY(progressDialogs().isEmpty());
    }

    void severalFiles_countAsOneLoad()
    {
        QStringList seen;
        reader.read = [&](const QString &) {
            work(600, 50);
            for (const QProgressDialog *dialog : progressDialogs())
                seen << QFileInfo(dialog->labelText()).fileName() + ": " + barOf(dialog);
            return new FakeImage;
        };
        newFile("1.x");
        newFile("2.x");
        QDir::setCurrent(folder->path());
        DialogDriver driver;
        driver.expectFileDialog("Load images", "\"1.x\" \"2.x\"");
        driver.expectBox(QMessageBox::Information, "Tevora", "2 image(s) have been loaded.", QMessageBox::Ok);
        QCOMPARE(manager->loadInteractively(), 2);
        QVERIFY2(driver.verify(), driver.report());
        QCOMPARE(seen, QStringList("2.x: 75 in 0 to 100"));
    }

    void exitDuringALoad_endsTheProgramAfterIt()
    {
        bool loaded = false;
        QTimer::singleShot(0, this, [&] {
            loaded = loadBy([&] {
                         QMetaObject::invokeMethod(
                             qApp, [] { QCoreApplication::exit(7); }, Qt::QueuedConnection);
                         work(1500, 10);
                         work(1500, 20);
                     }) != nullptr;
        });
        QCOMPARE(QApplication::exec(), 7);
        QVERIFY(loaded);
    }

    // The export holds the voxels, which the paint event of a view would wait for; the other windows go on.
    void export_showsTheFolderAndKeepsTheWindowsPainted()
    {
        const std::unique_ptr<MervImageObject> volume(newVolume(4, 4, 3));
        const QString target = folder->path();
        // Nobody reads what is written, until the test does.
        const QByteArray pipe = QFile::encodeName(target + "/slice0001.dcm");
        QCOMPARE(mkfifo(pipe.constData(), 0600), 0);
        PaintedWindow window;
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        stepMs = 200;
        QString shown;
        bool repainted = false;
        QElapsedTimer waited;
        waited.start();
        std::jthread drain;
        QTimer timer;
        connect(&timer, &QTimer::timeout, this, [&] {
            const QList<QProgressDialog *> dialogs = progressDialogs();
            if (dialogs.isEmpty() || drain.joinable())
                return;
            window.setColor(Qt::red);
            repainted = window.shownColor() == QColor(Qt::red);
            shown = dialogs[0]->labelText() + ": " + barOf(dialogs[0]);
            // The tenth behind the mirroring, and a third of the eight tenths that writing takes.
            const bool expected = repainted && shown == target + ": 36 in 0 to 100";
            if (!expected && waited.elapsed() < longestWaitMs)
                return;
            drain = std::jthread([&pipe] { std::ifstream(pipe.constData()).ignore(1 << 30); });
            volume->displaySlice(0); // waits for the end, as painting would
        });
        timer.start(5);
        QVERIFY(manager->saveDicomSeries(volume.get(), target));
        QVERIFY(drain.joinable());
        drain.join();
        QVERIFY(repainted);
        QCOMPARE(shown, target + ": 36 in 0 to 100");
        QVERIFY(QFileInfo::exists(target + "/slice0002.dcm"));
    }

    // Volumes are written apart; everything else, which other objects may belong to, in this thread.
    void save_ofAVolumeShowsTheFile_data()
    {
        QTest::addColumn<bool>("isVolume");
        QTest::newRow("volume") << true;
        QTest::newRow("other") << false;
    }
    void save_ofAVolumeShowsTheFile()
    {
        QFETCH(bool, isVolume);
        const std::unique_ptr<ImageObject> image(isVolume ? static_cast<ImageObject *>(newVolume(4, 4, 3))
                                                          : new FakeImage);
        stepMs = 200;
        std::atomic<bool> written{false};
        QStringList shown;
        QTimer timer;
        connect(&timer, &QTimer::timeout, this, [&] {
            for (const QProgressDialog *dialog : progressDialogs())
                shown << dialog->labelText() + ": " + barOf(dialog);
            written = !shown.isEmpty() && shown.last().contains(": 75 ");
        });
        timer.start(5);
        FakeFileWriter writer("writer", "application/x", "x");
        writer.write = [&](ImageObject *, const QString &) {
            if ((QThread::currentThread() != thread()) != isVolume)
                return false;
            for (int i = 0; isVolume && !written && i < mostWaits; ++i) {
                MERV::reportProgress(3, 4);
                QThread::msleep(1);
            }
            return true;
        };
        manager->addSerializer(&writer);
        const QString path = folder->filePath("saved.x");
        DialogDriver driver;
        driver.expectFileDialog("Save Image as", path);
        QVERIFY(manager->saveImage(image.get()));
        QVERIFY2(driver.verify(), driver.report());
        QCOMPARE(shown.isEmpty(), !isVolume);
        if (isVolume)
            QCOMPARE(shown.last(), path + ": 75 in 0 to 100");
    }

    void save_thatThrowsInItsThread_fails()
    {
        const std::unique_ptr<MervImageObject> image(newVolume(4, 4, 3));
        FakeFileWriter writer("writer", "application/x", "x");
        writer.write = [](ImageObject *, const QString &) -> bool { throw std::runtime_error("no place"); };
        manager->addSerializer(&writer);
        DialogDriver driver;
        driver.expectFileDialog("Save Image as", folder->filePath("saved.x"));
        driver.expect<QMessageBox>(
            "failure", [&](QMessageBox *box) { driver.click(box, box->button(QMessageBox::Abort)); });
        const CapturedOutput output;
        QVERIFY(!manager->saveImage(image.get()));
        QVERIFY2(driver.verify(), driver.report());
        QCOMPARE(output.standardError(), QString("no place\n"));
    }

    // With a clock that runs by itself: which dialogs come, and what they say, while a folder is counted,
    // loaded, and loaded with questions.
    void seriesOfAFolder_showTheirCourse()
    {
        const TemporaryFolder series;
        for (int i = 0; i < 40; ++i)
            dicomSlice(2, 2, {1, 2, 3, 4}, i).write(series / (std::to_string(i) + ".dcm"));
        const QString path = QString::fromStdString(series.string());
        stepMs = 200;
        class Watcher : public QObject
        {
        public:
            bool eventFilter(QObject *object, QEvent *event) override
            {
                auto *dialog = qobject_cast<QProgressDialog *>(object);
                if (dialog == nullptr || event->type() != QEvent::Show)
                    return false;
                shown << dialog->labelText();
                values << dialog->value();
                connect(dialog->findChild<QProgressBar *>(), &QProgressBar::valueChanged, this,
                        [this](int value) { values << value; });
                return false;
            }
            QStringList shown;
            QList<int> values;
        } watcher;
        qApp->installEventFilter(&watcher);
        const CapturedOutput output;
        QCOMPARE(manager->countDicomSeries(path), 1);
        QCOMPARE(watcher.shown, QStringList(path));
        QVERIFY(watcher.values.size() > 1);
        QVERIFY(std::is_sorted(watcher.values.begin(), watcher.values.end()));
        watcher.values.clear();
        QCOMPARE(manager->loadDicomSeries(path).size(), 1);
        QCOMPARE(watcher.shown, QStringList({path, path}));
        QVERIFY(watcher.values.size() > 10);
        QVERIFY(std::is_sorted(watcher.values.begin(), watcher.values.end()));
        QVERIFY(watcher.values.last() > 95);
        qApp->removeEventFilter(&watcher);
    }
};

QTEST_MAIN(LoadProgressTest)
#include "LoadProgressTest.moc"
