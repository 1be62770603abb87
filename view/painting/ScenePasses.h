#pragma once

#include <array>

// What is drawn of an object in each of the three passes of a view.

// The sides of the working plane.
enum class Pass : int
{
    Behind = -1,
    On = 0,
    Before = 1
};

enum class Drawing
{
    Nothing,
    Point, // a marker at the cursor
    Plane, // what lies in the working plane
    Whole
};

// What an object with this display scope draws in a pass.
Drawing drawingFor(int displayScope, Pass pass);

// The order of the passes, from back to front, for a working plane whose normal has this z in view space.
std::array<Pass, 3> passOrder(double normalZ);
