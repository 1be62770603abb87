#pragma once

#include <QDateTime>
#include <QString>

#include <deque>
#include <string>

// What is to be done for an object, see RecoveryWriter.
struct RecoveryJob
{
    enum class Kind
    {
        Write,
        MarkSaved,
        Forget
    };

    Kind kind = Kind::Write;
    int object = 0;
    QString label; // this and the following are of Write only
    QDateTime time;
    std::string bytes;
};

// The jobs that wait. Used by one thread at a time.
class RecoveryQueue
{
public:
    bool isEmpty() const;
    // At the end. But what is to be written takes the place of the first job that waits for its object, and
    // the others for it go: a state makes those before it needless, and any mark as saved. So each object has
    // its turn, however slow the disk is and however often others change.
    void add(RecoveryJob job);
    // Not of an empty queue.
    RecoveryJob takeFirst();

private:
    std::deque<RecoveryJob> jobs;
};
