#include "serialization/dicom/Encapsulation.h"

#include "serialization/dicom/ByteReader.h"

#include <array>
#include <filesystem>
#include <fstream>
#include <string_view>

namespace dicom {

namespace {

// Encapsulated pixels are always little endian (PS3.5, A.4).
std::uint32_t littleEndian(const char *bytes)
{
    std::uint32_t value = 0;
    for (int i = 3; i >= 0; --i)
        value = (value << 8U) | static_cast<unsigned char>(bytes[i]);
    return value;
}

bool readFragment(ByteReader &reader, std::string &fragment, bool &last)
{
    std::array<char, 8> head{};
    if (!reader.read(head.data(), head.size()))
        return false;
    const std::string_view tag(head.data(), 4);
    last = tag == std::string_view("\xFE\xFF\xDD\xE0", 4);
    if (last)
        return true;
    const std::uint32_t length = littleEndian(head.data() + 4);
    if (tag != std::string_view("\xFE\xFF\x00\xE0", 4) || length > reader.remaining())
        return false;
    fragment.resize(length);
    return reader.read(fragment.data(), fragment.size());
}

} // namespace

std::optional<std::vector<std::string>> readFragments(const DicomHeader &header)
{
    std::error_code error;
    const std::uint64_t size = std::filesystem::file_size(header.path, error);
    std::ifstream stream(header.path, std::ios::binary);
    if (error || !stream)
        return std::nullopt;
    ByteReader reader(stream, size);
    if (!reader.seek(header.pixels.offset))
        return std::nullopt;
    std::vector<std::string> fragments;
    bool last = false;
    while (!last) {
        std::string fragment;
        // Some writers leave the delimiter out at the end of the file.
        if (reader.remaining() == 0)
            break;
        if (!readFragment(reader, fragment, last))
            return std::nullopt;
        if (!last)
            fragments.push_back(std::move(fragment));
    }
    if (fragments.empty())
        return std::nullopt;
    fragments.erase(fragments.begin()); // the offset table
    return fragments;
}

} // namespace dicom
