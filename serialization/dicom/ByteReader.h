#pragma once

#include <cstddef>
#include <cstdint>
#include <istream>

namespace dicom {

// Forward reading of a stream of known size; never goes beyond the end. Positions are bytes from the start.
// Borrows the stream, which must stand at position 0. One thread.
class ByteReader
{
public:
    ByteReader(std::istream &stream, std::uint64_t size);

    std::uint64_t position() const { return current; }
    std::uint64_t remaining() const { return total - current; }

    // Each answers false, and reads nothing, when the stream holds fewer bytes than asked for.
    bool read(char *destination, std::size_t count);
    bool skip(std::uint64_t count);
    bool seek(std::uint64_t position);

private:
    std::istream &stream;
    std::uint64_t total;
    std::uint64_t current = 0;
};

} // namespace dicom
