#pragma once

#include <QPoint>
#include <QRect>

// What stands where in the windows that the demo drives.
namespace DemoRows {

// Rows of the image list, in the order in which opening and the procedure make them.
constexpr int volumeRow = 0, contoursRow = 1, rasterRow = 3, thicknessRow = 5, minimalThicknessRow = 6,
              minimalColoringRow = 8, rowCount = 9;
// Rows of the composition in the procedure's viewer, and those that the script drags into it.
constexpr int volumePod = 0, pointsPod = 1, contoursPod = 2, rasterPod = 3, coloringPod = 4;
constexpr int displayColumn = 1, colorColumn = 2, opacityColumn = 3, analyzeColumn = 4, editColumn = 5,
              scopeColumn = 6;
constexpr int contourCount = 1; // child rows before those of the fragments

// Frames of the two windows while the script works in both, in pixels of the screen.
constexpr QRect besideTheViewer()
{
    return {QPoint(0, 0), QPoint(430, 580)};
}
constexpr QRect viewerPlace()
{
    return {QPoint(440, 0), QPoint(1272, 1012)};
}

} // namespace DemoRows
