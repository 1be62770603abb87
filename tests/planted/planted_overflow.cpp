// Reads one voxel behind the last one.
#include "Common/VoxelBuffer.h"

#include <iostream>

int main(int argc, char **)
{
    const auto voxels = MERV::newVoxels<short>(16);
    std::cout << voxels[static_cast<std::size_t>(argc) + 15] << '\n';
}
