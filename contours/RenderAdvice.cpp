#include "contours/RenderAdvice.h"

#include "objects/GraphicsObjectRenderAdvisor.h"

#include <GL/gl.h>

std::uint32_t adviceOr(GraphicsObjectRenderAdvisor *advisor, GraphicsObject *object, int key,
                       std::uint32_t fallback)
{
    return advisor->overrides(object, key, 0) ? advisor->value(object, key, 0) : fallback;
}

void applyColor(std::uint32_t argb)
{
    const auto byte = [argb](int shift) { return static_cast<GLubyte>(argb >> shift & 0xFF); };
    glColor4ub(byte(16), byte(8), byte(0), byte(24));
}

void applyAdvisedColor(GraphicsObjectRenderAdvisor *advisor, GraphicsObject *object)
{
    if (advisor->overrides(object, RenderKey::Color, 0))
        applyColor(advisor->value(object, RenderKey::Color, 0));
}
