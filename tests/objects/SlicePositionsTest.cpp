#include "objects/SlicePositions.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace {

struct Step
{
    float z;
    float spacing;
    int slices;
    float next;
    float previous;
};

std::vector<float> walkUp(float spacing, int slices)
{
    std::vector<float> visited = {sliceCentre(0, spacing)};
    float z = nextSliceCentre(visited.back(), spacing, slices);
    while (z > visited.back()) {
        visited.push_back(z);
        z = nextSliceCentre(z, spacing, slices);
    }
    return visited;
}

std::vector<float> walkDown(float start, float spacing, int slices)
{
    std::vector<float> visited = {start};
    float z = previousSliceCentre(start, spacing, slices);
    while (z < visited.back()) {
        visited.push_back(z);
        z = previousSliceCentre(z, spacing, slices);
    }
    return visited;
}

} // namespace

TEST(SlicePositions, stepFromAnyPlace)
{
    // With q = z / spacing, worked out by hand:
    // next: floor(max(-0.5, q - 0.49999)) + 1, at most n - 1; previous: ceil(q - 0.50001), at most n + 0.5,
    // truncated, less 1, at least 0. The result is the centre (i + 0.5) * spacing.
    const Step steps[] = {
        {0.2f, 1.0f, 5, 0.5f, 0.5f},    // floor(-0.29999) + 1 = 0; ceil(-0.30001) - 1 = -1
        {0.5f, 1.0f, 5, 1.5f, 0.5f},    // floor(0.00001) + 1 = 1; ceil(-0.00001) - 1 = -1
        {1.7f, 1.0f, 5, 2.5f, 1.5f},    // floor(1.20001) + 1 = 2; ceil(1.19999) - 1 = 1
        {2.5f, 1.0f, 5, 3.5f, 1.5f},    // floor(2.00001) + 1 = 3; ceil(1.99999) - 1 = 1
        {-5.0f, 1.0f, 5, 0.5f, 0.5f},   // floor(-0.5) + 1 = 0; ceil(-5.50001) - 1 = -6
        {1e6f, 1.0f, 5, 4.5f, 4.5f},    // 1000000, at most 4; 1000000, at most 5.5, 5 - 1
        {4.5f, 1.0f, 5, 4.5f, 3.5f},    // floor(4.00001) + 1 = 5, at most 4; ceil(3.99999) - 1 = 3
        {5.2f, 1.0f, 5, 4.5f, 4.5f},    // above the stack both give the last centre
        {0.4f, 2.0f, 3, 1.0f, 1.0f},    // q = 0.2
        {3.4f, 2.0f, 3, 5.0f, 3.0f},    // q = 1.7
        {0.25f, 0.5f, 1, 0.25f, 0.25f}, // a single slice
        {-0.1f, 0.5f, 1, 0.25f, 0.25f},
    };
    for (const Step &step : steps) {
        EXPECT_FLOAT_EQ(nextSliceCentre(step.z, step.spacing, step.slices), step.next) << step.z;
        EXPECT_FLOAT_EQ(previousSliceCentre(step.z, step.spacing, step.slices), step.previous) << step.z;
    }
}

TEST(SlicePositions, walkUpOfFiveSlicesHasFivePositions)
{
    const std::vector<float> visited = walkUp(0.7f, 5);
    ASSERT_EQ(visited.size(), 5U);
    for (int slice = 0; slice < 5; ++slice)
        EXPECT_EQ(visited[static_cast<std::size_t>(slice)], sliceCentre(slice, 0.7f));
    EXPECT_EQ(nextSliceCentre(visited.back(), 0.7f, 5), visited.back());
}

TEST(SlicePositions, walkDownFromFarAboveLandsOnTheLastSlice)
{
    const std::vector<float> visited = walkDown(100.0f * 0.7f, 0.7f, 5);
    ASSERT_EQ(visited.size(), 6U); // the start, then slices 4, 3, 2, 1, 0
    EXPECT_EQ(visited[1], sliceCentre(4, 0.7f));
    EXPECT_EQ(visited.back(), sliceCentre(0, 0.7f));
}

// A rounded centre misses the tolerance of the plain formula from about slice 130 on: there the walk would
// stop.
TEST(SlicePositions, walksOfTallStacksVisitEverySlice)
{
    constexpr int slices = 2000;
    for (int hundredths = 5; hundredths <= 500; ++hundredths) {
        const float spacing = static_cast<float>(hundredths) / 100.0f;
        const std::vector<float> up = walkUp(spacing, slices);
        ASSERT_EQ(up.size(), static_cast<std::size_t>(slices)) << "spacing " << spacing;
        std::vector<float> down = walkDown(sliceCentre(slices - 1, spacing), spacing, slices);
        std::reverse(down.begin(), down.end());
        ASSERT_EQ(up, down) << "spacing " << spacing;
    }
}

TEST(SlicePositions, betweenCentresThePlainFormulaHolds)
{
    for (const float spacing : {0.3125f, 0.36f, 0.7f, 1.5f, 3.3f}) {
        for (int step = 0; step < 70 * 37; ++step) {
            const double q = static_cast<double>(step) / 37.0;
            const auto z = static_cast<float>(q * static_cast<double>(spacing));
            const double exact = static_cast<double>(z) / static_cast<double>(spacing);
            if (std::abs(exact - std::floor(exact) - 0.5) < 1e-3)
                continue;
            const double next = std::min(std::floor(std::max(-0.5, exact - 0.49999)) + 1.0, 79.0);
            const double previous =
                std::max(std::trunc(std::min(std::ceil(exact - 0.50001), 80.5)) - 1.0, 0.0);
            ASSERT_EQ(nextSliceCentre(z, spacing, 80), sliceCentre(static_cast<int>(next), spacing));
            ASSERT_EQ(previousSliceCentre(z, spacing, 80), sliceCentre(static_cast<int>(previous), spacing));
        }
    }
}

TEST(SlicePositions, centreIsTheRoundedProduct)
{
    EXPECT_EQ(sliceCentre(0, 1.5f), 0.75f);
    EXPECT_EQ(sliceCentre(3, 0.5f), 1.75f);
    EXPECT_EQ(sliceCentre(-1, 2.0f), -1.0f);
    EXPECT_EQ(sliceCentre(999, 0.36f), static_cast<float>(999.5 * static_cast<double>(0.36f)));
}

TEST(SlicePositions, noStepWithoutAUsableSpacing)
{
    const float infinity = std::numeric_limits<float>::infinity();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    for (const float spacing : {0.0f, -1.0f, infinity, nan}) {
        EXPECT_EQ(nextSliceCentre(3.25f, spacing, 10), 3.25f);
        EXPECT_EQ(previousSliceCentre(3.25f, spacing, 10), 3.25f);
    }
    EXPECT_EQ(nextSliceCentre(infinity, 1.0f, 10), infinity);
    EXPECT_TRUE(std::isnan(previousSliceCentre(nan, 1.0f, 10)));
    EXPECT_EQ(nextSliceCentre(3.25f, 1.0f, 0), 3.25f);
    // The largest position is finite and far above every stack.
    EXPECT_EQ(nextSliceCentre(std::numeric_limits<float>::max(), 1.0f, 10), 9.5f);
    EXPECT_EQ(previousSliceCentre(-std::numeric_limits<float>::max(), 1e-30f, 10), 0.5f * 1e-30f);
}
