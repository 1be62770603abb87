#include "serialization/framework/BufferPrependedStdBinaryInputStream.h"

#include <algorithm>
#include <istream>
#include <limits>

BufferPrependedStdBinaryInputStream::BufferPrependedStdBinaryInputStream(std::istream *source,
                                                                         const char *buffer, qint64 length)
    : StdBinaryInputStream(source)
    , prependedLength(std::max<qint64>(length, 0))
    , prepended(buffer)
{}

quint64 BufferPrependedStdBinaryInputStream::skip(quint64 count)
{
    const auto buffered = static_cast<quint64>(prependedLength);
    if (count > buffered) {
        prependedLength = 0;
        return buffered + skipStream(count - buffered);
    }
    prependedLength -= static_cast<qint64>(count);
    if (count > 0)
        prepended += count;
    return count;
}

quint64 BufferPrependedStdBinaryInputStream::skipStream(quint64 count)
{
    if (count > static_cast<quint64>(std::numeric_limits<std::streamoff>::max())) {
        stream->setstate(std::ios::failbit);
        return 0;
    }
    const std::streamoff before = stream->tellg();
    stream->seekg(static_cast<std::streamoff>(count), std::ios::cur);
    const std::streamoff after = stream->tellg();
    return before >= 0 && after > before ? static_cast<quint64>(after - before) : 0;
}

BinaryInputStream &BufferPrependedStdBinaryInputStream::readUInt64(quint64 &value)
{
    value = 0;
    for (int shift = 0; shift < 64; shift += 8) {
        unsigned char byte = 0;
        takeByte(byte);
        value |= static_cast<quint64>(byte) << shift;
    }
    return *this;
}

QString BufferPrependedStdBinaryInputStream::readString(int units)
{
    // Grown unit by unit, since a hostile count must not allocate more than the stream can fill.
    QString text;
    for (int i = 0; i < units; ++i) {
        unsigned char low = 0;
        unsigned char high = 0;
        if (!takeByte(low) || !takeByte(high))
            break;
        text += QChar(static_cast<char16_t>(low | high << 8));
    }
    return text;
}

bool BufferPrependedStdBinaryInputStream::takeByte(unsigned char &byte)
{
    char taken = 0;
    const bool delivered = prependedLength > 0 || stream->get(taken);
    if (prependedLength > 0) {
        --prependedLength;
        taken = *prepended++;
    }
    byte = static_cast<unsigned char>(taken);
    return delivered;
}
