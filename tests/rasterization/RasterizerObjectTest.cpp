#include "Common/ImageBase.h"
#include "meshes/BitPlaneRasterizerObject.h"
#include "meshes/TriMeshFragment.h"
#include "meshes/TriMeshObject.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/DrawnContours.h"
#include "tests/support/MemoryLimit.h"
#include "tests/support/RasterRun.h"
#include "tests/support/RasterSources.h"
#include "tests/support/Sanitized.h"
#include "tests/support/ScanConversion.h"
#include "tests/support/TestVolume.h"

#include <QDir>
#include <QRegularExpression>
#include <QTest>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <limits>
#include <numbers>
#include <random>
#include <thread>

namespace {

// As the command sets a rasterizer of contours up: 127 in every contour of now, 255 at loose ends.
void giveCodes(BitPlaneRasterizerObject &raster, const SlicedContoursObject &contours)
{
    raster.setDefaultBitCode(-1);
    for (int i = 0; i < contours.contourCount(); ++i)
        raster.setBitCode(contours.contour(i), 127);
}

// The raster of contours in voxels of 1 mm, made once.
struct Mask
{
    Mask(SlicedContoursObject &contours, int width, int height, int depth)
        : raster(&contours, width, height, depth, 1.0f, 1.0f, 1.0f)
        , runs(raster)
    {
        giveCodes(raster, contours);
        made = runs.run();
    }

    std::string slice(int k) const { return made ? slicePicture(raster, k) : "no raster came"; }

    BitPlaneRasterizerObject raster;
    RasterRuns runs;
    bool made = false;
};

// Three axes and the range, with blanks that do not break.
QString signatureOf(const char *range)
{
    return QString::fromUtf8("x × y × z → %1")
        .arg(range)
        .replace(QRegularExpression("(?<=[xyz×→]) | (?=[×→])"), QChar(0xA0));
}

int threadCount()
{
    return static_cast<int>(QDir("/proc/self/task").entryList(QDir::Dirs | QDir::NoDotAndDotDot).size());
}

// An outline as a hand draws it: round, with 500 points, a slowly wandering radius and a little noise.
std::vector<QPointF> freehandOutline(std::mt19937 &random, double size)
{
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    const QPointF centre(size * (0.3 + 0.4 * unit(random)), size * (0.3 + 0.4 * unit(random)));
    const double radius = size * (0.05 + 0.25 * unit(random));
    const double lobes = std::floor(2.0 + 6.0 * unit(random));
    std::vector<QPointF> outline;
    constexpr int points = 500;
    for (int i = 0; i < points; ++i) {
        const double angle = 2.0 * std::numbers::pi * i / points;
        const double r = radius * (1.0 + 0.2 * std::sin(lobes * angle) + 0.01 * unit(random));
        outline.push_back(centre + r * QPointF(std::cos(angle), std::sin(angle)));
    }
    return outline;
}

// Whether memory is exhausted by a raster of so many voxels.
bool isTooLarge(SlicedContoursObject &contours, int width, int height, int depth)
{
    try {
        const BitPlaneRasterizerObject raster(&contours, width, height, depth, 1, 1, 1);
        return false;
    } catch (const std::bad_alloc &) {
        return true;
    }
}

} // namespace

class RasterizerObjectTest : public QObject
{
    Q_OBJECT

private slots:
    // Eight voxels a side; the voxels whose centres lie in 2..6 are the four by four from 2 to 5.
    void squareFillsTheVoxelsWithCentresInside()
    {
        SlicedContoursObject contours;
        drawn::square(drawn::solid(contours), 0.5f, 2, 6);
        const Mask mask(contours, 8, 8, 1);
        QCOMPARE(mask.slice(0), std::string("........\n"
                                            "........\n"
                                            "..oooo..\n"
                                            "..oooo..\n"
                                            "..oooo..\n"
                                            "..oooo..\n"
                                            "........\n"
                                            "........\n"));
    }

    // y grows upwards and the mask is not mirrored.
    void rowZeroIsAtTheOrigin()
    {
        SlicedContoursObject contours;
        drawn::rectangle(drawn::solid(contours), 0.5f, 0, 0, 3, 1);
        const Mask mask(contours, 4, 3, 1);
        QCOMPARE(mask.slice(0), std::string("....\n....\nooo.\n"));
    }

    void nestedOutlinesLeaveARing()
    {
        SlicedContoursObject contours;
        drawn::square(drawn::solid(contours), 0.5f, 1, 7);
        drawn::square(drawn::solid(contours), 0.5f, 3, 5);
        const Mask mask(contours, 8, 8, 1);
        QCOMPARE(mask.slice(0), std::string("........\n"
                                            ".oooooo.\n"
                                            ".oooooo.\n"
                                            ".oo..oo.\n"
                                            ".oo..oo.\n"
                                            ".oooooo.\n"
                                            ".oooooo.\n"
                                            "........\n"));
    }

    void overlapOfTwoOutlinesIsEmpty()
    {
        SlicedContoursObject contours;
        drawn::square(drawn::solid(contours), 0.5f, 0, 4);
        drawn::square(drawn::solid(contours), 0.5f, 2, 6);
        const Mask mask(contours, 6, 6, 1);
        QCOMPARE(mask.slice(0), std::string("..oooo\n"
                                            "..oooo\n"
                                            "oo..oo\n"
                                            "oo..oo\n"
                                            "oooo..\n"
                                            "oooo..\n"));
    }

    // Codes are bits: where outlines of code 1 and 2 overlap both are set.
    void overlapOfDifferentCodesHasBoth()
    {
        SlicedContoursObject contours;
        drawn::rectangle(drawn::solid(contours), 0.5f, 0, 0, 2, 1);
        drawn::rectangle(drawn::solid(contours), 0.5f, 1, 0, 3, 1);
        BitPlaneRasterizerObject raster(&contours, 4, 1, 1, 1.0f, 1.0f, 1.0f);
        raster.setBitCode(contours.contour(0), 1);
        raster.setBitCode(contours.contour(1), 2);
        RasterRuns runs(raster);
        QVERIFY(runs.run());
        QCOMPARE(rasterBytes(raster), (std::vector<unsigned char>{1, 3, 2, 0}));
    }

    // The corners (1, 1) and (6, 5) of the line lie in the voxels of these numbers; the line itself is drawn
    // in code 0 and shows nowhere.
    void openLineLeavesItsTwoEndsInTheDefaultCode()
    {
        SlicedContoursObject contours;
        drawn::line(drawn::solid(contours), 0.5f, {{1.5, 1.5}, {6.5, 1.5}, {6.5, 5.5}});
        const Mask mask(contours, 8, 8, 1);
        QCOMPARE(mask.slice(0), std::string("........\n"
                                            "........\n"
                                            "......#.\n"
                                            "........\n"
                                            "........\n"
                                            "........\n"
                                            ".#......\n"
                                            "........\n"));
    }

    // The ends meet in pairs: each is toggled twice. Were the colour of the first end points kept for what
    // follows, later lines would be drawn in 255.
    void joinedLinesOfTwoFragmentsLeaveNoEndPoints()
    {
        SlicedContoursObject contours;
        SlicedContoursFragment *below = contours.newFragment("below");
        SlicedContoursFragment *above = contours.newFragment("above");
        SlicedContour *contour = contours.newContour("both");
        contour->addFragmentReference(below);
        contour->addFragmentReference(above);
        drawn::line(below, 0.5f, {{1, 3}, {1, 1}, {3, 1}});
        drawn::line(below, 0.5f, {{3, 1}, {5, 1}, {5, 3}});
        drawn::line(above, 0.5f, {{5, 3}, {5, 5}, {3, 5}});
        drawn::line(above, 0.5f, {{3, 5}, {1, 5}, {1, 3}});
        const Mask mask(contours, 6, 6, 1);
        QCOMPARE(mask.slice(0), std::string("......\n"
                                            ".oooo.\n"
                                            ".oooo.\n"
                                            ".oooo.\n"
                                            ".oooo.\n"
                                            "......\n"));
    }

    // A contour that nobody gave a code is solid all the same, in the default code.
    void contourWithoutCodeIsFilledInTheDefaultCode()
    {
        SlicedContoursObject contours;
        drawn::square(drawn::solid(contours), 0.5f, 1, 3);
        BitPlaneRasterizerObject raster(&contours, 4, 4, 1, 1.0f, 1.0f, 1.0f);
        raster.setDefaultBitCode(-1);
        RasterRuns runs(raster);
        QVERIFY(runs.run());
        QCOMPARE(slicePicture(raster, 0), std::string("....\n.##.\n.##.\n....\n"));
    }

    void whatLiesBelowZeroIsCutOff()
    {
        SlicedContoursObject contours;
        drawn::square(drawn::solid(contours), 0.5f, -3, 2);
        drawn::square(drawn::solid(contours), 0.5f, -9, -5);
        const Mask mask(contours, 4, 4, 1);
        QCOMPARE(mask.slice(0), std::string("....\n....\noo..\noo..\n"));
    }

    // Slab k is k <= z < k + 1.
    void outlineOnTheLimitOfTwoSlabsIsInTheUpperOne()
    {
        SlicedContoursObject contours;
        drawn::square(drawn::solid(contours), 1.0f, 0, 2);
        const Mask mask(contours, 2, 2, 3);
        QCOMPARE(mask.slice(0), std::string("..\n..\n"));
        QCOMPARE(mask.slice(1), std::string("oo\noo\n"));
        QCOMPARE(mask.slice(2), std::string("..\n..\n"));
    }

    // The limits of slabs are single precision products: a contour at the middle of each slice of 0.7 mm is
    // in its own slice, and so is one at exactly k * 0.7.
    void eachSliceHasItsOwnOutline()
    {
        constexpr int depth = 40;
        constexpr float spacing = 0.7f;
        for (const float offset : {0.0f, 0.5f}) {
            SlicedContoursObject contours;
            SlicedContoursFragment *outline = drawn::solid(contours);
            for (int k = 0; k < depth; ++k)
                drawn::rectangle(outline, (static_cast<float>(k) + offset) * spacing, 0, 0, k + 1, 1);
            BitPlaneRasterizerObject raster(&contours, depth, 1, depth, 1.0f, 1.0f, spacing);
            giveCodes(raster, contours);
            RasterRuns runs(raster);
            QVERIFY(runs.run());
            const std::vector<unsigned char> bytes = rasterBytes(raster);
            for (int k = 0; k < depth; ++k) {
                const auto row = bytes.begin() + k * depth;
                QCOMPARE(std::count(row, row + depth, 127), k + 1);
                QCOMPARE(std::count(row, row + depth, 0), depth - k - 1);
            }
        }
    }

    void voxelSizesScale()
    {
        SlicedContoursObject contours;
        drawn::rectangle(drawn::solid(contours), 2.0f, 1, 0.5, 2, 1);
        BitPlaneRasterizerObject raster(&contours, 8, 4, 2, 0.5f, 0.25f, 1.5f);
        giveCodes(raster, contours);
        RasterRuns runs(raster);
        QVERIFY(runs.run());
        QCOMPARE(slicePicture(raster, 0), std::string("........\n........\n........\n........\n"));
        QCOMPARE(slicePicture(raster, 1), std::string("..oo....\n..oo....\n........\n........\n"));
    }

    void newObjectIsEmptyAndNamed()
    {
        SlicedContoursObject contours("knee");
        BitPlaneRasterizerObject raster(&contours, 5, 4, 3, 0.5f, 0.25f, 2.0f);
        QCOMPARE(raster.label(), QString("Rasterization of knee"));
        QCOMPARE(raster.axisName(0), QString("x"));
        QCOMPARE(raster.axisName(1), QString("y"));
        QCOMPARE(raster.axisName(2), QString("z"));
        QCOMPARE(raster.rangeName(), QString("bit code"));
        QCOMPARE(raster.signature(), signatureOf("bit code"));
        QCOMPARE(raster.sources(), QList<ImageObject *>{&contours});
        QCOMPARE(raster.imageType(), int(ImageTypePixmap));
        QCOMPARE(raster.windowLow(), 0.0f);
        QCOMPARE(raster.windowHigh(), 255.0f);
        MERV::Image *image = raster.voxels();
        QCOMPARE(image->getDataType(), int(MERV::TypeUChar));
        QCOMPARE(image->getDimension(0), 5);
        QCOMPARE(image->getDimension(1), 4);
        QCOMPARE(image->getDimension(2), 3);
        QCOMPARE(image->getSpacing(0), 0.5f);
        QCOMPARE(image->getSpacing(1), 0.25f);
        QCOMPARE(image->getSpacing(2), 2.0f);
        QVERIFY(raster.isRunning());
        QVERIFY(!raster.isStale());
        QCOMPARE(rasterBytes(raster), std::vector<unsigned char>(60, 0));
    }

    void aSingleSliceHasThreeAxesAndThePlainClassAnotherRange()
    {
        SlicedContoursObject contours;
        const RasterizerObject raster(&contours, 4, 1, 1, 1, 1, 1);
        QCOMPARE(raster.signature(), signatureOf("raster value"));
    }

    void nothingIsDrawnUntilItIsAskedFor()
    {
        SlicedContoursObject contours;
        drawn::square(drawn::solid(contours), 0.5f, 0, 4);
        BitPlaneRasterizerObject raster(&contours, 4, 4, 1, 1, 1, 1);
        giveCodes(raster, contours);
        const RasterRuns runs(raster);
        QVERIFY(runs.rests());
        QCOMPARE(rasterBytes(raster), std::vector<unsigned char>(16, 0));
    }

    void messagesTellWhatTheRasterizerDoes()
    {
        CapturedOutput output;
        {
            SlicedContoursObject contours;
            BitPlaneRasterizerObject raster(&contours, 4, 4, 1, 1, 1, 1);
            RasterRuns runs(raster);
            QVERIFY(runs.run());
            raster.stopWorking();
        }
        QString text = output.standardOutput();
        text.replace(QRegularExpression("0x[0-9a-f]+"), "ID");
        // The constructor goes on while the thread begins, hence not the order of all lines.
        const qsizetype begin =
            text.indexOf("Pbuffer is in RGBA mode.\nRasterizer constructed; thread id is ID\n");
        QVERIFY2(begin >= 0, qPrintable(text));
        QCOMPARE(text.mid(text.indexOf("Rasterizer thread started")),
                 QString("Rasterizer thread started. Thread id is ID\n"
                         "Now entering Rasterizer main loop ...\n"
                         "Starting rasterization. Thread id is ID, OpenGL error flags are 0\n"
                         "Rasterization finished in thread id ID\n"
                         "Exiting Rasterizer event loop ...\n"
                         "Deleting Rasterizer Object ...\n"
                         "Rasterizer Object deleted.\n"));
        QCOMPARE(output.standardError(), QString());
    }

    // A worker that is at rest ends between the two messages of the destructor.
    void deletionTellsOfTheEndOfTheLoopInBetween()
    {
        CapturedOutput output;
        SlicedContoursObject contours;
        auto raster = std::make_unique<BitPlaneRasterizerObject>(&contours, 4, 4, 1, 1, 1, 1);
        QTRY_VERIFY(output.standardOutput().contains("Now entering Rasterizer main loop ...\n"));
        raster.reset();
        QVERIFY(output.standardOutput().endsWith("Deleting Rasterizer Object ...\n"
                                                 "Exiting Rasterizer event loop ...\n"
                                                 "Rasterizer Object deleted.\n"));
    }

    // An error of one run is told when the next one starts: 1280 is that of an unknown capability.
    void errorsOfOpenGlAreToldByTheNextRun()
    {
        CapturedOutput output;
        ScriptedSource source([](float) { glEnable(0xFFFF); });
        RasterizerObject raster(&source, 1, 1, 1, 1, 1, 1);
        RasterRuns runs(raster);
        QVERIFY(runs.run());
        QVERIFY(output.standardOutput().contains(", OpenGL error flags are 0\n"));
        QVERIFY(!output.standardOutput().contains("1280"));
        QVERIFY(runs.run());
        QVERIFY(output.standardOutput().contains(", OpenGL error flags are 1280\n"));
        raster.stopWorking();
    }

    // Who hears of a raster finds it up to date and in the image; the message comes last.
    void runEndsInTheOrderFlagImageSignalMessage()
    {
        CapturedOutput output;
        ScriptedSource source([](float) { ScriptedSource::fill(0, 0, 1, 1); });
        std::atomic<int> signalled{0}, current{0}, copied{0}, told{0};
        RasterizerObject raster(&source, 1, 1, 1, 1, 1, 1);
        connect(
            &raster, qOverload<>(&GraphicsObject::updated), &raster,
            [&] {
                current += raster.isStale() ? 0 : 1;
                copied += rasterBytes(raster) == std::vector<unsigned char>{255} ? 1 : 0;
                told += output.standardOutput().contains("Rasterization finished in thread id ") ? 1 : 0;
                ++signalled;
            },
            Qt::DirectConnection);
        raster.invalidateRasterization();
        QTRY_COMPARE(signalled.load(), 1);
        QCOMPARE(current.load(), 1);
        QCOMPARE(copied.load(), 1);
        QCOMPARE(told.load(), 0);
        raster.stopWorking();
        QVERIFY(output.standardOutput().contains("Rasterization finished in thread id "));
    }

    // Three outlines by hand per slice, toggled over each other, against plain code: the two may differ only
    // where a pixel's centre is so near to an edge that OpenGL may put it on either side. It works with at
    // least 4 bits behind the point, so a vertex moves by up to 1/32 of a pixel in x and in y.
    void maskIsThatOfAnIndependentScanConversion()
    {
        constexpr int size = 200, depth = 6;
        constexpr double granted = 0.0443; // sqrt(2) / 32, rounded up
        std::mt19937 random(5);
        SlicedContoursObject contours;
        std::vector<std::vector<std::vector<QPointF>>> outlines(depth);
        for (int k = 0; k < depth; ++k)
            for (int i = 0; i < 3; ++i) {
                std::vector<QPointF> outline = freehandOutline(random, size);
                outlines[static_cast<std::size_t>(k)].push_back(outline);
                outline.push_back(outline.front());
                drawn::line(drawn::solid(contours), static_cast<float>(k) + 0.5f, outline);
            }
        Mask mask(contours, size, size, depth);
        QVERIFY(mask.made);
        const std::vector<unsigned char> bytes = rasterBytes(mask.raster);
        int insideCount = 0, differing = 0;
        std::size_t index = 0;
        for (const auto &slice : outlines) {
            ScanConversion plain(size, size);
            for (const std::vector<QPointF> &outline : slice)
                plain.toggle(outline);
            for (int y = 0; y < size; ++y)
                for (int x = 0; x < size; ++x, ++index) {
                    insideCount += plain.isInside(x, y) ? 1 : 0;
                    if (bytes[index] == (plain.isInside(x, y) ? 127 : 0))
                        continue;
                    ++differing;
                    QVERIFY2(bytes[index] == 0 || bytes[index] == 127, "a code that nobody has");
                    QVERIFY(ScanConversion::distanceToEdges(x, y, slice) < granted);
                }
        }
        qInfo() << insideCount << "voxels inside," << differing << "others on an edge";
        QVERIFY(insideCount > 10000);
    }

    void advice_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("subKey");
        QTest::addColumn<bool>("overridesPlain");
        QTest::addColumn<bool>("overridesBits");
        QTest::addColumn<quint32>("bitsOfContour");
        QTest::addColumn<quint32>("bitsOfOther");
        const auto nothing = quint32(0);
        QTest::newRow("component") << 0 << 0 << false << false << nothing << nothing;
        QTest::newRow("display mode") << 1 << 0 << false << false << nothing << nothing;
        QTest::newRow("colour") << 2 << 0 << false << true << quint32(0x7F7F7F7F) << nothing;
        QTest::newRow("colour of ends") << 2 << 8 << false << true << quint32(0xFF) << quint32(0xFF);
        QTest::newRow("other colour") << 2 << 3 << false << true << quint32(0x7F7F7F7F) << nothing;
        QTest::newRow("highlight") << 4 << 0 << false << false << nothing << nothing;
        QTest::newRow("dashed") << 5 << 0 << false << false << nothing << nothing;
        QTest::newRow("smooth") << 7 << 0 << true << true << nothing << nothing;
        QTest::newRow("ends") << 8 << 0 << false << true << quint32(1) << quint32(1);
        QTest::newRow("ends, sub-key") << 8 << 5 << false << true << quint32(1) << quint32(1);
        QTest::newRow("line width") << 9 << 0 << false << false << nothing << nothing;
    }

    void advice()
    {
        QFETCH(int, key);
        QFETCH(int, subKey);
        SlicedContoursObject contours;
        SlicedContour *contour = contours.newContour("c");
        SlicedContoursFragment *fragment = contours.newFragment("f");
        RasterizerObject plain(&contours, 1, 1, 1, 1, 1, 1);
        BitPlaneRasterizerObject bits(&contours, 1, 1, 1, 1, 1, 1);
        bits.setDefaultBitCode(-1);
        bits.setBitCode(contour, 127);
        QTEST(plain.overrides(contour, key, subKey), "overridesPlain");
        QCOMPARE(plain.value(contour, key, subKey), quint32(0));
        QTEST(bits.overrides(contour, key, subKey), "overridesBits");
        QTEST(bits.value(contour, key, subKey), "bitsOfContour");
        QTEST(bits.value(fragment, key, subKey), "bitsOfOther");
        QTEST(bits.value(nullptr, key, subKey), "bitsOfOther");
    }

    // Only a contour takes the default code in place of its own, and its entry is 0 all the same.
    void contourWithoutCodeIsAdvisedTheDefaultCode()
    {
        SlicedContoursObject contours;
        SlicedContour *contour = contours.newContour("c");
        SlicedContoursFragment *fragment = contours.newFragment("f");
        SlicedContoursSegment *segment = fragment->newSegment({1, 1}, 0);
        BitPlaneRasterizerObject raster(&contours, 1, 1, 1, 1, 1, 1);
        QCOMPARE(raster.value(contour, 2, 0), quint32(0));
        raster.setDefaultBitCode(-128);
        QCOMPARE(raster.value(contour, 2, 0), quint32(0x80808080));
        QCOMPARE(raster.bitCode(contour), std::uint8_t(0));
        for (GraphicsObject *other : std::initializer_list<GraphicsObject *>{&contours, fragment, segment})
            QCOMPARE(raster.value(other, 2, 0), quint32(0));
        raster.setBitCode(contour, 0);
        QCOMPARE(raster.value(contour, 2, 0), quint32(0));
        raster.setBitCode(segment, 300); // 300 - 256
        QCOMPARE(raster.bitCode(segment), std::uint8_t(44));
        QCOMPARE(raster.value(segment, 2, 0), quint32(0x2C2C2C2C));
    }

    void objectThatDiesLosesItsCode()
    {
        SlicedContoursObject contours;
        SlicedContour *contour = contours.newContour("c");
        BitPlaneRasterizerObject raster(&contours, 1, 1, 1, 1, 1, 1);
        raster.setBitCode(contour, 1);
        raster.setBitCode(contour, 127);
        QCOMPARE(raster.bitCode(contour), std::uint8_t(127));
        delete contour;
        QCOMPARE(raster.bitCode(contour), std::uint8_t(0));
        raster.setBitCode(nullptr, 3);
        QCOMPARE(raster.bitCode(nullptr), std::uint8_t(0));
    }

    // The plain class draws fills and lines in white. The line from (1.5, 1.5) to (5.5, 1.5) has the voxels 1
    // to 5 of row 1, the last one by the mark on its end; there is no blended one beside it.
    void plainRasterizerDrawsWhiteWithoutSmoothing()
    {
        SlicedContoursObject contours;
        drawn::line(contours.newFragment("f"), 0.5f, {{1.5, 1.5}, {5.5, 1.5}});
        RasterizerObject raster(&contours, 7, 3, 1, 1, 1, 1);
        RasterRuns runs(raster);
        QVERIFY(runs.run());
        QCOMPARE(slicePicture(raster, 0), std::string(".......\n.#####.\n.......\n"));
    }

    void slabsAreAskedForInOrderAndWithTheLowestPositiveBound()
    {
        ScriptedSource source([](float) {});
        RasterizerObject raster(&source, 2, 2, 3, 1.0f, 1.0f, 0.7f);
        RasterRuns runs(raster);
        QVERIFY(runs.run());
        const float low = 1.1754944e-38f, high = 3.4028235e38f;
        const std::vector<ScriptedSource::Box> boxes{{low, high, low, high, 0.0f, 0.7f},
                                                     {low, high, low, high, 0.7f, 2.0f * 0.7f},
                                                     {low, high, low, high, 2.0f * 0.7f, 3.0f * 0.7f}};
        QCOMPARE(source.boxes(), boxes);
    }

    // A source that leaves a mess behind, slab by slab, does not change what the next slab looks like.
    void eachSlabStartsFromThePlainState()
    {
        ScriptedSource source([](float) {
            ScriptedSource::fill(0, 0, 1, 1);
            glEnable(GL_BLEND);
            glBlendFunc(GL_ZERO, GL_ZERO);
            glEnable(GL_SCISSOR_TEST);
            glScissor(0, 0, 0, 0);
            glEnable(GL_LINE_STIPPLE);
            glColor4ub(1, 2, 3, 4);
        });
        for (const bool bits : {false, true}) {
            std::unique_ptr<RasterizerObject> raster;
            if (bits)
                raster = std::make_unique<BitPlaneRasterizerObject>(&source, 2, 1, 3, 1.0f, 1.0f, 1.0f);
            else
                raster = std::make_unique<RasterizerObject>(&source, 2, 1, 3, 1.0f, 1.0f, 1.0f);
            RasterRuns runs(*raster);
            QVERIFY(runs.run());
            QCOMPARE(rasterBytes(*raster), (std::vector<unsigned char>{255, 0, 255, 0, 255, 0}));
        }
    }

    // The blue byte is the voxel, and the drawing of one slab does not show in the next.
    void blueIsWhatCounts()
    {
        ScriptedSource source([](float zMin) {
            glColor4ub(10, 20, zMin == 0.0f ? 30 : 40, 50);
            if (zMin < 2.0f)
                ScriptedSource::fill(0, 0, 1, 1);
        });
        BitPlaneRasterizerObject raster(&source, 1, 1, 3, 1.0f, 1.0f, 1.0f);
        RasterRuns runs(raster);
        QVERIFY(runs.run());
        QCOMPARE(rasterBytes(raster), (std::vector<unsigned char>{30, 40, 0}));
    }

    // A volume on the raster's own grid, shown through a window of 0 to 255, comes back voxel by voxel.
    void volumeIsCopied()
    {
        MervImageObject volume(
            newVolume(MERV::TypeUChar, {5, 3, 4}, [](int x, int y, int z) { return 1 + x + 10 * y + 50 * z; })
                .release(),
            "/v.mhd");
        volume.setWindow(0, 255);
        BitPlaneRasterizerObject raster(&volume, 5, 3, 4, 1, 1, 1);
        raster.setBitCode(&volume, 255);
        RasterRuns runs(raster);
        QVERIFY(runs.run());
        std::vector<unsigned char> expected;
        for (int z = 0; z < 4; ++z)
            for (int y = 0; y < 3; ++y)
                for (int x = 0; x < 5; ++x)
                    expected.push_back(static_cast<unsigned char>(1 + x + 10 * y + 50 * z));
        QCOMPARE(rasterBytes(raster), expected);
    }

    // A volume has no updated(QObject *): this is told, and its updated() is followed.
    void volumeIsFollowed()
    {
        CapturedOutput output;
        MervImageObject volume(
            newVolume(MERV::TypeUChar, {3, 1, 1}, [](int x, int, int) { return x; }).release(), "/v.mhd");
        volume.setWindow(0, 255);
        BitPlaneRasterizerObject raster(&volume, 3, 1, 1, 1, 1, 1);
        QCOMPARE(output.standardError(),
                 QString("Cound not establish connection indicating rasterization invalidation.\n"));
        raster.setBitCode(&volume, 255);
        RasterRuns runs(raster);
        volume.mirror(0);
        QTRY_COMPARE(runs.published(), 1);
        QCOMPARE(rasterBytes(raster), (std::vector<unsigned char>{2, 1, 0}));
        raster.stopWorking();
    }

    // A face towards the light is white. It lies in all slabs, since a mesh does not look at the box. Its
    // voxels are those whose centres have x + y < 4.5.
    void meshIsDrawnIntoEachSlab()
    {
        TriMeshObject mesh("m", nullptr);
        mesh.addFragment("f")->addFace(MERV::BRep::TriFace(
            MERV::BRep::Point(0, 0, 1), MERV::BRep::Point(4.5, 0, 1), MERV::BRep::Point(0, 4.5, 1)));
        BitPlaneRasterizerObject raster(&mesh, 5, 5, 2, 1, 1, 1);
        raster.setBitCode(&mesh, 255);
        RasterRuns runs(raster);
        QVERIFY(runs.run());
        for (const int k : {0, 1})
            QCOMPARE(slicePicture(raster, k), std::string(".....\n"
                                                          "#....\n"
                                                          "##...\n"
                                                          "###..\n"
                                                          "####.\n"));
    }

    void contoursAreFollowed()
    {
        CapturedOutput output;
        SlicedContoursObject contours;
        SlicedContoursFragment *outline = drawn::solid(contours);
        BitPlaneRasterizerObject raster(&contours, 4, 4, 1, 1, 1, 1);
        giveCodes(raster, contours);
        QCOMPARE(output.standardError(), QString());
        RasterRuns runs(raster);
        SlicedContoursSegment *segment = drawn::line(outline, 0.5f, {{1, 1}, {3, 1}, {3, 3}, {1, 3}, {1, 1}});
        QVERIFY(!raster.isStale()); // the call is queued
        QTRY_VERIFY(runs.published() >= 1);
        QTRY_VERIFY(!raster.isStale() && runs.rests());
        QCOMPARE(slicePicture(raster, 0), std::string("....\n.oo.\n.oo.\n....\n"));
        delete segment;
        QTRY_COMPARE(rasterBytes(raster), std::vector<unsigned char>(16, 0));
        raster.stopWorking();
    }

    // What a view shows of the raster is converted anew after each run.
    void displaySlicesFollow()
    {
        SlicedContoursObject contours;
        drawn::rectangle(drawn::solid(contours), 0.5f, 0, 0, 1, 1);
        BitPlaneRasterizerObject raster(&contours, 2, 1, 1, 1, 1, 1);
        giveCodes(raster, contours);
        RasterRuns runs(raster);
        QCOMPARE(int(raster.displaySlice(0)[0]), 0);
        QVERIFY(runs.run());
        QCOMPARE(int(raster.displaySlice(0)[0]), 127);
        QCOMPARE(int(raster.displaySlice(0)[1]), 0);
        raster.setBitCode(contours.contour(0), 3);
        QVERIFY(runs.run());
        QCOMPARE(int(raster.displaySlice(0)[0]), 3);
    }

    // However often the raster becomes stale during a run, one more run makes up for it.
    void invalidationDuringARunGivesOneFurtherRun()
    {
        GatedSource source;
        RasterizerObject raster(&source, 1, 1, 1, 1, 1, 1);
        RasterRuns runs(raster);
        raster.invalidateRasterization();
        raster.invalidateRasterization();
        QVERIFY(raster.isStale());
        QTRY_COMPARE(source.entered.load(), 1);
        for (int i = 0; i < 3; ++i)
            raster.invalidateRasterization();
        source.letPass(1);
        QTRY_COMPARE(runs.published(), 1);
        QVERIFY(raster.isStale());
        QTRY_COMPARE(source.entered.load(), 2);
        source.letPass(1);
        QTRY_COMPARE(runs.published(), 2);
        QVERIFY(!raster.isStale());
        QVERIFY(runs.rests());
        QCOMPARE(source.entered.load(), 2);
    }

    // The worker ends after the slab that it is at, and publishes nothing.
    void stopLeavesTheRunAfterTheSlab()
    {
        GatedSource source;
        RasterizerObject raster(&source, 1, 1, 5, 1, 1, 1);
        const RasterRuns runs(raster);
        raster.invalidateRasterization();
        source.letPass(1);
        QTRY_COMPARE(source.entered.load(), 2);
        std::thread later([&] {
            QThread::msleep(100);
            source.letPass(1);
        });
        raster.stopWorking();
        later.join();
        QCOMPARE(source.left.load(), 2);
        QVERIFY(!raster.isRunning());
        QVERIFY(runs.rests());
        QCOMPARE(runs.published(), 0);
        raster.stopWorking();
        raster.wait();
        raster.invalidateRasterization();
        QVERIFY(runs.rests());
    }

    // The one who closes the source waits for the slab; then nobody draws it any more.
    void sourceClosedDuringARunIsLetGoAfterTheSlab()
    {
        auto source = std::make_unique<GatedSource>();
        RasterizerObject raster(source.get(), 1, 1, 5, 1, 1, 1);
        RasterRuns runs(raster);
        raster.invalidateRasterization();
        QTRY_COMPARE(source->entered.load(), 1);
        std::thread later([&] {
            QThread::msleep(100);
            source->letPass(1);
        });
        raster.detachFrom(source.get());
        QCOMPARE(source->left.load(), 1);
        later.join();
        source.reset();
        QVERIFY(runs.rests());
        QCOMPARE(runs.published(), 0);
        QVERIFY(raster.isRunning());
    }

    void rasterStaysWhenTheSourceIsClosed()
    {
        auto contours = std::make_unique<SlicedContoursObject>("knee");
        drawn::square(drawn::solid(*contours), 0.5f, 0, 2);
        Mask mask(*contours, 2, 2, 1);
        QVERIFY(mask.made);
        SlicedContoursObject other;
        mask.raster.detachFrom(&other);
        QCOMPARE(mask.raster.sources().size(), 1);
        const SlicedContour *contour = contours->contour(0);
        mask.raster.detachFrom(contours.get());
        QCOMPARE(mask.raster.bitCode(contour), std::uint8_t(0));
        contours.reset();
        QVERIFY(mask.raster.sources().isEmpty());
        QCOMPARE(mask.raster.label(), QString("Rasterization of knee"));
        mask.raster.invalidateRasterization();
        QVERIFY(mask.runs.rests());
        QVERIFY(!mask.raster.isStale());
        QCOMPARE(mask.slice(0), std::string("oo\noo\n"));
        QVERIFY(mask.raster.isRunning());
    }

    void sourceThatGoesUnannouncedIsForgotten()
    {
        auto contours = std::make_unique<SlicedContoursObject>();
        RasterizerObject raster(contours.get(), 1, 1, 1, 1, 1, 1);
        contours.reset();
        QVERIFY(raster.sources().isEmpty());
        const RasterRuns runs(raster);
        raster.invalidateRasterization();
        QVERIFY(runs.rests());
        QCOMPARE(runs.published(), 0);
    }

    void withoutASourceNothingHappens()
    {
        RasterizerObject raster(nullptr, 1, 1, 1, 1, 1, 1);
        QCOMPARE(raster.label(), QString("Rasterization of "));
        const RasterRuns runs(raster);
        raster.invalidateRasterization();
        QVERIFY(runs.rests());
        QCOMPARE(runs.published(), 0);
    }

    // A source that runs out of memory while it draws costs the run, not the program.
    void failingSourceKeepsTheLastRaster()
    {
        std::atomic<bool> fails{false};
        ScriptedSource source([&](float) {
            if (fails)
                throw std::bad_alloc();
            ScriptedSource::fill(0, 0, 1, 1);
        });
        CapturedOutput output;
        RasterizerObject raster(&source, 1, 1, 1, 1, 1, 1);
        RasterRuns runs(raster);
        QVERIFY(runs.run());
        fails = true;
        raster.invalidateRasterization();
        QVERIFY(runs.rests());
        QCOMPARE(rasterBytes(raster), std::vector<unsigned char>{255});
        fails = false;
        QVERIFY(runs.run());
        QVERIFY(output.standardError().endsWith("Rasterization failed: std::bad_alloc\n"));
        raster.stopWorking();
    }

    // Whatever the height is to the row that the probe looks at.
    void everyHeightIsTheRightWayUp_data()
    {
        QTest::addColumn<int>("height");
        for (const int height : {1, 100, 255, 256, 257, 300})
            QTest::addRow("%d", height) << height;
    }

    void everyHeightIsTheRightWayUp()
    {
        QFETCH(int, height);
        SlicedContoursObject contours;
        drawn::rectangle(drawn::solid(contours), 0.5f, 0, 0, 1, 0.5 * height);
        const Mask mask(contours, 1, height, 1);
        QVERIFY(mask.made);
        const std::vector<unsigned char> bytes = rasterBytes(mask.raster);
        for (int y = 0; y < height; ++y) // a centre on the edge belongs to either side
            if (y + 0.5 != 0.5 * height)
                QCOMPARE(int(bytes[static_cast<std::size_t>(y)]), y + 0.5 < 0.5 * height ? 127 : 0);
    }

    void oddSizesAreHarmless_data()
    {
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("height");
        QTest::addColumn<int>("depth");
        QTest::addColumn<float>("voxelX");
        QTest::addColumn<float>("voxelY");
        QTest::addColumn<float>("voxelZ");
        const float nan = std::numeric_limits<float>::quiet_NaN();
        const float infinity = std::numeric_limits<float>::infinity();
        const float largest = std::numeric_limits<float>::max();
        QTest::newRow("nothing") << 0 << 0 << 0 << 1.0f << 1.0f << 1.0f;
        QTest::newRow("no width") << 0 << 4 << 2 << 1.0f << 1.0f << 1.0f;
        QTest::newRow("no height") << 4 << 0 << 2 << 1.0f << 1.0f << 1.0f;
        QTest::newRow("no depth") << 4 << 4 << 0 << 1.0f << 1.0f << 1.0f;
        QTest::newRow("no voxel size") << 4 << 4 << 2 << 0.0f << 0.0f << 0.0f;
        QTest::newRow("flat") << 4 << 4 << 2 << 1.0f << 1.0f << 0.0f;
        QTest::newRow("not a number") << 4 << 4 << 2 << nan << nan << nan;
        QTest::newRow("x not a number") << 4 << 4 << 2 << nan << 1.0f << 1.0f;
        QTest::newRow("infinite") << 4 << 4 << 2 << infinity << infinity << infinity;
        QTest::newRow("huge") << 4 << 4 << 2 << largest << largest << largest;
        QTest::newRow("negative") << 4 << 4 << 2 << -1.0f << -1.0f << -1.0f;
    }

    void oddSizesAreHarmless()
    {
        QFETCH(int, width);
        QFETCH(int, height);
        QFETCH(int, depth);
        QFETCH(float, voxelX);
        QFETCH(float, voxelY);
        QFETCH(float, voxelZ);
        SlicedContoursObject contours;
        drawn::square(drawn::solid(contours), 0.0f, 0, 2);
        BitPlaneRasterizerObject raster(&contours, width, height, depth, voxelX, voxelY, voxelZ);
        giveCodes(raster, contours);
        RasterRuns runs(raster);
        QVERIFY(runs.run());
        QVERIFY(runs.run());
        QCOMPARE(rasterBytes(raster).size(), static_cast<std::size_t>(width * height * depth));
        raster.displaySlice(0);
        raster.nextSignificantZ(0.0f);
    }

    // Points that are no numbers are drawn by nobody.
    void oddContoursAreHarmless()
    {
        const double nan = std::numeric_limits<double>::quiet_NaN();
        const double infinity = std::numeric_limits<double>::infinity();
        SlicedContoursObject contours;
        SlicedContoursFragment *outline = drawn::solid(contours);
        drawn::line(outline, 0.5f, {{nan, nan}, {1, nan}, {nan, nan}});
        drawn::line(outline, 0.5f, {{infinity, 0}, {0, infinity}, {-infinity, 0}});
        drawn::line(outline, 0.5f, {{1e300, 0}, {0, 1e300}, {-1e300, 0}, {1e300, 0}});
        outline->newSegment({2.5, 2.5}, std::numeric_limits<float>::quiet_NaN());
        drawn::square(drawn::solid(contours), 0.5f, 0, 2);
        const Mask mask(contours, 4, 4, 1);
        QVERIFY(mask.made);
    }

    void exhaustedMemoryIsThrownWithoutAThread()
    {
        SlicedContoursObject contours;
        const int before = threadCount();
        QVERIFY(isTooLarge(contours, 2147483647, 2147483647, 2147483647));
        QCOMPARE(threadCount(), before);
    }

    // No room for the image, or for the image but not for the copy that the worker draws into.
    void exhaustedMemoryOfAnySizeIsThrown()
    {
        if (sanitized)
            QSKIP("A sanitizer ends the program where memory is exhausted.");
        constexpr rlim_t megabyte = 1 << 20;
        SlicedContoursObject contours;
        QVERIFY(!isTooLarge(contours, 4, 4, 4)); // starts what OpenGL keeps
        const int before = threadCount();
        QVERIFY(isTooLarge(contours, 1 << 20, 1 << 20, 1 << 10));
        {
            const MemoryLimit limit(1024 * megabyte);
            QVERIFY(limit.isSet);
            QVERIFY(isTooLarge(contours, 2048, 2048, 1024));
        }
        {
            const MemoryLimit limit(1200 * megabyte); // 512 for the voxels, 512 for their textures
            QVERIFY(limit.isSet);
            QVERIFY(isTooLarge(contours, 2048, 2048, 128));
        }
        QCOMPARE(threadCount(), before);
    }
};

QTEST_MAIN(RasterizerObjectTest)
#include "RasterizerObjectTest.moc"
