#include "Common/Bitmap.h"

#include "tests/mervlib/FormatTestSupport.h"

#include <gmock/gmock.h>

#include <limits>
#include <sstream>

using namespace MERV;
using testing::ElementsAre;

namespace {

// The published file and info headers, 54 bytes; pixels follow at once.
Bytes header(int width, int height, int bits)
{
    Bytes bytes(54);
    bytes.text(0, "BM").u32(10, 54).u32(14, 40);
    bytes.u32(18, static_cast<std::uint32_t>(width)).u32(22, static_cast<std::uint32_t>(height));
    return bytes.u16(26, 1).u16(28, static_cast<std::uint32_t>(bits));
}

ImagePointer loadedFrom(const std::string &bytes)
{
    std::istringstream stream(bytes);
    return ImagePointer(loadBitmap(stream));
}

TEST(BitmapReader, eightBitsAreIndicesAndRowsArePadded)
{
    const ImagePointer image = loadedFrom(header(3, 2, 8).str() + "abc_def_");
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->getDataType(), TypeUChar);
    EXPECT_THAT(dimensionsOf(*image), ElementsAre(3, 2, 1, 1, 1));
    EXPECT_THAT(valuesOf<unsigned char>(*image), ElementsAre('a', 'b', 'c', 'd', 'e', 'f'));
    EXPECT_EQ(image->getLow(0), 0.0f);
    EXPECT_EQ(image->getHigh(0), 255.0f);
    EXPECT_EQ(image->getMinimum(), 'a');
    EXPECT_EQ(image->getMaximum(), 'f');
}

TEST(BitmapReader, channelsAreRedGreenBlue)
{
    const ImagePointer image = loadedFrom(header(2, 2, 24).str() + "bgrBGR__123456__");
    ASSERT_NE(image, nullptr);
    EXPECT_THAT(dimensionsOf(*image), ElementsAre(2, 2, 1, 1, 3));
    const std::vector<unsigned char> values = valuesOf<unsigned char>(*image);
    EXPECT_EQ(std::string(values.begin(), values.end()), "rgbRGB321654");
    for (int channel = 0; channel < 3; ++channel)
        EXPECT_EQ(image->getHigh(channel), 255.0f);
}

TEST(BitmapReader, fourthByteOfAPixelIsSkipped)
{
    const ImagePointer image = loadedFrom(header(2, 1, 32).str() + "bgr_BGR_");
    ASSERT_NE(image, nullptr);
    EXPECT_THAT(dimensionsOf(*image), ElementsAre(2, 1, 1, 1, 3));
    const std::vector<unsigned char> values = valuesOf<unsigned char>(*image);
    EXPECT_EQ(std::string(values.begin(), values.end()), "rgbRGB");
}

TEST(BitmapReader, rowsKeepTheirNumberWhetherTopDownOrNot)
{
    const std::string pixels = "ab__cd__";
    const ImagePointer up = loadedFrom(header(2, 2, 8).str() + pixels);
    const ImagePointer down = loadedFrom(header(2, -2, 8).str() + pixels);
    ASSERT_NE(up, nullptr);
    ASSERT_NE(down, nullptr);
    EXPECT_THAT(dimensionsOf(*down), ElementsAre(2, 2, 1, 1, 1));
    EXPECT_THAT(valuesOf<unsigned char>(*down), ElementsAre('a', 'b', 'c', 'd'));
    EXPECT_EQ(valuesOf<unsigned char>(*up), valuesOf<unsigned char>(*down));
}

TEST(BitmapReader, spacingNeedsBothResolutions)
{
    const ImagePointer both = loadedFrom(header(1, 1, 8).u32(38, 2000).u32(42, 4000).str() + "abcd");
    ASSERT_NE(both, nullptr);
    EXPECT_EQ(both->getSpacing(0), 0.5f);
    EXPECT_EQ(both->getSpacing(1), 0.25f);
    EXPECT_EQ(both->getSpacing(2), 1.0f);
    const ImagePointer one = loadedFrom(header(1, 1, 8).u32(38, 2000).str() + "abcd");
    ASSERT_NE(one, nullptr);
    EXPECT_EQ(one->getSpacing(0), 1.0f);
    EXPECT_EQ(one->getSpacing(1), 1.0f);
}

TEST(BitmapReader, pixelsStandWhereTheHeaderSays)
{
    EXPECT_EQ(loadedFrom(header(1, 1, 8).u32(10, 57).str() + "123abcd")->getValue(0), 'a');
    EXPECT_EQ(loadedFrom(header(1, 1, 8).u32(10, 0x7FFFFFFF).str() + "123abcd"), nullptr);
    EXPECT_EQ(loadedFrom(header(1, 1, 8).u32(10, 0xFFFFFFFF).str() + "123abcd"), nullptr);
}

TEST(BitmapReader, startsAtThePresentPosition)
{
    std::istringstream stream("before" + header(1, 1, 8).str() + "abcd");
    stream.seekg(6);
    const ImagePointer image(loadBitmap(stream));
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->getValue(0), 'a');
}

TEST(BitmapReader, longerInfoHeadersAreReadLikeTheShortOne)
{
    EXPECT_NE(loadedFrom(header(1, 1, 8).u32(14, 124).str() + "abcd"), nullptr);
    EXPECT_EQ(loadedFrom(header(1, 1, 8).u32(14, 12).str() + "abcd"), nullptr);
}

TEST(BitmapReader, sizeOfThePixelsMayBeMissingButNotTooSmall)
{
    const std::string pixels = "abc_def_";
    EXPECT_NE(loadedFrom(header(3, 2, 8).u32(34, 0).str() + pixels), nullptr);
    EXPECT_NE(loadedFrom(header(3, 2, 8).u32(34, 6).str() + pixels), nullptr); // without the padding
    EXPECT_NE(loadedFrom(header(3, 2, 8).u32(34, 100).str() + pixels), nullptr);
    EXPECT_EQ(loadedFrom(header(3, 2, 8).u32(34, 5).str() + pixels), nullptr);
}

TEST(BitmapReader, lastRowThatIsCutShortIsFilledWithZeros)
{
    // This program's own writer tells an offset two bytes behind the first pixel.
    const ImagePointer own = loadedFrom(header(4, 2, 8).u32(10, 56).str() + "abcdefgh");
    ASSERT_NE(own, nullptr);
    EXPECT_THAT(valuesOf<unsigned char>(*own), ElementsAre('c', 'd', 'e', 'f', 'g', 'h', 0, 0));
    EXPECT_NE(loadedFrom(header(2, 3, 8).str() + "ab__cd__"), nullptr); // a whole row
    EXPECT_EQ(loadedFrom(header(2, 3, 8).str() + "ab__cd_"), nullptr);  // more than that
}

TEST(BitmapReader, oneRowNeedsHalfOfItsPixels)
{
    EXPECT_NE(loadedFrom(header(4, 1, 8).str() + "ab"), nullptr);
    EXPECT_EQ(loadedFrom(header(4, 1, 8).str() + "a"), nullptr);
    EXPECT_EQ(loadedFrom(header(std::numeric_limits<int>::max(), 1, 8).str() + "ab"), nullptr);
}

TEST(BitmapReader, otherKindsAreNull)
{
    const std::string pixels(64, 'x');
    EXPECT_NE(loadedFrom(header(2, 2, 8).str() + pixels), nullptr);
    EXPECT_EQ(loadedFrom(header(2, 2, 8).text(0, "BA").str() + pixels), nullptr);
    EXPECT_EQ(loadedFrom(header(2, 2, 8).text(0, "MB").str() + pixels), nullptr);
    EXPECT_EQ(loadedFrom(header(2, 2, 8).u32(30, 1).str() + pixels), nullptr);
    EXPECT_EQ(loadedFrom(header(2, 2, 32).u32(30, 3).str() + pixels), nullptr);
    for (const int bits : {0, 1, 4, 16, 64})
        EXPECT_EQ(loadedFrom(header(2, 2, bits).str() + pixels), nullptr) << bits;
    constexpr int least = std::numeric_limits<int>::min();
    constexpr int most = std::numeric_limits<int>::max();
    const std::pair<int, int> sizes[] = {{0, 2},    {2, 0},       {-2, 2},   {2, least},   {least, 2},
                                         {most, 2}, {most, most}, {2, most}, {most, least}};
    for (const auto &[width, height] : sizes)
        for (const int bits : {8, 24, 32})
            EXPECT_EQ(loadedFrom(header(width, height, bits).str() + pixels), nullptr)
                << width << ' ' << height;
}

TEST(BitmapReader, truncatedFilesAreNullOrOfFullSize)
{
    const std::string whole = header(2, 2, 24).str() + "bgrBGR__123456__";
    for (std::size_t size = 0; size <= whole.size(); ++size) {
        const ImagePointer image = loadedFrom(whole.substr(0, size));
        EXPECT_EQ(image != nullptr, size >= 54 + 8) << size; // one row of two may miss
        if (image != nullptr) {
            EXPECT_THAT(dimensionsOf(*image), ElementsAre(2, 2, 1, 1, 3));
        }
    }
}

TEST(BitmapReader, failedStreamsAreNull)
{
    std::istringstream stream(header(1, 1, 8).str() + "abcd");
    stream.setstate(std::ios::failbit);
    EXPECT_EQ(loadBitmap(stream), nullptr);
}

} // namespace
