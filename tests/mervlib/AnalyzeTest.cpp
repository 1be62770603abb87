#include "Common/Analyze.h"

#include "tests/mervlib/FormatTestSupport.h"

#include <gmock/gmock.h>

#include <limits>

using namespace MERV;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

ImagePointer loaded(const std::string &path)
{
    return ImagePointer(loadAnalyze(path.c_str()));
}

// A header by the published layout.
Bytes header(int width, int height, int depth, int frames, int datatype)
{
    Bytes bytes(348);
    bytes.u32(0, 348).u16(40, 4);
    bytes.u16(42, static_cast<std::uint32_t>(width)).u16(44, static_cast<std::uint32_t>(height));
    bytes.u16(46, static_cast<std::uint32_t>(depth)).u16(48, static_cast<std::uint32_t>(frames));
    return bytes.u16(70, static_cast<std::uint32_t>(datatype)).f32(80, 0.5f).f32(84, 0.25f).f32(88, 3.0f);
}

// The same as a machine of the other byte order writes it.
Bytes turnedHeader(int width, int height, int depth, int frames, int datatype)
{
    Bytes bytes = header(width, height, depth, frames, datatype);
    bytes.turned(0, 4);
    for (const std::size_t offset : {40u, 42u, 44u, 46u, 48u, 70u})
        bytes.turned(offset, 2);
    for (const std::size_t offset : {80u, 84u, 88u})
        bytes.turned(offset, 4);
    return bytes;
}

ImagePointer loadedFrom(const TempFolder &folder, const std::string &headerBytes, const std::string &voxels)
{
    writeFile(folder / "v.hdr", headerBytes);
    writeFile(folder / "v.img", voxels);
    return loaded(folder / "v.hdr");
}

template <class T>
class AnalyzeOfType : public testing::Test
{};
using VoxelTypes = testing::Types<unsigned char, short, float>;
TYPED_TEST_SUITE(AnalyzeOfType, VoxelTypes);

TYPED_TEST(AnalyzeOfType, bothWritersAndReadersRoundTrip)
{
    const TempFolder folder;
    const CapturedText output;
    const auto image = numberedImage<TypeParam>(5, 4, 3, 2, 1);
    image->setSpacing(0.3125f, 0.7f, 3.3f, 9.0f);
    EXPECT_EQ(saveAnalyze((folder / "narrow").c_str(), image.get()), 0);
    EXPECT_EQ(saveAnalyze(folder.wide(L"wide").c_str(), image.get()), 0);
    EXPECT_EQ(contentOf(folder / "narrow.hdr"), contentOf(folder / "wide.hdr"));
    EXPECT_EQ(contentOf(folder / "narrow.img"), contentOf(folder / "wide.img"));
    const ImagePointer copies[] = {loaded(folder / "narrow.hdr"),
                                   ImagePointer(loadAnalyze(folder.wide(L"wide.hdr").c_str()))};
    for (const ImagePointer &copy : copies) {
        ASSERT_NE(copy, nullptr);
        EXPECT_EQ(copy->getDataType(), image->getDataType());
        EXPECT_THAT(dimensionsOf(*copy), ElementsAre(5, 4, 3, 2, 1));
        EXPECT_EQ(valuesOf<TypeParam>(*copy), valuesOf<TypeParam>(*image));
        for (int axis = 0; axis < 3; ++axis)
            EXPECT_EQ(copy->getSpacing(axis), image->getSpacing(axis));
        EXPECT_EQ(copy->getSpacing(3), 1.0f); // the header does not tell it
        EXPECT_EQ(copy->getMaximum(), image->getMaximum());
    }
}

TEST(AnalyzeWriter, headerHasTheseBytesAndZerosElsewhere)
{
    const TempFolder folder;
    const auto image = numberedImage<short>(5, 4, 3, 2, 1);
    image->setSpacing(0.3125f, 0.7f, 3.3f, 9.0f);
    image->setMinMax(-60.75f, 1234.75f);
    EXPECT_EQ(saveAnalyze((folder / "i").c_str(), image.get()), 0);
    Bytes expected(348);
    expected.u32(0, 348).text(38, "r").u16(40, 4);
    expected.u16(42, 5).u16(44, 4).u16(46, 3).u16(48, 2).u16(70, 4).u16(72, 16);
    expected.f32(80, 0.3125f).f32(84, 0.7f).f32(88, 3.3f);
    expected.u32(140, 1234).u32(144, 0x100000000u - 60);
    EXPECT_EQ(contentOf(folder / "i.hdr"), expected.str());
    EXPECT_EQ(contentOf(folder / "i.img").size(), 5u * 4 * 3 * 2 * 2);
}

TEST(AnalyzeWriter, typesHaveTheseCodes)
{
    const TempFolder folder;
    saveAnalyze((folder / "b").c_str(), numberedImage<unsigned char>(1, 1, 1, 1, 1).get());
    saveAnalyze((folder / "f").c_str(), numberedImage<float>(1, 1, 1, 1, 1).get());
    EXPECT_EQ(contentOf(folder / "b.hdr").substr(70, 4), std::string("\x02\x00\x08\x00", 4));
    EXPECT_EQ(contentOf(folder / "f.hdr").substr(70, 4), std::string("\x10\x00\x20\x00", 4));
}

TEST(AnalyzeWriter, rangeSaturates)
{
    const TempFolder folder;
    const auto image = numberedImage<float>(1, 1, 1, 1, 1);
    image->setMinMax(-1e20f, std::numeric_limits<float>::infinity());
    EXPECT_EQ(saveAnalyze((folder / "i").c_str(), image.get()), 0);
    EXPECT_EQ(contentOf(folder / "i.hdr").substr(140, 8), std::string("\xFF\xFF\xFF\x7F\x00\x00\x00\x80", 8));
}

TEST(AnalyzeWriter, refusesOtherTypesBeforeAnyFileIsTouched)
{
    const TempFolder folder;
    writeFile(folder / "i.hdr", "old");
    for (const int type : {TypeChar, TypeUShort, TypeInt, TypeUInt, TypeDouble}) {
        const CapturedText output;
        const ImagePointer image(createImage(type));
        image->setDimensions(1, 1, 1, 1, 1);
        EXPECT_EQ(saveAnalyze((folder / "i").c_str(), image.get()), 1);
        EXPECT_EQ(output.text(), "Common >> Error: Datatype not supported by Analyze format!\n");
    }
    EXPECT_EQ(contentOf(folder / "i.hdr"), "old");
}

TEST(AnalyzeWriter, refusesExtentsThatTheHeaderCannotHold)
{
    const TempFolder folder;
    EXPECT_EQ(saveAnalyze((folder / "i").c_str(), numberedImage<short>(32768, 1, 1, 1, 1).get()), 1);
    EXPECT_FALSE(std::filesystem::exists(folder / "i.hdr"));
    EXPECT_EQ(saveAnalyze((folder / "i").c_str(), numberedImage<short>(32767, 1, 1, 1, 1).get()), 0);
    EXPECT_EQ(saveAnalyze((folder / "i").c_str(), nullptr), 1);
}

TEST(AnalyzeWriter, reportsFilesThatCannotBeCreated)
{
    const TempFolder folder;
    const auto image = numberedImage<short>(2, 2, 1, 1, 1);
    const CapturedText output;
    EXPECT_EQ(saveAnalyze((folder / "none/i").c_str(), image.get()), 1);
    std::filesystem::create_directory(folder / "i.img");
    EXPECT_EQ(saveAnalyze(folder.wide(L"i").c_str(), image.get()), 1);
    EXPECT_EQ(output.text(), "Common >> Error: Could not create file: " + (folder / "none/i.hdr") +
                                 "\nCommon >> Error: Could not create data file " + (folder / "i.img") +
                                 " while creating Analyze image file structure.\n");
}

TEST(AnalyzeWriter, countsEachStreamThatFails)
{
    const TempFolder folder;
    const CapturedText output;
    const auto image = numberedImage<short>(2, 2, 1, 1, 1);
    std::filesystem::create_symlink("/dev/full", folder / "a.img");
    EXPECT_EQ(saveAnalyze((folder / "a").c_str(), image.get()), 1);
    std::filesystem::create_symlink("/dev/full", folder / "b.hdr");
    std::filesystem::create_symlink("/dev/full", folder / "b.img");
    EXPECT_EQ(saveAnalyze((folder / "b").c_str(), image.get()), 2);
}

TEST(AnalyzeReader, readsAHeaderPutTogetherByHand)
{
    const TempFolder folder;
    const CapturedText output;
    const ImagePointer image =
        loadedFrom(folder, header(2, 1, 1, 2, 4).str(), std::string("\1\0\2\0\3\0\xFE\xFF", 8));
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->getDataType(), TypeShort);
    EXPECT_THAT(dimensionsOf(*image), ElementsAre(2, 1, 1, 2, 1));
    EXPECT_THAT(valuesOf<short>(*image), ElementsAre(1, 2, 3, -2));
    EXPECT_EQ(image->getSpacing(0), 0.5f);
    EXPECT_EQ(image->getSpacing(1), 0.25f);
    EXPECT_EQ(image->getSpacing(2), 3.0f);
    EXPECT_EQ(output.text(), "Common >> Loading file " + (folder / "v.img") +
                                 "\nCommon >> Loaded Image, resolution 2 x 1 x 1, min -2, max = 3\n");
}

TEST(AnalyzeReader, wideFormHasWordsOfItsOwn)
{
    const TempFolder folder;
    writeFile(folder / "v.hdr", header(2, 1, 1, 1, 2).str());
    writeFile(folder / "v.img", "ab");
    const CapturedText output;
    const ImagePointer image(loadAnalyze(folder.wide(L"v.hdr").c_str()));
    EXPECT_NE(image, nullptr);
    EXPECT_EQ(output.text(), "Common >> Loading data file \"" + (folder / "v.img") +
                                 "\" ...\nCommon >> Loaded Image, resolution 2 x 1 x 1, min 97, max = 98\n");
}

TEST(AnalyzeReader, otherByteOrderIsKnownByTheNumberOfAxes)
{
    const TempFolder folder;
    const CapturedText output;
    const Bytes turned = turnedHeader(2, 1, 1, 2, 4);
    ASSERT_EQ(turned.str().substr(40, 2), std::string("\0\4", 2)); // reads as 1024
    const ImagePointer image = loadedFrom(folder, turned.str(), std::string("\0\1\0\2\0\3\xFF\xFE", 8));
    ASSERT_NE(image, nullptr);
    EXPECT_THAT(dimensionsOf(*image), ElementsAre(2, 1, 1, 2, 1));
    EXPECT_THAT(valuesOf<short>(*image), ElementsAre(1, 2, 3, -2));
    EXPECT_EQ(image->getSpacing(0), 0.5f);
    EXPECT_EQ(image->getSpacing(2), 3.0f);
}

// 15 axes are this machine's order, 16 and -1 the other one's.
TEST(AnalyzeReader, limitsOfTheNumberOfAxes)
{
    const TempFolder folder;
    const CapturedText output;
    EXPECT_NE(loadedFrom(folder, header(1, 1, 1, 1, 2).u16(40, 15).str(), "x"), nullptr);
    EXPECT_NE(loadedFrom(folder, header(1, 1, 1, 1, 2).u16(40, 0).str(), "x"), nullptr);
    EXPECT_EQ(loadedFrom(folder, header(1, 1, 1, 1, 2).u16(40, 16).str(), "x"), nullptr);
    EXPECT_NE(loadedFrom(folder, turnedHeader(1, 1, 1, 1, 2).u16(40, 16).str(), "x"), nullptr);
    EXPECT_NE(loadedFrom(folder, turnedHeader(1, 1, 1, 1, 2).u16(40, 0xFFFF).str(), "x"), nullptr);
}

TEST(AnalyzeReader, otherTypesAreNullWithoutAMessage)
{
    const TempFolder folder;
    const CapturedText output;
    EXPECT_EQ(loadedFrom(folder, header(1, 1, 1, 1, 8).str(), "abcd"), nullptr);
    EXPECT_EQ(output.text() + output.errors(), "");
}

TEST(AnalyzeReader, framesBelowOneCountAsOneAndOtherExtentsDoNot)
{
    const TempFolder folder;
    const CapturedText output;
    const ImagePointer image = loadedFrom(folder, header(2, 1, 1, 0, 2).u16(40, 3).str(), "ab");
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->getFrames(), 1);
    EXPECT_NE(loadedFrom(folder, header(2, 1, 1, -5, 2).str(), "ab"), nullptr);
    EXPECT_EQ(loadedFrom(folder, header(0, 1, 1, 1, 2).str(), "ab"), nullptr);
    EXPECT_EQ(loadedFrom(folder, header(1, 0, 1, 1, 2).str(), "ab"), nullptr);
    EXPECT_EQ(loadedFrom(folder, header(1, 1, -1, 1, 2).str(), "ab"), nullptr);
}

TEST(AnalyzeReader, reportsHeadersThatCannotBeRead)
{
    const TempFolder folder;
    writeFile(folder / "short.hdr", header(1, 1, 1, 1, 2).str().substr(0, 347));
    const CapturedText output;
    EXPECT_EQ(loaded(folder / "none.hdr"), nullptr);
    EXPECT_EQ(output.errors(), "Can't open:<" + (folder / "none.hdr") + ">\n");
    EXPECT_EQ(output.text(), "");
    EXPECT_EQ(loadAnalyze(folder.wide(L"none.hdr").c_str()), nullptr);
    EXPECT_EQ(loadAnalyze(folder.wide(L"short.hdr").c_str()), nullptr);
    EXPECT_EQ(output.text(), "Common >> Can't open Analyze header file \"" + (folder / "none.hdr") +
                                 "\"\nCommon >> Could not read Analyze header from file \"" +
                                 (folder / "short.hdr") + "\"\n");
}

TEST(AnalyzeReader, wideFormReportsWhatItExpected)
{
    const TempFolder folder;
    writeFile(folder / "v.hdr", header(2, 3, 4, 1, 2).str());
    writeFile(folder / "v.img", "abc");
    const CapturedText output;
    EXPECT_EQ(loadAnalyze(folder.wide(L"v.hdr").c_str()), nullptr);
    EXPECT_THAT(output.text(),
                HasSubstr("Common >> Error occured while loading image data, expected resolution "
                          "2 x 3 x 4, min 0, max = 0\n"));
}

TEST(AnalyzeReader, shortPathsAreNoHarm)
{
    const CapturedText output;
    EXPECT_EQ(loaded(""), nullptr);
    EXPECT_EQ(loaded("ab"), nullptr);
    EXPECT_EQ(loadAnalyze(static_cast<const char *>(nullptr)), nullptr);
    EXPECT_EQ(loadAnalyze(static_cast<const wchar_t *>(nullptr)), nullptr);
}

TEST(AnalyzeReader, truncatedFilesAreNullOrWhole)
{
    const TempFolder folder;
    const CapturedText output;
    const std::string voxels = "abcdefgh";
    for (const Bytes &bytes : {header(2, 2, 1, 1, 4), turnedHeader(2, 2, 1, 1, 4)}) {
        const std::string whole = bytes.str();
        writeFile(folder / "v.img", voxels);
        forEachTruncation(folder / "v.hdr", whole, [&](std::size_t size) {
            EXPECT_EQ(loaded(folder / "v.hdr") != nullptr, size == whole.size()) << size;
        });
        writeFile(folder / "v.hdr", whole);
        forEachTruncation(folder / "v.img", voxels, [&](std::size_t size) {
            EXPECT_EQ(loaded(folder / "v.hdr") != nullptr, size == voxels.size()) << size;
        });
    }
}

} // namespace
