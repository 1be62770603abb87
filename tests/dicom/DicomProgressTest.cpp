#include "Common/Progress.h"
#include "serialization/dicom/DicomDirectory.h"
#include "serialization/dicom/DicomLoader.h"
#include "tests/support/DicomFileBuilder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <thread>
#include <utility>
#include <vector>

using namespace dicom;
namespace fs = std::filesystem;

namespace {

// Notes the course; fails when it is told in another thread. `act` runs once, as soon as `fraction` is
// reached.
class Course : public MERV::ProgressListener
{
public:
    explicit Course(double fraction = 2.0, std::function<void()> act = {})
        : trigger(fraction)
        , action(std::move(act))
    {}
    void progressed(double fraction) override
    {
        EXPECT_EQ(std::this_thread::get_id(), thread);
        fractions.push_back(fraction);
        if (fraction >= std::exchange(trigger, fraction >= trigger ? 2.0 : trigger))
            action();
    }
    bool acted() const { return action && trigger == 2.0; }

    std::vector<double> fractions;

private:
    const std::thread::id thread = std::this_thread::get_id();
    double trigger;
    std::function<void()> action;
};

void writeSeries(const fs::path &folder, int files)
{
    for (int i = 0; i < files; ++i)
        dicomSlice(2, 2, {1, 2, 3, 4}, i).write(folder / (std::to_string(i) + ".dcm"));
}

} // namespace

TEST(DicomProgress, scanAndLoadTellTheirCourseInTheCallingThread)
{
    const TemporaryFolder folder;
    writeSeries(folder.path(), 200);
    std::unique_ptr<DicomDirectory> contents;
    {
        const Course course;
        contents = std::make_unique<DicomDirectory>(folder.string(), false);
        EXPECT_GE(course.fractions.size(), 200U);
        EXPECT_TRUE(std::is_sorted(course.fractions.begin(), course.fractions.end()));
        EXPECT_GT(course.fractions.back(), 0.95);
        EXPECT_LE(course.fractions.back(), 1.0);
    }
    const Course course;
    EXPECT_NE(loadSeries(folder.string(), *contents, 0, true, true), nullptr);
    EXPECT_GE(course.fractions.size(), 400U); // metadata and mirroring of each slice, and the pixels
    EXPECT_TRUE(std::is_sorted(course.fractions.begin(), course.fractions.end()));
    EXPECT_GT(course.fractions.back(), 0.9);
}

TEST(DicomProgress, piecesOfASingleLargeFileAreTold)
{
    const TemporaryFolder folder;
    // 16 MB of pixels in four pieces.
    DicomFileBuilder file = dicomSlice(2048, 2048, std::vector<std::uint64_t>(2048 * 2048 * 2, 7), 0);
    file.text(0x00280008, "IS", "2");
    file.write(folder / "large.dcm");
    const Course course;
    EXPECT_NE(loadDicomFile(folder / "large.dcm"), nullptr);
    const auto told = [&course](double fraction) {
        return std::any_of(course.fractions.begin(), course.fractions.end(),
                           [fraction](double value) { return std::abs(value - fraction) < 1e-9; });
    };
    for (const double quarter : {0.15, 0.3, 0.45, 0.6})
        EXPECT_TRUE(told(quarter)) << quarter;
}

// What a user does at another computer while the files of a network folder are read.
TEST(DicomProgress, filesRemovedDuringTheScanAreLeftOut)
{
    const TemporaryFolder folder;
    writeSeries(folder.path(), 200);
    const Course course(0.2, [&] {
        for (int i = 150; i < 200; ++i)
            fs::remove(folder / (std::to_string(i) + ".dcm"));
    });
    const DicomDirectory contents(folder.string(), false);
    EXPECT_TRUE(course.acted());
    ASSERT_EQ(contents.series().size(), 1U);
    EXPECT_GE(contents.series()[0].files.size(), 150U);
    EXPECT_LE(contents.series()[0].files.size(), 200U);
}

TEST(DicomProgress, folderRemovedDuringTheScanGivesWhatWasReadBefore)
{
    const TemporaryFolder folder;
    fs::create_directory(folder / "in");
    writeSeries(folder / "in", 100);
    const Course course(0.1, [&] { fs::remove_all(folder / "in"); });
    const DicomDirectory contents(folder / "in", false);
    EXPECT_TRUE(course.acted());
    EXPECT_LE(contents.series().size(), 1U);
    EXPECT_EQ(loadSeries(folder / "in", contents, 0, true, true), nullptr);
}

// The sizes of the files are known by then, their pixels are not read.
TEST(DicomProgress, filesRemovedOrCutDuringTheLoadGiveNoImage)
{
    for (const bool cut : {false, true}) {
        const TemporaryFolder folder;
        writeSeries(folder.path(), 400);
        const DicomDirectory contents(folder.string(), false);
        const Course course(0.0, [&] {
            for (int i = 390; i < 400; ++i) {
                const fs::path path = folder / (std::to_string(i) + ".dcm");
                cut ? fs::resize_file(path, 100) : static_cast<void>(fs::remove(path));
            }
        });
        EXPECT_EQ(loadSeries(folder.string(), contents, 0, true, true), nullptr);
        EXPECT_TRUE(course.acted());
    }
}

TEST(DicomProgress, listenerThatIsGoneIsToldNothing)
{
    const TemporaryFolder folder;
    writeSeries(folder.path(), 3);
    Course outer;
    {
        const Course inner;
        EXPECT_EQ(countDicomSeries(folder.string(), false), 1);
        EXPECT_FALSE(inner.fractions.empty());
    }
    EXPECT_TRUE(outer.fractions.empty());
    EXPECT_EQ(countDicomSeries(folder.string(), false), 1);
    EXPECT_FALSE(outer.fractions.empty());
}
