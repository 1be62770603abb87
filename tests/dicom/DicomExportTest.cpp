#include "serialization/dicom/DicomExport.h"

#include "Common/ImageTypes.h"
#include "serialization/dicom/DicomLoader.h"
#include "tests/support/Command.h"
#include "tests/support/DicomFileBuilder.h"
#include "tests/support/Files.h"

#include <gtest/gtest.h>

#include <cstring>
#include <sstream>
#include <utility>

using testing::internal::CaptureStdout;
using testing::internal::GetCapturedStdout;

namespace {

std::unique_ptr<MERV::Image> makeImage(int type, int width, int height, int depth)
{
    std::unique_ptr<MERV::Image> image(MERV::createImage(type));
    image->setDimensions(width, height, depth, 1, 1);
    for (std::uint64_t i = 0; i < image->getValueCount(); ++i)
        image->setValue(static_cast<float>(i + 1), i);
    image->setSpacing(0.25F, 0.5F, 2.0F, 1.0F);
    image->computeMinMax();
    return image;
}

// Value of an element in an explicit little endian file, found by its bytes; "(none)" when it is not there,
// and the number of finds in front when there is more than one.
std::string element(const std::string &file, unsigned group, unsigned number, const std::string &vr)
{
    const DicomFileBuilder little;
    const std::string head = little.number(group, 2) + little.number(number, 2) + vr;
    const std::size_t at = file.find(head);
    if (at == std::string::npos)
        return "(none)";
    if (file.find(head, at + 1) != std::string::npos)
        return "(twice)";
    const bool isLong = vr == "OW" || vr == "OB";
    const std::size_t lengthAt = at + head.size() + (isLong ? 2 : 0);
    std::size_t length = 0;
    for (std::size_t i = isLong ? 4 : 2; i-- > 0;)
        length = length << 8U | static_cast<unsigned char>(file[lengthAt + i]);
    return file.substr(lengthAt + (isLong ? 4 : 2), length);
}

// A 16-bit number of an element.
int word(const std::string &file, unsigned group, unsigned number, const std::string &vr = "US")
{
    const std::string value = element(file, group, number, vr);
    if (value.size() != 2)
        return -99999;
    std::int16_t bits = 0;
    std::memcpy(&bits, value.data(), 2);
    return vr == "SS" ? bits : static_cast<std::uint16_t>(bits);
}

} // namespace

TEST(DicomExport, everyTagOfTheSecondSlice)
{
    const TemporaryFolder folder;
    const auto image = makeImage(MERV::TypeShort, 2, 4, 3);
    image->setValue(-300.0F, 0);
    image->computeMinMax();
    image->setName("Doe^Jane");
    const float position[3] = {1.5F, -2.0F, 3.0F};
    const float orientation[9] = {0, 1, 0, 0, 0, -1, 1, 0, 0};
    image->setPosition(position);
    image->setOrientation(orientation);
    image->setWindowLevel(400.0F, 40.0F, 0);
    ASSERT_TRUE(dicom::saveDicomSeries(*image, folder.string()));
    const std::string file = contentOf(folder / "slice0001.dcm");
    ASSERT_EQ(file.substr(128, 4), "DICM");
    EXPECT_EQ(element(file, 0x0002, 0x0010, "UI"), std::string("1.2.840.10008.1.2.1\0", 20));
    EXPECT_EQ(element(file, 0x0008, 0x0070, "LO"), "MERV, ORLO");
    EXPECT_EQ(element(file, 0x0010, 0x0010, "PN"), "Doe^Jane");
    EXPECT_EQ(word(file, 0x0028, 0x0011), 2);
    EXPECT_EQ(word(file, 0x0028, 0x0010), 4);
    EXPECT_EQ(word(file, 0x0028, 0x0100), 16);
    EXPECT_EQ(word(file, 0x0028, 0x0101), 16);
    EXPECT_EQ(word(file, 0x0028, 0x0102), 15);
    EXPECT_EQ(word(file, 0x0028, 0x0103), 1);
    EXPECT_EQ(word(file, 0x0028, 0x0002), 1);
    EXPECT_EQ(element(file, 0x0028, 0x0030, "DS"), "0.500000\\0.250000 ");
    EXPECT_EQ(element(file, 0x0018, 0x0088, "DS"), "2.000000");
    EXPECT_EQ(element(file, 0x0018, 0x0050, "DS"), "2.000000");
    EXPECT_EQ(element(file, 0x0020, 0x0037, "DS"),
              "0.000000\\1.000000\\0.000000\\0.000000\\0.000000\\-1.000000\\1.000000\\0.000000\\0.000000 ");
    // One slice of 2 mm along the third row of the orientation.
    EXPECT_EQ(element(file, 0x0020, 0x0032, "DS"), "3.500000\\-2.000000\\3.000000 ");
    EXPECT_EQ(word(file, 0x0028, 0x0106, "SS"), -300);
    EXPECT_EQ(word(file, 0x0028, 0x0107, "SS"), 24);
    EXPECT_EQ(element(file, 0x0028, 0x1051, "DS"), "400.000000");
    EXPECT_EQ(element(file, 0x0028, 0x1050, "DS"), "40.000000 ");
    EXPECT_EQ(element(file, 0x0020, 0x0013, "IS"), "1 ");
    EXPECT_EQ(element(file, 0x0020, 0x000D, "UI"), std::string("1.2.3.4.", 8));
    EXPECT_EQ(element(file, 0x0020, 0x000E, "UI"), std::string("1.2.3.4.", 8));
    EXPECT_EQ(element(file, 0x0028, 0x0004, "CS"), "MONOCHROME2 ");
    EXPECT_EQ(element(file, 0x0008, 0x0016, "UI"), std::string("1.2.840.10008.5.1.4.1.1.4\0", 26));
}

TEST(DicomExport, institutionAddressReplacesTheInstitutionName)
{
    const TemporaryFolder folder;
    const auto image = makeImage(MERV::TypeUChar, 2, 2, 1);
    ASSERT_TRUE(dicom::saveDicomSeries(*image, folder.string()));
    const std::string file = contentOf(folder / "slice0000.dcm");
    const std::string value = element(file, 0x0008, 0x0080, "LO");
    EXPECT_NE(value, "MERV, ORLO");
    EXPECT_GT(value.size(), 10U);
    EXPECT_EQ(element(file, 0x0010, 0x0010, "PN"), ""); // an image without a name
}

TEST(DicomExport, pixelsRunAgainstYAndZOfTheImage)
{
    const TemporaryFolder folder;
    // Slices of the image: 1..8 and 9..16, rows of two.
    const auto image = makeImage(MERV::TypeUShort, 2, 4, 2);
    ASSERT_TRUE(dicom::saveDicomSeries(*image, folder.string()));
    const DicomFileBuilder little;
    std::string first;
    for (const unsigned value : {15U, 16U, 13U, 14U, 11U, 12U, 9U, 10U})
        first += little.number(value, 2);
    EXPECT_EQ(element(contentOf(folder / "slice0000.dcm"), 0x7FE0, 0x0010, "OW"), first);
}

TEST(DicomExport, oddNumberOfBytesIsPadded)
{
    const TemporaryFolder folder;
    const auto image = makeImage(MERV::TypeUChar, 3, 1, 1);
    ASSERT_TRUE(dicom::saveDicomSeries(*image, folder.string()));
    const std::string file = contentOf(folder / "slice0000.dcm");
    EXPECT_EQ(element(file, 0x7FE0, 0x0010, "OW"), std::string("\1\2\3\0", 4));
    EXPECT_EQ(word(file, 0x0028, 0x0100), 8);
    EXPECT_EQ(word(file, 0x0028, 0x0103), 0);
    EXPECT_EQ(word(file, 0x0028, 0x0106), 1);
}

TEST(DicomExport, imageIsBitIdenticalAfterwards)
{
    for (const int type :
         {MERV::TypeUChar, MERV::TypeShort, MERV::TypeUShort, MERV::TypeFloat, MERV::TypeInt}) {
        const TemporaryFolder folder;
        const auto image = makeImage(type, 3, 4, 3);
        const std::unique_ptr<MERV::Image> before(image->clone());
        dicom::saveDicomSeries(*image, folder.string());
        const std::size_t bytes = image->getValueCount() * (type == MERV::TypeUChar ? 1
                                                            : type >= MERV::TypeInt ? 4
                                                                                    : 2);
        EXPECT_EQ(std::memcmp(image->getData(), before->getData(), bytes), 0);
    }
}

TEST(DicomExport, floatImagePrintsAMessageAndWritesNothing)
{
    const TemporaryFolder folder;
    const auto image = makeImage(MERV::TypeFloat, 2, 2, 1);
    CaptureStdout();
    EXPECT_FALSE(dicom::saveDicomSeries(*image, folder.string()));
    EXPECT_EQ(GetCapturedStdout(), "Error: Data Type FLOAT not applicable for DICOM export!\n");
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST(DicomExport, otherTypesWriteNothing)
{
    for (const int type : {MERV::TypeChar, MERV::TypeInt, MERV::TypeUInt, MERV::TypeDouble}) {
        const TemporaryFolder folder;
        const auto image = makeImage(type, 2, 2, 1);
        EXPECT_FALSE(dicom::saveDicomSeries(*image, folder.string()));
        EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
    }
}

TEST(DicomExport, eachSliceThatCannotBeWrittenIsNamedAndTheOthersFollow)
{
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder / "slice0001.dcm");
    const auto image = makeImage(MERV::TypeUChar, 2, 2, 3);
    CaptureStdout();
    EXPECT_FALSE(dicom::saveDicomSeries(*image, folder.string()));
    EXPECT_EQ(GetCapturedStdout(), "Error: Could not write DICOM file!\n");
    EXPECT_TRUE(std::filesystem::is_regular_file(folder / "slice0002.dcm"));
}

// Rows and columns are numbers of 16 bits: a wider image would be told as a narrow one.
TEST(DicomExport, imageWiderThanItsTagCanTellIsNotWritten)
{
    for (const auto &[width, height] : {std::pair(65537, 1), std::pair(1, 65536)}) {
        const TemporaryFolder folder;
        const auto image = makeImage(MERV::TypeUChar, width, height, 2);
        CaptureStdout();
        EXPECT_FALSE(dicom::saveDicomSeries(*image, folder.string()));
        EXPECT_EQ(GetCapturedStdout(),
                  "Error: Could not write DICOM file!\nError: Could not write DICOM file!\n");
        EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
    }
    const TemporaryFolder folder;
    EXPECT_TRUE(dicom::saveDicomSeries(*makeImage(MERV::TypeUChar, 65535, 1, 1), folder.string()));
    EXPECT_EQ(word(contentOf(folder / "slice0000.dcm"), 0x0028, 0x0011), 65535);
}

TEST(DicomExport, directoryNameIsNoFormat)
{
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder / "100%s %n");
    const auto image = makeImage(MERV::TypeUChar, 2, 2, 1);
    EXPECT_TRUE(dicom::saveDicomSeries(*image, folder / "100%s %n"));
    EXPECT_TRUE(std::filesystem::is_regular_file(folder / "100%s %n/slice0000.dcm"));
}

TEST(DicomExport, exportedSeriesComesBackAsItWas)
{
    for (const int type : {MERV::TypeUChar, MERV::TypeShort, MERV::TypeUShort}) {
        const TemporaryFolder folder;
        const auto image = makeImage(type, 3, 4, 3);
        ASSERT_TRUE(dicom::saveDicomSeries(*image, folder.string()));
        // Files run against z of the image; direct order and its mirroring turn them back.
        const auto again = dicom::loadSeries(folder.string(), false, 0, true, true);
        ASSERT_TRUE(again);
        EXPECT_EQ(again->getDataType(), type);
        ASSERT_EQ(again->getValueCount(), image->getValueCount());
        for (std::uint64_t i = 0; i < image->getValueCount(); ++i)
            ASSERT_EQ(again->getValue(i), image->getValue(i));
        for (int axis = 0; axis < 3; ++axis)
            EXPECT_EQ(again->getSpacing(axis), image->getSpacing(axis));
    }
}

TEST(DicomExport, anotherReaderAgrees)
{
    if (!hasProgram("dcmdump") || !hasProgram("dcm2pnm"))
        GTEST_SKIP() << "dcmtk is not installed";
    const TemporaryFolder folder;
    const auto image = makeImage(MERV::TypeUChar, 3, 2, 1);
    ASSERT_TRUE(dicom::saveDicomSeries(*image, folder.string()));
    const std::string path = folder / "slice0000.dcm";
    const std::string dump = outputOf("dcmdump " + path);
    EXPECT_NE(dump.find("=MRImageStorage"), std::string::npos);
    EXPECT_NE(dump.find("(0028,0030) DS [0.500000\\0.250000]"), std::string::npos);
    EXPECT_NE(dump.find("(0020,000e) UI [1.2.3.4.]"), std::string::npos);
    EXPECT_EQ(dump.find("Warning"), std::string::npos);
    // A window of 0..255 shows the values as they are; the rows 1 2 3 and 4 5 6 are reversed.
    std::istringstream picture(outputOf("dcm2pnm +Ww 128 256 +opb " + path));
    std::string word;
    std::string values;
    while (picture >> word)
        values += word + " ";
    EXPECT_EQ(values.substr(values.find("255")), "255 4 5 6 1 2 3 ");
}
