#pragma once

#include <QList>

class SlicedContour;
class SlicedContoursFragment;
class SlicedContoursObject;

// The measures of contours. Lengths in mm, areas in mm^2, volumes in mm^3; all sums run in single precision
// and z is compared exactly. Main thread.

// The z of all levels that have segments, rising.
QList<float> zLevels(const SlicedContoursObject &contours);

// The thickness of the slab that level z stands for: half of the distance between its neighbours, at the ends
// the distance to the one neighbour. 0 for a z that is no level and for a single level.
float sliceSpacing(const QList<float> &levels, float z);

// The length of the segments at exactly z.
float sectionLength(const SlicedContoursFragment &fragment, float z);

// The area of the surface that the segments sweep over: length times slice spacing.
float sweptArea(const SlicedContoursFragment &fragment, const QList<float> &levels);

// The sum of section area times slice spacing.
float slabVolume(const SlicedContour &contour, const QList<float> &levels);

// The same with another share for the slab at each end of the stack, where the structure ends somewhere
// between two slices. areas holds one value per level.
float correctedVolume(const QList<float> &areas, const QList<float> &levels);
float correctedVolume(const SlicedContour &contour, const QList<float> &levels);
