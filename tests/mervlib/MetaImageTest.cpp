#include "Common/MetaImage.h"

#include "tests/mervlib/FormatTestSupport.h"

#include <gmock/gmock.h>

#include <algorithm>

using namespace MERV;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

ImagePointer loaded(const std::string &path)
{
    return ImagePointer(loadMetaImage(path.c_str()));
}

// A header and a data file "v.raw" beside it, loaded.
ImagePointer loadedFrom(const TempFolder &folder, const std::string &header, const std::string &voxels)
{
    writeFile(folder / "v.mhd", header);
    writeFile(folder / "v.raw", voxels);
    return loaded(folder / "v.mhd");
}

template <class T>
class MetaImageOfType : public testing::Test
{};
using VoxelTypes =
    testing::Types<char, unsigned char, short, unsigned short, int, unsigned int, float, double>;
TYPED_TEST_SUITE(MetaImageOfType, VoxelTypes);

TYPED_TEST(MetaImageOfType, bothWritersAndReadersRoundTrip)
{
    const TempFolder folder;
    const CapturedText output;
    const auto image = numberedImage<TypeParam>(4, 3, 2, 2, 3);
    image->setSpacing(0.5f, 0.25f, 2.0f, 3.0f);
    const float position[3] = {1.5f, -2.25f, 1000.0f};
    image->setPosition(position);
    EXPECT_EQ(saveMetaImage((folder / "narrow").c_str(), image.get()), 0);
    EXPECT_EQ(saveMetaImage(folder.wide(L"wide").c_str(), image.get()), 0);
    const ImagePointer images[] = {loaded(folder / "narrow.mhd"), loaded(folder / "wide.mhd"),
                                   ImagePointer(loadMetaImage(folder.wide(L"narrow.mhd").c_str()))};
    for (const ImagePointer &copy : images) {
        ASSERT_NE(copy, nullptr);
        EXPECT_EQ(copy->getDataType(), image->getDataType());
        EXPECT_THAT(dimensionsOf(*copy), ElementsAre(4, 3, 2, 2, 3));
        EXPECT_EQ(valuesOf<TypeParam>(*copy), valuesOf<TypeParam>(*image));
        for (int axis = 0; axis < 4; ++axis)
            EXPECT_EQ(copy->getSpacing(axis), image->getSpacing(axis));
        EXPECT_TRUE(std::equal(position, position + 3, copy->getPosition()));
        EXPECT_EQ(copy->getMinimum(), image->getMinimum());
        EXPECT_EQ(copy->getHigh(2), image->getMaximum());
    }
}

TEST(MetaImageWriter, wideFormWritesTheseLines)
{
    const TempFolder folder;
    const auto image = numberedImage<unsigned short>(5, 4, 3, 2, 2);
    image->setSpacing(0.3125f, 1234567.0f, 3.0f, 0.1f);
    const float position[3] = {-1.5f, 0.0f, 88.25f};
    image->setPosition(position);
    image->setMetaData("b key", "second");
    image->setMetaData("a", "first");
    EXPECT_EQ(saveMetaImage(folder.wide(L"image").c_str(), image.get()), 0);
    EXPECT_EQ(contentOf(folder / "image.mhd"), "NDims = 4\n"
                                               "DimSize = 5 4 3 2\n"
                                               "ElementSpacing = 0.3125 1.23457e+06 3 0.1\n"
                                               "Position = 0 0 0 0\n"
                                               "ImagePositionPatient = -1.5 0 88.25\n"
                                               "ElementByteOrderMSB = False\n"
                                               "ElementNumberOfChannels = 2\n"
                                               "ElementType = MET_USHORT\n"
                                               "ElementDataFile = image.raw\n"
                                               "a = first\n"
                                               "b key = second\n");
}

TEST(MetaImageWriter, narrowFormWritesSixDecimalsAndZerosAsPosition)
{
    const TempFolder folder;
    const auto image = numberedImage<float>(5, 4, 3, 1, 1);
    image->setSpacing(0.3125f, 0.5f, 3.0f, 0.1f);
    const float position[3] = {-1.5f, 0.0f, 88.25f};
    image->setPosition(position);
    EXPECT_EQ(saveMetaImage((folder / "image").c_str(), image.get()), 0);
    EXPECT_EQ(contentOf(folder / "image.mhd"), "NDims = 3\n"
                                               "DimSize = 5 4 3\n"
                                               "ElementSpacing = 0.312500 0.500000 3.000000\n"
                                               "Position = 0 0 0\n"
                                               "ImagePositionPatient = -1.500000 0.000000 88.250000\n"
                                               "ElementByteOrderMSB = False\n"
                                               "ElementType = MET_FLOAT\n"
                                               "ElementDataFile = image.raw\n");
}

TEST(MetaImageWriter, oneSliceIsTwoDimensional)
{
    const TempFolder folder;
    const auto image = numberedImage<char>(5, 4, 1, 1, 1);
    EXPECT_EQ(saveMetaImage((folder / "image").c_str(), image.get()), 0);
    EXPECT_EQ(contentOf(folder / "image.mhd"), "NDims = 2\n"
                                               "DimSize = 5 4\n"
                                               "ElementSpacing = 1.000000 1.000000\n"
                                               "Position = 0 0\n"
                                               "ImagePositionPatient = 0.000000 0.000000 0.000000\n"
                                               "ElementByteOrderMSB = False\n"
                                               "ElementType = MET_CHAR\n"
                                               "ElementDataFile = image.raw\n");
}

TEST(MetaImageWriter, framesMakeFourDimensionsOfOneSlice)
{
    const TempFolder folder;
    const auto image = numberedImage<char>(5, 4, 1, 4, 1);
    EXPECT_EQ(saveMetaImage(folder.wide(L"image").c_str(), image.get()), 0);
    EXPECT_THAT(contentOf(folder / "image.mhd"), HasSubstr("NDims = 4\nDimSize = 5 4 1 4\n"));
}

TEST(MetaImageWriter, allTypeNamesAreThoseOfTheFormat)
{
    const TempFolder folder;
    const std::pair<int, const char *> names[] = {
        {TypeChar, "CHAR"}, {TypeUChar, "UCHAR"}, {TypeShort, "SHORT"}, {TypeUShort, "USHORT"},
        {TypeInt, "INT"},   {TypeUInt, "UINT"},   {TypeFloat, "FLOAT"}, {TypeDouble, "DOUBLE"}};
    for (const auto &[type, name] : names) {
        const ImagePointer image(createImage(type));
        image->setDimensions(1, 1, 1, 1, 1);
        EXPECT_EQ(saveMetaImage((folder / "image").c_str(), image.get()), 0);
        EXPECT_THAT(contentOf(folder / "image.mhd"),
                    HasSubstr(std::string("ElementType = MET_") + name + '\n'));
    }
}

// U+00E4 is 0x00E4: lowest nibble first 4 -> E, E -> O, 0 -> A, 0 -> A.
TEST(MetaImageWriter, wideFormTranscribesTheNameOfTheDataFile)
{
    const TempFolder folder;
    std::filesystem::create_directory(folder / "x y");
    const CapturedText output;
    const auto image = numberedImage<short>(3, 2, 1, 1, 1);
    EXPECT_EQ(saveMetaImage(folder.wide(L"x y/k\u00e4se 1").c_str(), image.get()), 0);
    EXPECT_TRUE(std::filesystem::exists(folder / "x y/k\xC3\xA4se 1.mhd"));
    EXPECT_TRUE(std::filesystem::exists(folder / "x y/kEOAAse_1.raw"));
    EXPECT_THAT(contentOf(folder / "x y/k\xC3\xA4se 1.mhd"), HasSubstr("ElementDataFile = kEOAAse_1.raw\n"));
    const ImagePointer copy(loadMetaImage(folder.wide(L"x y/k\u00e4se 1.mhd").c_str()));
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(valuesOf<short>(*copy), valuesOf<short>(*image));
}

// U+1F600 is the pair D83D DE00: D,3,8,D -> N D I N and 0,0,E,D -> A A O N. U+6F22: 2,2,F,6 -> C C P G.
TEST(MetaImageWriter, wideFormTranscribesUtf16Units)
{
    const TempFolder folder;
    const auto image = numberedImage<short>(3, 2, 1, 1, 1);
    EXPECT_EQ(saveMetaImage(folder.wide(L"\U0001F600\u6F22").c_str(), image.get()), 0);
    EXPECT_TRUE(std::filesystem::exists(folder / "NDINAAONCCPG.raw"));
    EXPECT_TRUE(std::filesystem::exists(folder / "\xF0\x9F\x98\x80\xE6\xBC\xA2.mhd"));
}

TEST(MetaImageWriter, narrowFormKeepsBlanksWhichTheReaderThenMisses)
{
    const TempFolder folder;
    const CapturedText output;
    const auto image = numberedImage<short>(3, 2, 1, 1, 1);
    EXPECT_EQ(saveMetaImage((folder / "a b").c_str(), image.get()), 0);
    EXPECT_TRUE(std::filesystem::exists(folder / "a b.raw"));
    EXPECT_THAT(contentOf(folder / "a b.mhd"), HasSubstr("ElementDataFile = a b.raw\n"));
    EXPECT_EQ(loaded(folder / "a b.mhd"), nullptr);
}

TEST(MetaImageWriter, lineFeedsInMetaDataBecomeBlanks)
{
    const TempFolder folder;
    const auto image = numberedImage<short>(3, 2, 1, 1, 1);
    image->setMetaData("Comment", "one\nElementType = MET_CHAR");
    EXPECT_EQ(saveMetaImage((folder / "image").c_str(), image.get()), 0);
    EXPECT_THAT(contentOf(folder / "image.mhd"), HasSubstr("\nComment = one ElementType = MET_CHAR\n"));
}

TEST(MetaImageWriter, reservedNamesAmongTheMetaDataAreWrittenToo)
{
    const TempFolder folder;
    const auto image = numberedImage<short>(3, 2, 1, 1, 1);
    image->setMetaData("DimSize", "7 7");
    EXPECT_EQ(saveMetaImage((folder / "image").c_str(), image.get()), 0);
    EXPECT_THAT(contentOf(folder / "image.mhd"), HasSubstr("ElementDataFile = image.raw\nDimSize = 7 7\n"));
}

TEST(MetaImageWriter, reportsAHeaderThatCannotBeCreated)
{
    const TempFolder folder;
    const auto image = numberedImage<short>(3, 2, 1, 1, 1);
    const CapturedText output;
    EXPECT_EQ(saveMetaImage((folder / "none/image").c_str(), image.get()), 1);
    EXPECT_EQ(saveMetaImage(folder.wide(L"none/image").c_str(), image.get()), 1);
    const std::string line =
        "Common >> Warning: Couldn't write to file " + (folder / "none/image.mhd") + '\n';
    EXPECT_EQ(output.text(), line + line);
}

TEST(MetaImageWriter, reportsADataFileThatCannotBeCreated)
{
    const TempFolder folder;
    std::filesystem::create_directory(folder / "image.raw");
    const auto image = numberedImage<short>(3, 2, 1, 1, 1);
    const CapturedText output;
    EXPECT_EQ(saveMetaImage(folder.wide(L"image").c_str(), image.get()), 1);
    EXPECT_EQ(output.text(), "Common >> Error: Could not create data file " + (folder / "image.raw") +
                                 " while creating MetaImage image file structure.\n");
}

TEST(MetaImageWriter, fullDeviceIsAnError)
{
    const TempFolder folder;
    const auto image = numberedImage<short>(3, 2, 1, 1, 1);
    const CapturedText output;
    std::filesystem::create_symlink("/dev/full", folder / "data.raw");
    EXPECT_EQ(saveMetaImage((folder / "data").c_str(), image.get()), 1);
    EXPECT_EQ(output.text(), "Common >> Warning: writing error ocurred.\nsizeof(tvoxel_type): 2\n");
    std::filesystem::create_symlink("/dev/full", folder / "header.mhd");
    EXPECT_EQ(saveMetaImage((folder / "header").c_str(), image.get()), 1);
    EXPECT_THAT(output.text(),
                HasSubstr("Common >> Warning: Couldn't write to file " + (folder / "header.mhd")));
}

TEST(MetaImageWriter, withoutAnImageNothingIsWritten)
{
    const TempFolder folder;
    EXPECT_EQ(saveMetaImage((folder / "image").c_str(), nullptr), 1);
    EXPECT_FALSE(std::filesystem::exists(folder / "image.mhd"));
}

TEST(MetaImageReader, readsAHeaderPutTogetherByHand)
{
    const TempFolder folder;
    const CapturedText output;
    const ImagePointer image = loadedFrom(folder,
                                          "ElementType = MET_SHORT\r\n"
                                          "ElementNumberOfChannels = 2\r\n"
                                          "NDims = 3 ignored\r\n"
                                          "DimSize = 2 1 2\r\n"
                                          "ElementSpacing = 0.5 2.5e-1 3\r\n"
                                          "Position = 7 8 9\r\n"
                                          "ImagePositionPatient = 1 -2 3.5\r\n"
                                          "ElementByteOrderMSB = False\r\n"
                                          "ElementDataFile = v.raw\r\n"
                                          "Patient's Name = A = B \r\n",
                                          std::string("\1\0\2\0\3\0\4\0\5\0\6\0\7\0\xFF\xFF", 16));
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->getDataType(), TypeShort);
    EXPECT_THAT(dimensionsOf(*image), ElementsAre(2, 1, 2, 1, 2));
    EXPECT_THAT(valuesOf<short>(*image), ElementsAre(1, 2, 3, 4, 5, 6, 7, -1));
    EXPECT_EQ(image->getSpacing(0), 0.5f);
    EXPECT_EQ(image->getSpacing(1), 0.25f);
    EXPECT_EQ(image->getSpacing(2), 3.0f);
    EXPECT_EQ(image->getSpacing(3), 1.0f);
    EXPECT_EQ(image->getPosition()[0], 1.0f);
    EXPECT_EQ(image->getPosition()[1], -2.0f);
    EXPECT_EQ(image->getPosition()[2], 3.5f);
    // Keys lose their blanks, values keep the one behind "=".
    EXPECT_EQ(image->getMetaData("Patient'sName"), " A = B ");
    EXPECT_EQ(output.text(), "Common >> Loading file " + (folder / "v.raw") +
                                 "\nCommon >> Loaded Image, resolution 2 x 1 x 2, min -1, max = 7\n");
}

TEST(MetaImageReader, wideFormAnnouncesAHeaderFile)
{
    const TempFolder folder;
    const auto saved = numberedImage<short>(3, 2, 1, 1, 1);
    saveMetaImage((folder / "image").c_str(), saved.get());
    const CapturedText output;
    const ImagePointer image(loadMetaImage(folder.wide(L"image.mhd").c_str()));
    EXPECT_THAT(output.text(), HasSubstr("Common >> Loading headerfile " + (folder / "image.raw") + '\n'));
}

TEST(MetaImageReader, onlyTwoSpellingsSwapTheBytes)
{
    const TempFolder folder;
    const CapturedText output;
    const auto firstValue = [&](const std::string &flag) {
        const ImagePointer image = loadedFrom(folder,
                                              "NDims = 2\nDimSize = 1 1\nElementByteOrderMSB = " + flag +
                                                  "\nElementType = MET_USHORT\nElementDataFile = v.raw\n",
                                              "\x01\x02");
        return image->getValue(0);
    };
    EXPECT_EQ(firstValue("True"), 0x0102);
    EXPECT_EQ(firstValue("1"), 0x0102);
    EXPECT_EQ(firstValue("True\r"), 0x0102);
    EXPECT_EQ(firstValue("true"), 0x0201);
    EXPECT_EQ(firstValue("False"), 0x0201);
    EXPECT_EQ(firstValue("0"), 0x0201);
}

TEST(MetaImageReader, localDataStandBehindTheHeader)
{
    const TempFolder folder;
    const CapturedText output;
    writeFile(folder / "v.mha",
              "NDims = 2\nDimSize = 2 2\nElementType = MET_UCHAR\nElementDataFile = LOCAL\na = b=\nc=");
    const ImagePointer image = loaded(folder / "v.mha");
    ASSERT_NE(image, nullptr);
    EXPECT_THAT(valuesOf<unsigned char>(*image), ElementsAre('a', ' ', '=', ' '));
    // What stands behind are voxels, not keys.
    std::list<std::string> keys;
    image->getMetaDataKeys(keys);
    EXPECT_TRUE(keys.empty());
    EXPECT_THAT(output.text(), HasSubstr("Common >> Loading file " + (folder / "v.mha") + '\n'));
}

TEST(MetaImageReader, unknownKeysSurviveASaveAndALoad)
{
    const TempFolder folder;
    const CapturedText output;
    const ImagePointer image = loadedFrom(
        folder,
        "ObjectType = Image\nNDims = 2\nDimSize = 1 1\nElementType = MET_UCHAR\nElementDataFile = v.raw\n",
        "x");
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->getMetaData("ObjectType"), " Image");
    EXPECT_EQ(saveMetaImage((folder / "again").c_str(), image.get()), 0);
    EXPECT_THAT(contentOf(folder / "again.mhd"),
                HasSubstr("\nElementDataFile = again.raw\nObjectType =  Image\n"));
}

TEST(MetaImageReader, secondRoundChangesNothingButBlanksOfMetaData)
{
    const TempFolder folder;
    const CapturedText output;
    const auto image = numberedImage<float>(3, 4, 5, 1, 2);
    image->setSpacing(0.3125f, 0.7f, 3.3f, 1.0f);
    image->setMetaData("Key", "value");
    saveMetaImage(folder.wide(L"i").c_str(), image.get());
    const std::string header = contentOf(folder / "i.mhd");
    const std::string voxels = contentOf(folder / "i.raw");
    const ImagePointer copy = loaded(folder / "i.mhd");
    ASSERT_NE(copy, nullptr);
    saveMetaImage(folder.wide(L"i").c_str(), copy.get());
    EXPECT_EQ(contentOf(folder / "i.raw"), voxels);
    std::string expected = header;
    expected.replace(expected.find("Key = value"), 11, "Key =  value");
    EXPECT_EQ(contentOf(folder / "i.mhd"), expected);
}

TEST(MetaImageReader, unknownTypeIsReported)
{
    const TempFolder folder;
    const CapturedText output;
    EXPECT_EQ(loadedFrom(folder,
                         "NDims = 2\nDimSize = 1 1\nElementType = MET_LONG\nElementDataFile = v.raw\n", "x"),
              nullptr);
    EXPECT_EQ(output.text(), "Common >> Error: Unknown MetaImage data type!\n");
}

TEST(MetaImageReader, headerSizeIsOnlyWarnedOf)
{
    const TempFolder folder;
    const auto read = [&](const std::string &size) {
        const CapturedText output;
        const ImagePointer image = loadedFrom(folder,
                                              "NDims = 2\nDimSize = 1 1\nHeaderSize = " + size +
                                                  "\nElementType = MET_UCHAR\nElementDataFile = v.raw\n",
                                              "xyz");
        EXPECT_NE(image, nullptr);
        EXPECT_EQ(image == nullptr ? 0.0f : image->getValue(0), 'x');
        return output.text();
    };
    EXPECT_THAT(read("2"), HasSubstr("Common >> Warning: 2 bytes header\n"));
    EXPECT_THAT(read("0"), testing::Not(HasSubstr("Warning")));
    EXPECT_THAT(read("-1"), testing::Not(HasSubstr("Warning")));
}

TEST(MetaImageReader, withoutTheNumberOfAxesTheLineTells)
{
    const TempFolder folder;
    const CapturedText output;
    const ImagePointer image = loadedFrom(folder,
                                          "DimSize = 2 1 2\nElementSpacing = 2 3\nPosition = 5\nElementType "
                                          "= MET_UCHAR\nElementDataFile = v.raw\n",
                                          "abcd");
    ASSERT_NE(image, nullptr);
    EXPECT_THAT(dimensionsOf(*image), ElementsAre(2, 1, 2, 1, 1));
    EXPECT_EQ(image->getSpacing(1), 3.0f);
    EXPECT_EQ(image->getSpacing(2), 1.0f);
}

TEST(MetaImageReader, linesWithoutAnEqualSignAreSkipped)
{
    const TempFolder folder;
    const CapturedText output;
    EXPECT_NE(loadedFrom(folder,
                         "a comment\n\nNDims = 2\nanother\nDimSize = 1 1\nElementType = MET_UCHAR\n"
                         "ElementDataFile = v.raw\nend",
                         "x"),
              nullptr);
}

TEST(MetaImageReader, acceptsBackslashesAndAbsoluteNamesOfDataFiles)
{
    const TempFolder folder;
    const CapturedText output;
    std::filesystem::create_directory(folder / "sub");
    writeFile(folder / "sub/data.raw", "x");
    const std::string start = "NDims = 2\nDimSize = 1 1\nElementType = MET_UCHAR\nElementDataFile = ";
    writeFile(folder / "a.mhd", start + "sub/data.raw\n");
    writeFile(folder / "b.mhd", start + "sub\\data.raw\n");
    writeFile(folder / "c.mhd", start + (folder / "sub/data.raw") + '\n');
    for (const char *name : {"a.mhd", "b.mhd", "c.mhd"})
        EXPECT_NE(loaded(folder / name), nullptr) << name;
}

TEST(MetaImageReader, nameIsTakenAsWrittenBeforeBackslashesCount)
{
    const TempFolder folder;
    const CapturedText output;
    const auto image = numberedImage<short>(2, 1, 1, 1, 1);
    EXPECT_EQ(saveMetaImage(folder.wide(L"a\\b").c_str(), image.get()), 0);
    EXPECT_NE(loaded(folder / "a\\b.mhd"), nullptr);
}

TEST(MetaImageReader, refusesHeadersThatAreNoImage)
{
    const TempFolder folder;
    const CapturedText output;
    const std::string type = "ElementType = MET_UCHAR\n";
    const std::string data = "ElementDataFile = v.raw\n";
    const std::string shape = "NDims = 2\nDimSize = 1 1\n";
    const std::string headers[] = {
        "",                                           // empty
        shape + type,                                 // no data
        shape + data,                                 // no type
        shape + data + type,                          // data before type
        shape + type + type + data,                   // type twice
        shape + type + data + data,                   // data twice
        "NDims = 0\nDimSize = 1 1\n" + type + data,   // no axis
        "NDims = 5\nDimSize = 1 1\n" + type + data,   // too many axes
        "NDims = x\nDimSize = 1 1\n" + type + data,   // no number
        "NDims = 3\nDimSize = 1 1\n" + type + data,   // a number missing
        "NDims = 2\nDimSize = 0 1\n" + type + data,   // nothing
        "NDims = 2\nDimSize = -1 -1\n" + type + data, // less than nothing
        "NDims = 2\nDimSize = 99999999999 1\n" + type + data,
        shape + "ElementNumberOfChannels = 0\n" + type + data,
        shape + type + "ElementDataFile = none.raw\n",
        shape + type + "ElementDataFile = .\n",
        shape + type + "ElementDataFile = \n",
        shape + type + "ElementDataFile = /dev/zero\n",
    };
    for (const std::string &header : headers)
        EXPECT_EQ(loadedFrom(folder, header, "x"), nullptr) << header;
    EXPECT_EQ(loaded(folder / "none.mhd"), nullptr);
    EXPECT_EQ(loaded(folder.path()), nullptr);
    EXPECT_EQ(loaded("/dev/zero"), nullptr);
    EXPECT_EQ(loadMetaImage(static_cast<const char *>(nullptr)), nullptr);
    EXPECT_EQ(loadMetaImage(static_cast<const wchar_t *>(nullptr)), nullptr);
}

TEST(MetaImageReader, missingDataFileIsReported)
{
    const TempFolder folder;
    const CapturedText output;
    writeFile(folder / "v.mhd",
              "NDims = 2\nDimSize = 1 1\nElementType = MET_UCHAR\nElementDataFile = v.raw\n");
    EXPECT_EQ(loaded(folder / "v.mhd"), nullptr);
    EXPECT_EQ(output.text(), "Common >> Loading file " + (folder / "v.raw") +
                                 "\nCommon >> Warning: could not load image data!\n");
}

TEST(MetaImageReader, truncatedFilesAreNullOrWhole)
{
    const TempFolder folder;
    const CapturedText output;
    const std::string header = "NDims = 2\nDimSize = 2 2\nElementSpacing = 1 2\nElementType = MET_SHORT\n"
                               "ElementDataFile = ";
    const std::string voxels = "abcdefgh";
    const std::string external = header + "v.raw\nKey = value\n";
    writeFile(folder / "v.raw", voxels);
    forEachTruncation(folder / "v.mhd", external, [&](std::size_t size) {
        const ImagePointer image = loaded(folder / "v.mhd");
        EXPECT_EQ(image != nullptr, size >= header.size() + 5) << size;
        if (image != nullptr) {
            EXPECT_THAT(valuesOf<short>(*image), ElementsAre(0x6261, 0x6463, 0x6665, 0x6867)) << size;
        }
    });
    writeFile(folder / "v.mhd", external);
    forEachTruncation(folder / "v.raw", voxels, [&](std::size_t size) {
        EXPECT_EQ(loaded(folder / "v.mhd") != nullptr, size == voxels.size()) << size;
    });
    const std::string local = header + "LOCAL\n" + voxels;
    forEachTruncation(folder / "v.mha", local, [&](std::size_t size) {
        EXPECT_EQ(loaded(folder / "v.mha") != nullptr, size == local.size()) << size;
    });
}

} // namespace
