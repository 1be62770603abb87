#include "shell/Startup.h"

#include "shell/MainWindow.h"
#include "shell/TevoraSplashScreen.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/Midnight.h"
#include "tests/support/PrivateSettings.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QImage>
#include <QPainter>
#include <QTest>
#include <QTimer>

#include <iterator>

namespace {

struct Step
{
    float progress;
    const char *text;
};

// The steps of a start in English. The translations beside this program have the last text in both files, the
// one before it in the toolkit's only, and the German ones too, which are shown before.
constexpr Step steps[] = {{0.0f, ""}, // the bare splash screen
                          {0.0f, "Lade ..."},
                          {0.1f, "Lade Sprachunterstützung ..."},
                          {0.2f, "Installiere Sprachunterstützung (englisch) ..."},
                          {0.4f, "the toolkit's preparing"},
                          {1.0f, "the program's end"}};

// Paints what any splash screen shows.
class SplashPainter : public TevoraSplashScreen
{
public:
    static QImage painted(TevoraSplashScreen &splash)
    {
        QImage image(640, 480, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        (splash.*&SplashPainter::drawContents)(&painter);
        return image;
    }
};

} // namespace

// Starts the program once and looks on. The offscreen platform shows each window at once.
class ProgramStartTest : public QObject
{
    Q_OBJECT

public:
    static void initMain()
    {
        static const PrivateSettings settings;
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }

    bool eventFilter(QObject *object, QEvent *event) override
    {
        auto *splash = qobject_cast<TevoraSplashScreen *>(object);
        if (splash != nullptr && event->type() == QEvent::Paint)
            keep(SplashPainter::painted(*splash));
        if (qobject_cast<MainWindow *>(object) != nullptr && event->type() == QEvent::Show)
            windowTime = time.elapsed();
        return false;
    }

private:
    static inline ProgramStartTest *instance = nullptr;
    QElapsedTimer time;
    QList<QImage> pictures; // of the splash screen, without repetitions
    QList<qint64> times;    // of the pictures, ms
    qint64 windowTime = 0;  // of the main window, ms
    QStringList texts;      // of the pictures
    int result = -1;

    void keep(const QImage &picture)
    {
        if (!pictures.empty() && pictures.back() == picture)
            return;
        pictures << picture;
        times << time.elapsed();
    }

    // While there is an application, for its fonts.
    void readPictures()
    {
        QList<QImage> known;
        TevoraSplashScreen splash;
        for (const Step &step : steps) {
            splash.setProgress(step.progress, step.text);
            known << SplashPainter::painted(splash);
        }
        for (const QImage &picture : pictures) {
            const auto index = known.indexOf(picture);
            texts << (index < 0 ? "none of the steps" : steps[index].text);
        }
    }

private slots:
    void initTestCase()
    {
        waitForMidnightToPass();
        const CapturedOutput output;
        instance = this;
        qAddPreRoutine([] { qApp->installEventFilter(instance); });
        int argc = 2;
        char name[] = "tevora";
        char language[] = "--english";
        char *argv[] = {name, language, nullptr};
        time.start();
        result = runApplication(argc, argv, [this] {
            readPictures();
            QTimer::singleShot(0, qApp, [] { QCoreApplication::exit(3); });
        });
    }

    void splash_showsTheSteps_inGermanUntilTheTranslationsAreThere()
    {
        QStringList expected;
        for (const Step &step : steps)
            expected << step.text;
        QCOMPARE(texts, expected);
    }

    // Three messages, and the main window before the last one.
    void eachPauseIsMade()
    {
        constexpr qint64 pause = 299; // ms; the day's clock counts whole milliseconds
        QCOMPARE(times.size(), qsizetype(std::size(steps)));
        for (int step = 1; step <= 3; ++step)
            QVERIFY(times[step + 1] - times[step] >= pause);
        QVERIFY(times[5] - windowTime >= pause);
    }

    void resultOfTheEventLoop_isDropped() { QCOMPARE(result, 0); }
};

QTEST_APPLESS_MAIN(ProgramStartTest)
#include "ProgramStartTest.moc"
