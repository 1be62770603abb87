#include "Common/Vis.h"

#include "tests/mervlib/FormatTestSupport.h"

#include <gmock/gmock.h>

#include <sstream>

using namespace MERV;
using testing::ElementsAre;

namespace {

Bytes header(std::uint32_t width, std::uint32_t height, std::uint32_t depth, std::uint32_t frames)
{
    Bytes bytes(512);
    bytes.u32(0, 0x075BCD15).u32(4, std::uint64_t{width} * height * depth * frames);
    bytes.u32(12, 1).u32(16, width).u32(20, height).u32(24, depth).u32(28, frames);
    return bytes.u32(32, 1).u32(52, 1);
}

ImagePointer loadedFrom(const std::string &bytes)
{
    std::istringstream stream(bytes);
    return ImagePointer(loadVis(stream));
}

const std::string unsupported = "Common >> Unsupported stream format encountered while reading VIS stream.\n";
const std::string corrupted = "Common >> Corrupted stream detected while reading VIS stream.\n";
const std::string unreadable = "Common >> Error reading image data from VIS stream.\n";

TEST(VisWriter, writesThisHeader)
{
    const auto image = numberedImage<short>(4, 3, 2, 1, 1);
    std::ostringstream stream;
    EXPECT_TRUE(saveVis(stream, image.get(), "label", "comment", 0));
    Bytes expected(512);
    expected.u32(0, 123456789).u32(4, 24).u32(8, 3).u32(12, 1).u32(16, 4).u32(20, 3).u32(24, 2).u32(28, 1);
    expected.u32(32, 1).u32(52, 1).text(56, "label").text(136, "comment");
    EXPECT_EQ(stream.str().substr(0, 512), expected.str());
    EXPECT_EQ(stream.str().size(), 512u + 24);
}

TEST(VisWriter, longTextsAreCutWithoutATerminator)
{
    const auto image = numberedImage<short>(1, 1, 1, 1, 1);
    std::ostringstream stream;
    EXPECT_TRUE(saveVis(stream, image.get(), std::string(41, 'L').c_str(), std::string(201, 'C').c_str(), 0));
    EXPECT_EQ(stream.str().substr(56, 80), std::string(40, 'L') + std::string(40, '\0'));
    EXPECT_EQ(stream.str().substr(136, 376), std::string(200, 'C') + std::string(176, '\0'));
}

TEST(VisWriter, textsMayBeMissing)
{
    const auto image = numberedImage<short>(1, 1, 1, 1, 1);
    std::ostringstream stream;
    EXPECT_TRUE(saveVis(stream, image.get(), nullptr, nullptr, 0));
    EXPECT_EQ(stream.str().substr(56, 456), std::string(456, '\0'));
}

// Window 10 .. 61: value v is stored as (v - 10) * 255 / 51 = (v - 10) * 5, cut to 0 .. 255.
TEST(VisWriter, voxelsAreWindowedAndRowsBottomUp)
{
    ImageBase<short> image;
    image.setDimensions(2, 2, 2, 1, 1);
    const short values[] = {10, 11, 12, 13, 20, 61, 62, 9};
    std::copy(std::begin(values), std::end(values), image.begin());
    image.setWindowRange(10, 61, 0);
    std::ostringstream stream;
    EXPECT_TRUE(saveVis(stream, &image, "", nullptr, 0));
    EXPECT_EQ(stream.str().substr(512), std::string("\x0A\x0F\x00\x05"
                                                    "\xFF\x00\x32\xFF",
                                                    8));
    EXPECT_THAT(valuesOf<short>(image), ElementsAre(10, 11, 12, 13, 20, 61, 62, 9)); // untouched
}

// Only the window of channel 0 is carried over; channel 1 has the range of all values, 0 .. 255.
TEST(VisWriter, otherChannelsHaveTheRangeOfAllValuesAsWindow)
{
    ImageBase<unsigned char> image;
    image.setDimensions(2, 1, 1, 1, 2);
    const unsigned char values[] = {0, 100, 255, 200};
    std::copy(std::begin(values), std::end(values), image.begin());
    image.setWindowRange(0, 510, 0);
    image.setWindowRange(0, 510, 1);
    const auto voxels = [&](int channel) {
        std::ostringstream stream;
        EXPECT_TRUE(saveVis(stream, &image, "", nullptr, channel));
        return stream.str().substr(512);
    };
    EXPECT_EQ(voxels(0), std::string("\x00\x7F", 2)); // 255 * 255 / 510 = 127.5
    EXPECT_EQ(voxels(1), "\x64\xC8");
    EXPECT_EQ(voxels(-3), voxels(0));
    EXPECT_EQ(voxels(7), voxels(1));
}

TEST(VisWriter, onlyTheFirstFrameIsWritten)
{
    const auto image = numberedImage<unsigned char>(2, 2, 2, 3, 1);
    std::ostringstream stream;
    EXPECT_TRUE(saveVis(stream, image.get(), "", nullptr, 0));
    EXPECT_EQ(stream.str().size(), 512u + 8);
    EXPECT_NE(loadedFrom(stream.str()), nullptr);
}

TEST(VisWriter, failsWithoutWritingWhatTheFormatCannotHold)
{
    std::ostringstream stream;
    EXPECT_FALSE(saveVis(stream, nullptr, "", nullptr, 0));
    const ImagePointer empty(createImage(TypeShort));
    EXPECT_FALSE(saveVis(stream, empty.get(), "", nullptr, 0));
    // 65536 * 65536 bytes do not fit the field of 32 bits. A foreign buffer, as nothing is read.
    ImageBase<unsigned char> large;
    large.setBufferExternal();
    large.setDimensions(65536, 65536, 1, 1, 1);
    EXPECT_FALSE(saveVis(stream, &large, "", nullptr, 0));
    EXPECT_EQ(stream.str(), "");
}

TEST(VisWriter, failedStreamsAndFullDevicesAreErrors)
{
    const TempFolder folder;
    const auto image = numberedImage<short>(2, 2, 1, 1, 1);
    std::ostringstream failed;
    failed.setstate(std::ios::failbit);
    EXPECT_FALSE(saveVis(failed, image.get(), "", nullptr, 0));
    EXPECT_EQ(failed.str(), "");
    EXPECT_FALSE(saveVis("/dev/full", image.get(), "", nullptr, 0));
    EXPECT_FALSE(saveVis((folder / "none/v").c_str(), image.get(), "", nullptr, 0));
}

TEST(Vis, roundTripKeepsTheOrderOfRows)
{
    const TempFolder folder;
    const auto image = numberedImage<unsigned char>(3, 4, 2, 1, 1);
    image->setWindowRange(0, 255, 0);
    EXPECT_TRUE(saveVis((folder / "v.vis").c_str(), image.get(), "label", "comment", 0));
    const ImagePointer copy(loadVis((folder / "v.vis").c_str()));
    ASSERT_NE(copy, nullptr);
    EXPECT_THAT(dimensionsOf(*copy), ElementsAre(3, 4, 2, 1, 1));
    EXPECT_EQ(valuesOf<unsigned char>(*copy), valuesOf<unsigned char>(*image));
}

TEST(VisReader, readsAStreamPutTogetherByHand)
{
    const ImagePointer image = loadedFrom(header(2, 2, 1, 2).str() + "abcdefgh");
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->getDataType(), TypeUChar);
    EXPECT_THAT(dimensionsOf(*image), ElementsAre(2, 2, 1, 2, 1));
    EXPECT_THAT(valuesOf<unsigned char>(*image), ElementsAre('c', 'd', 'a', 'b', 'g', 'h', 'e', 'f'));
    EXPECT_EQ(image->getLow(0), 0.0f);
    EXPECT_EQ(image->getHigh(0), 255.0f);
    EXPECT_EQ(image->getMinimum(), 'a');
    EXPECT_EQ(image->getMaximum(), 'h');
}

TEST(VisReader, readsAPartOfAStream)
{
    std::istringstream stream("before" + header(2, 1, 1, 1).str() + "abbehind");
    stream.seekg(6);
    const ImagePointer image(loadVis(stream));
    ASSERT_NE(image, nullptr);
    EXPECT_THAT(valuesOf<unsigned char>(*image), ElementsAre('a', 'b'));
    std::string behind;
    stream >> behind;
    EXPECT_EQ(behind, "behind");
}

TEST(VisReader, requiredFieldsAreRequired)
{
    for (const std::size_t offset : {0u, 12u, 32u, 36u, 52u}) {
        const CapturedText output;
        EXPECT_EQ(loadedFrom(header(1, 1, 1, 1).u32(offset, 2).str() + "a"), nullptr) << offset;
        EXPECT_EQ(output.text(), unsupported) << offset;
    }
    for (const std::size_t offset : {8u, 40u, 44u, 48u, 56u, 96u, 136u, 336u, 508u})
        EXPECT_NE(loadedFrom(header(1, 1, 1, 1).u32(offset, 0xFFFFFFFF).str() + "a"), nullptr) << offset;
}

TEST(VisReader, extentsThatDoNotMakeUpTheBytesAreCorrupted)
{
    const std::string headers[] = {header(2, 1, 1, 1).u32(4, 1).str(), header(2, 1, 1, 1).u32(4, 3).str(),
                                   header(0, 1, 1, 1).str(), header(1, 1, 1, 0).str(),
                                   // 2^32 and 2^64 bytes, which are 0 in fewer bits.
                                   header(65536, 65536, 1, 1).u32(4, 0).str(),
                                   header(65536, 65536, 65536, 65536).u32(4, 0).str(),
                                   // An extent that an image cannot have.
                                   header(0x80000000, 1, 1, 1).str()};
    for (const std::string &bytes : headers) {
        const CapturedText output;
        EXPECT_EQ(loadedFrom(bytes + "ab"), nullptr);
        EXPECT_EQ(output.text(), corrupted);
    }
}

TEST(VisReader, truncatedStreamsAreNull)
{
    const std::string whole = header(2, 2, 1, 1).str() + "abcd";
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const CapturedText output;
        EXPECT_EQ(loadedFrom(whole.substr(0, size)), nullptr) << size;
        EXPECT_EQ(output.text(), size < 512 ? unsupported : unreadable) << size;
    }
    EXPECT_NE(loadedFrom(whole), nullptr);
}

TEST(VisReader, pathsThatAreNoFilesAreNull)
{
    const TempFolder folder;
    EXPECT_EQ(loadVis((folder / "none").c_str()), nullptr);
    EXPECT_EQ(loadVis(folder.path().c_str()), nullptr);
    EXPECT_EQ(loadVis(static_cast<const char *>(nullptr)), nullptr);
}

} // namespace
