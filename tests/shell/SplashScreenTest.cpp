#include "shell/TevoraSplashScreen.h"

#include "tests/support/GoldenPicture.h"

#include <QPainter>
#include <QTest>

namespace {

// Paints the contents over a magenta ground, so that every touched pixel shows.
class PaintedSplash : public TevoraSplashScreen
{
public:
    void paintContents(QPainter &painter) { drawContents(&painter); }

    QImage painted()
    {
        QImage image(640, 480, QImage::Format_RGB32);
        image.fill(QColor(255, 0, 255));
        QPainter painter(&image);
        drawContents(&painter);
        return image;
    }
};

} // namespace

class SplashScreenTest : public QObject
{
    Q_OBJECT

private slots:
    void hasThePictureAndStaysOnTop()
    {
        const TevoraSplashScreen splash;
        QCOMPARE(splash.pixmap().size(), QSize(640, 480));
        QVERIFY(splash.windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    }

    void areaOutlineAndBarLieAtTheirPixels()
    {
        PaintedSplash splash;
        splash.setProgress(0.5f, "");
        const QImage image = splash.painted();
        const QColor ground(255, 0, 255), white(Qt::white), grey(130, 130, 130), bar(0, 129, 158);
        // The white area covers 16..625 by 290..329.
        QCOMPARE(image.pixelColor(15, 300), ground);
        QCOMPARE(image.pixelColor(16, 291), white);
        QCOMPARE(image.pixelColor(625, 329), white);
        QCOMPARE(image.pixelColor(626, 300), ground);
        QCOMPARE(image.pixelColor(300, 289), ground);
        QCOMPARE(image.pixelColor(300, 330), ground);
        // A pen of width 2 on the outline from 18 to 624 covers the pixels 17, 18 and 623, 624.
        QCOMPARE(image.pixelColor(17, 318), grey);
        QCOMPARE(image.pixelColor(18, 318), grey);
        QCOMPARE(image.pixelColor(623, 318), grey);
        QCOMPARE(image.pixelColor(624, 318), grey);
        QCOMPARE(image.pixelColor(300, 309), grey);
        // Half of 602 is 301: the bar covers 20..320 by 312..322.
        QCOMPARE(image.pixelColor(20, 312), bar);
        QCOMPARE(image.pixelColor(320, 322), bar);
        QCOMPARE(image.pixelColor(321, 318), white);
        QCOMPARE(image.pixelColor(300, 311), white);
        QCOMPARE(image.pixelColor(300, 323), white);
    }

    void fullBarEndsTwoPixelsInsideTheOutline()
    {
        PaintedSplash splash;
        splash.setProgress(1.0f, "");
        const QImage image = splash.painted();
        QCOMPARE(image.pixelColor(621, 318), QColor(0, 129, 158));
        QCOMPARE(image.pixelColor(622, 318), QColor(Qt::white));
        QCOMPARE(image.pixelColor(623, 318), QColor(130, 130, 130));
    }

    // The whole screen as a reader sees it, but for the text, whose font depends on the system.
    void pictureIsTheAcceptedOne()
    {
        PaintedSplash splash;
        splash.setProgress(0.4f, "");
        QImage picture = splash.pixmap().toImage().convertToFormat(QImage::Format_RGB32);
        QPainter painter(&picture);
        splash.paintContents(painter);
        painter.end();
        // 0.4 of 602 is 240 whole pixels: the bar covers 20..259.
        QCOMPARE(probe(picture, 259, 318), QColor(0, 129, 158));
        QCOMPARE(probe(picture, 260, 318), QColor(Qt::white));
        QCOMPARE(probe(picture, 18, 318), QColor(130, 130, 130));
        QCOMPARE(goldenFault(picture, "splash"), QString());
    }

    void nullMessageKeepsTheText_emptyMessageBlanksIt()
    {
        PaintedSplash splash;
        splash.setProgress(0.1f, "Lade ...");
        const QImage withText = splash.painted();
        splash.setProgress(0.1f, QString());
        QCOMPARE(splash.painted(), withText);
        splash.setProgress(0.1f, "");
        const QImage blank = splash.painted();
        QVERIFY(blank != withText);
        // The text sits on the baseline at y 300, left of which nothing is drawn.
        bool dark = false;
        for (int x = 17; x < 80; ++x)
            for (int y = 291; y < 303; ++y)
                dark = dark || withText.pixelColor(x, y).lightness() < 160;
        QVERIFY(dark);
    }
};

QTEST_MAIN(SplashScreenTest)
#include "SplashScreenTest.moc"
