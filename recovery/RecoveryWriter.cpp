#include "recovery/RecoveryWriter.h"

#include "recovery/RecoveryFiles.h"
#include "recovery/RecoveryFolder.h"

#include <QDir>
#include <QLockFile>
#include <QSaveFile>

#include <algorithm>
#include <deque>
#include <iostream>
#include <map>
#include <mutex>
#include <utility>
#include <vector>

namespace {

struct Job
{
    int object = 0;
    bool saved = false; // only a mark: the other members are empty
    QString label;
    QDateTime time;
    std::string bytes;
};

struct WrittenFile
{
    QString path;
    qint64 time; // ms since the epoch
};

// What the writer's thread does; no other thread touches it.
class SessionFiles
{
public:
    explicit SessionFiles(QString newFolder)
        : folder(std::move(newFolder))
    {}

    // False if the file could not be written.
    bool perform(const Job &job)
    {
        if (job.saved) {
            if (generations.count(job.object) != 0)
                QFile(folder + '/' + RecoveryFiles::savedMark(job.object)).open(QIODevice::WriteOnly);
            return true;
        }
        // First the mark: a death between the two makes saved work look unsaved, not the other way round.
        QFile::remove(folder + '/' + RecoveryFiles::savedMark(job.object));
        const QString path = folder + '/' + RecoveryFiles::name({job.label, job.object, job.time});
        const QString error = makeFolder() ? writeFile(path, job.bytes) : "the folder cannot be made";
        report(path, error);
        if (!error.isEmpty())
            return false;
        removeSuperseded(generations[job.object], {path, job.time.toMSecsSinceEpoch()});
        return true;
    }

private:
    bool makeFolder()
    {
        if (QDir(folder).exists())
            return true;
        if (!QDir().mkpath(folder))
            return false;
        inUse = RecoveryFolder::sessionLock(folder);
        return inUse->tryLock(0);
    }

    static QString writeFile(const QString &path, const std::string &bytes)
    {
        QSaveFile file(path);
        const auto size = static_cast<qint64>(bytes.size());
        if (file.open(QIODevice::WriteOnly) && file.write(bytes.data(), size) == size && file.commit())
            return {};
        return file.errorString();
    }

    void report(const QString &path, const QString &error)
    {
        const bool failedBefore = std::exchange(failing, !error.isEmpty());
        if (failing && !failedBefore)
            std::cerr << "The contours could not be kept for recovery in " << qPrintable(path) << ": "
                      << qPrintable(error) << std::endl;
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
    bool failing = false;
};

} // namespace

struct RecoveryWriter::State
{
    std::mutex mutex;
    std::condition_variable changed;
    std::deque<Job> jobs;  // guarded, as all below
    bool working = false;  // a job has been taken and is not done
    bool stop = false;     // ends when there are no jobs left
    bool finished = false; // the thread does nothing any more
    std::set<int> failed;  // objects

    // The thread's function.
    void run(const QString &folder)
    {
        perform(SessionFiles(folder));
        const std::lock_guard lock(mutex);
        finished = true;
        changed.notify_all();
    }

private:
    void perform(SessionFiles files)
    {
        std::unique_lock lock(mutex);
        for (;;) {
            changed.wait(lock, [&] { return stop || !jobs.empty(); });
            if (jobs.empty())
                break;
            const Job job = std::move(jobs.front());
            jobs.pop_front();
            working = true;
            lock.unlock();
            const bool done = files.perform(job);
            lock.lock();
            if (!done)
                failed.insert(job.object);
            working = false;
            changed.notify_all();
        }
    }
};

RecoveryWriter::RecoveryWriter(QString folder)
    : state(std::make_shared<State>())
    , thread([shared = state, files = std::move(folder)] { shared->run(files); })
{}

RecoveryWriter::~RecoveryWriter()
{
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
    const std::lock_guard lock(state->mutex);
    std::erase_if(state->jobs, [object](const Job &job) { return job.object == object && !job.saved; });
    state->jobs.push_back({object, false, label, QDateTime::currentDateTime(), std::move(bytes)});
    state->changed.notify_all();
}

void RecoveryWriter::markSaved(int object)
{
    const std::lock_guard lock(state->mutex);
    state->jobs.push_back({object, true, {}, {}, {}});
    state->changed.notify_all();
}

bool RecoveryWriter::waitUntilWritten(std::chrono::milliseconds longest)
{
    std::unique_lock lock(state->mutex);
    return state->changed.wait_for(lock, longest, [this] { return state->jobs.empty() && !state->working; });
}

std::set<int> RecoveryWriter::takeFailed()
{
    const std::lock_guard lock(state->mutex);
    return std::exchange(state->failed, {});
}
