#include "contours/ContourGeometry.h"
#include "contours/RenderAdvice.h"
#include "contours/SegmentMarkers.h"
#include "contours/SlicedContoursSegment.h"
#include "objects/GraphicsObjectRenderAdvisor.h"
#include "platform/PixelScale.h"

#include <array>
#include <initializer_list>

namespace {

constexpr GLushort dashPattern = 0xE0E0;

void sendVertex(const QPointF &point)
{
    glVertex2d(point.x(), point.y());
}

// The width is in pixels of view space.
void sendLine(const std::vector<QPointF> &points, float width)
{
    setLineWidth(static_cast<double>(width));
    glBegin(GL_LINE_STRIP);
    for (const QPointF &point : points)
        sendVertex(point);
    glEnd();
}

// A soft white glow around the line.
void sendHalo(const std::vector<QPointF> &points, float widthFactor)
{
    constexpr std::array<float, 4> widths{3.0f, 2.5f, 2.0f, 1.5f};
    glPushAttrib(GL_CURRENT_BIT);
    glColor4f(1.0f, 1.0f, 1.0f, 0.1f);
    for (const float width : widths)
        sendLine(points, width * widthFactor);
    glPopAttrib();
}

void sendMarkers(const std::vector<QPointF> &points, bool highlighted)
{
    for (const QPointF &point : points) {
        glBegin(GL_POLYGON);
        for (const QPointF &corner : vertexOctagon(point))
            sendVertex(corner);
        glEnd();
    }
    if (points.empty())
        return;
    glBegin(GL_QUADS);
    for (const QPointF &corner : endDiamonds(points, highlighted))
        sendVertex(corner);
    glEnd();
}

// The colour before is restored: the segments that follow are drawn in it.
void sendEndPoints(const std::vector<QPointF> &points, std::uint32_t color)
{
    if (points.empty())
        return;
    glPushAttrib(GL_CURRENT_BIT);
    applyColor(color);
    glBegin(GL_POINTS);
    sendVertex(points.front());
    sendVertex(points.back());
    glEnd();
    glPopAttrib();
}

void setSmoothing(bool smooth)
{
    for (const GLenum capability : std::initializer_list<GLenum>{GL_LINE_SMOOTH, GL_POLYGON_SMOOTH})
        smooth ? glEnable(capability) : glDisable(capability);
}

} // namespace

void SlicedContoursSegment::renderBox(GraphicsObjectRenderAdvisor *advisor, float, float, float, float,
                                      float z0, float z1)
{
    if (!liesInSlab(z(), z0, z1))
        return;
    // A copy, so that the advisor is not asked while the mutex is held.
    const SegmentSnapshot segment = snapshot();
    const bool dashed = adviceOr(advisor, this, RenderKey::Dashed, 0) != 0;
    const bool highlighted = adviceOr(advisor, this, RenderKey::Highlight, 0) != 0;
    const auto widthFactor = static_cast<float>(adviceOr(advisor, this, RenderKey::LineWidthFactor, 1));

    glPushMatrix();
    glTranslatef(0.0f, 0.0f, segment.z);
    setSmoothing(adviceOr(advisor, this, RenderKey::Smooth, 1) != 0);
    if (dashed) {
        glEnable(GL_LINE_STIPPLE);
        setLineStipple(dashPattern);
    }
    if (highlighted)
        sendHalo(segment.points, widthFactor);
    sendLine(segment.points, widthFactor);
    if (!dashed)
        sendMarkers(segment.points, highlighted);
    if (adviceOr(advisor, this, RenderKey::EndPoints, 0) != 0)
        sendEndPoints(segment.points, advisor->value(this, RenderKey::Color, RenderKey::EndPoints));
    setSmoothing(false);
    glDisable(GL_LINE_STIPPLE);
    setLineWidth(1.0);
    glPopMatrix();
}
