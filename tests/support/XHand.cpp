#include "tests/support/XHand.h"

#include <QApplication>
#include <QTest>

namespace {

constexpr int waitMs = 3000;
constexpr int longDoubleClickMs = 2000;
constexpr std::initializer_list<QEvent::Type> pressTypes{QEvent::MouseButtonPress,
                                                         QEvent::MouseButtonDblClick};

XTestDevice::Button buttonOf(Qt::MouseButton button)
{
    return button == Qt::LeftButton     ? XTestDevice::Left
           : button == Qt::MiddleButton ? XTestDevice::Middle
                                        : XTestDevice::Right;
}

} // namespace

XHand::XHand(QWidget *widget)
    : target(widget)
    , counts(QEvent::MaxUser + 1, 0)
{
    widget->installEventFilter(this);
    widget->setMouseTracking(true); // else moves without a button are not sent
    QApplication::setDoubleClickInterval(0);
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
    return device.originOf(window->winId()) + inWindow.toPoint();
}

void XHand::moveTo(const QPoint &position)
{
    const QPoint onScreen = pixelOnScreen(position);
    if (device.pointer() == onScreen)
        return;
    const int before = seen({QEvent::MouseMove});
    device.moveTo(onScreen);
    waitFor({QEvent::MouseMove}, before);
}

void XHand::press(Qt::MouseButton button)
{
    const int before = seen(pressTypes);
    device.press(buttonOf(button));
    waitFor(pressTypes, before);
}

void XHand::release(Qt::MouseButton button)
{
    const int before = seen({QEvent::MouseButtonRelease});
    device.release(buttonOf(button));
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
    device.release(buttonOf(button));
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
    const XTestDevice::Button button = up ? XTestDevice::WheelUp : XTestDevice::WheelDown;
    device.press(button);
    device.release(button);
    waitFor({QEvent::Wheel}, before);
}

void XHand::keyDown(const char *name)
{
    const int before = seen({QEvent::KeyPress});
    device.pressKey(name);
    waitFor({QEvent::KeyPress}, before);
}

void XHand::keyUp(const char *name)
{
    const int before = seen({QEvent::KeyRelease});
    device.releaseKey(name);
    waitFor({QEvent::KeyRelease}, before);
}

void XHand::key(const char *name)
{
    keyDown(name);
    keyUp(name);
}

void XHand::keyIntoOtherWindow(const char *name)
{
    keyDown(name);
    device.releaseKey(name);
}
