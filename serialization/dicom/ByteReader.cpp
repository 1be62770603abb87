#include "serialization/dicom/ByteReader.h"

namespace dicom {

namespace {
// Up to here reading on is cheaper than a seek, which throws the stream's buffer away.
constexpr std::uint64_t shortSkipBytes = 4096;
} // namespace

ByteReader::ByteReader(std::istream &source, std::uint64_t size)
    : stream(source)
    , total(size)
{}

bool ByteReader::read(char *destination, std::size_t count)
{
    if (count > remaining())
        return false;
    if (!stream.read(destination, static_cast<std::streamsize>(count)))
        return false;
    current += count;
    return true;
}

bool ByteReader::skip(std::uint64_t count)
{
    if (count > remaining())
        return false;
    if (count > shortSkipBytes)
        return seek(current + count);
    stream.ignore(static_cast<std::streamsize>(count));
    current += count;
    return stream.good();
}

bool ByteReader::seek(std::uint64_t position)
{
    if (position > total || !stream.seekg(static_cast<std::streamoff>(position)))
        return false;
    current = position;
    return true;
}

} // namespace dicom
