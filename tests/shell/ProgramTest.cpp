#include "demo/xtest/XTestDevice.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

// Starts the built program as a user would, in a home folder of its own, and works it through the X server.
class ProgramTest : public QObject
{
    Q_OBJECT

    QTemporaryDir home;
    XTestDevice device;

    QProcessEnvironment environment() const
    {
        QProcessEnvironment values = QProcessEnvironment::systemEnvironment();
        values.insert("XDG_CONFIG_HOME", home.path());
        values.insert("XDG_DATA_HOME", home.path());
        values.insert("LC_ALL", "C.UTF-8"); // no language of its own: the texts are those of the sources
        return values;
    }

    static bool windowIsThere()
    {
        QProcess search;
        search.start("xdotool", {"search", "--onlyvisible", "--name", "^Tevora$"});
        return search.waitForFinished() && !search.readAllStandardOutput().trimmed().isEmpty();
    }

    // Starts the program and waits for its main window, not for the splash screen.
    void start(QProcess &program, const QString &executable, const QStringList &arguments)
    {
        QElapsedTimer time;
        time.start();
        program.setProcessEnvironment(environment());
        program.start(executable, arguments);
        QVERIFY(program.waitForStarted());
        // Seen once: it may be gone again for a moment while the window manager frames it.
        QVERIFY(QTest::qWaitFor(windowIsThere, 20000));
        // Three of the four pauses of 300 ms lie before the window.
        QVERIFY(time.elapsed() >= 900);
        QTest::qWait(1200);
    }

    void altKey(const char *key)
    {
        device.pressKey("Alt_L");
        device.tapKey(key);
        device.releaseKey("Alt_L");
        QTest::qWait(200);
    }

    static QString executable() { return QString(TEVORA_EXECUTABLE); }
    QString settingsFile() const { return home.path() + "/MERV/Tevora.conf"; }

private slots:
    void init() { QFile::remove(settingsFile()); }

    void exitFromTheMenu_endsWithSuccessAndWritesTheSettings()
    {
        QProcess program;
        start(program, executable(), {"no-such-file.mhd", "--unknown"});
        altKey("f");
        device.tapKey("x");
        QVERIFY(program.waitForFinished(10000));
        QCOMPARE(program.exitStatus(), QProcess::NormalExit);
        QCOMPARE(program.exitCode(), 0);
        const QSettings settings(settingsFile(), QSettings::IniFormat);
        for (const char *key : {"MainWindow/Position", "MainWindow/Size", "MainWindow/SplitterLayout",
                                "ImageManager/CurrentDirectory"})
            QVERIFY2(settings.contains(key), key);
        // The file on the command line was not opened: no image is recorded.
        QCOMPARE(settings.value("ImageManager/Files/size", 0).toInt(), 0);
    }

    void closingTheWindow_endsTheProgram_andTheNextStartRestoresIt()
    {
        {
            QSettings settings(settingsFile(), QSettings::IniFormat);
            settings.setValue("MainWindow/Size", QSize(640, 480));
            settings.setValue("MainWindow/Position", QPoint(60, 50));
        }
        QProcess program;
        start(program, executable(), {});
        // Asks the window to close, as the button of its frame does.
        QProcess close;
        close.start("sh", {"-c", "wmctrl -c Tevora"});
        close.waitForFinished();
        QVERIFY(program.waitForFinished(10000));
        const QSettings settings(settingsFile(), QSettings::IniFormat);
        QCOMPARE(settings.value("MainWindow/Size").toSize(), QSize(640, 480));
    }

    void languageSwitch_loadsTheFilesBesideTheProgram()
    {
        // A program folder of its own with a German file that renames two entries.
        QTemporaryDir folder;
        const QString copy = folder.path() + "/tevora";
        QVERIFY(QFile::copy(executable(), copy));
        QFile source(folder.path() + "/de.ts");
        QVERIFY(source.open(QIODevice::WriteOnly));
        source.write("<?xml version=\"1.0\"?><!DOCTYPE TS><TS version=\"2.1\" language=\"de\"><context>"
                     "<name>MainWindow</name>"
                     "<message><source>&amp;File</source><translation>&amp;Datei</translation></message>"
                     "<message><source>E&amp;xit</source><translation>B&amp;eenden</translation></message>"
                     "</context></TS>");
        source.close();
        QProcess release;
        release.start(TEVORA_LRELEASE, {source.fileName(), "-qm", folder.path() + "/de.qm"});
        QVERIFY(release.waitForFinished());
        QCOMPARE(release.exitCode(), 0);

        QProcess program;
        start(program, copy, {"--english", "--DEUTSCH"});
        altKey("d");
        device.tapKey("e");
        QVERIFY(program.waitForFinished(10000));
        QCOMPARE(program.exitCode(), 0);
    }
};

QTEST_MAIN(ProgramTest)
#include "ProgramTest.moc"
