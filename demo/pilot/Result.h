#pragma once

#include "demo/PhantomTruth.h"
#include "demo/pilot/DemoScript.h"

#include <iosfwd>

// What the script saved, compared with the truth. Writes a table; false when a file is missing too.

// The area between the two fragments of the contours, slice by slice: true if each slice is within 4 % and
// the sum within 2 %, and if the hand's own paths are not.
bool judgeContours(std::ostream &table, const QString &folder, const DemoScript &script,
                   const std::vector<TrueSlice> &slices);

// The volume of the contours' closed loops and of the mask, each true within 2 %, and the mean thickness by
// both definitions, the minimal one true within 0.15 mm.
bool judgeMeasures(std::ostream &table, const QString &folder, const demo::TracedTruth &truth,
                   double sliceDistanceMm);
