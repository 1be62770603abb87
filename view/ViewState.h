#pragma once

#include "contours/EdgePoint.h"
#include "contours/SlicedContoursSegment.h"
#include "view/camera/Homogeneous.h"

#include <QPoint>
#include <QPointer>

#include <array>
#include <vector>

// What the mouse and the keys do in a view.
enum class InteractMode : int
{
    None = 0,
    Perspective = 1,
    Move = 2,
    Zoom = 3,
    Draw = 4,
    Window = 5,
    Trace = 6,
    Reserved = 7, // can be entered, does nothing
    Guess = 8,
    Erase = 9,
    Load = 10
};

// All that a stacked slice view knows about its camera, its working plane, its cursor and the interaction
// that is going on. Plain data of one view; the view, its painting and its interaction modes share it. View
// space is in pixels with the origin at the widget's centre and y upwards; world space is in mm. GUI thread.
struct ViewState
{
    bool rubberBandActive = false; // the rectangle of Zoom mode
    float rubberBandAlpha = 0.0f;  // 0 .. 0.5
    bool cubeActive = false;       // the spinning box of Perspective mode
    float cubeAngle = 0.0f;        // degrees
    float cubeAlpha = 0.0f;        // 1 down to 0
    bool dashedSegments = false;
    bool animatingView = false;  // the view matrix is on the way to its target
    bool repaintPending = false; // repaint at the next tick
    int height = 1;              // last size given to the view, in logical pixels
    int width = 1;
    InteractMode interactMode = InteractMode::None;
    InteractMode interactBaseMode = InteractMode::None;
    QPoint lastPosition; // mouse positions in view space
    QPoint pressPosition;
    std::vector<EdgePoint> edgeMarkers;            // copies: their extractor may be closed
    QPointer<SlicedContoursSegment> activeSegment; // being traced
    QPointer<SlicedContoursSegment> anchorSegment; // that tracing continues from
    int activeEnd = 1;                             // -1 prepends, +1 appends to the active segment
    std::array<Vector4, 4> rubberBandCorners{};    // in world space; 0 pressed, 2 present, 1 and 3 between
    std::array<float, 3> guessStart{};             // mm
    bool guessStartSet = false;
    Vector4 eyePoint{0.0, 0.0, 1.0, 0.0}; // the pick ray, in view space
    Vector4 mousePoint{0.0, 0.0, 0.0, 1.0};
    Vector4 cursorView{0.0, 0.0, 0.0, 1.0}; // where the pick ray meets the working plane
    Vector4 cursorWorld{0.0, 0.0, 0.0, 1.0};
    Plane workingPlane{0.0, 0.0, 1.0, 0.0};
    bool workingPlaneAxial = true;            // constant z
    float workingZ = 0.0f;                    // mm, of an axial plane
    Matrix4 viewMatrix = Matrix4::identity(); // world to view space
    Matrix4 targetViewMatrix = Matrix4::identity();
    float perspectiveShearX = 0.0f;   // -1 .. 1
    float perspectiveShearY = 0.0f;   // -1 .. 1
    float perspectiveStrength = 0.0f; // 0 .. 0.001
    Matrix4 projectionMatrix{};
};
