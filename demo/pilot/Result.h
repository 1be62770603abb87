#pragma once

#include "demo/pilot/DemoScript.h"

#include <iosfwd>

// Reads the saved contours and compares the area between their two fragments with the truth, slice by slice.
// Writes the table; true if each slice is within 4 % and the sum within 2 %.
bool judgeContours(std::ostream &table, const DemoScript &script, const std::vector<TrueSlice> &slices);
