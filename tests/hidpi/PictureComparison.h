#pragma once

#include "tests/support/GoldenPicture.h"

#include <QImage>
#include <QString>

#include <algorithm>
#include <cmath>
#include <vector>

// Compares pictures of the same scene that were drawn with different numbers of pixels.

// The picture with the given size, each new pixel the mean of the area that it covers of the old ones. Exact
// for every ratio of the sizes.
inline QImage areaMeans(const QImage &picture, const QSize &size)
{
    struct Share
    {
        int pixel;
        double weight;
    };
    const auto sharesOf = [](int from, int to) {
        const double step = static_cast<double>(from) / to;
        std::vector<std::vector<Share>> shares(static_cast<std::size_t>(to));
        for (int i = 0; i < to; ++i) {
            const double begin = i * step, end = (i + 1) * step;
            for (int pixel = static_cast<int>(begin); pixel < from && pixel < end; ++pixel) {
                const double covered = std::min(end, pixel + 1.0) - std::max(begin, pixel * 1.0);
                shares[static_cast<std::size_t>(i)].push_back({pixel, covered / step});
            }
        }
        return shares;
    };
    const auto columns = sharesOf(picture.width(), size.width());
    const auto rows = sharesOf(picture.height(), size.height());
    QImage result(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            double red = 0.5, green = 0.5, blue = 0.5; // to the nearest level
            for (const Share &row : rows[static_cast<std::size_t>(y)]) {
                for (const Share &column : columns[static_cast<std::size_t>(x)]) {
                    const QRgb pixel = picture.pixel(column.pixel, row.pixel);
                    const double weight = row.weight * column.weight;
                    red += weight * qRed(pixel);
                    green += weight * qGreen(pixel);
                    blue += weight * qBlue(pixel);
                }
            }
            result.setPixel(x, y,
                            qRgb(static_cast<int>(red), static_cast<int>(green), static_cast<int>(blue)));
        }
    }
    return result;
}

// Each pixel the mean of itself and its eight neighbours, as far as there are any.
inline QImage blurred(const QImage &picture)
{
    QImage result(picture.size(), QImage::Format_RGB32);
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            int red = 0, green = 0, blue = 0, count = 0;
            for (int v = std::max(y - 1, 0); v <= std::min(y + 1, picture.height() - 1); ++v) {
                for (int u = std::max(x - 1, 0); u <= std::min(x + 1, picture.width() - 1); ++u) {
                    const QRgb pixel = picture.pixel(u, v);
                    red += qRed(pixel);
                    green += qGreen(pixel);
                    blue += qBlue(pixel);
                    ++count;
                }
            }
            result.setPixel(x, y, qRgb(red / count, green / count, blue / count));
        }
    }
    return result;
}

// How a picture of more pixels agrees with the one of one pixel per logical pixel.
struct Agreement
{
    int drawn = 0;     // pixels that one of the two is not black at, once blurred
    int different = 0; // pixels of these that differ by more than the tolerated levels
    double light = 1;  // sum of all channels of the finer picture, made small, over that of the plain one

    double share() const { return drawn > 0 ? static_cast<double>(different) / drawn : 0.0; }
    QString text() const
    {
        return QString("%1 of %2 drawn pixels differ (%3 %), light %4")
            .arg(different)
            .arg(drawn)
            .arg(100.0 * share(), 0, 'f', 2)
            .arg(light, 0, 'f', 3);
    }
};

// Blurs by one pixel, as edges lie on other fractions of a pixel in the finer picture.
inline Agreement agreementOf(const QImage &plain, const QImage &finer, int levels)
{
    const QImage small = areaMeans(finer, plain.size());
    const QImage left = blurred(plain), right = blurred(small);
    Agreement result;
    double plainLight = 0.0, finerLight = 0.0;
    const auto sum = [](QRgb pixel) { return qRed(pixel) + qGreen(pixel) + qBlue(pixel); };
    constexpr int dark = 4;
    for (int y = 0; y < plain.height(); ++y) {
        for (int x = 0; x < plain.width(); ++x) {
            plainLight += sum(plain.pixel(x, y));
            finerLight += sum(small.pixel(x, y));
            const QRgb a = left.pixel(x, y), b = right.pixel(x, y);
            result.drawn += std::max(sum(a), sum(b)) > dark ? 1 : 0;
            result.different += pixelDifference(a, b) > levels ? 1 : 0;
        }
    }
    result.light = plainLight > 0.0 ? finerLight / plainLight : 0.0;
    return result;
}
