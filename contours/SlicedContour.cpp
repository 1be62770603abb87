#include "contours/SlicedContour.h"

#include "contours/ContourGeometry.h"
#include "platform/ReadWriteLock.h"
#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"

#include <QHash>

#include <iterator>
#include <utility>

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

// A fragment that is referred to again counts again. That is no way to fill the memory, though: when the
// copies have grown beyond what a drawing can have a use for, further ones are left out.
std::vector<SegmentSnapshot> SlicedContour::snapshots(float z0, float z1) const
{
    constexpr std::size_t mostCopies = 65536; // of segments and points together
    std::size_t copies = 0;
    std::vector<SegmentSnapshot> pool;
    QHash<const SlicedContoursFragment *, std::pair<std::size_t, std::size_t>>
        known; // from and to in the pool
    for (const SlicedContoursFragment *fragment : fragments) {
        if (fragment == nullptr)
            continue;
        if (const auto range = known.constFind(fragment); range != known.cend()) {
            for (std::size_t i = range->first; i < range->second && copies < mostCopies; ++i) {
                copies += 1 + pool[i].points.size();
                pool.push_back(SegmentSnapshot(pool[i]));
            }
            continue;
        }
        std::vector<SegmentSnapshot> more = fragment->snapshots(z0, z1);
        known.insert(fragment, {pool.size(), pool.size() + more.size()});
        pool.insert(pool.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
    }
    return pool;
}
