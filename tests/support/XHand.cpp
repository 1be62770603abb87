#include "tests/support/XHand.h"

#include <QApplication>
#include <QTest>

#include <stdexcept>

#include <X11/Xlib.h>
#include <X11/extensions/XTest.h>

// Xlib's macros hide names of the toolkit.
#undef None
#undef KeyPress
#undef KeyRelease
#undef Bool

namespace {

constexpr int waitMs = 3000;
constexpr int longDoubleClickMs = 2000;
constexpr std::initializer_list<QEvent::Type> pressTypes{QEvent::MouseButtonPress,
                                                         QEvent::MouseButtonDblClick};

Display *asDisplay(void *pointer)
{
    return static_cast<Display *>(pointer);
}

unsigned int buttonNumber(Qt::MouseButton button)
{
    return button == Qt::LeftButton ? 1 : button == Qt::MiddleButton ? 2 : 3;
}

} // namespace

XHand::XHand(QWidget *widget)
    : target(widget)
    , display(XOpenDisplay(nullptr))
    , counts(QEvent::MaxUser + 1, 0)
{
    if (display == nullptr)
        throw std::runtime_error("no X display");
    widget->installEventFilter(this);
    widget->setMouseTracking(true); // else moves without a button are not sent
    QApplication::setDoubleClickInterval(0);
}

XHand::~XHand()
{
    XCloseDisplay(asDisplay(display));
}

bool XHand::eventFilter(QObject *, QEvent *event)
{
    ++counts[static_cast<std::size_t>(event->type())];
    return false;
}

int XHand::seen(std::initializer_list<QEvent::Type> types) const
{
    int sum = 0;
    for (const QEvent::Type type : types)
        sum += counts[static_cast<std::size_t>(type)];
    return sum;
}

void XHand::flush()
{
    XFlush(asDisplay(display));
}

// A handler may also delete the widget, or run a dialog that is answered meanwhile.
void XHand::waitFor(std::initializer_list<QEvent::Type> types, int before)
{
    if (!QTest::qWaitFor([&] { return target.isNull() || seen(types) > before; }, waitMs))
        QTest::qFail("the widget has not seen the event", __FILE__, __LINE__);
}

// The toolkit's global positions are rounded where a logical pixel is several of the screen.
QPoint XHand::pixelOnScreen(const QPoint &position) const
{
    const QWidget *window = target->window();
    const QPointF inWindow = QPointF(target->mapTo(window, position)) * target->devicePixelRatioF();
    int left = 0, top = 0;
    Window child = 0;
    XTranslateCoordinates(asDisplay(display), window->winId(), DefaultRootWindow(asDisplay(display)), 0, 0,
                          &left, &top, &child);
    return QPoint(left, top) + inWindow.toPoint();
}

QPoint XHand::pointerOnScreen() const
{
    Window root = 0, child = 0;
    int x = 0, y = 0, xInWindow = 0, yInWindow = 0;
    unsigned int mask = 0;
    XQueryPointer(asDisplay(display), DefaultRootWindow(asDisplay(display)), &root, &child, &x, &y,
                  &xInWindow, &yInWindow, &mask);
    return {x, y};
}

void XHand::moveTo(const QPoint &position)
{
    const QPoint onScreen = pixelOnScreen(position);
    if (pointerOnScreen() == onScreen)
        return;
    const int before = seen({QEvent::MouseMove});
    XTestFakeMotionEvent(asDisplay(display), -1, onScreen.x(), onScreen.y(), 0);
    flush();
    waitFor({QEvent::MouseMove}, before);
}

void XHand::buttonEvent(unsigned int button, bool down)
{
    XTestFakeButtonEvent(asDisplay(display), button, down ? 1 : 0, 0);
    flush();
}

void XHand::press(Qt::MouseButton button)
{
    const int before = seen(pressTypes);
    buttonEvent(buttonNumber(button), true);
    waitFor(pressTypes, before);
}

void XHand::release(Qt::MouseButton button)
{
    const int before = seen({QEvent::MouseButtonRelease});
    buttonEvent(buttonNumber(button), false);
    waitFor({QEvent::MouseButtonRelease}, before);
}

void XHand::click(Qt::MouseButton button)
{
    press(button);
    release(button);
}

void XHand::clickIntoDialog(Qt::MouseButton button)
{
    press(button);
    buttonEvent(buttonNumber(button), false);
    QTest::qWait(50);
    // Until the window manager has taken a dialog's frame away, it would catch the next press on the widget.
    constexpr int frameMs = 300;
    if (!target.isNull() && target->window()->isVisible())
        static_cast<void>(QTest::qWaitForWindowActive(target->window(), frameMs));
}

void XHand::doubleClick(Qt::MouseButton button)
{
    QApplication::setDoubleClickInterval(longDoubleClickMs);
    click(button);
    click(button);
    QApplication::setDoubleClickInterval(0);
}

void XHand::drag(Qt::MouseButton button, const QPoint &from, const QPoint &to)
{
    moveTo(from);
    press(button);
    moveTo(to);
    release(button);
}

void XHand::wheel(bool up)
{
    const int before = seen({QEvent::Wheel});
    const unsigned int button = up ? 4 : 5;
    buttonEvent(button, true);
    buttonEvent(button, false);
    waitFor({QEvent::Wheel}, before);
}

void XHand::keyEvent(unsigned long keySym, bool down)
{
    const KeyCode code = XKeysymToKeycode(asDisplay(display), keySym);
    XTestFakeKeyEvent(asDisplay(display), code, down ? 1 : 0, 0);
    flush();
}

void XHand::keyDown(unsigned long keySym)
{
    const int before = seen({QEvent::KeyPress});
    keyEvent(keySym, true);
    waitFor({QEvent::KeyPress}, before);
}

void XHand::keyUp(unsigned long keySym)
{
    const int before = seen({QEvent::KeyRelease});
    keyEvent(keySym, false);
    waitFor({QEvent::KeyRelease}, before);
}

void XHand::key(unsigned long keySym)
{
    keyDown(keySym);
    keyUp(keySym);
}

void XHand::keyIntoOtherWindow(unsigned long keySym)
{
    keyDown(keySym);
    keyEvent(keySym, false);
}
