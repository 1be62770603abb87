#pragma once

#include <QList>

// A point of an edge between bright and dark, found in one slice. Positions in mm. The gradient here is the
// negative of the image's derivative: it points from bright to dark, in units of the full 8-bit range.
struct EdgePoint
{
    float x = 0.0f;
    float y = 0.0f;
    float z = 0.0f;  // the slice's centre
    float xS = 0.0f; // shift from the pixel's centre, in pixels
    float yS = 0.0f;
    float zS = 0.0f;       // always 0
    float strength = 0.0f; // magnitude of the gradient
    float gx = 0.0f;
    float gy = 0.0f;
    float gz = 0.0f;       // always 0
    bool excluded = false; // takes no part when the mouse snaps to points

    EdgePoint() = default;
    // A point without gradient, for where the mouse finds no edge.
    EdgePoint(float xMm, float yMm, float zMm, float pointStrength);

    // The shift along the gradient with its sign: negative for a shift in the gradient's direction.
    float t() const;
    // The direction of increasing intensity, -pi .. pi.
    float theta() const;
    // atan(gy / gx), 0 without gradient.
    float alpha() const;
};

// Points are owned by the set that they come from.
using EdgePointList = QList<EdgePoint *>;
