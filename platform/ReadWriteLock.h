#pragma once

#include <QReadWriteLock>

// A read-write lock in which a waiting writer comes before new readers. Not recursive. ThreadSanitizer cannot
// see into the toolkit's lock, so this one tells it when it is taken and given back.
class ReadWriteLock : public QReadWriteLock
{
public:
    void lockForRead();
    void lockForWrite();
    void unlock();
};

// Holds the lock for reading or writing as long as it exists. A null lock holds nothing.
class ReadLocker
{
public:
    explicit ReadLocker(ReadWriteLock *lockOrNull);
    ReadLocker(const ReadLocker &) = delete;
    ReadLocker &operator=(const ReadLocker &) = delete;
    ~ReadLocker();

private:
    ReadWriteLock *lock;
};

class WriteLocker
{
public:
    explicit WriteLocker(ReadWriteLock *lockOrNull);
    WriteLocker(const WriteLocker &) = delete;
    WriteLocker &operator=(const WriteLocker &) = delete;
    ~WriteLocker();

private:
    ReadWriteLock *lock;
};
