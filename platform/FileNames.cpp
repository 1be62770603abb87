#include "platform/FileNames.h"

#include <QFile>
#include <QStandardPaths>

std::string narrowPath(const QString &path)
{
    return QFile::encodeName(path).toStdString();
}

std::wstring widePath(const QString &path)
{
    return path.toStdWString();
}

QString pathFromWide(const wchar_t *path)
{
    return path == nullptr ? QString() : QString::fromWCharArray(path);
}

QString recoveryFolderPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + "/recovery";
}
