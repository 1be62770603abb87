#pragma once

#include "Common/ParallelFor.h"
#include "Common/Progress.h"

#include <atomic>
#include <cstddef>

namespace dicom {

// Calls work(index) once for each index below `count`, on all cores; returns when all are done. Each index
// must touch data of its own only. The first exception is thrown again here; the rest of the work is dropped.
// The calling thread reports the progress at the start and between its own calls of work.
template <class Work>
void parallelFor(std::size_t count, const Work &work)
{
    std::atomic<std::size_t> done{0};
    MERV::reportProgress(0, count);
    MERV::parallelFor(static_cast<int>(count), [&](int index) {
        work(static_cast<std::size_t>(index));
        MERV::reportProgress(++done, count); // heard in the calling thread alone
    });
}

} // namespace dicom
