#pragma once

#include "contours/SegmentSnapshot.h"
#include "meshes/geometry/TriFace.h"

#include <cstddef>
#include <span>
#include <vector>

// The levels of a pile of lines: the index of the first line of each distinct z, by rising z. Values compare
// exactly. Lines whose z is not finite take no part.
std::vector<std::size_t> firstOfEachLevel(std::span<const float> z);

// Appends the faces of the open ribbon between two lines. The walk starts at the first points of both, goes
// on along the line to which the new diagonal is shorter in x and y, along b at a tie, and ends with the last
// points. No face for a line without points. The direction of the lines is neither tested nor corrected.
void stitchRibbon(const SegmentSnapshot &a, const SegmentSnapshot &b,
                  std::vector<MERV::BRep::TriFace> &faces);
