#include "view/interaction/EraseMode.h"

#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursSegment.h"
#include "view/ImageComposition.h"
#include "view/QStackedSliceView.h"
#include "view/RepaintCollector.h"
#include "view/interaction/SegmentSearch.h"
#include "view/interaction/ToolMessages.h"

namespace {

constexpr float eraseSteps = 0.5f; // of the composition's granularity

} // namespace

void EraseMode::press(const MouseInput &input)
{
    if (!input.modifiers.testFlag(Qt::ShiftModifier)) {
        ToolMessages::warn(&view, tr("Erasing single contour points not yet implemented. Hold the Shift key "
                                     "and click to erase a contour segment."));
        return;
    }
    SlicedContoursFragment *fragment = editedFragment(*view.imageComposition());
    if (fragment == nullptr) {
        ToolMessages::warn(&view,
                           tr("Erasing requires a Sliced Contours Fragment to be selected for editing."));
        return;
    }
    if (!isFinite(state.cursorWorld))
        return;
    const RepaintCollector repaint(view);
    const float radius = eraseSteps * view.imageComposition()->granularity();
    const std::vector<QPointer<SlicedContoursSegment>> doomed = [&] {
        const auto near =
            segmentsNear(*fragment, state.cursorWorld[0], state.cursorWorld[1], state.cursorWorld[2], radius);
        return std::vector<QPointer<SlicedContoursSegment>>(near.begin(), near.end());
    }();
    for (const auto &segment : doomed) // who is told of one may delete another
        delete segment;
    if (!doomed.empty())
        view.requestRepaint();
}
