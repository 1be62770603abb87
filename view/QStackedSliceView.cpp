#include "view/QStackedSliceView.h"

#include "contours/SlicedContoursSegment.h"
#include "objects/ImageObject.h"
#include "platform/GlState.h"
#include "platform/HasOpenGl.h"
#include "view/FullScreenPlace.h"
#include "view/GraphicsPod.h"
#include "view/ImageComposition.h"
#include "view/camera/CameraMotion.h"
#include "view/camera/Projection.h"
#include "view/interaction/InteractionMode.h"

#include <QApplication>
#include <QScreen>
#include <QSurfaceFormat>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr int tickMs = 20;
constexpr int smallestSize = 200;
constexpr float strongestPerspective = 0.001f;
constexpr std::uint32_t lineWidthFactor = 2;

// The compatibility profile: a version above 2.1 would be a core profile without what is drawn with here.
QSurfaceFormat viewFormat()
{
    QSurfaceFormat format;
    format.setRenderableType(QSurfaceFormat::OpenGL);
    format.setVersion(2, 1);
    format.setSwapBehavior(QSurfaceFormat::DoubleBuffer);
    format.setDepthBufferSize(24);
    format.setAlphaBufferSize(8);
    return format;
}

} // namespace

QStackedSliceView::QStackedSliceView(QWidget *parent, ImageComposition *shownComposition)
    : QOpenGLWidget(parent)
    , composition(shownComposition != nullptr ? shownComposition : new ImageComposition(this))
{
    setFormat(viewFormat());
    setWindowTitle(tr("Stacked Slice View"));
    setMinimumSize(smallestSize, smallestSize);
    setMouseTracking(true);
    setAttribute(Qt::WA_DeleteOnClose);
    setFocusPolicy(Qt::StrongFocus);
    loadCursors(screen()->devicePixelRatio()); // the view itself does not know its own before it is shown
    makeModes();
    connect(composition, &ImageComposition::updated, this, &QStackedSliceView::imageCompositionUpdated);
    connect(composition, &ImageComposition::objectClosing, this, &QStackedSliceView::objectClosing);
    timerId = startTimer(tickMs);
    setInteractBaseModeMove();
}

QStackedSliceView::~QStackedSliceView()
{
    // The composition may tell of changes while parts of this view go.
    disconnect(composition, nullptr, this, nullptr);
    if (context() != nullptr) {
        makeCurrent();
        deleteContextTexture();
        doneCurrent();
    }
}

void QStackedSliceView::translateView(double dx, double dy)
{
    const Matrix4 step = translation(dx, dy, 0.0);
    viewState.viewMatrix = product(step, viewState.viewMatrix);
    viewState.targetViewMatrix = product(step, viewState.targetViewMatrix);
    requestRepaint();
}

void QStackedSliceView::translateTarget(double dx, double dy)
{
    viewState.targetViewMatrix = product(translation(dx, dy, 0.0), viewState.targetViewMatrix);
    viewState.animatingView = true;
}

void QStackedSliceView::scaleTarget(double factor)
{
    viewState.targetViewMatrix = product(scaling(factor), viewState.targetViewMatrix);
    viewState.animatingView = true;
}

void QStackedSliceView::rotate(double rx, double ry, double rz, bool rotateCamera, bool keepPlane)
{
    const Matrix4 turn = rotation(rx, ry, rz);
    if (rotateCamera) {
        viewState.targetViewMatrix = product(turn, viewState.targetViewMatrix);
        viewState.viewMatrix = product(turn, viewState.viewMatrix);
    }
    if (!keepPlane) {
        Matrix4 back;
        MERV::transpose(turn, back);
        setWorkingPlane(transformedPlane(back, viewState.workingPlane));
    }
    requestRepaint();
}

void QStackedSliceView::snapTargetToAxis()
{
    viewState.targetViewMatrix = snappedToAxis(viewState.targetViewMatrix);
    viewState.animatingView = true;
}

void QStackedSliceView::setWorkingZ(float z)
{
    viewState.workingPlane = {0.0, 0.0, 1.0, -static_cast<double>(z)};
    viewState.workingPlaneAxial = true;
    viewState.workingZ = z;
    updateCursor();
}

void QStackedSliceView::setWorkingPlane(const Plane &plane)
{
    viewState.workingPlane = plane;
    viewState.workingPlaneAxial = plane.a == 0.0 && plane.b == 0.0;
    if (viewState.workingPlaneAxial)
        viewState.workingZ = static_cast<float>(-plane.d / plane.c);
}

void QStackedSliceView::fitView()
{
    viewState.targetViewMatrix =
        fittedView(static_cast<double>(composition->extentX()), static_cast<double>(composition->extentY()),
                   viewState.width, viewState.height);
    viewState.animatingView = true;
}

void QStackedSliceView::resetView()
{
    fitView();
    viewState.viewMatrix = viewState.targetViewMatrix;
    viewState.animatingView = false;
    if (const GraphicsPod *pod = composition->pod(0); pod != nullptr && pod->object()->hasContent()) {
        const float z = pod->object()->firstSignificantZ();
        if (std::isfinite(z) && z < std::numeric_limits<float>::max()) // which stands for none
            setWorkingZ(z);
    }
    requestRepaint();
}

void QStackedSliceView::setPerspective(float shearX, float shearY, float strength)
{
    viewState.perspectiveShearX = std::clamp(shearX, -1.0f, 1.0f);
    viewState.perspectiveShearY = std::clamp(shearY, -1.0f, 1.0f);
    viewState.perspectiveStrength = std::clamp(strength, 0.0f, strongestPerspective);
    rebuildProjection();
    requestRepaint();
}

void QStackedSliceView::rebuildProjection()
{
    viewState.projectionMatrix = projectionMatrix(
        viewState.width, viewState.height, static_cast<double>(viewState.perspectiveShearX),
        static_cast<double>(viewState.perspectiveShearY), static_cast<double>(viewState.perspectiveStrength));
}

QString QStackedSliceView::coordinatesText() const
{
    const Vector4 &at = viewState.cursorWorld;
    return tr("x = %L1 mm; y = %L2 mm; z = %L3 mm")
        .arg(at[0], 0, 'f', 3)
        .arg(at[1], 0, 'f', 3)
        .arg(at[2], 0, 'f', 3);
}

void QStackedSliceView::updateCursor()
{
    const auto back = inverseOf(viewState.viewMatrix);
    if (!back)
        return;
    const Vector4 meeting = meetingPoint(viewState.eyePoint, viewState.mousePoint,
                                         transformedPlane(*back, viewState.workingPlane));
    viewState.cursorView = divided(meeting);
    viewState.cursorWorld = divided(transformed(*back, meeting));
    // Exactly on the plane, so that all that is drawn on it shares one z.
    if (viewState.workingPlaneAxial)
        viewState.cursorWorld[2] = static_cast<double>(viewState.workingZ);
    emit currentCoordinatesChanged();
}

void QStackedSliceView::requestRepaint()
{
    viewState.repaintPending = true;
}

// repaint() would be put off to the next refresh of the screen; a pending update that is sent at once is not.
void QStackedSliceView::repaintNow()
{
    if (collectingRepaints > 0) {
        repaintCollected = true;
        return;
    }
    update();
    if (!painting)
        QCoreApplication::sendPostedEvents(window(), QEvent::UpdateRequest);
}

void QStackedSliceView::imageCompositionUpdated()
{
    repaintNow();
}

void QStackedSliceView::objectClosing(ImageObject *closing)
{
    for (QPointer<SlicedContoursSegment> *held : {&viewState.activeSegment, &viewState.anchorSegment})
        if (*held && rootImageObject(*held) == closing)
            *held = nullptr;
    viewState.edgeMarkers.clear();
    requestRepaint();
}

bool QStackedSliceView::overrides(GraphicsObject *object, int key, int subKey)
{
    if (key == RenderKey::Highlight || key == RenderKey::Dashed || key == RenderKey::LineWidthFactor)
        return true;
    return composition->overrides(object, key, subKey);
}

std::uint32_t QStackedSliceView::value(GraphicsObject *object, int key, int subKey)
{
    switch (key) {
    case RenderKey::Highlight:
        return viewState.activeSegment == object ? 1 : 0;
    case RenderKey::Dashed:
        return viewState.dashedSegments ? 1 : 0;
    case RenderKey::LineWidthFactor:
        return lineWidthFactor;
    default:
        return composition->value(object, key, subKey);
    }
}

bool QStackedSliceView::isFullScreenView() const
{
    return savedPlace != nullptr;
}

// The context is shared with the other windows of the program and lives on across the change of parents.
void QStackedSliceView::enterFullScreen()
{
    if (isFullScreenView() || !hasOpenGl())
        return;
    const QIcon icon = window()->windowIcon();
    savedPlace = std::make_unique<FullScreenPlace>(*this);
    setWindowIcon(icon);
    showFullScreen();
    setFocus();
}

void QStackedSliceView::leaveFullScreen()
{
    if (!isFullScreenView())
        return;
    showNormal();
    savedPlace->restore(*this);
    savedPlace.reset();
    show();
    if (window() != this)
        window()->setFocusProxy(this);
    window()->activateWindow();
    // The toolkit takes the window as focused already when that of the full screen goes, and would not tell.
    QApplication::setActiveWindow(window());
    setFocus();
}
