#include "view/painting/Overlays.h"

#include "platform/GlState.h"
#include "platform/PixelScale.h"

#include <algorithm>

namespace {

constexpr GLfloat kiteAlpha = 0.25f;
constexpr GLfloat lineAlpha = 0.667f;
constexpr double cubeSize = -100.0; // pixels; negative: mirrored at its centre

// Yellow, magenta for excluded points.
void setMarkColor(bool excluded, GLfloat alpha)
{
    glColor4f(1.0f, excluded ? 0.0f : 1.0f, excluded ? 1.0f : 0.0f, alpha);
}

// Corners of a side in the plane axis = at, clockwise as seen from outside for at = 1.
CubeQuad side(std::size_t axis, double at)
{
    constexpr std::array<std::array<double, 2>, 4> clockwise{{{-1, -1}, {-1, 1}, {1, 1}, {1, -1}}};
    CubeQuad quad;
    for (std::size_t i = 0; i < 4; ++i) {
        const auto &corner = clockwise[at > 0.0 ? i : 3 - i];
        quad.corners[i][axis] = at;
        quad.corners[i][(axis + 1) % 3] = corner[0];
        quad.corners[i][(axis + 2) % 3] = corner[1];
    }
    return quad;
}

template <std::size_t Count>
void sendQuads(const std::array<CubeQuad, Count> &quads)
{
    const GlPrimitive primitive(GL_QUADS);
    for (const CubeQuad &quad : quads)
        for (std::size_t i = 0; i < 4; ++i) {
            glEdgeFlag(quad.drawnEdges[i] ? GL_TRUE : GL_FALSE);
            glVertex3dv(quad.corners[i].data());
        }
}

void sendCube()
{
    sendQuads(cubeSides());
    sendQuads(cubeArrow());
    glEdgeFlag(GL_TRUE);
}

} // namespace

EdgeMark edgeMark(const EdgePoint &point, float granularity)
{
    const double x = static_cast<double>(point.x);
    const double y = static_cast<double>(point.y);
    const double z = static_cast<double>(point.z);
    const double u = static_cast<double>(point.gx) * static_cast<double>(granularity);
    const double v = static_cast<double>(point.gy) * static_cast<double>(granularity);
    const double w = static_cast<double>(point.gz) * static_cast<double>(granularity);
    EdgeMark mark;
    mark.kite = {{{x + 2 * u, y + 2 * v, z + w},
                  {x - v / 2, y + u / 2, z + w},
                  {x - u / 2, y - v / 2, z + w},
                  {x + v / 2, y - u / 2, z + w}}};
    mark.lineStart = {x, y, z};
    mark.lineEnd = {x + 2 * u, y + 2 * v, z + w};
    mark.excluded = point.excluded;
    return mark;
}

void drawEdgeMarks(std::span<const EdgePoint> points, float granularity)
{
    const GlAttributeScope state(GL_CURRENT_BIT);
    {
        const GlPrimitive quads(GL_QUADS);
        for (const EdgePoint &point : points) {
            const EdgeMark mark = edgeMark(point, granularity);
            setMarkColor(mark.excluded, kiteAlpha);
            for (const Point3 &corner : mark.kite)
                glVertex3dv(corner.data());
        }
    }
    const GlPrimitive lines(GL_LINES);
    for (const EdgePoint &point : points) {
        const EdgeMark mark = edgeMark(point, granularity);
        setMarkColor(mark.excluded, lineAlpha);
        glVertex3dv(mark.lineStart.data());
        setMarkColor(mark.excluded, 0.0f);
        glVertex3dv(mark.lineEnd.data());
    }
}

void drawRubberBand(std::span<const Vector4, 4> corners, float alpha)
{
    constexpr std::array<GLushort, 4> patterns{0xF9FF, 0xF0FF, 0xC03F, 0x000F}; // for widths 1 to 4
    const GlAttributeScope state(GL_CURRENT_BIT | GL_LINE_BIT | GL_ENABLE_BIT);
    glEnable(GL_POLYGON_SMOOTH);
    glEnable(GL_LINE_STIPPLE);
    for (int width = 4; width >= 1; --width) {
        setLineWidth(width);
        glColor4f(0.0f, 0.5f, 1.0f, alpha / static_cast<GLfloat>(width));
        setLineStipple(patterns[static_cast<std::size_t>(width - 1)]);
        const GlPrimitive loop(GL_LINE_LOOP);
        for (const Vector4 &corner : corners)
            glVertex4dv(corner.data());
    }
}

std::array<CubeQuad, 6> cubeSides()
{
    return {side(0, 1.0), side(0, -1.0), side(1, 1.0), side(1, -1.0), side(2, 1.0), side(2, -1.0)};
}

std::array<CubeQuad, 3> cubeArrow()
{
    CubeQuad shaft{{{{-0.8, -0.2, 1.0}, {-0.8, 0.2, 1.0}, {0.2, 0.2, 1.0}, {0.2, -0.2, 1.0}}},
                   {true, true, false, true}};
    // The two halves of the head meet at a point inside the outline: quads without three corners in line.
    CubeQuad upper{{{{0.4, 0.0, 1.0}, {0.2, 0.2, 1.0}, {0.2, 0.4, 1.0}, {0.8, 0.0, 1.0}}},
                   {false, true, true, false}};
    CubeQuad lower{{{{0.4, 0.0, 1.0}, {0.8, 0.0, 1.0}, {0.2, -0.4, 1.0}, {0.2, -0.2, 1.0}}},
                   {false, true, true, false}};
    return {shaft, upper, lower};
}

void drawCube(float angleDegrees, float alpha)
{
    const GlAttributeScope state(GL_CURRENT_BIT | GL_LINE_BIT | GL_POLYGON_BIT | GL_ENABLE_BIT);
    glPushMatrix();
    glRotatef(angleDegrees, 0.0f, 1.0f, 0.0f);
    glScaled(cubeSize, cubeSize, cubeSize);
    glPolygonMode(GL_FRONT_AND_BACK, GL_LINE);
    glEnable(GL_LINE_SMOOTH);
    glEnable(GL_CULL_FACE);
    glCullFace(GL_FRONT);
    glColor4f(1.0f, 0.0f, 0.0f, alpha / 3.0f);
    sendCube();
    glCullFace(GL_BACK);
    setLineWidth(2.0);
    glColor4f(1.0f, 0.0f, 0.0f, alpha);
    sendCube();
    glPopMatrix();
}
