#include "demo/PhantomSeries.h"

#include "demo/PhantomVolume.h"
#include "serialization/dicom/DicomLoader.h"
#include "tests/support/Files.h"

#include <gdcmImageReader.h>
#include <gdcmStringFilter.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <memory>
#include <set>
#include <string>
#include <unistd.h>
#include <vector>

namespace fs = std::filesystem;
using demo::PhantomParameters;

namespace {

class PhantomSeries : public ::testing::Test
{
protected:
    PhantomSeries()
        : folder(fs::temp_directory_path() / ("phantom series \xc3\xa4 " + std::to_string(getpid())))
    {
        fs::remove_all(folder);
        parameters.width = 48;
        parameters.height = 64;
        parameters.slices = 12;
        parameters.spacingMm = {1.5, 1.25, 3.0};
    }
    ~PhantomSeries() override { fs::remove_all(folder); }

    std::string file(int instance) const
    {
        return (folder / "series" / (instance < 10 ? "IM000" : "IM00")).string() + std::to_string(instance) +
               ".dcm";
    }

    fs::path folder;
    PhantomParameters parameters;
};

std::string trimmed(std::string text)
{
    while (!text.empty() && (text.back() == ' ' || text.back() == '\0'))
        text.pop_back();
    return text;
}

class DicomFile
{
public:
    explicit DicomFile(const std::string &path)
    {
        reader.SetFileName(path.c_str());
        good = reader.Read();
        filter.SetFile(reader.GetFile());
    }
    std::string tag(std::uint16_t group, std::uint16_t element) const
    {
        return trimmed(filter.ToString(gdcm::Tag(group, element)));
    }
    std::vector<std::int16_t> voxels() const
    {
        const gdcm::Image &image = reader.GetImage();
        std::vector<char> bytes(image.GetBufferLength());
        image.GetBuffer(bytes.data());
        std::vector<std::int16_t> result(bytes.size() / 2);
        std::memcpy(result.data(), bytes.data(), result.size() * 2);
        return result;
    }

    gdcm::ImageReader reader;
    gdcm::StringFilter filter;
    bool good = false;
};

} // namespace

TEST_F(PhantomSeries, filesHoldTheVoxelsOfThePhantom)
{
    ASSERT_TRUE(demo::writePhantomSeries(folder.string(), parameters));
    const std::vector<std::int16_t> voxels = demo::phantomVoxels(parameters);
    const std::size_t size = 48 * 64;
    for (int slice = 0; slice < 12; ++slice) {
        const DicomFile read(file(slice + 1));
        ASSERT_TRUE(read.good);
        EXPECT_EQ(read.reader.GetImage().GetPixelFormat().GetScalarTypeAsString(), std::string("INT16"));
        const auto first =
            voxels.begin() + static_cast<std::ptrdiff_t>(static_cast<std::size_t>(slice) * size);
        EXPECT_EQ(read.voxels(), std::vector<std::int16_t>(first, first + size));
    }
    EXPECT_FALSE(fs::exists(file(13)));
}

TEST_F(PhantomSeries, tagsTellTheGeometry)
{
    ASSERT_TRUE(demo::writePhantomSeries(folder.string(), parameters));
    for (int slice : {0, 11}) {
        const DicomFile read(file(slice + 1));
        ASSERT_TRUE(read.good);
        EXPECT_EQ(read.reader.GetFile().GetHeader().GetDataSetTransferSyntax(),
                  gdcm::TransferSyntax(gdcm::TransferSyntax::ExplicitVRLittleEndian));
        EXPECT_EQ(read.tag(0x0008, 0x0016), "1.2.840.10008.5.1.4.1.1.4");
        EXPECT_EQ(read.tag(0x0008, 0x0060), "MR");
        EXPECT_EQ(read.tag(0x0008, 0x103e), "Knee phantom axial T1 FLASH FS");
        EXPECT_EQ(read.tag(0x0010, 0x0010), "Phantom^Knee");
        EXPECT_EQ(read.tag(0x0018, 0x0050), "3");
        EXPECT_EQ(read.tag(0x0018, 0x0081), "6");
        EXPECT_EQ(read.tag(0x0018, 0x0088), "3");
        EXPECT_EQ(read.tag(0x0020, 0x0013), std::to_string(slice + 1));
        // The middle of 48 * 1.5 x 64 * 1.25 x 12 * 3 mm is the origin: first centre at -36 + 0.75, -40 +
        // 0.625 and -18 + 1.5.
        const std::string z = slice == 0 ? "-16.5" : "16.5";
        EXPECT_EQ(read.tag(0x0020, 0x0032), "-35.25\\-39.375\\" + z);
        EXPECT_EQ(read.tag(0x0020, 0x0037), "1\\0\\0\\0\\1\\0");
        EXPECT_EQ(read.tag(0x0020, 0x1041), z);
        EXPECT_EQ(read.tag(0x0028, 0x0030), "1.25\\1.5"); // rows first
        EXPECT_EQ(read.tag(0x0028, 0x0010), "64");
        EXPECT_EQ(read.tag(0x0028, 0x0011), "48");
        EXPECT_EQ(read.tag(0x0028, 0x0103), "1");
        EXPECT_EQ(read.tag(0x0020, 0x0060), "R");
    }
}

TEST_F(PhantomSeries, uidsBelongTogetherAndAreUniquePerImage)
{
    ASSERT_TRUE(demo::writePhantomSeries(folder.string(), parameters));
    std::set<std::string> images, series, studies, frames;
    for (int slice = 0; slice < 12; ++slice) {
        const DicomFile read(file(slice + 1));
        images.insert(read.tag(0x0008, 0x0018));
        series.insert(read.tag(0x0020, 0x000e));
        studies.insert(read.tag(0x0020, 0x000d));
        frames.insert(read.tag(0x0020, 0x0052));
    }
    EXPECT_EQ(images.size(), 12u);
    ASSERT_EQ(series.size(), 1u);
    ASSERT_EQ(studies.size(), 1u);
    ASSERT_EQ(frames.size(), 1u);
    images.insert(*series.begin());
    images.insert(*studies.begin());
    images.insert(*frames.begin());
    EXPECT_EQ(images.size(), 15u);
    for (const std::string &uid : images) {
        EXPECT_LE(uid.size(), 64u);
        EXPECT_EQ(uid.rfind("2.25.", 0), 0u);
        EXPECT_EQ(uid.find_first_not_of("0123456789."), std::string::npos);
        EXPECT_NE(uid[5], '0');
    }
}

TEST_F(PhantomSeries, uidsFollowFromTheParameters)
{
    PhantomParameters other = parameters;
    EXPECT_EQ(demo::phantomUid(parameters, "series"), demo::phantomUid(other, "series"));
    EXPECT_NE(demo::phantomUid(parameters, "series"), demo::phantomUid(parameters, "study"));
    other.mirrored = true;
    EXPECT_NE(demo::phantomUid(parameters, "series"), demo::phantomUid(other, "series"));
    other = parameters;
    other.noiseSigma += 1e-9;
    EXPECT_NE(demo::phantomUid(parameters, "series"), demo::phantomUid(other, "series"));
}

TEST_F(PhantomSeries, equalParametersGiveEqualFiles)
{
    ASSERT_TRUE(demo::writePhantomSeries((folder / "a").string(), parameters));
    ASSERT_TRUE(demo::writePhantomSeries((folder / "b").string(), parameters));
    int files = 0;
    for (const fs::directory_entry &entry : fs::recursive_directory_iterator(folder / "a")) {
        if (!entry.is_regular_file())
            continue;
        ++files;
        const std::string first = contentOf(entry.path());
        EXPECT_GT(first.size(), 100u);
        EXPECT_EQ(first, contentOf(folder / "b" / fs::relative(entry.path(), folder / "a"))) << entry.path();
    }
    EXPECT_EQ(files, 14); // 12 images and two tables
}

TEST_F(PhantomSeries, programLoadsTheSeriesAsThePhantomsImage)
{
    ASSERT_TRUE(demo::writePhantomSeries(folder.string(), parameters));
    testing::internal::CaptureStdout();
    const std::unique_ptr<MERV::Image> loaded =
        dicom::loadSeries((folder / "series").string(), false, 0, false, false);
    testing::internal::GetCapturedStdout();
    ASSERT_TRUE(loaded);
    const std::unique_ptr<MERV::Image> expected = demo::phantomImage(parameters);
    ASSERT_EQ(loaded->getWidth(), 48);
    ASSERT_EQ(loaded->getHeight(), 64);
    ASSERT_EQ(loaded->getDepth(), 12);
    EXPECT_EQ(loaded->getDataType(), MERV::TypeShort);
    for (int axis = 0; axis < 3; ++axis)
        EXPECT_EQ(loaded->getSpacing(axis), expected->getSpacing(axis));
    for (std::uint64_t i = 0; i < expected->getValueCount(); ++i)
        ASSERT_EQ(loaded->getValue(i), expected->getValue(i)) << i;
}

TEST_F(PhantomSeries, folderThatCannotBeMadeGivesFalse)
{
    fs::create_directories(folder);
    std::ofstream(folder / "file") << "x";
    EXPECT_FALSE(demo::writePhantomSeries((folder / "file" / "below").string(), parameters));
}

TEST_F(PhantomSeries, impossibleSizesGiveFalse)
{
    for (int size : {0, -1, 100000}) {
        PhantomParameters wrong = parameters;
        wrong.height = size;
        EXPECT_FALSE(demo::writePhantomSeries(folder.string(), wrong));
    }
    EXPECT_FALSE(fs::exists(folder));
}
