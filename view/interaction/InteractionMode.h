#pragma once

#include <QPoint>
#include <Qt>

class QStackedSliceView;
struct ViewState;

// A mouse event in view space; the cursor of the view's state is already up to date.
struct MouseInput
{
    QPoint position;
    QPoint movement;                         // since the last mouse event
    Qt::MouseButton button = Qt::NoButton;   // of a press or release
    Qt::MouseButtons buttons = Qt::NoButton; // held
    Qt::KeyboardModifiers modifiers = Qt::NoModifier;
};

// What the mouse does in a stacked slice view while one interaction mode is in force. Owned by the view,
// whose state it shares. A handler may run a message box: the view may be gone when it comes back.
class InteractionMode
{
public:
    InteractionMode(QStackedSliceView &modeView, ViewState &viewState)
        : view(modeView)
        , state(viewState)
    {}
    InteractionMode(const InteractionMode &) = delete;
    InteractionMode &operator=(const InteractionMode &) = delete;
    virtual ~InteractionMode() = default;

    virtual void enter() {}
    virtual void leave() {}
    virtual void press(const MouseInput &) {}
    virtual void move(const MouseInput &) {}
    virtual void release(const MouseInput &) {}
    // False if the double click is to be taken as a press.
    virtual bool doubleClick(const MouseInput &) { return false; }

protected:
    QStackedSliceView &view;
    ViewState &state;
};
