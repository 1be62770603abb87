#include "platform/OffscreenCanvas.h"

#include "platform/GlState.h"

#include <QOpenGLFramebufferObject>
#include <QSurfaceFormat>
#include <QThread>

#include <algorithm>

namespace {

QSurfaceFormat compatibilityFormat()
{
    QSurfaceFormat format;
    format.setRenderableType(QSurfaceFormat::OpenGL);
    format.setVersion(2, 1); // the drivers answer with the compatibility profile
    format.setSamples(0);
    return format;
}

} // namespace

OffscreenCanvas::OffscreenCanvas(int width, int height)
{
    surface.setFormat(compatibilityFormat());
    surface.create();
    context.setFormat(compatibilityFormat());
    if (!context.create() || !context.makeCurrent(&surface))
        return;
    createPicture(std::max(width, 1), std::max(height, 1));
    context.doneCurrent();
}

void OffscreenCanvas::createPicture(int width, int height)
{
    QOpenGLFramebufferObjectFormat format;
    format.setAttachment(QOpenGLFramebufferObject::NoAttachment);
    format.setSamples(0);
    format.setTextureTarget(GL_TEXTURE_2D);
    format.setInternalTextureFormat(GL_RGBA8);
    auto made = std::make_unique<QOpenGLFramebufferObject>(width, height, format);
    if (made->isValid())
        picture = std::move(made);
}

OffscreenCanvas::~OffscreenCanvas()
{
    takeOver();
    if (!makeCurrent())
        return;
    deleteContextTexture();
    picture.reset();
    doneCurrent();
}

void OffscreenCanvas::giveAway()
{
    context.moveToThread(nullptr);
}

void OffscreenCanvas::takeOver()
{
    if (context.thread() == nullptr)
        context.moveToThread(QThread::currentThread());
}

bool OffscreenCanvas::makeCurrent()
{
    if (!picture || !context.makeCurrent(&surface))
        return false;
    picture->bind();
    glViewport(0, 0, picture->width(), picture->height());
    return true;
}

void OffscreenCanvas::doneCurrent()
{
    context.doneCurrent();
}

const void *OffscreenCanvas::handle() const
{
    return picture ? &surface : nullptr;
}
