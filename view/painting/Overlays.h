#pragma once

#include "contours/EdgePoint.h"
#include "view/camera/Homogeneous.h"

#include <array>
#include <span>

// What a view draws over its scene. The geometry is made by pure functions; the draw functions send it and
// leave the OpenGL state as they found it. They need a current OpenGL context.

using Point3 = std::array<double, 3>;

// The mark of an edge point, in mm: a kite above it along its gradient, and a line that leads there.
struct EdgeMark
{
    std::array<Point3, 4> kite;
    Point3 lineStart;
    Point3 lineEnd;
    bool excluded = false;
};
EdgeMark edgeMark(const EdgePoint &point, float granularity);
void drawEdgeMarks(std::span<const EdgePoint> points, float granularity);

// A dashed glowing rectangle through four corners in world space.
void drawRubberBand(std::span<const Vector4, 4> corners, float alpha);

// A quad in the unit box; edge i runs from corner i to corner i + 1 and is drawn where drawnEdges[i].
struct CubeQuad
{
    std::array<Point3, 4> corners;
    std::array<bool, 4> drawnEdges{true, true, true, true};
};
// Six sides of the box with corners at +-1, wound clockwise as seen from outside.
std::array<CubeQuad, 6> cubeSides();
// The arrow on the side z = 1, in three quads wound like that side.
std::array<CubeQuad, 3> cubeArrow();
// The box around the centre of view space, turned about y: far edges faint, near ones strong.
void drawCube(float angleDegrees, float alpha);
