#pragma once

#include "serialization/framework/ContinuousStreamImageObjectUnserializer.h"

#include <QCoreApplication>

#include <array>
#include <functional>
#include <optional>

namespace MERV {
class Image;
}

// Reads VIS streams. They do not tell the size of a voxel, so the reader asks for it. The image has no name.
class VisUnserializer : public ContinuousStreamImageObjectUnserializer
{
    Q_DECLARE_TR_FUNCTIONS(VisUnserializer)

public:
    // Given the voxel counts of x, y and z, answers one voxel's size in mm along each; nothing when the user
    // does not want to say, which makes the load fail.
    using VoxelSize = std::optional<std::array<float, 3>>;
    using AskVoxelSize = std::function<VoxelSize(const std::array<int, 3> &counts)>;

    explicit VisUnserializer(AskVoxelSize ask);

    bool canUnserialize(const char *head) override;
    ImageObject *unserialize(std::istream &stream) override;

private:
    VoxelSize ask(const MERV::Image &image) const;

    const AskVoxelSize askVoxelSize;
};
