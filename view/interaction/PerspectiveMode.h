#pragma once

#include "view/interaction/InteractionMode.h"

// Left drag: where things vanish to. Right drag: how strongly. A spinning box shows the effect.
class PerspectiveMode : public InteractionMode
{
public:
    using InteractionMode::InteractionMode;

    void enter() override;
    void leave() override;
    void move(const MouseInput &input) override;
    bool doubleClick(const MouseInput &input) override;
};
