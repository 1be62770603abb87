#pragma once

#include "demo/PhantomOutline.h"

#include <iosfwd>
#include <vector>

namespace demo {

// What a perfect segmentation of the cartilage would measure, worked out from the formulas.
struct PhantomTruth
{
    std::vector<double> areaMm2; // by slice as stored: the section in the slice's centre plane
    double volumeMm3 = 0.0;

    // Where cartilage meets bone, the thickness at a place is the length of the outward normal of the bone's
    // surface inside the cartilage. The mean is weighted by the area of the bone's surface.
    double interfaceAreaMm2 = 0.0;
    double minimumThicknessMm = 0.0;
    double meanThicknessMm = 0.0;
    double maximumThicknessMm = 0.0;
};

PhantomTruth phantomTruth(const PhantomParameters &parameters);

// The same for a reader who traces some neighbouring slices only, and sees nothing beyond their centre
// planes.
struct TracedTruth
{
    double volumeMm3 = 0.0; // the slices' areas times the slice distance
    // As above, over the interface between the first and the last centre plane.
    double meanThicknessMm = 0.0;
    // From the bone's lines in the slices to the nearest place of the cartilage's surface, the rim's side
    // included, between the first and the last centre plane; mean by length.
    double meanMinimalThicknessMm = 0.0;
};

// count is at least 2.
TracedTruth tracedTruth(const PhantomParameters &parameters, int firstSlice, int count);

// The centre plane of a stored slice (from 0) in the frame of the volume.
double slicePlaneMm(const PhantomParameters &parameters, int slice);

// The program shows a series that was opened without an input filter with y reversed and the slices in their
// stored order (with one, the slices run the other way); its world is voxel index times spacing, the centre
// of voxel (i, j, k) at ((i + 0.5) sx, (j + 0.5) sy, (k + 0.5) sz). This turns a point of the volume's frame
// into that world and back.
Point programWorld(const PhantomParameters &parameters, const Point &point);

// Tables of tab-separated columns with a point as decimal sign, slices and points as the program has them.
// The second one holds the two lines of each slice's outline, their points about `stepMm` apart or closer.
void writeTruth(std::ostream &stream, const PhantomParameters &parameters);
void writeOutlines(std::ostream &stream, const PhantomParameters &parameters, double stepMm);

} // namespace demo
