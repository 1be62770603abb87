#include "platform/WorkerThread.h"

#include <gtest/gtest.h>

#include <sys/resource.h>

#include <algorithm>
#include <thread>

namespace {

// Of the calling thread: 0 to 19, the higher the more it gives way.
int niceness()
{
    return getpriority(PRIO_PROCESS, 0);
}

} // namespace

TEST(WorkerThread, givesWayToTheThreadThatStartedIt)
{
    const int before = niceness();
    int ofWorker = -1, ofHelper = -1;
    WorkerThread worker([&] {
        ofWorker = niceness();
        std::thread([&] { ofHelper = niceness(); }).join();
    });
    worker.start();
    worker.join();
    EXPECT_EQ(ofWorker, std::min(before + 10, 19));
    EXPECT_EQ(ofHelper, ofWorker);
    EXPECT_EQ(niceness(), before);
}

TEST(WorkerThread, joinMakesTheWorkVisible_andMayBeCalledAgain)
{
    int done = 0;
    WorkerThread worker([&] { done = 1; });
    worker.join(); // never started
    EXPECT_EQ(done, 0);
    worker.start();
    worker.join();
    worker.join();
    EXPECT_EQ(done, 1);
}
