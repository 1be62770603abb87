// How the window in force decides where edge points are found. The figures stand in docs/manual/protocol.md:
// who changes one changes the other.
#include "contours/ConventionalSliceEdgePointExtractor.h"
#include "contours/DistributionCorrectingSliceEdgePointExtractor.h"
#include "demo/PhantomOutline.h"
#include "demo/PhantomTruth.h"
#include "demo/PhantomVolume.h"
#include "objects/MervImageObject.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <memory>
#include <vector>

namespace {

using demo::PhantomBody;
using demo::PhantomParameters;
using demo::Point;

constexpr int firstSlice = 7, sliceCount = 9;
constexpr int outlinePieces = 400;
constexpr double nearMm = 0.3125; // the phantom's pixel

struct Row
{
    float low, high;     // of the window
    double foundPercent; // of the outline has an edge point within one pixel
    double outwardMm;    // mean shift of these points out of the cartilage
    double distanceMm;   // their mean distance from the outline
    double pointsPerSlice;
};

// The true outline in the program's world, without the last tenth at each end of its two lines: the corners
// of the cartilage are no straight edges.
std::vector<Point> outline(const PhantomBody &body, const PhantomParameters &parameters, int slice)
{
    const demo::SliceOutline lines =
        demo::cartilageOutline(body, demo::slicePlaneMm(parameters, slice), outlinePieces);
    std::vector<Point> points;
    for (const std::vector<Point> *line : {&lines.boneSide, &lines.surfaceSide})
        for (std::size_t i = line->size() / 10; i < line->size() - line->size() / 10; ++i)
            points.push_back(demo::programWorld(parameters, (*line)[i]));
    return points;
}

double distance(const EdgePoint &point, const Point &place)
{
    return std::hypot(static_cast<double>(point.x) - place[0], static_cast<double>(point.y) - place[1]);
}

bool isInside(const PhantomBody &body, const PhantomParameters &parameters, const EdgePoint &point)
{
    return body.isCartilage(
        demo::programWorld(parameters, {static_cast<double>(point.x), static_cast<double>(point.y),
                                        static_cast<double>(point.z)}));
}

// What the extractor finds with this window, in the terms of a row.
template <class Extractor>
Row measured(const PhantomBody &body, const PhantomParameters &parameters, MervImageObject &volume, float low,
             float high)
{
    volume.setWindow(low, high);
    Extractor extractor(&volume);
    double places = 0.0, found = 0.0, shift = 0.0, distances = 0.0, points = 0.0;
    for (int slice = firstSlice; slice < firstSlice + sliceCount; ++slice) {
        points += static_cast<double>(extractor.slicePoints(slice).size());
        const std::vector<Point> truth = outline(body, parameters, slice);
        for (const Point &place : truth) {
            places += 1.0;
            const std::unique_ptr<EdgePointList> near(
                extractor.edgePointsAround(static_cast<float>(place[0]), static_cast<float>(place[1]),
                                           static_cast<float>(place[2]), static_cast<float>(nearMm)));
            const auto nearest = std::min_element(near->begin(), near->end(), [&](auto *a, auto *b) {
                return distance(*a, place) < distance(*b, place);
            });
            if (nearest == near->end() || distance(**nearest, place) >= nearMm)
                continue;
            found += 1.0;
            // Points stand nearly a pixel apart along the outline: the distance across it is what counts.
            double across = std::numeric_limits<double>::infinity();
            for (const Point &other : truth)
                across = std::min(across, distance(**nearest, other));
            distances += across;
            shift += isInside(body, parameters, **nearest) ? -across : across;
        }
    }
    return {low, high, 100.0 * found / places, shift / found, distances / found, points / sliceCount};
}

} // namespace

TEST(EdgeWindow, pointsLieWhereTheManualSays)
{
    const PhantomParameters parameters;
    const PhantomBody body(parameters);
    MervImageObject volume(demo::phantomImage(parameters).release(), QString());
    EXPECT_EQ(volume.windowLow(), 0.0f);
    EXPECT_EQ(volume.windowHigh(), 677.0f);
    for (const Row &row : {Row{0, 677, 100, 0.00, 0.030, 14000}, Row{0, 2000, 100, 0.00, 0.030, 3100},
                           Row{0, 16000, 82, 0.00, 0.033, 600}, Row{0, 300, 100, 0.14, 0.136, 21100},
                           Row{300, 900, 100, -0.08, 0.079, 1800}}) {
        SCOPED_TRACE(testing::Message() << "window " << row.low << " to " << row.high);
        const Row result =
            measured<ConventionalSliceEdgePointExtractor>(body, parameters, volume, row.low, row.high);
        EXPECT_NEAR(result.foundPercent, row.foundPercent, 0.5);
        EXPECT_NEAR(result.outwardMm, row.outwardMm, 0.005);
        EXPECT_NEAR(result.distanceMm, row.distanceMm, 0.0005);
        EXPECT_NEAR(result.pointsPerSlice, row.pointsPerSlice, 50.0);
    }
    // The correction is made for the distribution in the pixel; it does not bring points nearer here.
    const Row corrected =
        measured<DistributionCorrectingSliceEdgePointExtractor>(body, parameters, volume, 0.0f, 677.0f);
    EXPECT_NEAR(corrected.distanceMm, 0.031, 0.0005);
}
