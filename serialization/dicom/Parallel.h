#pragma once

#include "Common/Progress.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace dicom {

// Calls work(index) once for each index below `count`, on all cores; returns when all are done. Each index
// must touch data of its own only. The first exception is thrown again here; the rest of the work is dropped.
// The calling thread reports the progress between its own calls of work.
template <class Work>
void parallelFor(std::size_t count, const Work &work)
{
    std::atomic<std::size_t> next{0};
    std::mutex guard;
    std::exception_ptr failure;
    std::atomic<std::size_t> done{0};
    const auto run = [&] {
        try {
            for (std::size_t index = next++; index < count; index = next++) {
                work(index);
                MERV::reportProgress(++done, count); // heard in the calling thread alone
            }
        } catch (...) {
            const std::lock_guard lock(guard);
            failure = std::current_exception();
            next = count;
        }
    };
    std::vector<std::jthread> helpers;
    const std::size_t cores = std::max<std::size_t>(1, std::thread::hardware_concurrency());
    try {
        for (std::size_t i = 1; i < std::min(cores, count); ++i)
            helpers.emplace_back(run);
    } catch (const std::system_error &) {
        // The system gives no more threads: those there are do the work.
    }
    run();
    helpers.clear(); // joins
    if (failure)
        std::rethrow_exception(failure);
}

} // namespace dicom
