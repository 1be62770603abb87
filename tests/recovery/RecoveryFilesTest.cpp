#include "recovery/RecoveryFiles.h"

#include <gtest/gtest.h>

#include <QTimeZone>

#include <set>

using RecoveryFiles::Generation;

namespace {

const QDateTime noon(QDate(2026, 3, 1), QTime(12, 0, 0, 7), Qt::UTC);

constexpr qint64 second = 1000;
constexpr qint64 minute = 60 * second;

// What is left of generations written every 5 seconds from 0 to `end`, thinned after each of them.
std::vector<qint64> leftAfter(qint64 end)
{
    std::vector<qint64> times;
    for (qint64 now = 0; now <= end; now += 5 * second) {
        times.push_back(now);
        const auto gone = RecoveryFiles::superseded(times, now);
        for (auto index = gone.rbegin(); index != gone.rend(); ++index)
            times.erase(times.begin() + static_cast<std::ptrdiff_t>(*index));
    }
    return times;
}

} // namespace

TEST(RecoveryFiles, name_holdsLabelObjectAndTime)
{
    const QString name = RecoveryFiles::name({"left knee", 3, noon});
    EXPECT_TRUE(name.startsWith("left knee_3_2026-0")) << qPrintable(name);
    EXPECT_TRUE(name.endsWith(".slic"));
    const auto parsed = RecoveryFiles::parse(name);
    ASSERT_TRUE(parsed);
    EXPECT_EQ(parsed->label, "left knee");
    EXPECT_EQ(parsed->object, 3);
    EXPECT_EQ(parsed->time, noon);
}

TEST(RecoveryFiles, time_isThatOfTheOffsetInTheName)
{
    const auto summer = RecoveryFiles::parse("a_1_2026-10-25T02.30.00.000+0200.slic");
    const auto winter = RecoveryFiles::parse("a_1_2026-10-25T02.30.00.000+0100.slic");
    const auto west = RecoveryFiles::parse("a_1_2026-10-25T02.30.00.000-0330.slic");
    ASSERT_TRUE(summer && winter && west);
    EXPECT_EQ(summer->time.secsTo(winter->time), 3600);
    EXPECT_EQ(west->time.toUTC().time(), QTime(6, 0));
}

TEST(RecoveryFiles, labelThatIsNoFileName_isMadeOne)
{
    const std::pair<QString, QString> cases[] = {{"a/b\\c", "a-b-c"},
                                                 {"../../etc/passwd", "-.-..-etc-passwd"},
                                                 {"line\nfeed", "line-feed"},
                                                 {"", "contours"},
                                                 {".hidden", "-hidden"},
                                                 {"Knie rechts (1_2)", "Knie rechts (1_2)"},
                                                 {"Kniegelenk äöü", "Kniegelenk äöü"}};
    for (const auto &[label, part] : cases)
        EXPECT_EQ(RecoveryFiles::parse(RecoveryFiles::name({label, 1, noon}))->label, part);
}

TEST(RecoveryFiles, longLabel_fitsAFileName)
{
    for (const QString &character : {QString("x"), QString("ö"), QString("骨"), QString("🦴")}) {
        const QString name = RecoveryFiles::name({character.repeated(400), 123456789, noon});
        EXPECT_LE(name.toUtf8().size(), 255);
        const auto parsed = RecoveryFiles::parse(name);
        ASSERT_TRUE(parsed);
        EXPECT_EQ(parsed->label, character.repeated(180 / character.toUtf8().size()));
    }
}

TEST(RecoveryFiles, otherNames_areNoGenerations)
{
    for (const char *name :
         {"", "knee.slic", "knee_1.slic", "_1_2026-03-01T12.00.00.007+0100.slic",
          "knee_1_2026-03-01T12.00.00.007+0100.slic.Xyz123", "knee_1_2026-03-01T12.00.00.007+0100",
          "knee_x_2026-03-01T12.00.00.007+0100.slic", "knee_1_2026-13-01T12.00.00.007+0100.slic",
          "knee_99999999999_2026-03-01T12.00.00.007+0100.slic", "1.saved", "running.lock"})
        EXPECT_FALSE(RecoveryFiles::parse(name)) << name;
}

TEST(RecoveryFiles, savedMark_namesTheObject)
{
    EXPECT_EQ(RecoveryFiles::savedMark(12), "12.saved");
    EXPECT_EQ(RecoveryFiles::parseSavedMark("12.saved"), 12);
    for (const char *name : {"", ".saved", "x.saved", "-1.saved", "12.saved.tmp", "99999999999.saved"})
        EXPECT_FALSE(RecoveryFiles::parseSavedMark(name)) << name;
}

TEST(RecoveryFiles, superseded_ofNothingOrOne_isNothing)
{
    EXPECT_TRUE(RecoveryFiles::superseded({}, 5).empty());
    EXPECT_TRUE(RecoveryFiles::superseded({0}, 0).empty());
    EXPECT_TRUE(RecoveryFiles::superseded({0}, 1000 * minute).empty());
}

TEST(RecoveryFiles, superseded_ofOneMinute_isAllButTheLast)
{
    // 12:00:01, :30 and :59 share a minute; 12:01:00 has its own.
    EXPECT_EQ(RecoveryFiles::superseded({1 * second, 30 * second, 59 * second, minute}, minute),
              (std::vector<std::size_t>{0, 1}));
}

TEST(RecoveryFiles, superseded_beyondTenMinutes_isAllButTheLastOfEachTen)
{
    // At minute 35: 24 and 30 are within the last ten minutes or not (25 is the limit); 3, 8 share the first
    // ten minutes; 12 and 19 the second; 21 and 24 the third.
    const std::vector<qint64> times{3 * minute,  8 * minute,  12 * minute, 19 * minute,
                                    21 * minute, 24 * minute, 25 * minute, 30 * minute};
    EXPECT_EQ(RecoveryFiles::superseded(times, 35 * minute), (std::vector<std::size_t>{0, 2, 4}));
}

TEST(RecoveryFiles, superseded_keepsTheLastTwentyOnly)
{
    std::vector<qint64> times;
    times.reserve(40);
    for (int i = 0; i < 40; ++i)
        times.push_back(i * 10 * minute);
    const auto gone = RecoveryFiles::superseded(times, 400 * minute);
    ASSERT_EQ(gone.size(), 20u);
    for (std::size_t i = 0; i < 20; ++i)
        EXPECT_EQ(gone[i], i);
}

TEST(RecoveryFiles, superseded_clockThatWentBack_keepsTheLastWritten)
{
    const std::vector<qint64> times{100 * minute, 101 * minute, 40 * minute};
    EXPECT_TRUE(RecoveryFiles::superseded(times, 40 * minute).empty());
}

TEST(RecoveryFiles, steadyWork_keepsMinutesThenTensOfMinutes)
{
    constexpr qint64 end = 180 * minute + 25 * second;
    const std::vector<qint64> left = leftAfter(end);
    ASSERT_EQ(left.size(), 20u);
    EXPECT_EQ(left.back(), end);
    // The last generation of each full minute of the last ten.
    const std::set<qint64> kept(left.begin(), left.end());
    for (qint64 i = 171; i <= 179; ++i)
        EXPECT_EQ(kept.count(i * minute + 55 * second), 1u) << i;
    // One an hour old, and one an hour and a half old: to ten minutes.
    for (const qint64 age : {60 * minute, 90 * minute}) {
        const auto after = kept.lower_bound(end - age);
        EXPECT_LE(*after - (end - age), 10 * minute);
    }
    for (std::size_t i = 1; i < left.size(); ++i)
        EXPECT_LE(left[i] - left[i - 1], 10 * minute);
}
