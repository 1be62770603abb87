#include "platform/PixelScale.h"

#include <gtest/gtest.h>

#include <bit>

namespace {

// x from the left, y from below.
bool isSet(const StipplePattern &pattern, int x, int y)
{
    const int byte = 4 * y + x / 8;
    return (pattern[static_cast<std::size_t>(byte)] & (0x80 >> (x % 8))) != 0;
}

int bitsOf(const StipplePattern &pattern)
{
    int count = 0;
    for (const GLubyte byte : pattern)
        count += std::popcount(byte);
    return count;
}

} // namespace

TEST(Hatching, isOneBitOfEightInARowAndOneFurtherInTheNext)
{
    const StipplePattern pattern = hatching();
    // The lowest bit of a byte is its rightmost pixel: the line runs to the left as it rises.
    for (int y = 0; y < 32; ++y) {
        for (int x = 0; x < 32; ++x)
            EXPECT_EQ(isSet(pattern, x, y), (x + y) % 8 == 7) << x << ", " << y;
    }
}

TEST(Enlarged, blocksOfOneAreThePatternItself)
{
    EXPECT_EQ(enlarged(hatching(), 1), hatching());
}

TEST(Enlarged, makesEachBitABlock)
{
    StipplePattern corner{};
    corner[0] = 0x80; // the pixel at the lower left
    corner[4] = 0x20; // (2, 1)
    const StipplePattern result = enlarged(corner, 2);
    for (int y = 0; y < 32; ++y) {
        for (int x = 0; x < 32; ++x) {
            const bool inFirst = x < 2 && y < 2;
            const bool inSecond = x >= 4 && x < 6 && y >= 2 && y < 4;
            EXPECT_EQ(isSet(result, x, y), inFirst || inSecond) << x << ", " << y;
        }
    }
}

TEST(Enlarged, hatchingKeepsItsShareAndGoesOnAcrossItsBorders)
{
    for (const int side : {2, 4}) {
        const StipplePattern pattern = enlarged(hatching(), side);
        EXPECT_EQ(bitsOf(pattern), 32 * 32 / 8);
        for (int y = 0; y < 64; ++y) {
            for (int x = 0; x < 64; ++x)
                EXPECT_EQ(isSet(pattern, x % 32, y % 32), (x / side + y / side) % 8 == 7);
        }
    }
}

TEST(StippleBlockSide, isTheNearestPowerOfTwoUpToFour)
{
    EXPECT_EQ(stippleBlockSide(1.0), 1);
    EXPECT_EQ(stippleBlockSide(1.25), 1);
    EXPECT_EQ(stippleBlockSide(1.5), 2);
    EXPECT_EQ(stippleBlockSide(2.0), 2);
    EXPECT_EQ(stippleBlockSide(3.0), 4);
    EXPECT_EQ(stippleBlockSide(4.0), 4);
    EXPECT_EQ(stippleBlockSide(16.0), 4);
    EXPECT_EQ(stippleBlockSide(0.5), 1);
}
