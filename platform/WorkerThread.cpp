#include "platform/WorkerThread.h"

#include <utility>

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
    work();
}

void WorkerThread::join()
{
    wait();
    const std::lock_guard lock(running);
}
