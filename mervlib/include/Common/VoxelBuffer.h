#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>

namespace MERV {

// Every voxel buffer starts on a boundary of this many bytes, for vector loads.
inline constexpr std::size_t voxelAlignment = 16;
static_assert(alignof(std::max_align_t) >= voxelAlignment, "std::calloc must align for vector loads");

// count zeroed values of valueSize bytes, null for none; fresh pages come zeroed from the system and are not
// touched. At exhausted memory, or a size that cannot be addressed, reports on standard output and throws
// Exception.
void *allocateZeroed(std::uint64_t count, std::size_t valueSize);

// Reports exhausted memory on standard output and throws Exception.
[[noreturn]] void throwOutOfMemory();

struct FreeVoxels
{
    void operator()(void *voxels) const noexcept { std::free(voxels); }
};

template <class T>
using VoxelBuffer = std::unique_ptr<T[], FreeVoxels>;

template <class T>
VoxelBuffer<T> newVoxels(std::uint64_t count)
{
    return VoxelBuffer<T>(static_cast<T *>(allocateZeroed(count, sizeof(T))));
}

} // namespace MERV
