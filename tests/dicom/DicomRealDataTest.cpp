#include "serialization/dicom/DicomLoader.h"

#include "Common/ImageTypes.h"
#include "serialization/dicom/DicomDirectory.h"
#include "tests/support/Command.h"
#include "tests/support/DicomFileBuilder.h"
#include "tests/support/Files.h"
#include "tests/support/TestData.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <fstream>
#include <map>
#include <set>
#include <sstream>

using namespace dicom;
namespace fs = std::filesystem;

namespace {

std::string folderOf(const std::string &name)
{
    const std::string root = testDataFolder();
    return root.empty() || !fs::is_directory(fs::path(root) / name) ? std::string()
                                                                    : (fs::path(root) / name).string();
}

std::string fileIn(const std::string &folder, const std::string &name)
{
    return (fs::path(folder) / name).string();
}

std::string quoted(const std::string &path)
{
    return "'" + path + "'";
}

// The value of one tag as another reader prints it, without brackets; empty when the file has none.
std::string dumpedTag(const std::string &path, const std::string &tag)
{
    const std::string line = outputOf("dcmdump -q +L +P " + tag + " " + quoted(path));
    const std::size_t from = line.find('[');
    if (from != std::string::npos)
        return line.substr(from + 1, line.find(']') - from - 1);
    std::istringstream words(line);
    std::string number, representation, value;
    words >> number >> representation >> value;
    return value;
}

// The stored bytes of the pixels as another reader writes them, in native byte order.
std::string dumpedPixels(const std::string &path, const fs::path &folder)
{
    const fs::path own = folder / "pixels.dcm";
    fs::copy_file(path, own, fs::copy_options::overwrite_existing);
    fs::permissions(own, fs::perms::owner_all);
    // Compressed files are unpacked first by the program for their syntax; the others refuse.
    for (const char *program : {"dcmdrle", "dcmdjpls", "dcmdjpeg"})
        outputOf(std::string(program) + " " + own.string() + " " + own.string());
    for (const auto &entry : fs::directory_iterator(folder)) {
        if (entry.path().extension() == ".raw")
            fs::remove(entry.path());
    }
    outputOf("dcmdump +W " + folder.string() + " " + own.string());
    std::string bytes;
    for (const auto &entry : fs::directory_iterator(folder)) {
        if (entry.path().extension() == ".raw")
            bytes += contentOf(entry.path());
    }
    return bytes;
}

std::vector<std::map<std::string, std::string>> expectedRows(const std::string &path)
{
    std::ifstream stream(path);
    const auto split = [](const std::string &line) {
        std::vector<std::string> fields;
        std::istringstream row(line);
        for (std::string field; std::getline(row, field, '\t');)
            fields.push_back(field);
        return fields;
    };
    std::string line;
    std::getline(stream, line);
    const std::vector<std::string> names = split(line);
    std::vector<std::map<std::string, std::string>> rows;
    while (std::getline(stream, line)) {
        const std::vector<std::string> fields = split(line);
        for (std::size_t i = 0; i < fields.size() && i < names.size(); ++i) {
            if (i == 0)
                rows.emplace_back();
            rows.back()[names[i]] = fields[i];
        }
    }
    return rows;
}

FileList ordered(const DicomSeries &series, const std::string &echoTime)
{
    FileList files = filesWithEchoTime(series, echoTime);
    orderFiles(files, Order::direct);
    return files;
}

void compareWithExpected(const std::string &folder, std::size_t rowCount)
{
    const DicomDirectory directory(folder + "/dicom", false);
    ASSERT_EQ(directory.series().size(), 1U);
    const DicomSeries &series = directory.series().front();
    const auto rows = expectedRows(folder + "/EXPECTED.tsv");
    ASSERT_EQ(rows.size(), rowCount);
    for (auto row : rows) {
        EXPECT_TRUE(series.uid.ends_with(row["series_uid_tail"]));
        const FileList files = ordered(series, row["echo_times"]);
        ASSERT_EQ(files.size(), std::stoul(row["files"]));
        const SliceDistances distances = sliceDistances(files);
        EXPECT_NEAR(distances.position, std::stod(row["z_origin_based"]), 1e-6);
        EXPECT_NEAR(distances.library, std::stod(row["SpacingBetweenSlices"]), 1e-9);
        if (row["slice_location_based"] == "absent")
            EXPECT_EQ(distances.location, 0.0);
        else
            EXPECT_NEAR(distances.location, std::stod(row["slice_location_based"]), 1e-6);
        EXPECT_NEAR(distanceAlongNormal(files), distances.library, 0.001);
        EXPECT_EQ(std::to_string(files.front()->integer(tags::instanceNumber, 0)) + "/" +
                      std::to_string(files.back()->integer(tags::instanceNumber, 0)),
                  row["order_along_normal(first/last InstanceNumber)"]);
        const auto image = loadFiles(files, distances.library, true);
        ASSERT_TRUE(image);
        EXPECT_EQ(std::to_string(image->getWidth()) + "x" + std::to_string(image->getHeight()),
                  row["cols_x_rows"]);
        EXPECT_EQ(image->getDataType(), MERV::TypeShort);
        EXPECT_FLOAT_EQ(image->getSpacing(0), std::stof(row["x_spacing"]));
        EXPECT_FLOAT_EQ(image->getSpacing(1), std::stof(row["y_spacing"]));
        EXPECT_EQ(image->getMinimum(), std::stof(row["stored_min"]));
        EXPECT_EQ(image->getMaximum(), std::stof(row["stored_max"]));
        EXPECT_EQ(image->getMetaData("Patient's Name"), row["patient_name"]);
        EXPECT_EQ(image->getMetaData("Series Description"), row["series_desc"]);
    }
}

// Every voxel of the first, middle and last slice against another reader's pixels.
void compareVoxels(const FileList &files, MERV::Image &image)
{
    const TemporaryFolder folder;
    const int width = image.getWidth();
    const int height = image.getHeight();
    const std::size_t last = files.size() - 1;
    for (const std::size_t index : {std::size_t(0), last / 2, last}) {
        const std::string bytes = dumpedPixels(files[index]->path, folder.path());
        ASSERT_EQ(bytes.size(), 2U * static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
        std::vector<std::int16_t> pixels(bytes.size() / 2);
        std::memcpy(pixels.data(), bytes.data(), bytes.size());
        int wrong = 0;
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                const int pixel = y * width + x;
                wrong += image.getVoxel(x, height - 1 - y, static_cast<int>(last - index), 0, 0) !=
                         static_cast<float>(pixels[static_cast<std::size_t>(pixel)]);
            }
        }
        EXPECT_EQ(wrong, 0) << files[index]->path;
    }
}

} // namespace

TEST(DicomRealData, kneeSeriesAsAnotherLibrarySeesIt)
{
    const std::string folder = folderOf("knee-ge-mese");
    if (folder.empty())
        GTEST_SKIP() << "no test data in knee-ge-mese";
    compareWithExpected(folder, 8);
}

TEST(DicomRealData, seriesWithoutSliceLocationAsAnotherLibrarySeesIt)
{
    const std::string folder = folderOf("t1-no-sliceloc");
    if (folder.empty())
        GTEST_SKIP() << "no test data in t1-no-sliceloc";
    compareWithExpected(folder, 1);
}

TEST(DicomRealData, kneeEchoOfTheFirstTime)
{
    const std::string folder = folderOf("knee-ge-mese");
    if (folder.empty())
        GTEST_SKIP() << "no test data in knee-ge-mese";
    const DicomDirectory directory(folder + "/dicom", false);
    const DicomSeries &series = directory.series().front();
    EXPECT_EQ(echoTimes(series), (std::vector<std::string>{"12.624", "18.936", "25.248", "31.56", "37.872",
                                                           "44.184", "50.496", "6.312"}));
    const FileList files = ordered(series, "6.312");
    ASSERT_EQ(files.size(), 24U);
    const SliceDistances distances = sliceDistances(files);
    EXPECT_NEAR(distances.location, 3.956894, 1e-6);
    EXPECT_NEAR(distances.position, 0.577143, 1e-6);
    EXPECT_EQ(distances.library, 4.0);
}

TEST(DicomRealData, plainCommandTakesAllEchoes)
{
    const std::string folder = folderOf("knee-ge-mese");
    if (folder.empty())
        GTEST_SKIP() << "no test data in knee-ge-mese";
    EXPECT_EQ(listDicomSeries(folder + "/dicom", false), std::vector<std::string>{"256 x 256 x 192"});
    const auto image = loadSeries(folder + "/dicom", false, 0, false, true);
    ASSERT_TRUE(image);
    EXPECT_EQ(image->getDepth(), 192);
    EXPECT_EQ(image->getMetaData("Echo Time"), "<ambiguous data>");
    EXPECT_EQ(image->getMetaData("Columns"), "256");
    // The echoes share their places, so the numbers decide, from the last one down.
    EXPECT_EQ(image->getSliceMetaData(0, "Instance Number"), "192");
    EXPECT_EQ(image->getSliceMetaData(191, "Instance Number"), "1");
}

TEST(DicomRealData, voxelsAgreeWithAnotherReader)
{
    if (!hasProgram("dcmdump"))
        GTEST_SKIP() << "dcmtk is not installed";
    for (const std::string name : {"knee-ge-mese", "t1-no-sliceloc"}) {
        const std::string folder = folderOf(name);
        if (folder.empty())
            GTEST_SKIP() << "no test data in " << name;
        const DicomDirectory directory(folder + "/dicom", false);
        const DicomSeries &series = directory.series().front();
        const FileList files = ordered(series, echoTimes(series).back());
        const auto image = loadFiles(files, 1.0, false);
        ASSERT_TRUE(image);
        compareVoxels(files, *image);
        EXPECT_EQ(std::to_string(image->getWidth()), dumpedTag(files.front()->path, "0028,0011"));
        EXPECT_EQ(std::to_string(image->getHeight()), dumpedTag(files.front()->path, "0028,0010"));
    }
}

TEST(DicomRealData, pictureAgreesWithAnotherReader)
{
    if (!hasProgram("dcm2pnm"))
        GTEST_SKIP() << "dcmtk is not installed";
    const std::string folder = folderOf("t1-no-sliceloc");
    if (folder.empty())
        GTEST_SKIP() << "no test data in t1-no-sliceloc";
    const std::string path = folder + "/dicom/N2D_0180.dcm";
    const auto image = loadDicomFile(path);
    ASSERT_TRUE(image);
    // All values are below 256: a window of 0..255 shows them as they are.
    std::istringstream picture(outputOf("dcm2pnm +Ww 128 256 +opb " + quoted(path)));
    std::string line;
    while (std::getline(picture, line) && line != "255") {
    }
    int wrong = 0;
    for (int y = image->getHeight() - 1; y >= 0; --y) {
        for (int x = 0; x < image->getWidth(); ++x) {
            int value = -1;
            picture >> value;
            wrong += image->getVoxel(x, y, 0, 0, 0) != static_cast<float>(value);
        }
    }
    EXPECT_EQ(wrong, 0);
}

TEST(DicomRealData, tagsAgreeWithAnotherReader)
{
    if (!hasProgram("dcmdump"))
        GTEST_SKIP() << "dcmtk is not installed";
    const std::string folder = folderOf("knee-ge-mese");
    if (folder.empty())
        GTEST_SKIP() << "no test data in knee-ge-mese";
    const std::string path = folder + "/dicom/E3655S8I005.MR.dcm";
    const std::vector<TagValue> values = readTags(path);
    EXPECT_GT(values.size(), 50U);
    int compared = 0;
    for (const TagValue &value : values) {
        std::array<char, 16> tag{};
        std::snprintf(tag.data(), tag.size(), "%04x,%04x", value.tag >> 16U, value.tag & 0xFFFFU);
        const std::string dumped = dumpedTag(path, tag.data());
        const std::set<std::string> notPrinted{"gdcm::Binary data loaded", ""};
        if (notPrinted.contains(value.value) || dumped.starts_with("=") || dumped.starts_with("("))
            continue;
        EXPECT_EQ(value.value, dumped) << tag.data() << " " << value.name;
        ++compared;
    }
    EXPECT_GT(compared, 40);
}

namespace {

// What single files of the awkward set must become: opened ones with their size (x, y, z) and voxel type.
struct Opened
{
    int width;
    int height;
    int depth;
    int type;
};

const std::map<std::string, Opened> &openedFiles()
{
    using namespace MERV;
    static const std::map<std::string, Opened> files{
        {"693_J2KI.dcm", {512, 512, 1, TypeShort}},
        {"CT_small.dcm", {128, 128, 1, TypeShort}},
        {"J2K_pixelrep_mismatch.dcm", {512, 512, 1, TypeShort}},
        {"JPEG-lossy.dcm", {256, 1024, 1, TypeUShort}},
        {"JPEG2000.dcm", {256, 1024, 1, TypeShort}},
        {"JPGExtended.dcm", {256, 1024, 1, TypeUShort}},
        {"MR_small.dcm", {64, 64, 1, TypeShort}},
        {"MR_small_RLE.dcm", {64, 64, 1, TypeShort}},
        {"MR_small_bigendian.dcm", {64, 64, 1, TypeShort}},
        {"MR_small_expb.dcm", {64, 64, 1, TypeShort}},
        {"MR_small_implicit.dcm", {64, 64, 1, TypeShort}},
        {"MR_small_jp2klossless.dcm", {64, 64, 1, TypeShort}},
        {"MR_small_jpeg_ls_lossless.dcm", {64, 64, 1, TypeShort}},
        {"MR_small_padded.dcm", {64, 64, 1, TypeShort}},
        {"badVR.dcm", {10, 10, 1, TypeUInt}}, // "1A" frames,
        {"image_dfl.dcm", {512, 512, 1, TypeUChar}},
        {"rtdose.dcm", {10, 10, 15, TypeUInt}},
        {"rtdose_1frame.dcm", {10, 10, 1, TypeUInt}},
        {"rtdose_expb.dcm", {10, 10, 15, TypeUInt}},
        {"rtdose_expb_1frame.dcm", {10, 10, 1, TypeUInt}},
        {"rtdose_rle.dcm", {10, 10, 15, TypeUInt}},
        {"rtdose_rle_1frame.dcm", {10, 10, 1, TypeUInt}}};
    return files;
}

std::vector<fs::path> awkwardFiles(const std::string &folder)
{
    std::vector<fs::path> paths;
    for (const auto &entry : fs::directory_iterator(folder)) {
        if (entry.path().extension() == ".dcm")
            paths.push_back(entry.path());
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

// The stored values of a file of 16 or 32 bits, rows from the top, from an image whose y and z are reversed.
std::vector<float> storedOrder(MERV::Image &image)
{
    std::vector<float> values;
    for (int z = image.getDepth() - 1; z >= 0; --z) {
        for (int y = image.getHeight() - 1; y >= 0; --y) {
            for (int x = 0; x < image.getWidth(); ++x)
                values.push_back(image.getVoxel(x, y, z, 0, 0));
        }
    }
    return values;
}

template <class T>
std::vector<float> asFloats(const std::string &bytes, float intercept)
{
    std::vector<float> values(bytes.size() / sizeof(T));
    for (std::size_t i = 0; i < values.size(); ++i) {
        T value;
        std::memcpy(&value, bytes.data() + i * sizeof(T), sizeof(T));
        values[i] = static_cast<float>(value) + intercept;
    }
    return values;
}

// The other reader takes the 32-bit values of a big endian file as pairs of words, the high one first.
std::string joinedWords(std::string bytes)
{
    for (std::size_t at = 0; at + 4 <= bytes.size(); at += 4)
        std::swap_ranges(bytes.begin() + static_cast<std::ptrdiff_t>(at),
                         bytes.begin() + static_cast<std::ptrdiff_t>(at + 2),
                         bytes.begin() + static_cast<std::ptrdiff_t>(at + 2));
    return bytes;
}

std::vector<float> dumpedValues(const std::string &path, const fs::path &folder, int type)
{
    std::string bytes = dumpedPixels(path, folder);
    if (type == MERV::TypeUInt && dumpedTag(path, "0002,0010") == "=BigEndianExplicit")
        bytes = joinedWords(std::move(bytes));
    const std::string text = dumpedTag(path, "0028,1052");
    const float intercept = text.empty() ? 0.0F : std::stof(text);
    switch (type) {
    case MERV::TypeUChar:
        return asFloats<std::uint8_t>(bytes, intercept);
    case MERV::TypeShort:
        return asFloats<std::int16_t>(bytes, intercept);
    case MERV::TypeUShort:
        return asFloats<std::uint16_t>(bytes, intercept);
    default:
        return asFloats<std::uint32_t>(bytes, intercept);
    }
}

} // namespace

TEST(DicomRealData, everyAwkwardFileIsOpenedOrRefused)
{
    const std::string folder = folderOf("awkward-dicom/pydicom");
    if (folder.empty())
        GTEST_SKIP() << "no test data in awkward-dicom/pydicom";
    const std::vector<fs::path> paths = awkwardFiles(folder);
    EXPECT_EQ(paths.size(), 68U);
    for (const fs::path &path : paths) {
        const auto image = loadDicomFile(path.string());
        readTags(path.string());
        const auto expected = openedFiles().find(path.filename().string());
        ASSERT_EQ(image != nullptr, expected != openedFiles().end()) << path;
        if (!image)
            continue;
        EXPECT_EQ(image->getWidth(), expected->second.width) << path;
        EXPECT_EQ(image->getHeight(), expected->second.height) << path;
        EXPECT_EQ(image->getDepth(), expected->second.depth) << path;
        EXPECT_EQ(image->getDataType(), expected->second.type) << path;
    }
}

TEST(DicomRealData, awkwardFolderIsReadAsSeries)
{
    const std::string folder = folderOf("awkward-dicom/pydicom");
    if (folder.empty())
        GTEST_SKIP() << "no test data in awkward-dicom/pydicom";
    const DicomDirectory directory(folder, false);
    EXPECT_GT(directory.series().size(), 5U);
    for (std::size_t i = 0; i < directory.series().size(); ++i)
        loadSeries(folder, directory, static_cast<int>(i), false, true);
}

TEST(DicomRealData, awkwardPicturesAgreeWithAnotherReader)
{
    if (!hasProgram("dcmdump") || !hasProgram("dcmdrle"))
        GTEST_SKIP() << "dcmtk is not installed";
    const std::string folder = folderOf("awkward-dicom/pydicom");
    if (folder.empty())
        GTEST_SKIP() << "no test data in awkward-dicom/pydicom";
    const TemporaryFolder work;
    int compared = 0;
    for (const auto &[name, expected] : openedFiles()) {
        const std::string path = fileIn(folder, name);
        const auto image = loadDicomFile(path);
        ASSERT_TRUE(image) << name;
        const std::vector<float> values = dumpedValues(path, work.path(), expected.type);
        // The other reader does not unpack JPEG 2000.
        if (values.size() < image->getValueCount())
            continue;
        std::vector<float> stored = storedOrder(*image);
        EXPECT_TRUE(std::equal(stored.begin(), stored.end(), values.begin())) << name;
        ++compared;
    }
    EXPECT_GE(compared, 15);
}

TEST(DicomRealData, samePictureInEveryCompression)
{
    const std::string folder = folderOf("awkward-dicom/pydicom");
    if (folder.empty())
        GTEST_SKIP() << "no test data in awkward-dicom/pydicom";
    const std::vector<float> plain = storedOrder(*loadDicomFile(fileIn(folder, "MR_small.dcm")));
    for (const std::string name :
         {"MR_small_RLE.dcm", "MR_small_bigendian.dcm", "MR_small_expb.dcm", "MR_small_implicit.dcm",
          "MR_small_jp2klossless.dcm", "MR_small_jpeg_ls_lossless.dcm", "MR_small_padded.dcm"})
        EXPECT_EQ(storedOrder(*loadDicomFile(fileIn(folder, name))), plain) << name;
    const std::vector<float> dose = storedOrder(*loadDicomFile(fileIn(folder, "rtdose.dcm")));
    for (const std::string name : {"rtdose_rle.dcm", "rtdose_expb.dcm"})
        EXPECT_EQ(storedOrder(*loadDicomFile(fileIn(folder, name))), dose) << name;
}
