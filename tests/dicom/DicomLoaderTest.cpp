#include "serialization/dicom/DicomLoader.h"

#include "Common/ImageTypes.h"
#include "tests/support/DicomFileBuilder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <list>

using namespace dicom;
using testing::internal::CaptureStderr;
using testing::internal::CaptureStdout;
using testing::internal::GetCapturedStderr;
using testing::internal::GetCapturedStdout;

namespace {

// 2 x 2 pixels: 100 * number + 0, 1 in the first row and + 2, 3 in the second.
DicomFileBuilder numbered(unsigned number, double zMm)
{
    const std::uint64_t base = 100 * number;
    DicomFileBuilder file = dicomSlice(2, 2, {base, base + 1, base + 2, base + 3}, zMm);
    file.text(0x00200013, "IS", std::to_string(number));
    return file;
}

std::vector<float> voxels(MERV::Image &image)
{
    std::vector<float> values;
    for (std::uint64_t i = 0; i < image.getValueCount(); ++i)
        values.push_back(image.getValue(i));
    return values;
}

class DicomLoader : public testing::Test
{
protected:
    // Three files whose names say nothing about their order: numbers 1, 2, 3 at z 5, 7, 9.
    void writeShuffled()
    {
        numbered(2, 7).write(folder / "a");
        numbered(3, 9).write(folder / "b");
        numbered(1, 5).write(folder / "c");
    }

    std::unique_ptr<MERV::Image> load(bool direct = true, bool withMetaData = true)
    {
        return loadSeries(folder.string(), false, 0, direct, withMetaData);
    }

    std::unique_ptr<MERV::Image> loadOne(const DicomFileBuilder &file)
    {
        file.write(folder / "one.dcm");
        return loadDicomFile(folder / "one.dcm");
    }

    TemporaryFolder folder;
};

} // namespace

TEST_F(DicomLoader, directOrderWithYAndZReversed)
{
    writeShuffled();
    const auto image = load(true);
    ASSERT_TRUE(image);
    // The last file comes first, its last row first.
    EXPECT_EQ(voxels(*image),
              (std::vector<float>{302, 303, 300, 301, 202, 203, 200, 201, 102, 103, 100, 101}));
    EXPECT_EQ(image->getDataType(), MERV::TypeUShort);
    EXPECT_EQ(image->getPosition()[2], 5.0F);
    EXPECT_EQ(image->getMinimum(), 100.0F);
    EXPECT_EQ(image->getMaximum(), 303.0F);
}

TEST_F(DicomLoader, reverseOrderGivesTheOtherEnd)
{
    writeShuffled();
    const auto image = load(false);
    ASSERT_TRUE(image);
    EXPECT_EQ(voxels(*image),
              (std::vector<float>{102, 103, 100, 101, 202, 203, 200, 201, 302, 303, 300, 301}));
    EXPECT_EQ(image->getPosition()[0], 10.0F);
    EXPECT_EQ(image->getPosition()[1], 20.0F);
    EXPECT_EQ(image->getPosition()[2], 9.0F);
}

TEST_F(DicomLoader, dimensionsAndSpacing)
{
    writeShuffled();
    const auto image = load();
    EXPECT_EQ(image->getWidth(), 2);
    EXPECT_EQ(image->getHeight(), 2);
    EXPECT_EQ(image->getDepth(), 3);
    EXPECT_EQ(image->getFrames(), 1);
    EXPECT_EQ(image->getChannels(), 1);
    EXPECT_EQ(image->getSpacing(0), 0.25F);
    EXPECT_EQ(image->getSpacing(1), 0.5F);
    EXPECT_EQ(image->getSpacing(2), 2.0F);
    EXPECT_EQ(image->getSpacing(3), 1.0F);
}

TEST_F(DicomLoader, distanceOfTheFirstFileWhereThePositionsGiveNone)
{
    numbered(1, 5).write(folder / "a");
    numbered(2, 5).write(folder / "b");
    EXPECT_EQ(load()->getSpacing(2), 4.0F);
    std::filesystem::remove(folder / "b");
    EXPECT_EQ(load()->getSpacing(2), 4.0F);
}

TEST_F(DicomLoader, coursePrintedOnStandardOutput)
{
    writeShuffled();
    CaptureStdout();
    load();
    const std::string printed = GetCapturedStdout();
    const std::string expected = "Dir Name :[" + folder.string() +
                                 "]\n -----Finish parsing :[\n -----Finish sorting\n"
                                 "Dimensions 2 x 2 x 3 x 1\nSpacing 0.25 x 0.5 x 2 x 1\n"
                                 "PixelType 16U\nData Type 5123\nOrigin 10, 20, 5\n"
                                 "Loaded Image, resolution 2 x 2 x 3, min 100, max = 303\n";
    EXPECT_EQ(printed, expected);
}

TEST_F(DicomLoader, seriesBeyondTheLastIsNull)
{
    writeShuffled();
    EXPECT_EQ(loadSeries(folder.string(), false, 1, true, true), nullptr);
    EXPECT_EQ(loadSeries(folder.string(), false, -1, true, true), nullptr);
    EXPECT_EQ(loadFiles({}, 1.0, true), nullptr);
}

TEST_F(DicomLoader, obliqueStackIsNamedOnStandardError)
{
    for (int i = 0; i < 2; ++i) {
        DicomFileBuilder file = numbered(1, 0);
        // The normal is (0, -0.6, 0.8): 3 mm apart along it, 2.4 mm in z.
        file.text(0x00200037, "DS", "1\\0\\0\\0\\0.8\\0.6");
        file.text(0x00200032, "DS", i == 0 ? "0\\0\\0" : "0\\-1.8\\2.4");
        file.write(folder / std::to_string(i));
    }
    CaptureStderr();
    const auto image = load();
    EXPECT_EQ(image->getSpacing(2), 2.4F);
    EXPECT_EQ(GetCapturedStderr(), "The slice distance in use is 2.4 mm, but the positions along the slice "
                                   "normal are 3 mm apart.\n");
}

TEST_F(DicomLoader, matchingDistanceIsNotNamed)
{
    writeShuffled();
    CaptureStderr();
    load();
    EXPECT_EQ(GetCapturedStderr(), "");
}

TEST_F(DicomLoader, metaDataOfTheSeriesAndOfEachSlice)
{
    for (unsigned i = 1; i <= 3; ++i) {
        DicomFileBuilder file = numbered(i, i);
        file.text(0x00191001, "LO", "private " + std::to_string(i));
        file.text(0x00191002, "LO", "constant");
        if (i == 2)
            file.text(0x00104000, "LT", "only here");
        file.write(folder / std::to_string(i));
    }
    const auto image = load();
    EXPECT_EQ(image->getMetaData("Patient's Name"), "Doe^Jane");
    EXPECT_EQ(image->getMetaData("Echo Time"), "9.2");
    EXPECT_EQ(image->getMetaData("Instance Number"), "<ambiguous data>");
    EXPECT_EQ(image->getMetaData("gdcm::Unknown (0019, 1001)"), "<ambiguous data>");
    EXPECT_EQ(image->getMetaData("gdcm::Unknown (0019, 1002)"), "constant");
    EXPECT_EQ(image->getMetaData("Pixel Data"), "gdcm::Binary data loaded");
    EXPECT_EQ(image->getMetaData("Rows"), "2");
    EXPECT_EQ(image->getMetaData("Transfer Syntax UID"), "1.2.840.10008.1.2.1");
    // A tag that only one file has looks constant.
    EXPECT_EQ(image->getMetaData("Patient Comments"), "only here");
    for (int slice = 0; slice < 3; ++slice) {
        // In the order of the files: mirroring the voxels leaves these in place.
        EXPECT_EQ(image->getSliceMetaData(slice, "Instance Number"), std::to_string(slice + 1));
        EXPECT_EQ(image->getSliceMetaData(slice, "gdcm::Unknown (0019, 1001)"),
                  "private " + std::to_string(slice + 1));
    }
    EXPECT_EQ(image->getSliceMetaData(0, "Patient Comments"), "");
    EXPECT_EQ(image->getSliceMetaData(1, "Patient Comments"), "only here");
    EXPECT_EQ(load(true, false)->getMetaData("Patient's Name"), "");
}

// A tag that is empty in all files is as one that no file has.
TEST_F(DicomLoader, emptyTagsGiveNoMetaData)
{
    for (unsigned i = 1; i <= 2; ++i) {
        DicomFileBuilder file = numbered(i, i);
        file.text(0x00104000, "LT", "");
        file.text(0x00102180, "SH", i == 1 ? "" : "rower");
        file.write(folder / std::to_string(i));
    }
    const auto image = load();
    const auto has = [](const std::list<std::string> &keys, const std::string &key) {
        return std::find(keys.begin(), keys.end(), key) != keys.end();
    };
    std::list<std::string> keys;
    image->getMetaDataKeys(keys);
    EXPECT_TRUE(has(keys, "Patient's Name"));
    EXPECT_FALSE(has(keys, "Patient Comments"));
    EXPECT_EQ(image->getMetaData("Occupation"), "rower");
    std::list<std::string> first;
    image->getSliceMetaDataKeys(0, first);
    EXPECT_TRUE(has(first, "Patient's Name"));
    EXPECT_FALSE(has(first, "Patient Comments"));
    EXPECT_FALSE(has(first, "Occupation"));
    std::list<std::string> second;
    image->getSliceMetaDataKeys(1, second);
    EXPECT_TRUE(has(second, "Occupation"));
}

TEST_F(DicomLoader, negativeInterceptMakesUnsignedPixelsSigned)
{
    for (unsigned i = 1; i <= 2; ++i) {
        DicomFileBuilder file = dicomSlice(2, 2, {0, 24, 1024, 33000}, i);
        file.text(0x00281052, "DS", i == 1 ? "-1024" : "-7"); // that of the first file counts for all
        file.text(0x00281053, "DS", "3");                     // the slope is not used
        file.write(folder / std::to_string(i));
    }
    const auto image = load();
    EXPECT_EQ(image->getDataType(), MERV::TypeShort);
    // 33000 is -32536 as a short; lowered by 1024 it wraps round to 31976. Rows are reversed.
    EXPECT_EQ(voxels(*image), (std::vector<float>{0, 31976, -1024, -1000, 0, 31976, -1024, -1000}));
    EXPECT_EQ(image->getMinimum(), -1024.0F);
}

TEST_F(DicomLoader, positiveInterceptKeepsTheType)
{
    DicomFileBuilder file = dicomSlice(2, 2, {0, 1, 2, 65535}, 0);
    file.text(0x00281052, "DS", "10.75");
    const auto image = loadOne(file);
    EXPECT_EQ(image->getDataType(), MERV::TypeUShort);
    // 65545.75 is cut to 65545 and wraps round to 9.
    EXPECT_EQ(voxels(*image), (std::vector<float>{12, 9, 10, 11}));
}

TEST_F(DicomLoader, hostileInterceptsAreSurvived)
{
    for (const std::string intercept : {"1e300", "-1e300", "1e18", "-9e17", "nan", "inf", "x"}) {
        DicomFileBuilder file = dicomSlice(2, 2, {0, 1, 2, 3}, 0);
        file.text(0x00281052, "DS", intercept);
        EXPECT_NE(loadOne(file), nullptr) << intercept;
    }
}

TEST_F(DicomLoader, filesOfDifferentSizeTypeOrFramesDoNotLoad)
{
    const auto refusesBeside = [&](const DicomFileBuilder &other) {
        numbered(1, 0).write(folder / "a");
        other.write(folder / "b");
        const bool refused = load() == nullptr;
        std::filesystem::remove(folder / "b");
        return refused && load() != nullptr;
    };
    EXPECT_TRUE(refusesBeside(dicomSlice(2, 1, {1, 2}, 1)));
    EXPECT_TRUE(refusesBeside(dicomSlice(1, 2, {1, 2}, 1)));
    EXPECT_TRUE(refusesBeside(dicomSlice(2, 2, {1, 2, 3}, 1)));
    DicomFileBuilder colour = dicomSlice(2, 2, std::vector<std::uint64_t>(12), 1);
    colour.us(0x00280002, 3);
    EXPECT_TRUE(refusesBeside(colour));
    DicomFileBuilder bytes = dicomSlice(2, 2, {1, 2, 3, 4}, 1);
    bytes.us(0x00280100, 8);
    EXPECT_TRUE(refusesBeside(bytes));
    DicomFileBuilder frames = dicomSlice(2, 2, {1, 2, 3, 4, 5, 6, 7, 8}, 1);
    frames.text(0x00280008, "IS", "2");
    EXPECT_TRUE(refusesBeside(frames));
}

TEST_F(DicomLoader, filesOfDifferentOrientationLoadAlongTheNormalOfTheFirst)
{
    numbered(1, 3).write(folder / "a");
    DicomFileBuilder other = numbered(2, 1);
    other.text(0x00200037, "DS", "0\\1\\0\\0\\0\\1");
    other.write(folder / "b");
    const auto image = load();
    ASSERT_TRUE(image);
    EXPECT_EQ(image->getValue(0), 102.0F); // a is the farther one
}

TEST_F(DicomLoader, eachTagMayBeMissing)
{
    const struct
    {
        std::uint32_t tag;
        bool loads;
    } table[] = {{0x00080016, true}, {0x0008103E, true}, {0x00100010, true},  {0x00180050, true},
                 {0x00180081, true}, {0x00180088, true}, {0x0020000E, true},  {0x00200013, true},
                 {0x00200032, true}, {0x00200037, true}, {0x00201041, true},  {0x00280002, true},
                 {0x00280004, true}, {0x00280030, true}, {0x00280100, true},  {0x00280101, true},
                 {0x00280102, true}, {0x00280103, true}, {0x00280010, false}, {0x00280011, false},
                 {0x7FE00010, false}};
    for (const auto &row : table) {
        for (unsigned i = 1; i <= 3; ++i) {
            DicomFileBuilder file = numbered(i, i);
            file.remove(row.tag);
            file.write(folder / std::to_string(i));
        }
        const auto image = load();
        EXPECT_EQ(image != nullptr, row.loads) << std::hex << row.tag;
        if (image) {
            EXPECT_EQ(image->getValue(0), 302.0F) << std::hex << row.tag;
        }
    }
}

TEST_F(DicomLoader, framesOfASeriesFollowFileAfterFile)
{
    for (unsigned i = 1; i <= 2; ++i) {
        DicomFileBuilder file = dicomSlice(1, 2, {10 * i, 10 * i + 1, 10 * i + 2, 10 * i + 3}, i);
        file.text(0x00280008, "IS", "2");
        file.write(folder / std::to_string(i));
    }
    const auto image = load();
    EXPECT_EQ(image->getDepth(), 2);
    EXPECT_EQ(image->getFrames(), 2);
    // Each frame of the image has two slices and takes one file, whose frames so come out as its slices;
    // y and z are reversed within each frame of the image.
    EXPECT_EQ(voxels(*image), (std::vector<float>{13, 12, 11, 10, 23, 22, 21, 20}));
}

TEST_F(DicomLoader, framesOfASingleFileAreItsDepth)
{
    DicomFileBuilder file = dicomSlice(1, 2, {10, 11, 20, 21, 30, 31}, 6);
    file.text(0x00280008, "IS", "3");
    CaptureStdout();
    const auto image = loadOne(file);
    EXPECT_EQ(GetCapturedStdout(), "File Name :[" + (folder / "one.dcm").string() +
                                       "]\nDimensions 1 x 2 x 3 x 1\nSpacing 0.25 x 0.5 x 4 x 1\n"
                                       "PixelType 16U\nData Type 5123\nOrigin 10, 20, 6\n"
                                       "Loaded Image, resolution 1 x 2 x 3, min 10, max = 31\n");
    EXPECT_EQ(image->getDepth(), 3);
    EXPECT_EQ(image->getFrames(), 1);
    EXPECT_EQ(voxels(*image), (std::vector<float>{31, 30, 21, 20, 11, 10}));
    EXPECT_EQ(image->getMetaData("filename"), (folder / "one.dcm").string());
    EXPECT_EQ(image->getMetaData("Patient's Name"), "Doe^Jane");
    EXPECT_EQ(image->getSliceMetaData(0, "Echo Time"), "9.2");
}

TEST_F(DicomLoader, singleFileKeepsTheSignOfItsDistance)
{
    DicomFileBuilder file = dicomSlice(2, 2, {1, 2, 3, 4}, 0);
    file.text(0x00180088, "DS", "-2.5");
    EXPECT_EQ(loadOne(file)->getSpacing(2), -2.5F);
    EXPECT_EQ(load()->getSpacing(2), 2.5F);
}

TEST_F(DicomLoader, singleSliceOfOddHeightStaysUnflipped)
{
    // Neither of the mirrored axes is even: mirroring then does nothing, which is required.
    const auto image = loadOne(dicomSlice(2, 3, {1, 2, 3, 4, 5, 6}, 0));
    EXPECT_EQ(voxels(*image), (std::vector<float>{1, 2, 3, 4, 5, 6}));
}

TEST_F(DicomLoader, otherSingleFilesAreRefused)
{
    EXPECT_EQ(loadDicomFile(folder / "absent.dcm"), nullptr);
    EXPECT_EQ(loadDicomFile(folder.string()), nullptr);
    EXPECT_EQ(loadDicomFile("/dev/zero"), nullptr);
    std::ofstream(folder / "text.dcm") << std::string(200, 'x');
    EXPECT_EQ(loadDicomFile(folder / "text.dcm"), nullptr);
}

TEST_F(DicomLoader, everyCutOfAFileIsRefusedOrOpened)
{
    const std::string whole = numbered(1, 0).bytes();
    for (std::size_t length = 0; length < whole.size(); ++length) {
        std::ofstream(folder / "cut.dcm", std::ios::binary)
            .write(whole.data(), static_cast<std::streamsize>(length));
        EXPECT_EQ(loadDicomFile(folder / "cut.dcm"), nullptr) << length;
    }
}

TEST_F(DicomLoader, tagsOfAFileWithNamesAndValues)
{
    numbered(1, 0).write(folder / "a.dcm");
    const std::vector<TagValue> values = readTags(folder / "a.dcm");
    const auto named = [&](const std::string &name) {
        for (const TagValue &value : values) {
            if (value.name == name)
                return value;
        }
        return TagValue();
    };
    EXPECT_EQ(named("Patient's Name").tag, 0x00100010U);
    EXPECT_EQ(named("Patient's Name").value, "Doe^Jane");
    EXPECT_EQ(named("Columns").value, "2");
    EXPECT_TRUE(readTags(folder / "absent").empty());
}

TEST_F(DicomLoader, resultDoesNotDependOnTheNumberOfCores)
{
    for (unsigned i = 0; i < 40; ++i)
        numbered(i, i).write(folder / std::to_string(i * 7919 % 101));
    const auto first = load();
    for (int repeat = 0; repeat < 5; ++repeat) {
        const auto again = load();
        ASSERT_EQ(voxels(*again), voxels(*first));
    }
    EXPECT_EQ(first->getValue(0), 3902.0F);
}
