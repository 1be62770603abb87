#include "recovery/RecoveryFolder.h"

#include "recovery/RecoveryFiles.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>

#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

namespace {

class RecoveryFolderTest : public testing::Test
{
protected:
    QTemporaryDir root;
    RecoveryFolder folder{root.path()};
    QDateTime now = QDateTime::currentDateTime();

    QString addFile(const QString &session, const QString &name) const
    {
        EXPECT_TRUE(QDir(root.path()).mkpath(session));
        QFile file(root.filePath(session + '/' + name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        return file.fileName();
    }
    QString addGeneration(const QString &session, int object, const QDateTime &time) const
    {
        return addFile(session, RecoveryFiles::name({"knee", object, time}));
    }
    QStringList files(const QString &session) const
    {
        return QDir(root.filePath(session)).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }
    // A process that takes the session's lock and is killed.
    void killSession(const QString &session) const
    {
        QDir(root.path()).mkpath(session);
        int ready[2];
        ASSERT_EQ(pipe(ready), 0);
        const pid_t child = fork();
        if (child == 0) {
            const auto lock = RecoveryFolder::sessionLock(root.filePath(session));
            const char locked = lock->tryLock(0) ? 'y' : 'n';
            if (write(ready[1], &locked, 1) == 1)
                pause();
            _exit(1);
        }
        char locked = '?';
        ASSERT_EQ(read(ready[0], &locked, 1), 1);
        EXPECT_EQ(locked, 'y');
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        close(ready[0]);
        close(ready[1]);
    }
};

} // namespace

TEST_F(RecoveryFolderTest, newSession_hasTimeAndProcessInItsName)
{
    const QString session = folder.newSessionPath();
    EXPECT_EQ(QFileInfo(session).path(), root.path());
    EXPECT_TRUE(QFileInfo(session).fileName().startsWith(now.toString("yyyy-MM-dd")));
    EXPECT_TRUE(session.endsWith('_' + QString::number(getpid())));
    EXPECT_FALSE(QFile::exists(session));
}

TEST_F(RecoveryFolderTest, uncleanEnd_namesTheLastUnsavedGenerations_once)
{
    addGeneration("dead", 1, now.addSecs(-20));
    const QString last = addGeneration("dead", 1, now.addSecs(-10));
    addGeneration("dead", 2, now.addSecs(-10));
    addFile("dead", "2.saved");
    killSession("dead");
    const QStringList lines = folder.takeUncleanEnds();
    ASSERT_EQ(lines.size(), 1);
    EXPECT_EQ(lines[0], "Tevora did not end cleanly. The last contours that were not saved are in " +
                            root.path() + "/dead: " + QFileInfo(last).fileName());
    EXPECT_TRUE(folder.takeUncleanEnds().isEmpty());
}

TEST_F(RecoveryFolderTest, cleanRunningAndEmptySessions_areNotNamed)
{
    addGeneration("clean", 1, now);
    addGeneration("running", 1, now);
    const auto lock = RecoveryFolder::sessionLock(root.filePath("running"));
    ASSERT_TRUE(lock->tryLock(0));
    addFile("saved", "1.saved");
    addGeneration("saved", 1, now);
    killSession("saved");
    killSession("empty");
    EXPECT_TRUE(folder.takeUncleanEnds().isEmpty());
}

TEST_F(RecoveryFolderTest, missingFolder_isEmpty)
{
    const RecoveryFolder missing(root.filePath("none"));
    EXPECT_TRUE(missing.takeUncleanEnds().isEmpty());
    missing.removeOutdated(now);
    EXPECT_FALSE(QFile::exists(root.filePath("none")));
}

TEST_F(RecoveryFolderTest, after30Days_savedContoursGo_unsavedOnesStay)
{
    addGeneration("old", 1, now.addDays(-40));
    addGeneration("old", 1, now.addDays(-31));
    addFile("old", "1.saved");
    const QString first = addGeneration("old", 2, now.addDays(-40));
    const QString last = addGeneration("old", 2, now.addDays(-31));
    folder.removeOutdated(now);
    EXPECT_EQ(files("old"), (QStringList{QFileInfo(first).fileName(), QFileInfo(last).fileName()}));
}

TEST_F(RecoveryFolderTest, youngerGenerations_stay)
{
    addGeneration("young", 1, now.addDays(-29));
    addGeneration("young", 1, now.addDays(-28));
    addFile("young", "1.saved");
    addGeneration("partly", 1, now.addDays(-31));
    const QString younger = addGeneration("partly", 1, now.addDays(-29));
    addFile("partly", "1.saved");
    folder.removeOutdated(now);
    EXPECT_EQ(files("young").size(), 3);
    EXPECT_EQ(files("partly"), (QStringList{"1.saved", QFileInfo(younger).fileName()}));
}

TEST_F(RecoveryFolderTest, halfFiles_goWhenTheirSessionHasEnded)
{
    addFile("dead", "knee_1_2026-03-01T12.00.00.007+0100.slic.Ab12Cd");
    const QString whole = addGeneration("dead", 1, now);
    addFile("running", "knee_1_2026-03-01T12.00.00.007+0100.slic.Ab12Cd");
    const auto lock = RecoveryFolder::sessionLock(root.filePath("running"));
    ASSERT_TRUE(lock->tryLock(0));
    folder.removeOutdated(now);
    EXPECT_EQ(files("dead"), QStringList{QFileInfo(whole).fileName()});
    EXPECT_EQ(files("running").size(), 2);
}

// The file dialogs go on in the folder of a generation that was opened.
TEST_F(RecoveryFolderTest, filesThatTheUserSavedThere_stay)
{
    const QStringList own{"1.saved.slic", "knee.slic", "knee.txt", "knee_1.backup", "mask.mhd"};
    for (const QString &name : own)
        addFile("old", name);
    addGeneration("old", 1, now.addDays(-40));
    addFile("old", "1.saved");
    folder.removeOutdated(now);
    EXPECT_EQ(files("old"), own);
    folder.removeOutdated(now.addDays(400));
    EXPECT_EQ(files("old"), own);
}

TEST_F(RecoveryFolderTest, emptySessions_goAfter30Days)
{
    QDir(root.path()).mkpath("empty");
    folder.removeOutdated(now);
    EXPECT_TRUE(QDir(root.filePath("empty")).exists());
    folder.removeOutdated(now.addDays(31));
    EXPECT_FALSE(QDir(root.filePath("empty")).exists());
}
