#include "meshes/BitPlaneRasterizerObject.h"
#include "tests/support/DrawnContours.h"
#include "tests/support/GoldenPicture.h"
#include "tests/support/RasterRun.h"
#include "view/ImageComposition.h"
#include "view/QStackedSliceView.h"

#include <QApplication>
#include <QTest>

// A raster of contours in a view of 320 x 320 pixels: after resetView() one mm is 8 pixels and the plane is
// in the first slice.
class RasterizerViewTest : public QObject
{
    Q_OBJECT

private slots:
    void viewFollowsAnEditOfTheContours()
    {
        SlicedContoursObject contours;
        SlicedContoursFragment *outline = drawn::solid(contours);
        BitPlaneRasterizerObject raster(&contours, 40, 40, 5, 1.0f, 1.0f, 2.0f);
        raster.setDefaultBitCode(-1);
        raster.setBitCode(contours.contour(0), 127);
        RasterRuns runs(raster);
        ImageComposition composition;
        QVERIFY(composition.addImageObject(&raster));
        QStackedSliceView view(nullptr, &composition);
        view.resize(320, 320);
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        view.resetView();
        QCOMPARE(greyAt(view, 12, 12), 0);

        int composed = 0, swapped = 0;
        connect(&composition, &ImageComposition::updated, this, [&] {
            QCOMPARE(QThread::currentThread(), qApp->thread());
            ++composed;
        });
        connect(&view, &QOpenGLWidget::frameSwapped, this, [&] { ++swapped; });
        drawn::square(outline, 1.0f, 8, 16);
        QTRY_VERIFY(composed > 0 && swapped > 0);
        QTRY_VERIFY(!raster.isStale() && runs.rests());
        QCOMPARE(greyAt(view, 8.5, 8.5), 127);
        QCOMPARE(greyAt(view, 15.5, 15.5), 127);
        QCOMPARE(greyAt(view, 7.5, 12), 0);
        QCOMPARE(greyAt(view, 16.5, 12), 0);
        QCOMPARE(greyAt(view, 12, 30), 0);

        composed = swapped = 0;
        while (outline->segmentCount() > 0)
            delete outline->segment(0);
        drawn::rectangle(outline, 1.0f, 8, 28, 16, 32);
        QTRY_VERIFY(composed > 0 && swapped > 0);
        QTRY_VERIFY(!raster.isStale() && runs.rests());
        QCOMPARE(greyAt(view, 12, 12), 0);
        QCOMPARE(greyAt(view, 12, 30), 127);
        QCOMPARE(greyAt(view, 12, 33), 0);
        composition.detachFrom(&raster);
    }

private:
    // The grey of the view at a position in mm.
    static int greyAt(QStackedSliceView &view, double x, double y)
    {
        const QImage picture = opaquePicture(view.grabFramebuffer());
        const QColor colour = probe(picture, static_cast<int>(160 + (x - 20.0) * 8.0),
                                    static_cast<int>(160 - (y - 20.0) * 8.0));
        return colour.red() == colour.green() && colour.green() == colour.blue() ? colour.red() : -1;
    }
};

int main(int argc, char **argv)
{
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QApplication application(argc, argv);
    RasterizerViewTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "RasterizerViewTest.moc"
