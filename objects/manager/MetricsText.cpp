#include "objects/manager/MetricsText.h"

#include "platform/FileNames.h"

#include <QAbstractItemModel>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

// A blank, two letters and, for areas and volumes, one of the two characters that raise them: "12 mm^2" is
// cut to "122". Readers of these tables rely on it.
constexpr int unitLength = 4;

// So that the name of a copy, with its time in front, is not too long for the file system.
constexpr int longestNamePart = 64;

} // namespace

QString MetricsText::path(const QString &contoursPath)
{
    return QString(contoursPath).replace("Segmentation", "Metrics").replace("slic", "txt");
}

QByteArray MetricsText::text(const QAbstractItemModel &model)
{
    const int columns = model.columnCount();
    QByteArray bytes;
    for (int row = 0; row < model.rowCount(); ++row) {
        for (int column = 0; column < columns; ++column) {
            QString cell = model.data(model.index(row, column)).toString();
            // Without a blank the position is -1, which counts from the end: the last character goes.
            cell.remove(cell.indexOf(' '), unitLength);
            bytes += cell.toLocal8Bit();
            bytes += column + 1 < columns ? '\t' : '\n';
            bytes += '\0';
        }
    }
    return bytes;
}

QString MetricsText::keepCopy(const QString &path)
{
    const QDir folder(recoveryFolderPath());
    if (!folder.mkpath("."))
        return QString();
    const QString stem = QDateTime::currentDateTime().toString("yyyyMMdd-HHmmss-zzz");
    const QString name = QFileInfo(path).fileName().right(longestNamePart);
    for (int attempt = 0; attempt < 1000; ++attempt) {
        const QString copy = folder.filePath(QString("%1-%2-%3").arg(stem, QString::number(attempt), name));
        if (QFile::exists(copy))
            continue;
        return QFile::copy(path, copy) ? copy : QString(); // never overwrites
    }
    return QString();
}
