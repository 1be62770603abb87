#pragma once

#include <QThread>

#include <functional>
#include <mutex>

// A thread that runs one function, for objects that own a worker. The function polls the owner's flags and
// returns when it is told to stop; there is no event loop. It gives way to the thread of the windows (and to
// other programs) where the cores do not suffice for all. Started and joined by the owner; the owner must
// join before it takes away what the function uses.
class WorkerThread : public QThread
{
public:
    explicit WorkerThread(std::function<void()> work);
    // Joins.
    ~WorkerThread() override;

    // Waits without limit until the function has returned; at once if the thread never started. What the
    // function did is visible afterwards. May be called again.
    void join();

protected:
    void run() override;

private:
    std::function<void()> work;
    std::mutex running; // held by the thread: waiting for it is what the thread sanitizer understands
};
