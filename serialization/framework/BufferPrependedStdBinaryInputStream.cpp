#include "serialization/framework/BufferPrependedStdBinaryInputStream.h"

#include <QtEndian>

#include <algorithm>
#include <array>
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
    std::array<char, sizeof(quint64)> bytes{};
    take(bytes.data(), bytes.size());
    value = qFromLittleEndian<quint64>(bytes.data());
    return *this;
}

QString BufferPrependedStdBinaryInputStream::readString(int units)
{
    // Grown block by block, since a hostile count must not allocate more than the stream can fill.
    constexpr int blockUnits = 256;
    std::array<char, sizeof(char16_t) * blockUnits> block{};
    QString text;
    for (int rest = units; rest > 0; rest -= blockUnits) {
        const std::size_t wanted = sizeof(char16_t) * static_cast<std::size_t>(std::min(rest, blockUnits));
        const std::size_t taken = take(block.data(), wanted);
        for (std::size_t at = 0; at + 1 < taken; at += sizeof(char16_t))
            text += QChar(qFromLittleEndian<char16_t>(block.data() + at));
        if (taken < wanted)
            break;
    }
    return text;
}

std::size_t BufferPrependedStdBinaryInputStream::take(char *bytes, std::size_t count)
{
    const std::size_t buffered = std::min(count, static_cast<std::size_t>(prependedLength));
    std::copy_n(prepended, buffered, bytes);
    prependedLength -= static_cast<qint64>(buffered);
    if (buffered > 0)
        prepended += buffered;
    if (buffered == count)
        return count;
    stream->read(bytes + buffered, static_cast<std::streamsize>(count - buffered));
    return buffered + static_cast<std::size_t>(stream->gcount());
}
