// Asks an object after it was deleted, in a program with a window and OpenGL.
#include "view/ImageComposition.h"
#include "view/QStackedSliceView.h"

#include <QApplication>

#include <iostream>
#include <memory>

int main(int argc, char **argv)
{
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    const QApplication application(argc, argv);
    QStackedSliceView view(nullptr, nullptr);
    view.show();
    QCoreApplication::processEvents();
    auto composition = std::make_unique<ImageComposition>(nullptr);
    const ImageComposition *dangling = composition.get();
    composition.reset();
    std::cout << dangling->podCount() << '\n';
}
