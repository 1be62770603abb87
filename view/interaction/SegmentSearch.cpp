#include "view/interaction/SegmentSearch.h"

#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursSegment.h"
#include "view/ImageComposition.h"

#include <algorithm>
#include <memory>

SlicedContoursFragment *editedFragment(const ImageComposition &composition)
{
    return qobject_cast<SlicedContoursFragment *>(composition.editedObject());
}

std::vector<SlicedContoursSegment *> segmentsNear(SlicedContoursFragment &fragment, double x, double y,
                                                  double z, float radius)
{
    const std::unique_ptr<QList<GraphicsObject *>> near(
        fragment.segmentsNear(static_cast<float>(x), static_cast<float>(y), static_cast<float>(z), radius));
    std::vector<SlicedContoursSegment *> segments;
    for (GraphicsObject *object : *near)
        if (auto *segment = qobject_cast<SlicedContoursSegment *>(object)) // the fragment is listed as well
            segments.push_back(segment);
    return segments;
}

SlicedContoursSegment *firstOther(const std::vector<SlicedContoursSegment *> &segments,
                                  std::initializer_list<const SlicedContoursSegment *> excluded)
{
    const auto found = std::find_if(segments.begin(), segments.end(), [&](const auto *segment) {
        return std::find(excluded.begin(), excluded.end(), segment) == excluded.end();
    });
    return found != segments.end() ? *found : nullptr;
}
