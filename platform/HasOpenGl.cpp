#include "platform/HasOpenGl.h"

#include <QOpenGLContext>

#include <iostream>

namespace {

bool canCreateContext()
{
    if (QOpenGLContext().create())
        return true;
    std::cerr << "This screen has no OpenGL. Views stay empty." << std::endl;
    return false;
}

} // namespace

bool hasOpenGl()
{
    static const bool has = canCreateContext();
    return has;
}
