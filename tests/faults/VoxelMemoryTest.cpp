// Each large piece of memory that a command asks for (voxels, the pictures of slices, edge points, what a
// file is read into) is refused in turn: the command says so or leaves it, nothing half made stays in the
// list, and a second attempt succeeds.
#include "Common/VoxelBuffer.h"

#include "contours/SlicedContoursObject.h"
#include "objects/SliceSelector.h"
#include "serialization/formats/AnalyzeSerializer.h"
#include "serialization/formats/MhdSerializer.h"
#include "serialization/formats/SlicSerializer.h"
#include "serialization/formats/VisSerializer.h"
#include "serialization/formats/WindowsBitmapSerializer.h"
#include "tests/shell/MainWindowScene.h"
#include "tests/support/DialogDriver.h"
#include "tests/support/DicomFileBuilder.h"
#include "tests/support/PrivateSettings.h"
#include "view/QStackedSliceViewer.h"

#include <QFile>
#include <QInputDialog>
#include <QLineEdit>
#include <QProgressDialog>
#include <QTest>
#include <QTimer>

#include <atomic>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <new>

// Where the instructions of this program, without those of shared libraries, begin and end.
extern "C" const char __executable_start, etext;

namespace {

constexpr std::size_t largeBytes = 16384;
constexpr int none = -1;

std::atomic<int> requests{0};   // large ones since the command began
std::atomic<int> refused{none}; // which of them, counted from 0

bool isRefused()
{
    return requests++ == refused;
}

void *allocate(std::size_t size, const void *caller)
{
    const auto *place = static_cast<const char *>(caller);
    const bool ours = place >= &__executable_start && place < &etext;
    void *memory = size >= largeBytes && ours && isRefused() ? nullptr : std::malloc(size > 0 ? size : 1);
    if (memory == nullptr)
        throw std::bad_alloc();
    return memory;
}

} // namespace

// The linker puts this in the place of the function that allocates all voxels.
extern "C" void *__real__ZN4MERV14allocateZeroedEmm(std::uint64_t count, std::size_t valueSize);
extern "C" void *__wrap__ZN4MERV14allocateZeroedEmm(std::uint64_t count, std::size_t valueSize);
extern "C" void *__wrap__ZN4MERV14allocateZeroedEmm(std::uint64_t count, std::size_t valueSize)
{
    if (count * valueSize >= largeBytes && isRefused())
        MERV::throwOutOfMemory();
    return __real__ZN4MERV14allocateZeroedEmm(count, valueSize);
}

void *operator new(std::size_t size)
{
    return allocate(size, __builtin_return_address(0));
}
void *operator new[](std::size_t size)
{
    return allocate(size, __builtin_return_address(0));
}
void *operator new(std::size_t size, const std::nothrow_t &) noexcept
{
    return std::malloc(size > 0 ? size : 1);
}
void *operator new[](std::size_t size, const std::nothrow_t &) noexcept
{
    return std::malloc(size > 0 ? size : 1);
}
void operator delete(void *memory) noexcept
{
    std::free(memory);
}
void operator delete[](void *memory) noexcept
{
    std::free(memory);
}
void operator delete(void *memory, std::size_t) noexcept
{
    std::free(memory);
}
void operator delete[](void *memory, std::size_t) noexcept
{
    std::free(memory);
}

namespace {

constexpr int width = 128, height = 128, depth = 2; // two bytes a voxel; a picture has just largeBytes

int checkered(int x, int y, int z)
{
    return (x / 4 + y / 4 + z) % 2 == 0 ? 40 : 900;
}

std::unique_ptr<MERV::Image> newKnee()
{
    return newVolume(MERV::TypeShort, {width, height, depth}, checkered);
}

bool isKnee(MERV::Image &image)
{
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            if (image.getVoxel(x, y, 0, 0, 0) != static_cast<float>(checkered(x, y, 0)))
                return false;
    return image.getWidth() == width && image.getHeight() == height && image.getDepth() == depth;
}

// Says yes to whatever is asked while it lives.
class Consent : public QObject
{
public:
    Consent()
    {
        connect(&timer, &QTimer::timeout, this, [] {
            if (auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget()))
                dialog->accept();
        });
        timer.start(5);
    }

private:
    QTimer timer;
};

} // namespace

class VoxelMemoryTest : public QObject
{
    Q_OBJECT

public:
    static void initMain()
    {
        static const PrivateSettings settings;
        QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
        QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    }

private:
    // `fails` tells whether something will be refused.
    using Command = std::function<void(MainWindowScene &, bool fails)>;
    using Check = std::function<void(MainWindowScene &)>;

    // Runs the command once to count its requests, then with each one refused, each time on a scene of its
    // own in which a volume is selected. `check` looks at what is left.
    static void refuseEach(const Command &command, const Check &check)
    {
        const int count = run(none, command, [](MainWindowScene &) {});
        QVERIFY(count > 0);
        for (int request = 0; request < count; ++request) {
            run(request, command, check);
            if (QTest::currentTestFailed()) {
                qInfo("request %d of %d", request, count);
                return;
            }
        }
    }
    // The number of requests.
    static int run(int request, const Command &command, const Check &check)
    {
        MainWindowScene scene;
        scene.addVolume("knee", newKnee());
        scene.select({0});
        requests = 0;
        refused = request;
        command(scene, request != none);
        refused = none;
        const int made = requests;
        // What threads share among themselves varies.
        if (request < made && !QTest::currentTestFailed())
            check(scene);
        return made;
    }
    QString path(const std::string &name) const { return QString::fromStdString((folder / name).string()); }
    static MervImageObject *volumeAt(MainWindowScene &scene, int row)
    {
        return dynamic_cast<MervImageObject *>(scene.manager().image(row));
    }
    static void expectOnlyTheVolume(MainWindowScene &scene)
    {
        QCOMPARE(scene.manager().imageCount(), 1);
        QCOMPARE(scene.manager().image(0)->label(), QString("knee"));
        QVERIFY(isKnee(*volumeAt(scene, 0)->voxels()));
    }
    static bool isMemoryMessage(const QString &text)
    {
        return text == "MERV::ImageBase Buffer Allocation error!\n" || text == "std::bad_alloc\n";
    }
    static QStringList classes(MainWindowScene &scene)
    {
        QStringList names;
        for (int row = 1; row < scene.manager().imageCount(); ++row)
            names << scene.manager().image(row)->metaObject()->className();
        return names;
    }

    const TemporaryFolder folder;
    const TemporaryFolder series;

private slots:
    void initTestCase()
    {
        MainWindowScene scene;
        auto *volume = scene.addVolume("knee", newKnee());
        QVERIFY(MhdSerializer().serialize(volume, path("knee.mhd").toStdWString().c_str()));
        QVERIFY(AnalyzeSerializer().serialize(volume, path("knee.hdr").toStdWString().c_str()));
        std::ofstream vis(folder / "knee.vis", std::ios::binary);
        QVERIFY(VisSerializer().serialize(volume, vis));
        std::ofstream bitmap(folder / "knee.bmp", std::ios::binary);
        QVERIFY(WindowsBitmapSerializer().serialize(volume, bitmap));
        for (int z = 0; z < depth; ++z) {
            std::vector<std::uint64_t> pixels;
            pixels.reserve(std::size_t{width} * height);
            for (int i = 0; i < width * height; ++i)
                pixels.push_back(static_cast<std::uint64_t>(checkered(i % width, i / width, z)));
            dicomSlice(width, height, pixels, z).write(series / std::to_string(z));
            if (z == 0)
                dicomSlice(width, height, pixels, z).write(folder / "knee.dcm");
        }
        SlicedContoursObject contours("lines");
        contours.newContour("cartilage");
        contours.newFragment("bone");
        contours.newFragment("surface");
        std::ofstream lines(folder / "lines.slic", std::ios::binary);
        QVERIFY(SlicSerializer().serialize(&contours, lines));
    }

    void file_isReportedAsNotRead_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("reader");
        QTest::newRow("MetaImage") << "knee.mhd"
                                   << "MetaImage file";
        QTest::newRow("Analyze") << "knee.hdr"
                                 << "Analyze file";
        QTest::newRow("VIS") << "knee.vis"
                             << "Tallowbrook VIS format";
        QTest::newRow("bitmap") << "knee.bmp"
                                << "Windows bitmap";
        QTest::newRow("DICOM") << "knee.dcm"
                               << "Dicom file";
    }
    void file_isReportedAsNotRead()
    {
        QFETCH(QString, name);
        QFETCH(QString, reader);
        const Consent toVoxelSize;
        QString error;
        refuseEach(
            [&](MainWindowScene &scene, bool) { scene.manager().loadFile(path(name.toStdString()), &error); },
            [&](MainWindowScene &scene) {
                expectOnlyTheVolume(scene);
                QCOMPARE(error, "The following unserializer(s) assured their capability to unserialize "
                                "this file, but they failed to do so: " +
                                    reader);
                const auto *loaded = dynamic_cast<MervImageObject *>(
                    scene.manager().loadFile(path(name.toStdString()), nullptr));
                QVERIFY(loaded != nullptr);
                QCOMPARE(loaded->voxels()->getWidth(), width);
            });
    }

    void dicomSeries_isNotLoaded()
    {
        const auto open = [this](MainWindowScene &scene) {
            DialogDriver driver;
            driver.expectFileDialog("Select a directory containing the series.",
                                    QString::fromStdString(series.string()));
            scene.window.openDicomSeries();
            QVERIFY2(driver.verify(), driver.report());
            QVERIFY(MainWindowScene::topLevels<QProgressDialog>().isEmpty());
        };
        refuseEach([&](MainWindowScene &scene, bool) { open(scene); },
                   [&](MainWindowScene &scene) {
                       expectOnlyTheVolume(scene);
                       QVERIFY(scene.output.standardOutput().contains("Could not load series #0"));
                       open(scene);
                       QCOMPARE(scene.manager().imageCount(), 2);
                       QCOMPARE(volumeAt(scene, 1)->voxels()->getDepth(), depth);
                   });
    }
    void dicomSeriesWithQuestions_isNotLoaded()
    {
        const QString directory = QString::fromStdString(series.string());
        const Consent toAll;
        refuseEach(
            [&](MainWindowScene &scene, bool) { scene.manager().loadDicomSeriesInteractively(directory); },
            [&](MainWindowScene &scene) {
                expectOnlyTheVolume(scene);
                QVERIFY(scene.output.standardOutput().contains("Could not load series"));
                QVERIFY(scene.manager().loadDicomSeriesInteractively(directory) != nullptr);
                QCOMPARE(scene.manager().imageCount(), 2);
            });
    }
    void dicomExport_isReportedAsNotSaved()
    {
        const TemporaryFolder target;
        const QString directory = QString::fromStdString(target.string());
        refuseEach(
            [&](MainWindowScene &scene, bool fails) {
                DialogDriver driver;
                driver.expectFileDialog("Select a directory to save the series.", directory);
                if (fails)
                    driver.expectBox(QMessageBox::Warning, "Save as Dicom series",
                                     "The image could not be saved to:\n\n" + directory, QMessageBox::Ok);
                scene.window.saveDicomSeries();
                QVERIFY2(driver.verify(), driver.report());
            },
            [&](MainWindowScene &scene) {
                expectOnlyTheVolume(scene); // not mirrored any more
                QVERIFY(isMemoryMessage(scene.output.standardError()));
                QVERIFY(scene.manager().saveDicomSeries(volumeAt(scene, 0), directory));
                scene.manager().loadDicomSeries(directory);
                QCOMPARE(volumeAt(scene, 1)->voxels()->getDepth(), depth);
            });
    }

    // The other formats take the voxels as they stand.
    void visFile_isSavedAtTheSecondAttempt()
    {
        const QString target = path("saved.vis");
        refuseEach(
            [&](MainWindowScene &scene, bool fails) {
                QFile::remove(target);
                DialogDriver driver;
                driver.expectFileDialog("Save Image as", target, [&](QFileDialog *dialog) {
                    driver.selectFilter(dialog, "Tallowbrook VIS format (*.vis)");
                });
                if (fails)
                    driver.expectBox(QMessageBox::Warning, "Tevora",
                                     "The image could not be saved to\n\n" + target + "\n\n", "Retry");
                scene.window.saveFile();
                QVERIFY2(driver.verify(), driver.report());
            },
            [&](MainWindowScene &scene) {
                expectOnlyTheVolume(scene);
                const Consent toVoxelSize;
                QVERIFY(scene.manager().loadFile(target, nullptr) != nullptr);
            });
    }

    void sliceSelector_isNotMade()
    {
        refuseEach([](MainWindowScene &scene, bool) { scene.window.newSliceSelector(); },
                   [](MainWindowScene &scene) {
                       expectOnlyTheVolume(scene);
                       QVERIFY(isMemoryMessage(scene.output.standardError()));
                       scene.window.newSliceSelector();
                       QCOMPARE(classes(scene), QStringList{"SliceSelector"});
                   });
    }
    void sliceSelector_keepsItsSlice()
    {
        refuseEach(
            [](MainWindowScene &scene, bool) {
                const int before = refused.exchange(none);
                scene.window.newSliceSelector();
                scene.select({1});
                requests = 0;
                refused = before;
                DialogDriver driver;
                driver.expect<QInputDialog>("plane", [&](QInputDialog *dialog) {
                    dialog->setIntValue(1);
                    driver.click(dialog, DialogDriver::buttonNamed(dialog, "OK"));
                });
                scene.window.setSelectorPlane();
                QVERIFY2(driver.verify(), driver.report());
            },
            [](MainWindowScene &scene) {
                auto *selector = scene.fromEnd<SliceSelector>();
                QVERIFY(isMemoryMessage(scene.output.standardError()));
                QCOMPARE(int(selector->voxels()->getVoxel(0, 0, 0, 0, 0)), 0);
                selector->update();
                QCOMPARE(int(selector->voxels()->getVoxel(0, 0, 0, 0, 0)), 255);
            });
    }

    void edgePoints_areNotThere()
    {
        refuseEach([](MainWindowScene &scene, bool) { scene.window.extractEdgePoints(); },
                   [](MainWindowScene &scene) {
                       expectOnlyTheVolume(scene);
                       QVERIFY(isMemoryMessage(scene.output.standardError()));
                       scene.window.extractEdgePoints();
                       QCOMPARE(classes(scene), QStringList{"ConventionalSliceEdgePointExtractor"});
                   });
    }

    void raster_isNotMade()
    {
        const auto rasterize = [](MainWindowScene &scene) {
            DialogDriver driver;
            driver.expect<QDialog>("raster", [&](QDialog *dialog) {
                const QList<QLineEdit *> entries = dialog->findChildren<QLineEdit *>();
                entries[3]->setText(QString::number(width));
                entries[4]->setText(QString::number(height));
                entries[5]->setText(QString::number(depth));
                driver.click(dialog, DialogDriver::buttonNamed(dialog, "OK"));
            });
            scene.window.rasterizeImage();
            QVERIFY2(driver.verify(), driver.report());
        };
        refuseEach([&](MainWindowScene &scene, bool) { rasterize(scene); },
                   [&](MainWindowScene &scene) {
                       expectOnlyTheVolume(scene);
                       QCOMPARE(scene.output.standardError(), QString("std::bad_alloc\n"));
                       rasterize(scene);
                       QCOMPARE(classes(scene), QStringList{"BitPlaneRasterizerObject"});
                   });
    }

    // The contours are there to be drawn; what comes behind the one that has no memory is not.
    void patella_endsWhereTheMemoryEnds()
    {
        const QStringList all{"SlicedContoursObject", "ConventionalSliceEdgePointExtractor",
                              "BitPlaneRasterizerObject", "SlicedContoursTriangulator"};
        const Consent toThickness;
        refuseEach([](MainWindowScene &scene, bool) { scene.window.startSegmentation(); },
                   [&](MainWindowScene &scene) {
                       const QStringList made = classes(scene);
                       QVERIFY(made.size() == 1 || made.size() == 2);
                       QCOMPARE(made, all.mid(0, made.size()));
                       QVERIFY(isMemoryMessage(scene.output.standardError()));
                       QCOMPARE(MainWindowScene::topLevels<QStackedSliceViewer>().size(), 1);
                       scene.window.startSegmentation();
                       QCOMPARE(classes(scene).mid(made.size(), all.size()), all);
                   });
    }
    void femurAndTibia_endAtTheRaster()
    {
        refuseEach([](MainWindowScene &scene, bool) { scene.window.startSegmentationFemurTibia(); },
                   [](MainWindowScene &scene) {
                       QCOMPARE(classes(scene), QStringList{"SlicedContoursObject"});
                       QCOMPARE(scene.output.standardError(), QString("std::bad_alloc\n"));
                       QCOMPARE(MainWindowScene::topLevels<QStackedSliceViewer>().size(), 1);
                       scene.window.startSegmentationFemurTibia();
                       QCOMPARE(scene.manager().imageCount(), 5);
                   });
    }
    void loadedContours_stayWithoutRaster()
    {
        const auto load = [this](MainWindowScene &scene) {
            DialogDriver driver;
            driver.expectFileDialog("Load images", path("lines.slic"));
            driver.expectBox(QMessageBox::Information, "Tevora", "1 image(s) have been loaded.",
                             QMessageBox::Ok);
            scene.window.loadContour();
            QVERIFY2(driver.verify(), driver.report());
        };
        refuseEach([&](MainWindowScene &scene, bool) { load(scene); },
                   [&](MainWindowScene &scene) {
                       QCOMPARE(classes(scene), QStringList{"SlicedContoursObject"});
                       QCOMPARE(scene.output.standardError(), QString("std::bad_alloc\n"));
                       QCOMPARE(MainWindowScene::topLevels<QStackedSliceViewer>().size(), 1);
                       load(scene);
                       QCOMPARE(scene.manager().imageCount(), 9);
                   });
    }
    // Of the two copies of the file one may have been read.
    void loadedSegmentation_isReadOnceAtMost()
    {
        const auto load = [this](MainWindowScene &scene) {
            DialogDriver driver;
            driver.expectFileDialog("Load the segmentation", path("knee.mhd"));
            scene.window.loadSegmentation();
            QVERIFY2(driver.verify(), driver.report());
        };
        refuseEach([&](MainWindowScene &scene, bool) { load(scene); },
                   [&](MainWindowScene &scene) {
                       const int count = scene.manager().imageCount();
                       QVERIFY(count == 1 || count == 2);
                       for (int row = 0; row < count; ++row)
                           QVERIFY(isKnee(*volumeAt(scene, row)->voxels()));
                       load(scene);
                       QCOMPARE(scene.manager().imageCount(), count + 2);
                       QCOMPARE(scene.fromEnd<MervImageObject>()->label(), QString("Reload of knee"));
                   });
    }
};

QTEST_MAIN(VoxelMemoryTest)
#include "VoxelMemoryTest.moc"
