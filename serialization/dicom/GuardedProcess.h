#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>
#include <span>

namespace dicom {

// Memory of a fixed size that a child process shares. Pages count only once they are written.
// Throws std::bad_alloc when the system does not give it.
class SharedMemory
{
public:
    explicit SharedMemory(std::size_t size);
    ~SharedMemory();
    SharedMemory(const SharedMemory &) = delete;
    SharedMemory &operator=(const SharedMemory &) = delete;

    std::span<char> bytes() const { return memory; }

private:
    std::span<char> memory;
};

// Runs `work` in a child process and gives what it returned; nothing when it threw, crashed or took longer
// than `limit`. Foreign decoders run like this: they end the process on input that they do not expect. The
// child sees all memory of the caller, but only what it writes to a SharedMemory comes back. No other thread
// of the caller may hold a lock that `work` needs. A listener to the progress is told while the work goes on.
std::optional<std::size_t> runGuarded(std::chrono::milliseconds limit,
                                      const std::function<std::size_t()> &work);

} // namespace dicom
