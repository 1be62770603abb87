#include "tests/support/Midnight.h"
#include "tests/support/ProgramOnScreen.h"

#include <QDir>
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

    // Waits for the main window, not for the splash screen.
    static void start(ProgramOnScreen &program, const QString &executable, const QStringList &arguments)
    {
        QVERIFY(program.start(executable, arguments, "Tevora"));
        // Three of the four pauses of 300 ms lie before the window.
        QVERIFY(program.millisecondsToWindow() >= 900);
    }

    static QString executable() { return QString(TEVORA_EXECUTABLE); }
    QString settingsFile() const { return home.path() + "/MERV/Tevora.conf"; }

private slots:
    void init()
    {
        waitForMidnightToPass();
        QFile::remove(settingsFile());
    }

    void exitFromTheMenu_endsWithSuccessAndWritesTheSettings()
    {
        ProgramOnScreen program(home.path());
        start(program, executable(), {"no-such-file.mhd", "--unknown"});
        program.altKey("f");
        program.tapKey("x");
        QVERIFY(program.endsWell());
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
        ProgramOnScreen program(home.path());
        start(program, executable(), {});
        // Asks the window to close, as the button of its frame does.
        QProcess close;
        close.start("sh", {"-c", "wmctrl -c Tevora"});
        close.waitForFinished();
        QVERIFY(program.endsWell());
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

        ProgramOnScreen program(home.path());
        start(program, copy, {"--english", "--DEUTSCH"});
        program.altKey("d");
        program.tapKey("e");
        QVERIFY(program.endsWell());
    }
};

QTEST_MAIN(ProgramTest)
#include "ProgramTest.moc"
