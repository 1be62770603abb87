#include "recovery/RecoveryQueue.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using Kind = RecoveryJob::Kind;

RecoveryJob state(int object, const std::string &bytes)
{
    return {Kind::Write, object, "knee", {}, bytes};
}

RecoveryJob mark(int object)
{
    return {Kind::MarkSaved, object, {}, {}, {}};
}

// The jobs in their order: object and bytes, of a mark the object alone.
std::vector<std::string> order(RecoveryQueue queue)
{
    std::vector<std::string> result;
    while (!queue.isEmpty()) {
        const RecoveryJob job = queue.takeFirst();
        result.push_back(std::to_string(job.object) + job.bytes);
    }
    return result;
}

using Jobs = std::vector<std::string>;

} // namespace

TEST(RecoveryQueue, newState_takesThePlaceOfTheWaitingOne)
{
    RecoveryQueue queue;
    queue.add(state(1, "a"));
    queue.add(state(2, "a"));
    queue.add(state(3, "a"));
    queue.add(state(1, "b"));
    queue.add(state(2, "b"));
    EXPECT_EQ(order(queue), (Jobs{"1b", "2b", "3a"}));
}

// A disk that writes one state while all objects change.
TEST(RecoveryQueue, objectsThatChangeFasterThanTheDisk_haveTheirTurns)
{
    RecoveryQueue queue;
    std::vector<int> written;
    for (int round = 0; round < 6; ++round) {
        for (const int object : {1, 2, 3})
            queue.add(state(object, "a"));
        written.push_back(queue.takeFirst().object);
    }
    EXPECT_EQ(written, (std::vector<int>{1, 2, 3, 1, 2, 3}));
}

TEST(RecoveryQueue, mark_comesAfterTheStateThatWasSaved)
{
    RecoveryQueue queue;
    queue.add(state(1, "a"));
    queue.add(state(2, "a"));
    queue.add(mark(1));
    EXPECT_EQ(order(queue), (Jobs{"1a", "2a", "1"}));
}

TEST(RecoveryQueue, stateAfterAMark_isNotMarked)
{
    RecoveryQueue queue;
    queue.add(state(1, "a"));
    queue.add(mark(1));
    queue.add(mark(2));
    queue.add(state(1, "b"));
    EXPECT_EQ(order(queue), (Jobs{"1b", "2"}));
    // Nor when the saved state is being written already.
    queue = {};
    queue.add(mark(1));
    queue.add(state(1, "b"));
    EXPECT_EQ(order(queue), (Jobs{"1b"}));
}
