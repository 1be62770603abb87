#include "tests/hidpi/XScreen.h"

#include <memory>
#include <stdexcept>

#include <X11/Xlib.h>
#include <X11/extensions/Xfixes.h>

XScreen::CursorPicture XScreen::cursor()
{
    const std::unique_ptr<Display, int (*)(Display *)> display(XOpenDisplay(nullptr), XCloseDisplay);
    if (!display)
        throw std::runtime_error("no X display");
    const std::unique_ptr<XFixesCursorImage, int (*)(void *)> image(XFixesGetCursorImage(display.get()),
                                                                    XFree);
    if (!image)
        throw std::runtime_error("the X server does not tell its cursor");
    return {QSize(image->width, image->height), QPoint(image->xhot, image->yhot)};
}
