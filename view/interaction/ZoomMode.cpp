#include "view/interaction/ZoomMode.h"

#include "view/QStackedSliceView.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace {

constexpr int clickPixels = 5; // a movement below this in x and y is a click

Vector4 onScreen(double x, double y)
{
    return {x, y, 0.0, 1.0};
}

} // namespace

bool ZoomMode::isClick(const QPoint &position) const
{
    const QPoint moved = position - state.pressPosition;
    return std::abs(moved.x()) < clickPixels && std::abs(moved.y()) < clickPixels;
}

void ZoomMode::press(const MouseInput &input)
{
    if (input.button == Qt::LeftButton) {
        if (const auto back = inverseOf(state.viewMatrix))
            state.rubberBandCorners[0] = transformed(*back, onScreen(input.position.x(), input.position.y()));
        state.rubberBandActive = false;
        view.setCursor(view.cursors().magnifierPlus);
    } else if (input.button == Qt::RightButton) {
        view.setCursor(view.cursors().magnifierMinus);
    }
}

void ZoomMode::move(const MouseInput &input)
{
    if (!(input.buttons & (Qt::LeftButton | Qt::RightButton)))
        return;
    if (isClick(input.position))
        state.rubberBandActive = false;
    else if (input.buttons.testFlag(Qt::LeftButton))
        stretchRectangle(input.position);
    view.requestRepaint();
}

void ZoomMode::stretchRectangle(const QPoint &position)
{
    const auto back = inverseOf(state.viewMatrix);
    if (!back)
        return;
    auto &corners = state.rubberBandCorners;
    const Vector4 pressed = transformed(state.viewMatrix, corners[0]);
    corners[1] = transformed(*back, onScreen(pressed[0], position.y()));
    corners[2] = transformed(*back, onScreen(position.x(), position.y()));
    corners[3] = transformed(*back, onScreen(position.x(), pressed[1]));
    state.rubberBandActive = true;
    state.rubberBandAlpha = 0.5f;
}

void ZoomMode::release(const MouseInput &input)
{
    const QPoint at = input.position;
    if (input.button == Qt::LeftButton && isClick(at)) {
        view.scaleTarget(2.0);
        view.translateTarget(-at.x(), -at.y());
    } else if (input.button == Qt::LeftButton) {
        zoomToRectangle(at);
    } else if (input.button == Qt::RightButton && isClick(at)) {
        view.translateTarget(at.x(), at.y());
        view.scaleTarget(0.5);
    }
    view.setCursor(view.cursors().magnifier);
}

void ZoomMode::zoomToRectangle(const QPoint &position)
{
    const QPoint pressed = state.pressPosition;
    const QPoint size = position - pressed; // at least one coordinate is not 0
    // The centre in whole pixels.
    const int centreX = (pressed.x() + position.x()) / 2, centreY = (pressed.y() + position.y()) / 2;
    view.translateTarget(-centreX, -centreY);
    view.scaleTarget(std::min(std::abs(static_cast<double>(state.height) / size.y()),
                              std::abs(static_cast<double>(state.width) / size.x())));
}
