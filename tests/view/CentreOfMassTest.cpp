#include "view/interaction/CentreOfMass.h"

#include "tests/support/TestVolume.h"

#include <gtest/gtest.h>

#include <cmath>

TEST(CentreOfMass, weighsVoxelsByTheirValueAboveTheMinimum)
{
    // Above 10: 3 at (2, 1, 0), 1 at (0, 0, 1); 5 is below. x = 6 / 4, y = 3 / 4, z = 1 / 4.
    const auto image = newVolume(MERV::TypeUShort, {3, 2, 2}, [](int x, int y, int z) {
        if (x == 2 && y == 1 && z == 0)
            return 13;
        return x == 0 && y == 0 && z == 1 ? 11 : 5;
    });
    const auto centre = centreOfMass(*image, 10.0f);
    ASSERT_TRUE(centre);
    EXPECT_DOUBLE_EQ((*centre)[0], 1.5);
    EXPECT_DOUBLE_EQ((*centre)[1], 0.75);
    EXPECT_DOUBLE_EQ((*centre)[2], 0.25);
}

TEST(CentreOfMass, firstChannelOnly)
{
    auto image = newVolume(MERV::TypeUShort, {2, 1, 1, 1, 2});
    image->setVoxel(4.0f, 1, 0, 0, 0, 0);
    image->setVoxel(9.0f, 0, 0, 0, 0, 1);
    EXPECT_DOUBLE_EQ((*centreOfMass(*image, 0.0f))[0], 1.0);
}

TEST(CentreOfMass, nothingAboveTheMinimum_isNoNumber)
{
    const auto image = newVolume(MERV::TypeUShort, {2, 2, 1});
    EXPECT_TRUE(std::isnan((*centreOfMass(*image, 0.0f))[0]));
}

TEST(CentreOfMass, otherVoxelTypes_haveNone)
{
    EXPECT_FALSE(centreOfMass(*newVolume(MERV::TypeFloat, {2, 2, 1}), 0.0f));
    EXPECT_FALSE(centreOfMass(*newVolume(MERV::TypeShort, {2, 2, 1}), 0.0f));
}
