#include "meshes/TriMeshFragment.h"

#include "platform/GlState.h"

#include <array>

void TriMeshFragment::render(GraphicsObjectRenderAdvisor *)
{
    const GlAttributeScope state(GL_ENABLE_BIT | GL_LIGHTING_BIT);
    constexpr std::array<GLfloat, 4> specular{0.5f, 0.5f, 0.5f, 1.0f};
    std::array<GLfloat, 4> colour{};
    glGetFloatv(GL_CURRENT_COLOR, colour.data());
    glMaterialfv(GL_FRONT_AND_BACK, GL_AMBIENT_AND_DIFFUSE, colour.data());
    glMaterialfv(GL_FRONT_AND_BACK, GL_SPECULAR, specular.data());
    glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, 10.0f);
    glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, GL_TRUE);
    const GlEnableScope lighting(GL_LIGHTING), light(GL_LIGHT0), normalize(GL_NORMALIZE),
        depth(GL_DEPTH_TEST);
    const GlPrimitive triangles(GL_TRIANGLES);
    for (const MERV::BRep::TriFace &face : all()) {
        const MERV::BRep::Point normal = face.normal();
        glNormal3d(normal.x, normal.y, normal.z);
        for (int i = 0; i < 3; ++i)
            glVertex4d(face.vertex(i).x, face.vertex(i).y, face.vertex(i).z, face.vertex(i).w);
    }
}

bool TriMeshFragment::renderSection(GraphicsObjectRenderAdvisor *, const double plane[4])
{
    const MERV::BRep::Plane cut(plane);
    const GlPrimitive lines(GL_LINES);
    for (const MERV::BRep::TriFace &face : all()) {
        const MERV::BRep::Segment section = face.sectionWith(cut);
        if (!section.isValid())
            continue;
        const MERV::BRep::Point from = euclidean(section.from), to = euclidean(section.to);
        glVertex4d(from.x, from.y, from.z, 1.0);
        glVertex4d(to.x, to.y, to.z, 1.0);
    }
    return true;
}
