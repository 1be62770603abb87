#pragma once

#include <QPoint>
#include <QSize>

// What the X server itself knows of the screen, in its pixels. Uses a connection of its own per call.
namespace XScreen {

struct CursorPicture
{
    QSize size;
    QPoint hotSpot;
};
// The cursor that is shown now.
CursorPicture cursor();

} // namespace XScreen
