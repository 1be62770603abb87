#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "contours/SlicedContoursSegment.h"
#include "demo/xtest/XTestDevice.h"
#include "recovery/RecoveryFiles.h"
#include "recovery/RecoveryJournal.h"
#include "serialization/formats/SlicSerializer.h"

#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include <fstream>

// Kills the built program after a change, and starts it again.
class RecoveryProgramTest : public QObject
{
    Q_OBJECT

    QTemporaryDir home;
    XTestDevice device;
    static inline const QString fileDialog = "Load images";

    QDir recovery() const { return QDir(home.filePath("MERV/Tevora/recovery")); }
    QStringList sessions() const { return recovery().entryList(QDir::Dirs | QDir::NoDotAndDotDot); }
    QStringList generations() const
    {
        return sessions().isEmpty() ? QStringList()
                                    : QDir(recovery().filePath(sessions()[0])).entryList({"*.slic"});
    }

    static qsizetype windowCount(const QString &title)
    {
        QProcess search;
        search.start("xdotool", {"search", "--onlyvisible", "--name", "^" + title + "$"});
        search.waitForFinished();
        return search.readAllStandardOutput().count('\n');
    }
    static bool waitForWindows(const QString &title, qsizetype count)
    {
        return QTest::qWaitFor([&] { return windowCount(title) == count; }, 20000);
    }

    void start(QProcess &program)
    {
        QProcessEnvironment values = QProcessEnvironment::systemEnvironment();
        values.insert("XDG_CONFIG_HOME", home.path());
        values.insert("XDG_DATA_HOME", home.path());
        program.setProcessEnvironment(values);
        program.start(TEVORA_EXECUTABLE, QStringList());
        QVERIFY(program.waitForStarted());
        QVERIFY(waitForWindows("Tevora", 1));
        QTest::qWait(1200);
    }

    // Until it has the effect that is meant: on a busy machine a key may come before the menu.
    template <class Effect>
    void chooseFromFileMenu(const char *key, Effect &&hasEffect)
    {
        for (int i = 0; i < 5 && !hasEffect(); ++i) {
            device.tapKey("Escape");
            device.pressKey("Alt_L");
            device.tapKey("f");
            device.releaseKey("Alt_L");
            QTest::qWait(500);
            device.tapKey(key);
            if (QTest::qWaitFor(hasEffect, 5000))
                return;
        }
    }

    void open(const QString &path)
    {
        chooseFromFileMenu("o", [] { return windowCount(fileDialog) == 1; });
        QTest::qWait(500);
        device.type(path);
        device.tapKey("Return");
        QVERIFY(waitForWindows(fileDialog, 0));
        QVERIFY(waitForWindows("Tevora", 2)); // the report of what was loaded
        QTest::qWait(500);
        device.tapKey("Return");
        QVERIFY(waitForWindows("Tevora", 1));
        QTest::qWait(500);
    }

    // The list stands at the upper left; the first image is below its tabs.
    void renameFirstImage(const QString &name)
    {
        device.click({85, 86});
        QTest::qWait(300);
        device.tapKey("F2");
        QTest::qWait(300);
        device.type(name);
        device.tapKey("Return");
    }

    QString writeContours() const
    {
        SlicedContoursObject contours("knee");
        contours.newFragment("bone")->newSegment({1, 2}, 3)->addPointBack({4, 5});
        QString path = home.filePath("knee.slic");
        std::ofstream stream(path.toStdString(), std::ios::binary);
        SlicSerializer().serialize(&contours, stream);
        return path;
    }

private slots:
    void killedAfterAChange_theNextStartNamesWhatIsKept()
    {
        QSettings(home.filePath("MERV/Tevora.conf"), QSettings::IniFormat)
            .setValue("MainWindow/Size", QSize(700, 500));
        const QString path = writeContours();
        QProcess program;
        start(program);
        open(path);
        QVERIFY(sessions().isEmpty());
        renameFirstImage("left");
        QTRY_COMPARE_WITH_TIMEOUT(generations().size(), 1, 2 * RecoveryJournal::intervalMs);
        const QString kept = generations()[0];
        QCOMPARE(RecoveryFiles::parse(kept)->label, "left");
        program.kill();
        QVERIFY(program.waitForFinished());

        QProcess next;
        start(next);
        const QString line = "Tevora did not end cleanly. The last contours that were not saved are in " +
                             recovery().filePath(sessions()[0]) + ": " + kept + "\n";
        QVERIFY2(next.readAllStandardOutput().contains(line.toLocal8Bit()), qPrintable(line));
        // It opens as any other file.
        open(recovery().filePath(sessions()[0]) + '/' + kept);
        chooseFromFileMenu("x", [&next] { return next.state() == QProcess::NotRunning; });
        QCOMPARE(next.state(), QProcess::NotRunning);
        QCOMPARE(next.exitCode(), 0);
        const QSettings settings(home.filePath("MERV/Tevora.conf"), QSettings::IniFormat);
        QCOMPARE(settings.value("ImageManager/Files/size").toInt(), 1);
    }
};

QTEST_MAIN(RecoveryProgramTest)
#include "RecoveryProgramTest.moc"
