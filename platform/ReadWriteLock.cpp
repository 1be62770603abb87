#include "platform/ReadWriteLock.h"

#if defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define TEVORA_THREAD_SANITIZER
#endif
#endif
#if defined(__SANITIZE_THREAD__) || defined(TEVORA_THREAD_SANITIZER)
#include <sanitizer/tsan_interface.h>
#endif

namespace {

void noteTaken([[maybe_unused]] void *lock)
{
#if defined(__SANITIZE_THREAD__) || defined(TEVORA_THREAD_SANITIZER)
    __tsan_acquire(lock);
#endif
}

void noteGivenBack([[maybe_unused]] void *lock)
{
#if defined(__SANITIZE_THREAD__) || defined(TEVORA_THREAD_SANITIZER)
    __tsan_release(lock);
#endif
}

} // namespace

void ReadWriteLock::lockForRead()
{
    QReadWriteLock::lockForRead();
    noteTaken(this);
}

void ReadWriteLock::lockForWrite()
{
    QReadWriteLock::lockForWrite();
    noteTaken(this);
}

void ReadWriteLock::unlock()
{
    noteGivenBack(this);
    QReadWriteLock::unlock();
}

ReadLocker::ReadLocker(ReadWriteLock *lockOrNull)
    : lock(lockOrNull)
{
    if (lock != nullptr)
        lock->lockForRead();
}

ReadLocker::~ReadLocker()
{
    if (lock != nullptr)
        lock->unlock();
}

WriteLocker::WriteLocker(ReadWriteLock *lockOrNull)
    : lock(lockOrNull)
{
    if (lock != nullptr)
        lock->lockForWrite();
}

WriteLocker::~WriteLocker()
{
    if (lock != nullptr)
        lock->unlock();
}
