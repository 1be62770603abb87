#include "objects/SliceQuad.h"

SliceQuad sliceQuad(const SliceShape &shape)
{
    const auto width = static_cast<float>(shape.width);
    const auto height = static_cast<float>(shape.height);
    const float s = width / shape.textureWidth;
    const float t = height / shape.textureHeight;
    const float x = width * shape.spacingX;
    const float y = height * shape.spacingY;
    const float z = shape.middleZ;
    return {{{{0.0f, 0.0f}, {0.0f, t}, {s, t}, {s, 0.0f}}},
            {{{0.0f, 0.0f, z}, {0.0f, y, z}, {x, y, z}, {x, 0.0f, z}}}};
}
