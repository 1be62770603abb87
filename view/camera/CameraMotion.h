#pragma once

#include "view/camera/Homogeneous.h"

// How a view matrix moves.

struct Approach
{
    bool moved = false;   // at least one step was made
    bool reached = false; // the view is the target now
};

// Moves view towards target, element by element, by one eighth of the remaining way for each step i < steps.
// A way of at most 0.001 in all elements, or one that is no number, ends it.
Approach approach(Matrix4 &view, const Matrix4 &target, double steps);

// The number of animation steps for the time since the last tick; one for a first tick (negative time) and
// after a pause of more than 60 s.
double animationSteps(double elapsedMs);

// The view that shows a scene of that extent (mm) as large as it fits and centred. An extent that is not
// positive or not finite takes no part; with none the scale is 1.
Matrix4 fittedView(double extentX, double extentY, int width, int height);

// The axis view nearest to target with its scale and with the same point at the centre. target itself if it
// is singular.
Matrix4 snappedToAxis(const Matrix4 &target);

// The plane through position on the axis that follows that of plane, or is nearest to it.
Plane turnedOntoAxis(const Plane &plane, const Vector4 &position);
