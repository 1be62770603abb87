#pragma once

#include "objects/Vector3.h"
#include "view/interaction/InteractionMode.h"

#include <QCoreApplication>
#include <QList>

class SlicedContoursFragment;

// Left click: start. Right click: end of a line that is guessed along edge points, after the model of a
// neighbouring slice.
class GuessMode : public InteractionMode
{
    Q_DECLARE_TR_FUNCTIONS(GuessMode)

public:
    using InteractionMode::InteractionMode;

    void press(const MouseInput &input) override;

private:
    void guess(SlicedContoursFragment &fragment);
    bool draw(SlicedContoursFragment &fragment, const QList<Vector3> &path);
};
