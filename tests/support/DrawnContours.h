#pragma once

#include "contours/SlicedContour.h"
#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "contours/SlicedContoursSegment.h"

#include <QPointF>

#include <vector>

// Lines and outlines as a user would have drawn them; coordinates in mm.
namespace drawn {

inline SlicedContoursSegment *line(SlicedContoursFragment *fragment, float z,
                                   const std::vector<QPointF> &points)
{
    SlicedContoursSegment *segment = fragment->newSegment(points.front(), z);
    for (auto point = points.begin() + 1; point != points.end(); ++point)
        segment->addPointBack(*point);
    return segment;
}

// The rectangle from (left, bottom) to (right, top) in two lines that meet at two corners.
inline void rectangle(SlicedContoursFragment *fragment, float z, double left, double bottom, double right,
                      double top)
{
    line(fragment, z, {{left, bottom}, {right, bottom}, {right, top}});
    line(fragment, z, {{right, top}, {left, top}, {left, bottom}});
}

inline void square(SlicedContoursFragment *fragment, float z, double low, double high)
{
    rectangle(fragment, z, low, low, high, high);
}

// A fragment of its own and a contour that refers to it.
inline SlicedContoursFragment *solid(SlicedContoursObject &object)
{
    SlicedContoursFragment *fragment = object.newFragment("outline");
    object.newContour("solid")->addFragmentReference(fragment);
    return fragment;
}

} // namespace drawn
