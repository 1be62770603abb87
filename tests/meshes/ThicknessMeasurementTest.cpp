#include "meshes/ThicknessMeasurement.h"
#include "tests/support/FlatSheet.h"
#include "tests/support/PlainThickness.h"
#include "tests/support/RibbonMesh.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <bit>
#include <cmath>
#include <limits>
#include <string>
#include <tuple>

using MERV::BRep::Point;
using MERV::BRep::TriFace;
using testing::DoubleNear;
using testing::Each;
using testing::ElementsAre;

namespace {

using Mesh = std::vector<TriFace>;

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double roundingMm = 1e-9;

const auto never = [] { return false; };

std::vector<ThicknessSample> measured(const Mesh &base, const Mesh &remote, ThicknessDirection direction)
{
    return measureThickness(base, remote, direction, never).value();
}

std::vector<double> distances(const std::vector<ThicknessSample> &samples)
{
    std::vector<double> result;
    result.reserve(samples.size());
    for (const ThicknessSample &sample : samples)
        result.push_back(sample.distance);
    return result;
}

std::vector<double> alongNormal(const Mesh &base, const Mesh &remote)
{
    return distances(measured(base, remote, ThicknessDirection::AlongNormal));
}

std::vector<double> closest(const Mesh &base, const Mesh &remote)
{
    return distances(measured(base, remote, ThicknessDirection::Closest));
}

Mesh joined(Mesh first, const Mesh &second)
{
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

std::vector<ThicknessSample> samplesOf(const std::vector<double> &values)
{
    std::vector<ThicknessSample> samples;
    samples.reserve(values.size());
    for (const double value : values)
        samples.push_back({Point(0, 0, 0), value});
    return samples;
}

std::vector<double> records(const std::vector<double> &values)
{
    return runningRecords(samplesOf(values));
}

ThicknessSummary summary(const std::vector<double> &values)
{
    return summarizeThickness(samplesOf(values)).value();
}

// In the plane z = 0 and in the plane x = 0, both with the corner (0, 0, 0); normals +z and +x.
const TriFace flatFace({0, 0, 0}, {1, 0, 0}, {0, 1, 0});
const TriFace uprightFace({0, 0, 0}, {0, 1, 0}, {0, 0, 1});

} // namespace

// 3 x 2 squares have 4 x 3 vertices.
TEST(ThicknessMeasurement, parallelSheetsAreTheirDistanceApart)
{
    const Mesh base = flatSheet(3, 2, 1.0), remote = flatSheet(3, 2, 3.0);
    for (const auto &values : {alongNormal(base, remote), closest(base, remote)}) {
        EXPECT_EQ(values.size(), 12U);
        EXPECT_THAT(values, Each(DoubleNear(2.0, roundingMm)));
        const ThicknessSummary all = summary(values);
        EXPECT_NEAR(all.maximum, 2.0, roundingMm);
        EXPECT_NEAR(all.meanOfMaxima, 2.0, roundingMm);
        EXPECT_NEAR(all.mean, 2.0, roundingMm);
        EXPECT_NEAR(all.standardDeviation, 0.0, roundingMm);
    }
}

TEST(ThicknessMeasurement, hitsOnEitherSideCount)
{
    const Mesh base = flatSheet(2, 2, 0.0);
    const Mesh above = flatSheet(2, 2, 3.0), below = flatSheet(2, 2, -2.0);
    EXPECT_THAT(alongNormal(base, below), Each(DoubleNear(2.0, roundingMm)));
    EXPECT_THAT(alongNormal(base, joined(above, below)), Each(DoubleNear(2.0, roundingMm)));
    EXPECT_THAT(alongNormal(base, joined(below, above)), Each(DoubleNear(2.0, roundingMm)));
    EXPECT_EQ(alongNormal(base, joined(above, below)).size(), 9U);
}

TEST(ThicknessMeasurement, meshHasNoDistanceToItself)
{
    const Mesh mesh = flatSheet(4, 3, 1.0);
    EXPECT_EQ(alongNormal(mesh, mesh).size(), 20U);
    EXPECT_THAT(alongNormal(mesh, mesh), Each(DoubleNear(0.0, roundingMm)));
    EXPECT_EQ(closest(mesh, mesh).size(), 20U);
    EXPECT_THAT(closest(mesh, mesh), Each(DoubleNear(0.0, roundingMm)));
}

// One wall at z = 5, one at x = -3: the corner that both faces share sees the wall of the first.
TEST(ThicknessMeasurement, vertexTakesTheNormalOfTheFirstFace)
{
    const Mesh walls{{{-10, -10, 5}, {30, -10, 5}, {-10, 30, 5}},
                     {{-3, -10, -10}, {-3, 30, -10}, {-3, -10, 30}}};
    EXPECT_NEAR(alongNormal({flatFace, uprightFace}, walls)[0], 5.0, roundingMm);
    EXPECT_NEAR(alongNormal({uprightFace, flatFace}, walls)[0], 3.0, roundingMm);
    EXPECT_NEAR(closest({flatFace, uprightFace}, walls)[0], 3.0, roundingMm);
}

// The first face has no area: its corners (0,0,0), (1,0,0), (2,0,0) have no normal, though the second face
// would give one. (0,1,0) takes that.
TEST(ThicknessMeasurement, vertexOfAFaceWithoutAreaHasNoSampleAlongTheNormal)
{
    const TriFace flat({0, 0, 0}, {1, 0, 0}, {2, 0, 0});
    const Mesh remote{{{-10, -10, 5}, {30, -10, 5}, {-10, 30, 5}}};
    const auto samples = measured({flat, flatFace}, remote, ThicknessDirection::AlongNormal);
    ASSERT_EQ(samples.size(), 1U);
    EXPECT_TRUE(samples[0].vertex.sameCoordinates({0, 1, 0}));
    EXPECT_NEAR(samples[0].distance, 5.0, roundingMm);
    EXPECT_EQ(closest({flat, flatFace}, remote).size(), 4U);
}

// The line through (0, 8) passes the wall, which ends at x + y = 3.
TEST(ThicknessMeasurement, vertexWithoutHitTakesNoPart)
{
    const Mesh remote{{{-1, -1, 1}, {4, -1, 1}, {-1, 4, 1}}};
    const Mesh base{{{0, 8, 0}, {0, 0, 0}, {1, 0, 0}}};
    const auto samples = measured(base, remote, ThicknessDirection::AlongNormal);
    ASSERT_EQ(samples.size(), 2U);
    EXPECT_TRUE(samples[0].vertex.sameCoordinates({0, 0, 0}));
    EXPECT_TRUE(samples[1].vertex.sameCoordinates({1, 0, 0}));
    EXPECT_NEAR(summarizeThickness(samples)->mean, 1.0, roundingMm);
    EXPECT_NEAR(summarizeThickness(samples)->standardDeviation, 0.0, roundingMm);
}

TEST(ThicknessMeasurement, samplesStandInTheOrderOfTheFaces)
{
    // Heights 5 at x = 0, 6 at x = 1 and 4 at y = 1 below the wall z = 5 - y + x.
    const Mesh wall{{{-10, -10, 5}, {40, -10, 55}, {-10, 40, -45}}};
    const Mesh base{{{0, 1, 0}, {0, 0, 0}, {1, 0, 0}}, {{1, 0, 0}, {1, 1, 0}, {0, 1, 0}}};
    EXPECT_THAT(alongNormal(base, wall),
                ElementsAre(DoubleNear(4.0, roundingMm), DoubleNear(5.0, roundingMm),
                            DoubleNear(6.0, roundingMm), DoubleNear(5.0, roundingMm)));
}

TEST(ThicknessMeasurement, zeroesOfBothSignsAreOneVertex)
{
    const Mesh remote = flatSheet(1, 1, 1.0);
    EXPECT_EQ(closest({flatFace, {{-0.0, 0, -0.0}, {1, -0.0, 0}, {-0.0, 1, 0}}}, remote).size(), 3U);
}

// (1, 0, 0, 1) and (2, 0, 0, 2) are the same place; their stored coordinates differ.
TEST(ThicknessMeasurement, sameVertexInAnotherHomogeneousFormCountsAgain)
{
    const Mesh base{flatFace, {{0, 0, 0}, {2, 0, 0, 2}, {0, 1, 0}}};
    EXPECT_EQ(closest(base, flatSheet(1, 1, 1.0)).size(), 4U);
    EXPECT_THAT(alongNormal(base, flatSheet(1, 1, 1.0)), Each(DoubleNear(1.0, roundingMm)));
}

TEST(ThicknessMeasurement, vertexThatIsNoPlaceHasNoSample)
{
    const Mesh base{{{0, 0, 0}, {1, 0, 0}, {notANumber, 1, 0}}};
    EXPECT_THAT(alongNormal(base, flatSheet(1, 1, 1.0)), ElementsAre()); // the face has no normal
    EXPECT_EQ(closest(base, flatSheet(1, 1, 1.0)).size(), 2U);
}

// 100,000 vertices that equal nothing, themselves neither: looking for each in vain would take for ever.
TEST(ThicknessMeasurement, manyVerticesThatAreNoPlaceAreLeftOutQuickly)
{
    const Mesh base(33334, TriFace({notANumber, 0, 0}, {notANumber, 0, 0}, {notANumber, 0, 0}));
    EXPECT_THAT(closest(base, flatSheet(1, 1, 1.0)), ElementsAre());
}

TEST(ThicknessMeasurement, nothingToMeasureGivesNothing)
{
    const Mesh sheet = flatSheet(1, 1, 0.0);
    for (const auto direction : {ThicknessDirection::AlongNormal, ThicknessDirection::Closest}) {
        EXPECT_TRUE(measured({}, sheet, direction).empty());
        EXPECT_TRUE(measured(sheet, {}, direction).empty());
        EXPECT_TRUE(measured({}, {}, direction).empty());
        EXPECT_TRUE(measured({TriFace()}, sheet, direction).empty());
        EXPECT_TRUE(measured(sheet, {TriFace()}, direction).empty());
    }
}

TEST(ThicknessMeasurement, stopsWhenTold)
{
    const Mesh mesh = ribbonMesh(20, 20, 0.0, 1);
    const auto always = [] { return true; };
    for (const auto direction : {ThicknessDirection::AlongNormal, ThicknessDirection::Closest}) {
        EXPECT_FALSE(measureThickness(mesh, mesh, direction, always).has_value());
        std::atomic<int> asked{0};
        const auto fromTheTenth = [&asked] { return ++asked >= 10; };
        EXPECT_FALSE(measureThickness(mesh, mesh, direction, fromTheTenth, 4).has_value());
        EXPECT_LT(asked, 100); // each thread may ask once more, of 400 vertices
    }
}

TEST(RunningRecords, keepWhatExceedsOrUndercutsAllRetained)
{
    EXPECT_THAT(records({1, 5}), ElementsAre(1, 5));
    EXPECT_THAT(records({1, 5, 3}), ElementsAre(1, 5));
    EXPECT_THAT(records({1, 5, 3, 7}), ElementsAre(1, 5, 7));
    EXPECT_THAT(records({5, 1, 2}), ElementsAre(1, 5));
    EXPECT_THAT(records({4, 4}), ElementsAre(4));
    EXPECT_THAT(records({}), ElementsAre());
}

TEST(RunningRecords, eleventhDropsTheSmallest)
{
    const std::vector<double> rising{1, 2, 3, 4, 5, 6, 7, 8, 9, 10};
    EXPECT_THAT(records(rising), testing::ElementsAreArray(rising));
    std::vector<double> eleven = rising;
    eleven.push_back(11);
    EXPECT_THAT(records(eleven), ElementsAre(2, 3, 4, 5, 6, 7, 8, 9, 10, 11));
    // A record at the lower end as the eleventh is itself the smallest; so is each later one.
    std::vector<double> low = rising;
    low.push_back(0.5);
    EXPECT_THAT(records(low), testing::ElementsAreArray(rising));
}

TEST(RunningRecords, dependOnTheOrder)
{
    EXPECT_THAT(records({1, 3, 5}), ElementsAre(1, 3, 5));
    EXPECT_THAT(records({1, 5, 3}), ElementsAre(1, 5));
}

TEST(RunningRecords, takeNoNumberThatIsNone)
{
    EXPECT_THAT(records({1, notANumber, 2}), ElementsAre(1, 2));
}

// Mean 16 / 4; deviations -3, 1, -1, 3, so sqrt(20 / 4); of the records 1, 5, 7 the mean is 13 / 3.
TEST(ThicknessSummary, describesAllDistances)
{
    const ThicknessSummary all = summary({1, 5, 3, 7});
    EXPECT_EQ(all.maximum, 7.0);
    EXPECT_DOUBLE_EQ(all.meanOfMaxima, 13.0 / 3.0);
    EXPECT_EQ(all.mean, 4.0);
    EXPECT_DOUBLE_EQ(all.standardDeviation, std::sqrt(5.0));
}

TEST(ThicknessSummary, meanOfMaximaDependsOnTheOrder)
{
    EXPECT_EQ(summary({5, 1, 2}).meanOfMaxima, 3.0);     // 1, 5
    EXPECT_EQ(summary({2, 1, 5}).meanOfMaxima, 8 / 3.0); // 1, 2, 5
    EXPECT_EQ(summary({5, 1, 2}).maximum, 5.0);
}

TEST(ThicknessSummary, ofOneIsItself)
{
    const ThicknessSummary one = summary({2.5});
    EXPECT_EQ(one.maximum, 2.5);
    EXPECT_EQ(one.meanOfMaxima, 2.5);
    EXPECT_EQ(one.mean, 2.5);
    EXPECT_EQ(one.standardDeviation, 0.0);
}

TEST(ThicknessSummary, ofNoneIsNothing)
{
    EXPECT_FALSE(summarizeThickness({}).has_value());
}

namespace {

struct Pair
{
    std::string name;
    Mesh base, remote;
};

Mesh soup(int count, double step, unsigned seed)
{
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> place(-8.0, 8.0);
    const auto coordinate = [&] {
        return step > 0.0 ? std::round(place(random) / step) * step : place(random);
    };
    const auto point = [&] { return Point(coordinate(), coordinate(), coordinate()); };
    Mesh faces;
    for (int i = 0; i < count; ++i)
        faces.emplace_back(point(), point(), point());
    return faces;
}

Mesh slivers(unsigned seed)
{
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> place(-8.0, 8.0), little(-1e-9, 1e-9);
    Mesh faces;
    for (int i = 0; i < 150; ++i) {
        const double x = place(random), y = place(random), z = place(random), t = place(random);
        faces.emplace_back(Point(x, y, z), Point(x + t, y + t, z),
                           Point(x + t / 2, y + t / 2 + little(random), z + little(random)));
    }
    return faces;
}

// Faces twice, without area, invalid, far away, infinite, no numbers, in other homogeneous forms.
Mesh rubble(unsigned seed)
{
    Mesh faces = soup(60, 1.0, seed);
    faces = joined(faces, faces);
    const Point a(1, 2, 3), b(2, 2, 3), c(1, 3, 3);
    faces.emplace_back(a, a, a);
    faces.emplace_back(a, b, a);
    faces.emplace_back();
    faces.emplace_back(a, b, Point(1e9, -1e9, 1e9));
    faces.emplace_back(a, b, Point(1e155, 1e155, -1e155));
    faces.emplace_back(a, b, Point(std::numeric_limits<double>::infinity(), 0, 0));
    faces.emplace_back(a, Point(notANumber, 0, 0), c);
    faces.emplace_back(a, b, Point(1, 3, 3, 0));
    faces.emplace_back(Point(3, 6, 9, 3), Point(-4, -4, -6, -2), Point(0.1, 0.3, 0.3, 0.1));
    faces.emplace_back(Point(0, 0, 0, 0), b, c);
    faces.emplace_back(a, b, c);
    return faces;
}

std::vector<Pair> awkwardPairs()
{
    const Mesh ribbon = ribbonMesh(12, 15, 0.0, 1), other = ribbonMesh(12, 13, 3.0, 2);
    return {{"ribbons", ribbon, other},
            {"ribbon and itself", ribbon, ribbon},
            {"coarse grid", soup(150, 2.0, 3), soup(150, 2.0, 4)},
            {"generic soup", soup(150, 0.0, 5), soup(150, 0.0, 6)},
            {"slivers", slivers(7), slivers(8)},
            {"rubble", rubble(9), rubble(10)},
            {"rubble and ribbon", rubble(11), other},
            {"sheets", flatSheet(12, 9, 0.0), flatSheet(12, 9, 1.0)}};
}

} // namespace

// In one direction, on a number of threads.
class ThicknessOfAwkwardMeshes : public testing::TestWithParam<std::tuple<ThicknessDirection, int>>
{};

TEST_P(ThicknessOfAwkwardMeshes, equalsThePlainWayBitByBit)
{
    const auto [direction, threads] = GetParam();
    std::size_t compared = 0;
    const auto bits = [](double value) { return std::bit_cast<std::uint64_t>(value); };
    for (const Pair &pair : awkwardPairs()) {
        SCOPED_TRACE(pair.name);
        const auto fast = measureThickness(pair.base, pair.remote, direction, never, threads).value();
        const PlainThickness plain(pair.base, pair.remote, direction == ThicknessDirection::AlongNormal);
        ASSERT_EQ(fast.size(), plain.samples.size());
        for (std::size_t i = 0; i < fast.size(); ++i) {
            const auto &[vertex, value] = plain.samples[i];
            EXPECT_EQ(bits(fast[i].vertex.x), bits(vertex.x));
            EXPECT_EQ(bits(fast[i].vertex.y), bits(vertex.y));
            EXPECT_EQ(bits(fast[i].vertex.z), bits(vertex.z));
            EXPECT_EQ(bits(fast[i].vertex.w), bits(vertex.w));
            EXPECT_TRUE(bits(fast[i].distance) == bits(value) ||
                        (std::isnan(fast[i].distance) && std::isnan(value)))
                << fast[i].distance << " and " << value;
        }
        compared += fast.size();
    }
    EXPECT_GT(compared, 500U);
}

INSTANTIATE_TEST_SUITE_P(Both, ThicknessOfAwkwardMeshes,
                         testing::Combine(testing::Values(ThicknessDirection::AlongNormal,
                                                          ThicknessDirection::Closest),
                                          testing::Values(1, 4)));
