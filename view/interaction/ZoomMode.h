#pragma once

#include "view/interaction/InteractionMode.h"

// Click: twice (left) or half (right) as large. Left drag: a rectangle to enlarge.
class ZoomMode : public InteractionMode
{
public:
    using InteractionMode::InteractionMode;

    void press(const MouseInput &input) override;
    void move(const MouseInput &input) override;
    void release(const MouseInput &input) override;

private:
    bool isClick(const QPoint &position) const;
    void stretchRectangle(const QPoint &position);
    void zoomToRectangle(const QPoint &position);
};
