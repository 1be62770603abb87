#include "contours/SlicedContoursFragment.h"

#include "contours/ContourGeometry.h"
#include "platform/ReadWriteLock.h"
#include "contours/SlicedContoursObject.h"
#include "contours/SlicedContoursSegment.h"

#include <algorithm>
#include <iostream>
#include <memory>
#include <utility>

SlicedContoursFragment::SlicedContoursFragment(QObject *parent)
    : LabeledGraphicsObject(tr("some Fragment"), parent)
{}

SlicedContoursFragment::~SlicedContoursFragment()
{
    if (owner != nullptr)
        owner->takeOut(this);
    for (SlicedContoursSegment *segment : std::exchange(segments, {})) {
        segment->owner = nullptr;
        segment->disconnect(this);
        delete segment;
    }
}

int SlicedContoursFragment::graphicsType() const
{
    return GraphicsTypeFragment;
}

int SlicedContoursFragment::segmentCount() const
{
    return static_cast<int>(segments.size());
}

SlicedContoursSegment *SlicedContoursFragment::segment(int index) const
{
    return segments.value(index, nullptr);
}

SlicedContoursSegment *SlicedContoursFragment::newSegment(const QPointF &point, float zMm)
{
    auto *segment = new SlicedContoursSegment(point, zMm);
    adopt(segment);
    return segment;
}

void SlicedContoursFragment::addSegment(SlicedContoursSegment *segment)
{
    if (segment == nullptr || segment->owner == this)
        return;
    adopt(segment);
    emit updated(this);
}

void SlicedContoursFragment::adopt(SlicedContoursSegment *segment)
{
    if (SlicedContoursFragment *before = segment->owner; before != nullptr) {
        before->takeOut(segment);
        segment->disconnect(before);
    }
    segment->setParent(this);
    {
        const WriteLocker lock(structure());
        segments.append(segment);
        segment->owner = this;
    }
    noteLevelsChanged();
    connect(segment, &QObject::destroyed, this, &SlicedContoursFragment::segmentDestroyed);
    if (!connect(segment, qOverload<QObject *>(&SlicedContoursSegment::updated), this,
                 &SlicedContoursFragment::segmentUpdated))
        std::cerr << "SlicedContoursFragment::newSegment: connecting updated signal failed" << std::endl;
}

void SlicedContoursFragment::takeOut(SlicedContoursSegment *segment)
{
    {
        const WriteLocker lock(structure());
        segments.removeOne(segment);
        segment->owner = nullptr;
    }
    noteLevelsChanged();
}

// When destroyed() calls this, the segment is half gone and has left the list already: compare addresses
// only.
void SlicedContoursFragment::segmentDestroyed(QObject *segment)
{
    const auto here = std::find_if(segments.begin(), segments.end(), [&](SlicedContoursSegment *other) {
        return static_cast<QObject *>(other) == segment;
    });
    if (here != segments.end())
        takeOut(*here);
    emit updated(this);
}

void SlicedContoursFragment::segmentUpdated(QObject *)
{
    emit updated(this);
}

void SlicedContoursFragment::noteLevelsChanged()
{
    if (owner != nullptr)
        owner->noteLevelsChanged();
}

ReadWriteLock *SlicedContoursFragment::structure() const
{
    return owner != nullptr ? &owner->structure : nullptr;
}

QList<GraphicsObject *> *SlicedContoursFragment::segmentsNear(float x, float y, float z, float radius)
{
    auto found = std::make_unique<QList<GraphicsObject *>>();
    for (SlicedContoursSegment *segment : std::as_const(segments))
        if (segment->isNear(x, y, z, radius))
            found->append(segment);
    if (!found->isEmpty())
        found->append(this);
    return found.release();
}

std::vector<SegmentSnapshot> SlicedContoursFragment::snapshots(float z0, float z1) const
{
    std::vector<SegmentSnapshot> found;
    for (const SlicedContoursSegment *segment : segments)
        if (liesInSlab(segment->z(), z0, z1))
            found.push_back(segment->snapshot());
    return found;
}
