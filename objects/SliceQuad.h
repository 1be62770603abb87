#pragma once

#include <array>

// What an axial slice of a volume is drawn as: one rectangle with texture coordinates, no OpenGL.
struct SliceQuad
{
    std::array<std::array<float, 2>, 4> texture;  // (s, t) per corner
    std::array<std::array<float, 3>, 4> vertices; // (x, y, z) per corner, in mm
};

// The slice's size in voxels and mm, its middle and the size of the texture that it lies in the low corner
// of.
struct SliceShape
{
    int width = 0;
    int height = 0;
    float spacingX = 0.0f;
    float spacingY = 0.0f;
    float middleZ = 0.0f;
    float textureWidth = 1.0f;
    float textureHeight = 1.0f;
};

// Corners in the order (0, 0), (0, height), (width, height), (width, 0).
SliceQuad sliceQuad(const SliceShape &shape);
