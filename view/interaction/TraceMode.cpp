#include "view/interaction/TraceMode.h"

#include "contours/EdgePointSelection.h"
#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursSegment.h"
#include "view/ImageComposition.h"
#include "view/QStackedSliceView.h"
#include "view/RepaintCollector.h"
#include "view/interaction/SegmentSearch.h"
#include "view/interaction/ToolMessages.h"

#include <cmath>
#include <memory>
#include <utility>

namespace {

constexpr float markerRadiusMm = 2.5f;
constexpr double edgeSnapMm = 0.5;
// In steps of the composition's granularity.
constexpr float endSteps = 0.5f;
constexpr float contourSteps = 2.0f;
constexpr float segmentSteps = 1.5f;
constexpr float lossSteps = 16.0f;
constexpr float lossFactor = 2.0f; // of the new piece's length

constexpr int front = -1;
constexpr int back = +1;

Vector3 cursorOf(const ViewState &state)
{
    return {state.cursorWorld[0], state.cursorWorld[1], state.cursorWorld[2]};
}

// Strictly nearer than radius in each coordinate.
bool isWithin(const QPointF &point, float z, const Vector3 &position, double radius)
{
    return std::abs(point.x() - position.x) < radius && std::abs(point.y() - position.y) < radius &&
           std::abs(static_cast<double>(z) - position.z) < radius;
}

} // namespace

void TraceMode::enter()
{
    refreshMarkers();
    view.requestRepaint();
}

void TraceMode::leave()
{
    deleteShortSegment();
    state.edgeMarkers.clear();
    state.activeSegment = nullptr;
    state.anchorSegment = nullptr;
    view.requestRepaint();
}

// A press without a movement leaves a single point, which is no line.
void TraceMode::deleteShortSegment()
{
    if (state.activeSegment && state.activeSegment->pointCount() < 2)
        delete state.activeSegment;
}

void TraceMode::refreshMarkers()
{
    state.edgeMarkers.clear();
    if (!isFinite(state.cursorWorld))
        return;
    const Vector3 cursor = cursorOf(state);
    const std::unique_ptr<EdgePointList> near(
        view.imageComposition()->edgePointsNear(static_cast<float>(cursor.x), static_cast<float>(cursor.y),
                                                static_cast<float>(cursor.z), markerRadiusMm));
    state.edgeMarkers.reserve(static_cast<std::size_t>(near->size()));
    for (const EdgePoint *point : *near)
        state.edgeMarkers.push_back(*point);
}

EdgePointList TraceMode::markers()
{
    EdgePointList list;
    list.reserve(static_cast<qsizetype>(state.edgeMarkers.size()));
    for (EdgePoint &marker : state.edgeMarkers)
        list.append(&marker);
    return list;
}

EdgePoint TraceMode::bestMarker()
{
    const Vector3 cursor = cursorOf(state);
    return bestEdgePoint(markers(), cursor.x, cursor.y, cursor.z);
}

QList<Vector3> TraceMode::endsNearCursor() const
{
    const ImageComposition &composition = *view.imageComposition();
    return composition.editedEndPointsNear(cursorOf(state), endSteps * composition.granularity());
}

QList<Vector3> TraceMode::contoursNearCursor() const
{
    const ImageComposition &composition = *view.imageComposition();
    return composition.contourPointsNear(cursorOf(state), contourSteps * composition.granularity());
}

void TraceMode::move(const MouseInput &input)
{
    const RepaintCollector repaint(view);
    refreshMarkers();
    view.repaintNow();
    if (!state.activeSegment || !isFinite(state.cursorWorld))
        return;
    const Vector3 cursor = cursorOf(state);
    if (const QList<Vector3> ends = endsNearCursor(); !ends.isEmpty()) {
        const Vector3 end = nearestPoint(ends, cursor);
        addAtActiveEnd(end.x, end.y);
        return;
    }
    if (input.modifiers.testFlag(Qt::AltModifier)) {
        if (const QList<Vector3> points = contoursNearCursor(); !points.isEmpty()) {
            const Vector3 point = nearestPoint(points, cursor);
            addAtActiveEnd(point.x, point.y);
            return;
        }
    }
    if (input.buttons.testFlag(Qt::RightButton)) {
        addAtActiveEnd(cursor.x, cursor.y);
    } else if (input.buttons.testFlag(Qt::LeftButton)) {
        const EdgePoint edge = bestMarker();
        addAtActiveEnd(static_cast<double>(edge.x), static_cast<double>(edge.y));
    }
}

void TraceMode::addAtActiveEnd(double x, double y)
{
    if (state.activeEnd >= back)
        state.activeSegment->addPointBack({x, y});
    else
        state.activeSegment->addPointFront({x, y});
}

void TraceMode::press(const MouseInput &input)
{
    SlicedContoursFragment *fragment = editedFragment(*view.imageComposition());
    if (fragment == nullptr) {
        ToolMessages::warn(
            &view, tr("Tracing edges requires a Sliced Contours Fragment to be selected for editing."));
        return;
    }
    const RepaintCollector repaint(view);
    deleteShortSegment(); // of a press with another button that is still held
    refreshMarkers();
    state.anchorSegment = nullptr;
    if (!isFinite(state.cursorWorld))
        return;
    state.anchorSegment = segmentNearCursor(*fragment);
    const EdgePoint edge = bestMarker();
    if (!continueAnchor(edge))
        startSegment(*fragment, input, edge);
    view.repaintNow();
}

SlicedContoursSegment *TraceMode::segmentNearCursor(SlicedContoursFragment &fragment) const
{
    const Vector3 cursor = cursorOf(state);
    const float radius = segmentSteps * view.imageComposition()->granularity();
    return firstOther(segmentsNear(fragment, cursor.x, cursor.y, cursor.z, radius), {});
}

// Makes the anchor the active segment if one of its ends is at the cursor or at the edge point.
bool TraceMode::continueAnchor(const EdgePoint &edge)
{
    SlicedContoursSegment *anchor = state.anchorSegment;
    if (anchor == nullptr)
        return false;
    const Vector3 cursor = cursorOf(state);
    const Vector3 atEdge{static_cast<double>(edge.x), static_cast<double>(edge.y),
                         static_cast<double>(edge.z)};
    const auto step = static_cast<double>(view.imageComposition()->granularity());
    const QPointF first = anchor->point(0);
    const QPointF last = anchor->lastPoint();
    const float z = anchor->z();
    // The order of these tests decides which end a press takes that is near several.
    // NOLINTBEGIN(bugprone-branch-clone)
    if (isWithin(first, z, cursor, step))
        state.activeEnd = front;
    else if (isWithin(last, z, cursor, step))
        state.activeEnd = back;
    else if (isWithin(first, z, atEdge, edgeSnapMm))
        state.activeEnd = front;
    else if (isWithin(last, z, atEdge, edgeSnapMm))
        state.activeEnd = back;
    else
        return false;
    // NOLINTEND(bugprone-branch-clone)
    state.activeSegment = anchor;
    state.anchorSegment = nullptr;
    return true;
}

void TraceMode::startSegment(SlicedContoursFragment &fragment, const MouseInput &input, const EdgePoint &edge)
{
    const Vector3 cursor = cursorOf(state);
    const QList<Vector3> ends = endsNearCursor();
    const QList<Vector3> points =
        input.modifiers.testFlag(Qt::AltModifier) ? contoursNearCursor() : QList<Vector3>();
    Vector3 start{static_cast<double>(edge.x), static_cast<double>(edge.y), static_cast<double>(edge.z)};
    if (!ends.isEmpty())
        start = nearestPoint(ends, cursor);
    else if (!points.isEmpty())
        start = nearestPoint(points, cursor);
    else if (input.button == Qt::RightButton)
        start = cursor;
    state.activeSegment = fragment.newSegment({start.x, start.y}, static_cast<float>(cursor.z));
    state.activeEnd = back;
}

void TraceMode::release(const MouseInput &)
{
    if (!state.activeSegment)
        return;
    if (state.activeSegment->pointCount() < 2) {
        delete state.activeSegment;
    } else {
        SlicedContoursFragment *fragment = editedFragment(*view.imageComposition());
        QPointer<SlicedContoursSegment> other;
        if (fragment != nullptr && isFinite(state.cursorWorld)) {
            const Vector3 cursor = cursorOf(state);
            const float radius = segmentSteps * view.imageComposition()->granularity();
            other = firstOther(segmentsNear(*fragment, cursor.x, cursor.y, cursor.z, radius),
                               {state.activeSegment, state.anchorSegment});
        }
        const QPointer<QStackedSliceView> viewAlive(&view);
        const bool goesOn = confirmLoss(other);
        if (!viewAlive)
            return;
        const RepaintCollector repaint(view);
        if (goesOn)
            splice(other);
        else
            delete state.activeSegment;
    }
    state.activeSegment = nullptr;
    state.anchorSegment = nullptr;
    view.requestRepaint();
}

// Asks only when much would be lost.
bool TraceMode::confirmLoss(SlicedContoursSegment *other)
{
    SlicedContoursSegment *piece = state.activeSegment;
    float lost = 0.0f;
    if (state.anchorSegment)
        state.anchorSegment->replaceWith(piece, &lost);
    if (other != nullptr)
        other->replaceWith(piece, &lost);
    const bool isMuch = lost > 0.0f && lost > lossFactor * piece->length() &&
                        lost > lossSteps * view.imageComposition()->granularity();
    return !isMuch ||
           ToolMessages::confirm(&view, tr("%1 mm will be replaced.").arg(static_cast<double>(lost)));
}

// Puts the piece into the line that it started on and the one that it ends on; both become one. A piece that
// nothing takes stays a line of its own.
void TraceMode::splice(const QPointer<SlicedContoursSegment> &other)
{
    if (!state.activeSegment)
        return;
    if (state.anchorSegment && state.anchorSegment->replaceWith(state.activeSegment, nullptr)) {
        if (other)
            other->replaceWith(state.anchorSegment, nullptr);
    } else if (other) {
        other->replaceWith(state.activeSegment, nullptr);
    }
}
