#pragma once

#include <unistd.h>

// Without root's right to read and write whatever it likes, for as long as it lives. For other users nothing
// changes.
class Unprivileged
{
public:
    Unprivileged()
        : wasRoot(geteuid() == 0)
        , isUnprivileged(!wasRoot || seteuid(nobody) == 0)
    {}
    ~Unprivileged()
    {
        if (wasRoot && seteuid(0) != 0)
            _exit(1); // no test may go on as somebody else
    }
    Unprivileged(const Unprivileged &) = delete;
    Unprivileged &operator=(const Unprivileged &) = delete;

private:
    static constexpr uid_t nobody = 65534;
    const bool wasRoot;

public:
    const bool isUnprivileged;
};
