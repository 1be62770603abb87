#include "mervlib/src/detail/Paths.h"

#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace MERV::detail {

namespace {

constexpr char32_t replacement = 0xFFFD;

constexpr bool isHighSurrogate(char32_t unit)
{
    return unit >= 0xD800 && unit < 0xDC00;
}

constexpr bool isLowSurrogate(char32_t unit)
{
    return unit >= 0xDC00 && unit < 0xE000;
}

// The character at position, which then stands behind it; wide characters may be UTF-16 or UTF-32.
char32_t nextCharacter(std::wstring_view text, std::size_t &position)
{
    using Unit = std::make_unsigned_t<std::conditional_t<sizeof(wchar_t) == 2, std::int16_t, std::int32_t>>;
    const auto unit = static_cast<char32_t>(static_cast<Unit>(text[position++]));
    if (isHighSurrogate(unit) && position < text.size()) {
        const auto low = static_cast<char32_t>(static_cast<Unit>(text[position]));
        if (isLowSurrogate(low)) {
            ++position;
            return 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00);
        }
    }
    return isHighSurrogate(unit) || isLowSurrogate(unit) || unit > 0x10FFFF ? replacement : unit;
}

void appendUtf8(std::string &text, char32_t character)
{
    const auto tail = [&](int shift) { text += static_cast<char>(0x80 | (character >> shift & 0x3F)); };
    if (character < 0x80) {
        text += static_cast<char>(character);
    } else if (character < 0x800) {
        text += static_cast<char>(0xC0 | character >> 6);
        tail(0);
    } else if (character < 0x10000) {
        text += static_cast<char>(0xE0 | character >> 12);
        tail(6);
        tail(0);
    } else {
        text += static_cast<char>(0xF0 | character >> 18);
        tail(12);
        tail(6);
        tail(0);
    }
}

} // namespace

std::u16string toUtf16(std::wstring_view text)
{
    std::u16string units;
    for (std::size_t position = 0; position < text.size();) {
        const char32_t character = nextCharacter(text, position);
        if (character < 0x10000) {
            units += static_cast<char16_t>(character);
        } else {
            units += static_cast<char16_t>(0xD800 + ((character - 0x10000) >> 10));
            units += static_cast<char16_t>(0xDC00 + ((character - 0x10000) & 0x3FF));
        }
    }
    return units;
}

std::string toUtf8(std::wstring_view text)
{
    std::string bytes;
    for (std::size_t position = 0; position < text.size();)
        appendUtf8(bytes, nextCharacter(text, position));
    return bytes;
}

std::filesystem::path toPath(const wchar_t *path)
{
    if (path == nullptr)
        return {};
    // The conversion of std::filesystem throws for characters that the C locale does not know.
    if constexpr (std::is_same_v<std::filesystem::path::value_type, wchar_t>)
        return std::filesystem::path(path);
    else
        return std::filesystem::path(toUtf8(path));
}

std::filesystem::path toPath(const char *path)
{
    return path == nullptr ? std::filesystem::path() : std::filesystem::path(path);
}

std::string pathText(const std::filesystem::path &path)
{
    const std::u8string text = path.u8string();
    return std::string(text.begin(), text.end());
}

} // namespace MERV::detail
