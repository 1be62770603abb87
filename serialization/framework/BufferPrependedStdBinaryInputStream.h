#pragma once

#include "serialization/framework/StdBinaryInputStream.h"

#include <cstddef>

// Reads a buffer first and then the stream, as if the buffer's bytes stood in front of the stream. Owns
// neither. One thread at a time.
class BufferPrependedStdBinaryInputStream : public StdBinaryInputStream
{
public:
    // `prepended` may be null when `length` is 0.
    BufferPrependedStdBinaryInputStream(std::istream *stream, const char *prepended, qint64 length);

    // A count that the stream cannot seek fails the stream; of the buffer's bytes the distance is still
    // counted.
    quint64 skip(quint64 count) override;
    BinaryInputStream &readUInt64(quint64 &value) override;
    QString readString(int units) override;

private:
    // Takes the next bytes and returns how many there were; with fewer than count the stream has failed.
    std::size_t take(char *bytes, std::size_t count);
    // Moves the stream itself and returns how far it went.
    quint64 skipStream(quint64 count);

    qint64 prependedLength; // bytes left in the buffer
    const char *prepended;  // the next of them
};
