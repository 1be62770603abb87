// Forgets objects, in a program with a window and OpenGL.
#include "view/ImageComposition.h"
#include "view/QStackedSliceView.h"

#include <QApplication>

#include <iostream>

int main(int argc, char **argv)
{
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    const QApplication application(argc, argv);
    QStackedSliceView view(nullptr, nullptr);
    view.show();
    QCoreApplication::processEvents();
    for (int i = 0; i < 10; ++i) // a last one may still be in a register
        std::cout << (new ImageComposition(nullptr))->podCount() << '\n';
}
