// The same while a window draws, as the program does when its workers run: much of what happens then is in
// libraries that the sanitizer does not see into.
#include "platform/OpenGl.h"
#include "platform/WorkerThread.h"

#include <QApplication>
#include <QOpenGLWidget>

#include <atomic>
#include <iostream>

namespace {

class ColourfulWidget : public QOpenGLWidget
{
public:
    int frames = 0;

protected:
    void paintGL() override
    {
        glClearColor(static_cast<float>(++frames % 2), 0.0f, 0.0f, 1.0f);
        glClear(GL_COLOR_BUFFER_BIT);
    }
};

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    const QApplication application(argc, argv);
    ColourfulWidget widget;
    widget.show();
    int unguarded = 0;
    std::atomic<bool> stop{false};
    WorkerThread worker([&] {
        while (!stop) {
            ++unguarded;
            QThread::msleep(1);
        }
    });
    worker.start();
    int seen = 0;
    while (widget.frames < 20) {
        widget.update();
        QCoreApplication::processEvents();
        seen += unguarded;
    }
    stop = true;
    worker.join();
    std::cout << seen << '\n';
}
