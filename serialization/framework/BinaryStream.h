#pragma once

#include <QtGlobal>

// Root of the binary streams: their state, and moving on without looking at the bytes.
class BinaryStream
{
public:
    virtual ~BinaryStream();

    virtual bool bad() = 0;
    virtual bool eof() = 0;
    virtual bool fail() = 0;
    // Moves on by `count` bytes and returns the distance really moved.
    virtual quint64 skip(quint64 count) = 0;
};
