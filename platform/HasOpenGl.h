#pragma once

// Whether this screen has OpenGL; looked up at the first call, after which a screen without is named on
// standard error. A window that held a QOpenGLWidget would end the program there. GUI thread.
bool hasOpenGl();
