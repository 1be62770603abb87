#include "view/interaction/MoveMode.h"

#include "view/ImageComposition.h"
#include "view/QStackedSliceView.h"
#include "view/camera/CameraMotion.h"

#include <cmath>
#include <iostream>

namespace {

constexpr int pixelsPerSlice = 12;
constexpr double planeShiftPerPixel = 0.1;
constexpr double radiansPerPixel = 0.01;

void printPlane(const char *heading, const Plane &plane)
{
    std::cout << heading << plane.a << ' ' << plane.b << ' ' << plane.c << ' ' << plane.d << std::endl;
}

} // namespace

void MoveMode::press(const MouseInput &input)
{
    if (input.button == Qt::LeftButton)
        view.setCursor(view.cursors().fist);
}

void MoveMode::release(const MouseInput &input)
{
    if (input.button == Qt::LeftButton)
        view.setCursor(view.cursors().hand);
}

void MoveMode::move(const MouseInput &input)
{
    const QPoint moved = input.movement;
    if (input.buttons.testFlag(Qt::LeftButton)) {
        view.translateView(moved.x(), moved.y());
    } else if (input.buttons.testFlag(Qt::MiddleButton)) {
        if (state.workingPlane.a == 0.0 && state.workingPlane.b == 0.0)
            stepSlices(input.position.y());
        else
            shiftPlane(moved.y());
        view.updateCursor();
        view.requestRepaint();
    } else if (input.buttons.testFlag(Qt::RightButton)) {
        const bool turnsCamera = !input.modifiers.testFlag(Qt::ShiftModifier);
        view.rotate(-moved.y() * radiansPerPixel, moved.x() * radiansPerPixel, 0.0, turnsCamera, turnsCamera);
    }
}

void MoveMode::stepSlices(int pointerY)
{
    const ImageComposition &composition = *view.imageComposition();
    while (pointerY - state.pressPosition.y() > pixelsPerSlice) {
        view.setWorkingZ(composition.nextSignificantZ(state.workingZ));
        state.pressPosition.ry() += pixelsPerSlice;
    }
    while (pointerY - state.pressPosition.y() < -pixelsPerSlice) {
        view.setWorkingZ(composition.previousSignificantZ(state.workingZ));
        state.pressPosition.ry() -= pixelsPerSlice;
    }
}

void MoveMode::shiftPlane(int dy)
{
    Plane plane = state.workingPlane;
    plane.d += dy * planeShiftPerPixel / std::hypot(plane.a, plane.b, plane.c);
    view.setWorkingPlane(plane);
    printPlane("Working plane:        ", plane);
}

bool MoveMode::doubleClick(const MouseInput &input)
{
    if (input.button == Qt::LeftButton)
        view.fitView();
    else if (input.button == Qt::RightButton && input.modifiers.testFlag(Qt::ShiftModifier))
        turnPlaneOntoAxis();
    else if (input.button == Qt::RightButton)
        view.snapTargetToAxis();
    else
        return false;
    return true;
}

void MoveMode::turnPlaneOntoAxis()
{
    if (!isFinite(state.cursorWorld))
        return;
    printPlane("Working plane before: ", state.workingPlane);
    view.setWorkingPlane(turnedOntoAxis(state.workingPlane, state.cursorWorld));
    printPlane("Working plane after:  ", state.workingPlane);
    view.requestRepaint();
}
