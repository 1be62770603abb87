#pragma once

#include <QByteArray>
#include <QString>

class QAbstractItemModel;

// The table of metrics that is written beside a contours file.
namespace MetricsText {

// The path of the table: that of the contours with "Segmentation" replaced by "Metrics" and "slic" by "txt",
// everywhere in it. May be the contours path itself.
QString path(const QString &contoursPath);
// All cells of the model without their units, in the local 8-bit encoding; each cell is followed by a tab,
// the last of a row by a line feed, and each of these by a zero byte.
QByteArray text(const QAbstractItemModel &model);
// Copies a file that is about to be overwritten to a new file in recoveryFolderPath(). Returns the path of
// the copy, empty on failure.
QString keepCopy(const QString &path);

} // namespace MetricsText
