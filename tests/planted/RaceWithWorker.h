#pragma once

#include "platform/WorkerThread.h"

// A worker writes what the caller reads, without a lock, in the thread that all workers run in. Returns what
// was written.
inline int raceWithWorker()
{
    int unguarded = 0;
    WorkerThread worker([&unguarded] {
        for (int i = 0; i < 1000; ++i)
            ++unguarded;
    });
    worker.start();
    for (int i = 0; i < 1000 && unguarded < 1000; ++i)
        QThread::usleep(10);
    worker.join();
    return unguarded;
}
