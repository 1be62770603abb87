#pragma once

#include <concepts>
#include <ostream>

// Writes an unsigned number with its least significant byte first, on every host.
template <std::unsigned_integral Number>
void writeLittleEndian(std::ostream &stream, Number number)
{
    for (std::size_t i = 0; i < sizeof(Number); ++i)
        stream.put(static_cast<char>(static_cast<unsigned long long>(number) >> (8 * i)));
}
