#include "Common/Progress.h"

#include "Common/Analyze.h"
#include "Common/Bitmap.h"
#include "Common/ImageBase.h"
#include "Common/MetaImage.h"
#include "Common/Vis.h"
#include "tests/mervlib/FormatTestSupport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <sstream>
#include <thread>
#include <vector>

using testing::DoubleEq;
using testing::ElementsAre;

namespace {

class Recorder : public MERV::ProgressListener
{
public:
    void progressed(double fraction) override { fractions.push_back(fraction); }
    void paused() override { fractions.push_back(-1); }
    void resumed() override { fractions.push_back(-2); }

    // Rising, and told this often at least.
    bool isCourse(std::size_t reports) const
    {
        return fractions.size() >= reports && std::is_sorted(fractions.begin(), fractions.end()) &&
               fractions.front() >= 0.0 && fractions.back() > 0.8 && fractions.back() <= 1.0;
    }

    std::vector<double> fractions;
};

// 32 MB of unsigned short.
void fill(MERV::ImageBase<unsigned short> &image)
{
    image.setVerbose(0);
    image.setDimensions(256, 256, 256, 1, 1);
    std::fill_n(static_cast<unsigned short *>(image.getData()), image.getValueCount(),
                static_cast<unsigned short>(0x0102));
}

} // namespace

TEST(Progress, nobodyListens)
{
    MERV::reportProgress(1, 2);
    const MERV::ProgressStage stage(0.5);
    const MERV::ProgressPause pause;
    MERV::reportProgress(1, 2);
}

TEST(Progress, partOfTheWorkNeverFallsNorLeavesItsRange)
{
    Recorder listener;
    MERV::reportProgress(1, 4);
    MERV::reportProgress(0, 4);
    MERV::reportProgress(0, 0);
    MERV::reportProgress(9, 4);
    EXPECT_THAT(listener.fractions, ElementsAre(0.25, 0.25, 0.25, 1.0));
}

TEST(Progress, stagesShareTheRange)
{
    Recorder listener;
    {
        const MERV::ProgressStage reading(0.5);
        MERV::reportProgress(1, 2); // 0.25
        {
            const MERV::ProgressStage inner(0.75); // from 0.25 to 0.375
            MERV::reportProgress(1, 2);
        }
        MERV::reportProgress(1, 2); // of what is left, from 0.375 to 0.5
    }
    {
        const MERV::ProgressStage next(0.75); // from 0.5
        MERV::reportProgress(1, 2);
    }
    MERV::reportProgress(1, 2); // of what is left, from 0.75 to 1
    EXPECT_THAT(listener.fractions, ElementsAre(DoubleEq(0.25), DoubleEq(0.3125), DoubleEq(0.4375),
                                                DoubleEq(0.625), DoubleEq(0.875)));
}

TEST(Progress, stageThatEndsWhereTheWorkIsStandsStill)
{
    Recorder listener;
    MERV::reportProgress(1, 2);
    {
        const MERV::ProgressStage still(0.0);
        MERV::reportProgress(1, 1);
    }
    MERV::reportProgress(3, 4);
    EXPECT_THAT(listener.fractions, ElementsAre(0.5, 0.5, 0.75));
}

TEST(Progress, innermostListenerOfItsThreadIsTold)
{
    Recorder outer;
    {
        Recorder inner;
        MERV::reportProgress(1, 2);
        const MERV::ProgressPause pause;
        std::thread([] { MERV::reportProgress(1, 4); }).join();
        EXPECT_THAT(inner.fractions, ElementsAre(0.5, -1));
    }
    MERV::reportProgress(3, 4);
    EXPECT_THAT(outer.fractions, ElementsAre(0.75));
}

TEST(Progress, whatIsReportedWhileTheListenerIsToldIsOtherWork)
{
    class Nested : public Recorder
    {
    public:
        void progressed(double fraction) override
        {
            Recorder::progressed(fraction);
            const MERV::ProgressStage stage(0.9);
            MERV::reportProgress(1, 1);
            const Recorder inner;
            MERV::reportProgress(1, 2);
            EXPECT_THAT(inner.fractions, ElementsAre(0.5));
        }
    } listener;
    MERV::reportProgress(1, 4);
    MERV::reportProgress(1, 2);
    EXPECT_THAT(listener.fractions, ElementsAre(0.25, 0.5));
}

TEST(Progress, pauseIsToldAtBothEnds)
{
    Recorder listener;
    {
        const MERV::ProgressPause pause;
    }
    EXPECT_THAT(listener.fractions, ElementsAre(-1, -2));
}

TEST(Progress, readersOfVolumesTellTheirCourse)
{
    const TempFolder folder;
    MERV::ImageBase<unsigned short> image;
    fill(image);
    ASSERT_EQ(MERV::saveMetaImage((folder / "a").c_str(), &image), 0);
    {
        const Recorder listener;
        const std::unique_ptr<MERV::Image> read(MERV::loadMetaImage((folder / "a.mhd").c_str()));
        EXPECT_TRUE(read);
        EXPECT_TRUE(listener.isCourse(8)); // pieces of the file, then of the range
    }
    MERV::ImageBase<short> analyze;
    analyze.setDimensions(256, 256, 256, 1, 1);
    ASSERT_EQ(MERV::saveAnalyze((folder / "b").c_str(), &analyze), 0);
    {
        const Recorder listener;
        const std::unique_ptr<MERV::Image> read(MERV::loadAnalyze((folder / "b.hdr").c_str()));
        EXPECT_TRUE(read);
        EXPECT_TRUE(listener.isCourse(8));
    }
    std::stringstream stream;
    ASSERT_TRUE(MERV::saveVis(stream, &image, "", nullptr, 0));
    {
        const Recorder listener;
        const std::unique_ptr<MERV::Image> read(MERV::loadVis(stream));
        EXPECT_TRUE(read);
        EXPECT_TRUE(listener.isCourse(8));
    }
}

TEST(Progress, writersOfVolumesTellTheirCourse)
{
    const TempFolder folder;
    MERV::ImageBase<unsigned short> image;
    fill(image);
    {
        const Recorder listener;
        EXPECT_EQ(MERV::saveMetaImage((folder / "a").c_str(), &image), 0);
        EXPECT_THAT(listener.fractions, ElementsAre(0.125, 0.25, 0.375, 0.5, 0.625, 0.75, 0.875, 1.0));
    }
    std::ostringstream stream;
    const Recorder listener;
    EXPECT_TRUE(MERV::saveVis(stream, &image, "", nullptr, 0));
    EXPECT_TRUE(listener.isCourse(256)); // each slice at least
}

TEST(Progress, loadingOfABlockTellsEachPiece)
{
    MERV::ImageBase<unsigned char> image;
    image.setDimensions(1024, 1024, 9, 1, 1); // two pieces of 4 MB and one of 1 MB
    std::istringstream stream(std::string(9U << 20U, 'x'));
    const Recorder listener;
    EXPECT_EQ(image.load(stream, false), 0);
    EXPECT_EQ(image.getValue(image.getValueCount() - 1), 120.0F);
    EXPECT_THAT(listener.fractions, ElementsAre(DoubleEq(4.0 / 9.0), DoubleEq(8.0 / 9.0), 1.0));
}
