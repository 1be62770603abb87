#include "objects/manager/DefaultQIconProvider.h"
#include "objects/manager/ImageManager.h"
#include "objects/manager/ImageRelationsGraph.h"

#include "tests/manager/Fakes.h"
#include "tests/support/GoldenPicture.h"
#include "tests/support/PrivateSettings.h"

#include <QTest>

namespace {

QImage iconPicture(const QIcon &icon, int size)
{
    return icon.pixmap(size, size).toImage();
}

QImage resourcePicture(const QString &name)
{
    return QPixmap(":/icons/" + name).toImage();
}

// A grid image that is no volume.
class PlainGrid : public RegularGridImageObject
{
public:
    int dimensionCount() const override { return 0; }
};

} // namespace

class ManagerPicturesTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { static const PrivateSettings settings; }

private slots:
    void defaultIcons_areForGridImagesOnly()
    {
        DefaultQIconProvider provider;
        FakeImage other;
        const std::unique_ptr<MervImageObject> volume(newVolume(2, 2, 2));
        QVERIFY(provider.canProvide(volume.get()));
        QVERIFY(!provider.canProvide(&other));
        QVERIFY(!provider.canProvide(nullptr));
        QVERIFY(provider.icon(&other).isNull());
        QVERIFY(provider.icon(nullptr).isNull());
    }

    void volumesAndSlices_haveTheirIcons_builtOnce()
    {
        DefaultQIconProvider provider;
        const std::unique_ptr<MervImageObject> volume(newVolume(2, 2, 2));
        const std::unique_ptr<MervImageObject> slice(newVolume(2, 2, 1));
        MervImageObject empty(nullptr, QString(), nullptr);
        PlainGrid grid;
        for (const int size : {32, 16}) {
            const QString suffix = QString(".1channel.%1.png").arg(size);
            QVERIFY(!resourcePicture("pixmap.volume" + suffix).isNull());
            QCOMPARE(iconPicture(provider.icon(volume.get()), size),
                     resourcePicture("pixmap.volume" + suffix));
            QCOMPARE(iconPicture(provider.icon(slice.get()), size),
                     resourcePicture("pixmap.1slice" + suffix));
        }
        QCOMPARE(provider.icon(&empty).cacheKey(), provider.icon(slice.get()).cacheKey());
        QCOMPARE(provider.icon(&grid).cacheKey(), provider.icon(slice.get()).cacheKey());
        QCOMPARE(&provider.icon(volume.get()), &provider.icon(volume.get()));
        QVERIFY(provider.icon(volume.get()).cacheKey() != provider.icon(slice.get()).cacheKey());
    }

    void relations_areDrawnAsSquaresWithLinesAndLabels()
    {
        ImageManager manager(nullptr);
        FakeImage outside;
        auto *knee = new FakeImage("knee");
        auto *contours = new FakeImage("Segmentation of the patella");
        auto *mesh = new FakeImage("mesh");
        mesh->sourceList = {contours, knee};
        auto *orphan = new FakeImage("orphan");
        orphan->sourceList = {&outside};
        for (FakeImage *image : {knee, contours, mesh, orphan})
            manager.addImage(image);
        QImage picture(240, 360, QImage::Format_RGB32);
        picture.fill(QColor(200, 220, 200));
        manager.paintRelations(&picture);
        // Squares at (40, 40), (40, 120), (120, 80) and (40, 280): outline at -20 and +20, white inside.
        for (const QPoint &centre : {QPoint(40, 40), QPoint(40, 120), QPoint(120, 80), QPoint(40, 280)}) {
            QCOMPARE(probe(picture, centre.x(), centre.y()), QColor(Qt::white));
            QCOMPARE(probe(picture, centre.x() - 20, centre.y()), QColor(Qt::black));
            QCOMPARE(probe(picture, centre.x(), centre.y() + 20), QColor(Qt::black));
            QCOMPARE(probe(picture, centre.x() - 19, centre.y() - 19), QColor(Qt::white));
        }
        QCOMPARE(probe(picture, 80, 60), QColor(Qt::black));  // half way from (40, 40) to (120, 80)
        QCOMPARE(probe(picture, 80, 100), QColor(Qt::black)); // half way from (40, 120) to (120, 80)
        // A source that is not listed draws its line from the corner (0, 0), here over (10, 70).
        QCOMPARE(probe(picture, 10, 70), QColor(Qt::black));
        QCOMPARE(goldenFault(picture, "relations_graph"), QString());
    }

    void relations_ofNothing_leaveTheDeviceAlone()
    {
        ImageManager manager(nullptr);
        QImage picture(50, 50, QImage::Format_RGB32);
        picture.fill(Qt::green);
        const QImage before = picture.copy();
        manager.paintRelations(&picture);
        QCOMPARE(picture, before);
    }

    void graph_repaintsWhenTheListChanges()
    {
        auto manager = std::make_unique<ImageManager>(nullptr);
        ImageRelationsGraph graph(manager.get());
        graph.resize(100, 100);
        graph.show();
        QVERIFY(QTest::qWaitForWindowExposed(&graph));
        manager->addImage(new FakeImage);
        QTRY_COMPARE(probe(graph.grab().toImage(), 20, 40), QColor(Qt::black));
        // grab() paints by itself; that the widget asks for it shows in a paint event.
        struct PaintCounter : QObject
        {
            bool eventFilter(QObject *, QEvent *event) override
            {
                paints += event->type() == QEvent::Paint ? 1 : 0;
                return false;
            }
            int paints = 0;
        } counter;
        graph.installEventFilter(&counter);
        QTest::qWait(100);
        counter.paints = 0;
        manager->closeImage(manager->index(0, 0));
        QTRY_VERIFY(counter.paints > 0);
        manager.reset();
        graph.repaint(); // without its manager it stays empty
    }
};

QTEST_MAIN(ManagerPicturesTest)
#include "ManagerPicturesTest.moc"
