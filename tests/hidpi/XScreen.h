#pragma once

#include <QPoint>
#include <QSize>

class QWidget;

// What the X server itself knows of the screen: positions and sizes in its pixels, whatever the toolkit takes
// for one. Uses a connection of its own per call.
namespace XScreen {

// The upper left pixel of the widget's window, without the frame of a window manager.
QPoint windowOrigin(const QWidget *widget);

struct CursorPicture
{
    QSize size;
    QPoint hotSpot;
};
// The cursor that is shown now.
CursorPicture cursor();

} // namespace XScreen
