#include "view/interaction/CentreOfMass.h"

#include "Common/Image.h"

#include <cstddef>
#include <cstdint>

std::optional<std::array<double, 3>> centreOfMass(MERV::Image &image, float minimum)
{
    if (image.getDataType() != MERV::TypeUShort)
        return std::nullopt;
    const auto *voxel = static_cast<const std::uint16_t *>(image.getData());
    const auto stride = static_cast<std::size_t>(image.getChannels());
    const int width = image.getWidth();
    const int height = image.getHeight();
    const int depth = voxel != nullptr ? image.getDepth() : 0;
    double mass = 0.0;
    std::array<double, 3> moment{};
    for (int z = 0; z < depth; ++z) {
        double sliceMass = 0.0;
        for (int y = 0; y < height; ++y) {
            double rowMass = 0.0;
            for (int x = 0; x < width; ++x, voxel += stride) {
                const float above = static_cast<float>(*voxel) - minimum;
                if (above > 0.0f) {
                    rowMass += static_cast<double>(above);
                    moment[0] += static_cast<double>(above) * x;
                }
            }
            sliceMass += rowMass;
            moment[1] += rowMass * y;
        }
        mass += sliceMass;
        moment[2] += sliceMass * z;
    }
    return std::array{moment[0] / mass, moment[1] / mass, moment[2] / mass};
}
