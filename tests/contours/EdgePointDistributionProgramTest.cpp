#include "contours/DistributionCorrectingSliceEdgePointExtractor.h"
#include "objects/manager/ImageManager.h"
#include "shell/Registration.h"
#include "tests/contours/EdgePointDistributionVolumes.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/DialogDriver.h"
#include "tests/support/PrivateSettings.h"
#include "view/ImageComposition.h"
#include "view/QStackedSliceView.h"
#include "view/QStackedSliceViewer.h"

#include <QFile>
#include <QPointer>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <sstream>

// Corrected edge points are an image object like any other, although no command makes them.
class EdgePointDistributionProgramTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { static const PrivateSettings settings; }

private slots:
    void initTestCase()
    {
        registerFormats(manager);
        volume = makeDiscs({30.0}, 3).volume.release();
        const CapturedOutput report;
        edges = new DistributionCorrectingSliceEdgePointExtractor(volume);
        manager.addImage(volume);
        manager.addImage(edges);
    }
    void cleanupTestCase()
    {
        delete viewer;
        while (manager.imageCount() > 0)
            manager.closeImage(manager.index(0, 0));
    }

    void managerListsThemWithTheirSource()
    {
        QCOMPARE(manager.imageCount(), 2);
        QCOMPARE(manager.data(manager.index(1, 0)).toString(),
                 QString("distribution corrected edge points in knee"));
        QCOMPARE(manager.image(1)->sources(), QList<ImageObject *>{volume});
        QVERIFY(edges->extentX() > 64.0f && edges->extentX() < 128.0f);
    }

    // In Trace the points around the mouse show, where the correction has put them.
    void viewerShowsThem()
    {
        viewer = new QStackedSliceViewer(&manager, nullptr);
        viewer->addObject(volume);
        viewer->addObject(edges);
        viewer->resize(700, 700);
        viewer->show();
        viewer->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(viewer));
        viewer->resetView();
        ImageComposition *composition = viewer->imageComposition();
        composition->setData(composition->index(1, ImageComposition::AnalyzeColumn), true);
        QCOMPARE(composition->analyzedObject(), edges);
        QStackedSliceView *view = viewer->stackedSliceView();
        const QImage without = view->grabFramebuffer();

        view->setInteractBaseModeTrace();
        // The view's middle is that of the volume; the rightmost point of the disc's outline, in mm.
        const EdgePoint &rim =
            *std::max_element(edges->slicePoints(0).begin(), edges->slicePoints(0).end(),
                              [](const EdgePoint &a, const EdgePoint &b) { return a.x < b.x; });
        const double pixelsPerMm = std::min(view->width(), view->height()) / 128.0;
        const QPointF place(view->width() / 2.0 + (static_cast<double>(rim.x) - 64.0) * pixelsPerMm,
                            view->height() / 2.0 - (static_cast<double>(rim.y) - 64.0) * pixelsPerMm);
        QMouseEvent move(QEvent::MouseMove, place, view->mapToGlobal(place), Qt::NoButton, Qt::NoButton,
                         Qt::NoModifier);
        QApplication::sendEvent(view, &move);
        const auto &shown = view->state().edgeMarkers;
        QVERIFY(std::any_of(shown.begin(), shown.end(),
                            [&](const EdgePoint &point) { return point.x == rim.x && point.y == rim.y; }));
        view->repaintNow();
        const QImage with = view->grabFramebuffer();
        QVERIFY(with != without);
    }

    void listerSavesThem()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath("edges.txt");
        DialogDriver driver;
        driver.expectFileDialog("Save Image as", path);
        QVERIFY(manager.saveImage(manager.index(1, 0)));
        QVERIFY2(driver.verify(), driver.report());
        std::ostringstream expected;
        expected << "#distribution corrected edge points in knee\nx\ty\tz\txS\tyS\tzS\ttheta\tt\n";
        for (int k = 0; k < edges->sliceCount(); ++k)
            for (const EdgePoint &p : edges->slicePoints(k))
                expected << p.x << '\t' << p.y << '\t' << p.z << '\t' << p.xS << '\t' << p.yS << '\t' << p.zS
                         << '\t' << p.theta() << '\t' << p.t() << '\n';
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray::fromStdString(expected.str()));
    }

    // A snapshot: the points stay when their image is closed.
    void closingTheImageLeavesThem()
    {
        const std::size_t count = edges->slicePoints(1).size();
        manager.closeImage(manager.index(0, 0));
        QCOMPARE(manager.imageCount(), 1);
        QVERIFY(edges->sources().isEmpty());
        QCOMPARE(edges->slicePoints(1).size(), count);
        QCOMPARE(viewer->imageComposition()->podCount(), 1);
    }

private:
    ImageManager manager{nullptr};
    MervImageObject *volume = nullptr;
    DistributionCorrectingSliceEdgePointExtractor *edges = nullptr;
    QPointer<QStackedSliceViewer> viewer;
};

QTEST_MAIN(EdgePointDistributionProgramTest)
#include "EdgePointDistributionProgramTest.moc"
