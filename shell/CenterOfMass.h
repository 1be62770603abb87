#pragma once

#include "Common/ImageBase.h"

#include <QString>

// The centre of mass of each slice in voxels, weighted by what the values (frame 0, channel 0) exceed 100 by,
// as a table of text: two lines of heading, then slice from 0, x and y with tabs between. A slice without
// weight has "nan" in both places.
QString inPlaneCentersOfMass(MERV::ImageBase<unsigned short> &image);
