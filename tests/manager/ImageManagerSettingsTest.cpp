#include "objects/manager/ImageManager.h"

#include "tests/manager/Fakes.h"
#include "tests/support/PrivateSettings.h"

#include <QAbstractEventDispatcher>
#include <QDir>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include <chrono>
#include <filesystem>

class ImageManagerSettingsTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { static const PrivateSettings settings; }

private:
    static QStringList storedFiles()
    {
        QSettings settings;
        settings.beginGroup("ImageManager");
        QStringList paths;
        const int size = settings.beginReadArray("Files");
        for (int i = 0; i < size; ++i) {
            settings.setArrayIndex(i);
            paths << settings.value("Path").toString();
        }
        return paths;
    }

    QTemporaryDir folder;

private slots:
    void init()
    {
        QSettings().clear();
        QVERIFY(QDir::setCurrent(folder.path()));
    }

    void destructor_recordsThePathsInListOrder()
    {
        {
            ImageManager manager(nullptr);
            for (const char *path : {"/a/b.mhd", "", "c"}) {
                auto *image = new FakeImage;
                image->setPath(path);
                manager.addImage(image);
            }
        }
        QCOMPARE(storedFiles(), QStringList({"/a/b.mhd", "", "c"}));
        QCOMPARE(QSettings().value("ImageManager/Files/size").toInt(), 3);
        QCOMPARE(QSettings().value("ImageManager/Files/3/Path").toString(), QString("c"));
    }

    void destructor_removesOldEntries()
    {
        QSettings().setValue("ImageManager/Files/size", 2);
        QSettings().setValue("ImageManager/Files/1/Path", "/old");
        QSettings().setValue("ImageManager/Files/2/Path", "/older");
        {
            const ImageManager manager(nullptr);
        }
        QCOMPARE(QSettings().value("ImageManager/Files/size").toInt(), 0);
        QVERIFY(!QSettings().contains("ImageManager/Files/1/Path"));
        QVERIFY(!QSettings().contains("ImageManager/Files/2/Path"));
    }

    void recordedFiles_areNotLoadedAgain()
    {
        QSettings().setValue("ImageManager/Files/size", 1);
        QSettings().setValue("ImageManager/Files/1/Path", "/old");
        const ImageManager manager(nullptr);
        QCOMPARE(manager.imageCount(), 0);
    }

    void destructor_leavesImagesAlone()
    {
        bool deleted = false;
        auto image = std::make_unique<FakeImage>();
        image->deleted = &deleted;
        {
            ImageManager manager(nullptr);
            manager.addImage(image.get());
        }
        QVERIFY(!deleted);
    }

    void currentDirectory_isRestored()
    {
        QVERIFY(QDir(folder.path()).mkpath("was here"));
        QSettings().setValue("ImageManager/CurrentDirectory", folder.filePath("was here"));
        const ImageManager manager(nullptr);
        QCOMPARE(QDir::currentPath(), QDir(folder.filePath("was here")).canonicalPath());
    }

    void currentDirectory_thatDoesNotExistOrIsEmpty_isNotRestored()
    {
        const QString before = QDir::currentPath();
        QSettings().setValue("ImageManager/CurrentDirectory", folder.filePath("never was"));
        {
            const ImageManager manager(nullptr);
            QCOMPARE(QDir::currentPath(), before);
        }
        QSettings().setValue("ImageManager/CurrentDirectory", "");
        const ImageManager manager(nullptr);
        QCOMPARE(QDir::currentPath(), before);
    }

    void currentDirectory_isStoredOnDemandAndAtTheEnd()
    {
        {
            ImageManager manager(nullptr);
            QVERIFY(!QSettings().contains("ImageManager/CurrentDirectory"));
            manager.saveCurrentDirectory();
            QCOMPARE(QSettings().value("ImageManager/CurrentDirectory").toString(), QDir::currentPath());
            QVERIFY(QDir(folder.path()).mkpath("later"));
            QDir::setCurrent(folder.filePath("later"));
        }
        QCOMPARE(QSettings().value("ImageManager/CurrentDirectory").toString(), QDir::currentPath());
        QVERIFY(QDir::currentPath().endsWith("later"));
    }

    void currentDirectory_thatWasDeleted_isNotStored()
    {
        QSettings().setValue("ImageManager/CurrentDirectory", "/former");
        ImageManager manager(nullptr);
        QVERIFY(QDir(folder.path()).mkpath("doomed"));
        QDir::setCurrent(folder.filePath("doomed"));
        QVERIFY(QDir(folder.path()).rmdir("doomed"));
        manager.saveCurrentDirectory();
        QCOMPARE(QSettings().value("ImageManager/CurrentDirectory").toString(), QString("/former"));
    }

    void directoryThatIsStored_isNotWrittenAgain()
    {
        ImageManager manager(nullptr);
        manager.saveCurrentDirectory();
        const std::filesystem::path file(QSettings().fileName().toStdString());
        const auto longAgo = std::filesystem::last_write_time(file) - std::chrono::hours(1);
        std::filesystem::last_write_time(file, longAgo);
        manager.saveCurrentDirectory();
        QCOMPARE(std::filesystem::last_write_time(file).time_since_epoch().count(),
                 longAgo.time_since_epoch().count());
        QVERIFY(QDir(folder.path()).mkpath("elsewhere"));
        QDir::setCurrent(folder.filePath("elsewhere"));
        manager.saveCurrentDirectory();
        QVERIFY(std::filesystem::last_write_time(file) > longAgo);
    }

    void timer_storesTheCurrentDirectoryEveryTenSeconds()
    {
        ImageManager manager(nullptr);
        const auto timers = QAbstractEventDispatcher::instance()->registeredTimers(&manager);
        QCOMPARE(timers.size(), 1);
        QCOMPARE(timers.first().interval, 10000);
        QTimerEvent event(timers.first().timerId);
        QCoreApplication::sendEvent(&manager, &event);
        QCOMPARE(QSettings().value("ImageManager/CurrentDirectory").toString(), QDir::currentPath());
    }
};

QTEST_MAIN(ImageManagerSettingsTest)
#include "ImageManagerSettingsTest.moc"
