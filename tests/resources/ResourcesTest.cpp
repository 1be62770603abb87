#include "resources/Resources.h"

#include <QImage>
#include <QTest>

class ResourcesTest : public QObject
{
    Q_OBJECT

private slots:
    void everyPictureIsCompiledInAtItsSize_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QSize>("size");
        const auto row = [](const char *path, int width, int height) {
            QTest::newRow(path) << QString(path) << QSize(width, height);
        };
        row(":/icons/pixmap.1slice.1channel.32.png", 32, 32);
        row(":/icons/pixmap.1slice.1channel.16.png", 16, 16);
        row(":/icons/pixmap.volume.1channel.32.png", 32, 32);
        row(":/icons/pixmap.volume.1channel.16.png", 16, 16);
        row(":/icons/image.png", 32, 32);
        row(":/icons/tevora.png", 128, 128);
        row(":/icons/slicedcontoursfragment.png", 16, 16);
        row(":/icons/pixmapimage.png", 16, 16);
        row(":/icons/eye.png", 32, 32);
        row(":/images/splashscreen.png", 640, 480);
        for (const char *cursor :
             {"fist", "magnifier-plus", "magnifier-minus", "hand", "magnifier", "window"})
            row(qPrintable(QString(":/cursors/%1.png").arg(cursor)), 32, 32);
    }
    void everyPictureIsCompiledInAtItsSize()
    {
        QFETCH(QString, path);
        QFETCH(QSize, size);
        QCOMPARE(QImage(path).size(), size);
    }

    void pathsAreBuiltFromTheFileName()
    {
        QCOMPARE(Resources::icon("eye.png"), QString(":/icons/eye.png"));
        QCOMPARE(Resources::cursor("fist.png"), QString(":/cursors/fist.png"));
        QCOMPARE(Resources::image("splashscreen.png"), QString(":/images/splashscreen.png"));
    }
};

QTEST_MAIN(ResourcesTest)
#include "ResourcesTest.moc"
