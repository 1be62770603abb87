#pragma once

#include "objects/GraphicsObjectRenderAdvisor.h"
#include "objects/ImageObject.h"
#include "tests/support/GlCanvas.h"

#include <QColor>
#include <QRectF>

#include <cstdint>

// The box around all that an object draws in 0 .. 40 mm of x and y, seen along z, to a quarter of a
// millimetre; its y rises with that of the world. Null if nothing shows.
inline QRectF drawnBox(ImageObject &object)
{
    class NoAdvice : public GraphicsObjectRenderAdvisor
    {
    public:
        bool overrides(GraphicsObject *, int, int) override { return false; }
        std::uint32_t value(GraphicsObject *, int, int) override { return 0; }
    };
    constexpr int side = 40, pixelsPerMm = 4;
    GlCanvas canvas(side * pixelsPerMm, side * pixelsPerMm);
    if (!canvas.isValid())
        return {};
    canvas.ortho(0.0, side, 0.0, side);
    NoAdvice advice;
    object.render(&advice);
    const QImage picture = canvas.picture();
    QRect pixels;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            if (qGray(picture.pixel(x, picture.height() - 1 - y)) > 0)
                pixels |= QRect(x, y, 1, 1);
    constexpr double mm = 1.0 / pixelsPerMm;
    return {pixels.x() * mm, pixels.y() * mm, pixels.width() * mm, pixels.height() * mm};
}
