#include "Common/TransformImage.h"

#include "Common/Pose.h"
#include "Common/Tools.h"
#include "mervlib/src/detail/RowStore.h"

#include <array>
#include <cstdint>
#include <iostream>
#include <memory>
#include <vector>

namespace MERV {
namespace {

using Point = std::array<float, 3>;

// Maps places of the output grid to voxel coordinates of the source.
struct Sampling
{
    Point origin;
    std::array<Point, 3> axes;
    std::array<int, 3> size;

    float coordinate(std::size_t axis, int x, int y, int z) const
    {
        return origin[axis] + static_cast<float>(x) * axes[0][axis] + static_cast<float>(y) * axes[1][axis] +
               static_cast<float>(z) * axes[2][axis];
    }
};

// The start point follows the current convention of poses, the axes the old one, and the axes are not scaled
// by the spacing: the two conventions meet here and callers rely on it.
Sampling samplingOf(const float pose[6], const Image &source)
{
    Sampling sampling{{}, {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}}, {}};
    for (int i = 0; i < 3; ++i) {
        const auto axis = static_cast<std::size_t>(i);
        sampling.size[axis] = source.getDimension(i);
        sampling.origin[axis] = source.getSpacing(i) * static_cast<float>(sampling.size[axis]) * -0.5f;
    }
    rigidTransformPoint(sampling.origin.data(), pose, 1);
    for (int i = 0; i < 3; ++i) {
        const auto axis = static_cast<std::size_t>(i);
        sampling.origin[axis] =
            static_cast<float>(sampling.size[axis]) * 0.5f + sampling.origin[axis] / source.getSpacing(i);
        Tools::rigidTransform(sampling.axes[axis].data(), pose, 2);
    }
    return sampling;
}

// Not a number lies outside.
bool isInside(const Point &point, const std::array<int, 3> &size)
{
    for (std::size_t i = 0; i < 3; ++i)
        if (!(point[i] >= 0.0f && point[i] < static_cast<float>(size[i] - 1)))
            return false;
    return true;
}

// Writes the sampled volume in stored order; returns the number of places that lay inside.
std::uint64_t resampleInto(Image &output, const Sampling &sampling, const Image &source, bool trilinear)
{
    const auto [width, height, depth] = sampling.size;
    std::uint64_t used = 0;
    std::vector<float> row(static_cast<std::size_t>(width));
    detail::SequentialWriter writer(output);
    for (int z = 0; z < depth; ++z) {
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                const Point p{sampling.coordinate(0, x, y, z), sampling.coordinate(1, x, y, z),
                              sampling.coordinate(2, x, y, z)};
                float &value = row[static_cast<std::size_t>(x)];
                value = 0.0f;
                if (!isInside(p, sampling.size))
                    continue;
                value = trilinear ? source.getTrilinear(p[0], p[1], p[2], 0, 0)
                                  : source.getNearest(p[0], p[1], p[2]);
                ++used;
            }
            writer.write(row);
        }
    }
    return used;
}

} // namespace

Image *transformImage(const float pose[6], Image *source, Image *output, bool trilinear)
{
    if (!source || !source->getData() || source->getValueCount() == 0)
        return output;
    std::unique_ptr<Image> made;
    if (!output) {
        made.reset(createImage(TypeFloat));
        made->setDimensions(source->getWidth(), source->getHeight(), source->getDepth(), 1, 1);
        made->setSpacing(source->getSpacing(0), source->getSpacing(1), source->getSpacing(2), 1.0f);
        output = made.get();
    }
    const Sampling sampling = samplingOf(pose, *source);
    const std::uint64_t used = resampleInto(*output, sampling, *source, trilinear);
    std::uint64_t all = 1;
    for (int size : sampling.size)
        all *= static_cast<std::uint64_t>(size);
    std::cout << "Used " << used * 100 / all << " % of voxels\n";
    static_cast<void>(made.release()); // output is the same pointer
    return output;
}

} // namespace MERV
