#pragma once

#include "view/interaction/InteractionMode.h"

// Changes the window of grey values of the image that the composition names.
class WindowMode : public InteractionMode
{
public:
    using InteractionMode::InteractionMode;

    void move(const MouseInput &input) override;
    bool doubleClick(const MouseInput &input) override;
};
