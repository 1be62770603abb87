// Series as no scanner writes them: every tag that the reader looks at missing or malformed, in all files or
// in one, by each of the ways to load; files that do not fit together; folders of ten thousand files.
#include "Common/ImageTypes.h"
#include "serialization/dicom/DicomDirectory.h"
#include "serialization/dicom/DicomLoader.h"
#include "tests/support/DicomFileBuilder.h"
#include "tests/support/MemoryLimit.h"
#include "tests/support/Sanitized.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <functional>
#include <iostream>
#include <limits>
#include <sys/stat.h>
#include <unistd.h>

using namespace dicom;
namespace fs = std::filesystem;

namespace {

constexpr rlim_t megabyte = 1 << 20;

struct TagRow
{
    Tag tag;
    const char *representation;
};

// All that the reader looks at, but for the sequence of frames.
constexpr TagRow allTags[] = {{tags::characterSet, "CS"},
                              {tags::seriesDescription, "LO"},
                              {tags::patientName, "PN"},
                              {tags::sliceThickness, "DS"},
                              {tags::echoTime, "DS"},
                              {tags::spacingBetweenSlices, "DS"},
                              {tags::imagerPixelSpacing, "DS"},
                              {tags::seriesInstanceUid, "UI"},
                              {tags::instanceNumber, "IS"},
                              {tags::imagePositionRetired, "DS"},
                              {tags::imagePosition, "DS"},
                              {tags::imageOrientationRetired, "DS"},
                              {tags::imageOrientation, "DS"},
                              {tags::locationRetired, "DS"},
                              {tags::sliceLocation, "DS"},
                              {tags::samplesPerPixel, "US"},
                              {tags::photometric, "CS"},
                              {tags::numberOfFrames, "IS"},
                              {tags::rows, "US"},
                              {tags::columns, "US"},
                              {tags::planes, "US"},
                              {tags::pixelSpacing, "DS"},
                              {tags::bitsAllocated, "US"},
                              {tags::bitsStored, "US"},
                              {tags::highBit, "US"},
                              {tags::pixelRepresentation, "US"},
                              {tags::rescaleIntercept, "DS"},
                              {tags::perFrameGroups, "SQ"},
                              {tags::pixelData, "OW"}};

std::string nameOf(Tag tag)
{
    std::ostringstream text;
    text << std::hex << tag;
    return text.str();
}

// File `number` of three, 1 to 3, with each tag that the reader looks at.
DicomFileBuilder wholeFile(unsigned number)
{
    const std::uint64_t base = 100 * number;
    DicomFileBuilder file = dicomSlice(2, 2, {base, base + 1, base + 2, base + 3}, 2.0 * number);
    const std::string z = std::to_string(2 * number);
    file.text(tags::characterSet, "CS", "ISO_IR 100");
    file.text(tags::instanceNumber, "IS", std::to_string(number));
    file.text(tags::imagerPixelSpacing, "DS", "0.5\\0.25");
    file.text(tags::imagePositionRetired, "DS", "10\\20\\" + z);
    file.text(tags::imageOrientationRetired, "DS", "1\\0\\0\\0\\1\\0");
    file.text(tags::locationRetired, "DS", z);
    file.text(tags::numberOfFrames, "IS", "1");
    file.us(tags::planes, 1);
    file.text(tags::rescaleIntercept, "DS", "0");
    return file;
}

using Images = std::vector<std::unique_ptr<MERV::Image>>;

// The ways to load, and how many slices each makes of three files.
struct Route
{
    const char *name;
    std::function<Images(const std::string &folder)> load;
    int depth;
};

Images loadPlainly(const std::string &folder)
{
    Images images;
    for (int i = 0; i < countDicomSeries(folder, false); ++i)
        images.push_back(loadSeries(folder, false, i, false, true));
    return images;
}

// Every series and echo time that the dialogs offer.
Images loadWithChoices(const std::string &folder)
{
    const DicomDirectory contents(folder, false);
    Images images;
    for (const DicomSeries &series : contents.series()) {
        for (const std::string &time : echoTimes(series)) {
            FileList files = filesWithEchoTime(series, time);
            orderFiles(files, Order::direct);
            images.push_back(loadFiles(files, sliceDistances(files).location, true));
        }
    }
    return images;
}

Images loadSingly(const std::string &folder)
{
    Images images;
    for (const auto &entry : fs::directory_iterator(folder)) {
        readTags(entry.path());
        images.push_back(loadDicomFile(entry.path()));
    }
    return images;
}

const Route routes[] = {
    {"plain", loadPlainly, 3}, {"choices", loadWithChoices, 3}, {"single", loadSingly, 1}};

class Silence
{
public:
    Silence()
    {
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
    }
    ~Silence()
    {
        testing::internal::GetCapturedStdout();
        testing::internal::GetCapturedStderr();
    }
    Silence(const Silence &) = delete;
    Silence &operator=(const Silence &) = delete;
};

bool isWhole(MERV::Image &image)
{
    std::uint64_t values = 1;
    for (int axis = -1; axis <= 3; ++axis)
        values *= static_cast<std::uint64_t>(image.getDimension(axis));
    if (values == 0 || values != image.getValueCount() || image.getData() == nullptr)
        return false;
    return image.getMinimum() <= image.getMaximum();
}

class HostileSeries : public testing::Test
{
protected:
    // Three files, each changed by `change`, which is given the number from 1.
    void write(const std::function<void(DicomFileBuilder &, unsigned)> &change)
    {
        for (unsigned number = 1; number <= 3; ++number) {
            DicomFileBuilder file = wholeFile(number);
            change(file, number);
            // A new file: some systems wait for the disk when one is written anew.
            const fs::path path = folder / (std::to_string(number) + ".dcm");
            fs::remove(path);
            file.write(path);
        }
    }

    Images load(const Route &route)
    {
        const Silence silence;
        const MemoryLimit limit(256 * megabyte);
        EXPECT_TRUE(limit.isSet);
        return route.load(folder.string());
    }

    // Nothing, or whole images that take no more memory than these files justify.
    void expectWholeOrNothing(const std::string &what)
    {
        for (const Route &route : routes) {
            for (const auto &image : load(route)) {
                EXPECT_TRUE(image == nullptr || isWhole(*image)) << what << ", " << route.name;
                EXPECT_TRUE(image == nullptr || image->getValueCount() <= 48) << what << ", " << route.name;
            }
        }
    }

    std::unique_ptr<MERV::Image> loadFirst()
    {
        const Silence silence;
        return loadSeries(folder.string(), false, 0, true, true);
    }

    TemporaryFolder folder;
};

// Without these a file is no image; everything else has something in its place.
bool isNeeded(Tag tag)
{
    return tag == tags::rows || tag == tags::columns || tag == tags::pixelData;
}

} // namespace

TEST_F(HostileSeries, anyTagMayBeMissingInAllFiles)
{
    for (const TagRow &row : allTags) {
        write([&row](DicomFileBuilder &file, unsigned) { file.remove(row.tag); });
        for (const Route &route : routes) {
            const Images images = load(route);
            if (isNeeded(row.tag)) {
                for (const auto &image : images)
                    EXPECT_EQ(image, nullptr) << nameOf(row.tag) << ", " << route.name;
                continue;
            }
            EXPECT_FALSE(images.empty()) << nameOf(row.tag) << ", " << route.name;
            for (const auto &image : images) {
                ASSERT_NE(image, nullptr) << nameOf(row.tag) << ", " << route.name;
                EXPECT_TRUE(isWhole(*image));
                EXPECT_EQ(image->getDepth(), route.depth) << nameOf(row.tag) << ", " << route.name;
                EXPECT_EQ(image->getSpacing(0), 0.25F) << nameOf(row.tag) << ", " << route.name;
                EXPECT_EQ(image->getSpacing(1), 0.5F) << nameOf(row.tag) << ", " << route.name;
                EXPECT_EQ(image->getPosition()[0], 10.0F) << nameOf(row.tag) << ", " << route.name;
            }
        }
    }
}

TEST_F(HostileSeries, anyTagMayBeMissingInOneFile)
{
    for (const TagRow &row : allTags) {
        write([&row](DicomFileBuilder &file, unsigned number) {
            if (number == 2)
                file.remove(row.tag);
        });
        const auto image = loadFirst();
        const Silence silence;
        const std::vector<std::string> series = listDicomSeries(folder.string(), false);
        if (row.tag == tags::seriesInstanceUid) {
            EXPECT_EQ(series, (std::vector<std::string>{"2 x 2 x 1", "2 x 2 x 2"}));
        } else if (isNeeded(row.tag)) {
            ASSERT_NE(image, nullptr) << nameOf(row.tag);
            EXPECT_EQ(series, std::vector<std::string>{"2 x 2 x 2"}) << nameOf(row.tag);
            EXPECT_EQ(image->getValue(0), 302.0F);
            EXPECT_EQ(image->getValue(4), 102.0F);
        } else {
            ASSERT_NE(image, nullptr) << nameOf(row.tag);
            EXPECT_EQ(series, std::vector<std::string>{"2 x 2 x 3"}) << nameOf(row.tag);
            EXPECT_EQ(image->getValue(4), 202.0F) << nameOf(row.tag); // in its place
        }
    }
}

TEST_F(HostileSeries, anyTextInAnyTagGivesAWholeImageOrNothing)
{
    const std::string values[] = {"",
                                  " ",
                                  "abc",
                                  "nan",
                                  "inf",
                                  "-1",
                                  "0",
                                  "1e300",
                                  "-1e300",
                                  "1e-300",
                                  "\\\\\\",
                                  "99999999999999999999",
                                  "1.2.3",
                                  "0x10",
                                  "1\\2\\3\\4\\5\\6\\7\\8\\9\\10",
                                  "nan\\nan\\nan\\nan\\nan\\nan",
                                  std::string(60000, '9'),
                                  std::string("\xFF\xFE\x00\x80", 4),
                                  "1e300\\1e300\\1e300\\1e300\\1e300\\1e300"};
    for (const TagRow &row : allTags) {
        for (const std::string &value : values) {
            for (const bool inAll : {true, false}) {
                write([&](DicomFileBuilder &file, unsigned number) {
                    const std::string representation = row.representation;
                    if (inAll || number == 2)
                        file.text(row.tag, representation, value);
                });
                expectWholeOrNothing(nameOf(row.tag) + " = \"" + value.substr(0, 40) + "\"");
            }
        }
    }
}

TEST_F(HostileSeries, anyRepresentationOfAnyTagGivesAWholeImageOrNothing)
{
    struct Representation
    {
        const char *name;
        unsigned width;
    };
    const Representation representations[] = {{"US", 2}, {"SL", 4}, {"FL", 4}, {"FD", 8}, {"AT", 4},
                                              {"UN", 4}, {"OB", 1}, {"DS", 4}, {"XX", 2}};
    constexpr std::uint64_t doubleNaN = 0x7FF8000000000000;
    constexpr std::uint64_t floatNaN = 0x7FC00000;
    const std::vector<std::uint64_t> lists[] = {
        {}, {0}, {0xFFFF}, {2, 2, 2}, {0x7FFFFFFF}, {~std::uint64_t(0)}, {doubleNaN}, {floatNaN}};
    for (const TagRow &row : allTags) {
        for (const Representation &representation : representations) {
            for (const std::vector<std::uint64_t> &list : lists) {
                write([&](DicomFileBuilder &file, unsigned) {
                    file.numbers(row.tag, representation.name, list, representation.width);
                });
                expectWholeOrNothing(nameOf(row.tag) + " as " + representation.name);
            }
        }
    }
}

// What each malformed value leaves in its place.
TEST_F(HostileSeries, malformedNumbersFallBackAsMissingOnesDo)
{
    const struct
    {
        Tag tag;
        const char *value;
        float spacingX, spacingY, spacingZ, positionX, positionZ;
    } table[] = {
        {tags::imagerPixelSpacing, "", 0.25F, 0.5F, 2, 10, 2}, // Pixel Spacing in its place
        {tags::imagerPixelSpacing, "abc", 1, 1, 2, 10, 2},
        {tags::imagerPixelSpacing, "nan\\nan", 1, 1, 2, 10, 2},
        {tags::imagerPixelSpacing, "0\\0", 1, 1, 2, 10, 2},
        {tags::imagerPixelSpacing, "-3\\-4", 4, 3, 2, 10, 2},
        {tags::imagerPixelSpacing, "3", 3, 3, 2, 10, 2},
        {tags::imagerPixelSpacing, "3\\inf", 3, 3, 2, 10, 2},
        {tags::imagerPixelSpacing, "3\\4\\5\\6", 4, 3, 2, 10, 2},
        {tags::imagePosition, "", 0.25F, 0.5F, 2, 10, 2},   // the retired one in its place
        {tags::imagePosition, "abc", 0.25F, 0.5F, 4, 0, 0}, // all at the origin: what the first file says
        {tags::imagePosition, "1\\2", 0.25F, 0.5F, 4, 0, 0},
        {tags::imagePosition, "1\\2\\nan", 0.25F, 0.5F, 4, 0, 0},
        {tags::imagePosition, "1\\2\\3\\4", 0.25F, 0.5F, 4, 1, 3},
        {tags::spacingBetweenSlices, "abc", 0.25F, 0.5F, 2, 10, 2},
        {tags::imageOrientation, "abc", 0.25F, 0.5F, 2, 10, 2},
        {tags::imageOrientation, "1\\0\\0", 0.25F, 0.5F, 2, 10, 2},
        {tags::imageOrientation, "0\\0\\0\\0\\0\\0", 0.25F, 0.5F, 2, 10, 2}, // no normal: by the numbers
        {tags::instanceNumber, "1e300", 0.25F, 0.5F, 2, 10, 2},
        {tags::rescaleIntercept, "nan", 0.25F, 0.5F, 2, 10, 2},
    };
    for (const auto &row : table) {
        write([&row](DicomFileBuilder &file, unsigned) { file.text(row.tag, "DS", row.value); });
        const auto image = loadFirst();
        ASSERT_NE(image, nullptr) << nameOf(row.tag) << " = " << row.value;
        EXPECT_EQ(image->getSpacing(0), row.spacingX) << nameOf(row.tag) << " = " << row.value;
        EXPECT_EQ(image->getSpacing(1), row.spacingY) << nameOf(row.tag) << " = " << row.value;
        EXPECT_EQ(image->getSpacing(2), row.spacingZ) << nameOf(row.tag) << " = " << row.value;
        EXPECT_EQ(image->getPosition()[0], row.positionX) << nameOf(row.tag) << " = " << row.value;
        EXPECT_EQ(image->getPosition()[2], row.positionZ) << nameOf(row.tag) << " = " << row.value;
        EXPECT_EQ(image->getValue(0), 302.0F) << nameOf(row.tag) << " = " << row.value;
        EXPECT_EQ(image->getDataType(), MERV::TypeUShort) << nameOf(row.tag) << " = " << row.value;
    }
}

TEST_F(HostileSeries, spacingOfOneFileAloneDoesNotMatterUnlessItIsTheFirst)
{
    for (const unsigned odd : {1U, 2U, 3U}) {
        write([odd](DicomFileBuilder &file, unsigned number) {
            if (number == odd)
                file.text(tags::imagerPixelSpacing, "DS", "7\\8");
        });
        const auto image = loadFirst();
        EXPECT_EQ(image->getSpacing(0), odd == 1 ? 8.0F : 0.25F);
        EXPECT_EQ(image->getSpacing(1), odd == 1 ? 7.0F : 0.5F);
    }
}

TEST_F(HostileSeries, bitsOfEachFileAreItsOwn)
{
    write([](DicomFileBuilder &file, unsigned number) {
        if (number != 2)
            return;
        file.us(tags::bitsStored, 4);
        file.us(tags::highBit, 3);
    });
    const auto image = loadFirst();
    EXPECT_EQ(image->getValue(0), 302.0F);
    EXPECT_EQ(image->getValue(4), 202 % 16); // its upper bits are no part of the value
    EXPECT_EQ(image->getValue(8), 102.0F);
}

TEST_F(HostileSeries, signOfTheFirstFileCounts)
{
    write([](DicomFileBuilder &file, unsigned number) {
        file.numbers(tags::pixelData, "OW", {0xFFFF, 1, 2, 3}, 2);
        file.us(tags::pixelRepresentation, number == 1 ? 1 : 0);
    });
    const auto image = loadFirst();
    EXPECT_EQ(image->getDataType(), MERV::TypeShort);
    EXPECT_EQ(image->getMinimum(), -1.0F);
}

TEST_F(HostileSeries, encodingsMayBeMixed)
{
    using Encoding = DicomFileBuilder::Encoding;
    unsigned number = 0;
    for (const Encoding encoding :
         {Encoding::explicitLittle, Encoding::implicitLittle, Encoding::explicitBig}) {
        ++number;
        const std::uint64_t base = 1000 * number;
        dicomSlice(2, 2, {base, base + 1, base + 2, base + 3}, number, encoding)
            .write(folder / std::to_string(number));
    }
    const auto image = loadFirst();
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->getValue(0), 3002.0F);
    EXPECT_EQ(image->getValue(4), 2002.0F);
    EXPECT_EQ(image->getValue(8), 1002.0F);
}

TEST_F(HostileSeries, oneFileThatDoesNotFitSpoilsItsSeriesAlone)
{
    write([](DicomFileBuilder &file, unsigned number) {
        if (number == 2)
            file.us(tags::rows, 1);
    });
    for (const char *name : {"x", "y"}) {
        DicomFileBuilder other = wholeFile(name[0] == 'x' ? 1 : 2);
        other.text(tags::seriesInstanceUid, "UI", "1.2.4");
        other.write(folder / name);
    }
    const Silence silence;
    EXPECT_EQ(loadSeries(folder.string(), false, 0, true, true), nullptr);
    const auto other = loadSeries(folder.string(), false, 1, true, true);
    ASSERT_NE(other, nullptr);
    EXPECT_EQ(other->getDepth(), 2);
}

// The pixels of one file are in another place than its tags say.
TEST_F(HostileSeries, claimOfMorePixelsThanTheFileHasTakesNoMemory)
{
    for (const auto &[rows, columns, frames] :
         {std::tuple{65535U, 65535U, "1"}, {2U, 2U, "2147483647"}, {65535U, 65535U, "2147483647"}}) {
        for (const std::string syntax : {"", "1.2.840.10008.1.2.5", "1.2.840.10008.1.2.4.70"}) {
            write([&, height = rows, width = columns, count = frames](DicomFileBuilder &file, unsigned) {
                file.us(tags::rows, height);
                file.us(tags::columns, width);
                file.text(tags::numberOfFrames, "IS", count);
                if (syntax.empty())
                    return;
                file.syntax(syntax);
                const auto number = [&file](std::uint64_t value) { return file.number(value, 4); };
                file.raw(tags::pixelData, "OB",
                         number(0xFFFFFFFF) + number(0xE000FFFE) + number(0) + number(0xE000FFFE) +
                             number(64) + std::string(64, '\1') + number(0xE0DDFFFE) + number(0));
            });
            for (const Route &route : routes) {
                for (const auto &image : load(route))
                    EXPECT_EQ(image, nullptr) << route.name << ", " << syntax;
            }
        }
    }
}

TEST_F(HostileSeries, whatIsNoFolderHasNoSeries)
{
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
    fs::create_symlink("nowhere", folder / "dangling");
    fs::create_symlink("loop", folder / "loop");
    fs::create_symlink("/dev/zero", folder / "device");
    wholeFile(1).write(folder / "file.dcm");
    for (const std::string name :
         {"pipe", "dangling", "loop", "device", "file.dcm", "absent", "pipe/x", "loop/x"}) {
        EXPECT_EQ(countDicomSeries(folder / name, false), 0) << name;
        EXPECT_EQ(countDicomSeries(folder / name, true), 0) << name;
    }
    EXPECT_EQ(countDicomSeries("/dev/null", false), 0);
    EXPECT_EQ(countDicomSeries(std::string(5000, 'x'), false), 0);
    EXPECT_EQ(countDicomSeries(folder.string(), false), 1);
}

TEST_F(HostileSeries, folderReachedByALoopOfLinksIsTheFolder)
{
    fs::create_directory_symlink(".", folder / "self");
    wholeFile(1).write(folder / "file.dcm");
    EXPECT_EQ(countDicomSeries(folder / "self/self/self", false), 1);
    EXPECT_EQ(listDicomSeries(folder / "self", true), std::vector<std::string>{"2 x 2 x 1"});
}

// Deeper than a path may be long.
TEST_F(HostileSeries, endlessNestingOfFoldersIsSurvived)
{
    wholeFile(1).write(folder / "file.dcm");
    int parent = open(folder.string().c_str(), O_RDONLY | O_DIRECTORY);
    const std::string name(50, 'd');
    for (int level = 0; level < 120; ++level) {
        ASSERT_EQ(mkdirat(parent, name.c_str(), 0700), 0);
        const int next = openat(parent, name.c_str(), O_RDONLY | O_DIRECTORY);
        close(parent);
        parent = next;
    }
    close(parent);
    EXPECT_EQ(countDicomSeries(folder.string(), false), 1);
    EXPECT_EQ(countDicomSeries(folder.string(), true), 1);
}

namespace {

// Writes the file with `bytes` zeros as the value of its last tag; they take no place on the disk.
void writeWithHole(DicomFileBuilder file, Tag last, const char *representation, std::uint32_t bytes,
                   const fs::path &path)
{
    file.raw(last, representation, file.number(bytes, 4));
    file.write(path);
    fs::resize_file(path, fs::file_size(path) + bytes);
}

// 10,000 files: a series of 4000, two of 500 with a megabyte of pixels each, 200 reports with a megabyte of
// text each, and 4800 that are no images either.
void writeGreatFolder(const TemporaryFolder &folder)
{
    const std::vector<std::uint64_t> pixels(std::size_t(16) * 16, 7);
    int number = 0;
    const auto nextPath = [&] { return folder / (std::to_string(number++ * 7919 % 10007) + ".dcm"); };
    for (int i = 0; i < 4000; ++i)
        dicomSlice(16, 16, pixels, i).write(nextPath());
    for (int i = 0; i < 1000; ++i) {
        DicomFileBuilder file = dicomSlice(512, 1024, {}, i);
        file.text(tags::seriesInstanceUid, "UI", i % 2 == 0 ? "1.2.4" : "1.2.5");
        writeWithHole(file, tags::pixelData, "OW", 512 * 1024 * 2, nextPath());
    }
    DicomFileBuilder report = dicomSlice(16, 16, {}, 0);
    report.remove(tags::pixelData);
    for (int i = 0; i < 200; ++i)
        writeWithHole(report, 0x0040A160, "UT", megabyte, nextPath());
    const std::string cut = dicomSlice(16, 16, pixels, 0).bytes().substr(0, 300);
    for (int i = 0; i < 4800; ++i) {
        std::ofstream stream(nextPath(), std::ios::binary);
        stream << (i % 3 == 0 ? std::string(2000, 't') : i % 3 == 1 ? cut : std::string());
    }
}

} // namespace

TEST_F(HostileSeries, tenThousandFilesTakeTheMemoryOfTheSeriesThatIsLoaded)
{
    if (sanitized)
        GTEST_SKIP() << "a sanitizer needs more memory than the limit leaves";
    writeGreatFolder(folder);
    const auto seconds = [start = std::chrono::steady_clock::now()] {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    };
    const Silence silence;
    // The tags of 5000 images, and the voxels (2 MB) and tags per slice of the series; the pixels of the
    // other series, or the reports, would not fit.
    const MemoryLimit limit(130 * megabyte);
    ASSERT_TRUE(limit.isSet);
    const DicomDirectory contents(folder.string(), false);
    const double scanned = seconds();
    ASSERT_EQ(contents.series().size(), 3U);
    EXPECT_EQ(contents.series()[0].files.size(), 4000U);
    EXPECT_EQ(contents.series()[1].files.size(), 500U);
    const auto image = loadSeries(folder.string(), contents, 0, true, true);
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->getDepth(), 4000);
    EXPECT_EQ(image->getSpacing(2), 1.0F);
    RecordProperty("scan_seconds", std::to_string(scanned));
    RecordProperty("load_seconds", std::to_string(seconds() - scanned));
}

// A series whose files another program has written.
TEST_F(HostileSeries, filesOfAnotherWriterLoadWithTagsMissing)
{
    if (std::system("command -v dump2dcm > /dev/null") != 0)
        GTEST_SKIP() << "dcmtk is not installed";
    for (const std::string missing : {"", "0028,0101", "0020,0013", "0020,0037", "0028,0030"}) {
        for (int i = 1; i <= 3; ++i) {
            const std::string number = std::to_string(i);
            std::ofstream dump(folder / "dump.txt");
            const std::pair<std::string, std::string> elements[] = {
                {"0002,0010", "UI [1.2.840.10008.1.2.1]"},
                {"0008,0016", "UI [1.2.840.10008.5.1.4.1.1.4]"},
                {"0008,0018", "UI [1.2.3." + number + "]"},
                {"0020,000e", "UI [1.2.3]"},
                {"0020,0013", "IS [" + number + "]"},
                {"0020,0032", "DS [0\\0\\" + number + "]"},
                {"0020,0037", "DS [1\\0\\0\\0\\1\\0]"},
                {"0028,0002", "US 1"},
                {"0028,0004", "CS [MONOCHROME2]"},
                {"0028,0010", "US 2"},
                {"0028,0011", "US 2"},
                {"0028,0030", "DS [0.5\\0.25]"},
                {"0028,0100", "US 16"},
                {"0028,0101", "US 16"},
                {"0028,0102", "US 15"},
                {"0028,0103", "US 0"},
                {"7fe0,0010", "OW 000" + number + "\\0007\\0008\\0009"}};
            for (const auto &[tag, value] : elements) {
                if (tag != missing)
                    dump << '(' << tag << ") " << value << '\n';
            }
            dump.close();
            const std::string command = "dump2dcm -q '" + (folder / "dump.txt").string() + "' '" +
                                        (folder / (number + ".dcm")).string() + "'";
            ASSERT_EQ(std::system(command.c_str()), 0);
        }
        const auto image = loadFirst();
        ASSERT_NE(image, nullptr) << missing;
        EXPECT_EQ(image->getDepth(), 3) << missing;
        EXPECT_EQ(image->getSpacing(0), missing == "0028,0030" ? 1.0F : 0.25F) << missing;
        EXPECT_EQ(image->getSpacing(2), 1.0F) << missing;
        // The last file comes first, its last row first.
        for (std::uint64_t slice = 0; slice < 3; ++slice) {
            EXPECT_EQ(image->getValue(4 * slice), 8.0F) << missing;
            EXPECT_EQ(image->getValue(4 * slice + 2), 3.0F - static_cast<float>(slice)) << missing;
        }
    }
}
