#include "serialization/dicom/DicomDirectory.h"

#include "serialization/dicom/DicomLoader.h"
#include "tests/support/DicomFileBuilder.h"

#include <gtest/gtest.h>

#include <cstring>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

using namespace dicom;
namespace fs = std::filesystem;

namespace {

DicomFileBuilder sliceOf(const std::string &uid, double zMm = 0)
{
    DicomFileBuilder file = dicomSlice(2, 2, {1, 2, 3, 4}, zMm);
    file.text(0x0020000E, "UI", uid);
    return file;
}

std::vector<std::string> namesOf(const DicomSeries &series)
{
    std::vector<std::string> names;
    for (const DicomHeader *file : series.files)
        names.push_back(fs::path(file->path).filename());
    return names;
}

// The superuser may read everything: steps down to a user of no rights for as long as it lives.
class OrdinaryUser
{
public:
    OrdinaryUser() { step(nobody); }
    ~OrdinaryUser() { step(0); }
    OrdinaryUser(const OrdinaryUser &) = delete;
    OrdinaryUser &operator=(const OrdinaryUser &) = delete;

private:
    static constexpr uid_t nobody = 65534;

    void step(uid_t user)
    {
        if (superuser) {
            EXPECT_EQ(seteuid(user), 0);
        }
    }

    const bool superuser = getuid() == 0;
};

void makeSocket(const fs::path &path)
{
    const int socketNumber = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
    ASSERT_EQ(bind(socketNumber, reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
    close(socketNumber);
}

} // namespace

TEST(DicomDirectory, seriesInTextOrderOfTheirUidsFilesInOrderOfTheirNames)
{
    const TemporaryFolder folder;
    sliceOf("1.2.9").write(folder / "c");
    sliceOf("1.2.10").write(folder / "b.dcm");
    sliceOf("1.2.9").write(folder / "B");
    sliceOf("1.2.9").write(folder / "a");
    const DicomDirectory directory(folder.string(), false);
    ASSERT_EQ(directory.series().size(), 2U);
    EXPECT_EQ(directory.series()[0].uid, "1.2.10");
    EXPECT_EQ(directory.series()[1].uid, "1.2.9");
    EXPECT_EQ(namesOf(directory.series()[1]), (std::vector<std::string>{"B", "a", "c"}));
}

TEST(DicomDirectory, foreignCharactersOfUidsDoNotCountAndMissingUidsAreOneSeries)
{
    const TemporaryFolder folder;
    sliceOf("1.2.3").write(folder / "a");
    sliceOf(" 1.2.-3 ").write(folder / "b");
    DicomFileBuilder without = sliceOf("");
    without.write(folder / "c");
    without.remove(0x0020000E);
    without.write(folder / "d");
    const DicomDirectory directory(folder.string(), false);
    ASSERT_EQ(directory.series().size(), 2U);
    EXPECT_EQ(directory.series()[0].uid, "");
    EXPECT_EQ(directory.series()[0].files.size(), 2U);
    EXPECT_EQ(directory.series()[1].files.size(), 2U);
}

TEST(DicomDirectory, filesWithoutRowsColumnsOrPixelsAreNoImages)
{
    for (const std::uint32_t tag : {0x00280010U, 0x00280011U, 0x7FE00010U}) {
        const TemporaryFolder folder;
        DicomFileBuilder file = sliceOf("1.2.3");
        file.remove(tag);
        file.write(folder / "a.dcm");
        EXPECT_EQ(countDicomSeries(folder.string(), false), 0);
    }
}

TEST(DicomDirectory, otherFilesAreLeftOut)
{
    const TemporaryFolder folder;
    std::ofstream(folder / "notes.txt") << "no images here, but more than a hundred and thirty-two bytes of "
                                           "text, so that it could have the four letters behind a preamble";
    std::ofstream(folder / "empty.dcm").flush();
    sliceOf("1.2.3").write(folder / "image");
    EXPECT_EQ(listDicomSeries(folder.string(), false), std::vector<std::string>{"2 x 2 x 1"});
}

TEST(DicomDirectory, missingFolderOrFileInsteadOfFolderHasNoSeries)
{
    const TemporaryFolder folder;
    sliceOf("1.2.3").write(folder / "image");
    EXPECT_EQ(countDicomSeries(folder / "absent", false), 0);
    EXPECT_EQ(countDicomSeries(folder / "image", false), 0);
    EXPECT_EQ(countDicomSeries("", false), 0);
    EXPECT_EQ(loadSeries(folder / "absent", false, 0, true, true), nullptr);
}

TEST(DicomDirectory, folderThatVanishesAfterListingGivesNoImage)
{
    const TemporaryFolder folder;
    fs::create_directory(folder / "in");
    sliceOf("1.2.3").write(folder / "in/image");
    const DicomDirectory directory(folder / "in", false);
    fs::remove_all(folder / "in");
    ASSERT_EQ(directory.series().size(), 1U);
    EXPECT_EQ(loadSeries(folder / "in", directory, 0, true, true), nullptr);
}

TEST(DicomDirectory, filesWithoutRightsAreLeftOut)
{
    const TemporaryFolder folder;
    fs::permissions(folder.path(), static_cast<fs::perms>(0755));
    sliceOf("1.2.3").write(folder / "image");
    sliceOf("1.2.4").write(folder / "locked");
    fs::permissions(folder / "image", static_cast<fs::perms>(0644));
    fs::permissions(folder / "locked", fs::perms::none);
    const OrdinaryUser user;
    EXPECT_EQ(countDicomSeries(folder.string(), false), 1);
    EXPECT_EQ(loadDicomFile(folder / "locked"), nullptr);
}

TEST(DicomDirectory, folderWithoutRightsHasNoSeries)
{
    const TemporaryFolder folder;
    fs::permissions(folder.path(), static_cast<fs::perms>(0755));
    fs::create_directory(folder / "in");
    sliceOf("1.2.3").write(folder / "in/image");
    fs::permissions(folder / "in", fs::perms::none);
    {
        const OrdinaryUser user;
        EXPECT_EQ(countDicomSeries(folder / "in", false), 0);
        EXPECT_EQ(countDicomSeries(folder.string(), true), 0);
    }
    fs::permissions(folder / "in", fs::perms::owner_all);
}

TEST(DicomDirectory, pipesSocketsAndLoopsOfLinksNeitherCountNorBlock)
{
    const TemporaryFolder folder;
    ASSERT_EQ(mkfifo((folder / "pipe.dcm").c_str(), 0600), 0);
    makeSocket(folder / "socket.dcm");
    fs::create_symlink("loop-b", folder / "loop-a");
    fs::create_symlink("loop-a", folder / "loop-b");
    fs::create_directory_symlink(folder.path(), folder / "self");
    fs::create_symlink("/dev/zero", folder / "zero.dcm");
    sliceOf("1.2.3").write(folder / "image");
    EXPECT_EQ(countDicomSeries(folder.string(), false), 1);
    EXPECT_EQ(listDicomSeries(folder.string(), true), std::vector<std::string>{"2 x 2 x 1"});
}

TEST(DicomDirectory, linksToFilesCount)
{
    const TemporaryFolder folder;
    const TemporaryFolder other;
    sliceOf("1.2.3").write(other / "image");
    fs::create_symlink(other / "image", folder / "link");
    EXPECT_EQ(countDicomSeries(folder.string(), false), 1);
}

TEST(DicomDirectory, foldersBelowCountOnlyWhenAskedFor)
{
    const TemporaryFolder folder;
    fs::create_directories(folder / "a/b");
    sliceOf("1.2.3").write(folder / "one");
    sliceOf("1.2.3").write(folder / "a/b/two");
    EXPECT_EQ(listDicomSeries(folder.string(), false), std::vector<std::string>{"2 x 2 x 1"});
    EXPECT_EQ(listDicomSeries(folder.string(), true), std::vector<std::string>{"2 x 2 x 2"});
}

TEST(DicomDirectory, namesWithBlanksUmlautsAndPercentSigns)
{
    const TemporaryFolder folder;
    const std::string odd = folder / "Kn\xC3\xA4 %s %1";
    fs::create_directory(odd);
    sliceOf("1.2.3").write(fs::path(odd) / (std::string(200, 'x') + " \xE8\x86\x9D.dcm"));
    EXPECT_EQ(countDicomSeries(odd, false), 1);
    EXPECT_NE(loadSeries(odd, false, 0, false, false), nullptr);
}

TEST(DicomDirectory, distinctEchoTimesInTextOrder)
{
    const TemporaryFolder folder;
    int number = 0;
    for (const std::string time : {"9.2", "18.4", "9.2 ", " 18.4", ""}) {
        DicomFileBuilder file = sliceOf("1.2.3");
        file.text(0x00180081, "DS", time);
        file.write(folder / std::to_string(number++));
    }
    DicomFileBuilder without = sliceOf("1.2.3");
    without.remove(0x00180081);
    without.write(folder / "without");
    const DicomDirectory directory(folder.string(), false);
    const DicomSeries &series = directory.series().front();
    EXPECT_EQ(echoTimes(series), (std::vector<std::string>{"", "18.4", "9.2"}));
    EXPECT_EQ(filesWithEchoTime(series, "9.2").size(), 2U);
    EXPECT_EQ(filesWithEchoTime(series, "18.4").size(), 2U);
    EXPECT_EQ(filesWithEchoTime(series, "").size(), 2U);
    EXPECT_TRUE(filesWithEchoTime(series, "7").empty());
}
