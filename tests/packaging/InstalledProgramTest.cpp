#include "demo/xtest/XTestDevice.h"
#include "tests/packaging/UnpackedPackage.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QImage>
#include <QTest>
#include <QTextDocument>
#include <QTranslator>

#include <memory>

// Starts the program of the package, in German, and works it as a user would. By default the package is
// unpacked into a folder and set up there for a German system; with TEVORA_INSTALLED_ROOT it is one that was
// installed so in that root, and the program runs with it as its root.
class InstalledProgramTest : public QObject
{
    Q_OBJECT

    const QString installed = qEnvironmentVariable("TEVORA_INSTALLED_ROOT");
    std::unique_ptr<UnpackedPackage> package;
    QString root;
    QTemporaryDir settings;
    QTranslator german;
    XTestDevice device;

    // Outside of a root of its own the link's absolute path would lead to the system's alternatives.
    void setUpInFolder()
    {
        package = std::make_unique<UnpackedPackage>();
        package->write("etc/default/locale", "LANG=de_DE.UTF-8\n");
        package->runScript("postinst", "configure");
        root = package->root();
        const QString link = package->path("etc/alternatives/tevora-help");
        const QString target = package->linkTarget("etc/alternatives/tevora-help");
        QVERIFY(QFile::remove(link) && QFile::link(root + target, link));
        const QString help = package->path("usr/lib/tevora/help");
        QVERIFY(QFile::remove(help) && QFile::link(link, help));
    }

    void start(QProcess &program, const QString &option, const QString &locale) const
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("LC_ALL", locale);
        environment.insert("XDG_CONFIG_HOME", settings.path());
        environment.insert("XDG_DATA_HOME", settings.path());
        environment.remove("LANGUAGE");
        program.setProcessEnvironment(environment);
        program.setProcessChannelMode(QProcess::ForwardedChannels);
        QStringList command{root + "/usr/bin/tevora"};
        if (!installed.isEmpty())
            command = {"chroot", root, "/usr/bin/tevora"};
        if (!option.isEmpty())
            command.append(option);
        program.start(command.first(), command.mid(1));
        QVERIFY(program.waitForStarted());
        QVERIFY(waitForWindow("Tevora"));
        QTest::qWait(1200); // the splash screen ends
    }

    // Until such a window has been seen; it may be gone for a moment while the window manager frames it.
    static bool waitForWindow(const QString &title)
    {
        return QTest::qWaitFor(
            [&] {
                QProcess search;
                search.start("xdotool", {"search", "--onlyvisible", "--name", "^" + title + "$"});
                return search.waitForFinished() && !search.readAllStandardOutput().trimmed().isEmpty();
            },
            30000);
    }

    void key(const char *name, const char *held = nullptr)
    {
        if (held != nullptr)
            device.pressKey(held);
        device.tapKey(name);
        if (held != nullptr)
            device.releaseKey(held);
        QTest::qWait(300);
    }

    // The key that opens or takes an entry of a menu with this English text in German.
    QByteArray keyOf(const char *text) const
    {
        const QString entry = german.translate("MainWindow", text);
        return entry.mid(entry.indexOf('&') + 1, 1).toLower().toLatin1();
    }

    // The text of the page that is shown first, in this set of pages.
    QString pageOf(const QString &set) const
    {
        QFile page(root + "/usr/lib/tevora/" + set + "/menu_help.html");
        if (!page.open(QIODevice::ReadOnly))
            return QString();
        QTextDocument document;
        document.setHtml(QString::fromUtf8(page.readAll()));
        return plain(document.toPlainText());
    }

    static QString plain(QString text) { return text.remove(QChar::ObjectReplacementCharacter).simplified(); }

    // Opens the help window from the last menu and copies its text.
    void openHelp(QString &text)
    {
        key(keyOf("&File"), "Alt_L");
        key("Left");
        device.screenshot().save(TEVORA_BUILD_FOLDER "/packaging/installed-menu.png");
        key("Return");
        const QString title = german.translate("HelpViewer", "Help - %1").arg("Tevora");
        QVERIFY(title.startsWith("Hilfe"));
        QVERIFY(waitForWindow(title));
        QTest::qWait(300);
        key("Tab");
        key("a", "Control_L");
        device.screenshot().save(TEVORA_BUILD_FOLDER "/packaging/installed-help.png");
        key("c", "Control_L");
        QTRY_VERIFY_WITH_TIMEOUT(!QGuiApplication::clipboard()->text().isEmpty(), 5000);
        text = plain(QGuiApplication::clipboard()->text());
    }

private slots:
    void initTestCase()
    {
        if (installed.isEmpty())
            setUpInFolder();
        else
            root = installed;
        QVERIFY(german.load("de", root + "/usr/lib/tevora"));
        QVERIFY(keyOf("&File") != "f"); // else the English menu would open as well
    }

    // A desktop finds the icon of a window by its class.
    void windowClass_isThatOfTheDesktopEntry()
    {
        QFile entry(root + "/usr/share/applications/org.example.tevora.desktop");
        QVERIFY(entry.open(QIODevice::ReadOnly));
        const QString wanted =
            QString::fromUtf8(entry.readAll()).section("StartupWMClass=", 1).section('\n', 0, 0);
        QProcess program;
        start(program, QString(), "C.UTF-8");
        const QString seen = outputOf("xprop", {"-name", "Tevora", "WM_CLASS"});
        QVERIFY2(seen.contains(", \"" + wanted + "\""), qPrintable(seen));
        outputOf("wmctrl", {"-c", "Tevora"});
        QTRY_COMPARE_WITH_TIMEOUT(program.state(), QProcess::NotRunning, 10000);
    }

    void program_speaksGermanAndShowsTheGermanHelp_data()
    {
        QTest::addColumn<QString>("option");
        QTest::addColumn<QString>("locale");
        QTest::newRow("by the switch") << "--deutsch"
                                       << "C.UTF-8";
        QTest::newRow("by the locale") << ""
                                       << "de_DE.UTF-8";
    }

    void program_speaksGermanAndShowsTheGermanHelp()
    {
        QFETCH(const QString, option);
        QFETCH(const QString, locale);
        QGuiApplication::clipboard()->clear();
        QProcess program;
        start(program, option, locale);
        QString text;
        openHelp(text);
        QCOMPARE(text, pageOf("help-de"));
        QVERIFY(text != pageOf("help-en"));

        // Back to the main window, and out by the German keys of its menu.
        outputOf("wmctrl", {"-F", "-a", "Tevora"});
        QTest::qWait(500);
        key(keyOf("&File"), "Alt_L");
        key(keyOf("E&xit"));
        QTRY_COMPARE_WITH_TIMEOUT(program.state(), QProcess::NotRunning, 10000);
        QCOMPARE(program.exitStatus(), QProcess::NormalExit);
        QCOMPARE(program.exitCode(), 0);
    }
};

QTEST_MAIN(InstalledProgramTest)
#include "InstalledProgramTest.moc"
