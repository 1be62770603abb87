#pragma once

#include <QByteArray>
#include <QString>

#include <chrono>
#include <condition_variable>
#include <memory>
#include <set>
#include <string>
#include <thread>

// Writes the generations of one session on a thread of its own, in the order in which they were asked for,
// and removes those that are superseded. A file is written beside its place and renamed, so that there is
// never half of one. A failure costs one line on standard error until a file could be written again; nothing
// is thrown. Used by one thread.
class RecoveryWriter
{
public:
    // The folder is made, and marked as in use, with the first file.
    explicit RecoveryWriter(QString folder);
    // Writes what is left and takes the mark of use away, but waits no longer than the patience below for a
    // disk that does not answer.
    ~RecoveryWriter();
    RecoveryWriter(const RecoveryWriter &) = delete;
    RecoveryWriter &operator=(const RecoveryWriter &) = delete;

    // Takes the bytes. What waits to be written for the same object gives way. Takes the object's mark away.
    void write(const QString &label, int object, std::string bytes);
    // Marks the object as saved by the user, if any generation of it was written.
    void markSaved(int object);
    // Waits until all is written, at most for `patience`; returns whether it is.
    bool waitUntilWritten(std::chrono::milliseconds patience);
    // The objects whose last state could not be written, each told once.
    std::set<int> takeFailed();

    static constexpr std::chrono::milliseconds patience{5000};

private:
    struct State;

    std::shared_ptr<State> state; // shared with the thread, which may outlive this
    std::thread thread;
};
