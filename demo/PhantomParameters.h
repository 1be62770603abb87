#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace demo {

using Point = std::array<double, 3>; // x, y, z in mm

// What the phantom of a knee is made of. Lengths in mm, angles in degrees, grey values as stored in the
// images. Everything that is computed from equal parameters is equal.
struct PhantomParameters
{
    int width = 256, height = 256, slices = 24;
    Point spacingMm{0.3125, 0.3125, 1.5};

    // The patella: an ellipsoid whose front and back halves have different depths. Its back carries the
    // cartilage.
    double halfWidthMm = 21.0;  // towards the inner and outer side
    double halfHeightMm = 15.5; // upwards and downwards
    double frontDepthMm = 12.0;
    double backDepthMm = 7.5;
    Point tiltDegrees{8.0, 6.0, 5.0}; // about x, then y, then z

    // The cartilage covers the part of the back where the scaled coordinates (across, up) of the bone's
    // surface lie in a circle of radius coveredPart about 0; its thickness falls from the ridge to the rim.
    double coveredPart = 0.86;
    double ridgeAcross = 0.18; // scaled coordinate of the thickest place, towards the inner side
    double ridgeThicknessMm = 4.0;
    double rimThicknessMm = 1.0;

    double noiseSigma = 14.0; // of each of the two channels of Rician noise; 0 for none
    std::uint32_t seed = 20260101;
    bool mirrored = false; // false: a right knee, the outer side on the left of the pictures

    double echoTimeMs = 6.0;
    std::string patientName = "Phantom^Knee";
    std::string patientId = "TEVORA-PHANTOM";
    std::string seriesDescription = "Knee phantom axial T1 FLASH FS";
};

} // namespace demo
