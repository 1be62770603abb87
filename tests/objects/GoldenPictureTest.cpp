// The comparison with accepted pictures itself.
#include "tests/support/GoldenPicture.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

class GoldenPictureTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void missingPictureIsAFault();
    void samePictureIsAccepted();
    void smallDifferencesAreAccepted();
    void fewPixelsMayDiffer();
    void otherSizeIsAFault();
    void translucentPixelsAreComparedAsDrawn();

private:
    static QImage grey(int level) { return filled(QColor(level, level, level)); }
    static QImage filled(const QColor &colour)
    {
        QImage picture(20, 20, QImage::Format_RGB32); // 400 pixels, of which 2 may differ
        picture.fill(colour);
        return picture;
    }
    void accept(const QImage &picture)
    {
        qputenv("TEVORA_WRITE_GOLDEN", "1");
        QCOMPARE(goldenFault(picture, QStringLiteral("picture")), QString());
        qunsetenv("TEVORA_WRITE_GOLDEN");
    }
    QString fault(const QImage &picture) { return goldenFault(picture, QStringLiteral("picture")); }

    std::unique_ptr<QTemporaryDir> folder;
    QByteArray formerSource;
};

void GoldenPictureTest::init()
{
    folder = std::make_unique<QTemporaryDir>();
    formerSource = qgetenv("TEVORA_SOURCE_DIR");
    qputenv("TEVORA_SOURCE_DIR", folder->path().toLocal8Bit());
    qunsetenv("TEVORA_WRITE_GOLDEN");
}

void GoldenPictureTest::cleanup()
{
    qputenv("TEVORA_SOURCE_DIR", formerSource);
    QFile::remove(QCoreApplication::applicationDirPath() + QStringLiteral("/golden/picture_difference.png"));
}

void GoldenPictureTest::missingPictureIsAFault()
{
    QVERIFY(fault(grey(100)).startsWith(QStringLiteral("there is no accepted picture")));
}

void GoldenPictureTest::samePictureIsAccepted()
{
    accept(grey(100));
    QCOMPARE(fault(grey(100)), QString());
}

void GoldenPictureTest::smallDifferencesAreAccepted()
{
    accept(grey(100));
    QCOMPARE(fault(grey(102)), QString());
    QCOMPARE(fault(grey(98)), QString());
    QVERIFY(!fault(grey(103)).isEmpty());
    QVERIFY(!fault(filled(QColor(100, 100, 97))).isEmpty());
}

void GoldenPictureTest::fewPixelsMayDiffer()
{
    accept(grey(100));
    QImage picture = grey(100);
    picture.setPixel(3, 4, qRgb(255, 0, 0));
    picture.setPixel(5, 6, qRgb(0, 0, 0));
    QCOMPARE(fault(picture), QString()); // 0.5 % of 400
    picture.setPixel(7, 8, qRgb(200, 100, 100));
    QVERIFY(fault(picture).startsWith(QStringLiteral("3 pixels differ")));
    // Accepted, drawn and difference lie side by side.
    const QImage difference(QCoreApplication::applicationDirPath() +
                            QStringLiteral("/golden/picture_difference.png"));
    QCOMPARE(difference.size(), QSize(60, 20));
    QCOMPARE(difference.pixelColor(3, 4), QColor(100, 100, 100));
    QCOMPARE(difference.pixelColor(23, 4), QColor(255, 0, 0));
    QCOMPARE(difference.pixelColor(43, 4), QColor(255, 255, 255));
    QCOMPARE(difference.pixelColor(44, 4), QColor(0, 0, 0));
}

void GoldenPictureTest::otherSizeIsAFault()
{
    accept(grey(100));
    QVERIFY(fault(grey(100).copy(0, 0, 20, 19)).startsWith(QStringLiteral("the size differs")));
}

void GoldenPictureTest::translucentPixelsAreComparedAsDrawn()
{
    accept(grey(100));
    for (const QImage::Format format :
         {QImage::Format_ARGB32_Premultiplied, QImage::Format_RGBA8888_Premultiplied}) {
        QImage picture = grey(100).convertToFormat(format);
        for (int y = 0; y < 20; ++y) {
            uchar *line = picture.scanLine(y);
            for (int x = 0; x < 20; ++x)
                line[4 * x + 3] = 128; // the alpha byte of both formats
        }
        QCOMPARE(fault(picture), QString());
        QVERIFY(isNear(probe(picture, 3, 3), 100, 100, 100, 0));
    }
}

QTEST_GUILESS_MAIN(GoldenPictureTest)
#include "GoldenPictureTest.moc"
