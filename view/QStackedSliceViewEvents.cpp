// Mouse, wheel, keys and the animation timer of the stacked slice view.
#include "view/QStackedSliceView.h"

#include "view/ImageComposition.h"
#include "view/camera/CameraMotion.h"
#include "view/camera/Projection.h"
#include "view/interaction/InteractionMode.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QTimerEvent>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <iostream>
#include <optional>

namespace {

constexpr double keyStepPixels = 10.0;
constexpr double wheelUnitsPerDoubling = 300.0;
constexpr float fadePerTick = 0.05f;
constexpr float rubberBandAlpha = 0.5f;

std::optional<InteractMode> modeOfKey(int key)
{
    switch (key) {
    case Qt::Key_Space:
        return InteractMode::Move;
    case Qt::Key_Z:
        return InteractMode::Zoom;
    case Qt::Key_W:
        return InteractMode::Window;
    case Qt::Key_T:
        return InteractMode::Trace;
    case Qt::Key_P:
        return InteractMode::Perspective;
    case Qt::Key_G:
        return InteractMode::Guess;
    case Qt::Key_E:
        return InteractMode::Erase;
    case Qt::Key_L:
        return InteractMode::Load;
    default:
        return std::nullopt;
    }
}

// With Alt held the step of a wheel arrives as a horizontal one. Other horizontal steps, and events that only
// begin or end a gesture, are no steps.
int wheelDelta(const QWheelEvent &event)
{
    const QPoint delta = event.angleDelta();
    if (delta.y() == 0 && event.modifiers().testFlag(Qt::AltModifier))
        return delta.x();
    return delta.y();
}

// Whether a position may be that of the other before it was rounded to whole numbers.
bool areSamePixel(const QPointF &position, const QPointF &rounded)
{
    const QPointF apart = position - rounded;
    return std::max(std::abs(apart.x()), std::abs(apart.y())) < 1.0;
}

float faded(float alpha, double ticks)
{
    return std::max(0.0f, alpha - static_cast<float>(ticks) * fadePerTick);
}

} // namespace

QPointF QStackedSliceView::centred(const QPointF &position) const
{
    const QPoint middle(viewState.width / 2, viewState.height / 2); // a whole logical pixel
    return {position.x() - middle.x(), middle.y() - position.y()};
}

// Where the pointer is in view space. On a screen of high resolution it also stands between the whole
// numbers; the toolkit rounds positions in a widget to these, and not those in its window.
QPointF QStackedSliceView::pointerOf(const QMouseEvent &event) const
{
    const QPointF rounded = event.position().toPoint();
    if (!(devicePixelRatioF() > 1.0))
        return centred(rounded);
    const QPointF exact = mapFrom(window(), event.scenePosition());
    return centred(areSamePixel(exact, rounded) ? exact : rounded);
}

// Points the pick ray at a position in view space and recomputes the cursor.
void QStackedSliceView::aim(const QPointF &position)
{
    viewState.eyePoint = eyeOf(static_cast<double>(viewState.perspectiveShearX),
                               static_cast<double>(viewState.perspectiveShearY),
                               static_cast<double>(viewState.perspectiveStrength));
    viewState.mousePoint = {position.x(), position.y(), 0.0, 1.0};
    updateCursor();
}

// Every mouse event: the cursor first, then the mode. A handler may run a message box during which this view
// is deleted.
template <typename Handle>
void QStackedSliceView::handleMouse(const QMouseEvent &event, const Handle &handle)
{
    pointer = pointerOf(event);
    MouseInput input;
    input.position = pointer.toPoint();
    input.movement = input.position - viewState.lastPosition;
    input.button = event.button();
    input.buttons = event.buttons();
    input.modifiers = event.modifiers();
    viewState.lastPosition = input.position;
    const QPointer<QStackedSliceView> alive(this);
    aim(pointer);
    if (InteractionMode *mode = alive ? presentMode() : nullptr)
        handle(*mode, input);
}

void QStackedSliceView::mousePressEvent(QMouseEvent *event)
{
    viewState.pressPosition = pointerOf(*event).toPoint();
    handleMouse(*event, [](InteractionMode &mode, const MouseInput &input) { mode.press(input); });
}

void QStackedSliceView::mouseReleaseEvent(QMouseEvent *event)
{
    handleMouse(*event, [](InteractionMode &mode, const MouseInput &input) { mode.release(input); });
}

void QStackedSliceView::mouseMoveEvent(QMouseEvent *event)
{
    handleMouse(*event, [](InteractionMode &mode, const MouseInput &input) { mode.move(input); });
}

void QStackedSliceView::mouseDoubleClickEvent(QMouseEvent *event)
{
    viewState.pressPosition = pointerOf(*event).toPoint();
    handleMouse(*event, [](InteractionMode &mode, const MouseInput &input) {
        if (!mode.doubleClick(input))
            mode.press(input);
    });
}

void QStackedSliceView::wheelEvent(QWheelEvent *event)
{
    // A wheel event has rounded positions only: the pointer is where it was at the last mouse event.
    const QPointF rounded = centred(event->position().toPoint());
    const QPointF position = areSamePixel(pointer, rounded) ? pointer : rounded;
    viewState.lastPosition = position.toPoint();
    aim(position);
    event->accept();
    const int delta = wheelDelta(*event);
    if (delta == 0)
        return;
    if (!event->modifiers().testFlag(Qt::ControlModifier)) {
        stepSlice(delta >= 1);
        return;
    }
    std::cout << "wheelEvent->delta() = " << delta << std::endl;
    const double factor = std::exp2(delta / wheelUnitsPerDoubling);
    scaleTarget(factor);
    translateTarget((1.0 - factor) * position.x(), (1.0 - factor) * position.y());
}

void QStackedSliceView::stepSlice(bool next)
{
    const float z = viewState.workingZ;
    setWorkingZ(next ? composition->nextSignificantZ(z) : composition->previousSignificantZ(z));
    repaintNow();
}

bool QStackedSliceView::event(QEvent *event)
{
    if (event->type() == QEvent::ScreenChangeInternal) {
        const bool handled = QOpenGLWidget::event(event);
        screenChanged();
        return handled;
    }
    const bool isPress = event->type() == QEvent::KeyPress;
    if (!isPress && event->type() != QEvent::KeyRelease)
        return QOpenGLWidget::event(event);
    auto *keyEvent = static_cast<QKeyEvent *>(event);
    if (keyEvent->key() != Qt::Key_Tab)
        return QOpenGLWidget::event(event);
    // A Tab must not move the focus away, neither here nor in the parents, which get what is not accepted.
    if (isPress)
        keyPressEvent(keyEvent);
    keyEvent->accept();
    return true;
}

void QStackedSliceView::keyPressEvent(QKeyEvent *event)
{
    const bool handled = handleRepeatingKey(*event) ||
                         (!event->isAutoRepeat() && (handleModeKey(*event) || handleOtherKey(*event)));
    event->setAccepted(handled);
}

bool QStackedSliceView::handleRepeatingKey(const QKeyEvent &event)
{
    const bool control = event.modifiers().testFlag(Qt::ControlModifier);
    switch (event.key()) {
    case Qt::Key_Plus:
        if (control)
            scaleTarget(1.1);
        return control;
    case Qt::Key_Minus:
        if (control)
            scaleTarget(0.9);
        return control;
    case Qt::Key_Up:
        translateView(0.0, -keyStepPixels);
        return true;
    case Qt::Key_Down:
        translateView(0.0, keyStepPixels);
        return true;
    case Qt::Key_Left:
        translateView(keyStepPixels, 0.0);
        return true;
    case Qt::Key_Right:
        translateView(-keyStepPixels, 0.0);
        return true;
    case Qt::Key_PageUp:
        stepSlice(false);
        return true;
    case Qt::Key_PageDown:
        stepSlice(true);
        return true;
    default:
        return false;
    }
}

bool QStackedSliceView::handleModeKey(const QKeyEvent &event)
{
    const auto mode = modeOfKey(event.key());
    if (!mode)
        return false;
    if (event.modifiers().testFlag(Qt::ShiftModifier))
        setBaseMode(*mode);
    else
        enterMode(*mode);
    return true;
}

bool QStackedSliceView::handleOtherKey(const QKeyEvent &event)
{
    const bool control = event.modifiers().testFlag(Qt::ControlModifier);
    if (control && (event.key() == Qt::Key_C || event.key() == Qt::Key_D)) {
        requestRepaint(); // the marks that these keys take away are never set
        return true;
    }
    switch (event.key()) {
    case Qt::Key_ScrollLock:
        scrollLocked = !scrollLocked;
        return true;
    case Qt::Key_N:
        composition->selectNextGraphicsObjectForEditing();
        return true;
    case Qt::Key_F11:
        isFullScreenView() ? leaveFullScreen() : enterFullScreen();
        return true;
    case Qt::Key_Escape:
        if (!isFullScreenView())
            return false;
        leaveFullScreen();
        return true;
    default:
        return false;
    }
}

void QStackedSliceView::keyReleaseEvent(QKeyEvent *event)
{
    const auto mode = modeOfKey(event->key());
    const bool ends = mode && !event->isAutoRepeat() && viewState.interactMode == *mode;
    if (ends)
        enterMode(viewState.interactBaseMode);
    event->setAccepted(ends);
}

void QStackedSliceView::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != timerId) {
        QOpenGLWidget::timerEvent(event);
        return;
    }
    const double elapsedMs = tickClock.isValid() ? static_cast<double>(tickClock.restart()) : -1.0;
    if (elapsedMs < 0.0)
        tickClock.start();
    if (animate(animationSteps(elapsedMs)))
        repaintNow();
}

// Moves everything that moves by itself on by this many ticks. True if that shows.
bool QStackedSliceView::animate(double ticks)
{
    bool shows = false;
    if (viewState.animatingView) {
        const Approach result = approach(viewState.viewMatrix, viewState.targetViewMatrix, ticks);
        if (result.reached) {
            std::cout << "Target view matrix reached." << std::endl;
            viewState.animatingView = false;
            viewState.rubberBandActive = false;
        }
        shows = result.moved;
    }
    if (viewState.rubberBandActive && viewState.rubberBandAlpha < rubberBandAlpha) {
        viewState.rubberBandAlpha = rubberBandAlpha;
        shows = true;
    } else if (!viewState.rubberBandActive && viewState.rubberBandAlpha > 0.0f) {
        viewState.rubberBandAlpha = faded(viewState.rubberBandAlpha, ticks);
        shows = true;
    }
    if (viewState.cubeActive || viewState.cubeAlpha > 0.0f) {
        viewState.cubeAngle += 1.0f; // per tick of the timer, however late it comes
        if (!viewState.cubeActive)
            viewState.cubeAlpha = faded(viewState.cubeAlpha, ticks);
        shows = true;
    }
    return std::exchange(viewState.repaintPending, false) || shows;
}
