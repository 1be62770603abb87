#include "Common/GaussianKernel.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <numeric>
#include <vector>

namespace {

std::vector<float> kernelOf(int width, int height, float sigma)
{
    const std::unique_ptr<float[]> kernel(MERV::gaussianKernel(width, height, sigma));
    return std::vector<float>(kernel.get(), kernel.get() + width * height);
}

} // namespace

TEST(GaussianKernel, sumsToOneAndPeaksInTheCentre)
{
    const std::vector<float> kernel = kernelOf(3, 3, 1.0f);
    EXPECT_NEAR(std::accumulate(kernel.begin(), kernel.end(), 0.0), 1.0, 1e-6);
    for (std::size_t i = 0; i < 9; ++i)
        EXPECT_LE(kernel[i], kernel[4]);
    // Weights 1, exp(-1/2), exp(-1) once, four and four times.
    const double side = std::exp(-0.5);
    const double corner = std::exp(-1.0);
    const double sum = 1 + 4 * side + 4 * corner;
    EXPECT_NEAR(kernel[4], 1 / sum, 1e-7);
    EXPECT_NEAR(kernel[1], side / sum, 1e-7);
    EXPECT_NEAR(kernel[8], corner / sum, 1e-7);
}

TEST(GaussianKernel, evenSizesHaveTheirPeakBetweenValues)
{
    const std::vector<float> kernel = kernelOf(4, 1, 2.0f);
    EXPECT_EQ(kernel[1], kernel[2]);
    EXPECT_EQ(kernel[0], kernel[3]);
    // Distances 0.5 and 1.5: exponents -0.25 / 8 and -2.25 / 8.
    EXPECT_NEAR(kernel[0] / kernel[1], std::exp(-0.25), 1e-6);
}

TEST(GaussianKernel, rowsAreStoredOneAfterTheOther)
{
    const std::vector<float> kernel = kernelOf(1, 3, 1.0f);
    EXPECT_GT(kernel[1], kernel[0]);
    const std::vector<float> wide = kernelOf(5, 3, 1.0f);
    EXPECT_EQ(std::max_element(wide.begin(), wide.end()) - wide.begin(), 7);
}

TEST(GaussianKernel, sigmaZeroHasNoNumberInTheCentre)
{
    EXPECT_TRUE(std::isnan(kernelOf(3, 3, 0.0f)[4]));
}

TEST(GaussianKernel, emptySizesGiveAnEmptyArray)
{
    for (const int size : {0, -1}) {
        const std::unique_ptr<float[]> kernel(MERV::gaussianKernel(size, 3, 1.0f));
        const std::unique_ptr<float[]> other(MERV::gaussianKernel(3, size, 1.0f));
        EXPECT_NE(kernel, nullptr);
        EXPECT_NE(other, nullptr);
    }
}
