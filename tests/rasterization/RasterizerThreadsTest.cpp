#include "contours/ConventionalSliceEdgePointExtractor.h"
#include "meshes/BitPlaneRasterizerObject.h"
#include "meshes/TriMeshFragment.h"
#include "meshes/TriMeshObject.h"
#include "objects/SliceSelector.h"
#include "serialization/formats/MhdSerializer.h"
#include "tests/support/DrawnContours.h"
#include "tests/support/GlCanvas.h"
#include "tests/support/RasterRun.h"
#include "tests/support/RasterSources.h"
#include "tests/support/TestVolume.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <atomic>
#include <limits>
#include <memory>
#include <random>
#include <set>

// A worker draws what the main thread edits, closes or deletes. TEVORA_RASTER_ROUNDS repeats the cases that
// make contexts more often than in a normal run.
namespace {

int rounds()
{
    bool given = false;
    const int count = qEnvironmentVariableIntValue("TEVORA_RASTER_ROUNDS", &given);
    return given ? count : 50;
}

void addStack(SlicedContoursObject &contours, int depth)
{
    SlicedContoursFragment *outline = drawn::solid(contours);
    for (int k = 0; k < depth; ++k)
        drawn::square(outline, static_cast<float>(k) + 0.5f, 4, 28);
}

// Contours on many slices, from which a test can see how far the worker is.
class CountingContours : public SlicedContoursObject
{
public:
    static constexpr int depth = 256;

    CountingContours() { addStack(*this, depth); }

    void renderBox(GraphicsObjectRenderAdvisor *advisor, float xMin, float xMax, float yMin, float yMax,
                   float zMin, float zMax) override
    {
        SlicedContoursObject::renderBox(advisor, xMin, xMax, yMin, yMax, zMin, zMax);
        ++slabs;
    }
    // False if it takes too long.
    bool waitForSlab(int count) const
    {
        const QDeadlineTimer deadline(20000);
        while (slabs < count && !deadline.hasExpired())
            QThread::usleep(20);
        return slabs >= count;
    }

    std::atomic<int> slabs{0};
};

void editAtRandom(SlicedContoursFragment &fragment, std::mt19937 &random)
{
    const auto coordinate = [&] { return static_cast<double>(random() % 320) / 10.0; };
    const auto level = [&] { return static_cast<float>(random() % 8) + 0.5f; };
    const int count = fragment.segmentCount();
    SlicedContoursSegment *any =
        count > 0 ? fragment.segment(static_cast<int>(random() % static_cast<unsigned>(count))) : nullptr;
    switch (any == nullptr || count < 10 ? 0 : random() % 5) {
    case 0:
        fragment.newSegment({coordinate(), coordinate()}, level());
        break;
    case 1:
        delete any;
        break;
    case 2:
        any->setZ(level());
        break;
    default:
        any->addPointBack({coordinate(), coordinate()});
    }
}

std::vector<MERV::BRep::TriFace> teeth(int count)
{
    std::vector<MERV::BRep::TriFace> faces;
    faces.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        faces.emplace_back(MERV::BRep::Point(i, 0, 0), MERV::BRep::Point(i + 1, 0, 0),
                           MERV::BRep::Point(i, 8, 0));
    return faces;
}

// Fills all of a raster with another code in each run, and asks for the next run in each: its worker never
// rests.
class CodePerRun : public ScriptedSource
{
public:
    static constexpr int side = 256, depth = 8;

    CodePerRun()
        : ScriptedSource([this](float zMin) { drawSlab(zMin); })
        , raster(this, side, side, depth, 1, 1, 1)
    {
        raster.voxels()->setVerbose(0);
        raster.invalidateRasterization();
    }

    std::atomic<int> run{0};
    BitPlaneRasterizerObject raster;

private:
    void drawSlab(float zMin)
    {
        if (zMin == 0.0f) {
            ++run;
            raster.invalidateRasterization();
        }
        const auto code = static_cast<GLubyte>(run % 256);
        glColor4ub(code, code, code, code);
        fill(0, 0, side, side);
    }
};

bool isOfOneCode(const QByteArray &bytes)
{
    return bytes.count(bytes.front()) == bytes.size();
}

// Draws as a view does, on the main thread.
class Painter : public GraphicsObjectRenderAdvisor
{
public:
    Painter()
        : canvas(32, 32)
    {
        canvas.ortho(0, 32, 0, 32);
        canvas.useNearestTexture();
    }
    void paint(ImageObject &object)
    {
        const float top = std::numeric_limits<float>::max();
        object.renderBox(this, -top, top, -top, top, 0.0f, 8.0f);
        glFinish();
    }
    bool overrides(GraphicsObject *, int, int) override { return false; }
    std::uint32_t value(GraphicsObject *, int, int) override { return 0; }

private:
    GlCanvas canvas;
};

} // namespace

class RasterizerThreadsTest : public QObject
{
    Q_OBJECT

private slots:
    void deletedInTheMiddleOfARun()
    {
        std::mt19937 random(1);
        CountingContours contours;
        int unfinished = 0;
        for (int i = 0; i < rounds(); ++i) {
            contours.slabs = 0;
            {
                BitPlaneRasterizerObject raster(&contours, 32, 32, CountingContours::depth, 1, 1, 1);
                raster.setBitCode(contours.contour(0), 127);
                raster.invalidateRasterization();
                QVERIFY(contours.waitForSlab(static_cast<int>(random() % 100)));
            }
            unfinished += contours.slabs < CountingContours::depth ? 1 : 0;
        }
        qInfo() << unfinished << "of" << rounds() << "in the middle of a run";
        QVERIFY(unfinished > 0);
    }

    void sourceClosedInTheMiddleOfARun()
    {
        std::mt19937 random(2);
        int unfinished = 0;
        for (int i = 0; i < rounds(); ++i) {
            auto contours = std::make_unique<CountingContours>();
            BitPlaneRasterizerObject raster(contours.get(), 32, 32, CountingContours::depth, 1, 1, 1);
            raster.setBitCode(contours->contour(0), 127);
            raster.invalidateRasterization();
            QVERIFY(contours->waitForSlab(static_cast<int>(random() % 100)));
            raster.detachFrom(contours.get());
            unfinished += contours->slabs < CountingContours::depth ? 1 : 0;
            contours.reset();
            QVERIFY(raster.sources().isEmpty());
            raster.invalidateRasterization();
        }
        qInfo() << unfinished << "of" << rounds() << "in the middle of a run";
        QVERIFY(unfinished > 0);
    }

    // Two workers draw the contours, the main thread draws and edits them, and in the end all is as it is.
    void contoursAreEditedWhileWorkersDraw()
    {
        constexpr int edits = 10000, repaints = 50, depth = 8;
        std::mt19937 random(3);
        SlicedContoursObject contours;
        SlicedContoursFragment *edited = drawn::solid(contours);
        BitPlaneRasterizerObject first(&contours, 32, 32, depth, 1, 1, 1);
        BitPlaneRasterizerObject second(&contours, 32, 32, depth, 1, 1, 1);
        RasterRuns firstRuns(first), secondRuns(second);
        for (BitPlaneRasterizerObject *raster : {&first, &second})
            raster->setBitCode(contours.contour(0), 127);
        for (int i = 0; i < edits; ++i) {
            editAtRandom(*edited, random);
            if (i % 10 == 0) { // without waiting for the event loop
                first.invalidateRasterization();
                second.invalidateRasterization();
            }
            if (i % (edits / repaints) == 0) {
                Painter().paint(contours);
                QCoreApplication::processEvents();
            }
        }
        while (edited->segmentCount() > 0)
            delete edited->segment(0);
        drawn::square(edited, 2.5f, 4, 28);
        QVERIFY(firstRuns.run() && secondRuns.run());
        QTRY_VERIFY(!first.isStale() && !second.isStale() && firstRuns.rests() && secondRuns.rests());
        std::vector<unsigned char> expected(32 * 32 * depth, 0);
        for (std::size_t y = 4; y < 28; ++y)
            for (std::size_t x = 4; x < 28; ++x)
                expected[x + 32 * y + 32 * 32 * 2] = 127;
        QCOMPARE(rasterBytes(first), expected);
        QCOMPARE(rasterBytes(second), expected);
    }

    // Whenever one looks at the raster, it is of a single code.
    void rasterIsPublishedAsAWhole()
    {
        CodePerRun source;
        std::set<char> seen;
        while (source.run < 200) {
            const std::vector<unsigned char> bytes = rasterBytes(source.raster);
            const QByteArray copy(reinterpret_cast<const char *>(bytes.data()), qsizetype(bytes.size()));
            seen.insert(copy.front());
            QVERIFY(isOfOneCode(copy));
        }
        QVERIFY(seen.size() > 2);
    }

    void rasterIsSavedAsAWhole()
    {
        const QTemporaryDir folder;
        CodePerRun source;
        MhdSerializer serializer;
        std::set<char> seen;
        while (source.run < 200) {
            QVERIFY(
                serializer.serialize(&source.raster, folder.filePath("raster.mhd").toStdWString().c_str()));
            QFile file(folder.filePath("raster.raw"));
            QVERIFY(file.open(QIODevice::ReadOnly));
            const QByteArray saved = file.readAll();
            QCOMPARE(saved.size(), qsizetype(source.side) * source.side * source.depth);
            seen.insert(saved.front());
            QVERIFY(isOfOneCode(saved));
        }
        QVERIFY(seen.size() > 2);
    }

    // Who copies from a raster holds the lock of its voxels. All of them are taken, so they are of one code.
    void voxelsAreTakenFromARasterAsAWhole()
    {
        CodePerRun source;
        const VolumeSize size{source.side, source.side, source.depth};
        const auto mask = newVolume(MERV::TypeUChar, size, [](int, int, int) { return 255; });
        MervImageObject overlay(newVolume(MERV::TypeUChar, size).release(), "/o.mhd");
        for (int i = 0; i < 20 || source.run < 20; ++i) {
            {
                const auto lock = source.raster.lockVoxels();
                overlay.copyMaskedVoxels(*mask, *source.raster.voxels());
            }
            const auto *first = static_cast<const char *>(overlay.voxels()->getFrameData(0));
            QVERIFY(isOfOneCode(QByteArray(first, qsizetype(overlay.voxels()->getValueCount()))));
        }
    }

    // One worker writes a raster, another one draws it as its own source, and the main thread looks for the
    // edges of the square in it, which has one of two greys.
    void edgePointsAreExtractedWhileTheWorkersDraw()
    {
        constexpr int depth = 4;
        std::atomic<int> run{0};
        ScriptedSource source([&](float zMin) {
            run += zMin == 0.0f ? 1 : 0;
            const GLubyte code = run % 2 == 0 ? 255 : 127;
            glColor4ub(code, code, code, code);
            ScriptedSource::fill(64, 64, 192, 192);
        });
        BitPlaneRasterizerObject first(&source, 256, 256, depth, 1, 1, 1);
        BitPlaneRasterizerObject second(&first, 256, 256, depth, 1, 1, 1);
        second.setBitCode(&first, 255);
        RasterRuns firstRuns(first);
        QVERIFY(firstRuns.run());
        const std::size_t atRest = ConventionalSliceEdgePointExtractor(&first).slicePoints(0).size();
        QVERIFY(atRest >= 4 * 127); // at least the pixels along the sides
        for (int i = 0; i < 100; ++i) {
            first.invalidateRasterization();
            second.invalidateRasterization();
            const ConventionalSliceEdgePointExtractor extractor(&first);
            for (int slice = 0; slice < depth; ++slice)
                QCOMPARE(extractor.slicePoints(slice).size(), atRest);
            QThread::usleep(500);
        }
        second.detachFrom(&first);
    }

    // Codes change while the worker asks for them.
    void codesChangeDuringARun()
    {
        SlicedContoursObject contours;
        addStack(contours, 64);
        BitPlaneRasterizerObject raster(&contours, 32, 32, 64, 1, 1, 1);
        RasterRuns runs(raster);
        raster.invalidateRasterization();
        for (int i = 0; i < 20000; ++i) {
            raster.setBitCode(contours.contour(0), i);
            raster.setDefaultBitCode(i);
        }
        raster.setBitCode(contours.contour(0), 9);
        QTRY_VERIFY(runs.published() > 0);
        QVERIFY(runs.run());
        QCOMPARE(int(rasterBytes(raster)[16 + 32 * 16]), 9);
    }

    void meshIsRebuiltWhileTheWorkerDraws()
    {
        TriMeshObject mesh("m", nullptr);
        BitPlaneRasterizerObject raster(&mesh, 32, 32, 8, 1, 1, 1);
        RasterRuns runs(raster);
        for (int i = 0; i < 400; ++i) {
            if (i % 20 == 0)
                mesh.addFragment("more");
            mesh.fragment(i % mesh.fragmentCount())->setFaces(teeth(1 + i % 32));
            if (i % 50 == 0)
                Painter().paint(mesh);
            raster.invalidateRasterization();
            QThread::usleep(200);
        }
        QVERIFY(runs.run());
    }

    // The window of the volume changes, its voxels are mirrored, and the main thread draws it, too. Mirrored
    // an even number of times it is what it was.
    void volumeChangesWhileTheWorkerDraws()
    {
        MervImageObject volume(
            newVolume(MERV::TypeUChar, {32, 32, 8}, [](int x, int y, int z) { return x + 3 * y + z; })
                .release(),
            "/v.mhd");
        BitPlaneRasterizerObject raster(&volume, 32, 32, 8, 1, 1, 1);
        raster.setBitCode(&volume, 255);
        RasterRuns runs(raster);
        for (int i = 0; i < 400; ++i) {
            volume.mirror(0);
            volume.setWindow(0.0f, static_cast<float>(100 + i));
            raster.invalidateRasterization();
            if (i % 20 == 0)
                Painter().paint(volume);
        }
        volume.setWindow(0, 255);
        QVERIFY(runs.run());
        QTRY_VERIFY(!raster.isStale() && runs.rests());
        const std::vector<unsigned char> bytes = rasterBytes(raster);
        QCOMPARE(int(bytes[5 + 32 * 7 + 32 * 32 * 3]), 5 + 3 * 7 + 3);
    }

    // A slice selector exchanges its whole image at each move; a raster may be its source, too.
    void selectorIsMovedWhileTheWorkersDraw()
    {
        SlicedContoursObject contours;
        addStack(contours, 8);
        BitPlaneRasterizerObject first(&contours, 32, 32, 8, 1, 1, 1);
        first.setBitCode(contours.contour(0), 127);
        SliceSelector selector(&first, SliceDirection::Z, 0);
        BitPlaneRasterizerObject second(&selector, 32, 32, 1, 1, 1, 1);
        second.setBitCode(&selector, 255);
        RasterRuns firstRuns(first), secondRuns(second);
        for (int i = 0; i < 400; ++i) {
            selector.setPosition(i % 8);
            selector.update();
            first.invalidateRasterization();
            second.invalidateRasterization();
            QThread::usleep(100);
        }
        QVERIFY(firstRuns.run());
        QVERIFY(secondRuns.run());
        second.detachFrom(&selector);
        selector.detachFrom(&first);
    }
};

QTEST_MAIN(RasterizerThreadsTest)
#include "RasterizerThreadsTest.moc"
