// An object is deleted while a worker may still read it.
#include "platform/WorkerThread.h"

#include <iostream>
#include <memory>

int main()
{
    auto unguarded = std::make_unique<int>(7);
    int seen = 0;
    WorkerThread worker([&seen, object = unguarded.get()] { seen = *object; });
    worker.start();
    QThread::msleep(100);
    unguarded.reset();
    worker.join();
    std::cout << seen << '\n';
}
