#include "contours/SlicedContour.h"

#include "contours/ContourGeometry.h"
#include "contours/ReadWriteLock.h"
#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"

#include <iterator>

SlicedContour::SlicedContour(QObject *parent)
    : LabeledGraphicsObject(tr("some Contour"), parent)
{}

SlicedContour::~SlicedContour()
{
    if (owner != nullptr)
        owner->takeOut(this);
}

int SlicedContour::graphicsType() const
{
    return GraphicsTypeContour;
}

int SlicedContour::fragmentCount() const
{
    return static_cast<int>(fragments.size());
}

SlicedContoursFragment *SlicedContour::fragment(int index) const
{
    return fragments.value(index, nullptr);
}

void SlicedContour::addFragmentReference(SlicedContoursFragment *fragment)
{
    if (fragment == nullptr)
        return;
    const WriteLocker lock(owner != nullptr ? &owner->structure : nullptr);
    fragments.append(fragment);
}

void SlicedContour::forget(const SlicedContoursFragment *fragment)
{
    for (SlicedContoursFragment *&reference : fragments)
        if (reference == fragment)
            reference = nullptr;
}

float SlicedContour::areaAt(float z) const
{
    return static_cast<float>(loopArea(snapshots(z, z)));
}

std::vector<SegmentSnapshot> SlicedContour::snapshots(float z0, float z1) const
{
    std::vector<SegmentSnapshot> pool;
    for (const SlicedContoursFragment *fragment : fragments) {
        if (fragment == nullptr)
            continue;
        std::vector<SegmentSnapshot> more = fragment->snapshots(z0, z1);
        pool.insert(pool.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
    }
    return pool;
}
