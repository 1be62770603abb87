#include "resources/Resources.h"

#include <QImage>
#include <QTest>

#include <cstdlib>

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
        QString fine = path;
        QCOMPARE(QImage(fine.insert(path.size() - 4, "@2x")).size(), 2 * size);
    }

    void pictureOfAScreen_hasTheSizeOfTheFile_data() { everyPictureIsCompiledInAtItsSize_data(); }
    void pictureOfAScreen_hasTheSizeOfTheFile()
    {
        QFETCH(QString, path);
        QFETCH(QSize, size);
        QCOMPARE(Resources::picture(path, 1.0).toImage(), QPixmap(path).toImage());
        for (const double ratio : {1.25, 1.5, 2.0, 3.0}) {
            const QPixmap picture = Resources::picture(path, ratio);
            QCOMPARE(picture.devicePixelRatio(), ratio);
            QCOMPARE(picture.deviceIndependentSize(), QSizeF(size));
            QCOMPARE(picture.size(), size * ratio);
        }
        QString fine = path;
        fine.insert(path.size() - 4, "@2x");
        QImage expected = QPixmap(fine).toImage();
        expected.setDevicePixelRatio(2.0);
        QCOMPARE(Resources::picture(path, 2.0).toImage(), expected);
    }

    // Its 2 x 2 blocks have the colour of the plain one, up to what a line between them makes.
    void finePicture_showsTheSame_data() { everyPictureIsCompiledInAtItsSize_data(); }
    void finePicture_showsTheSame()
    {
        QFETCH(QString, path);
        QFETCH(QSize, size);
        const QImage plain = QImage(path).convertToFormat(QImage::Format_ARGB32_Premultiplied);
        const QImage fine = Resources::picture(path, 2.0)
                                .toImage()
                                .scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                                .convertToFormat(QImage::Format_ARGB32_Premultiplied);
        qint64 difference = 0;
        for (int y = 0; y < size.height(); ++y) {
            for (int x = 0; x < size.width(); ++x)
                difference += std::abs(qAlpha(plain.pixel(x, y)) - qAlpha(fine.pixel(x, y))) +
                              std::abs(qGreen(plain.pixel(x, y)) - qGreen(fine.pixel(x, y)));
        }
        QVERIFY(difference < 2 * 4 * size.width() * size.height()); // 4 levels of each on average
    }

    void missingPicture_isNull()
    {
        QVERIFY(Resources::picture(":/icons/none.png", 1.0).isNull());
        QVERIFY(Resources::picture(":/icons/none.png", 2.0).isNull());
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
