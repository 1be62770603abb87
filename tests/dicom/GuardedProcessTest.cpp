#include "serialization/dicom/GuardedProcess.h"

#include "Common/Progress.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <stdexcept>
#include <thread>

using namespace dicom;
using namespace std::chrono_literals;

TEST(GuardedProcess, resultAndSharedBytesComeBack)
{
    const SharedMemory memory(3);
    const auto result = runGuarded(5s, [&] {
        memory.bytes()[1] = 'x';
        return std::size_t(42);
    });
    EXPECT_EQ(result, 42U);
    EXPECT_EQ(memory.bytes()[1], 'x');
}

TEST(GuardedProcess, otherMemoryOfTheCallerStays)
{
    int value = 1;
    runGuarded(5s, [&] {
        value = 2;
        return std::size_t(0);
    });
    EXPECT_EQ(value, 1);
}

TEST(GuardedProcess, abortAndExceptionGiveNothing)
{
    EXPECT_FALSE(runGuarded(5s, []() -> std::size_t { std::abort(); }));
    EXPECT_FALSE(runGuarded(5s, []() -> std::size_t { throw std::runtime_error("no"); }));
}

TEST(GuardedProcess, endlessWorkIsEnded)
{
    EXPECT_FALSE(runGuarded(100ms, []() -> std::size_t {
        while (true)
            std::this_thread::sleep_for(1s);
    }));
}

// The work ends when the caller, who waits for it, was told that it goes on.
TEST(GuardedProcess, waitingIsToldAsProgress)
{
    const SharedMemory memory(1);
    struct Listener final : MERV::ProgressListener
    {
        volatile char *told = nullptr;
        void progressed(double fraction) override
        {
            EXPECT_EQ(fraction, 0.0);
            *told = 1;
        }
    };
    volatile char &told = memory.bytes()[0];
    Listener listener;
    listener.told = &told;
    const auto result = runGuarded(60s, [&] {
        while (told == 0)
            std::this_thread::sleep_for(1ms);
        return std::size_t(7);
    });
    EXPECT_EQ(result, 7U);
}

// Who is told may take its time: a window is painted, or moved by the user.
TEST(GuardedProcess, resultThatCameInTimeIsTakenHoweverLongTheListenerTakes)
{
    const SharedMemory memory(2);
    struct Listener final : MERV::ProgressListener
    {
        volatile char *told = nullptr;
        const volatile char *done = nullptr;
        void progressed(double /*fraction*/) override
        {
            *told = 1;
            while (*done == 0)
                std::this_thread::sleep_for(1ms);
            std::this_thread::sleep_for(1s);
        }
    };
    volatile char &told = memory.bytes()[0];
    volatile char &done = memory.bytes()[1];
    Listener listener;
    listener.told = &told;
    listener.done = &done;
    const auto result = runGuarded(500ms, [&] {
        while (told == 0)
            std::this_thread::sleep_for(1ms);
        done = 1;
        return std::size_t(7);
    });
    EXPECT_EQ(result, 7U);
}
