#include "mervlib/src/detail/RowStore.h"

#include "Common/VoxelCast.h"

#include <algorithm>
#include <type_traits>

namespace MERV::detail {

void storeRow(Image &image, std::uint64_t first, std::uint64_t step, std::span<const float> values)
{
    const std::uint64_t count = image.getValueCount();
    if (first >= count || step == 0)
        return;
    const std::uint64_t fitting = std::min<std::uint64_t>(values.size(), (count - 1 - first) / step + 1);
    visitVoxels(image, [&](auto *buffer) {
        using T = std::remove_pointer_t<decltype(buffer)>;
        if (!buffer)
            return;
        for (std::uint64_t i = 0; i < fitting; ++i)
            buffer[first + i * step] = voxel_cast<T>(values[i]);
    });
}

SequentialWriter::SequentialWriter(Image &output)
    : image(output)
{
    image.resetCursor();
}

SequentialWriter::~SequentialWriter()
{
    if (next > 0)
        image.getValue(next - 1); // leaves the cursor behind it
}

void SequentialWriter::write(std::span<const float> values)
{
    storeRow(image, next, 1, values);
    next = std::min<std::uint64_t>(next + values.size(), image.getValueCount());
}

} // namespace MERV::detail
