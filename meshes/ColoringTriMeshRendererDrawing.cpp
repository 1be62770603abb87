// The drawing of a coloured mesh with OpenGL.
#include "meshes/ColoringTriMeshRenderer.h"

#include "meshes/TriMeshFragment.h"
#include "platform/GlState.h"
#include "platform/PixelScale.h"

#include <array>
#include <vector>

namespace {

using Vertex = ColouredTriangles::Vertex;

// The arrays of vertices as the source of what is drawn; the colours are materials.
class VertexArrayScope
{
public:
    explicit VertexArrayScope(const std::vector<Vertex> &vertices)
    {
        glPushClientAttrib(GL_CLIENT_VERTEX_ARRAY_BIT);
        for (const GLenum array : std::array<GLenum, 3>{GL_VERTEX_ARRAY, GL_NORMAL_ARRAY, GL_COLOR_ARRAY})
            glEnableClientState(array);
        const Vertex &first = vertices.front();
        glVertexPointer(3, GL_FLOAT, sizeof(Vertex), first.position.data());
        glNormalPointer(GL_FLOAT, sizeof(Vertex), first.normal.data());
        glColorPointer(3, GL_FLOAT, sizeof(Vertex), first.colour.data());
    }
    ~VertexArrayScope() { glPopClientAttrib(); }
    VertexArrayScope(const VertexArrayScope &) = delete;
    VertexArrayScope &operator=(const VertexArrayScope &) = delete;
};

void setMaterial()
{
    constexpr std::array<GLfloat, 4> specular{0.2f, 0.2f, 0.2f, 1.0f};
    glMaterialfv(GL_FRONT_AND_BACK, GL_SPECULAR, specular.data());
    glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, 2.0f);
    glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, GL_TRUE);
    glColorMaterial(GL_FRONT_AND_BACK, GL_AMBIENT_AND_DIFFUSE);
}

void draw(const ColouredTriangles::Run &run, const std::vector<std::uint32_t> &indices)
{
    if (run.isHatched)
        glEnable(GL_POLYGON_STIPPLE);
    glDrawElements(GL_TRIANGLES, static_cast<GLsizei>(run.count), GL_UNSIGNED_INT, &indices[run.first]);
    if (run.isHatched)
        glDisable(GL_POLYGON_STIPPLE);
}

} // namespace

void ColoringTriMeshRenderer::render(GraphicsObjectRenderAdvisor *)
{
    if (!fragment || !samples)
        return;
    const ColouredTriangles &triangles = currentTriangles();
    if (triangles.vertices.empty())
        return;
    const GlAttributeScope state(GL_CURRENT_BIT | GL_ENABLE_BIT | GL_LIGHTING_BIT | GL_POLYGON_BIT |
                                 GL_POLYGON_STIPPLE_BIT);
    setPolygonStipple(hatching());
    setMaterial();
    glDisable(GL_TEXTURE_2D);
    glDisable(GL_POLYGON_STIPPLE);
    glShadeModel(GL_SMOOTH);
    glFrontFace(GL_CCW); // always: see colouredTriangles() for strips that run the other way round
    const GlEnableScope lighting(GL_LIGHTING), light(GL_LIGHT0), normalize(GL_NORMALIZE),
        depth(GL_DEPTH_TEST), colours(GL_COLOR_MATERIAL);
    const VertexArrayScope arrays(triangles.vertices);
    for (const ColouredTriangles::Run &run : triangles.runs)
        draw(run, triangles.indices);
}
