#include "serialization/dicom/GuardedProcess.h"

#include "Common/Progress.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <new>
#include <poll.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace dicom {

namespace {

// The child leaves without running destructors or exit handlers: they belong to the parent.
[[noreturn]] void runChild(int pipe, const std::function<std::size_t()> &work)
{
    const rlimit noCore{0, 0};
    setrlimit(RLIMIT_CORE, &noCore);
    for (const int number : {SIGABRT, SIGSEGV, SIGBUS, SIGFPE, SIGILL})
        signal(number, SIG_DFL);
    if (const int null = open("/dev/null", O_WRONLY); null >= 0) {
        dup2(null, STDOUT_FILENO);
        dup2(null, STDERR_FILENO);
    }
    try {
        const std::size_t result = work();
        _exit(write(pipe, &result, sizeof result) == static_cast<ssize_t>(sizeof result) ? 0 : 1);
    } catch (...) {
        _exit(1);
    }
}

// Reads the result as soon as it is there; nothing at the end of the pipe or of the time. Who listens to the
// progress hears now and then that the work goes on.
std::optional<std::size_t> awaitResult(int pipe, std::chrono::milliseconds limit)
{
    using Clock = std::chrono::steady_clock;
    constexpr std::chrono::milliseconds::rep longestSilence = 100;
    const Clock::time_point end = Clock::now() + limit;
    while (true) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
        const auto wait = std::clamp<std::chrono::milliseconds::rep>(left, 0, longestSilence);
        pollfd waiting{pipe, POLLIN, 0};
        const int ready = poll(&waiting, 1, static_cast<int>(wait));
        if (ready < 0 && errno != EINTR)
            return std::nullopt;
        if (ready <= 0) {
            if (left <= 0)
                return std::nullopt;
            MERV::reportProgress(0, 1);
            continue;
        }
        std::size_t result = 0;
        const ssize_t count = read(pipe, &result, sizeof result);
        if (count < 0 && errno == EINTR)
            continue;
        return count == static_cast<ssize_t>(sizeof result) ? std::optional(result) : std::nullopt;
    }
}

void endChild(pid_t child)
{
    kill(child, SIGKILL); // it may be past its work already, or beyond its time
    while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
    }
}

} // namespace

SharedMemory::SharedMemory(std::size_t size)
{
    if (size == 0)
        return;
    void *mapped =
        mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (mapped == MAP_FAILED)
        throw std::bad_alloc();
    memory = {static_cast<char *>(mapped), size};
}

SharedMemory::~SharedMemory()
{
    if (!memory.empty())
        munmap(memory.data(), memory.size());
}

std::optional<std::size_t> runGuarded(std::chrono::milliseconds limit,
                                      const std::function<std::size_t()> &work)
{
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0)
        return std::nullopt;
    const pid_t child = fork();
    if (child == 0)
        runChild(ends[1], work);
    close(ends[1]);
    std::optional<std::size_t> result;
    if (child > 0) {
        result = awaitResult(ends[0], limit);
        endChild(child);
    }
    close(ends[0]);
    return result;
}

} // namespace dicom
