#include "Common/ImageBase.h"
#include "meshes/BitPlaneRasterizerObject.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/DrawnContours.h"
#include "tests/support/RasterRun.h"

#include <QTest>

#include <algorithm>
#include <limits>

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
};

QTEST_MAIN(RasterizerObjectTest)
#include "RasterizerObjectTest.moc"
