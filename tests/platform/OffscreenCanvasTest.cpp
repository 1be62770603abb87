#include "platform/OffscreenCanvas.h"
#include "platform/GlState.h"

#include <QTest>

#include <array>
#include <thread>

namespace {

using Pixel = std::array<GLubyte, 4>;

Pixel pixelAt(int x, int y)
{
    Pixel pixel{};
    glReadPixels(x, y, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, pixel.data());
    return pixel;
}

void clearTo(const Pixel &colour)
{
    const auto part = [&](std::size_t i) { return static_cast<float>(colour[i]) / 255.0f; };
    glClearColor(part(0), part(1), part(2), part(3));
    glClear(GL_COLOR_BUFFER_BIT);
}

} // namespace

class OffscreenCanvasTest : public QObject
{
    Q_OBJECT

private slots:
    void holdsFourBytesAPixel()
    {
        OffscreenCanvas canvas(3, 2);
        QVERIFY(canvas.handle() != nullptr);
        QVERIFY(QOpenGLContext::currentContext() == nullptr);
        QVERIFY(canvas.makeCurrent());
        const Pixel colour{145, 39, 198, 255};
        clearTo(colour);
        QCOMPARE(pixelAt(0, 0), colour);
        QCOMPARE(pixelAt(2, 1), colour);
        GLint bits = -1;
        glGetIntegerv(GL_DEPTH_BITS, &bits);
        QCOMPARE(bits, 0);
        glGetIntegerv(GL_SAMPLES, &bits);
        QCOMPARE(bits, 0);
        std::array<GLint, 4> viewport{};
        glGetIntegerv(GL_VIEWPORT, viewport.data());
        QCOMPARE(viewport, (std::array<GLint, 4>{0, 0, 3, 2}));
        QCOMPARE(glGetError(), GLenum(GL_NO_ERROR));
        canvas.doneCurrent();
        QVERIFY(QOpenGLContext::currentContext() == nullptr);
    }

    void passesFromThreadToThread()
    {
        OffscreenCanvas canvas(2, 2);
        const Pixel colour{1, 2, 3, 4};
        canvas.giveAway();
        for (int i = 0; i < 3; ++i) {
            bool drew = false;
            std::thread worker([&] {
                canvas.takeOver();
                drew = canvas.makeCurrent();
                if (drew)
                    clearTo(colour);
                contextTexture();
                canvas.doneCurrent();
                canvas.giveAway();
            });
            worker.join();
            QVERIFY(drew);
        }
        canvas.takeOver();
        canvas.takeOver(); // is here already
        QVERIFY(canvas.makeCurrent());
        QCOMPARE(pixelAt(1, 1), colour);
        canvas.doneCurrent();
    }

    // What was given away and not taken over comes back by itself.
    void goesWhileNoThreadHasIt()
    {
        OffscreenCanvas canvas(2, 2);
        canvas.giveAway();
    }

    void oddSizes()
    {
        for (const auto &[width, height] : {std::pair{0, 0}, {-5, 3}, {1, -1}}) {
            OffscreenCanvas canvas(width, height);
            QVERIFY(canvas.makeCurrent());
            canvas.doneCurrent();
        }
    }

    // Larger than any driver goes: no canvas, no crash.
    void tooLarge()
    {
        OffscreenCanvas canvas(1 << 24, 1 << 24);
        QVERIFY(!canvas.makeCurrent());
        QVERIFY(canvas.handle() == nullptr);
        QVERIFY(QOpenGLContext::currentContext() == nullptr);
    }
};

QTEST_MAIN(OffscreenCanvasTest)
#include "OffscreenCanvasTest.moc"
