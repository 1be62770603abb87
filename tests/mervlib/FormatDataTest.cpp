// Files of other programs: what is an image of a kind that the readers know loads with the size that a parse
// of its header here tells, everything else is refused. Needs the folder of real data.
#include "Common/Analyze.h"
#include "Common/Bitmap.h"
#include "Common/MetaImage.h"

#include "tests/mervlib/FormatTestSupport.h"
#include "tests/support/TestData.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <map>
#include <set>

using namespace MERV;
using testing::ElementsAre;

namespace {

class RealData : public testing::Test
{
protected:
    void SetUp() override
    {
        if (testDataFolder().empty())
            GTEST_SKIP() << "no folder of real data: set TEVORA_TEST_DATA";
    }
    static std::vector<std::filesystem::path> files(const std::string &folder,
                                                    const std::set<std::string> &extensions)
    {
        std::vector<std::filesystem::path> found;
        for (const auto &entry : std::filesystem::directory_iterator(testDataFolder() + '/' + folder))
            if (extensions.count(entry.path().extension().string()) != 0)
                found.push_back(entry.path());
        std::sort(found.begin(), found.end());
        return found;
    }

    CapturedText output;
};

// --- MetaImage ---

// The lines of a header up to its data line, keys without the blank before "=".
std::map<std::string, std::string> entriesOf(const std::filesystem::path &path, std::uint64_t &headerBytes)
{
    std::map<std::string, std::string> entries;
    std::ifstream file(path, std::ios::binary);
    for (std::string line; std::getline(file, line);) {
        const std::size_t sign = line.find(" = ");
        if (sign == std::string::npos)
            break;
        entries[line.substr(0, sign)] = line.substr(sign + 3);
        if (line.substr(0, sign) == "ElementDataFile")
            break;
    }
    headerBytes = static_cast<std::uint64_t>(file.tellg());
    return entries;
}

std::vector<int> numbersIn(const std::string &text)
{
    std::istringstream stream(text);
    std::vector<int> numbers;
    for (int number = 0; stream >> number;)
        numbers.push_back(number);
    return numbers;
}

struct ExpectedMetaImage
{
    std::vector<int> dimensions{1, 1, 1, 1, 1};
    std::uint64_t valueBytes = 1;
    std::string voxels; // empty when the files do not hold an uncompressed image
};

ExpectedMetaImage expectedOf(const std::filesystem::path &path)
{
    std::uint64_t headerBytes = 0;
    auto entries = entriesOf(path, headerBytes);
    ExpectedMetaImage expected;
    const std::vector<int> size = numbersIn(entries["DimSize"]);
    std::copy(size.begin(), size.end(), expected.dimensions.begin());
    if (entries.count("ElementNumberOfChannels") != 0)
        expected.dimensions[4] = std::stoi(entries["ElementNumberOfChannels"]);
    expected.valueBytes = entries["ElementType"] == "MET_FLOAT" ? 4 : 1;
    std::uint64_t bytes = expected.valueBytes;
    for (const int extent : expected.dimensions)
        bytes *= static_cast<std::uint64_t>(extent);
    const std::string name = entries["ElementDataFile"];
    std::string content =
        name == "LOCAL" ? contentOf(path.string()).substr(headerBytes) : contentOf(path.parent_path() / name);
    if (content.size() >= bytes)
        expected.voxels = content.substr(0, bytes);
    return expected;
}

TEST_F(RealData, metaImagesLoadWithTheSizesOfTheirHeaders)
{
    int loaded = 0;
    int refused = 0;
    for (const std::filesystem::path &path : files("metaimage/itk-examples", {".mhd", ".mha"})) {
        const ExpectedMetaImage expected = expectedOf(path);
        const ImagePointer image(loadMetaImage(path.c_str()));
        ASSERT_EQ(image != nullptr, !expected.voxels.empty()) << path;
        if (image == nullptr) {
            ++refused;
            continue;
        }
        ++loaded;
        EXPECT_EQ(dimensionsOf(*image), expected.dimensions) << path;
        EXPECT_EQ(image->getDataType(), expected.valueBytes == 4 ? TypeFloat : TypeUChar) << path;
        EXPECT_EQ(std::string(static_cast<const char *>(image->getData()), expected.voxels.size()),
                  expected.voxels)
            << path;
    }
    // 17 headers; in seven CompressedData is True, whose data are shorter than the image.
    EXPECT_EQ(loaded + refused, 17);
    EXPECT_EQ(loaded, 10);
}

TEST_F(RealData, keysOfOtherProgramsAreMetaData)
{
    const std::string path = testDataFolder() + "/metaimage/itk-examples/BrainProtonDensitySliceBorder20.mhd";
    const ImagePointer image(loadMetaImage(path.c_str()));
    ASSERT_NE(image, nullptr);
    EXPECT_THAT(dimensionsOf(*image), ElementsAre(221, 257, 1, 1, 1));
    EXPECT_EQ(image->getMetaData("TransformMatrix"), " 1 0 0 1");
    EXPECT_EQ(image->getMetaData("AnatomicalOrientation"), " ??");
}

// --- Analyze ---

// The README of the data: 128 x 96 x 24 x 2, int16, 2 x 2 x 2.2 mm, big endian, values 0 .. 1162.
TEST_F(RealData, analyzeOfTheOtherByteOrder)
{
    const std::string folder = testDataFolder() + "/analyze/nibabel/";
    const ImagePointer image(loadAnalyze((folder + "example4d-be.hdr").c_str()));
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->getDataType(), TypeShort);
    EXPECT_THAT(dimensionsOf(*image), ElementsAre(128, 96, 24, 2, 1));
    EXPECT_FLOAT_EQ(image->getSpacing(0), 2.0f);
    EXPECT_FLOAT_EQ(image->getSpacing(1), 2.0f);
    EXPECT_NEAR(image->getSpacing(2), 2.2f, 1e-5f);
    EXPECT_EQ(image->getMinimum(), 0.0f);
    EXPECT_EQ(image->getMaximum(), 1162.0f);
    const std::string bytes = contentOf(folder + "example4d-be.img");
    for (std::size_t i = 0; i < bytes.size() / 2; i += 997) {
        const int high = static_cast<unsigned char>(bytes[2 * i]);
        const int low = static_cast<unsigned char>(bytes[2 * i + 1]);
        ASSERT_EQ(image->getValue(i), static_cast<float>(256 * high + low)) << i;
    }
}

TEST_F(RealData, analyzeWithoutItsVoxelsIsRefused)
{
    EXPECT_EQ(loadAnalyze((testDataFolder() + "/analyze/nibabel/analyze.hdr").c_str()), nullptr);
}

// --- bitmaps ---

std::int64_t littleEndian(const std::string &bytes, std::size_t offset, int size)
{
    std::uint64_t value = 0;
    for (int i = 0; i < size; ++i)
        value |= static_cast<std::uint64_t>(
                     static_cast<unsigned char>(bytes.at(offset + static_cast<std::size_t>(i))))
                 << 8 * i;
    return size == 4 ? static_cast<std::int32_t>(value) : static_cast<std::int64_t>(value);
}

// Uncompressed pixels of 8, 24 or 32 bits behind an info header of at least 40 bytes, all of them in the
// file.
bool isReadableBitmap(const std::string &bytes)
{
    if (bytes.size() < 54 || bytes.substr(0, 2) != "BM" || littleEndian(bytes, 14, 4) < 40)
        return false;
    const std::int64_t bits = littleEndian(bytes, 28, 2);
    const std::int64_t width = littleEndian(bytes, 18, 4);
    const std::int64_t height = std::abs(littleEndian(bytes, 22, 4));
    const bool isKnown = (bits == 8 || bits == 24 || bits == 32) && littleEndian(bytes, 30, 4) == 0;
    if (!isKnown || width <= 0 || height == 0)
        return false;
    const std::int64_t pitch = (width * bits / 8 + 3) / 4 * 4;
    return littleEndian(bytes, 10, 4) + pitch * height <= static_cast<std::int64_t>(bytes.size());
}

ImagePointer loadedBitmap(const std::filesystem::path &path)
{
    std::ifstream file(path, std::ios::binary);
    return ImagePointer(loadBitmap(file));
}

TEST_F(RealData, bitmapsLoadWithTheSizesOfTheirHeadersOrAreRefused)
{
    std::set<std::string> loaded;
    int count = 0;
    for (const char *folder : {"g", "q", "b", "x"}) {
        for (const auto &path : files(std::string("bmp/bmpsuite/") + folder, {".bmp"})) {
            ++count;
            const std::string bytes = contentOf(path.string());
            const ImagePointer image = loadedBitmap(path);
            ASSERT_EQ(image != nullptr, isReadableBitmap(bytes)) << path;
            if (image == nullptr)
                continue;
            loaded.insert(path.filename().string());
            const int channels = littleEndian(bytes, 28, 2) == 8 ? 1 : 3;
            EXPECT_THAT(
                dimensionsOf(*image),
                ElementsAre(littleEndian(bytes, 18, 4), std::abs(littleEndian(bytes, 22, 4)), 1, 1, channels))
                << path;
        }
    }
    EXPECT_EQ(count, 91);
    for (const char *name : {"pal8.bmp", "pal8-0.bmp", "pal8gs.bmp", "pal8nonsquare.bmp", "pal8topdown.bmp",
                             "pal8v4.bmp", "pal8v5.bmp", "pal8w124.bmp", "pal8w125.bmp", "pal8w126.bmp",
                             "rgb24.bmp", "rgb24pal.bmp", "rgb32.bmp"})
        EXPECT_EQ(loaded.count(name), 1u) << name;
    for (const char *name : {"pal1.bmp", "pal4.bmp", "pal8rle.bmp", "rgb16.bmp", "rgb32bf.bmp",
                             "shortfile.bmp", "badbitcount.bmp", "badwidth.bmp", "badrle.bmp"})
        EXPECT_EQ(loaded.count(name), 0u) << name;
}

// The good 24 bit file and the good 32 bit file show the same picture.
TEST_F(RealData, bitmapsOf24And32BitsAgree)
{
    const std::string folder = testDataFolder() + "/bmp/bmpsuite/g/";
    const ImagePointer rgb24 = loadedBitmap(folder + "rgb24.bmp");
    const ImagePointer rgb32 = loadedBitmap(folder + "rgb32.bmp");
    ASSERT_NE(rgb24, nullptr);
    ASSERT_NE(rgb32, nullptr);
    EXPECT_EQ(valuesOf<unsigned char>(*rgb24), valuesOf<unsigned char>(*rgb32));
}

} // namespace
