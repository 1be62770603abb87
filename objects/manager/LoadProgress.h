#pragma once

#include <QtGlobal>

#include <functional>
#include <memory>

class QString;

// Keeps the windows painted while something is loaded or saved, and shows how far it has come, as soon as a
// second has passed: in the progress dialog that the command has put up itself, whose present step it
// divides, or else in a dialog of its own with the name of what is being loaded. Loads of less than a second
// show nothing and handle no events.
//
// A variable of the function that loads, on the main thread; what is loaded reports by
// MERV::reportProgress(). One that is made during the life of another one only changes the name that is
// shown. Input of the user, closing of windows included, waits until the load is over; timers, queued signals
// and paint events do not, so a load must not depend on anything that these may change, nor hold a lock that
// painting takes.
class LoadProgress
{
public:
    // Milliseconds of a clock that never goes back.
    using Clock = qint64 (*)();

    explicit LoadProgress(const QString &name);
    ~LoadProgress();
    LoadProgress(const LoadProgress &) = delete;
    LoadProgress &operator=(const LoadProgress &) = delete;

    // Whether something is being loaded: nothing else may be loaded meanwhile.
    static bool isActive();
    // Runs `work` in a thread of its own, or in this one if the system gives none, reports its progress in
    // this one and returns its answer; an exception passes through. For work that holds a lock that painting
    // takes. It may read objects of this thread.
    static bool runApart(const std::function<bool()> &work);
    // Takes the time from another clock; null: from the real one. For tests.
    static void setClock(Clock newClock);

private:
    class Display;

    std::unique_ptr<Display> display; // null inside another load
};
