#include "contours/ContourGeometry.h"
#include "contours/RenderAdvice.h"
#include "contours/SlicedContour.h"

#include <GL/glu.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <deque>
#include <memory>
#include <vector>

namespace {

using TessVertex = std::array<GLdouble, 3>;
using TessCallback = void (*)();

struct TessDeleter
{
    void operator()(GLUtesselator *tesselator) const { gluDeleteTess(tesselator); }
};

// Vertices where an outline crosses itself. They must live until the polygon has ended, at one place each.
using CrossingVertices = std::deque<TessVertex>;

void beginPiece(GLenum mode)
{
    glBegin(mode);
}

void sendVertex(void *data)
{
    const auto *vertex = static_cast<const TessVertex *>(data);
    glVertex3f(static_cast<GLfloat>((*vertex)[0]), static_cast<GLfloat>((*vertex)[1]),
               static_cast<GLfloat>((*vertex)[2]));
}

void combine(const GLdouble position[3], void *[4], const GLfloat[4], void **result, void *polygonData)
{
    auto *crossings = static_cast<CrossingVertices *>(polygonData);
    *result = &crossings->emplace_back(TessVertex{position[0], position[1], position[2]});
}

// The tessellator's arithmetic is for finite numbers.
bool isFinite(const std::vector<Vector3> &outline)
{
    return std::all_of(outline.begin(), outline.end(), [](const Vector3 &point) {
        return std::isfinite(point.x) && std::isfinite(point.y) && std::isfinite(point.z);
    });
}

// A tessellator of its own for each call: two threads may fill at the same time.
void sendFilled(const std::vector<Vector3> &outline)
{
    const std::unique_ptr<GLUtesselator, TessDeleter> tesselator(gluNewTess());
    if (!tesselator || !isFinite(outline))
        return;
    std::vector<TessVertex> vertices;
    vertices.reserve(outline.size());
    for (const Vector3 &point : outline)
        vertices.push_back({point.x, point.y, point.z});
    CrossingVertices crossings;
    GLUtesselator *tess = tesselator.get();
    gluTessCallback(tess, GLU_TESS_BEGIN, reinterpret_cast<TessCallback>(beginPiece));
    gluTessCallback(tess, GLU_TESS_VERTEX, reinterpret_cast<TessCallback>(sendVertex));
    gluTessCallback(tess, GLU_TESS_END, reinterpret_cast<TessCallback>(glEnd));
    gluTessCallback(tess, GLU_TESS_COMBINE_DATA, reinterpret_cast<TessCallback>(combine));
    gluTessNormal(tess, 0.0, 0.0, 1.0);
    gluTessBeginPolygon(tess, &crossings);
    gluTessBeginContour(tess);
    for (TessVertex &vertex : vertices)
        gluTessVertex(tess, vertex.data(), &vertex);
    gluTessEndContour(tess);
    gluTessEndPolygon(tess);
}

} // namespace

void SlicedContour::renderBox(GraphicsObjectRenderAdvisor *advisor, float, float, float, float, float z0,
                              float z1)
{
    for (const std::vector<Vector3> &outline : closedOutlines(snapshots(z0, z1))) {
        glPushAttrib(GL_CURRENT_BIT);
        applyAdvisedColor(advisor, this);
        sendFilled(outline);
        glPopAttrib();
    }
}
