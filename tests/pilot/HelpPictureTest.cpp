#include "demo/pilot/HelpPicture.h"

#include <gtest/gtest.h>

namespace {

QImage plain(int width, int height, Qt::GlobalColor color)
{
    QImage image(width, height, QImage::Format_ARGB32);
    image.fill(color);
    return image;
}

} // namespace

TEST(HelpPicture, areaIsScaledToTheWidth)
{
    QImage screen = plain(600, 400, Qt::black);
    screen.setPixelColor(99, 100, Qt::red); // just outside
    for (int x = 100; x < 510; ++x)
        for (int y = 100; y < 200; ++y)
            screen.setPixelColor(x, y, Qt::green);
    const QImage picture = HelpPicture::ofArea(screen, QRect(100, 100, 410, 100));
    ASSERT_EQ(picture.size(), QSize(205, 50));
    EXPECT_FALSE(picture.hasAlphaChannel());
    for (int x = 0; x < 205; ++x)
        for (int y = 0; y < 50; ++y)
            ASSERT_EQ(picture.pixelColor(x, y), QColor(Qt::green)) << x << ", " << y;
}

TEST(HelpPicture, halvesAreLeftAndRightWithALineBetween)
{
    const QImage picture = HelpPicture::halves(plain(204, 10, Qt::red), plain(204, 10, Qt::blue));
    ASSERT_EQ(picture.size(), QSize(204, 10));
    EXPECT_EQ(picture.pixelColor(100, 5), QColor(Qt::red));
    for (int x = 101; x <= 103; ++x)
        EXPECT_EQ(picture.pixelColor(x, 5), QColor(Qt::white));
    EXPECT_EQ(picture.pixelColor(104, 5), QColor(Qt::blue));
}

TEST(HelpPicture, stackedLieAboveOneAnother)
{
    const QImage picture = HelpPicture::stacked(plain(20, 10, Qt::red), plain(20, 5, Qt::blue));
    ASSERT_EQ(picture.size(), QSize(20, 18));
    EXPECT_EQ(picture.pixelColor(0, 9), QColor(Qt::red));
    for (int y = 10; y < 13; ++y)
        EXPECT_EQ(picture.pixelColor(19, y), QColor(Qt::white));
    EXPECT_EQ(picture.pixelColor(19, 13), QColor(Qt::blue));
}
