#pragma once

#include "platform/OpenGl.h"

#include <QOffscreenSurface>
#include <QOpenGLContext>

#include <memory>

class QOpenGLFramebufferObject;

// A picture of 8-bit red, green, blue and alpha that is not on the screen, with an OpenGL context of its own
// (compatibility profile, no depth, no multisampling, nothing shared). Made and destroyed on the GUI thread.
// A context belongs to one thread at a time: the one that has it gives it away, then another one takes it
// over. Without OpenGL the canvas exists, but never becomes current.
class OffscreenCanvas
{
public:
    // Sizes in pixels; a size below 1 counts as 1. No context is current afterwards.
    OffscreenCanvas(int width, int height);
    // In the GUI thread, which must have the canvas or be able to take it over. No context is current
    // afterwards.
    ~OffscreenCanvas();
    OffscreenCanvas(const OffscreenCanvas &) = delete;
    OffscreenCanvas &operator=(const OffscreenCanvas &) = delete;

    // In the thread that has the canvas, which must not be current.
    void giveAway();
    // In any thread, of a canvas that was given away; nothing otherwise.
    void takeOver();

    // Makes the context and the whole picture the target of drawing in this thread, which has the canvas.
    // False if that fails.
    bool makeCurrent();
    void doneCurrent();

    // What messages name the canvas by; null without OpenGL.
    const void *handle() const;

private:
    void createPicture(int width, int height);

    QOffscreenSurface surface;
    QOpenGLContext context;
    std::unique_ptr<QOpenGLFramebufferObject> picture; // null without OpenGL
};
