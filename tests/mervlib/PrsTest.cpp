#include "Common/Prs.h"

#include "tests/mervlib/FormatTestSupport.h"

#include <gmock/gmock.h>

using namespace MERV;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

Bytes header(int projections, int width, int height)
{
    Bytes bytes(2512);
    bytes.u32(0, 0x0C140001).u32(4, 2512).u32(8, static_cast<std::uint32_t>(projections));
    bytes.u32(12, static_cast<std::uint32_t>(width)).u32(16, static_cast<std::uint32_t>(height));
    return bytes.u32(20, 2).u32(24, 16).u32(28, 0).u32(192, 3).u32(196, 5).f32(216, 0.25f);
}

PrsHeader headerOf(const Bytes &bytes)
{
    PrsHeader result;
    std::copy(bytes.str().begin(), bytes.str().end(), result.bytes.begin());
    return result;
}

// A record of bytes that are all the same, pad bytes included.
std::string record(char byte)
{
    return std::string(112, byte);
}

std::string padded(std::string bytes)
{
    return bytes.replace(97, 7, 7, '\xCC');
}

struct Loaded
{
    ImagePointer image;
    PrsHeader header;
    std::vector<PrsRecord> records;
};

Loaded loadedFrom(const TempFolder &folder, const std::string &bytes)
{
    writeFile(folder / "v.prs", bytes);
    Loaded result;
    result.image.reset(loadPrs((folder / "v.prs").c_str(), result.header, result.records));
    return result;
}

const std::string wholeFile =
    header(2, 2, 1).str() + record('a') + padded(record('b')) + "\1\2\3\4\5\6\7\x08";

TEST(PrsReader, readsAFilePutTogetherByHand)
{
    const TempFolder folder;
    const CapturedText output;
    const Loaded loaded = loadedFrom(folder, wholeFile);
    ASSERT_NE(loaded.image, nullptr);
    EXPECT_EQ(loaded.image->getDataType(), TypeUShort);
    EXPECT_THAT(dimensionsOf(*loaded.image), ElementsAre(2, 1, 2, 1, 1));
    EXPECT_THAT(valuesOf<unsigned short>(*loaded.image), ElementsAre(0x0201, 0x0403, 0x0605, 0x0807));
    EXPECT_EQ(loaded.image->getSpacing(0), 0.75f); // 3 cells of 0.25
    EXPECT_EQ(loaded.image->getSpacing(1), 1.25f);
    EXPECT_EQ(loaded.image->getSpacing(2), 0.0f);
    EXPECT_EQ(std::string(loaded.header.bytes.begin(), loaded.header.bytes.end()), header(2, 2, 1).str());
    ASSERT_EQ(loaded.records.size(), 2u);
    const auto &second = loaded.records[1].bytes;
    EXPECT_EQ(std::string(second.begin(), second.end()), padded(record('b')));
    EXPECT_EQ(output.text(),
              "Common >> Loaded 2 projection images at resolution 2 x 1, min 513, max = 2055\n");
}

TEST(Prs, roundTripKeepsEverythingAndSetsThePadBytes)
{
    const TempFolder folder;
    const CapturedText output;
    // Every carried byte of the header has a value of its own.
    std::string bytes = header(2, 2, 1).str();
    for (std::size_t i = 32; i < bytes.size(); ++i)
        if (i < 192 || i >= 220)
            bytes[i] = static_cast<char>(i * 31 % 251);
    const std::string file = bytes + record('a') + record('b') + "12345678";
    const Loaded loaded = loadedFrom(folder, file);
    ASSERT_NE(loaded.image, nullptr);
    EXPECT_TRUE(savePrs((folder / "again.prs").c_str(), loaded.image.get(), loaded.header, loaded.records));
    EXPECT_EQ(contentOf(folder / "again.prs"),
              bytes + padded(record('a')) + padded(record('b')) + "12345678");
    EXPECT_THAT(output.text(),
                HasSubstr("Common >> Saving file " + (folder / "again.prs") +
                          "\nCommon >> Saved projections file " + (folder / "again.prs") + '\n'));
}

TEST(PrsReader, reportsWhatIsNotSupported)
{
    const TempFolder folder;
    const std::pair<Bytes, std::string> files[] = {
        {header(2, 2, 1).u32(0, 7), "Error: Header type 7"},
        {header(2, 2, 1).u32(4, 2511), "Error: Header size of 2511 bytes"},
        {header(2, 2, 1).u32(20, 4), "Error: Image type of 4"},
        {header(2, 2, 1).u32(24, 12), "Error: 12 encoded bits per pixel"},
        {header(2, 2, 1).u32(28, 0x100000000u - 1), "Error: Coding -1"}};
    for (const auto &[bytes, message] : files) {
        const CapturedText output;
        EXPECT_EQ(loadedFrom(folder, bytes.str() + wholeFile.substr(2512)).image, nullptr);
        EXPECT_EQ(output.text(), "Common >> " + message + " not supported yet. Just implement it :-)\n");
    }
}

TEST(PrsReader, reportsAFileThatCannotBeOpened)
{
    const TempFolder folder;
    const CapturedText output;
    PrsHeader unused;
    std::vector<PrsRecord> records;
    EXPECT_EQ(loadPrs((folder / "none").c_str(), unused, records), nullptr);
    EXPECT_EQ(output.text(), "Common >> Error: Couldn't open file " + (folder / "none") + '\n');
}

TEST(PrsReader, refusesExtentsThatAreNone)
{
    const TempFolder folder;
    const CapturedText output;
    const std::string rest = wholeFile.substr(2512);
    for (const Bytes &bytes : {header(0, 2, 1), header(2, 0, 1), header(2, 2, -1), header(-2, -2, 1)})
        EXPECT_EQ(loadedFrom(folder, bytes.str() + rest).image, nullptr);
}

TEST(PrsReader, truncatedFilesAreNullAndChangeNothing)
{
    const TempFolder folder;
    const CapturedText output;
    forEachTruncation(folder / "v.prs", wholeFile, [&](std::size_t size) {
        PrsHeader unchanged;
        std::vector<PrsRecord> records;
        const ImagePointer image(loadPrs((folder / "v.prs").c_str(), unchanged, records));
        EXPECT_EQ(image != nullptr, size == wholeFile.size()) << size;
        EXPECT_EQ(records.empty(), image == nullptr) << size;
        EXPECT_EQ(unchanged.bytes == PrsHeader().bytes, image == nullptr) << size;
    });
    EXPECT_THAT(output.text(), HasSubstr("Common >> Unexpected end of file encountered"));
}

class PrsWriter : public testing::Test
{
protected:
    bool save(const Bytes &bytes, const Image *projections, std::size_t records)
    {
        const std::string path = folder / "v.prs";
        return savePrs(path.c_str(), projections, headerOf(bytes), std::vector<PrsRecord>(records));
    }

    TempFolder folder;
    CapturedText output;
    std::string saving = "Common >> Saving file " + (folder / "v.prs") + '\n';
    std::unique_ptr<ImageBase<unsigned short>> image = numberedImage<unsigned short>(2, 1, 2, 1, 1);
};

TEST_F(PrsWriter, acceptsWhatFits)
{
    EXPECT_TRUE(save(header(2, 2, 1), image.get(), 2));
    EXPECT_EQ(contentOf(folder / "v.prs").size(), 2512u + 2 * 112 + 2 * 2 * 2);
}

TEST_F(PrsWriter, reportsPixelsThatAreNotSupported)
{
    EXPECT_FALSE(save(header(2, 2, 1).u32(20, 1), image.get(), 2));
    EXPECT_FALSE(save(header(2, 2, 1).u32(24, 8), image.get(), 2));
    EXPECT_FALSE(save(header(2, 2, 1).u32(28, 3), image.get(), 2));
    EXPECT_EQ(output.text(),
              saving + "Common >> Error: Image type of 1 not supported yet. Just implement it :-)\n" +
                  saving +
                  "Common >> Error: 8 encoded bits per pixel not supported yet. Just implement it :-)\n" +
                  saving + "Common >> Error: Coding 3 not supported yet. Just implement it :-)\n");
    EXPECT_FALSE(std::filesystem::exists(folder / "v.prs"));
}

TEST_F(PrsWriter, reportsOtherVoxelTypes)
{
    EXPECT_FALSE(save(header(2, 2, 1), numberedImage<short>(2, 1, 2, 1, 1).get(), 2));
    EXPECT_EQ(output.text(),
              saving + "Common >> Error: Provided image is not stored with unsigned short values!\n");
}

TEST_F(PrsWriter, reportsDimensionsThatDoNotMatch)
{
    const std::string message =
        saving + "Common >> Error: Image dimensions do not match dimensions given in the PRS header!\n";
    EXPECT_FALSE(save(header(2, 3, 1), image.get(), 2));
    EXPECT_FALSE(save(header(2, 2, 2), image.get(), 2));
    EXPECT_FALSE(save(header(3, 2, 1), image.get(), 3));
    EXPECT_FALSE(save(header(2, 2, 1), image.get(), 1));
    EXPECT_FALSE(save(header(2, 2, 1), numberedImage<unsigned short>(2, 1, 2, 2, 1).get(), 2));
    EXPECT_FALSE(save(header(2, 2, 1), numberedImage<unsigned short>(2, 1, 2, 1, 2).get(), 2));
    EXPECT_EQ(output.text(), message + message + message + message + message + message);
}

TEST_F(PrsWriter, reportsAFileThatCannotBeWritten)
{
    const std::vector<PrsRecord> records(2);
    const std::string path = folder / "none/v.prs";
    EXPECT_FALSE(savePrs(path.c_str(), image.get(), headerOf(header(2, 2, 1)), records));
    EXPECT_EQ(output.text(),
              "Common >> Saving file " + path + "\nCommon >> Error: Couldn't write to file " + path + '\n');
    EXPECT_FALSE(savePrs("/dev/full", image.get(), headerOf(header(2, 2, 1)), records));
    EXPECT_THAT(output.text(), HasSubstr("Common >> Error: Couldn't write to file /dev/full\n"));
}

} // namespace
