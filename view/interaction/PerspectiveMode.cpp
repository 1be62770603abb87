#include "view/interaction/PerspectiveMode.h"

#include "view/QStackedSliceView.h"

namespace {

constexpr float shearPerPixel = 1.0f / 1000.0f;
constexpr float strengthPerPixel = 1.0f / 100000.0f;

} // namespace

void PerspectiveMode::enter()
{
    state.cubeActive = true;
    state.cubeAlpha = 1.0f;
}

void PerspectiveMode::leave()
{
    state.cubeActive = false;
}

void PerspectiveMode::move(const MouseInput &input)
{
    const auto dx = static_cast<float>(input.movement.x());
    const auto dy = static_cast<float>(input.movement.y());
    if (input.buttons.testFlag(Qt::LeftButton))
        view.setPerspective(state.perspectiveShearX + dx * shearPerPixel,
                            state.perspectiveShearY + dy * shearPerPixel, state.perspectiveStrength);
    else if (input.buttons.testFlag(Qt::RightButton))
        view.setPerspective(state.perspectiveShearX, state.perspectiveShearY,
                            state.perspectiveStrength - dy * strengthPerPixel);
}

bool PerspectiveMode::doubleClick(const MouseInput &input)
{
    if (input.button == Qt::LeftButton)
        view.setPerspective(0.0f, 0.0f, state.perspectiveStrength);
    else if (input.button == Qt::RightButton)
        view.setPerspective(state.perspectiveShearX, state.perspectiveShearY, 0.0f);
    else
        return false;
    return true;
}
