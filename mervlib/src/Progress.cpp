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
    const ProgressListener::Range &range = listener->range;
    listener->reached = std::max(listener->reached, range.rest + (range.end - range.rest) * part);
    innermost = nullptr;
    listener->progressed(listener->reached);
    innermost = listener;
}

ProgressStage::ProgressStage(double end)
    : listener(innermost)
{
    if (listener == nullptr)
        return;
    outer = listener->range;
    const double from = listener->reached;
    listener->range = {from, std::max(from, outer.start + (outer.end - outer.start) * end), from};
}

ProgressStage::~ProgressStage()
{
    if (listener == nullptr)
        return;
    if (listener->range.end > listener->range.start)
        outer.rest = listener->range.end;
    listener->reached = listener->range.end;
    listener->range = outer;
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
