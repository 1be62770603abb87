#include "serialization/dicom/DicomPixels.h"

#include "Common/ImageTypes.h"
#include "serialization/dicom/DicomParser.h"
#include "serialization/dicom/LibraryDecoder.h"
#include "serialization/dicom/RunLength.h"
#include "tests/support/DicomFileBuilder.h"

#include <gtest/gtest.h>

#include <cstring>

using namespace dicom;
using Encoding = DicomFileBuilder::Encoding;

namespace {

class DicomPixels : public testing::Test
{
protected:
    DicomHeader header(const DicomFileBuilder &file)
    {
        file.write(folder / "file.dcm");
        return *readHeader(folder / "file.dcm");
    }

    // Values of type T; empty when the file is refused.
    template <class T>
    std::vector<T> pixels(const DicomFileBuilder &file)
    {
        const DicomHeader tags = header(file);
        const auto layout = pixelLayout(tags);
        if (!layout)
            return {};
        std::vector<T> values(layout->bytes() / sizeof(T));
        const std::span<char> bytes(reinterpret_cast<char *>(values.data()), layout->bytes());
        return readPixels(tags, *layout, bytes) ? values : std::vector<T>();
    }

    TemporaryFolder folder;
};

DicomFileBuilder withBits(DicomFileBuilder file, unsigned allocated, unsigned stored, unsigned high,
                          bool sign)
{
    file.us(0x00280100, allocated);
    file.us(0x00280101, stored);
    file.us(0x00280102, high);
    file.us(0x00280103, sign ? 1 : 0);
    return file;
}

// Encapsulated pixels: an empty offset table, then the fragments.
void setFragments(DicomFileBuilder &file, const std::string &syntax,
                  const std::vector<std::string> &fragments)
{
    const DicomFileBuilder little;
    std::string value("\xFF\xFF\xFF\xFF\xFE\xFF\x00\xE0\0\0\0\0", 12);
    for (const std::string &fragment : fragments)
        value += std::string("\xFE\xFF\x00\xE0", 4) + little.number(fragment.size(), 4) + fragment;
    value += std::string("\xFE\xFF\xDD\xE0\0\0\0\0", 8);
    file.raw(0x7FE00010, "OB", value);
    file.syntax(syntax);
}

std::string runLengthFrame(const std::vector<std::string> &segments)
{
    const DicomFileBuilder little;
    std::string head = little.number(segments.size(), 4);
    std::string body;
    for (const std::string &segment : segments) {
        head += little.number(64 + body.size(), 4);
        body += segment;
    }
    head.resize(64, '\0');
    return head + body;
}

constexpr const char *runLength = "1.2.840.10008.1.2.5";

} // namespace

TEST(DicomPixelTypes, namesAndVoxelTypes)
{
    using namespace MERV;
    const struct
    {
        std::string name;
        int plain;
        int negative;
    } table[] = {{"8S", TypeChar, TypeChar},
                 {"8U", TypeUChar, TypeChar},
                 {"16S", TypeShort, TypeShort},
                 {"16U", TypeUShort, TypeShort},
                 {"32S", TypeInt, TypeInt},
                 {"32U", TypeUInt, TypeInt},
                 {"FD", TypeDouble, TypeDouble},
                 {"1U", 0, 0},
                 {"64U", 0, 0}};
    for (const auto &row : table) {
        EXPECT_EQ(voxelType(row.name, 0), row.plain) << row.name;
        EXPECT_EQ(voxelType(row.name, 1024), row.plain) << row.name;
        EXPECT_EQ(voxelType(row.name, -1024), row.negative) << row.name;
    }
}

TEST_F(DicomPixels, typeNameComesFromBitsAndSign)
{
    const DicomFileBuilder slice = dicomSlice(1, 1, {0}, 0);
    const struct
    {
        unsigned bits;
        bool sign;
        std::string name;
    } table[] = {{8, false, "8U"},   {8, true, "8S"},   {9, false, "16U"}, {12, true, "16S"},
                 {15, false, "16U"}, {16, true, "16S"}, {24, false, "8U"}, {32, true, "32S"},
                 {64, false, "FD"},  {1, false, "1U"}};
    for (const auto &row : table)
        EXPECT_EQ(pixelTypeName(header(withBits(slice, row.bits, row.bits, 0, row.sign))), row.name);
    DicomFileBuilder bare = slice;
    bare.remove(0x00280100);
    bare.remove(0x00280103);
    EXPECT_EQ(pixelTypeName(header(bare)), "16U");
}

TEST_F(DicomPixels, nativeValuesInEachEncoding)
{
    for (const Encoding encoding :
         {Encoding::explicitLittle, Encoding::implicitLittle, Encoding::explicitBig})
        EXPECT_EQ(pixels<std::uint16_t>(dicomSlice(3, 1, {1, 0x1234, 0xFFFF}, 0, encoding)),
                  (std::vector<std::uint16_t>{1, 0x1234, 0xFFFF}));
}

TEST_F(DicomPixels, wideValuesInBothByteOrders)
{
    for (const Encoding encoding : {Encoding::explicitLittle, Encoding::explicitBig}) {
        DicomFileBuilder file = withBits(dicomSlice(2, 1, {}, 0, encoding), 32, 32, 31, true);
        file.numbers(0x7FE00010, "OW", {0x12345678, 0xFFFFFFFE}, 4);
        EXPECT_EQ(pixels<std::int32_t>(file), (std::vector<std::int32_t>{0x12345678, -2}));
        file = withBits(file, 64, 64, 63, false);
        file.numbers(0x7FE00010, "OW", {0x4050000000000000, 0xBFF0000000000000}, 8);
        EXPECT_EQ(pixels<double>(file), (std::vector<double>{64.0, -1.0}));
    }
}

TEST_F(DicomPixels, bytesInWordsOfABigEndianFile)
{
    DicomFileBuilder file = withBits(dicomSlice(3, 1, {}, 0, Encoding::explicitBig), 8, 8, 7, false);
    file.numbers(0x7FE00010, "OB", {1, 2, 3}, 1);
    EXPECT_EQ(pixels<std::uint8_t>(file), (std::vector<std::uint8_t>{1, 2, 3}));
}

TEST_F(DicomPixels, unusedHighBitsAreClearedOrFilledWithTheSign)
{
    const DicomFileBuilder slice = dicomSlice(3, 1, {0xF123, 0x0800, 0x07FF}, 0);
    EXPECT_EQ(pixels<std::uint16_t>(withBits(slice, 16, 12, 11, false)),
              (std::vector<std::uint16_t>{0x123, 0x800, 0x7FF}));
    EXPECT_EQ(pixels<std::int16_t>(withBits(slice, 16, 12, 11, true)),
              (std::vector<std::int16_t>{0x123, -2048, 2047}));
    // The 12 bits at the top of the word.
    EXPECT_EQ(pixels<std::uint16_t>(withBits(slice, 16, 12, 15, false)),
              (std::vector<std::uint16_t>{0xF12, 0x080, 0x07F}));
    // Impossible numbers of bits: all bits count.
    EXPECT_EQ(pixels<std::uint16_t>(withBits(slice, 16, 0, 40, false)),
              (std::vector<std::uint16_t>{0xF123, 0x0800, 0x07FF}));
    EXPECT_EQ(pixels<std::uint16_t>(withBits(slice, 16, 99, 15, false)),
              (std::vector<std::uint16_t>{0xF123, 0x0800, 0x07FF}));
}

TEST_F(DicomPixels, colourPaletteFloatAndOddTypesAreRefused)
{
    const DicomFileBuilder slice = dicomSlice(3, 1, {1, 2, 3}, 0);
    DicomFileBuilder colour = slice;
    colour.us(0x00280002, 3);
    EXPECT_FALSE(pixelLayout(header(colour)));
    DicomFileBuilder palette = slice;
    palette.text(0x00280004, "CS", "PALETTE COLOR");
    EXPECT_FALSE(pixelLayout(header(palette)));
    DicomFileBuilder real = slice;
    real.remove(0x7FE00010);
    real.raw(0x7FE00008, "OF", DicomFileBuilder().number(6, 4) + "abcdef");
    EXPECT_TRUE(header(real).isImage());
    EXPECT_FALSE(pixelLayout(header(real)));
    for (const unsigned bits : {0U, 1U, 7U, 12U, 24U, 48U, 65535U})
        EXPECT_FALSE(pixelLayout(header(withBits(slice, bits, bits, 0, false)))) << bits;
}

TEST_F(DicomPixels, fileWithFewerPixelsThanItSaysIsRefused)
{
    EXPECT_TRUE(pixels<std::uint16_t>(dicomSlice(3, 1, {1, 2}, 0)).empty());
    DicomFileBuilder huge = dicomSlice(0xFFFF, 0xFFFF, {1, 2}, 0);
    huge.text(0x00280008, "IS", "2147483647");
    EXPECT_FALSE(pixelLayout(header(huge)));
    DicomFileBuilder claims = dicomSlice(3, 1, {}, 0);
    claims.raw(0x7FE00010, "OW", DicomFileBuilder().number(6, 4) + "ab");
    EXPECT_FALSE(pixelLayout(header(claims)));
}

TEST_F(DicomPixels, pixelsBeyondTheLastRowAreIgnored)
{
    EXPECT_EQ(pixels<std::uint16_t>(dicomSlice(2, 1, {1, 2, 3, 4}, 0)), (std::vector<std::uint16_t>{1, 2}));
}

TEST_F(DicomPixels, runLengthFrames)
{
    // High bytes: 3 times 01 (control -2), low bytes: literal 02 03 04 (control 2).
    const std::string frame =
        runLengthFrame({std::string("\xFE\x01", 2), std::string("\x02\x02\x03\x04", 4)});
    DicomFileBuilder file = dicomSlice(3, 1, {}, 0);
    setFragments(file, runLength, {frame});
    EXPECT_EQ(pixels<std::uint16_t>(file), (std::vector<std::uint16_t>{0x0102, 0x0103, 0x0104}));
    file.text(0x00280008, "IS", "2");
    EXPECT_TRUE(pixels<std::uint16_t>(file).empty()) << "one frame is missing";
    setFragments(file, runLength, {frame, frame});
    EXPECT_EQ(pixels<std::uint16_t>(file).size(), 6U);
}

TEST_F(DicomPixels, brokenFragmentsAreRefused)
{
    const std::string frame =
        runLengthFrame({std::string("\xFE\x01", 2), std::string("\x02\x02\x03\x04", 4)});
    DicomFileBuilder file = dicomSlice(3, 1, {}, 0);
    for (const std::string &bad :
         {std::string(), std::string("x"), frame.substr(0, 66), frame.substr(0, frame.size() - 1),
          runLengthFrame({"\xFE\x01"}), std::string(64, '\xFF'), std::string(64, '\0')}) {
        setFragments(file, runLength, {bad});
        EXPECT_TRUE(pixels<std::uint16_t>(file).empty());
    }
    setFragments(file, runLength, {});
    EXPECT_TRUE(pixels<std::uint16_t>(file).empty());
    file.raw(0x7FE00010, "OB", std::string("\xFF\xFF\xFF\xFFgarbage!garbage!", 20));
    EXPECT_TRUE(pixels<std::uint16_t>(file).empty());
}

TEST(RunLength, everyCutAndEveryControlByteIsSurvived)
{
    const std::string frame =
        runLengthFrame({std::string("\xFE\x01", 2), std::string("\x02\x02\x03\x04", 4)});
    std::vector<char> out(6);
    for (std::size_t length = 0; length < frame.size(); ++length)
        EXPECT_FALSE(decodeRunLength(std::string_view(frame).substr(0, length), 2, out));
    for (int control = 0; control < 256; ++control) {
        std::string changed = frame;
        changed[64] = static_cast<char>(control);
        decodeRunLength(changed, 2, out);
    }
    EXPECT_TRUE(decodeRunLength(frame, 2, out));
}

TEST_F(DicomPixels, brokenStreamsOfForeignDecodersAreRefused)
{
    const std::string start("\xFF\xD8\xFF\xC3\x00\x0B\x10\x00\x01\x00\x03\x01\x01\x11\x00", 15);
    const std::string wavelet = std::string("\xFF\x4F\xFF\x51\x00\x29\x00\x00", 8) +
                                std::string("\0\0\0\3\0\0\0\1", 8) + std::string(8, '\0') +
                                std::string("\0\0\0\3\0\0\0\1", 8) + std::string(8, '\0') +
                                std::string("\0\1\x0F\1\1", 5);
    for (const char *syntax : {"1.2.840.10008.1.2.4.70", "1.2.840.10008.1.2.4.50", "1.2.840.10008.1.2.4.80",
                               "1.2.840.10008.1.2.4.90", "1.2.840.10008.1.2.4.100", "1.2.3.4"}) {
        for (const std::string &stream :
             {start, wavelet, start + std::string(100, '\xAA'), wavelet + std::string(100, '\xFF'),
              std::string("\xFF\xD8"), std::string(300, '\x01')}) {
            DicomFileBuilder file = dicomSlice(3, 1, {}, 0);
            setFragments(file, syntax, {stream});
            EXPECT_TRUE(pixels<std::uint16_t>(file).empty() || stream.size() > 15) << syntax;
        }
    }
}

// 400 frames of 512 x 512 pixels of two bytes: a second for each 4 MiB more.
TEST_F(DicomPixels, foreignDecodersMayTakeLongerOverManyFrames)
{
    EXPECT_EQ(longestWork(0), std::chrono::milliseconds(3000));
    EXPECT_EQ(longestWork(400ULL * 512 * 512 * 2), std::chrono::milliseconds(3000 + 51200));
}

TEST_F(DicomPixels, streamOfAnotherSizeIsRefusedBeforeDecoding)
{
    // A lossless JPEG head that says 65535 x 65535.
    DicomFileBuilder file = dicomSlice(3, 1, {}, 0);
    setFragments(file, "1.2.840.10008.1.2.4.70",
                 {std::string("\xFF\xD8\xFF\xC3\x00\x0B\x10\xFF\xFF\xFF\xFF\x01\x01\x11\x00", 15)});
    EXPECT_TRUE(pixels<std::uint16_t>(file).empty());
}

TEST_F(DicomPixels, compressedFileCannotClaimMoreThanItsBytesAllow)
{
    DicomFileBuilder file = dicomSlice(60000, 60000, {}, 0);
    setFragments(file, runLength, {"x"});
    EXPECT_FALSE(pixelLayout(header(file)));
}

TEST_F(DicomPixels, runLengthsAreLongEnoughForAnEmptyPicture)
{
    // 64 kB of zeros: two planes of 32 kB, each in 256 runs of 128.
    std::string runs;
    for (int i = 0; i < 256; ++i)
        runs += std::string("\x81\x00", 2);
    DicomFileBuilder file = dicomSlice(256, 128, {}, 0);
    setFragments(file, runLength, {runLengthFrame({runs, runs})});
    EXPECT_EQ(pixels<std::uint16_t>(file), std::vector<std::uint16_t>(std::size_t(256) * 128));
    file.us(0x00280010, 200); // more rows than the bytes can make
    EXPECT_FALSE(pixelLayout(header(file)));
}
