#include "contours/SegmentLevels.h"

#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursSegment.h"

#include <algorithm>
#include <cmath>
#include <limits>

SegmentLevels::SegmentLevels(const QList<SlicedContoursFragment *> &fragments)
{
    std::size_t order = 0;
    for (const SlicedContoursFragment *fragment : fragments)
        for (int i = 0; i < fragment->segmentCount(); ++i) {
            SlicedContoursSegment *segment = fragment->segment(i);
            const float z = segment->z();
            if (!std::isnan(z))
                entries.push_back({z, order, segment});
            ++order;
        }
    std::stable_sort(entries.begin(), entries.end(),
                     [](const Entry &a, const Entry &b) { return a.z < b.z; });
}

float SegmentLevels::first() const
{
    constexpr float largest = std::numeric_limits<float>::max();
    return entries.empty() ? largest : std::min(largest, entries.front().z);
}

float SegmentLevels::extent() const
{
    return entries.empty() ? 0.0f : std::max(0.0f, entries.back().z);
}

float SegmentLevels::next(float z) const
{
    const auto above = std::upper_bound(entries.begin(), entries.end(), z,
                                        [](float value, const Entry &entry) { return value < entry.z; });
    return above != entries.end() ? above->z : z;
}

float SegmentLevels::previous(float z) const
{
    const auto below = [](const Entry &entry, float value) { return entry.z < value; };
    const auto notBelow = std::lower_bound(entries.begin(), entries.end(), z, below);
    if (notBelow == entries.begin())
        return z;
    // Of equal ones the first stored: a zero may have a sign.
    return std::lower_bound(entries.begin(), notBelow, std::prev(notBelow)->z, below)->z;
}

std::vector<SlicedContoursSegment *> SegmentLevels::around(double z, double radius) const
{
    const double slack = (std::abs(z) + std::abs(radius)) * 1e-9;
    const double low = z - radius - slack;
    const double high = z + radius + slack;
    auto entry = std::lower_bound(entries.begin(), entries.end(), low, [](const Entry &e, double value) {
        return static_cast<double>(e.z) < value;
    });
    std::vector<const Entry *> hits;
    for (; entry != entries.end() && static_cast<double>(entry->z) <= high; ++entry)
        hits.push_back(&*entry);
    std::sort(hits.begin(), hits.end(), [](const Entry *a, const Entry *b) { return a->order < b->order; });
    std::vector<SlicedContoursSegment *> segments;
    segments.reserve(hits.size());
    for (const Entry *hit : hits)
        segments.push_back(hit->segment);
    return segments;
}
