#include "objects/manager/ImageManager.h"

#include "tests/manager/Fakes.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/PrivateSettings.h"

#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <cstdlib>
#include <new>

namespace {

std::size_t refusedSize = 0; // allocations of just this size fail; 0: none

} // namespace

// The memory of the test program, from which one size can be refused.
void *operator new(std::size_t size)
{
    void *memory = ::operator new(size, std::nothrow);
    if (memory == nullptr)
        throw std::bad_alloc();
    return memory;
}
void *operator new[](std::size_t size)
{
    return ::operator new(size);
}
void *operator new(std::size_t size, const std::nothrow_t &) noexcept
{
    return size == refusedSize && size != 0 ? nullptr : std::malloc(size != 0 ? size : 1);
}
void *operator new[](std::size_t size, const std::nothrow_t &) noexcept
{
    return ::operator new(size, std::nothrow);
}
void operator delete(void *memory) noexcept
{
    std::free(memory);
}
void operator delete(void *memory, std::size_t) noexcept
{
    std::free(memory);
}
void operator delete(void *memory, const std::nothrow_t &) noexcept
{
    std::free(memory);
}
void operator delete[](void *memory, const std::nothrow_t &) noexcept
{
    std::free(memory);
}
void operator delete[](void *memory) noexcept
{
    std::free(memory);
}
void operator delete[](void *memory, std::size_t) noexcept
{
    std::free(memory);
}

class ImageManagerMemoryTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { static const PrivateSettings settings; }

private slots:
    void cleanup()
    {
        refusedSize = 0;
        QDir::setCurrent("/");
    }

    // The voxels can be had, but not the picture of a slice, which is 512 x 256 bytes for 300 x 200 voxels.
    void seriesThatExhaustsTheMemory_countsAsFailed()
    {
        const QTemporaryDir folder;
        ImageManager manager(nullptr);
        const std::unique_ptr<MervImageObject> volume(newVolume(300, 200, 2));
        QVERIFY(manager.saveDicomSeries(volume.get(), folder.path()));
        QSignalSpy before(&manager, &QAbstractItemModel::layoutAboutToBeChanged);
        QSignalSpy changed(&manager, &QAbstractItemModel::layoutChanged);
        const CapturedOutput output;
        refusedSize = std::size_t{512} * 256;
        const QList<ImageObject *> loaded = manager.loadDicomSeries(folder.path());
        refusedSize = 0;
        QVERIFY(loaded.isEmpty());
        QCOMPARE(manager.imageCount(), 0);
        QVERIFY(output.standardOutput().contains("Could not load series #0in" + folder.path()));
        QCOMPARE(before.count(), 1);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(manager.loadDicomSeries(folder.path()).size(), 1);
    }

    // The path of a folder with a name of 200 letters is a text of a length that nothing else has.
    void countingThatExhaustsTheMemory_findsNoSeries()
    {
        const QTemporaryDir folder;
        const QString directory = folder.path() + "/" + QString(200, 'd');
        QVERIFY(QDir().mkpath(directory));
        ImageManager manager(nullptr);
        const std::unique_ptr<MervImageObject> volume(newVolume(4, 4, 1));
        QVERIFY(manager.saveDicomSeries(volume.get(), directory));
        QCOMPARE(manager.countDicomSeries(directory), 1);
        const CapturedOutput output;
        refusedSize = static_cast<std::size_t>(directory.size()) + 1;
        const int count = manager.countDicomSeries(directory);
        refusedSize = 0;
        QCOMPARE(count, 0);
        QVERIFY(!output.standardError().isEmpty());
    }
};

QTEST_MAIN(ImageManagerMemoryTest)
#include "ImageManagerMemoryTest.moc"
