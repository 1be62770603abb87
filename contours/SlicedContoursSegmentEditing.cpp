#include "contours/SlicedContoursSegment.h"

#include "contours/ContourGeometry.h"

#include <QMutexLocker>
#include <QPointer>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

// The nearest end of a piece must lie nearer than this to a point of a line to be spliced in there.
constexpr double spliceDistanceMm = 1.0;
// Up to so many points a walk over them all is quicker than a hash.
constexpr std::size_t shortLine = 256;

auto firstOccurrence(const std::vector<QPointF> &points, const QPointF &point)
{
    return std::find_if(points.begin(), points.end(),
                        [&](const QPointF &other) { return samePoint(other, point); });
}

// Exact on purpose, infinite quotients and NaN included.
bool continuesStraight(const QPointF &a, const QPointF &b, const QPointF &p)
{
    const QPointF ab = a - b;
    const QPointF bp = b - p;
    return ab.x() / bp.x() == ab.y() / bp.y() || (ab.x() == 0.0 && bp.x() == 0.0) ||
           (ab.y() == 0.0 && bp.y() == 0.0);
}

} // namespace

void SlicedContoursSegment::addPointBack(const QPointF &point)
{
    bool changed;
    {
        const QMutexLocker lock(&mutex);
        changed = lockedAddPointBack(point);
    }
    if (changed)
        emitUpdated();
}

bool SlicedContoursSegment::lockedAddPointBack(const QPointF &point)
{
    const std::size_t count = points.size();
    if (count >= 1 && samePoint(points.back(), point))
        return false;
    boundsKnown = false;
    if (count >= 2 && samePoint(points[count - 2], point)) {
        lockedRemoveLast(); // the pen has stepped back
        return true;
    }
    // The first point is let through, so that a line can be closed.
    if (const std::ptrdiff_t met = lockedFirstOccurrence(point); met > 0) {
        while (static_cast<std::ptrdiff_t>(points.size()) > met + 1)
            lockedRemoveLast(); // the loop just drawn is cut off
        return true;
    }
    if (count >= 2 && continuesStraight(points[count - 2], points.back(), point))
        lockedRemoveLast();
    lockedAppend(point);
    return true;
}

// -1 for none. A long line, as a file may hold, is not walked over for each of its points.
std::ptrdiff_t SlicedContoursSegment::lockedFirstOccurrence(const QPointF &point)
{
    if (points.size() > shortLine && !samePoint(points.front(), point)) {
        if (!pointIndex)
            pointIndex.emplace(points);
        return pointIndex->firstOccurrence(points, point);
    }
    const auto found = firstOccurrence(points, point);
    return found != points.end() ? found - points.begin() : -1;
}

void SlicedContoursSegment::lockedAppend(const QPointF &point)
{
    points.push_back(point);
    if (pointIndex)
        pointIndex->append(points);
}

void SlicedContoursSegment::lockedRemoveLast()
{
    if (pointIndex)
        pointIndex->removeLast(points);
    points.pop_back();
}

void SlicedContoursSegment::lockedNotePointsChanged()
{
    boundsKnown = false;
    pointIndex.reset();
}

void SlicedContoursSegment::addPointFront(const QPointF &point)
{
    bool changed;
    {
        const QMutexLocker lock(&mutex);
        changed = lockedAddPointFront(point);
    }
    if (changed)
        emitUpdated();
}

// The mirror image of adding at the back, but for points on a line: here they stay, as is required.
bool SlicedContoursSegment::lockedAddPointFront(const QPointF &point)
{
    const std::size_t count = points.size();
    if (count >= 1 && samePoint(points.front(), point))
        return false;
    lockedNotePointsChanged();
    if (count >= 2 && samePoint(points[1], point)) {
        points.erase(points.begin());
        return true;
    }
    const auto met = firstOccurrence(points, point);
    if (met != points.end() && !samePoint(points.back(), point)) {
        points.erase(points.begin(), met);
        return true;
    }
    points.insert(points.begin(), point);
    return true;
}

void SlicedContoursSegment::setZ(float zMm)
{
    {
        const QMutexLocker lock(&mutex);
        zPosition = zMm;
    }
    noteZChanged();
    emitUpdated();
}

void SlicedContoursSegment::beginUpdates()
{
    autoUpdate = false;
}

void SlicedContoursSegment::endUpdates()
{
    autoUpdate = true;
    emit updated(this);
}

bool SlicedContoursSegment::replaceWith(SlicedContoursSegment *patch, float *lostLength)
{
    if (patch == nullptr || patch == this)
        return false;
    const std::vector<QPointF> piece = patch->snapshot().points;
    if (piece.size() < 2)
        return false;
    bool replaced;
    {
        const QMutexLocker lock(&mutex);
        replaced = lockedReplace(piece, lostLength);
    }
    if (!replaced)
        return false;
    const QPointer<SlicedContoursSegment> self(this); // whoever hears of the patch's end may delete this one
    delete patch;
    if (self)
        emitUpdated();
    return true;
}

// The index of the point nearest to the given one and nearer than the limit, the lowest on ties; -1 for none.
std::ptrdiff_t SlicedContoursSegment::lockedNearest(const QPointF &point, double limitMm) const
{
    std::ptrdiff_t nearest = -1;
    double best = limitMm;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const double distance = std::sqrt(squaredDistance(points[i], point));
        if (distance < best) {
            best = distance;
            nearest = static_cast<std::ptrdiff_t>(i);
        }
    }
    return nearest;
}

bool SlicedContoursSegment::lockedReplace(const std::vector<QPointF> &patch, float *lostLength)
{
    const std::ptrdiff_t s = lockedNearest(patch.front(), spliceDistanceMm);
    const std::ptrdiff_t e = lockedNearest(patch.back(), spliceDistanceMm);
    if (s < 0 && e < 0)
        return false;
    if (s >= 0 && e >= 0)
        return lockedReplaceBetween(s, e, patch, lostLength);
    if (s >= 0)
        return lockedReplaceFrom(s, patch, lostLength);
    return lockedReplaceFrom(e, std::vector<QPointF>(patch.rbegin(), patch.rend()), lostLength);
}

// Both ends of the patch touch: it takes the place of all points between them. On one and the same point it
// is put in backwards, as is required.
bool SlicedContoursSegment::lockedReplaceBetween(std::ptrdiff_t s, std::ptrdiff_t e,
                                                 const std::vector<QPointF> &patch, float *lostLength)
{
    const std::ptrdiff_t low = std::min(s, e);
    const std::ptrdiff_t high = std::max(s, e);
    if (lostLength != nullptr) {
        *lostLength += lockedLength() - lockedLengthUpTo(low - 1) - lockedLengthFrom(high + 1);
        return false;
    }
    lockedNotePointsChanged();
    const auto at = points.erase(points.begin() + low, points.begin() + high + 1);
    if (s < e)
        points.insert(at, patch.begin(), patch.end());
    else
        points.insert(at, patch.rbegin(), patch.rend());
    return true;
}

// One end of the patch touches at s; walked begins there. The half of the line on the side towards which the
// patch leaves is given up: towards the end point s stays, towards the start it goes as well.
bool SlicedContoursSegment::lockedReplaceFrom(std::ptrdiff_t s, const std::vector<QPointF> &walked,
                                              float *lostLength)
{
    const auto last = static_cast<std::ptrdiff_t>(points.size()) - 1;
    const std::ptrdiff_t second = lockedNearest(walked[1], std::numeric_limits<double>::infinity());
    const bool leavesStart = second == s && s == 0;
    const bool leavesEnd = second == s && s == last;
    const bool towardsEnd = leavesEnd || (!leavesStart && s < second);
    if (lostLength != nullptr) {
        if (!leavesStart && !leavesEnd)
            *lostLength += towardsEnd ? lockedLengthFrom(s) : lockedLengthUpTo(s);
        return false;
    }
    lockedNotePointsChanged();
    if (leavesStart) {
        points.insert(points.begin(), walked.rbegin(), walked.rend());
    } else if (towardsEnd) {
        points.erase(points.begin() + s + 1, points.end());
        points.insert(points.end(), walked.begin(), walked.end());
    } else {
        points.erase(points.begin(), points.begin() + s + 1);
        points.insert(points.begin(), walked.rbegin(), walked.rend());
    }
    return true;
}
