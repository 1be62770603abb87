#pragma once

#include "view/interaction/InteractionMode.h"

#include <QCoreApplication>

// Shift click: deletes the segments under the cursor.
class EraseMode : public InteractionMode
{
    Q_DECLARE_TR_FUNCTIONS(EraseMode)

public:
    using InteractionMode::InteractionMode;

    void press(const MouseInput &input) override;
};
