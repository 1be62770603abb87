#pragma once

#include <cstdint>

namespace MERV {

// Is told how far long work of its thread has come, for as long as it lives; of several listeners of a thread
// only the innermost one is told. Create and destroy it in the same thread, as a variable of a function.
class ProgressListener
{
public:
    ProgressListener();
    virtual ~ProgressListener();
    ProgressListener(const ProgressListener &) = delete;
    ProgressListener &operator=(const ProgressListener &) = delete;

    // `fraction` of the work, from 0 to 1, is done; it never falls. The work rests until this returns and
    // then goes on, so this must not throw. What is reported meanwhile is other work and is not told.
    virtual void progressed(double fraction) = 0;
    // The work waits for an answer of the user until resumed(); that time is not spent working.
    virtual void paused() {}
    virtual void resumed() {}

private:
    friend class ProgressStage;
    friend void reportProgress(std::uint64_t done, std::uint64_t total);

    ProgressListener *outer;
    struct Range
    {
        double start = 0.0; // shares of stages count from here
        double end = 1.0;
        double rest = 0.0; // reports count from here: the end of the last stage
    };
    Range range;
    double reached = 0.0;
};

// Tells the listener of this thread that `done` of `total` steps are done. Without a listener it costs next
// to nothing. Work that is spread over threads reports from the thread that was asked for it.
void reportProgress(std::uint64_t done, std::uint64_t total);

// One stage of several of a long work: what is reported during its life counts from where the work has come
// to, up to `end` of what encloses it, from 0 to 1. At its end just that is reached, and what is reported
// behind it counts from there. A stage whose end has been reached before stands still, and leaves no trace.
class ProgressStage
{
public:
    explicit ProgressStage(double end);
    ~ProgressStage();
    ProgressStage(const ProgressStage &) = delete;
    ProgressStage &operator=(const ProgressStage &) = delete;

private:
    ProgressListener *listener; // null when nobody listens
    ProgressListener::Range outer;
};

// Stands around a question to the user.
class ProgressPause
{
public:
    ProgressPause();
    ~ProgressPause();
    ProgressPause(const ProgressPause &) = delete;
    ProgressPause &operator=(const ProgressPause &) = delete;

private:
    ProgressListener *listener;
};

} // namespace MERV
