#include "Common/HessianEigensystem.h"

#include "tests/mervlib/FilterTestSupport.h"

#include <cmath>
#include <gtest/gtest.h>
#include <vector>

using namespace FilterTest;
using MERV::computeHessianEigensystem;

TEST(HessianEigensystem, diagonalMatrixByHand)
{
    // a 3, b 0, c 1: d 2, s 4, e 2, eigenvalues 3 and 1, u = (-2 - 2)/2 = -2, v = 0, so (-1, 0) and (0, 1).
    ImagePtr hessian = newImage(MERV::TypeFloat, {1, 1, 1}, 1, 3);
    fill(*hessian, {3, 0, 1});
    ImagePtr values = newImage(MERV::TypeFloat, {1, 1, 1}, 1, 2);
    ImagePtr first = newImage(MERV::TypeFloat, {1, 1, 1}, 1, 2);
    ImagePtr second = newImage(MERV::TypeFloat, {1, 1, 1}, 1, 2);
    computeHessianEigensystem(hessian.get(), values.get(), first.get(), second.get());
    EXPECT_EQ(valuesOf(*values), (std::vector<float>{3, 1}));
    EXPECT_EQ(valuesOf(*first), (std::vector<float>{-1, 0}));
    EXPECT_EQ(valuesOf(*second), (std::vector<float>{0, 1}));
    EXPECT_EQ(values->getMinimum(), 1.0f);
    EXPECT_EQ(values->getMaximum(), 3.0f);
    EXPECT_EQ(first->getMinimum(), -1.0f);
    EXPECT_EQ(second->getMaximum(), 1.0f);
}

TEST(HessianEigensystem, vectorsSatisfyTheEigenvalueEquation)
{
    ImagePtr hessian = newImage(MERV::TypeDouble, {5, 4, 3}, 2, 3);
    fillRandom(*hessian, 4);
    ImagePtr values = newImage(MERV::TypeFloat, {5, 4, 3}, 2, 2);
    ImagePtr first = newImage(MERV::TypeFloat, {5, 4, 3}, 2, 2);
    ImagePtr second = newImage(MERV::TypeFloat, {5, 4, 3}, 2, 2);
    computeHessianEigensystem(hessian.get(), values.get(), first.get(), second.get());
    for (std::uint64_t i = 0; i < 120; ++i) {
        const double a = hessian->getValue(3 * i), b = hessian->getValue(3 * i + 1),
                     c = hessian->getValue(3 * i + 2);
        EXPECT_GE(values->getValue(2 * i), values->getValue(2 * i + 1));
        const std::array<Image *, 2> vectors{first.get(), second.get()};
        for (std::uint64_t k = 0; k < 2; ++k) {
            const double lambda = values->getValue(2 * i + k);
            const double u = vectors[k]->getValue(2 * i), v = vectors[k]->getValue(2 * i + 1);
            EXPECT_NEAR(u * u + v * v, 1.0, 1e-5);
            EXPECT_NEAR(a * u + b * v, lambda * u, 1e-2); // entries reach 1000
            EXPECT_NEAR(b * u + c * v, lambda * v, 1e-2);
        }
    }
}

TEST(HessianEigensystem, undefinedFirstVectorIsZero)
{
    // b = 0 and a < c: e = c - a, u = (-(a - c) - e)/2 = 0.
    ImagePtr hessian = newImage(MERV::TypeFloat, {1, 1, 1}, 1, 3);
    fill(*hessian, {1, 0, 3});
    ImagePtr values = newImage(MERV::TypeFloat, {1, 1, 1}, 1, 2);
    ImagePtr first = newImage(MERV::TypeFloat, {1, 1, 1}, 1, 2);
    computeHessianEigensystem(hessian.get(), values.get(), first.get(), nullptr);
    EXPECT_EQ(valuesOf(*values), (std::vector<float>{3, 1}));
    EXPECT_EQ(valuesOf(*first), (std::vector<float>{0, 0}));
}

TEST(HessianEigensystem, secondVectorsAreWrittenOnlyWithFirstVectors)
{
    ImagePtr hessian = newImage(MERV::TypeFloat, {1, 1, 1}, 1, 3);
    fill(*hessian, {3, 0, 1});
    ImagePtr values = newImage(MERV::TypeFloat, {1, 1, 1}, 1, 2);
    ImagePtr second = newImage(MERV::TypeFloat, {1, 1, 1}, 1, 2);
    fill(*second, {7, 8});
    computeHessianEigensystem(hessian.get(), values.get(), nullptr, second.get());
    EXPECT_EQ(valuesOf(*values), (std::vector<float>{3, 1}));
    EXPECT_EQ(valuesOf(*second), (std::vector<float>{7, 8}));
}

TEST(HessianEigensystem, nothingHappensWithoutThreeChannels)
{
    for (int channels : {1, 2, 4}) {
        ImagePtr hessian = newImage(MERV::TypeFloat, {2, 2, 1}, 1, channels);
        ImagePtr values = newImage(MERV::TypeFloat, {2, 2, 1}, 1, 2);
        fill(*values, std::vector<float>(8, 5.0f));
        computeHessianEigensystem(hessian.get(), values.get(), nullptr, nullptr);
        EXPECT_EQ(valuesOf(*values), std::vector<float>(8, 5.0f));
        EXPECT_EQ(values->getMaximum(), 0.0f);
    }
    computeHessianEigensystem(nullptr, nullptr, nullptr, nullptr);
}

TEST(HessianEigensystem, outputsThatAreTooSmallEndSilently)
{
    ImagePtr hessian = newImage(MERV::TypeFloat, {3, 1, 1}, 1, 3);
    fill(*hessian, {3, 0, 1, 3, 0, 1, 3, 0, 1});
    ImagePtr values = newImage(MERV::TypeFloat, {3, 1, 1});
    ImagePtr first = newImage(MERV::TypeFloat, {1, 1, 1});
    ImagePtr second = newImage(MERV::TypeFloat, {10, 1, 1});
    computeHessianEigensystem(hessian.get(), values.get(), first.get(), second.get());
    EXPECT_EQ(valuesOf(*values), (std::vector<float>{3, 1, 3}));
    EXPECT_EQ(valuesOf(*first), (std::vector<float>{-1}));
    EXPECT_EQ(valuesOf(*second), (std::vector<float>{0, 1, 0, 1, 0, 1, 0, 0, 0, 0}));
}

TEST(HessianEigensystem, valuesOfAHessianImage)
{
    // v = y^2: the kernel's second derivative along y is 128 in the centre, the others 0 (worked out from
    // gradient rows 0, -16, -32, -48, 0): eigenvalues 128 and 0.
    ImagePtr source = newImage(MERV::TypeFloat, {5, 5, 1});
    for (int y = 0; y < 5; ++y)
        for (int x = 0; x < 5; ++x)
            source->setVoxel(static_cast<float>(y * y), x, y, 0, 0, 0);
    const float sobel[9] = {1, 2, 1, 0, 0, 0, -1, -2, -1};
    ImagePtr hessian(source->computeHessian(0, sobel, nullptr));
    ImagePtr values = newImage(MERV::TypeFloat, {5, 5, 1}, 1, 2);
    computeHessianEigensystem(hessian.get(), values.get(), nullptr, nullptr);
    EXPECT_EQ(values->getVoxel(2, 2, 0, 0, 0), 128.0f);
    EXPECT_EQ(values->getVoxel(2, 2, 0, 0, 1), 0.0f);
}
