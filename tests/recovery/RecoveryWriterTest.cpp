#include "recovery/RecoveryWriter.h"

#include "recovery/RecoveryFiles.h"
#include "tests/support/CapturedOutput.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>

#include <csignal>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr std::chrono::milliseconds longEnough{30000};

class RecoveryWriterTest : public testing::Test
{
protected:
    QTemporaryDir root;
    QString session = root.filePath("sub/session");

    QStringList files() const { return QDir(session).entryList(QDir::Files | QDir::Hidden, QDir::Name); }
    QStringList generations() const
    {
        return QDir(session).entryList({"*.slic"}, QDir::Files | QDir::Hidden, QDir::Name);
    }
    QByteArray content(const QString &name) const
    {
        QFile file(session + '/' + name);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }
};

// Runs in a process of its own, whose limits and user may be changed. Returns whether all expectations held.
bool holdsInChild(const std::function<bool()> &work)
{
    const pid_t child = fork();
    if (child == 0)
        _exit(work() ? 0 : 1);
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

// The writer fails twice, says so once, and tells which object it was.
bool failsWithOneLine(const QString &session, const std::string &bytes)
{
    const CapturedOutput output;
    {
        RecoveryWriter writer(session);
        for (int i = 0; i < 2; ++i) {
            writer.write("knee", 7, bytes);
            if (!writer.waitUntilWritten(longEnough) || writer.takeFailed() != std::set<int>{7})
                return false;
        }
    }
    return output.standardError().count('\n') == 1 &&
           output.standardError().startsWith("The contours could not be kept for recovery in " + session);
}

} // namespace

TEST_F(RecoveryWriterTest, withoutWork_makesNoFolder)
{
    {
        RecoveryWriter writer(session);
        writer.markSaved(1);
        EXPECT_TRUE(writer.waitUntilWritten(longEnough));
    }
    EXPECT_FALSE(QFile::exists(session));
}

TEST_F(RecoveryWriterTest, writes_whileItHoldsTheSession)
{
    {
        RecoveryWriter writer(session);
        writer.write("knee", 1, std::string("a\0b", 3));
        ASSERT_TRUE(writer.waitUntilWritten(longEnough));
        EXPECT_TRUE(writer.takeFailed().empty());
        EXPECT_EQ(files().size(), 2);
        EXPECT_TRUE(files().contains("running.lock"));
    }
    ASSERT_EQ(files().size(), 1);
    EXPECT_EQ(content(files()[0]), QByteArray("a\0b", 3));
    EXPECT_EQ(RecoveryFiles::parse(files()[0])->object, 1);
}

TEST_F(RecoveryWriterTest, destructor_writesWhatIsLeft)
{
    {
        RecoveryWriter writer(session);
        for (int object = 1; object <= 20; ++object)
            writer.write("knee", object, std::string(100000, 'x'));
    }
    EXPECT_EQ(generations().size(), 20);
}

TEST_F(RecoveryWriterTest, generationsOfOneMinute_areSupersededByTheLast)
{
    RecoveryWriter writer(session);
    for (int i = 0; i < 30; ++i) {
        writer.write("knee", 1, std::to_string(i));
        ASSERT_TRUE(writer.waitUntilWritten(longEnough));
    }
    // The clock may have stepped into the next minute meanwhile.
    ASSERT_GE(generations().size(), 1);
    ASSERT_LE(generations().size(), 2);
    EXPECT_EQ(content(generations().last()), "29");
}

TEST_F(RecoveryWriterTest, savedMark_standsUntilTheNextGeneration)
{
    RecoveryWriter writer(session);
    writer.write("knee", 1, "a");
    writer.markSaved(1);
    ASSERT_TRUE(writer.waitUntilWritten(longEnough));
    EXPECT_TRUE(files().contains("1.saved"));
    writer.write("knee", 1, "b");
    ASSERT_TRUE(writer.waitUntilWritten(longEnough));
    EXPECT_FALSE(files().contains("1.saved"));
}

TEST_F(RecoveryWriterTest, folderThatVanishes_isMadeAgain)
{
    RecoveryWriter writer(session);
    writer.write("knee", 1, "a");
    ASSERT_TRUE(writer.waitUntilWritten(longEnough));
    ASSERT_TRUE(QDir(session).removeRecursively());
    writer.write("knee", 1, "b");
    ASSERT_TRUE(writer.waitUntilWritten(longEnough));
    EXPECT_TRUE(writer.takeFailed().empty());
    ASSERT_EQ(generations().size(), 1);
    EXPECT_EQ(content(generations()[0]), "b");
}

TEST_F(RecoveryWriterTest, afterAFailure_writesAgainAndReportsTheNextFailure)
{
    QFile obstacle(root.filePath("sub"));
    const CapturedOutput output;
    {
        RecoveryWriter writer(session);
        const auto writeOnce = [&] {
            writer.write("knee", 1, "a");
            EXPECT_TRUE(writer.waitUntilWritten(longEnough));
            return writer.takeFailed().empty();
        };
        ASSERT_TRUE(obstacle.open(QIODevice::WriteOnly)); // a file where the folder should be
        EXPECT_FALSE(writeOnce());
        ASSERT_TRUE(obstacle.remove());
        EXPECT_TRUE(writeOnce());
        ASSERT_TRUE(QDir(root.filePath("sub")).removeRecursively());
        ASSERT_TRUE(obstacle.open(QIODevice::WriteOnly));
        EXPECT_FALSE(writeOnce());
    }
    EXPECT_EQ(output.standardError().count('\n'), 2);
}

TEST_F(RecoveryWriterTest, readOnlyFolder_costsOneLine)
{
    ASSERT_TRUE(QFile::setPermissions(root.path(), QFile::ReadOwner | QFile::ExeOwner | QFile::ReadOther |
                                                       QFile::ExeOther | QFile::ReadGroup | QFile::ExeGroup));
    EXPECT_TRUE(holdsInChild([this] {
        // Nothing is read-only for root.
        if (geteuid() == 0 && (setgid(65534) != 0 || setuid(65534) != 0))
            return false;
        return failsWithOneLine(session, "a");
    }));
    QFile::setPermissions(root.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

TEST_F(RecoveryWriterTest, fileThatMayNotGrow_costsOneLineAndLeavesNoHalfFile)
{
    EXPECT_TRUE(holdsInChild([this] {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{4096, 4096};
        if (setrlimit(RLIMIT_FSIZE, &limit) != 0)
            return false;
        return failsWithOneLine(session, std::string(100000, 'x'));
    }));
    EXPECT_EQ(files(), QStringList());
}

TEST_F(RecoveryWriterTest, fullDisk_costsOneLineAndKeepsTheFormerGeneration)
{
    if (mount("tmpfs", qPrintable(root.path()), "tmpfs", 0, "size=64k") != 0)
        GTEST_SKIP() << "a file system cannot be mounted here";
    {
        RecoveryWriter writer(session);
        writer.write("knee", 7, std::string(30000, 'a'));
        EXPECT_TRUE(writer.waitUntilWritten(longEnough));
        EXPECT_TRUE(writer.takeFailed().empty());
    }
    EXPECT_TRUE(failsWithOneLine(session, std::string(100000, 'x')));
    ASSERT_EQ(files().size(), 1);
    EXPECT_EQ(content(files()[0]), QByteArray(30000, 'a'));
    EXPECT_EQ(umount(qPrintable(root.path())), 0);
}
