#include "serialization/dicom/RunLength.h"

#include <algorithm>
#include <bit>
#include <cstdint>

namespace dicom {

namespace {

constexpr std::size_t headerBytes = 64;

std::uint32_t headerWord(std::string_view frame, std::size_t index)
{
    std::uint32_t value = 0;
    for (std::size_t i = 4; i-- > 0;)
        value = (value << 8U) | static_cast<unsigned char>(frame[4 * index + i]);
    return value;
}

// Writes `pixels` bytes, `stride` apart. What a segment holds beyond them is ignored.
bool decodeSegment(std::string_view segment, std::size_t pixels, std::size_t stride, char *out)
{
    std::size_t written = 0;
    while (written < pixels) {
        if (segment.size() < 2)
            return false;
        const auto control = static_cast<signed char>(segment.front());
        segment.remove_prefix(1);
        if (control == -128)
            continue;
        const bool literal = control >= 0;
        const std::size_t length = static_cast<std::size_t>(literal ? control + 1 : 1 - control);
        const std::size_t stored = literal ? length : 1;
        if (segment.size() < stored)
            return false;
        const std::size_t count = std::min(length, pixels - written);
        for (std::size_t i = 0; i < count; ++i)
            out[(written + i) * stride] = segment[literal ? i : 0];
        written += count;
        segment.remove_prefix(stored);
    }
    return true;
}

} // namespace

bool decodeRunLength(std::string_view frame, std::size_t bytesPerPixel, std::span<char> out)
{
    if (frame.size() < headerBytes || headerWord(frame, 0) != bytesPerPixel || bytesPerPixel > 15)
        return false;
    const std::size_t pixels = out.size() / bytesPerPixel;
    for (std::size_t segment = 0; segment < bytesPerPixel; ++segment) {
        const std::size_t start = headerWord(frame, segment + 1);
        const std::size_t end = segment + 1 < bytesPerPixel ? headerWord(frame, segment + 2) : frame.size();
        if (start < headerBytes || start > end || end > frame.size())
            return false;
        const std::size_t place =
            std::endian::native == std::endian::big ? segment : bytesPerPixel - 1 - segment;
        if (!decodeSegment(frame.substr(start, end - start), pixels, bytesPerPixel, out.data() + place))
            return false;
    }
    return true;
}

} // namespace dicom
