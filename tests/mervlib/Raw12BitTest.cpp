#include "Common/Raw12Bit.h"

#include "tests/mervlib/FormatTestSupport.h"

#include <gmock/gmock.h>

using namespace MERV;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

Bytes header(int width, int height, int depth)
{
    Bytes bytes(288);
    bytes.u32(0, 815).u16(4, 288).u16(190, 12).f64(200, 0.5).f64(208, 0.25).f64(216, 3.0);
    bytes.u32(232, static_cast<std::uint32_t>(width)).u32(236, static_cast<std::uint32_t>(height));
    return bytes.u32(240, static_cast<std::uint32_t>(depth));
}

// 1, 2, 3, .. up to count.
std::string numberedVoxels(unsigned count)
{
    Bytes bytes(2 * count);
    for (unsigned i = 0; i < count; ++i)
        bytes.u16(2 * i, i + 1);
    return bytes.str();
}

ImagePointer loadedFrom(const TempFolder &folder, const std::string &bytes, bool reversed = false)
{
    writeFile(folder / "v", bytes);
    return ImagePointer(loadRaw12Bit((folder / "v").c_str(), reversed));
}

TEST(Raw12BitReader, readsAFilePutTogetherByHand)
{
    const TempFolder folder;
    const CapturedText output;
    const ImagePointer image = loadedFrom(folder, header(3, 2, 2).str() + numberedVoxels(12));
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->getDataType(), TypeUShort);
    EXPECT_THAT(dimensionsOf(*image), ElementsAre(3, 2, 2, 1, 1));
    EXPECT_THAT(valuesOf<unsigned short>(*image), ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12));
    EXPECT_EQ(image->getSpacing(0), 0.5f);
    EXPECT_EQ(image->getSpacing(1), 0.25f);
    EXPECT_EQ(image->getSpacing(2), 3.0f);
    EXPECT_EQ(image->getPosition()[0], 0.0f);
    EXPECT_EQ(output.text(), "Common >> Loaded Image, resolution 3 x 2 x 2, min 1, max = 12\n");
}

TEST(Raw12BitReader, reversedTurnsSlicesAndRowsButNotColumns)
{
    const TempFolder folder;
    const CapturedText output;
    const ImagePointer image = loadedFrom(folder, header(2, 2, 2).str() + numberedVoxels(8), true);
    ASSERT_NE(image, nullptr);
    EXPECT_THAT(valuesOf<unsigned short>(*image), ElementsAre(7, 8, 5, 6, 3, 4, 1, 2));
    const ImagePointer odd = loadedFrom(folder, header(2, 3, 1).str() + numberedVoxels(6), true);
    ASSERT_NE(odd, nullptr);
    EXPECT_THAT(valuesOf<unsigned short>(*odd), ElementsAre(5, 6, 3, 4, 1, 2));
}

TEST(Raw12BitReader, sixteenBitsAreReadAlike)
{
    const TempFolder folder;
    const CapturedText output;
    const ImagePointer image = loadedFrom(folder, header(2, 1, 1).u16(190, 16).str() + numberedVoxels(2));
    ASSERT_NE(image, nullptr);
    EXPECT_THAT(valuesOf<unsigned short>(*image), ElementsAre(1, 2));
}

// low -1, high 1: a = 1 * 65530 / 2 = 32765, b = (0.012633652 + 1) * 65530 / 2 = 33178.94, so 4095 / (b - a)
// is 9.89268: 32766 gives 9.89268 + 0.5 -> 10, 33000 gives 2324.78 + 0.5 -> 2325, 33178 gives 4085.68 + 0.5
// -> 4086.
TEST(Raw12BitReader, calibrationRescales)
{
    const TempFolder folder;
    const CapturedText output;
    Bytes voxels(14);
    voxels.u16(0, 0).u16(2, 32765).u16(4, 32766).u16(6, 33000).u16(8, 33178).u16(10, 33179).u16(12, 65535);
    const ImagePointer image = loadedFrom(folder, header(7, 1, 1).text(149, "-1 1").str() + voxels.str());
    ASSERT_NE(image, nullptr);
    EXPECT_THAT(valuesOf<unsigned short>(*image), ElementsAre(0, 0, 10, 2325, 4086, 4095, 4095));
}

// The scale 2 makes b = (0.025267304 + 1) * 32765 = 33592.88 and 4095 / (b - a) = 4.94634: 33000 gives
// 235 * 4.94634 + 0.5 = 1162.89.
TEST(Raw12BitReader, firstLetterOfTheTextDoublesTheScale)
{
    const TempFolder folder;
    const CapturedText output;
    const auto voxel = [&](const std::string &text) {
        const Bytes bytes = header(1, 1, 1).text(149, "-1.0 1.0").text(6, text);
        const ImagePointer image = loadedFrom(folder, bytes.str() + Bytes(2).u16(0, 33000).str());
        return image == nullptr ? -1.0f : image->getValue(0);
    };
    EXPECT_EQ(voxel("Head"), 1162.0f);
    EXPECT_EQ(voxel("G"), 1162.0f);
    EXPECT_EQ(voxel("head"), 2325.0f);
    EXPECT_EQ(voxel("aH"), 2325.0f);
}

TEST(Raw12BitReader, noRescaleWhenLowIsZeroOrHighIs4095OrBothAreEqual)
{
    const TempFolder folder;
    const CapturedText output;
    for (const char *text : {"", "0 1", "-1 4095", "2 2", "x", "0", "nan nan"}) {
        const ImagePointer image =
            loadedFrom(folder, header(1, 1, 1).text(149, text).str() + Bytes(2).u16(0, 33000).str());
        ASSERT_NE(image, nullptr) << text;
        EXPECT_EQ(image->getValue(0), 33000.0f) << text;
    }
}

// A missing high counts as 0: low -1, high 0 gives a = 65530, so everything below is 0.
TEST(Raw12BitReader, missingHighCountsAsZero)
{
    const TempFolder folder;
    const CapturedText output;
    const ImagePointer image =
        loadedFrom(folder, header(1, 1, 1).text(149, "-1").str() + Bytes(2).u16(0, 33000).str());
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->getValue(0), 0.0f);
}

TEST(Raw12BitReader, reportsWhatIsNotSupported)
{
    const TempFolder folder;
    const std::pair<Bytes, std::string> files[] = {{header(1, 1, 1).u32(0, 816), "Header type 816"},
                                                   {header(1, 1, 1).u16(4, 290), "Header size of 290 bytes"},
                                                   {header(1, 1, 1).u16(190, 8), "8 bits"}};
    for (const auto &[bytes, message] : files) {
        const CapturedText output;
        EXPECT_EQ(loadedFrom(folder, bytes.str() + "ab"), nullptr);
        EXPECT_EQ(output.text(), "Common >> " + message + " not supported yet. Just implement it :)\n");
    }
}

TEST(Raw12BitReader, refusesExtentsThatAreNoneAndPathsThatAreNoFiles)
{
    const TempFolder folder;
    const CapturedText output;
    for (const Bytes &bytes : {header(0, 1, 1), header(1, -1, 1), header(-1, -1, 1), header(1, 1, 0)})
        EXPECT_EQ(loadedFrom(folder, bytes.str() + "ab"), nullptr);
    EXPECT_EQ(loadRaw12Bit((folder / "none").c_str(), false), nullptr);
    EXPECT_EQ(loadRaw12Bit(folder.path().c_str(), false), nullptr);
    EXPECT_EQ(loadRaw12Bit(nullptr, false), nullptr);
}

TEST(Raw12BitReader, truncatedFilesAreNull)
{
    const TempFolder folder;
    const CapturedText output;
    const std::string whole = header(2, 2, 1).str() + numberedVoxels(4);
    forEachTruncation(folder / "v", whole, [&](std::size_t size) {
        for (const bool reversed : {false, true}) {
            const ImagePointer image(loadRaw12Bit((folder / "v").c_str(), reversed));
            EXPECT_EQ(image != nullptr, size == whole.size()) << size;
        }
    });
    EXPECT_THAT(output.text(), HasSubstr("Common >> Unexpected end of file encountered"));
}

} // namespace
