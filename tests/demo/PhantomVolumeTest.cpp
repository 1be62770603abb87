#include "demo/PhantomVolume.h"

#include "demo/PhantomTruth.h"

#include <cmath>
#include <gtest/gtest.h>
#include <memory>
#include <set>
#include <vector>

using demo::PhantomAnatomy;
using demo::PhantomParameters;
using demo::Point;
using demo::Tissue;

namespace {

// The same field of view with fewer voxels.
PhantomParameters coarse()
{
    PhantomParameters p;
    p.width = p.height = 64;
    p.slices = 12;
    p.spacingMm = {1.25, 1.25, 3.0};
    return p;
}

PhantomParameters withoutNoise(PhantomParameters p)
{
    p.noiseSigma = 0.0;
    return p;
}

struct Statistics
{
    double mean = 0.0, deviation = 0.0;
    int count = 0;
};

// Of the voxels that have this brightness without noise.
Statistics statisticsOf(const std::vector<std::int16_t> &voxels, const std::vector<std::int16_t> &clean,
                        double value)
{
    double sum = 0.0, squares = 0.0;
    Statistics result;
    for (std::size_t i = 0; i < voxels.size(); ++i) {
        if (clean[i] != value)
            continue;
        sum += voxels[i];
        squares += static_cast<double>(voxels[i]) * voxels[i];
        ++result.count;
    }
    result.mean = sum / result.count;
    result.deviation = std::sqrt(squares / result.count - result.mean * result.mean);
    return result;
}

} // namespace

TEST(PhantomVolume, equalParametersGiveEqualVoxelsAndSeedsChangeThem)
{
    PhantomParameters p = coarse();
    const std::vector<std::int16_t> first = demo::phantomVoxels(p);
    EXPECT_EQ(first.size(), 64u * 64u * 12u);
    EXPECT_EQ(demo::phantomVoxels(p), first);
    p.seed += 1;
    EXPECT_NE(demo::phantomVoxels(p), first);
}

TEST(PhantomVolume, withoutNoisePureVoxelsHaveTheTissuesBrightness)
{
    const PhantomParameters p = withoutNoise(coarse());
    const PhantomAnatomy anatomy(p);
    const std::vector<std::int16_t> voxels = demo::phantomVoxels(p);
    std::set<Tissue> seen;
    std::size_t index = 0;
    for (int z = 0; z < p.slices; ++z)
        for (int y = 0; y < p.height; ++y)
            for (int x = 0; x < p.width; ++x, ++index) {
                // A grid of 3 x 3 x 3 points over the voxel and half a voxel around.
                std::set<Tissue> tissues;
                for (int i = 0; i < 27 && tissues.size() < 2; ++i) {
                    const int dx = i % 3, dy = i / 3 % 3, dz = i / 9;
                    tissues.insert(
                        anatomy.tissueAt({(x + dx - 0.5) * p.spacingMm[0], (y + dy - 0.5) * p.spacingMm[1],
                                          (z + dz - 0.5) * p.spacingMm[2]}));
                }
                if (tissues.size() > 1)
                    continue;
                seen.insert(*tissues.begin());
                EXPECT_EQ(voxels[index], demo::brightness(*tissues.begin())) << x << ' ' << y << ' ' << z;
            }
    for (Tissue tissue : {Tissue::Air, Tissue::Muscle, Tissue::Fluid, Tissue::Bone, Tissue::Cartilage})
        EXPECT_TRUE(seen.count(tissue)) << static_cast<int>(tissue);
}

// Rician noise: in air a Rayleigh distribution of mean sigma sqrt(pi / 2), in bright tissue nearly a normal
// one of mean sqrt(value^2 + sigma^2) and deviation sigma.
TEST(PhantomVolume, noiseIsRician)
{
    PhantomParameters p;
    p.slices = 8;
    p.spacingMm[2] = 4.5;
    const std::vector<std::int16_t> clean = demo::phantomVoxels(withoutNoise(p));
    for (double sigma : {14.0, 40.0}) {
        p.noiseSigma = sigma;
        const std::vector<std::int16_t> noisy = demo::phantomVoxels(p);
        const Statistics air = statisticsOf(noisy, clean, 0.0), cartilage = statisticsOf(noisy, clean, 620.0);
        EXPECT_GT(cartilage.count, 8000);
        EXPECT_NEAR(air.mean, sigma * 1.2533, 0.02 * sigma);
        EXPECT_NEAR(air.deviation, sigma * 0.6551, 0.02 * sigma); // sqrt(2 - pi / 2)
        // The mean of that many voxels has a deviation of about 0.01 sigma.
        EXPECT_NEAR(cartilage.mean, std::sqrt(620.0 * 620.0 + sigma * sigma), 0.05 * sigma);
        EXPECT_NEAR(cartilage.deviation, sigma, 0.02 * sigma);
    }
}

// At edges a voxel is the mean over its cell; here over 16 x 16 x 24 points.
TEST(PhantomVolume, edgeVoxelsAreMeansOverTheirCells)
{
    const PhantomParameters p = withoutNoise(PhantomParameters());
    const PhantomAnatomy anatomy(p);
    const std::vector<std::int16_t> voxels = demo::phantomVoxels(p);
    double largest = 0.0;
    std::set<int> values;
    for (int z : {5, 12, 18})
        for (int y = 80; y < 125; y += 3)
            for (int x = 60; x < 200; x += 7) {
                double sum = 0.0;
                for (int k = 0; k < 24; ++k)
                    for (int j = 0; j < 16; ++j)
                        for (int i = 0; i < 16; ++i)
                            sum +=
                                demo::brightness(anatomy.tissueAt({(x + (i + 0.5) / 16.0) * p.spacingMm[0],
                                                                   (y + (j + 0.5) / 16.0) * p.spacingMm[1],
                                                                   (z + (k + 0.5) / 24.0) * p.spacingMm[2]}));
                const int index = (z * p.height + y) * p.width + x;
                const int value = voxels[static_cast<std::size_t>(index)];
                values.insert(value);
                largest = std::max(largest, std::abs(sum / (16 * 16 * 24) - value));
            }
    EXPECT_GT(values.size(), 40u); // more than the few pure tissues
    EXPECT_LT(largest, 40.0);
}

TEST(PhantomVolume, mirroredVoxelsRunTheOtherWayAcross)
{
    PhantomParameters p = withoutNoise(coarse());
    const std::vector<std::int16_t> right = demo::phantomVoxels(p);
    p.mirrored = true;
    const std::vector<std::int16_t> left = demo::phantomVoxels(p);
    EXPECT_NE(left, right);
    int different = 0;
    for (std::size_t i = 0; i < right.size(); ++i)
        different += std::abs(right[i] - left[i - i % 64 + (63 - i % 64)]) > 30 ? 1 : 0;
    // Points that fall exactly on a border may be rounded to either side.
    EXPECT_LT(different, 5);
}

TEST(PhantomVolume, imageIsTheSeriesAsTheProgramLoadsIt)
{
    const PhantomParameters p = coarse();
    const std::vector<std::int16_t> voxels = demo::phantomVoxels(p);
    const std::unique_ptr<MERV::Image> image = demo::phantomImage(p);
    EXPECT_EQ(image->getDataType(), MERV::TypeShort);
    EXPECT_EQ(image->getSpacing(0), 1.25f);
    EXPECT_EQ(image->getSpacing(2), 3.0f);
    for (int z = 0; z < 12; ++z)
        for (int y = 0; y < 64; ++y)
            for (int x = 0; x < 64; ++x)
                ASSERT_EQ(image->getVoxel(x, 63 - y, z, 0, 0),
                          voxels[static_cast<std::size_t>((z * 64 + y) * 64 + x)]);
}

// Just inside the true outline is cartilage, just outside something much darker, all around in the middle
// slices.
TEST(PhantomVolume, trueOutlineIsAStrongEdgeAllAround)
{
    const PhantomParameters p = withoutNoise(PhantomParameters());
    const std::unique_ptr<MERV::Image> image = demo::phantomImage(p);
    const demo::PhantomBody body(p);
    int seen = 0;
    double weakest = 1e9;
    for (int slice = 7; slice < 17; ++slice) { // as the program has them
        const demo::SliceOutline outline = demo::cartilageOutline(body, demo::slicePlaneMm(p, slice), 200);
        for (const auto *line : {&outline.boneSide, &outline.surfaceSide})
            for (std::size_t i = 1; i + 1 < line->size(); ++i) {
                const Point before = demo::programWorld(p, (*line)[i - 1]),
                            at = demo::programWorld(p, (*line)[i]),
                            after = demo::programWorld(p, (*line)[i + 1]);
                const double dx = after[0] - before[0], dy = after[1] - before[1],
                             length = std::hypot(dx, dy);
                const auto value = [&](double side) {
                    const double x = at[0] - side * dy / length, y = at[1] + side * dx / length;
                    return image->getBilinear(static_cast<float>(x / 0.3125 - 0.5),
                                              static_cast<float>(y / 0.3125 - 0.5), slice, 0, 0);
                };
                weakest = std::min(weakest, std::abs(double(value(0.55)) - double(value(-0.55))));
                ++seen;
            }
    }
    EXPECT_GT(seen, 3000);
    EXPECT_GT(weakest, 120.0);
}
