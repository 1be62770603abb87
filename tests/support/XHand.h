#pragma once

#include <QEvent>
#include <QObject>
#include <QPoint>
#include <QPointer>
#include <QWidget>

#include <initializer_list>
#include <vector>

// Moves the pointer and presses buttons and keys of the X server, as a user does, and waits until the widget
// has seen the event. Positions are in the widget's logical pixels. Uses a connection of its own.
class XHand : public QObject
{
public:
    explicit XHand(QWidget *widget);
    ~XHand() override;

    void moveTo(const QPoint &position);
    void press(Qt::MouseButton button);
    void release(Qt::MouseButton button);
    void click(Qt::MouseButton button);
    // A click whose press opens a dialog: the release may reach another window, or none.
    void clickIntoDialog(Qt::MouseButton button);
    // Two clicks that count as a double click; clicks of other calls never do.
    void doubleClick(Qt::MouseButton button);
    void drag(Qt::MouseButton button, const QPoint &from, const QPoint &to);
    // One notch; up is away from the user.
    void wheel(bool up);
    // keySym as in <X11/keysymdef.h>: ' ', 'z', 0xffe1 (Shift) ...
    void keyDown(unsigned long keySym);
    void keyUp(unsigned long keySym);
    void key(unsigned long keySym);
    // A key that changes the window: its release may reach another one, or none.
    void keyIntoOtherWindow(unsigned long keySym);

    bool eventFilter(QObject *watched, QEvent *event) override;

    static constexpr unsigned long Shift = 0xffe1, Control = 0xffe3, Alt = 0xffe9, Tab = 0xff09,
                                   Return = 0xff0d, Escape = 0xff1b, F11 = 0xffc8, PageUp = 0xff55,
                                   PageDown = 0xff56, Left = 0xff51, Up = 0xff52, Right = 0xff53,
                                   Down = 0xff54, ScrollLock = 0xff14;

private:
    QPoint pixelOnScreen(const QPoint &position) const;
    QPoint pointerOnScreen() const;
    void buttonEvent(unsigned int button, bool down);
    void keyEvent(unsigned long keySym, bool down);
    void flush();
    void waitFor(std::initializer_list<QEvent::Type> types, int before);
    int seen(std::initializer_list<QEvent::Type> types) const;

    QPointer<QWidget> target;
    void *display; // of Xlib
    std::vector<int> counts;
};
