#include "objects/GlyphLines.h"
#include "objects/SampleCross.h"
#include "objects/SliceQuad.h"
#include "objects/Vector3.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>

TEST(SliceQuad, sliceLiesInTheLowCornerOfItsTexture)
{
    // 300 x 200 voxels of 0.5 x 0.25 mm in a texture of 512 x 256: 150 x 50 mm.
    const SliceQuad quad = sliceQuad({300, 200, 0.5f, 0.25f, 4.5f, 512.0f, 256.0f});
    const float s = 300.0f / 512.0f;
    const float t = 200.0f / 256.0f;
    const SliceQuad expected = {{{{0, 0}, {0, t}, {s, t}, {s, 0}}},
                                {{{0, 0, 4.5f}, {0, 50, 4.5f}, {150, 50, 4.5f}, {150, 0, 4.5f}}}};
    EXPECT_EQ(quad.texture, expected.texture);
    EXPECT_EQ(quad.vertices, expected.vertices);
}

TEST(SliceQuad, rectangleTexturesHaveIntegerCoordinates)
{
    const SliceQuad quad = sliceQuad({300, 200, 1.0f, 1.0f, 0.5f, 1.0f, 1.0f});
    const std::array<std::array<float, 2>, 4> expected = {{{0, 0}, {0, 200}, {300, 200}, {300, 0}}};
    EXPECT_EQ(quad.texture, expected);
}

TEST(GlyphLines, shaftProjectionAndLegs)
{
    using Position = GlyphLines::Position;
    const GlyphLines lines = glyphLines({1, 2, 3}, {10, 20, 30});
    const Position point = {1, 2, 3};
    const Position tip = {11, 22, 33};
    EXPECT_EQ(lines.shaft, (GlyphLines::Line{point, tip}));
    EXPECT_EQ(lines.projection, (GlyphLines::Line{point, Position{11, 22, 3}}));
    EXPECT_EQ(lines.legs[0], (GlyphLines::Line{point, Position{11, 2, 3}}));
    EXPECT_EQ(lines.legs[1], (GlyphLines::Line{Position{11, 2, 3}, Position{11, 22, 3}}));
    EXPECT_EQ(lines.legs[2], (GlyphLines::Line{Position{11, 22, 3}, tip}));
}

TEST(SampleCross, strokesReachThreeTenthsToEitherSide)
{
    const SampleCross cross = sampleCross({1.0, 2.0, 3.0}, 0.4);
    EXPECT_DOUBLE_EQ(cross.strokes[0][0].x, 0.7);
    EXPECT_DOUBLE_EQ(cross.strokes[0][1].x, 1.3);
    EXPECT_DOUBLE_EQ(cross.strokes[1][0].y, 1.7);
    EXPECT_DOUBLE_EQ(cross.strokes[1][1].y, 2.3);
    EXPECT_DOUBLE_EQ(cross.strokes[2][0].z, 2.7);
    EXPECT_DOUBLE_EQ(cross.strokes[2][1].z, 3.3);
    for (std::size_t stroke = 0; stroke < 3; ++stroke) {
        const Vector3 from = cross.strokes[stroke][0];
        const Vector3 to = cross.strokes[stroke][1];
        EXPECT_DOUBLE_EQ(stroke == 0 ? 1.0 : from.x, 1.0);
        EXPECT_DOUBLE_EQ(stroke == 1 ? 2.0 : from.y, 2.0);
        EXPECT_DOUBLE_EQ(stroke == 2 ? 3.0 : to.z, 3.0);
    }
    EXPECT_EQ(cross.colour, (std::array<double, 3>{0.8, 0.2, 0.05}));
}

TEST(Vector3Order, isXThenYThenZ)
{
    const Vector3Order before;
    EXPECT_TRUE(before({1, 9, 9}, {2, 0, 0}));
    EXPECT_TRUE(before({1, 1, 9}, {1, 2, 0}));
    EXPECT_TRUE(before({1, 1, 1}, {1, 1, 2}));
    EXPECT_FALSE(before({1, 1, 1}, {1, 1, 1}));
}

TEST(Vector3Order, negativeZeroIsZero)
{
    std::map<Vector3, int, Vector3Order> positions;
    positions[{0.0, 0.0, 0.0}] = 1;
    positions[{-0.0, 0.0, -0.0}] = 2;
    EXPECT_EQ(positions.size(), 1U);
}

TEST(Vector3Order, notANumberHasAPlace)
{
    const double nan = std::nan("");
    std::map<Vector3, int, Vector3Order> positions;
    for (int round = 0; round < 2; ++round) {
        for (const double x : {nan, 1.0, -1.0, 0.0})
            positions[{x, nan, 2.0}] = round;
    }
    EXPECT_EQ(positions.size(), 4U);
    EXPECT_TRUE(positions.contains({nan, nan, 2.0}));
    EXPECT_FALSE(positions.contains({nan, 1.0, 2.0}));
}
