#include "contours/LegacyRandom.h"

#include <cstdint>
#include <mutex>

namespace LegacyRandom {

namespace {

std::mutex stateMutex;
std::uint32_t state = 1;

} // namespace

void seed(unsigned newState)
{
    const std::lock_guard lock(stateMutex);
    state = newState;
}

int next()
{
    const std::lock_guard lock(stateMutex);
    state = state * 214013U + 2531011U;
    return static_cast<int>(state >> 16 & 0x7FFFU);
}

} // namespace LegacyRandom
