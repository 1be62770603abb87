// The OpenGL context of a view goes while the view lives, with all that was stored in it.
#include "objects/MervImageObject.h"
#include "objects/manager/ImageManager.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/PrivateSettings.h"
#include "tests/support/TestVolume.h"
#include "view/QStackedSliceView.h"
#include "view/QStackedSliceViewer.h"

#include <QApplication>
#include <QOpenGLContext>
#include <QTest>

#include <memory>

class LostContextTest : public QObject
{
    Q_OBJECT

private:
    QStackedSliceView *view() const { return viewer->stackedSliceView(); }
    QImage picture() const
    {
        view()->repaintNow();
        return view()->grabFramebuffer().convertToFormat(QImage::Format_RGB32);
    }
    // In the middle of the view the volume goes from dark to bright.
    static bool showsTheVolume(const QImage &picture)
    {
        const QPoint centre = picture.rect().center();
        return qGray(picture.pixel(centre - QPoint(20, 0))) == 0 &&
               qGray(picture.pixel(centre + QPoint(20, 0))) == 255;
    }

    std::unique_ptr<CapturedOutput> output;
    std::unique_ptr<ImageManager> manager;
    std::unique_ptr<QStackedSliceViewer> viewer;

private slots:
    void init()
    {
        output = std::make_unique<CapturedOutput>();
        manager = std::make_unique<ImageManager>(nullptr);
        auto voxels =
            newVolume(MERV::TypeUShort, {40, 40, 4}, [](int x, int, int) { return x < 20 ? 0 : 200; });
        manager->addImage(new MervImageObject(voxels.release(), "/somewhere/knee.mhd"));
        viewer = std::make_unique<QStackedSliceViewer>(manager.get(), nullptr);
        viewer->setAttribute(Qt::WA_DeleteOnClose, false);
        viewer->resize(400, 500);
        viewer->addObject(manager->image(0));
        viewer->show();
        QVERIFY(QTest::qWaitForWindowExposed(viewer.get()));
        viewer->resetView();
        QVERIFY(showsTheVolume(picture()));
    }
    void cleanup()
    {
        viewer.reset();
        manager->closeImage(manager->index(0, 0));
        manager.reset();
        output.reset();
    }

    void windowDestroyedByTheSystem_isDrawnAgain()
    {
        const QImage before = picture();
        bool gone = false;
        connect(view()->context(), &QOpenGLContext::aboutToBeDestroyed, this, [&gone] { gone = true; });
        QWidget *const parent = view()->parentWidget();
        view()->setParent(nullptr); // without shared contexts, each window has one of its own
        view()->show();
        QVERIFY(QTest::qWaitForWindowExposed(view()));
        QVERIFY(gone);
        QVERIFY(showsTheVolume(picture()));
        view()->setParent(parent);
        view()->show();
        viewer->show();
        QVERIFY(showsTheVolume(picture()));
    }

    void fullScreenAndBack_isDrawnAgain()
    {
        for (int round = 0; round < 3; ++round) {
            view()->enterFullScreen();
            QVERIFY(QTest::qWaitForWindowExposed(view()));
            QVERIFY(showsTheVolume(picture()));
            view()->leaveFullScreen();
            QVERIFY(QTest::qWaitForWindowExposed(viewer.get()));
            QVERIFY(showsTheVolume(picture()));
        }
    }

    void hiddenWhileTheContextGoes_isDrawnAgain()
    {
        viewer->hide();
        viewer->windowHandle()->destroy();
        viewer->show();
        QVERIFY(QTest::qWaitForWindowExposed(viewer.get()));
        QVERIFY(showsTheVolume(picture()));
    }
};

int main(int argc, char **argv)
{
    const PrivateSettings settings;
    const QApplication application(argc, argv); // on purpose without AA_ShareOpenGLContexts
    LostContextTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "LostContextTest.moc"
