#include "tests/hidpi/XScreen.h"

#include <QWidget>

#include <memory>
#include <stdexcept>

#include <X11/Xlib.h>
#include <X11/extensions/Xfixes.h>

namespace {

std::unique_ptr<Display, int (*)(Display *)> connect()
{
    Display *display = XOpenDisplay(nullptr);
    if (display == nullptr)
        throw std::runtime_error("no X display");
    return {display, XCloseDisplay};
}

} // namespace

QPoint XScreen::windowOrigin(const QWidget *widget)
{
    const auto display = connect();
    int left = 0, top = 0;
    Window child = 0;
    XTranslateCoordinates(display.get(), widget->window()->winId(), DefaultRootWindow(display.get()), 0, 0,
                          &left, &top, &child);
    return {left, top};
}

XScreen::CursorPicture XScreen::cursor()
{
    const auto display = connect();
    const std::unique_ptr<XFixesCursorImage, int (*)(void *)> image(XFixesGetCursorImage(display.get()),
                                                                    XFree);
    if (!image)
        throw std::runtime_error("the X server does not tell its cursor");
    return {QSize(image->width, image->height), QPoint(image->xhot, image->yhot)};
}
