// Settings that no run of the program has written, and settings that cannot be written.
#include "shell/HelpViewer.h"
#include "tests/shell/MainWindowScene.h"
#include "tests/support/PrivateSettings.h"
#include "tests/support/Unprivileged.h"

#include <QDir>
#include <QFile>
#include <QSettings>
#include <QSplitter>
#include <QTest>

#include <array>
#include <utility>

namespace {

QString settingsFolder()
{
    return qEnvironmentVariable("XDG_CONFIG_HOME") + "/MERV";
}

QString settingsFile()
{
    return settingsFolder() + "/Tevora.conf";
}

void writeFile(const QByteArray &content)
{
    QVERIFY(QDir().mkpath(settingsFolder()));
    QFile file(settingsFile());
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
}

QByteArray fileContent()
{
    QFile file(settingsFile());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Values as a settings file writes them.
constexpr std::array<std::pair<const char *, const char *>, 14> oddValues{{
    {"text", "nonsense"},
    {"number", "7"},
    {"list", "1, 2, 3"},
    {"nothing", ""},
    {"zeros", "\\x0\\x0\\x0"},
    {"point", "@Point(-99999999 99999999)"},
    {"size", "@Size(-5 -7)"},
    {"huge size", "@Size(2000000000 2000000000)"},
    {"half a size", "@Size(30"},
    {"bytes", "@ByteArray(\\0\\0\\0\\xff\\0\\0\\0\\x1\\0\\0\\0\\x2\\xff\\xff\\xff\\xff)"},
    {"long splitter", "@ByteArray(\\0\\0\\0\\xff\\0\\0\\0\\x1\\x7f\\xff\\xff\\xff\\x1\\x1\\x1\\x1)"},
    {"variant", "@Variant(\\0\\0\\0\\x7f\\0\\0\\0\\x5QFont)"},
    {"broken variant", "@Variant(\\xff\\xff\\xff\\xff\\xff)"},
    {"invalid", "@Invalid()"},
}};

} // namespace

class SettingsFaultsTest : public QObject
{
    Q_OBJECT

public:
    static void initMain()
    {
        static const PrivateSettings settings;
        QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    }

private:
    static constexpr const char *start = "/";

    // Opens and closes the window and the help with what the file says.
    static void runOnce()
    {
        MainWindowScene scene;
        scene.window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&scene.window));
        QVERIFY(scene.window.width() >= scene.window.minimumSizeHint().width());
        scene.window.showHelp();
        QTest::qWait(20);
        scene.addVolume("knee", newVolume(MERV::TypeUChar, {2, 2, 2}));
        QCOMPARE(scene.manager().imageCount(), 1);
    }

private slots:
    void init()
    {
        QVERIFY(QDir::setCurrent(start));
        QFile::remove(settingsFile());
    }

    void oddValue_data()
    {
        QTest::addColumn<QByteArray>("content");
        for (const char *key :
             {"MainWindow/Position", "MainWindow/Size", "MainWindow/SplitterLayout", "HelpWindow/Position",
              "HelpWindow/Size", "ImageManager/CurrentDirectory", "ImageManager/Files/size",
              "ImageManager/Files/1/Path", "ImageManager/Files"}) {
            const QByteArrayList parts = QByteArray(key).split('/');
            const QByteArray name = QByteArray(key).mid(parts[0].size() + 1).replace('/', '\\');
            for (const auto &[what, value] : oddValues)
                QTest::addRow("%s: %s", key, what) << "[" + parts[0] + "]\n" + name + "=" + value + "\n";
        }
        QByteArray noise("[MainWindow]\n");
        for (int i = 0; i < 5000; ++i)
            noise += static_cast<char>(i * 7919 >> 3);
        QTest::newRow("noise") << noise;
        QTest::newRow("a missing folder") << QByteArray("[ImageManager]\nCurrentDirectory=/no/such/folder\n");
        QTest::newRow("a file for a folder")
            << QByteArray("[ImageManager]\nCurrentDirectory=/proc/version\n");
        QTest::newRow("too many files") << QByteArray("[ImageManager]\nFiles\\size=2147483647\n");
    }
    // The program starts as if the value were not there, and leaves settings that the next start reads.
    void oddValue()
    {
        QFETCH(QByteArray, content);
        writeFile(content);
        runOnce();
        const QSettings settings;
        QCOMPARE(settings.status(), QSettings::NoError);
        QVERIFY(settings.value("MainWindow/Size").toSize().isValid());
        QCOMPARE(settings.value("MainWindow/Position").typeId(), int(QMetaType::QPoint));
        QVERIFY(settings.value("HelpWindow/Size").toSize().isValid());
        QCOMPARE(settings.value("ImageManager/Files/size").toInt(), 0);
        QVERIFY(QDir(settings.value("ImageManager/CurrentDirectory").toString()).exists());
        QSplitter splitter;
        QVERIFY(splitter.restoreState(settings.value("MainWindow/SplitterLayout").toByteArray()));
    }

    void missingFolder_leavesTheCurrentOne()
    {
        writeFile("[ImageManager]\nCurrentDirectory=/no/such/folder\n");
        const MainWindowScene scene;
        QCOMPARE(QDir::currentPath(), QString(start));
    }

    void readOnlyFile_isReadAndStays()
    {
        const QByteArray content("[MainWindow]\nSize=@Size(640 480)\n");
        writeFile(content);
        QVERIFY(QFile::setPermissions(QFileInfo(settingsFolder()).path(), QFile::Permissions(0x7555)));
        QVERIFY(QFile::setPermissions(settingsFolder(), QFile::Permissions(0x5555)));
        QVERIFY(QFile::setPermissions(settingsFile(), QFile::Permissions(0x4444)));
        {
            const Unprivileged nobody;
            QVERIFY(nobody.isUnprivileged);
            QFile file(settingsFile());
            QVERIFY(!file.open(QIODevice::ReadWrite));
            MainWindowScene scene;
            QCOMPARE(scene.window.size(), QSize(640, 480));
            scene.window.resize(800, 600);
        }
        QVERIFY(QFile::setPermissions(settingsFolder(), QFile::Permissions(0x7755)));
        QVERIFY(QFile::setPermissions(settingsFile(), QFile::Permissions(0x6644)));
        QCOMPARE(fileContent(), content);
    }

    void noFolderForTheFile_isNoHindrance()
    {
        QVERIFY(QDir(settingsFolder()).removeRecursively());
        QFile file(settingsFolder());
        QVERIFY(file.open(QIODevice::WriteOnly)); // where the folder should be
        runOnce();
        QVERIFY(!QFile::exists(settingsFile()));
        file.remove();
    }
};

QTEST_MAIN(SettingsFaultsTest)
#include "SettingsFaultsTest.moc"
