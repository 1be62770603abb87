// What the stacked slice view draws, in which order.
#include "view/QStackedSliceView.h"

#include "objects/ImageObject.h"
#include "platform/GlState.h"
#include "platform/PixelScale.h"
#include "view/GraphicsPod.h"
#include "view/ImageComposition.h"
#include "view/camera/Projection.h"
#include "view/painting/Overlays.h"
#include "view/painting/ScenePasses.h"

#include <QScopedValueRollback>

#include <algorithm>

namespace {

// A matrix as OpenGL takes it: column by column.
std::array<double, 16> columnMajor(const Matrix4 &matrix)
{
    std::array<double, 16> columns{};
    for (std::size_t row = 0; row < 4; ++row)
        for (std::size_t column = 0; column < 4; ++column)
            columns[4 * column + row] = matrix.m[row][column];
    return columns;
}

void clearPicture()
{
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glBindTexture(GL_TEXTURE_2D, contextTexture());
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP);
}

// Call with the identity as modelview matrix: the light stays with the eye.
void placeLight()
{
    constexpr GLfloat position[4] = {1.0f, 1.0f, 1.0f, 0.0f};
    constexpr GLfloat ambient[4] = {0.25f, 0.25f, 0.25f, 1.0f};
    constexpr GLfloat diffuse[4] = {0.75f, 0.75f, 0.75f, 1.0f};
    glLightfv(GL_LIGHT0, GL_POSITION, position);
    glLightfv(GL_LIGHT0, GL_AMBIENT, ambient);
    glLightfv(GL_LIGHT0, GL_DIFFUSE, diffuse);
}

// Leaves the matrix mode at GL_MODELVIEW.
void loadProjection(const Matrix4 &projection)
{
    glMatrixMode(GL_PROJECTION);
    glLoadMatrixd(columnMajor(projection).data());
    glMatrixMode(GL_MODELVIEW);
}

// Makes clip planes work without perspective, for as long as it lives; see invertibleProjection().
class ClippableScope
{
public:
    ClippableScope(const Matrix4 &projection, bool isNeeded)
        : former(projection)
        , needed(isNeeded)
    {
        if (!needed)
            return;
        loadProjection(invertibleProjection(projection));
        glDepthRange(0.5, 0.5);
    }
    ~ClippableScope()
    {
        if (!needed)
            return;
        glDepthRange(0.0, 1.0);
        loadProjection(former);
    }
    ClippableScope(const ClippableScope &) = delete;
    ClippableScope &operator=(const ClippableScope &) = delete;

private:
    const Matrix4 &former;
    bool needed;
};

// Cuts away what is not on the side of the pass. Call with the view matrix loaded: the plane is in world
// coordinates.
void clipForPass(Pass pass, const Plane &plane)
{
    if (pass == Pass::On)
        return;
    const double sign = pass == Pass::Before ? 1.0 : -1.0;
    const GLdouble equation[4] = {sign * plane.a, sign * plane.b, sign * plane.c, sign * plane.d};
    glClipPlane(GL_CLIP_PLANE0, equation);
    glEnable(GL_CLIP_PLANE0);
}

} // namespace

void QStackedSliceView::initializeGL()
{
    glShadeModel(GL_SMOOTH);
    glClearColor(0.0f, 0.0f, 0.0f, 0.0f);
    glClearDepth(0.0);
    glDepthFunc(GL_GEQUAL);
    glHint(GL_PERSPECTIVE_CORRECTION_HINT, GL_NICEST);
    glEnable(GL_BLEND);
    glEnable(GL_TEXTURE_2D);
}

// Logical pixels, as the mouse has them; the toolkit sets the viewport in those of the screen.
void QStackedSliceView::resizeGL(int newWidth, int newHeight)
{
    viewState.width = std::max(newWidth, 1);
    viewState.height = newHeight == 0 ? 1 : newHeight;
    rebuildProjection();
}

void QStackedSliceView::paintGL()
{
    const QScopedValueRollback<bool> guard(painting, true);
    const GlPixelScaleScope pixelScale(devicePixelRatioF());
    clearPicture();
    // Anew each time: the context may be another one than at the last resize.
    loadProjection(viewState.projectionMatrix);
    glLoadIdentity();
    glPushMatrix();
    placeLight();
    glLoadMatrixd(columnMajor(viewState.viewMatrix).data());
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    paintObjects();
    drawEdgeMarks(viewState.edgeMarkers, composition->granularity());
    if (viewState.rubberBandAlpha > 0.0f)
        drawRubberBand(viewState.rubberBandCorners, viewState.rubberBandAlpha);
    glPopMatrix();
    if (viewState.cubeActive || viewState.cubeAlpha > 0.0f)
        drawCube(viewState.cubeAngle, viewState.cubeAlpha);
}

void QStackedSliceView::paintObjects()
{
    for (int row = 0; row < composition->podCount(); ++row)
        composition->pod(row)->object()->beforePaint();
    const auto back = inverseOf(viewState.viewMatrix);
    const ClippableScope clippable(viewState.projectionMatrix, viewState.perspectiveStrength == 0.0f);
    const double normalZ = back ? transformedPlane(*back, viewState.workingPlane).c : 0.0;
    for (const Pass pass : passOrder(normalZ)) {
        for (int row = 0; row < composition->podCount(); ++row) {
            clipForPass(pass, viewState.workingPlane);
            paintPod(*composition->pod(row), drawingFor(composition->pod(row)->displayScope(), pass));
            glDisable(GL_CLIP_PLANE0);
        }
    }
}

void QStackedSliceView::paintPod(GraphicsPod &pod, Drawing drawing)
{
    const Vector4 &cursor = viewState.cursorWorld;
    const Plane &plane = viewState.workingPlane;
    const double coefficients[4] = {plane.a, plane.b, plane.c, plane.d};
    switch (drawing) {
    case Drawing::Point:
        if (isFinite(cursor))
            pod.renderPoint(this, static_cast<float>(cursor[0]), static_cast<float>(cursor[1]),
                            static_cast<float>(cursor[2]));
        break;
    case Drawing::Plane:
        pod.renderPlane(this, coefficients);
        break;
    case Drawing::Whole:
        pod.render(this);
        break;
    case Drawing::Nothing:
        break;
    }
}
