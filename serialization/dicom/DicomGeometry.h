#pragma once

#include "serialization/dicom/DicomHeader.h"

#include <array>
#include <optional>

namespace dicom {

using Vector = std::array<double, 3>;

// What a file says about its place in space, in mm. Missing, empty or malformed values give the defaults
// named here; no answer is ever infinite or NaN.

// Image Position (Patient), else the retired Image Position, else (0, 0, z) with z the Slice Location, else
// the retired Location, else 0.
Vector origin(const DicomHeader &header);

// Unit vectors along rows and columns as the file has them: x, y, z of each; (1,0,0,0,1,0) by default.
std::array<double, 6> orientation(const DicomHeader &header);

// Cross product of the two directions of orientation().
Vector sliceNormal(const DicomHeader &header);

// Pixel spacing: that of the first frame's functional group, else Imager Pixel Spacing, else Pixel Spacing. A
// file says row before column: the second value is x. One value serves both; 0 and missing give 1.
double xSpacing(const DicomHeader &header);
double ySpacing(const DicomHeader &header);

// Spacing Between Slices (0 gives 1), else Slice Thickness, else 1.
double zSpacing(const DicomHeader &header);

// Slice Location, when the file has one.
std::optional<double> sliceLocation(const DicomHeader &header);

// Number of Frames, else Planes, else 1. May be anything that a file can say.
long frameCount(const DicomHeader &header);

// Rescale Intercept as the tag says, whatever kind of image it is; 0 when missing.
double rescaleIntercept(const DicomHeader &header);

double dot(const Vector &a, const Vector &b);

} // namespace dicom
