#include "serialization/dicom/DicomText.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cstdio>
#include <cstring>

namespace dicom {

namespace {

bool isPadding(char c)
{
    return c == ' ' || c == '\0';
}

std::string_view withoutTrailingPadding(std::string_view text)
{
    while (!text.empty() && isPadding(text.back()))
        text.remove_suffix(1);
    return text;
}

template <class T>
T readNumber(const char *bytes, bool bigEndian)
{
    std::array<char, sizeof(T)> raw{};
    std::memcpy(raw.data(), bytes, sizeof(T));
    if (bigEndian != (std::endian::native == std::endian::big))
        std::reverse(raw.begin(), raw.end());
    return std::bit_cast<T>(raw);
}

template <class T>
std::string joinedNumbers(const DicomElement &element)
{
    std::string result;
    const std::string &value = element.value;
    for (std::size_t offset = 0; offset + sizeof(T) <= value.size(); offset += sizeof(T)) {
        std::array<char, 32> digits{};
        const T number = readNumber<T>(value.data() + offset, element.bigEndian);
        const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
        if (offset > 0)
            result += '\\';
        result.append(digits.data(), end);
    }
    return result;
}

std::string joinedTags(const DicomElement &element)
{
    std::string result;
    for (std::size_t offset = 0; offset + 4 <= element.value.size(); offset += 4) {
        const auto group = readNumber<std::uint16_t>(element.value.data() + offset, element.bigEndian);
        const auto number = readNumber<std::uint16_t>(element.value.data() + offset + 2, element.bigEndian);
        char text[16];
        std::snprintf(text, sizeof text, "(%04x,%04x)", static_cast<unsigned>(group),
                      static_cast<unsigned>(number));
        if (offset > 0)
            result += '\\';
        result += text;
    }
    return result;
}

bool isPlainText(std::string_view value)
{
    return std::all_of(value.begin(), value.end(), [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return (byte >= 0x20 && byte < 0x7F) || byte == '\t' || byte == '\n' || byte == '\r';
    });
}

// Length of the well-formed UTF-8 sequence at the start of `text`, 0 when there is none.
std::size_t utf8Length(std::string_view text)
{
    const auto lead = static_cast<unsigned char>(text.front());
    const std::size_t length = lead < 0x80 ? 1 : lead < 0xC2 ? 0 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    if (length == 0 || lead > 0xF4 || text.size() < length)
        return 0;
    for (std::size_t i = 1; i < length; ++i) {
        if ((static_cast<unsigned char>(text[i]) & 0xC0U) != 0x80U)
            return 0;
    }
    return length;
}

// A byte that does not fit the declared set is read as Latin-1, so that the result is always UTF-8.
std::string toUtf8(std::string_view text, bool isUtf8)
{
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const auto byte = static_cast<unsigned char>(text.front());
        const std::size_t length = isUtf8 || byte < 0x80 ? utf8Length(text) : 0;
        if (length > 0) {
            result.append(text.substr(0, length));
            text.remove_prefix(length);
            continue;
        }
        result += static_cast<char>(0xC0U | (byte >> 6U));
        result += static_cast<char>(0x80U | (byte & 0x3FU));
        text.remove_prefix(1);
    }
    return result;
}

} // namespace

std::string_view trimmed(std::string_view text)
{
    while (!text.empty() && isPadding(text.front()))
        text.remove_prefix(1);
    return withoutTrailingPadding(text);
}

std::string elementText(const DicomElement &element, std::string_view characterSet)
{
    if (element.binary)
        return std::string(binaryValueText);
    const std::string_view vr(element.representation.data(), element.representation.size());
    if (vr == "US")
        return joinedNumbers<std::uint16_t>(element);
    if (vr == "SS")
        return joinedNumbers<std::int16_t>(element);
    if (vr == "UL")
        return joinedNumbers<std::uint32_t>(element);
    if (vr == "SL")
        return joinedNumbers<std::int32_t>(element);
    if (vr == "UV")
        return joinedNumbers<std::uint64_t>(element);
    if (vr == "SV")
        return joinedNumbers<std::int64_t>(element);
    if (vr == "FL")
        return joinedNumbers<float>(element);
    if (vr == "FD")
        return joinedNumbers<double>(element);
    if (vr == "AT")
        return joinedTags(element);
    const std::string_view value = withoutTrailingPadding(element.value);
    if (vr == "UN" && !isPlainText(value))
        return std::string(binaryValueText);
    return toUtf8(value, trimmed(characterSet) == "ISO_IR 192");
}

} // namespace dicom
