// Takes two locks in both orders, one after the other: no deadlock this time.
#include "platform/WorkerThread.h"

#include <mutex>

int main()
{
    std::mutex flags;
    std::mutex data;
    WorkerThread worker([&] {
        const std::lock_guard first(flags);
        const std::lock_guard second(data);
    });
    worker.start();
    worker.join();
    const std::lock_guard first(data);
    const std::lock_guard second(flags);
}
