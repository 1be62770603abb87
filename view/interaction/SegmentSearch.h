#pragma once

#include <initializer_list>
#include <vector>

class GraphicsObject;
class ImageComposition;
class SlicedContoursFragment;
class SlicedContoursSegment;

// What the contour tools look for under the cursor.

// The fragment that is selected for editing; null if there is none or another object is selected.
SlicedContoursFragment *editedFragment(const ImageComposition &composition);

// The segments of the fragment near a position in mm (a box of that radius), in stored order.
std::vector<SlicedContoursSegment *> segmentsNear(SlicedContoursFragment &fragment, double x, double y,
                                                  double z, float radius);

// The first of the segments that is none of the excluded ones, or null.
SlicedContoursSegment *firstOther(const std::vector<SlicedContoursSegment *> &segments,
                                  std::initializer_list<const SlicedContoursSegment *> excluded);
