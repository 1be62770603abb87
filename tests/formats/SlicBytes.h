#pragma once

#include <bit>
#include <cstdint>
#include <string>

// Assembles SLIC files byte by byte, so that what tests expect does not come from our own writer.
namespace SlicBytes {

inline std::string number(std::uint64_t value)
{
    std::string bytes;
    for (int shift = 0; shift < 64; shift += 8)
        bytes += static_cast<char>(value >> shift & 0xFF);
    return bytes;
}

// Characters of plain ASCII as UTF-16, low byte first.
inline std::string text(const std::string &characters)
{
    std::string bytes;
    for (const char character : characters) {
        bytes += character;
        bytes += '\0';
    }
    return bytes;
}

inline std::string header(const std::string &tag, std::uint64_t identity, std::uint64_t size)
{
    return text(tag) + number(identity) + number(size);
}

inline std::string chunk(const std::string &tag, std::uint64_t identity, const std::string &body)
{
    return header(tag, identity, 24 + body.size()) + body;
}

inline std::string name(const std::string &label)
{
    return chunk("NAME", 0, text(label));
}

inline std::string point(double x, double y, double z)
{
    // "NOID" as UTF-16 read as one number.
    return chunk("POIN", 0x0044'0049'004F'004E,
                 number(std::bit_cast<std::uint64_t>(x)) + number(std::bit_cast<std::uint64_t>(y)) +
                     number(std::bit_cast<std::uint64_t>(z)));
}

inline std::string reference(std::uint64_t identity)
{
    return chunk("FRRF", 0, number(identity));
}

} // namespace SlicBytes
