#include "platform/PixelScale.h"

#include "platform/GlState.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace {

// Of this thread: the view draws in one, rasterizers in others.
thread_local double pixelScale = 1.0;

void setPixelScale(double picturePixels)
{
    pixelScale = picturePixels;
    setLineWidth(1.0);
    glPointSize(static_cast<GLfloat>(picturePixels));
}

} // namespace

GlPixelScaleScope::GlPixelScaleScope(double picturePixels)
    : former(pixelScale)
{
    setPixelScale(picturePixels);
}

GlPixelScaleScope::~GlPixelScaleScope()
{
    setPixelScale(former);
}

void setLineWidth(double pixels)
{
    glLineWidth(static_cast<GLfloat>(pixels * pixelScale));
}

void setLineStipple(GLushort pattern)
{
    glLineStipple(std::max(1, static_cast<int>(std::lround(pixelScale))), pattern);
}

StipplePattern hatching()
{
    StipplePattern pattern{};
    for (std::size_t byte = 0; byte < pattern.size(); ++byte)
        pattern[byte] = static_cast<GLubyte>(1U << ((byte / 4) % 8));
    return pattern;
}

StipplePattern enlarged(const StipplePattern &pattern, int side)
{
    constexpr std::size_t size = 32;
    const auto block = static_cast<std::size_t>(side);
    const auto bit = [](std::size_t x) { return static_cast<GLubyte>(0x80U >> (x % 8)); };
    StipplePattern result{};
    for (std::size_t y = 0; y < size; ++y) {
        for (std::size_t x = 0; x < size; ++x) {
            if ((pattern[y / block * 4 + x / block / 8] & bit(x / block)) != 0)
                result[y * 4 + x / 8] |= bit(x);
        }
    }
    return result;
}

int stippleBlockSide(double scale)
{
    constexpr double largestPower = 2.0;
    return 1 << static_cast<int>(std::clamp(std::round(std::log2(scale)), 0.0, largestPower));
}

void setPolygonStipple(const StipplePattern &pattern)
{
    const GlUnpackScope asItLies;
    glPolygonStipple(enlarged(pattern, stippleBlockSide(pixelScale)).data());
}
