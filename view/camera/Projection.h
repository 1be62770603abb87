#pragma once

#include "view/camera/Homogeneous.h"

// Projection of view space to clip space for a view of width by height pixels. strength p (0 .. 0.001) is how
// fast things shrink with their distance behind the screen, the shears (-1 .. 1) say where they vanish to. A
// point goes to the screen by rows 0 and 1 and the division by 1 - p z.
Matrix4 projectionMatrix(int width, int height, double shearX, double shearY, double strength);

// The same projection, for strength 0, with z in its row of depth. Without perspective the row depends on y
// alone, and the matrix has no inverse; drivers that look at clip planes behind the projection need one. To
// be used with a constant depth, which is what the row of y gives to all that a pixel shows.
Matrix4 invertibleProjection(const Matrix4 &projection);

// The eye of that projection: the pick ray of a pixel runs from here through (x, y, 0). At infinity along z
// for strength 0.
Vector4 eyeOf(double shearX, double shearY, double strength);

// Where the line through two points meets a plane, all in the same space. Not divided by w, which is 0 for a
// line in or parallel to the plane.
Vector4 meetingPoint(const Vector4 &eye, const Vector4 &mouse, const Plane &plane);

// Divides by w, which becomes 1; not finite where w is 0.
Vector4 divided(const Vector4 &point);
