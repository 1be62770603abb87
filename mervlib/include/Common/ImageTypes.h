#pragma once

#include <array>
#include <cstdint>
#include <exception>
#include <limits>
#include <map>
#include <string>
#include <utility>

namespace MERV {

static_assert(std::numeric_limits<char>::is_signed, "compile with -fsigned-char");

// Data type codes of the eight voxel types: the OpenGL type enumerants. An odd code is an unsigned type.
enum DataType : int
{
    TypeChar = 0x1400,
    TypeUChar = 0x1401,
    TypeShort = 0x1402,
    TypeUShort = 0x1403,
    TypeInt = 0x1404,
    TypeUInt = 0x1405,
    TypeFloat = 0x1406,
    TypeDouble = 0x140A
};

// Bounds of a box of voxels; each array in the order channel, x, y, z, t; last is inclusive.
struct Region
{
    std::array<std::uint32_t, 5> first{};
    std::array<std::uint32_t, 5> last{};
    std::array<std::uint32_t, 5> size{};
};

using MetaMap = std::map<std::string, std::string>;

// Thrown at exhausted memory and at slice numbers that do not exist.
class Exception : public std::exception
{
public:
    explicit Exception(std::string message)
        : text(std::move(message))
    {}
    const char *what() const noexcept override { return text.c_str(); }

private:
    std::string text;
};

} // namespace MERV
