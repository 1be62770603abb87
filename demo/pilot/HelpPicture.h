#pragma once

#include <QImage>
#include <QRect>

// Pictures for the help pages, cut from pictures of the screen: opaque and as wide as the help window's strip
// takes.
namespace HelpPicture {

constexpr int widthPixels = 205;

// The area of the screen, scaled to the width.
QImage ofArea(const QImage &screen, const QRect &area);
// Left half of the one and right half of the other, both of one size, with a white line between.
QImage halves(const QImage &left, const QImage &right);
// One above the other, with a white line between.
QImage stacked(const QImage &upper, const QImage &lower);

} // namespace HelpPicture
