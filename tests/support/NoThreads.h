#pragma once

#include <pthread.h>

// No thread starts as long as it lives, as on a system that has no more to give: each would need a stack that
// does not fit into the address space.
class NoThreads
{
public:
    NoThreads()
    {
        pthread_getattr_default_np(&before);
        pthread_attr_t attributes;
        pthread_getattr_default_np(&attributes);
        isSet = pthread_attr_setstacksize(&attributes, std::size_t(1) << 47) == 0 &&
                pthread_setattr_default_np(&attributes) == 0;
        pthread_attr_destroy(&attributes);
    }
    ~NoThreads()
    {
        pthread_setattr_default_np(&before);
        pthread_attr_destroy(&before);
    }
    NoThreads(const NoThreads &) = delete;
    NoThreads &operator=(const NoThreads &) = delete;

    bool isSet = false;

private:
    pthread_attr_t before{};
};
