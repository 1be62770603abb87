#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "recovery/RecoveryFiles.h"
#include "serialization/formats/SlicUnserializer.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr int kills = 200;
constexpr int together = 50; // processes at a time
constexpr qint64 mayBeLostMs = 10000;
constexpr qint64 longestMs = 20000; // from the first step to the kill
constexpr int startMs = 60000;      // to the first step, of many processes together

qint64 nowMs()
{
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
}

// What a session printed after a step.
struct Step
{
    int number;
    qint64 timeMs;
    std::size_t hash; // of the SLIC bytes
};

struct Session
{
    QTemporaryDir folder;
    QProcess process;
    qint64 killAtMs = 0;
    qint64 killedMs = 0;

    std::vector<Step> steps()
    {
        std::vector<Step> result;
        for (const QByteArray &line : process.readAllStandardOutput().split('\n')) {
            const QList<QByteArray> words = line.split(' ');
            if (words.size() == 3)
                result.push_back({words[0].toInt(), words[1].toLongLong(), words[2].toULongLong()});
        }
        return result;
    }
};

std::string bytesOf(const QString &path)
{
    std::ifstream stream(path.toStdString(), std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

// The number of the step whose whole state the bytes are; 0 if they are none.
int stepOf(const std::string &bytes)
{
    std::istringstream stream(bytes);
    SlicUnserializer reader;
    const std::unique_ptr<ImageObject> object(
        static_cast<StreamImageObjectUnserializer &>(reader).unserialize(stream));
    const auto *contours = qobject_cast<SlicedContoursObject *>(object.get());
    return contours != nullptr && contours->fragmentCount() == 2 ? contours->fragment(1)->label().toInt() : 0;
}

// The session's lock, and what it was writing: that bears a name which nobody takes for a generation.
bool isLeftOver(const QString &name)
{
    return name == "running.lock" || RecoveryFiles::isHalf(name);
}

// Every generation must load and be the whole state after the step that its second fragment names, and
// nothing else may look like one. Returns the number of the last step that was kept, 0 if there is none.
int checkGenerations(const QString &folder, const std::vector<Step> &steps)
{
    int last = 0;
    for (const QFileInfo &file : QDir(folder).entryInfoList(QDir::Files | QDir::Hidden)) {
        if (isLeftOver(file.fileName()))
            continue;
        EXPECT_TRUE(RecoveryFiles::parse(file.fileName())) << qPrintable(file.fileName());
        const std::string bytes = bytesOf(file.filePath());
        const int number = stepOf(bytes);
        EXPECT_GT(number, 0) << qPrintable(file.filePath()) << " does not load";
        last = std::max(last, number);
        // The session may be killed between drawing and printing.
        if (number > 0 && number <= static_cast<int>(steps.size())) {
            const Step &step = steps[static_cast<std::size_t>(number) - 1];
            EXPECT_EQ(std::hash<std::string>()(bytes), step.hash);
        }
    }
    return last;
}

// How long before its end a session did the first thing that is not kept; 0 if all is kept.
qint64 lostMs(Session &session)
{
    session.process.waitForFinished();
    const std::vector<Step> steps = session.steps();
    EXPECT_FALSE(steps.empty());
    const auto last = static_cast<std::size_t>(checkGenerations(session.folder.filePath("session"), steps));
    return last < steps.size() ? session.killedMs - steps[last].timeMs : 0;
}

} // namespace

TEST(RecoveryKill, killedAtAnyMoment_losesAtMostTenSecondsAndLeavesNoHalfFile)
{
    std::mt19937 random(20261122);
    std::vector<qint64> losses;
    for (int batch = 0; batch < kills / together; ++batch) {
        std::vector<std::unique_ptr<Session>> sessions;
        for (int i = 0; i < together; ++i) {
            sessions.push_back(std::make_unique<Session>());
            Session &session = *sessions.back();
            session.process.start(TEVORA_RECOVERY_SESSION,
                                  {session.folder.filePath("session"), QString::number(random())});
        }
        for (const auto &session : sessions) {
            EXPECT_TRUE(session->process.waitForReadyRead(startMs));
            session->killAtMs = nowMs() + static_cast<qint64>(random() % longestMs);
        }
        std::sort(sessions.begin(), sessions.end(),
                  [](const auto &a, const auto &b) { return a->killAtMs < b->killAtMs; });
        for (const auto &session : sessions) {
            std::this_thread::sleep_for(std::chrono::milliseconds(session->killAtMs - nowMs()));
            session->killedMs = nowMs();
            session->process.kill();
        }
        for (const auto &session : sessions)
            losses.push_back(lostMs(*session));
    }
    const qint64 worst = *std::max_element(losses.begin(), losses.end());
    RecordProperty("worst_loss_ms", static_cast<int>(worst));
    std::printf("killed %zu sessions, the worst lost %lld ms\n", losses.size(),
                static_cast<long long>(worst));
    EXPECT_LE(worst, mayBeLostMs);
    // The sessions did work, and some of it was not kept yet.
    EXPECT_GT(worst, 0);
}
