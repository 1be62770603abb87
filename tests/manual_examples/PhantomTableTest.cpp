#include "demo/PhantomTruth.h"
#include "tests/support/ManualText.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>

// The page on numbers compares a run of the demo with the phantom's truth: the truth is worked out again.
namespace {

constexpr int firstSlice = 7, sliceCount = 9; // that the demo traces

std::string rounded(double value, int decimals)
{
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.*f", decimals, value);
    return text.data();
}

} // namespace

TEST(PhantomTable, trueAreasAreThoseOfTheFormulas)
{
    const demo::PhantomParameters parameters;
    const std::vector<manual::Row> rows = manual::table(manual::page("numbers.md"), "phantom areas");
    ASSERT_EQ(rows.size(), std::size_t{sliceCount + 1});
    const demo::PhantomTruth truth = demo::phantomTruth(parameters);
    double sum = 0.0;
    for (int i = 0; i < sliceCount; ++i) {
        const manual::Row &row = rows[static_cast<std::size_t>(i)];
        const int slice = firstSlice + i;
        const double area = truth.areaMm2[static_cast<std::size_t>(slice)];
        EXPECT_EQ(row.at(0), rounded(demo::slicePlaneMm(parameters, slice), 2));
        EXPECT_EQ(row.at(1), rounded(area, 2));
        sum += area;
    }
    EXPECT_EQ(rows.back().at(1), rounded(sum, 2));
}

TEST(PhantomTable, trueMeasuresAreThoseOfTheFormulas)
{
    const demo::TracedTruth truth = demo::tracedTruth(demo::PhantomParameters(), firstSlice, sliceCount);
    const std::vector<manual::Row> rows = manual::table(manual::page("numbers.md"), "phantom measures");
    ASSERT_EQ(rows.size(), 4u);
    EXPECT_EQ(rows[0].at(1), rounded(truth.volumeMm3, 3));
    EXPECT_EQ(rows[1].at(1), rounded(truth.volumeMm3, 3));
    EXPECT_EQ(rows[2].at(1), rounded(truth.meanThicknessMm, 3));
    EXPECT_EQ(rows[3].at(1), rounded(truth.meanMinimalThicknessMm, 3));
}

// Each row: how much the saved value differs from the true one, in per cent of it.
TEST(PhantomTable, errorsFollowFromTheValuesBesideThem)
{
    const std::vector<manual::Row> rows = manual::table(manual::page("numbers.md"), "phantom measures");
    for (const manual::Row &row : rows) {
        const double wanted = std::stod(row.at(1)), saved = std::stod(row.at(2));
        EXPECT_NEAR(100.0 * (saved - wanted) / wanted, std::stod(row.at(3)), 0.05) << row.at(0);
    }
}
