#include "objects/SliceSelector.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <exception>
#include <iostream>

namespace {

// Which axes of the volume (0 x, 1 y, 2 z) the slice image's x, y and z axes are.
struct SliceAxes
{
    int x;
    int y;
    int z;
};

SliceAxes axesOf(SliceDirection direction)
{
    switch (direction) {
    case SliceDirection::X:
        return {2, 1, 0};
    case SliceDirection::Y:
        return {0, 2, 1};
    case SliceDirection::Z:
        break;
    }
    return {0, 1, 2};
}

// A windowed slice, centred in a rectangle whose sides are powers of two.
struct PaddedSlice
{
    std::unique_ptr<unsigned char[]> bytes;
    int width = 0; // of the slice itself
    int height = 0;

    unsigned char at(int column, int row) const
    {
        const std::size_t x = offset(width) + static_cast<std::size_t>(column);
        const std::size_t y = offset(height) + static_cast<std::size_t>(row);
        return bytes[y * padded(width) + x];
    }

private:
    static std::size_t padded(int size) { return std::bit_ceil(static_cast<std::size_t>(size)); }
    static std::size_t offset(int size) { return (padded(size) - static_cast<std::size_t>(size)) / 2; }
};

PaddedSlice windowedSlice(const MERV::Image &volume, SliceDirection direction, int slice)
{
    PaddedSlice result;
    switch (direction) {
    case SliceDirection::X:
        result.bytes.reset(volume.getSagittalSliceUByte(nullptr, slice, 0, true));
        volume.getSagittalSliceSize(result.width, result.height);
        break;
    case SliceDirection::Y:
        result.bytes.reset(volume.getCoronalSliceUByte(nullptr, slice, 0, true));
        volume.getCoronalSliceSize(result.width, result.height);
        break;
    case SliceDirection::Z:
        result.bytes.reset(volume.getAxialSliceUByte(nullptr, slice, 0, true));
        volume.getAxialSliceSize(result.width, result.height);
        break;
    }
    return result;
}

} // namespace

SliceSelector::SliceSelector(MervImageObject *newSource, SliceDirection direction, double position,
                             QObject *parent)
    : MervImageObject(nullptr, QString(), parent)
    , source(newSource)
    , sliceDirection(direction)
{
    if (source == nullptr || !connect(source, &GraphicsObject::updated, this, &SliceSelector::update))
        std::cerr << "Cound not establish connection indicating rasterization invalidation." << std::endl;
    setPosition(position);
    rebuild();
}

double SliceSelector::position() const
{
    return slicePosition;
}

SliceDirection SliceSelector::direction() const
{
    return sliceDirection;
}

void SliceSelector::setPosition(double position)
{
    slicePosition = position;
    if (source == nullptr)
        return;
    const QString axis = QString(QLatin1Char("xyz"[static_cast<int>(sliceDirection)]));
    setLabel(tr("%1 = %2 in %3").arg(axis, QString::number(position), source->label()));
}

void SliceSelector::detachFrom(ImageObject *closing)
{
    MervImageObject::detachFrom(closing);
    if (source == nullptr || closing != source)
        return;
    disconnect(source, nullptr, this, nullptr);
    source = nullptr;
}

void SliceSelector::update()
{
    if (source == nullptr || source->voxels() == nullptr)
        return;
    try {
        rebuild();
    } catch (const std::exception &failure) {
        std::cerr << failure.what() << std::endl; // no exception may leave a slot; the last slice stays
        return;
    }
    emit updated();
}

int SliceSelector::sliceIndex(const MERV::Image &volume) const
{
    const int last = volume.getDimension(static_cast<int>(sliceDirection)) - 1;
    const double index = std::isnan(slicePosition) ? 0.0 : std::trunc(slicePosition);
    return static_cast<int>(std::clamp(index, 0.0, std::max(last, 0) * 1.0));
}

void SliceSelector::rebuild()
{
    if (source == nullptr || source->voxels() == nullptr || source->voxels()->getValueCount() == 0)
        return;
    const SliceAxes order = axesOf(sliceDirection);
    std::unique_ptr<MERV::Image> sliceImage(MERV::createImage(MERV::TypeUChar));
    sliceImage->setVerbose(0);
    PaddedSlice slice;
    {
        const auto lock = source->lockVoxels();
        const MERV::Image &volume = *source->voxels();
        sliceImage->setDimensions(volume.getDimension(order.x), volume.getDimension(order.y), 1, 1, 1);
        sliceImage->setSpacing(volume.getSpacing(order.x), volume.getSpacing(order.y),
                               volume.getSpacing(order.z), 1.0f);
        slice = windowedSlice(volume, sliceDirection, sliceIndex(volume));
    }
    // The library lays a sagittal slice out with y along its rows; here y runs along the columns.
    const bool transposed = sliceDirection == SliceDirection::X;
    for (int row = 0; row < slice.height; ++row) {
        for (int column = 0; column < slice.width; ++column) {
            sliceImage->setVoxel(static_cast<float>(slice.at(column, row)), transposed ? row : column,
                                 transposed ? column : row, 0, 0, 0);
        }
    }
    sliceImage->computeMinMax();
    replaceImage(std::move(sliceImage));
    invalidateTextures();
}
