#pragma once

#include "platform/GlState.h"

#include <QImage>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <QSurfaceFormat>

#include <memory>

// An off-screen picture with a compatibility context of its own, current while this lives. World coordinates
// are set up by ortho(); row 0 of picture() is at the top. Needs an X display and a QGuiApplication.
class GlCanvas
{
public:
    GlCanvas(int width, int height)
    {
        QSurfaceFormat format;
        format.setRenderableType(QSurfaceFormat::OpenGL);
        format.setVersion(2, 1);
        context.setFormat(format);
        surface.setFormat(format);
        surface.create();
        if (!context.create() || !context.makeCurrent(&surface))
            return;
        buffer = std::make_unique<QOpenGLFramebufferObject>(width, height,
                                                            QOpenGLFramebufferObject::CombinedDepthStencil);
        buffer->bind();
        glViewport(0, 0, width, height);
        glClearColor(0.0f, 0.0f, 0.0f, 0.0f);
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    }

    ~GlCanvas()
    {
        if (isValid())
            deleteContextTexture();
        buffer.reset();
        context.doneCurrent();
    }
    GlCanvas(const GlCanvas &) = delete;
    GlCanvas &operator=(const GlCanvas &) = delete;

    bool isValid() const { return buffer != nullptr && buffer->isValid(); }

    // Shows left..right and bottom..top of the world, and z from -depth to depth.
    void ortho(double left, double right, double bottom, double top, double depth = 1e6)
    {
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        glOrtho(left, right, bottom, top, -depth, depth);
        glMatrixMode(GL_MODELVIEW);
        glLoadIdentity();
    }

    // Nearest filtering and clamping for slices, as a view sets them.
    void useNearestTexture()
    {
        glBindTexture(GL_TEXTURE_2D, contextTexture());
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP);
    }

    QImage picture() const { return buffer->toImage(); }

private:
    QOffscreenSurface surface;
    QOpenGLContext context;
    std::unique_ptr<QOpenGLFramebufferObject> buffer;
};
