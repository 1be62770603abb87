#pragma once

#include "demo/PhantomBody.h"

#include <vector>

namespace demo {

// The outline of the cartilage in one plane, in the frame of the volume. Both lines run from the outer side
// to the inner side, begin and end in the same points and close the outline together. The surface line
// contains the two short pieces of the cartilage's rim. Where the plane meets cartilage but not the bone
// under it, the bone line is empty and the surface line is closed in itself; where it meets no cartilage both
// are empty.
struct SliceOutline
{
    std::vector<Point> boneSide;
    std::vector<Point> surfaceSide;

    bool empty() const { return surfaceSide.empty(); }
};

// The outline in the plane of this z, with about `pieces` pieces per line.
SliceOutline cartilageOutline(const PhantomBody &body, double zMm, int pieces);

// Area enclosed by the outline, in mm^2.
double enclosedArea(const SliceOutline &outline);

} // namespace demo
