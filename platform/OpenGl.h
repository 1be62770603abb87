#pragma once

// The OpenGL entry points of the compatibility profile, for use inside a current context.
#include <QtGui/qopengl.h>
