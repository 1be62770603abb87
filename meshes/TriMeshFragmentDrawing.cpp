#include "meshes/TriMeshDrawing.h"
#include "meshes/TriMeshFragment.h"

#include "platform/GlState.h"

#include <array>

namespace {

// Vertex and normal arrays from memory, and whatever was there before at the end of the scope.
class ClientArrayScope
{
public:
    ClientArrayScope() { glPushClientAttrib(GL_CLIENT_VERTEX_ARRAY_BIT); }
    ~ClientArrayScope() { glPopClientAttrib(); }
    ClientArrayScope(const ClientArrayScope &) = delete;
    ClientArrayScope &operator=(const ClientArrayScope &) = delete;
};

// The current colour, on both sides.
void useShinyMaterial()
{
    constexpr std::array<GLfloat, 4> specular{0.5f, 0.5f, 0.5f, 1.0f};
    std::array<GLfloat, 4> colour{};
    glGetFloatv(GL_CURRENT_COLOR, colour.data());
    glMaterialfv(GL_FRONT_AND_BACK, GL_AMBIENT_AND_DIFFUSE, colour.data());
    glMaterialfv(GL_FRONT_AND_BACK, GL_SPECULAR, specular.data());
    glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, 10.0f);
    glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, GL_TRUE);
}

} // namespace

std::shared_ptr<const std::vector<LitVertex>> TriMeshFragment::drawing()
{
    const std::lock_guard guard(drawnMutex);
    const ReadLocker lock(this);
    if (drawn == nullptr || drawnRevision != changes) {
        drawn = std::make_shared<const std::vector<LitVertex>>(litTriangles(all()));
        drawnRevision = changes;
    }
    return drawn;
}

void TriMeshFragment::render(GraphicsObjectRenderAdvisor *)
{
    const auto vertices = drawing();
    if (vertices->empty())
        return;
    // Off again at the end, on purpose also if they were on before.
    const GlEnableScope lighting(GL_LIGHTING), light(GL_LIGHT0), normalize(GL_NORMALIZE),
        depth(GL_DEPTH_TEST);
    const GlAttributeScope state(GL_CURRENT_BIT | GL_LIGHTING_BIT);
    useShinyMaterial();
    const ClientArrayScope arrays;
    glEnableClientState(GL_NORMAL_ARRAY);
    glEnableClientState(GL_VERTEX_ARRAY);
    glNormalPointer(GL_FLOAT, sizeof(LitVertex), vertices->front().normal.data());
    glVertexPointer(4, GL_FLOAT, sizeof(LitVertex), vertices->front().position.data());
    glDrawArrays(GL_TRIANGLES, 0, static_cast<GLsizei>(vertices->size()));
}

bool TriMeshFragment::renderSection(GraphicsObjectRenderAdvisor *, const double plane[4])
{
    std::vector<SectionVertex> vertices;
    {
        const ReadLocker lock(this);
        vertices = sectionLines(all(), MERV::BRep::Plane(plane));
    }
    if (vertices.empty())
        return true;
    const ClientArrayScope arrays;
    glEnableClientState(GL_VERTEX_ARRAY);
    glVertexPointer(3, GL_FLOAT, sizeof(SectionVertex), vertices.front().data());
    glDrawArrays(GL_LINES, 0, static_cast<GLsizei>(vertices.size()));
    return true;
}
