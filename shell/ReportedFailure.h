#pragma once

#include <exception>
#include <iostream>

// Runs what may exhaust the memory, for commands: no exception may leave a slot. The reason of a failure goes
// to standard error.
template <class Work>
void reportFailure(const Work &work)
{
    try {
        work();
    } catch (const std::exception &failure) {
        std::cerr << failure.what() << std::endl;
    }
}
