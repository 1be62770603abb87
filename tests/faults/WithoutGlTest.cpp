// The program on a screen without OpenGL: views stay empty, all else works.
#include "contours/SlicedContour.h"
#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "contours/SlicedContoursSegment.h"
#include "meshes/RasterizerObject.h"
#include "tests/shell/MainWindowScene.h"
#include "tests/support/PrivateSettings.h"
#include "view/GraphicsPod.h"
#include "view/ImageComposition.h"
#include "view/QStackedSliceView.h"
#include "view/QStackedSliceViewer.h"

#include <QAction>
#include <QActionGroup>
#include <QOpenGLContext>
#include <QTest>

class WithoutGlTest : public QObject
{
    Q_OBJECT

private slots:
    void thereIsNoOpenGl()
    {
        QOpenGLContext context;
        QVERIFY(!context.create());
    }

    void segmentation_runsWithAnEmptyView()
    {
        MainWindowScene scene;
        scene.window.show();
        scene.addVolume("knee", newVolume(MERV::TypeUShort, {20, 20, 4}, [](int x, int, int) { return x; }));
        scene.select({0});
        scene.window.startSegmentationFemurTibia();
        QCOMPARE(scene.manager().imageCount(), 4); // volume, contours, raster, surfaces
        const auto viewers = MainWindowScene::topLevels<QStackedSliceViewer>();
        QCOMPARE(viewers.size(), 1);
        QStackedSliceViewer *viewer = viewers.first();
        QVERIFY(QTest::qWaitForWindowExposed(viewer));
        QStackedSliceView *view = viewer->stackedSliceView();
        for (QAction *mode : viewer->findChild<QActionGroup *>()->actions()) {
            mode->trigger();
            QTest::keyClick(viewer, Qt::Key_PageDown);
            QTest::mouseClick(viewer, Qt::LeftButton, {}, viewer->rect().center());
            view->requestRepaint();
            QTest::qWait(50);
        }
        view->enterFullScreen();
        QVERIFY(!view->isVisible());
        view->leaveFullScreen();
        QCOMPARE(viewer->imageComposition()->podCount(), 2);
        viewer->close();
    }

    void raster_staysEmptyWithALineOnStandardError()
    {
        MainWindowScene scene;
        scene.addVolume("knee", newVolume(MERV::TypeUShort, {8, 8, 2}));
        scene.select({0});
        scene.window.startSegmentationFemurTibia();
        auto *contours = scene.fromEnd<SlicedContoursObject>(2);
        auto *raster = scene.fromEnd<RasterizerObject>(1);
        QVERIFY(contours != nullptr && raster != nullptr);
        contours->fragment(0)->newSegment({1, 1}, 0.5f)->addPointBack({5, 5});
        QTRY_VERIFY(!raster->isStale());
        QTRY_VERIFY(scene.output.standardError().contains("makeCurrent failed. pbuffer DC is 0\n"));
        QCOMPARE(raster->voxels()->getMaximum(), 0.0f);
    }
};

int main(int argc, char **argv)
{
    qputenv("QT_XCB_GL_INTEGRATION", "none");
    const PrivateSettings settings;
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    const QApplication application(argc, argv);
    WithoutGlTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "WithoutGlTest.moc"
