#include "Common/ImageCopy.h"

#include "Common/VoxelCast.h"

namespace MERV {

void copySliceToBytes(Image *image, int width, int height, unsigned char *buffer)
{
    if (image == nullptr || buffer == nullptr || image->getWidth() != width || image->getHeight() != height)
        return;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            *buffer++ = voxel_cast<unsigned char>(image->getVoxel(x, y, 0, 0, 0));
}

void copyImage(Image *source, Image *destination)
{
    if (source == nullptr || destination == nullptr || source == destination)
        return;
    destination->setDimensions(source->getWidth(), source->getHeight(), source->getDepth(),
                               source->getFrames(), source->getChannels());
    source->resetCursor();
    destination->resetCursor();
    float value = 0.0f;
    while (source->getNextValue(value) && destination->setNextValue(value))
        continue;
}

} // namespace MERV
