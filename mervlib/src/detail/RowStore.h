#pragma once

#include "Common/Image.h"

#include <cstdint>
#include <span>

namespace MERV::detail {

// Calls use(T *buffer) with the image's voxels in their own type; nothing for an unknown type code.
template <class Use>
void visitVoxels(Image &image, Use &&use)
{
    void *buffer = image.getData();
    switch (image.getDataType()) {
    case TypeChar:
        return use(static_cast<char *>(buffer));
    case TypeUChar:
        return use(static_cast<unsigned char *>(buffer));
    case TypeShort:
        return use(static_cast<short *>(buffer));
    case TypeUShort:
        return use(static_cast<unsigned short *>(buffer));
    case TypeInt:
        return use(static_cast<int *>(buffer));
    case TypeUInt:
        return use(static_cast<unsigned int *>(buffer));
    case TypeFloat:
        return use(static_cast<float *>(buffer));
    case TypeDouble:
        return use(static_cast<double *>(buffer));
    default:
        return;
    }
}

// Stores the values at the flat indices first, first + step, .. as Image::setValue would; what lies behind
// the last value of the image is dropped. One dispatch on the voxel type per row.
void storeRow(Image &image, std::uint64_t first, std::uint64_t step, std::span<const float> values);

// Writes rows one behind the other from the first value on, like repeated Image::setNextValue: it stops
// silently at the end of the image, and the image's cursor ends behind the last value written.
class SequentialWriter
{
public:
    explicit SequentialWriter(Image &output);
    ~SequentialWriter();
    SequentialWriter(const SequentialWriter &) = delete;
    SequentialWriter &operator=(const SequentialWriter &) = delete;

    void write(std::span<const float> values);

private:
    Image &image;
    std::uint64_t next = 0;
};

} // namespace MERV::detail
