#pragma once

#include "platform/OpenGl.h"

// Saves the state named by mask (GL_..._BIT) and restores it at the end of the scope.
class GlAttributeScope
{
public:
    explicit GlAttributeScope(GLbitfield mask) { glPushAttrib(mask); }
    ~GlAttributeScope() { glPopAttrib(); }
    GlAttributeScope(const GlAttributeScope &) = delete;
    GlAttributeScope &operator=(const GlAttributeScope &) = delete;
};

// Enables a capability and disables it at the end of the scope, whatever it was before.
class GlEnableScope
{
public:
    explicit GlEnableScope(GLenum newCapability)
        : capability(newCapability)
    {
        glEnable(capability);
    }
    ~GlEnableScope() { glDisable(capability); }
    GlEnableScope(const GlEnableScope &) = delete;
    GlEnableScope &operator=(const GlEnableScope &) = delete;

private:
    GLenum capability;
};

// For the time of the scope, pictures and stipple patterns are read from memory as they lie there: rows
// follow each other without gaps, whatever their length. Restores the pixel store modes.
class GlUnpackScope
{
public:
    GlUnpackScope();
    ~GlUnpackScope() { glPopClientAttrib(); }
    GlUnpackScope(const GlUnpackScope &) = delete;
    GlUnpackScope &operator=(const GlUnpackScope &) = delete;
};

// One glBegin .. glEnd.
class GlPrimitive
{
public:
    explicit GlPrimitive(GLenum mode) { glBegin(mode); }
    ~GlPrimitive() { glEnd(); }
    GlPrimitive(const GlPrimitive &) = delete;
    GlPrimitive &operator=(const GlPrimitive &) = delete;
};

// Binds a texture object to GL_TEXTURE_2D and the former one again at the end of the scope.
class GlTextureBinding
{
public:
    explicit GlTextureBinding(GLuint texture);
    ~GlTextureBinding();
    GlTextureBinding(const GlTextureBinding &) = delete;
    GlTextureBinding &operator=(const GlTextureBinding &) = delete;

private:
    GLint former = 0;
};

// A texture object for the time of one drawing, bound to target; unbound and deleted at the end.
class GlScratchTexture
{
public:
    explicit GlScratchTexture(GLenum newTarget);
    ~GlScratchTexture();
    GlScratchTexture(const GlScratchTexture &) = delete;
    GlScratchTexture &operator=(const GlScratchTexture &) = delete;

private:
    GLenum target;
    GLuint texture = 0;
};

// The texture object that all slices of the current context are uploaded to, made at the first call in this
// context; texture object 0 is never used. Its parameters are whatever the owner of the context sets, after
// glBindTexture(GL_TEXTURE_2D, contextTexture()). 0 without a current context.
GLuint contextTexture();

// Deletes the texture object of the current context. For the owner of a context, before it goes.
void deleteContextTexture();

// True if the name, whatever its case, is among the blank-separated names of an extension string (null:
// none).
bool listsExtension(const char *extensions, const char *name);
