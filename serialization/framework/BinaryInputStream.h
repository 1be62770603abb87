#pragma once

#include "serialization/framework/BinaryStream.h"

#include <QString>

// Reads numbers and texts, little-endian on every host. A read beyond the end is not reported by itself: ask
// fail() afterwards, the value is then unspecified (but initialised).
class BinaryInputStream : public virtual BinaryStream
{
public:
    virtual BinaryInputStream &read(quint64 &value);
    virtual BinaryInputStream &readUInt64(quint64 &value) = 0;
    // A text of `units` UTF-16 code units, low byte first, without length prefix or terminator. Comes back
    // shorter when the stream ends before, which then has failed.
    virtual QString readString(int units) = 0;
};
