#include "meshes/BitPlaneRasterizerObject.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/DrawnContours.h"
#include "tests/support/RasterRun.h"

#include <QGuiApplication>
#include <QTest>

// On a machine without OpenGL.
class RasterizerWithoutGlTest : public QObject
{
    Q_OBJECT

private slots:
    void rasterStaysEmpty()
    {
        CapturedOutput output;
        SlicedContoursObject contours("knee");
        drawn::square(drawn::solid(contours), 0.5f, 0, 4);
        BitPlaneRasterizerObject raster(&contours, 4, 4, 2, 1, 1, 1);
        raster.setDefaultBitCode(-1);
        QVERIFY(output.standardOutput().contains("Pbuffer is in RGBA mode.\n"));
        QCOMPARE(raster.label(), QString("Rasterization of knee"));
        RasterRuns runs(raster);
        QVERIFY(runs.run());
        QVERIFY(runs.run());
        QCOMPARE(rasterBytes(raster), std::vector<unsigned char>(32, 0));
        QVERIFY(!raster.isStale());
        raster.stopWorking();
        QCOMPARE(output.standardError(), QString("makeCurrent failed. pbuffer DC is 0\n").repeated(2));
    }

    void comesAndGoes()
    {
        SlicedContoursObject contours;
        for (int i = 0; i < 20; ++i)
            BitPlaneRasterizerObject(&contours, 4, 4, 2, 1, 1, 1).invalidateRasterization();
    }
};

int main(int argc, char **argv)
{
    // The platform without a screen has no OpenGL, unless it finds an X server to borrow it from.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qunsetenv("DISPLAY");
    const QGuiApplication application(argc, argv);
    RasterizerWithoutGlTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "RasterizerWithoutGlTest.moc"
