#include "recovery/RecoveryWriter.h"

#include "recovery/RecoveryFiles.h"
#include "recovery/RecoveryFolder.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/NoThreads.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>

#include <csignal>
#include <iostream>
#include <streambuf>
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

bool writes(RecoveryWriter &writer, int object, const std::string &bytes)
{
    writer.write("knee", object, bytes);
    return writer.waitUntilWritten(longEnough) && writer.takeFailed().empty();
}

// The writer fails twice, says so and why once, and tells which object it was.
bool failsWithOneLine(const QString &session, const std::string &bytes, const QString &cause)
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
    const QString line = output.standardError();
    return line.count('\n') == 1 &&
           line.startsWith("The contours could not be kept for recovery in " + session) &&
           line.endsWith(": " + cause + '\n');
}

// The largest file that may be written from now on.
bool limitFiles(rlim_t bytes)
{
    rlimit limit{};
    std::signal(SIGXFSZ, SIG_IGN);
    if (getrlimit(RLIMIT_FSIZE, &limit) != 0)
        return false;
    limit.rlim_cur = bytes;
    return setrlimit(RLIMIT_FSIZE, &limit) == 0;
}

// Counts the pieces in which std::cerr is given its text.
class Pieces : public std::streambuf
{
public:
    Pieces()
        : former(std::cerr.rdbuf(this))
    {}
    ~Pieces() override { std::cerr.rdbuf(former); }
    Pieces(const Pieces &) = delete;
    Pieces &operator=(const Pieces &) = delete;

    int count() const { return pieces; }

protected:
    int_type overflow(int_type character) override
    {
        ++pieces;
        return traits_type::not_eof(character);
    }
    std::streamsize xsputn(const char *, std::streamsize length) override
    {
        ++pieces;
        return length;
    }

private:
    std::streambuf *former;
    int pieces = 0;
};

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
        return failsWithOneLine(session, "a", "the folder cannot be made");
    }));
    QFile::setPermissions(root.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

// The small one goes through the toolkit's buffer.
TEST_F(RecoveryWriterTest, fileThatMayNotGrow_costsOneLineAndLeavesNoHalfFile)
{
    for (const std::size_t size : {std::size_t(5000), std::size_t(100000)}) {
        EXPECT_TRUE(holdsInChild([&] {
            return limitFiles(4096) && failsWithOneLine(session, std::string(size, 'x'), "File too large");
        }));
        EXPECT_EQ(files(), QStringList());
    }
}

TEST_F(RecoveryWriterTest, folderWithoutRoomForItsLock_isLockedLater)
{
    EXPECT_TRUE(holdsInChild([this] {
        const CapturedOutput output;
        RecoveryWriter writer(session);
        if (!limitFiles(0) || writes(writer, 1, "a") || !QDir(session).exists() || !files().isEmpty())
            return false;
        if (!output.standardError().endsWith(": the folder cannot be marked as in use\n"))
            return false;
        return limitFiles(RLIM_INFINITY) && writes(writer, 1, "b") && files().contains("running.lock") &&
               !RecoveryFolder::sessionLock(session)->tryLock(0);
    }));
}

TEST_F(RecoveryWriterTest, largeObjectsThatFailBesideSmallOnes_costOneLineUntilAllSucceed)
{
    EXPECT_TRUE(holdsInChild([this] {
        const CapturedOutput output;
        RecoveryWriter writer(session);
        const auto fail = [&] {
            return !writes(writer, 1, std::string(5000, 'x')) && writes(writer, 2, "b");
        };
        if (!limitFiles(4096) || !fail() || !fail() || output.standardError().count('\n') != 1)
            return false;
        if (!limitFiles(RLIM_INFINITY) || !writes(writer, 1, std::string(5000, 'x')))
            return false;
        return limitFiles(4096) && fail() && output.standardError().count('\n') == 2;
    }));
}

TEST_F(RecoveryWriterTest, failingObjectThatIsForgotten_doesNotSilenceTheNext)
{
    EXPECT_TRUE(holdsInChild([this] {
        const CapturedOutput output;
        RecoveryWriter writer(session);
        if (!limitFiles(4096) || writes(writer, 1, std::string(5000, 'x')))
            return false;
        writer.forget(1);
        return !writes(writer, 2, std::string(5000, 'x')) && output.standardError().count('\n') == 2;
    }));
}

TEST_F(RecoveryWriterTest, line_isWrittenAtOnce)
{
    QFile obstacle(root.filePath("sub"));
    ASSERT_TRUE(obstacle.open(QIODevice::WriteOnly));
    const Pieces pieces;
    {
        RecoveryWriter writer(session);
        EXPECT_FALSE(writes(writer, 1, "a"));
    }
    EXPECT_EQ(pieces.count(), 1);
}

TEST_F(RecoveryWriterTest, clockSetBack_theLastStateKeepsTheLastTime)
{
    const QDateTime noon(QDate(2026, 3, 1), QTime(12, 0));
    QDateTime now = noon;
    RecoveryWriter writer(session, [&now] { return now; });
    ASSERT_TRUE(writes(writer, 1, "a"));
    now = noon.addSecs(-3600);
    ASSERT_TRUE(writes(writer, 1, "b"));
    ASSERT_TRUE(writes(writer, 2, "c")); // has no former state
    now = noon.addSecs(60);
    ASSERT_TRUE(writes(writer, 1, "d"));
    ASSERT_EQ(generations().size(), 3);
    const auto time = [this](int file) { return RecoveryFiles::parse(generations()[file])->time; };
    EXPECT_EQ(content(generations()[0]), "b");
    EXPECT_EQ(time(0), noon.addMSecs(1));
    EXPECT_EQ(content(generations()[1]), "d");
    EXPECT_EQ(time(1), noon.addSecs(60));
    EXPECT_EQ(content(generations()[2]), "c");
    EXPECT_EQ(time(2), noon.addSecs(-3600));
}

TEST_F(RecoveryWriterTest, withoutThreads_writesBeforeEachCallReturns)
{
    const CapturedOutput output;
    {
        const NoThreads none;
        RecoveryWriter writer(session);
        writer.write("knee", 1, "a");
        ASSERT_EQ(generations().size(), 1);
        EXPECT_EQ(content(generations()[0]), "a");
        EXPECT_TRUE(files().contains("running.lock"));
        writer.markSaved(1);
        EXPECT_TRUE(files().contains("1.saved"));
        EXPECT_TRUE(writer.waitUntilWritten(std::chrono::milliseconds(0)));
    }
    EXPECT_EQ(files().size(), 2); // the lock has gone
    EXPECT_EQ(output.standardError().count('\n'), 1);
    EXPECT_TRUE(
        output.standardError().startsWith("No thread could be started to keep contours for recovery"));
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
    EXPECT_TRUE(failsWithOneLine(session, std::string(100000, 'x'), "No space left on device"));
    ASSERT_EQ(files().size(), 1);
    EXPECT_EQ(content(files()[0]), QByteArray(30000, 'a'));
    EXPECT_EQ(umount(qPrintable(root.path())), 0);
}
