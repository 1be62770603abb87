#include "platform/WorkerThread.h"

#include <unistd.h>

#include <utility>

namespace {

constexpr int niceness = 10;

// For the calling thread, and those that it starts: so it is on Linux.
void giveWay()
{
    [[maybe_unused]] const int now = ::nice(niceness); // a system that refuses does no harm
}

} // namespace

WorkerThread::WorkerThread(std::function<void()> newWork)
    : work(std::move(newWork))
{}

WorkerThread::~WorkerThread()
{
    join();
}

void WorkerThread::run()
{
    const std::lock_guard lock(running);
    giveWay();
    work();
}

void WorkerThread::join()
{
    wait();
    const std::lock_guard lock(running);
}
