#pragma once

#include "demo/xtest/XTestDevice.h"

#include <QEvent>
#include <QObject>
#include <QPoint>
#include <QPointer>
#include <QWidget>

#include <initializer_list>
#include <vector>

// A user at one widget: moves the pointer and presses buttons and keys of the X server, and waits until the
// widget has seen the event. Positions are in the widget's logical pixels. The thread of the windows.
class XHand : public QObject
{
public:
    explicit XHand(QWidget *widget);

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
    // Names of keys as XTestDevice takes them.
    void keyDown(const char *name);
    void keyUp(const char *name);
    void key(const char *name);
    // A key that changes the window: its release may reach another one, or none.
    void keyIntoOtherWindow(const char *name);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QPoint pixelOnScreen(const QPoint &position) const;
    void waitFor(std::initializer_list<QEvent::Type> types, int before);
    int seen(std::initializer_list<QEvent::Type> types) const;

    QPointer<QWidget> target;
    XTestDevice device;
    std::vector<int> counts;
};
