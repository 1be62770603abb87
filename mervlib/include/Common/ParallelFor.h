#pragma once

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace MERV {

// The number of cores, or 0 if the system does not tell.
inline int coreCount()
{
    return static_cast<int>(std::thread::hardware_concurrency());
}

// Calls work(i) for i = 0 .. count - 1 on at most this many threads, the caller's among them; which thread
// takes which i is open. Returns when all have ended. The first exception ends the handing out and is thrown
// again here.
template <typename Work>
void parallelFor(int count, const Work &work, int threads = coreCount())
{
    std::atomic<int> next{0};
    std::mutex failureMutex;
    std::exception_ptr failure;
    const auto run = [&] {
        try {
            for (int i = next.fetch_add(1); i < count; i = next.fetch_add(1))
                work(i);
        } catch (...) {
            next = count;
            const std::lock_guard lock(failureMutex);
            if (!failure)
                failure = std::current_exception();
        }
    };
    {
        std::vector<std::jthread> helpers;
        try {
            for (int i = 1; i < std::min(threads, count); ++i)
                helpers.emplace_back(run);
        } catch (const std::system_error &) {
            // The system gives no more threads: those there are do the work.
        }
        run();
    }
    if (failure)
        std::rethrow_exception(failure);
}

} // namespace MERV
