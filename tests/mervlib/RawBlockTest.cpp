#include "Common/ImageBase.h"

#include "tests/mervlib/FormatTestSupport.h"

#include <gmock/gmock.h>

#include <sstream>

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

template <class T>
class RawBlockOfType : public testing::Test
{};
using VoxelTypes =
    testing::Types<char, unsigned char, short, unsigned short, int, unsigned int, float, double>;
TYPED_TEST_SUITE(RawBlockOfType, VoxelTypes);

TYPED_TEST(RawBlockOfType, roundTripThroughStreamAndFile)
{
    const TempFolder folder;
    const auto image = numberedImage<TypeParam>(5, 4, 3, 2, 2);
    std::stringstream stream;
    EXPECT_EQ(image->save(stream), 0);
    EXPECT_EQ(stream.str().size(), 5u * 4 * 3 * 2 * 2 * sizeof(TypeParam));
    EXPECT_EQ(image->save((folder / "block").c_str()), 0);
    EXPECT_EQ(contentOf(folder / "block"), stream.str());

    MERV::ImageBase<TypeParam> fromStream;
    fromStream.setDimensions(5, 4, 3, 2, 2);
    EXPECT_EQ(fromStream.load(stream, false), 0);
    EXPECT_EQ(valuesOf<TypeParam>(fromStream), valuesOf<TypeParam>(*image));

    MERV::ImageBase<TypeParam> fromFile;
    fromFile.setDimensions(5, 4, 3, 2, 2);
    EXPECT_EQ(fromFile.load((folder / "block").c_str(), false), 0);
    EXPECT_EQ(valuesOf<TypeParam>(fromFile), valuesOf<TypeParam>(*image));
}

TEST(RawBlock, valuesAreStoredLowByteFirstAndChannelsFastest)
{
    MERV::ImageBase<short> image;
    image.setDimensions(2, 1, 1, 1, 2);
    image.setVoxel(0x0102, 0, 0, 0, 0, 0);
    image.setVoxel(0x0304, 0, 0, 0, 0, 1);
    image.setVoxel(0x0506, 1, 0, 0, 0, 0);
    image.setVoxel(-2, 1, 0, 0, 0, 1);
    std::ostringstream stream;
    EXPECT_EQ(image.save(stream), 0);
    EXPECT_EQ(stream.str(), "\x02\x01\x04\x03\x06\x05\xFE\xFF");
}

TEST(RawBlock, skippingTheHeaderStartsBehindTheFirstLineWithLocal)
{
    MERV::ImageBase<unsigned char> image;
    image.setDimensions(3, 1, 1, 1, 1);
    std::istringstream stream("NDims = 2\nElementDataFile = LOCAL \nabcd");
    EXPECT_EQ(image.load(stream, true), 0);
    EXPECT_THAT(valuesOf<unsigned char>(image), ElementsAre('a', 'b', 'c'));
    EXPECT_EQ(stream.get(), 'd');
}

TEST(RawBlock, loadStartsAtThePresentPosition)
{
    MERV::ImageBase<unsigned char> image;
    image.setDimensions(2, 1, 1, 1, 1);
    std::istringstream stream("abcd");
    stream.seekg(1);
    EXPECT_EQ(image.load(stream, false), 0);
    EXPECT_THAT(valuesOf<unsigned char>(image), ElementsAre('b', 'c'));
}

TEST(RawBlock, headerWithoutLocalLeavesAFailedStream)
{
    MERV::ImageBase<unsigned char> image;
    image.setDimensions(1, 1, 1, 1, 1);
    const CapturedText output;
    std::istringstream stream("no data here\n");
    EXPECT_EQ(image.load(stream, true), 1);
    EXPECT_EQ(output.text(), "Common >> Warning: could not load image data!\n");
}

TEST(RawBlock, shortStreamIsReportedWithItsEndPosition)
{
    MERV::ImageBase<short> image;
    image.setDimensions(2, 2, 1, 1, 1);
    const CapturedText output;
    std::istringstream stream("header1234567");
    stream.seekg(6);
    EXPECT_EQ(image.load(stream, false), 1);
    EXPECT_EQ(output.text(),
              "Common >> Unexpected end of file encountered while reading image data from stream; "
              "stream position is 13\n");
}

TEST(RawBlock, shortFileIsReportedTwice)
{
    const TempFolder folder;
    writeFile(folder / "short", "1234567");
    MERV::ImageBase<short> image;
    image.setDimensions(2, 2, 1, 1, 1);
    const CapturedText output;
    EXPECT_EQ(image.load((folder / "short").c_str(), false), 1);
    EXPECT_EQ(output.text(),
              "Common >> Unexpected end of file encountered while reading image data from stream; "
              "stream position is 7\n"
              "Common >> Warning: could not load image data! Reading error occured\n");
}

// Gives some bytes and then fails or ends; it cannot seek.
class OneWayBuffer : public std::streambuf
{
public:
    OneWayBuffer(std::string given, bool throwAtEnd)
        : bytes(std::move(given))
        , throws(throwAtEnd)
    {
        setg(bytes.data(), bytes.data(), bytes.data() + bytes.size());
    }

protected:
    int_type underflow() override
    {
        if (throws)
            throw std::runtime_error("device failed");
        return traits_type::eof();
    }

private:
    std::string bytes;
    bool throws;
};

TEST(RawBlock, loadsFromAStreamThatCannotSeek)
{
    MERV::ImageBase<unsigned char> image;
    image.setDimensions(3, 1, 1, 1, 1);
    OneWayBuffer buffer("abcd", false);
    std::istream stream(&buffer);
    EXPECT_EQ(image.load(stream, false), 0);
    EXPECT_THAT(valuesOf<unsigned char>(image), ElementsAre('a', 'b', 'c'));
    const CapturedText output;
    EXPECT_EQ(image.load(stream, false), 1);
    EXPECT_THAT(output.text(), HasSubstr("Common >> Unexpected end of file encountered"));
}

TEST(RawBlock, otherReadingErrorsHaveTheirOwnMessage)
{
    MERV::ImageBase<unsigned char> image;
    image.setDimensions(3, 1, 1, 1, 1);
    OneWayBuffer buffer("ab", true);
    std::istream stream(&buffer);
    const CapturedText output;
    EXPECT_EQ(image.load(stream, false), 1);
    EXPECT_EQ(output.text(),
              "Common >> Warning: could not load image data! Reading error other than unexpected "
              "end of file occured\n");
}

TEST(RawBlock, failedStreamsAreNotTouched)
{
    const auto image = numberedImage<short>(2, 2, 1, 1, 1);
    const CapturedText output;
    std::istringstream input("12345678");
    input.setstate(std::ios::failbit);
    EXPECT_EQ(image->load(input, false), 1);
    std::ostringstream target;
    target.setstate(std::ios::failbit);
    EXPECT_EQ(image->save(target), 1);
    EXPECT_EQ(target.str(), "");
    EXPECT_EQ(output.text(), "Common >> Warning: could not load image data!\n"
                             "Common >> Warning: could not save image data!\n");
}

TEST(RawBlock, filesThatCannotBeOpenedAreReported)
{
    const TempFolder folder;
    const auto image = numberedImage<short>(2, 2, 1, 1, 1);
    const CapturedText output;
    EXPECT_EQ(image->load((folder / "none").c_str(), false), 1);
    EXPECT_EQ(image->load(folder.path().c_str(), false), 1);
    EXPECT_EQ(image->save((folder / "none/block").c_str()), 1);
    EXPECT_EQ(output.text(), "Common >> Warning: could not load image data!\n"
                             "Common >> Warning: could not load image data!\n"
                             "Common >> Warning: could not save image data!\n");
}

TEST(RawBlock, fullDeviceIsReportedWithTheSizeOfAValue)
{
    const auto image = numberedImage<short>(2, 2, 1, 1, 1);
    const CapturedText output;
    EXPECT_EQ(image->save("/dev/full"), 1);
    EXPECT_EQ(output.text(), "Common >> Warning: writing error ocurred.\nsizeof(tvoxel_type): 2\n");
}

TEST(RawBlock, loadAfterFreeingTheBufferTakesANewOne)
{
    auto image = numberedImage<unsigned char>(2, 1, 1, 1, 1);
    image->freeBuffer();
    std::istringstream stream("xy");
    EXPECT_EQ(image->load(stream, false), 0);
    EXPECT_THAT(valuesOf<unsigned char>(*image), ElementsAre('x', 'y'));
}

TEST(RawBlock, withoutABufferNothingIsSaved)
{
    auto image = numberedImage<unsigned char>(2, 1, 1, 1, 1);
    image->freeBuffer();
    const CapturedText output;
    std::ostringstream stream;
    EXPECT_EQ(image->save(stream), 1);
    EXPECT_EQ(output.text(), "Common >> Warning: could not save image data!\n");
}

TEST(RawBlock, loadFillsAForeignBufferAndNeverAllocatesForOne)
{
    unsigned char foreign[2] = {};
    MERV::ImageBase<unsigned char> image;
    image.setBufferExternal();
    image.setDimensions(2, 1, 1, 1, 1);
    const CapturedText output;
    std::istringstream stream("xyz");
    EXPECT_EQ(image.load(stream, false), 1);
    EXPECT_EQ(image.getData(), nullptr);
    image.setExternalBuffer(foreign);
    stream.clear();
    EXPECT_EQ(image.load(stream, false), 0);
    EXPECT_EQ(foreign[0], 'x');
    EXPECT_EQ(foreign[1], 'y');
}

} // namespace
