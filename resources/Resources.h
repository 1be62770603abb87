#pragma once

#include <QPixmap>
#include <QString>

// The pictures compiled into the program: their paths, and those that are no icons in the resolution of a
// screen.
namespace Resources {

QString icon(const QString &fileName);   // ":/icons/<fileName>"
QString cursor(const QString &fileName); // ":/cursors/<fileName>"
QString image(const QString &fileName);  // ":/images/<fileName>"

// The picture for a screen with this many pixels for one logical pixel: it has that device pixel ratio, and
// so the logical size of the file whatever the ratio.
QPixmap picture(const QString &path, double devicePixelRatio);

} // namespace Resources
