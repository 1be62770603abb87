#pragma once

#include <fstream>

#include <sys/resource.h>
#include <unistd.h>

// Leaves the process this much more address space than it has, for as long as it lives.
class MemoryLimit
{
public:
    explicit MemoryLimit(rlim_t allowedBytes)
    {
        rlim_t pages = 0;
        std::ifstream("/proc/self/statm") >> pages;
        getrlimit(RLIMIT_AS, &before);
        rlimit limit = before;
        limit.rlim_cur = pages * static_cast<rlim_t>(sysconf(_SC_PAGESIZE)) + allowedBytes;
        isSet = pages > 0 && setrlimit(RLIMIT_AS, &limit) == 0;
    }
    ~MemoryLimit() { setrlimit(RLIMIT_AS, &before); }
    MemoryLimit(const MemoryLimit &) = delete;
    MemoryLimit &operator=(const MemoryLimit &) = delete;

    bool isSet = false;

private:
    rlimit before{};
};
