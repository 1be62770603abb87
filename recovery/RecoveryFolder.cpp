#include "recovery/RecoveryFolder.h"

#include "recovery/RecoveryFiles.h"

#include <QCoreApplication>
#include <QDir>

#include <algorithm>
#include <map>
#include <set>
#include <utility>

namespace {

constexpr int daysKept = 30;
constexpr const char *lockName = "running.lock";

// What a session folder holds, by object.
struct SessionContent
{
    struct File
    {
        QString path;
        QDateTime time;
    };
    std::map<int, std::vector<File>> generations; // in order of time
    std::set<int> saved;
    QStringList halves; // files that the end of the session has left unfinished
};

SessionContent read(const QString &session)
{
    SessionContent content;
    for (const QFileInfo &file : QDir(session).entryInfoList(QDir::Files | QDir::Hidden, QDir::Name)) {
        const QString name = file.fileName();
        if (const auto generation = RecoveryFiles::parse(name))
            content.generations[generation->object].push_back({file.filePath(), generation->time});
        else if (const auto object = RecoveryFiles::parseSavedMark(name))
            content.saved.insert(*object);
        else if (RecoveryFiles::isHalf(name))
            content.halves.append(file.filePath());
    }
    for (auto &[object, files] : content.generations)
        std::sort(files.begin(), files.end(), [](const auto &a, const auto &b) { return a.time < b.time; });
    return content;
}

void removeOld(const QString &session, const QDateTime &limit)
{
    const SessionContent content = read(session);
    for (const QString &half : content.halves)
        QFile::remove(half);
    for (const auto &[object, files] : content.generations) {
        if (content.saved.count(object) == 0)
            continue;
        std::size_t left = files.size();
        for (const auto &file : files) {
            if (file.time < limit && QFile::remove(file.path))
                --left;
        }
        if (left == 0)
            QFile::remove(session + '/' + RecoveryFiles::savedMark(object));
    }
    if (QFileInfo(session).lastModified() < limit)
        QDir().rmdir(session); // unless something is left in it
}

} // namespace

RecoveryFolder::RecoveryFolder(QString newPath)
    : path(std::move(newPath))
{}

QString RecoveryFolder::newSessionPath() const
{
    return path + '/' + RecoveryFiles::timeText(QDateTime::currentDateTime()) + '_' +
           QString::number(QCoreApplication::applicationPid());
}

std::unique_ptr<QLockFile> RecoveryFolder::sessionLock(const QString &session)
{
    auto lock = std::make_unique<QLockFile>(session + '/' + lockName);
    lock->setStaleLockTime(0); // a session may run for weeks
    return lock;
}

QStringList RecoveryFolder::sessions() const
{
    QStringList result;
    for (const QFileInfo &folder : QDir(path).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name))
        result.append(folder.filePath());
    return result;
}

QStringList RecoveryFolder::takeUncleanEnds() const
{
    QStringList lines;
    for (const QString &session : sessions()) {
        if (!QFile::exists(session + '/' + lockName) || !sessionLock(session)->tryLock(0))
            continue;
        const SessionContent content = read(session);
        QStringList names;
        for (const auto &[object, files] : content.generations) {
            if (content.saved.count(object) == 0)
                names.append(QFileInfo(files.back().path).fileName());
        }
        if (!names.isEmpty())
            lines.append("Tevora did not end cleanly. The last contours that were not saved are in " +
                         session + ": " + names.join(", "));
    }
    return lines;
}

void RecoveryFolder::removeOutdated(const QDateTime &now) const
{
    for (const QString &session : sessions()) {
        if (!QFile::exists(session + '/' + lockName))
            removeOld(session, now.addDays(-daysKept));
    }
}
