#pragma once

#include "tests/support/DrawnContours.h"

// The worked case of the manual: four slices 1.5 mm apart, on each the outline of a plate of cartilage in
// four lines. Its side at the bone runs from (2, 2) to (10, 2) mm, its surface above it.
struct WorkedStack
{
    // The thickness at both ends, and whether the first slice lacks one of the short sides.
    WorkedStack(double leftMm, double rightMm, bool firstIsOpen)
    {
        SlicedContour *contour = object.newContour("cartilage");
        bone = object.newFragment("bone");
        surface = object.newFragment("surface");
        SlicedContoursFragment *left = object.newFragment("left end");
        SlicedContoursFragment *right = object.newFragment("right end");
        for (SlicedContoursFragment *fragment : {bone, surface, left, right})
            contour->addFragmentReference(fragment);
        for (int slice = 0; slice < slices; ++slice) {
            const float z = (static_cast<float>(slice) + 0.5f) * distanceMm;
            drawn::line(bone, z, {{2, 2}, {10, 2}});
            drawn::line(surface, z, {{2, 2 + leftMm}, {10, 2 + rightMm}});
            drawn::line(left, z, {{2, 2}, {2, 2 + leftMm}});
            if (slice > 0 || !firstIsOpen)
                drawn::line(right, z, {{10, 2}, {10, 2 + rightMm}});
        }
    }

    static constexpr int slices = 4;
    static constexpr float distanceMm = 1.5f;

    SlicedContoursObject object{"worked"};
    SlicedContoursFragment *bone = nullptr;
    SlicedContoursFragment *surface = nullptr;
};
