#include "contours/metrics/SlicedMetrics.h"

#include "contours/SlicedContour.h"
#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "contours/SlicedContoursSegment.h"

#include <cmath>
#include <limits>

namespace {

// The share of the slab at one end of the stack, with the section area there and at its neighbour.
float endVolume(float area, float neighbourArea, float spacing)
{
    float ratio = area / neighbourArea;
    if (std::isnan(ratio))
        ratio = 0.0f; // both areas are 0
    if (ratio > 0.0f)
        return area * spacing * 9.0f / 8.0f;
    const float rest = 1.0f - ratio;
    return neighbourArea * spacing * (1.0f / std::sqrt(rest) * 2.0f / 3.0f + rest / 24.0f);
}

} // namespace

QList<float> zLevels(const SlicedContoursObject &contours)
{
    QList<float> levels;
    if (!contours.hasContent())
        return levels;
    float z = contours.firstSignificantZ();
    if (z == std::numeric_limits<float>::max())
        return levels;
    levels.append(z);
    float next = contours.nextSignificantZ(z);
    while (next > z) {
        z = next;
        levels.append(z);
        next = contours.nextSignificantZ(z);
    }
    return levels;
}

float sliceSpacing(const QList<float> &levels, float z)
{
    const qsizetype i = levels.indexOf(z);
    const qsizetype last = levels.size() - 1;
    if (i < 0 || last < 1)
        return 0.0f;
    if (i == 0)
        return levels[1] - levels[0];
    if (i == last)
        return levels[last] - levels[last - 1];
    return (levels[i + 1] - levels[i - 1]) / 2.0f;
}

float sectionLength(const SlicedContoursFragment &fragment, float z)
{
    float sum = 0.0f;
    for (int i = 0; i < fragment.segmentCount(); ++i)
        if (const SlicedContoursSegment *segment = fragment.segment(i); segment->z() == z)
            sum += segment->length();
    return sum;
}

float sweptArea(const SlicedContoursFragment &fragment, const QList<float> &levels)
{
    float sum = 0.0f;
    for (int i = 0; i < fragment.segmentCount(); ++i) {
        const SlicedContoursSegment *segment = fragment.segment(i);
        sum += sliceSpacing(levels, segment->z()) * segment->length();
    }
    return sum;
}

float slabVolume(const SlicedContour &contour, const QList<float> &levels)
{
    float sum = 0.0f;
    for (const float z : levels)
        sum += contour.areaAt(z) * sliceSpacing(levels, z);
    return sum;
}

float correctedVolume(const QList<float> &areas, const QList<float> &levels)
{
    const qsizetype last = levels.size() - 1;
    if (last < 1)
        return 0.0f;
    float sum = endVolume(areas[0], areas[1], sliceSpacing(levels, levels[0]));
    sum += endVolume(areas[last], areas[last - 1], sliceSpacing(levels, levels[last]));
    for (qsizetype i = 1; i < last; ++i)
        sum += areas[i] * sliceSpacing(levels, levels[i]);
    return sum;
}

float correctedVolume(const SlicedContour &contour, const QList<float> &levels)
{
    QList<float> areas;
    for (const float z : levels)
        areas.append(contour.areaAt(z));
    return correctedVolume(areas, levels);
}
