#pragma once

#include "platform/OpenGl.h"

#include <array>

// Widths of lines, sizes of points and stipple patterns are given in pixels of view space. OpenGL takes them
// in pixels of the picture, of which a screen of high resolution has several for one. What is drawn through
// the functions below covers the same part of a window on every screen.

// For the time of the scope, which needs a current OpenGL context, one pixel of view space is this many
// pixels of the picture in what this thread draws. Lines and points are one pixel of view space wide at the
// begin. Without a scope the two are the same: pictures that are not on the screen know no other pixels.
class GlPixelScaleScope
{
public:
    explicit GlPixelScaleScope(double picturePixels);
    ~GlPixelScaleScope();
    GlPixelScaleScope(const GlPixelScaleScope &) = delete;
    GlPixelScaleScope &operator=(const GlPixelScaleScope &) = delete;

private:
    double former;
};

// Width of lines, in pixels of view space. OpenGL draws the nearest width that it is able to.
void setLineWidth(double pixels);
// The dashes of lines, each bit one pixel of view space, to the nearest whole number of picture pixels.
void setLineStipple(GLushort pattern);

// 32 rows of 4 bytes from below, the leftmost pixel in the highest bit.
using StipplePattern = std::array<GLubyte, 128>;
// Diagonal lines over one eighth of the pixels: one bit of every eight, in each row one further.
StipplePattern hatching();
// Each bit made a block of side * side bits; side is 1, 2 or 4. A pattern that repeats itself after every
// 32 / side pixels does so still.
StipplePattern enlarged(const StipplePattern &pattern, int side);
// The side of such a block for a pixel scale: the one that comes nearest to it as a factor.
int stippleBlockSide(double pixelScale);
// The pattern of filled polygons, which repeats itself after every 8 pixels of view space.
void setPolygonStipple(const StipplePattern &pattern);
