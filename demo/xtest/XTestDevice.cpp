#include "demo/xtest/XTestDevice.h"

#include <QImage>

#include <chrono>
#include <stdexcept>
#include <thread>

#include <X11/XKBlib.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>

namespace {

void pause(int milliseconds)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

constexpr int keyMilliseconds = 8; // between the events of one key

KeySym keySymOf(QChar character)
{
    const ushort code = character.unicode();
    return code < 0x100 ? KeySym(code) : KeySym(0x01000000 + code);
}

} // namespace

struct XTestDevice::Connection
{
    Display *display = XOpenDisplay(nullptr);

    ~Connection()
    {
        if (display != nullptr)
            XCloseDisplay(display);
    }
    void send() const { XFlush(display); }

    void key(KeyCode code, bool down) const
    {
        XTestFakeKeyEvent(display, code, down ? True : False, CurrentTime);
        send();
        pause(keyMilliseconds);
    }

    // A key code that bears no symbol, to lend to characters that have no key.
    KeyCode spareKey() const
    {
        int first = 0, last = 0, symbolsPerKey = 0;
        XDisplayKeycodes(display, &first, &last);
        KeySym *symbols = XGetKeyboardMapping(display, KeyCode(first), last - first + 1, &symbolsPerKey);
        int spare = last;
        for (int code = last; code >= first; --code)
            if (symbols[(code - first) * symbolsPerKey] == NoSymbol) {
                spare = code;
                break;
            }
        XFree(symbols);
        return KeyCode(spare);
    }
};

XTestDevice::XTestDevice()
    : connection(std::make_unique<Connection>())
{
    int event = 0, error = 0, major = 0, minor = 0;
    if (connection->display == nullptr ||
        XTestQueryExtension(connection->display, &event, &error, &major, &minor) == False)
        throw std::runtime_error("no display that takes test events");
}

XTestDevice::~XTestDevice() = default;

void XTestDevice::moveTo(const QPoint &position)
{
    XTestFakeMotionEvent(connection->display, -1, position.x(), position.y(), CurrentTime);
    connection->send();
}

QPoint XTestDevice::pointer() const
{
    Display *display = connection->display;
    Window root = 0, child = 0;
    int x = 0, y = 0, xInWindow = 0, yInWindow = 0;
    unsigned int mask = 0;
    XQueryPointer(display, DefaultRootWindow(display), &root, &child, &x, &y, &xInWindow, &yInWindow, &mask);
    return {x, y};
}

void XTestDevice::press(Button button)
{
    XTestFakeButtonEvent(connection->display, button, True, CurrentTime);
    connection->send();
}

void XTestDevice::release(Button button)
{
    XTestFakeButtonEvent(connection->display, button, False, CurrentTime);
    connection->send();
}

void XTestDevice::click(const QPoint &position, Button button)
{
    moveTo(position);
    pause(30);
    press(button);
    pause(20);
    release(button);
    pause(30);
}

void XTestDevice::carry(const QPoint &from, const QPoint &to)
{
    constexpr int steps = 8;
    moveTo(from);
    pause(80);
    press(Left);
    pause(80);
    for (int i = 1; i <= steps; ++i) {
        moveTo(from + (to - from) * i / steps);
        pause(50);
    }
    moveTo(to + QPoint(1, 0));
    pause(150);
    release(Left);
}

void XTestDevice::pressKey(const char *name)
{
    connection->key(XKeysymToKeycode(connection->display, XStringToKeysym(name)), true);
}

void XTestDevice::releaseKey(const char *name)
{
    connection->key(XKeysymToKeycode(connection->display, XStringToKeysym(name)), false);
}

void XTestDevice::tapKey(const char *name)
{
    pressKey(name);
    releaseKey(name);
}

void XTestDevice::type(const QString &text)
{
    Display *display = connection->display;
    for (const QChar character : text) {
        KeySym symbol = keySymOf(character);
        KeyCode code = XKeysymToKeycode(display, symbol);
        const bool lent = code == 0;
        if (lent) {
            code = connection->spareKey();
            XChangeKeyboardMapping(display, code, 1, &symbol, 1);
            XSync(display, False);
            pause(100); // the program hears of the new mapping first
        }
        const bool shifted = !lent && XkbKeycodeToKeysym(display, code, 0, 0) != symbol;
        if (shifted)
            pressKey("Shift_L");
        connection->key(code, true);
        connection->key(code, false);
        if (shifted)
            releaseKey("Shift_L");
        if (lent) {
            pause(100);
            KeySym none = NoSymbol;
            XChangeKeyboardMapping(display, code, 1, &none, 1);
            XSync(display, False);
        }
    }
}

QImage XTestDevice::screenshot() const
{
    Display *display = connection->display;
    const int screen = DefaultScreen(display);
    const int width = DisplayWidth(display, screen), height = DisplayHeight(display, screen);
    XImage *picture = XGetImage(display, RootWindow(display, screen), 0, 0, unsigned(width), unsigned(height),
                                AllPlanes, ZPixmap);
    if (picture == nullptr || picture->bits_per_pixel != 32)
        throw std::runtime_error("the screen cannot be read");
    QImage copy = QImage(reinterpret_cast<const uchar *>(picture->data), width, height,
                         picture->bytes_per_line, QImage::Format_RGB32)
                      .copy();
    XDestroyImage(picture);
    return copy;
}

QRect XTestDevice::frameOf(quintptr window) const
{
    Display *display = connection->display;
    Window current = window, root = 0, parent = 0;
    Window *children = nullptr;
    unsigned int count = 0;
    while (XQueryTree(display, current, &root, &parent, &children, &count) != 0) {
        if (children != nullptr)
            XFree(children);
        if (parent == root || parent == 0)
            break;
        current = parent;
    }
    int x = 0, y = 0;
    unsigned int width = 0, height = 0, border = 0, depth = 0;
    XGetGeometry(display, current, &root, &x, &y, &width, &height, &border, &depth);
    return {x, y, int(width), int(height)};
}

QPoint XTestDevice::originOf(quintptr window) const
{
    Display *display = connection->display;
    int left = 0, top = 0;
    Window child = 0;
    XTranslateCoordinates(display, window, DefaultRootWindow(display), 0, 0, &left, &top, &child);
    return {left, top};
}

void XTestDevice::askToClose(quintptr window)
{
    Display *display = connection->display;
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = window;
    event.xclient.message_type = XInternAtom(display, "WM_PROTOCOLS", False);
    event.xclient.format = 32;
    event.xclient.data.l[0] = static_cast<long>(XInternAtom(display, "WM_DELETE_WINDOW", False));
    XSendEvent(display, window, False, NoEventMask, &event);
    connection->send();
}
