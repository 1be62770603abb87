#pragma once

#include "view/interaction/InteractionMode.h"

// Left drag: moves the picture. Middle drag: steps through slices, or shifts an oblique plane. Right drag:
// turns the camera, or the plane with Shift.
class MoveMode : public InteractionMode
{
public:
    using InteractionMode::InteractionMode;

    void press(const MouseInput &input) override;
    void move(const MouseInput &input) override;
    void release(const MouseInput &input) override;
    bool doubleClick(const MouseInput &input) override;

private:
    void stepSlices(int pointerY);
    void shiftPlane(int dy);
    void turnPlaneOntoAxis();
};
