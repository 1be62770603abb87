#pragma once

#include <QColor>
#include <QCoreApplication>
#include <QDir>
#include <QImage>
#include <QString>

#include <algorithm>
#include <cstdlib>

// Golden pictures: a picture that a test made is compared with the accepted one in tests/golden/<name>.png.
//
//   QCOMPARE(goldenFault(picture, "oblique_plane"), QString());
//
// TEVORA_WRITE_GOLDEN=1 in the environment writes the accepted pictures instead: look at each one before it
// is committed, and derive the colours of a few probe points by hand in the test (probe() below).

constexpr int goldenLevels = 2;          // largest difference per channel that counts as equal
constexpr double goldenFraction = 0.005; // share of the pixels that may differ by more

// Opaque pixels as they were drawn. Grabbed pictures with an alpha channel are premultiplied: a conversion
// would brighten translucent pixels, so the bits are taken as they are.
inline QImage opaquePicture(QImage picture)
{
    if (picture.format() == QImage::Format_ARGB32_Premultiplied || picture.format() == QImage::Format_ARGB32)
        picture.reinterpretAsFormat(QImage::Format_RGB32);
    if (picture.format() == QImage::Format_RGBA8888_Premultiplied ||
        picture.format() == QImage::Format_RGBA8888)
        picture.reinterpretAsFormat(QImage::Format_RGBX8888);
    return picture.convertToFormat(QImage::Format_RGB32);
}

// The colour of a pixel, x from the left and y from the top.
inline QColor probe(const QImage &picture, int x, int y)
{
    return QColor::fromRgb(opaquePicture(picture).pixel(x, y));
}

// True if each channel is within levels of the expected one.
inline bool isNear(const QColor &colour, int red, int green, int blue, int levels = goldenLevels)
{
    return std::abs(colour.red() - red) <= levels && std::abs(colour.green() - green) <= levels &&
           std::abs(colour.blue() - blue) <= levels;
}

inline int pixelDifference(QRgb left, QRgb right)
{
    return std::max({std::abs(qRed(left) - qRed(right)), std::abs(qGreen(left) - qGreen(right)),
                     std::abs(qBlue(left) - qBlue(right))});
}

// Accepted, drawn and (eight times amplified) difference, side by side.
inline QImage differencePicture(const QImage &accepted, const QImage &drawn)
{
    const int width = std::max(accepted.width(), drawn.width());
    QImage result(3 * width, std::max(accepted.height(), drawn.height()), QImage::Format_RGB32);
    result.fill(Qt::darkGray);
    for (int y = 0; y < result.height(); ++y) {
        for (int x = 0; x < width; ++x) {
            const bool inAccepted = accepted.valid(x, y);
            const bool inDrawn = drawn.valid(x, y);
            if (inAccepted)
                result.setPixel(x, y, accepted.pixel(x, y));
            if (inDrawn)
                result.setPixel(width + x, y, drawn.pixel(x, y));
            if (inAccepted && inDrawn) {
                const int level = std::min(255, 8 * pixelDifference(accepted.pixel(x, y), drawn.pixel(x, y)));
                result.setPixel(2 * width + x, y, qRgb(level, level, level));
            }
        }
    }
    return result;
}

inline QString goldenFolder()
{
    const char *source = std::getenv("TEVORA_SOURCE_DIR");
    return QDir(QString::fromLocal8Bit(source != nullptr ? source : "."))
        .filePath(QStringLiteral("tests/golden"));
}

// Empty if the picture is the accepted one within the tolerance; otherwise what is wrong. A difference
// picture is then written to "golden" beside the test program. An accepted picture that is missing is a
// fault.
inline QString goldenFault(const QImage &picture, const QString &name)
{
    const QImage drawn = opaquePicture(picture);
    const QString path = goldenFolder() + QLatin1Char('/') + name + QStringLiteral(".png");
    if (qEnvironmentVariableIntValue("TEVORA_WRITE_GOLDEN") == 1) {
        QDir().mkpath(goldenFolder());
        return drawn.save(path) ? QString() : QStringLiteral("cannot write ") + path;
    }
    const QImage accepted = QImage(path).convertToFormat(QImage::Format_RGB32);
    if (accepted.isNull())
        return QStringLiteral("there is no accepted picture ") + path;

    qint64 different = 0;
    if (accepted.size() == drawn.size()) {
        for (int y = 0; y < drawn.height(); ++y) {
            for (int x = 0; x < drawn.width(); ++x)
                different += pixelDifference(accepted.pixel(x, y), drawn.pixel(x, y)) > goldenLevels ? 1 : 0;
        }
        const double pixels = static_cast<double>(drawn.width()) * drawn.height();
        if (static_cast<double>(different) <= goldenFraction * pixels)
            return {};
    }
    const QDir folder(QCoreApplication::applicationDirPath() + QStringLiteral("/golden"));
    folder.mkpath(QStringLiteral("."));
    const QString written = folder.filePath(name + QStringLiteral("_difference.png"));
    differencePicture(accepted, drawn).save(written);
    if (accepted.size() != drawn.size())
        return QStringLiteral("the size differs, see ") + written;
    return QStringLiteral("%1 pixels differ, see %2").arg(QString::number(different), written);
}
