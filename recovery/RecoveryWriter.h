#pragma once

#include "recovery/RecoveryQueue.h"

#include <QDateTime>
#include <QString>

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <thread>

// Writes the generations of one session on a thread of its own and removes those that are superseded; where
// no thread can be started, a line on standard error says so, and each call writes before it returns. A file
// is written beside its place and renamed, so that there is never half of one. The first object that cannot
// be written costs a line on standard error; the next line comes after all could be written again. Nothing is
// thrown. Used by one thread.
class RecoveryWriter
{
public:
    using Clock = std::function<QDateTime()>;

    // The folder is made, and marked as in use, with the first file.
    explicit RecoveryWriter(
        QString folder, Clock clock = [] { return QDateTime::currentDateTime(); });
    // Writes what is left and takes the mark of use away, but waits no longer than the patience below for a
    // disk that does not answer.
    ~RecoveryWriter();
    RecoveryWriter(const RecoveryWriter &) = delete;
    RecoveryWriter &operator=(const RecoveryWriter &) = delete;

    // Takes the bytes. What waits to be written for the same object gives way. Takes the object's mark away.
    // The names of an object's files rise in time, even when the clock is set back.
    void write(const QString &label, int object, std::string bytes);
    // Marks the object as saved by the user, if any generation of it was written.
    void markSaved(int object);
    // Nothing more will be written for the object.
    void forget(int object);
    // Waits until all is written, at most for `patience`; returns whether it is.
    bool waitUntilWritten(std::chrono::milliseconds patience);
    // The objects whose last state could not be written, each told once.
    std::set<int> takeFailed();

    static constexpr std::chrono::milliseconds patience{5000};

private:
    struct State;

    void add(RecoveryJob job);

    Clock now;
    std::map<int, QDateTime> lastTimes; // by object
    std::shared_ptr<State> state;       // shared with the thread, which may outlive this
    std::thread thread;                 // none if it could not be started
};
