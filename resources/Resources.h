#pragma once

#include <QString>

// Paths of the pictures compiled into the program.
namespace Resources {

QString icon(const QString &fileName);   // ":/icons/<fileName>"
QString cursor(const QString &fileName); // ":/cursors/<fileName>"
QString image(const QString &fileName);  // ":/images/<fileName>"

} // namespace Resources
