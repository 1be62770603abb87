#pragma once

#include <QDateTime>
#include <QLockFile>
#include <QString>
#include <QStringList>

#include <memory>

// The folder on the disk under which every session of the program keeps its generations, in a folder of its
// own. A session holds a lock as long as it runs; a lock of a dead process tells that it did not end cleanly.
// Any thread.
class RecoveryFolder
{
public:
    explicit RecoveryFolder(QString path);

    // For a session that begins now; the folder is not made.
    QString newSessionPath() const;
    // For the process that holds the session.
    static std::unique_ptr<QLockFile> sessionLock(const QString &session);

    // The last generations of all contours that no file of the user's holds, one line of text for each
    // session that has not ended cleanly. Each session is told once.
    QStringList takeUncleanEnds() const;
    // Removes the generations older than 30 days of contours whose last state is in a file of the user's, and
    // half files that an unclean end left. Leaves running sessions alone, all generations of other contours,
    // and files of other names: whoever opens a generation is offered its folder for saving.
    void removeOutdated(const QDateTime &now) const;

private:
    QStringList sessions() const;

    QString path;
};
