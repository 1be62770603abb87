#include "Common/VoxelBuffer.h"

#include "Common/ImageTypes.h"

#include <iostream>
#include <limits>

namespace MERV {

void throwOutOfMemory()
{
    std::cout << "Common >> "
              << "Error while initializing!\n"
              << std::flush;
    throw Exception("MERV::ImageBase Buffer Allocation error!");
}

void *allocateZeroed(std::uint64_t count, std::size_t valueSize)
{
    if (count == 0)
        return nullptr;
    constexpr std::uint64_t mostBytes = std::numeric_limits<std::ptrdiff_t>::max();
    if (count > mostBytes / valueSize)
        throwOutOfMemory();
    void *voxels = std::calloc(static_cast<std::size_t>(count), valueSize);
    if (voxels == nullptr)
        throwOutOfMemory();
    return voxels;
}

} // namespace MERV
