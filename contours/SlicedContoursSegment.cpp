#include "contours/SlicedContoursSegment.h"

#include "contours/ContourGeometry.h"
#include "contours/SlicedContoursFragment.h"

#include <QMutexLocker>

#include <algorithm>
#include <cmath>
#include <limits>

SlicedContoursSegment::SlicedContoursSegment(QObject *parent)
    : GraphicsObject(parent)
{}

SlicedContoursSegment::SlicedContoursSegment(const QPointF &point, float zMm, QObject *parent)
    : GraphicsObject(parent)
    , points{point}
    , zPosition(zMm)
{}

SlicedContoursSegment::~SlicedContoursSegment()
{
    // Before anything of this segment goes: another thread may be drawing it.
    if (owner != nullptr)
        owner->takeOut(this);
}

int SlicedContoursSegment::graphicsType() const
{
    return GraphicsTypeSegment;
}

int SlicedContoursSegment::pointCount() const
{
    const QMutexLocker lock(&mutex);
    return static_cast<int>(points.size());
}

QPointF SlicedContoursSegment::point(int index) const
{
    const QMutexLocker lock(&mutex);
    const auto count = static_cast<std::ptrdiff_t>(points.size());
    const std::ptrdiff_t fromStart = index < 0 ? count + index : index;
    return fromStart >= 0 && fromStart < count ? points[static_cast<std::size_t>(fromStart)] : QPointF();
}

QPointF SlicedContoursSegment::lastPoint() const
{
    return point(-1);
}

QPointF SlicedContoursSegment::pointWalked(int index, int direction) const
{
    return point(direction >= 0 ? index : -1 - index);
}

float SlicedContoursSegment::z() const
{
    const QMutexLocker lock(&mutex);
    return zPosition;
}

SegmentSnapshot SlicedContoursSegment::snapshot() const
{
    const QMutexLocker lock(&mutex);
    return {points, zPosition};
}

float SlicedContoursSegment::length() const
{
    const QMutexLocker lock(&mutex);
    return lockedLength();
}

float SlicedContoursSegment::lengthUpTo(int index) const
{
    const QMutexLocker lock(&mutex);
    return lockedLengthUpTo(index);
}

float SlicedContoursSegment::lengthFrom(int index) const
{
    const QMutexLocker lock(&mutex);
    return lockedLengthFrom(index);
}

float SlicedContoursSegment::lockedLength() const
{
    return lockedLengthFrom(0);
}

float SlicedContoursSegment::lockedLengthUpTo(std::ptrdiff_t index) const
{
    return polylineLength(points, 0, std::min(index, static_cast<std::ptrdiff_t>(points.size()) - 1));
}

float SlicedContoursSegment::lockedLengthFrom(std::ptrdiff_t index) const
{
    return polylineLength(points, std::max(index, std::ptrdiff_t{0}),
                          static_cast<std::ptrdiff_t>(points.size()) - 1);
}

const SlicedContoursSegment::Bounds &SlicedContoursSegment::lockedBounds() const
{
    if (boundsKnown)
        return bounds;
    constexpr double infinity = std::numeric_limits<double>::infinity();
    bounds = {infinity, -infinity, infinity, -infinity};
    for (const QPointF &point : points) {
        bounds.minX = std::min(bounds.minX, point.x());
        bounds.maxX = std::max(bounds.maxX, point.x());
        bounds.minY = std::min(bounds.minY, point.y());
        bounds.maxY = std::max(bounds.maxY, point.y());
    }
    boundsKnown = true;
    return bounds;
}

bool SlicedContoursSegment::isNear(float x, float y, float zMm, float radius) const
{
    const double r = radius;
    const double x0 = x - r;
    const double x1 = x + r;
    const double y0 = y - r;
    const double y1 = y + r;
    const QMutexLocker lock(&mutex);
    if (!(zMm - r <= zPosition && zPosition < zMm + r))
        return false;
    const Bounds &box = lockedBounds();
    if (!(box.maxX >= x0 && box.minX < x1 && box.maxY >= y0 && box.minY < y1))
        return false;
    return std::any_of(points.begin(), points.end(), [&](const QPointF &point) {
        return x0 <= point.x() && point.x() < x1 && y0 <= point.y() && point.y() < y1;
    });
}

void SlicedContoursSegment::appendPointsNear(const Vector3 &position, double radius,
                                             QList<Vector3> &found) const
{
    const QMutexLocker lock(&mutex);
    if (!(std::abs(zPosition - position.z) <= radius))
        return;
    // Rounding is monotonic: where the nearest limit of the bounds is too far, each point is.
    const Bounds &box = lockedBounds();
    if (!(box.minX - position.x <= radius && position.x - box.maxX <= radius &&
          box.minY - position.y <= radius && position.y - box.maxY <= radius))
        return;
    for (const QPointF &point : points)
        if (std::abs(point.x() - position.x) <= radius && std::abs(point.y() - position.y) <= radius)
            found.append({point.x(), point.y(), zPosition});
}

void SlicedContoursSegment::appendEndPointsNear(const Vector3 &position, double radius,
                                                QList<Vector3> &found) const
{
    const QMutexLocker lock(&mutex);
    if (points.empty() || !(std::abs(zPosition - position.z) <= radius))
        return;
    const auto test = [&](const QPointF &point) {
        if (std::abs(point.x() - position.x) <= radius && std::abs(point.y() - position.y) <= radius)
            found.append({point.x(), point.y(), zPosition});
    };
    test(points.front());
    if (points.size() >= 2)
        test(points.back());
}

double SlicedContoursSegment::extentX() const
{
    const QMutexLocker lock(&mutex);
    return std::max(0.0, lockedBounds().maxX);
}

double SlicedContoursSegment::extentY() const
{
    const QMutexLocker lock(&mutex);
    return std::max(0.0, lockedBounds().maxY);
}

void SlicedContoursSegment::noteZChanged()
{
    if (owner != nullptr)
        owner->noteLevelsChanged();
}

void SlicedContoursSegment::emitUpdated()
{
    if (autoUpdate)
        emit updated(this);
}
