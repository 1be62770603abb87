#include "Common/VoxelCast.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

using MERV::voxel_cast;

TEST(VoxelCast, truncatesTowardZero)
{
    EXPECT_EQ(voxel_cast<char>(-3.9f), -3);
    EXPECT_EQ(voxel_cast<unsigned char>(3.9f), 3);
    EXPECT_EQ(voxel_cast<int>(-0.99), 0);
    EXPECT_EQ(voxel_cast<unsigned int>(-0.99), 0u);
}

TEST(VoxelCast, saturatesIntegers)
{
    EXPECT_EQ(voxel_cast<unsigned char>(300.7f), 255);
    EXPECT_EQ(voxel_cast<unsigned char>(-1.0f), 0);
    EXPECT_EQ(voxel_cast<char>(-129.0f), -128);
    EXPECT_EQ(voxel_cast<short>(40000.0f), 32767);
    EXPECT_EQ(voxel_cast<unsigned short>(65536.0f), 65535);
    EXPECT_EQ(voxel_cast<int>(2147483648.0f), std::numeric_limits<int>::max());
    EXPECT_EQ(voxel_cast<int>(-2147483648.0f), std::numeric_limits<int>::min());
    EXPECT_EQ(voxel_cast<unsigned int>(4294967296.0f), std::numeric_limits<unsigned int>::max());
    EXPECT_EQ(voxel_cast<short>(std::numeric_limits<float>::infinity()), 32767);
    EXPECT_EQ(voxel_cast<short>(-std::numeric_limits<float>::infinity()), -32768);
    EXPECT_EQ(voxel_cast<std::int64_t>(1e300), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(voxel_cast<std::int64_t>(-1e300), std::numeric_limits<std::int64_t>::min());
}

TEST(VoxelCast, notANumberGivesZero)
{
    EXPECT_EQ(voxel_cast<short>(std::numeric_limits<float>::quiet_NaN()), 0);
    EXPECT_EQ(voxel_cast<unsigned int>(std::numeric_limits<double>::quiet_NaN()), 0u);
}

TEST(VoxelCast, floatingVoxelsPassThrough)
{
    EXPECT_EQ(voxel_cast<double>(0.1), 0.1);
    EXPECT_EQ(voxel_cast<float>(-1e30f), -1e30f);
    EXPECT_TRUE(std::isnan(voxel_cast<float>(std::numeric_limits<float>::quiet_NaN())));
}
