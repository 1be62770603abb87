#include "shell/Startup.h"

#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QTest>
#include <QTimer>

class StartupTest : public QObject
{
    Q_OBJECT

private slots:
    static void initMain() { prepareApplication(); }

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

    void pauseOfNothing_endsAtOnce()
    {
        QElapsedTimer time;
        time.start();
        sleepWithEvents(0);
        sleepWithEvents(-1000);
        QVERIFY(time.elapsed() < 900);
    }
};

QTEST_GUILESS_MAIN(StartupTest)
#include "StartupTest.moc"
