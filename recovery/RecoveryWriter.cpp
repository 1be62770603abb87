#include "recovery/RecoveryWriter.h"

#include "recovery/RecoveryFiles.h"
#include "recovery/RecoveryFolder.h"

#include <QDir>
#include <QLockFile>
#include <QSaveFile>

#include <algorithm>
#include <cerrno>
#include <condition_variable>
#include <iostream>
#include <mutex>
#include <optional>
#include <system_error>
#include <utility>
#include <vector>

namespace {

struct WrittenFile
{
    QString path;
    qint64 time; // ms since the epoch
};

// At once, for other threads write to the stream as well.
void say(const QString &line)
{
    std::cerr << (line + '\n').toLocal8Bit().toStdString();
}

QString causeOf(int error)
{
    if (error == 0)
        return "no space is left";
    return QString::fromLocal8Bit(std::generic_category().message(error).c_str());
}

// What the writer does in the folder. Used by one thread.
class SessionFiles
{
public:
    explicit SessionFiles(QString newFolder)
        : folder(std::move(newFolder))
    {}

    // False if a file could not be written.
    bool perform(const RecoveryJob &job)
    {
        switch (job.kind) {
        case RecoveryJob::Kind::Write:
            return write(job);
        case RecoveryJob::Kind::MarkSaved:
            if (generations.count(job.object) != 0)
                QFile(savedMark(job)).open(QIODevice::WriteOnly);
            break;
        case RecoveryJob::Kind::Forget:
            generations.erase(job.object);
            failing.erase(job.object);
        }
        return true;
    }

private:
    QString savedMark(const RecoveryJob &job) const
    {
        return folder + '/' + RecoveryFiles::savedMark(job.object);
    }

    bool write(const RecoveryJob &job)
    {
        // First the mark: a death between the two makes saved work look unsaved, not the other way round.
        QFile::remove(savedMark(job));
        const QString path = folder + '/' + RecoveryFiles::name({job.label, job.object, job.time});
        QString error = holdFolder();
        if (error.isEmpty())
            error = writeFile(path, job.bytes);
        report(job.object, path, error);
        if (!error.isEmpty())
            return false;
        removeSuperseded(generations[job.object], {path, job.time.toMSecsSinceEpoch()});
        return true;
    }

    // Makes the folder and takes its lock, if need be again: the user may remove both at any time, and a full
    // disk may have had room for the folder only. Returns what went wrong.
    QString holdFolder()
    {
        if (!QDir().mkpath(folder))
            return "the folder cannot be made";
        if (!inUse || !QFile::exists(inUse->fileName())) {
            inUse.reset();
            inUse = RecoveryFolder::sessionLock(folder);
        }
        return inUse->isLocked() || inUse->tryLock(0) ? QString() : "the folder cannot be marked as in use";
    }

    // Returns what went wrong.
    static QString writeFile(const QString &path, const std::string &bytes)
    {
        QSaveFile file(path);
        if (!file.open(QIODevice::WriteOnly))
            return file.errorString();
        const auto size = static_cast<qint64>(bytes.size());
        errno = 0;
        if (file.write(bytes.data(), size) != size || !file.flush())
            return causeOf(errno); // a file that takes only a part is no error to the toolkit
        return file.commit() ? QString() : file.errorString();
    }

    void report(int object, const QString &path, const QString &error)
    {
        if (error.isEmpty()) {
            failing.erase(object);
            return;
        }
        if (failing.empty())
            say("The contours could not be kept for recovery in " + path + ": " + error);
        failing.insert(object);
    }

    static void removeSuperseded(std::vector<WrittenFile> &files, const WrittenFile &added)
    {
        files.push_back(added);
        std::vector<qint64> times;
        times.reserve(files.size());
        for (const WrittenFile &file : files)
            times.push_back(file.time);
        const std::vector<std::size_t> superseded = RecoveryFiles::superseded(times, added.time);
        for (auto index = superseded.rbegin(); index != superseded.rend(); ++index) {
            const auto file = files.begin() + static_cast<std::ptrdiff_t>(*index);
            if (file->path != added.path)
                QFile::remove(file->path);
            files.erase(file);
        }
    }

    QString folder;
    std::unique_ptr<QLockFile> inUse;
    std::map<int, std::vector<WrittenFile>> generations; // by object, in order of writing
    std::set<int> failing;                               // objects whose last state could not be written
};

} // namespace

struct RecoveryWriter::State
{
    explicit State(QString folder)
        : files(std::move(folder))
    {}

    std::mutex mutex;
    std::condition_variable changed;
    RecoveryQueue jobs;    // guarded, as all below but the files
    bool working = false;  // a job has been taken and is not done
    bool stop = false;     // ends when there are no jobs left
    bool finished = false; // the thread does nothing any more
    std::set<int> failed;  // objects

    // The thread's function.
    void run()
    {
        std::unique_lock lock(mutex);
        while (!stop || !jobs.isEmpty()) {
            changed.wait(lock, [this] { return stop || !jobs.isEmpty(); });
            performAll(lock);
        }
        lock.unlock();
        files.reset();
        lock.lock();
        finished = true;
        changed.notify_all();
    }

    // Does what waits. The lock is not held while files are written.
    void performAll(std::unique_lock<std::mutex> &lock)
    {
        while (!jobs.isEmpty()) {
            const RecoveryJob job = jobs.takeFirst();
            working = true;
            lock.unlock();
            const bool done = files->perform(job);
            lock.lock();
            if (!done)
                failed.insert(job.object);
            working = false;
            changed.notify_all();
        }
    }

private:
    std::optional<SessionFiles> files; // of the thread that does the jobs
};

RecoveryWriter::RecoveryWriter(QString folder, Clock clock)
    : now(std::move(clock))
    , state(std::make_shared<State>(std::move(folder)))
{
    try {
        thread = std::thread([shared = state] { shared->run(); });
    } catch (const std::system_error &error) {
        say(QString(
                "No thread could be started to keep contours for recovery; drawing waits for the disk: ") +
            error.what());
    }
}

RecoveryWriter::~RecoveryWriter()
{
    if (!thread.joinable())
        return; // all is written
    bool ended = false;
    {
        std::unique_lock lock(state->mutex);
        state->stop = true;
        state->changed.notify_all();
        ended = state->changed.wait_for(lock, patience, [this] { return state->finished; });
    }
    if (ended)
        thread.join();
    else
        thread.detach(); // hangs in the system; the process ends without it
}

void RecoveryWriter::write(const QString &label, int object, std::string bytes)
{
    QDateTime time = now();
    if (const auto last = lastTimes.find(object); last != lastTimes.end())
        time = std::max(time, last->second.addMSecs(1));
    lastTimes[object] = time;
    add({RecoveryJob::Kind::Write, object, label, time, std::move(bytes)});
}

void RecoveryWriter::markSaved(int object)
{
    add({RecoveryJob::Kind::MarkSaved, object, {}, {}, {}});
}

void RecoveryWriter::forget(int object)
{
    lastTimes.erase(object);
    add({RecoveryJob::Kind::Forget, object, {}, {}, {}});
}

void RecoveryWriter::add(RecoveryJob job)
{
    std::unique_lock lock(state->mutex);
    state->jobs.add(std::move(job));
    state->changed.notify_all();
    if (!thread.joinable())
        state->performAll(lock);
}

bool RecoveryWriter::waitUntilWritten(std::chrono::milliseconds longest)
{
    std::unique_lock lock(state->mutex);
    return state->changed.wait_for(lock, longest,
                                   [this] { return state->jobs.isEmpty() && !state->working; });
}

std::set<int> RecoveryWriter::takeFailed()
{
    const std::lock_guard lock(state->mutex);
    return std::exchange(state->failed, {});
}
