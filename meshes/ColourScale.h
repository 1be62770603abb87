#pragma once

#include <array>
#include <span>

// Red, green, blue and alpha, each from 0 to 1.
using RgbaColour = std::array<float, 4>;

// How a value, as a fraction of the largest one, becomes a colour: a table of rising breaks with one colour
// each, blended in between.
struct ColourScale
{
    std::span<const double> breaks;
    std::span<const RgbaColour> colours; // as many as breaks
    // A ramp without bands. Kept as an alternative to the table; nothing is drawn with it, on purpose.
    RgbaColour (*continuousColour)(double fraction);

    // The first break that is above the fraction; the number of breaks if there is none, 0 for a NaN.
    int breakAbove(double fraction) const;
    // Blended between the colours of the breaks k - 1 and k by where the fraction lies between them. The
    // first colour for k <= 0, the last one from the number of breaks on, whatever the fraction is.
    RgbaColour colour(int k, double fraction) const;
};

// From blue over cyan, green and yellow to red, with black lines at 25, 50 and 75 per cent: 11 breaks.
const ColourScale &bandedColourScale();

// From brown over red to a bluish white; what lies outside 0 to 1 has the colour of the nearer end.
RgbaColour continuousThicknessColour(double fraction);
