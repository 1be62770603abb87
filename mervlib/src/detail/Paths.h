// Paths as the format functions get them: bytes of the file system, or wide strings in UTF-16 or UTF-32.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace MERV::detail {

constexpr bool hasBackslashSeparator = std::filesystem::path::preferred_separator != '/';

// Both separators where the system knows both.
constexpr bool isSeparator(wchar_t character)
{
    return character == L'/' || (hasBackslashSeparator && character == L'\\');
}

// Characters outside of Unicode become U+FFFD; nothing throws for them.
std::u16string toUtf16(std::wstring_view text);
std::string toUtf8(std::wstring_view text);

// A null pointer is the empty path.
std::filesystem::path toPath(const wchar_t *path);
std::filesystem::path toPath(const char *path);

// For messages, in UTF-8.
std::string pathText(const std::filesystem::path &path);

// The length of the directory part of a path, its last separator included.
template <class Char>
std::size_t directoryLength(std::basic_string_view<Char> path)
{
    std::size_t length = path.size();
    while (length > 0 && !isSeparator(static_cast<wchar_t>(path[length - 1])))
        --length;
    return length;
}

} // namespace MERV::detail
