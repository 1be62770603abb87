#include "platform/GlState.h"

#include <QOpenGLContext>
#include <QString>
#include <QVariant>

namespace {

constexpr const char *textureProperty = "tevoraContextTexture";

} // namespace

GlUnpackScope::GlUnpackScope()
{
    glPushClientAttrib(GL_CLIENT_PIXEL_STORE_BIT);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glPixelStorei(GL_UNPACK_ROW_LENGTH, 0);
    glPixelStorei(GL_UNPACK_SKIP_ROWS, 0);
    glPixelStorei(GL_UNPACK_SKIP_PIXELS, 0);
    glPixelStorei(GL_UNPACK_LSB_FIRST, GL_FALSE);
}

GlTextureBinding::GlTextureBinding(GLuint texture)
{
    glGetIntegerv(GL_TEXTURE_BINDING_2D, &former);
    glBindTexture(GL_TEXTURE_2D, texture);
}

GlTextureBinding::~GlTextureBinding()
{
    glBindTexture(GL_TEXTURE_2D, static_cast<GLuint>(former));
}

GlScratchTexture::GlScratchTexture(GLenum newTarget)
    : target(newTarget)
{
    glGenTextures(1, &texture);
    glBindTexture(target, texture);
}

GlScratchTexture::~GlScratchTexture()
{
    glDeleteTextures(1, &texture); // this also unbinds it
}

GLuint contextTexture()
{
    QOpenGLContext *context = QOpenGLContext::currentContext();
    if (context == nullptr)
        return 0;
    GLuint texture = context->property(textureProperty).toUInt();
    if (texture == 0) {
        glGenTextures(1, &texture);
        context->setProperty(textureProperty, texture);
    }
    return texture;
}

void deleteContextTexture()
{
    QOpenGLContext *context = QOpenGLContext::currentContext();
    if (context == nullptr)
        return;
    const GLuint texture = context->property(textureProperty).toUInt();
    if (texture != 0)
        glDeleteTextures(1, &texture);
    context->setProperty(textureProperty, QVariant());
}

bool listsExtension(const char *extensions, const char *name)
{
    const QString all = QString::fromLatin1(extensions);
    const auto names = QStringView(all).split(u' ', Qt::SkipEmptyParts);
    for (const QStringView listed : names) {
        if (listed.compare(QLatin1String(name), Qt::CaseInsensitive) == 0)
            return true;
    }
    return false;
}
