#pragma once

#include "demo/PhantomParameters.h"

#include <optional>

namespace demo {

// A place on the back of the patella's bone: coordinates across (towards the inner side) and up, scaled by
// the half axes, so that across^2 + up^2 < 1.
struct BonePlace
{
    double across = 0.0, up = 0.0;
};

// The patella in closed form. Its points are in the frame of the volume: x runs along the rows of the
// pictures, y down, z from slice to slice, in mm from the corner of the first voxel, whose centre is at half
// the spacing. Immutable, any thread.
//
// In the body's own frame (across, up, back) the bone is (across/a)^2 + (up/b)^2 + (back/c)^2 <= 1, with c by
// the sign of back. The cartilage is the set of points whose closest place on the back of the bone is covered
// and not farther away than the thickness at that place.
class PhantomBody
{
public:
    explicit PhantomBody(const PhantomParameters &parameters);

    bool isBone(const Point &point) const;
    // Inside the bone, but in its outer shell of this thickness (measured along the axes).
    bool isShell(const Point &point, double thicknessMm) const;
    bool isCartilage(const Point &point) const;

    // The foot of the perpendicular from a point behind the patella to the back of the bone, and its length.
    struct Foot
    {
        BonePlace place;
        double distanceMm;
    };
    // Nothing for points inside the bone or in front of its widest section.
    std::optional<Foot> footBehind(const Point &point) const;

    bool isCovered(const BonePlace &place) const;
    // Outside the covered part: the thickness at the rim.
    double thicknessMm(const BonePlace &place) const;

    // The point at this height above the bone along the outward normal.
    Point pointAbove(const BonePlace &place, double heightMm) const;

    // Area of the bone's surface per unit of across * up, and its curvatures there (positive, per mm, per
    // mm^2).
    double areaDensity(const BonePlace &place) const;
    double meanCurvature(const BonePlace &place) const;
    double gaussianCurvature(const BonePlace &place) const;

    // Farther than this from the centre there is neither bone nor cartilage.
    double radiusMm() const { return outerRadius; }
    const Point &centre() const { return origin; }
    double coveredRadius() const { return covered; }
    double ridgeAcross() const { return ridge; }

private:
    Point toBody(const Point &point) const;
    Point toVolume(const Point &local) const;
    double scaledRadiusSquared(const Point &local, double shrinkMm) const;

    double a, b, front, back; // half axes
    double covered, ridge, ridgeThickness, rimThickness;
    double outerRadius;
    Point origin;
    std::array<Point, 3> axes; // across, up, back
    bool mirrored;
    double extentX;
};

} // namespace demo
