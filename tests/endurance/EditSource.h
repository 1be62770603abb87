#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <span>
#include <vector>

// Bytes as decisions. Beyond their end every decision is 0. Borrows the bytes.
class EditSource
{
public:
    explicit EditSource(std::span<const std::uint8_t> decisions)
        : bytes(decisions)
    {}

    bool atEnd() const { return next >= bytes.size(); }
    // 0 to count - 1, for a count of 1 to 256.
    int below(int count) { return atEnd() ? 0 : bytes[next++] % count; }
    bool oneIn(int count) { return !atEnd() && below(count) == 0; }

private:
    std::span<const std::uint8_t> bytes;
    std::size_t next = 0;
};

inline std::vector<std::uint8_t> randomBytes(unsigned seed, std::size_t count)
{
    std::mt19937 random(seed);
    std::vector<std::uint8_t> bytes(count);
    for (std::uint8_t &byte : bytes)
        byte = static_cast<std::uint8_t>(random() >> 8U);
    return bytes;
}
