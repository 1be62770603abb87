#pragma once

#include <QPoint>
#include <QRect>
#include <QString>

#include <memory>

class QImage;

// Mouse, keyboard and eyes of a user: events that the X server makes as if they came from the devices, and
// pictures of the whole screen; nothing waits for what follows from them. Has a connection of its own; one
// thread at a time. Positions are pixels of the screen from its upper left corner, whatever the toolkit takes
// for a pixel.
class XTestDevice
{
public:
    enum Button
    {
        Left = 1,
        Middle = 2,
        Right = 3,
        WheelUp = 4,
        WheelDown = 5
    };

    // Throws std::runtime_error when there is no display or no XTest extension.
    XTestDevice();
    ~XTestDevice();
    XTestDevice(const XTestDevice &) = delete;
    XTestDevice &operator=(const XTestDevice &) = delete;

    void moveTo(const QPoint &position);
    QPoint pointer() const;
    void press(Button button);
    void release(Button button);
    void click(const QPoint &position, Button button = Left);
    // Drags something out of one window and drops it in another, slowly enough for drag and drop.
    void carry(const QPoint &from, const QPoint &to);

    // Key names as the X server knows them ("Return", "Shift_L", "space", "s").
    void pressKey(const char *name);
    void releaseKey(const char *name);
    void tapKey(const char *name);
    // Characters without a key of their own get a spare one for a moment.
    void type(const QString &text);

    QImage screenshot() const;

    // The outermost window around this one: with its frame when a window manager has put one around it.
    QRect frameOf(quintptr window) const;
    // The upper left pixel of this window, within its frame.
    QPoint originOf(quintptr window) const;
    // What the button of the window's frame does.
    void askToClose(quintptr window);

private:
    struct Connection;
    std::unique_ptr<Connection> connection;
};
