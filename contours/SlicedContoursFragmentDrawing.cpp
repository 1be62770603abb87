#include "contours/RenderAdvice.h"
#include "contours/SkinGeometry.h"
#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursSegment.h"

#include <GL/gl.h>

#include <array>
#include <initializer_list>
#include <utility>

namespace {

// Two-sided light on a surface of the current colour.
void enableLighting()
{
    constexpr std::array<GLfloat, 4> specular{0.5f, 0.5f, 0.5f, 1.0f};
    constexpr GLfloat shininess = 10.0f;
    std::array<GLfloat, 4> color{};
    glGetFloatv(GL_CURRENT_COLOR, color.data());
    glMaterialfv(GL_FRONT_AND_BACK, GL_SPECULAR, specular.data());
    glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, shininess);
    glMaterialfv(GL_FRONT_AND_BACK, GL_AMBIENT_AND_DIFFUSE, color.data());
    glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, GL_TRUE);
    for (const GLenum capability :
         std::initializer_list<GLenum>{GL_LIGHTING, GL_LIGHT0, GL_NORMALIZE, GL_DEPTH_TEST})
        glEnable(capability);
}

void sendTriangles(const std::vector<SkinTriangle> &triangles)
{
    glBegin(GL_TRIANGLES);
    for (const SkinTriangle &triangle : triangles) {
        glNormal3d(triangle.normal.x, triangle.normal.y, triangle.normal.z);
        for (const Vector3 &corner : triangle.corners)
            glVertex3d(corner.x, corner.y, corner.z);
    }
    glEnd();
}

} // namespace

void SlicedContoursFragment::renderBox(GraphicsObjectRenderAdvisor *advisor, float x0, float x1, float y0,
                                       float y1, float z0, float z1)
{
    applyAdvisedColor(advisor, this);
    for (SlicedContoursSegment *segment : std::as_const(segments))
        segment->renderBox(advisor, x0, x1, y0, y1, z0, z1);
}

void SlicedContoursFragment::renderSkin(GraphicsObjectRenderAdvisor *advisor)
{
    if (segments.size() < 2)
        return;
    std::vector<SegmentSnapshot> lines;
    for (const SlicedContoursSegment *segment : std::as_const(segments))
        lines.push_back(segment->snapshot());
    glPushAttrib(GL_CURRENT_BIT | GL_ENABLE_BIT | GL_LIGHTING_BIT);
    applyAdvisedColor(advisor, this);
    enableLighting();
    sendTriangles(skinOf(lines));
    glPopAttrib();
}
