#include "recovery/RecoveryQueue.h"

#include <algorithm>
#include <iterator>
#include <utility>

bool RecoveryQueue::isEmpty() const
{
    return jobs.empty();
}

void RecoveryQueue::add(RecoveryJob job)
{
    const auto ofObject = [object = job.object](const RecoveryJob &waiting) {
        return waiting.object == object;
    };
    const auto place =
        job.kind == RecoveryJob::Kind::Write ? std::find_if(jobs.begin(), jobs.end(), ofObject) : jobs.end();
    if (place == jobs.end()) {
        jobs.push_back(std::move(job));
        return;
    }
    *place = std::move(job);
    jobs.erase(std::remove_if(std::next(place), jobs.end(), ofObject), jobs.end());
}

RecoveryJob RecoveryQueue::takeFirst()
{
    RecoveryJob first = std::move(jobs.front());
    jobs.pop_front();
    return first;
}
