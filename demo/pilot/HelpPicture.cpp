#include "demo/pilot/HelpPicture.h"

#include <QPainter>

#include <algorithm>

namespace {

constexpr int gapPixels = 3;

} // namespace

QImage HelpPicture::ofArea(const QImage &screen, const QRect &area)
{
    return screen.copy(area)
        .convertToFormat(QImage::Format_RGB32)
        .scaledToWidth(widthPixels, Qt::SmoothTransformation);
}

QImage HelpPicture::halves(const QImage &left, const QImage &right)
{
    QImage picture = left;
    const int middle = left.width() / 2;
    QPainter painter(&picture);
    painter.drawImage(QPoint(middle, 0), right, QRect(middle, 0, right.width() - middle, right.height()));
    painter.fillRect(QRect(middle - gapPixels / 2, 0, gapPixels, left.height()), Qt::white);
    return picture;
}

QImage HelpPicture::stacked(const QImage &upper, const QImage &lower)
{
    QImage picture(std::max(upper.width(), lower.width()), upper.height() + gapPixels + lower.height(),
                   QImage::Format_RGB32);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    painter.drawImage(QPoint(0, 0), upper);
    painter.drawImage(QPoint(0, upper.height() + gapPixels), lower);
    return picture;
}
