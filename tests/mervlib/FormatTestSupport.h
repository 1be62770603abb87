#pragma once

#include "Common/ImageBase.h"
#include "tests/support/CapturedText.h"
#include "tests/support/Files.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

// A folder of its own for a test, whose files have names for the library's functions: plain or wide.
class TempFolder
{
public:
    std::string operator/(const std::string &name) const { return (folder / name).string(); }
    std::wstring wide(const std::wstring &name) const
    {
        const std::string plain = path();
        return std::wstring(plain.begin(), plain.end()) + L'/' + name; // whatever the locale
    }
    std::string path() const { return folder.string(); }

private:
    TemporaryFolder folder;
};

inline void writeFile(const std::string &path, const std::string &bytes)
{
    std::ofstream(path, std::ios::binary) << bytes;
}

// Calls use(size) with the file cut to each size, from the whole down to nothing.
template <class Use>
void forEachTruncation(const std::string &path, const std::string &whole, const Use &use)
{
    writeFile(path, whole);
    for (std::size_t size = whole.size();; --size) {
        std::filesystem::resize_file(path, size);
        use(size);
        if (size == 0)
            return;
    }
}

// Bytes of files, put together by hand: little-endian whatever the machine.
class Bytes
{
public:
    explicit Bytes(std::size_t size = 0)
        : bytes(size, '\0')
    {}
    Bytes &u16(std::size_t offset, std::uint32_t value) { return put(offset, value, 2); }
    Bytes &u32(std::size_t offset, std::uint64_t value) { return put(offset, value, 4); }
    Bytes &f32(std::size_t offset, float value)
    {
        std::uint32_t pattern;
        std::memcpy(&pattern, &value, sizeof value);
        return put(offset, pattern, 4);
    }
    Bytes &f64(std::size_t offset, double value)
    {
        std::uint64_t pattern;
        std::memcpy(&pattern, &value, sizeof value);
        return put(offset, pattern, 8);
    }
    Bytes &text(std::size_t offset, const std::string &value)
    {
        bytes.replace(offset, value.size(), value);
        return *this;
    }
    // The bytes of one field in the other order.
    Bytes &turned(std::size_t offset, std::size_t size)
    {
        const std::string field = bytes.substr(offset, size);
        return text(offset, std::string(field.rbegin(), field.rend()));
    }
    const std::string &str() const { return bytes; }

private:
    Bytes &put(std::size_t offset, std::uint64_t value, int size)
    {
        for (int i = 0; i < size; ++i)
            bytes.at(offset + static_cast<std::size_t>(i)) = static_cast<char>(value >> 8 * i & 0xFF);
        return *this;
    }

    std::string bytes;
};

// An image whose values are all different as far as the type allows, both signs included.
template <class T>
std::unique_ptr<MERV::ImageBase<T>> numberedImage(int width, int height, int depth, int frames, int channels)
{
    auto image = std::make_unique<MERV::ImageBase<T>>();
    image->setDimensions(width, height, depth, frames, channels);
    int number = 0;
    for (T &value : *image) {
        const int offset = std::is_signed_v<T> ? 60 : 0;
        value = static_cast<T>(static_cast<T>(number++ * 7 % 121) - static_cast<T>(offset));
    }
    image->computeMinMax();
    return image;
}

template <class T>
std::vector<T> valuesOf(MERV::Image &image)
{
    const auto *values = static_cast<const T *>(image.getData());
    return std::vector<T>(values, values + image.getValueCount());
}

inline std::vector<int> dimensionsOf(const MERV::Image &image)
{
    return {image.getWidth(), image.getHeight(), image.getDepth(), image.getFrames(), image.getChannels()};
}

using ImagePointer = std::unique_ptr<MERV::Image>;
