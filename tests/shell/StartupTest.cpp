#include "shell/Startup.h"

#include "tests/support/Midnight.h"

#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QTest>
#include <QTimer>

class StartupTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { prepareApplication(); }

private slots:
    static void init() { waitForMidnightToPass(); }

    void windows_belongToTheInstalledDesktopEntry()
    {
        const QString name = QGuiApplication::desktopFileName();
        QVERIFY(!name.isEmpty());
        QVERIFY(QFile::exists(qEnvironmentVariable("TEVORA_SOURCE_DIR") + "/packaging/" + name + ".desktop"));
    }

    void pauseLastsItsTime_andHandlesEvents()
    {
        int ticks = 0;
        QTimer timer;
        connect(&timer, &QTimer::timeout, this, [&ticks] { ++ticks; });
        timer.start(5);
        QElapsedTimer time;
        time.start();
        sleepWithEvents(100);
        QVERIFY(time.elapsed() >= 99); // the day's clock counts whole milliseconds
        QVERIFY(ticks > 1);
    }

    // A pause that ends at once handles no events; the one that passes midnight would last a day otherwise.
    void pauseOfNothing_orPastMidnight_endsAtOnce()
    {
        constexpr int day = 24 * 3600 * 1000; // ms
        bool handled = false;
        QTimer::singleShot(0, this, [&handled] { handled = true; });
        sleepWithEvents(0);
        sleepWithEvents(-1000);
        sleepWithEvents(day - 1000);
        QVERIFY(!handled);
        QCoreApplication::processEvents();
        QVERIFY(handled);
    }
};

QTEST_GUILESS_MAIN(StartupTest)
#include "StartupTest.moc"
