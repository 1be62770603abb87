#include "view/interaction/GuessMode.h"

#include "contours/EdgePointSelection.h"
#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursSegment.h"
#include "view/ImageComposition.h"
#include "view/QStackedSliceView.h"
#include "view/RepaintCollector.h"
#include "view/interaction/GuessPath.h"
#include "view/interaction/SegmentSearch.h"
#include "view/interaction/ToolMessages.h"

#include <algorithm>
#include <memory>

namespace {

// In steps of the analyzed object's granularity.
constexpr float guideSteps = 10.0f;
constexpr float anchorSteps = 0.5f;
constexpr float startSnapSteps = 2.0f;
constexpr float endSnapMm = 2.0f; // on purpose not in steps

Vector3 snapped(ImageComposition &composition, const Vector3 &position, float radius)
{
    const std::unique_ptr<EdgePointList> near(
        composition.edgePointsNear(static_cast<float>(position.x), static_cast<float>(position.y),
                                   static_cast<float>(position.z), radius));
    const EdgePoint best = bestEdgePoint(*near, position.x, position.y, position.z);
    return {static_cast<double>(best.x), static_cast<double>(best.y), static_cast<double>(best.z)};
}

// The first segment near both ends, perhaps on a neighbouring slice.
SlicedContoursSegment *guideOf(SlicedContoursFragment &fragment, const Vector3 &a, const Vector3 &b,
                               float radius)
{
    const auto nearB = segmentsNear(fragment, b.x, b.y, b.z, radius);
    for (SlicedContoursSegment *segment : segmentsNear(fragment, a.x, a.y, a.z, radius))
        if (std::find(nearB.begin(), nearB.end(), segment) != nearB.end())
            return segment;
    return nullptr;
}

} // namespace

void GuessMode::press(const MouseInput &input)
{
    if (!isFinite(state.cursorWorld))
        return;
    if (input.button == Qt::LeftButton) {
        state.guessStart = {static_cast<float>(state.cursorWorld[0]),
                            static_cast<float>(state.cursorWorld[1]),
                            static_cast<float>(state.cursorWorld[2])};
        state.guessStartSet = true;
        return;
    }
    if (input.button != Qt::RightButton)
        return;
    if (!state.guessStartSet) {
        ToolMessages::inform(&view, tr("Use the left button of the mouse first to set a start point."));
        return;
    }
    SlicedContoursFragment *fragment = editedFragment(*view.imageComposition());
    if (fragment == nullptr) {
        ToolMessages::warn(
            &view, tr("Guessing edges requires a Sliced Contours Fragment to be selected for editing."));
        return;
    }
    guess(*fragment);
}

void GuessMode::guess(SlicedContoursFragment &fragment)
{
    ImageComposition &composition = *view.imageComposition();
    const float step = composition.analyzedGranularity();
    const Vector3 a{static_cast<double>(state.guessStart[0]), static_cast<double>(state.guessStart[1]),
                    static_cast<double>(state.guessStart[2])};
    const Vector3 b{state.cursorWorld[0], state.cursorWorld[1], state.cursorWorld[2]};
    SlicedContoursSegment *guide = guideOf(fragment, a, b, guideSteps * step);
    state.anchorSegment = firstOther(segmentsNear(fragment, a.x, a.y, a.z, anchorSteps * step), {});

    const Vector3 start = snapped(composition, a, startSnapSteps * step);
    const Vector3 end = snapped(composition, b, endSnapMm);
    const std::vector<QPointF> guidePoints =
        guide != nullptr ? guide->snapshot().points : std::vector<QPointF>();
    const QList<Vector3> path = guessPath(start, end, guidePoints);

    state.guessStartSet = false;
    if (!draw(fragment, path))
        ToolMessages::inform(&view, tr("Unable to guess a segment."));
}

// Into the anchor, else into a new line at the start of the path. False, and no line, if there is no way.
bool GuessMode::draw(SlicedContoursFragment &fragment, const QList<Vector3> &path)
{
    const RepaintCollector repaint(view);
    SlicedContoursSegment *target = state.anchorSegment;
    state.anchorSegment = nullptr;
    if (target == nullptr)
        target = fragment.newSegment({path.first().x, path.first().y}, static_cast<float>(path.first().z));
    target->beginUpdates();
    guessSegment(target, path, view.imageComposition());
    const bool guessed = target->pointCount() >= 2;
    if (guessed)
        target->endUpdates();
    else
        delete target;
    return guessed;
}
