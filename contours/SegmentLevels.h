#pragma once

#include "objects/Vector3.h"

#include <QList>

#include <cstddef>
#include <vector>

class SlicedContoursFragment;
class SlicedContoursSegment;

// The segments of some fragments sorted by z, so that questions about z need no walk over all segments. A
// picture of one moment: to be made anew when a segment comes, goes or changes its z. Answers are those of a
// walk over fragments and segments in stored order. Segments are borrowed; those whose z is no number are
// left out, since no comparison finds them. Main thread.
class SegmentLevels
{
public:
    explicit SegmentLevels(const QList<SlicedContoursFragment *> &fragments);

    bool empty() const { return entries.empty(); }
    // The smallest z, the largest finite float if there is none below that.
    float first() const;
    // The largest z, at least 0.
    float extent() const;
    // The smallest z above (the largest z below) the given one, or that one itself.
    float next(float z) const;
    float previous(float z) const;
    // The segments within radius of z, perhaps some more just outside it, in stored order.
    std::vector<SlicedContoursSegment *> around(double z, double radius) const;

private:
    struct Entry
    {
        float z;
        std::size_t order; // in the walk over all fragments
        SlicedContoursSegment *segment;
    };

    std::vector<Entry> entries; // by z, equal ones in stored order
};
