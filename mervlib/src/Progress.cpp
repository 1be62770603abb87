#include "Common/Progress.h"

#include <algorithm>

namespace MERV {

namespace {

thread_local ProgressListener *innermost = nullptr;

} // namespace

ProgressListener::ProgressListener()
    : outer(innermost)
{
    innermost = this;
}

ProgressListener::~ProgressListener()
{
    innermost = outer;
}

void reportProgress(std::uint64_t done, std::uint64_t total)
{
    ProgressListener *listener = innermost;
    if (listener == nullptr)
        return;
    const double part =
        total == 0 ? 0.0 : std::min(1.0, static_cast<double>(done) / static_cast<double>(total));
    listener->reached = std::max(listener->reached, listener->from + (listener->to - listener->from) * part);
    innermost = nullptr;
    listener->progressed(listener->reached);
    innermost = listener;
}

ProgressStage::ProgressStage(double end)
    : listener(innermost)
{
    if (listener == nullptr)
        return;
    outerFrom = listener->from;
    outerTo = listener->to;
    listener->from = listener->reached;
    listener->to = std::max(listener->reached, outerFrom + (outerTo - outerFrom) * end);
}

ProgressStage::~ProgressStage()
{
    if (listener == nullptr)
        return;
    listener->reached = listener->to;
    listener->from = outerFrom;
    listener->to = outerTo;
}

ProgressPause::ProgressPause()
    : listener(innermost)
{
    if (listener != nullptr)
        listener->paused();
}

ProgressPause::~ProgressPause()
{
    if (listener != nullptr)
        listener->resumed();
}

} // namespace MERV
