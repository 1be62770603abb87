#include "meshes/ColouredTriangles.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

namespace {

using MERV::BRep::Point;
using MERV::BRep::TriFace;
using testing::ElementsAre;

constexpr double infinity = std::numeric_limits<double>::infinity();

const Point origin(0, 0, 0), right(4, 0, 0), top(0, 4, 0), far(4, 4, 0);

SampleMap samplesOf(double atOrigin, double atRight, double atTop)
{
    return {{{0, 0, 0}, atOrigin}, {{4, 0, 0}, atRight}, {{0, 4, 0}, atTop}};
}

ColouredTriangles coloured(const std::vector<TriFace> &faces, const SampleMap &samples)
{
    return colouredTriangles(faces, samples, bandedColourScale());
}

struct RunOf
{
    bool isHatched;
    std::size_t first, count;
};

void expectRuns(const ColouredTriangles &triangles, const std::vector<RunOf> &expected)
{
    ASSERT_EQ(triangles.runs.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(triangles.runs[i].isHatched, expected[i].isHatched) << i;
        EXPECT_EQ(triangles.runs[i].first, expected[i].first) << i;
        EXPECT_EQ(triangles.runs[i].count, expected[i].count) << i;
    }
}

TEST(ColouredTriangles, valuesCountInRelationToTheLargestSample)
{
    // The largest sample, 8, is elsewhere: the fractions are 0, 0.06 and 0.12, before the first line.
    SampleMap samples = samplesOf(0.0, 0.48, 0.96);
    samples[{9, 9, 9}] = 8.0;
    const ColouredTriangles triangles = coloured({TriFace(origin, right, top)}, samples);
    ASSERT_EQ(triangles.vertices.size(), 3U);
    EXPECT_THAT(triangles.vertices[0].colour, ElementsAre(0.0f, 0.0f, 1.0f));
    EXPECT_THAT(triangles.vertices[1].colour, ElementsAre(0.0f, 0.25f, 1.0f));
    EXPECT_THAT(triangles.vertices[2].colour, ElementsAre(0.0f, 0.5f, 1.0f));
    EXPECT_THAT(triangles.vertices[2].position, ElementsAre(0.0f, 4.0f, 0.0f));
    EXPECT_THAT(triangles.indices, ElementsAre(0U, 1U, 2U));
    expectRuns(triangles, {{false, 0, 3}});
}

TEST(ColouredTriangles, largestSampleIsExactlyRed)
{
    const ColouredTriangles triangles = coloured({TriFace(origin, right, top)}, samplesOf(0.7, 0.1, 0.3));
    EXPECT_THAT(triangles.vertices.back().colour, ElementsAre(1.0f, 0.0f, 0.0f));
    EXPECT_THAT(triangles.vertices.back().position, ElementsAre(0.0f, 0.0f, 0.0f));
}

TEST(ColouredTriangles, stripBecomesTrianglesOfOneWinding)
{
    // One break (0.24 of the largest, 100) between the lowest two: five vertices, three triangles.
    const ColouredTriangles triangles =
        coloured({TriFace(origin, right, top)},
                 {{{0, 0, 0}, 23.0}, {{4, 0, 0}, 24.5}, {{0, 4, 0}, 24.9}, {{9, 9, 9}, 100.0}});
    EXPECT_EQ(triangles.vertices.size(), 5U);
    EXPECT_THAT(triangles.indices, ElementsAre(0U, 1U, 2U, 2U, 1U, 3U, 2U, 3U, 4U));
    EXPECT_EQ(triangles.memory(), 5U * 36U + 9U * 4U + sizeof(ColouredTriangles::Run));
}

TEST(ColouredTriangles, normalOfAReversedStripIsTurned)
{
    // (p1 - p0) x (p2 - p1) = (4, 0, 0) x (-4, 4, 0) = (0, 0, 16).
    for (const ColouredTriangles::Vertex &vertex :
         coloured({TriFace(origin, right, top)}, samplesOf(1, 2, 3)).vertices)
        EXPECT_THAT(vertex.normal, ElementsAre(0.0f, 0.0f, 16.0f));
    for (const ColouredTriangles::Vertex &vertex :
         coloured({TriFace(origin, right, top)}, samplesOf(1, 3, 2)).vertices)
        EXPECT_THAT(vertex.normal, ElementsAre(0.0f, 0.0f, -16.0f));
}

TEST(ColouredTriangles, oneMissingSample_hatchesExactlyTheFacesAtThatVertex)
{
    const std::vector<TriFace> faces{TriFace(origin, right, top), TriFace(right, far, top),
                                     TriFace(origin, top, right)};
    SampleMap samples = samplesOf(1, 1, 1);
    samples[{4, 4, 0}] = 1.0;
    expectRuns(coloured(faces, samples), {{false, 0, 9}});
    samples.erase({4, 4, 0});
    const ColouredTriangles triangles = coloured(faces, samples);
    expectRuns(triangles, {{false, 0, 3}, {true, 3, 3}, {false, 6, 3}});
    ASSERT_EQ(triangles.vertices.size(), 9U);
    EXPECT_THAT(triangles.vertices[3].position, ElementsAre(4.0f, 0.0f, 0.0f));
    EXPECT_THAT(triangles.vertices[4].position, ElementsAre(4.0f, 4.0f, 0.0f));
    EXPECT_THAT(triangles.vertices[5].position, ElementsAre(0.0f, 4.0f, 0.0f));
    for (std::size_t i = 3; i < 6; ++i)
        EXPECT_THAT(triangles.vertices[i].colour, ElementsAre(1.0f, 0.0f, 0.0f));
}

TEST(ColouredTriangles, withoutSamples_allIsHatched)
{
    expectRuns(coloured({TriFace(origin, right, top), TriFace(right, far, top)}, {}), {{true, 0, 6}});
}

TEST(ColouredTriangles, aSampleOfZeroIsASample)
{
    SampleMap samples = samplesOf(0, 0, 0);
    samples[{9, 9, 9}] = 1.0;
    expectRuns(coloured({TriFace(origin, right, top)}, samples), {{false, 0, 3}});
}

TEST(ColouredTriangles, onlyZeroOrNegativeSamples_areBlueAndInPlace)
{
    for (const SampleMap &samples : {samplesOf(0, 0, 0), samplesOf(-1, 0, -2)}) {
        const ColouredTriangles triangles = coloured({TriFace(origin, right, top)}, samples);
        ASSERT_EQ(triangles.vertices.size(), 3U);
        for (const ColouredTriangles::Vertex &vertex : triangles.vertices) {
            EXPECT_THAT(vertex.colour, ElementsAre(0.0f, 0.0f, 1.0f));
            EXPECT_TRUE(std::isfinite(vertex.position[0]) && std::isfinite(vertex.position[1]));
        }
        expectRuns(triangles, {{false, 0, 3}});
    }
}

TEST(ColouredTriangles, homogeneousPointsAreDivided)
{
    // (8, 0, 0, 2) is the place (4, 0, 0); its sample is found there.
    const ColouredTriangles triangles =
        coloured({TriFace(origin, Point(8, 0, 0, 2), Point(0, -8, 0, -2))}, samplesOf(0, 0.1, 1));
    expectRuns(triangles, {{false, 0, triangles.indices.size()}});
    EXPECT_THAT(triangles.vertices.back().position, ElementsAre(0.0f, 4.0f, 0.0f));
}

TEST(ColouredTriangles, facesWithoutAPlace_areLeftOut)
{
    const SampleMap samples{{{0, 0, 0}, 1.0}, {{4, 0, 0}, 1.0}, {{0, 4, 0}, 1.0}, {{infinity, 4, 0}, 1.0}};
    const std::vector<TriFace> faces{TriFace(),
                                     TriFace(origin, right, Point(std::nan(""), 0, 0)),
                                     TriFace(origin, right, Point(infinity, 4, 0)),
                                     TriFace(origin, right, Point(1, 2, 3, 0)),
                                     TriFace(origin, right, Point(0, 1e39, 0)), // not in single precision
                                     TriFace(origin, Point(1e38, 0, 0), Point(0, 1e38, 0)),
                                     TriFace(origin, right, top)};
    const ColouredTriangles triangles = coloured(faces, samples);
    EXPECT_THAT(triangles.indices, ElementsAre(0U, 1U, 2U));
    EXPECT_THAT(triangles.vertices[2].position, ElementsAre(0.0f, 0.0f, 0.0f));
}

TEST(ColouredTriangles, samplesThatAreNotFinite_spoilOnlyTheirFaces)
{
    SampleMap samples = samplesOf(0.5, std::nan(""), -infinity);
    samples[{4, 4, 0}] = 1.0;
    samples[{9, 9, 0}] = 0.25;
    samples[{8, 9, 0}] = 0.25;
    const ColouredTriangles triangles =
        coloured({TriFace(origin, right, top), TriFace(far, Point(9, 9, 0), Point(8, 9, 0))}, samples);
    for (const ColouredTriangles::Vertex &vertex : triangles.vertices) {
        for (std::size_t i = 0; i < 3; ++i) {
            EXPECT_TRUE(std::isfinite(vertex.position[i]));
            EXPECT_TRUE(std::isfinite(vertex.colour[i]));
        }
    }
    EXPECT_THAT(triangles.vertices[0].colour, ElementsAre(0.0f, 0.0f, 1.0f));
    EXPECT_THAT(triangles.vertices.back().colour, ElementsAre(1.0f, 0.0f, 0.0f)); // 1.0 is the largest
}

TEST(ColouredTriangles, noFaces_giveNothing)
{
    const ColouredTriangles triangles = coloured({}, samplesOf(1, 2, 3));
    EXPECT_TRUE(triangles.vertices.empty() && triangles.indices.empty() && triangles.runs.empty());
}

} // namespace
