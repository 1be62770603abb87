#include "objects/MervImageObject.h"

#include "Common/Progress.h"
#include "objects/SlicePositions.h"

#include <QFileInfo>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <utility>

namespace {

constexpr int originUnnamed = 1;
constexpr int originFile = 2;
constexpr float maskedValue = 255.0f;

int nextPowerOfTwo(int size)
{
    return size <= 0 ? 0 : static_cast<int>(std::bit_ceil(static_cast<unsigned int>(size)));
}

bool lies(float coordinate, float extent, float radius)
{
    return coordinate >= -radius && coordinate < extent + radius;
}

} // namespace

MervImageObject::MervImageObject(MERV::Image *newImage, const QString &fileName, QObject *parent)
    : image(newImage)
{
    setParent(parent);
    if (fileName.isNull()) {
        origin = originUnnamed;
        setLabel(tr("Unnamed Image"));
    } else {
        origin = originFile;
        const QString name = QFileInfo(fileName).completeBaseName();
        setLabel(name.isEmpty() ? tr("DICOM") : name);
    }
    loadedFrom = fileName;
    nameAxes();
    rangeText = tr("range");
    updateTextures();
}

MervImageObject::~MervImageObject() = default;

MERV::Image *MervImageObject::voxels() const
{
    return image.get();
}

void MervImageObject::nameAxes()
{
    axes.clear();
    if (image) {
        const std::pair<int, QString> names[] = {{image->getWidth(), QStringLiteral("x")},
                                                 {image->getHeight(), QStringLiteral("y")},
                                                 {image->getDepth(), QStringLiteral("z")},
                                                 {image->getFrames(), QStringLiteral("f")},
                                                 {image->getChannels(), QStringLiteral("c")}};
        for (const auto &[size, name] : names) {
            if (size > 1)
                axes.append(name);
        }
    }
    clearSignature();
}

void MervImageObject::replaceImage(std::unique_ptr<MERV::Image> newImage)
{
    {
        const auto lock = lockVoxels();
        image = std::move(newImage);
    }
    nameAxes();
    updateTextures();
}

int MervImageObject::graphicsType() const
{
    return GraphicsTypeImage;
}

int MervImageObject::imageType() const
{
    return ImageTypePixmap;
}

QList<GraphicsObject *> *MervImageObject::objectsAround(float x, float y, float z, float radius)
{
    auto *hits = new QList<GraphicsObject *>;
    if (image && lies(x, extentX(), radius) && lies(y, extentY(), radius) && lies(z, extentZ(), radius))
        hits->append(this);
    return hits;
}

float MervImageObject::extentX() const
{
    return image ? static_cast<float>(image->getWidth()) * image->getSpacing(0) : 0.0f;
}

float MervImageObject::extentY() const
{
    return image ? static_cast<float>(image->getHeight()) * image->getSpacing(1) : 0.0f;
}

float MervImageObject::extentZ() const
{
    return image ? static_cast<float>(image->getDepth()) * image->getSpacing(2) : 0.0f;
}

float MervImageObject::firstSignificantZ() const
{
    return image ? sliceCentre(0, image->getSpacing(2)) : 0.0f;
}

float MervImageObject::nextSignificantZ(float z) const
{
    return image ? nextSliceCentre(z, image->getSpacing(2), image->getDepth()) : z;
}

float MervImageObject::previousSignificantZ(float z) const
{
    return image ? previousSliceCentre(z, image->getSpacing(2), image->getDepth()) : z;
}

float MervImageObject::granularity() const
{
    if (!image)
        return ImageObject::granularity();
    const float inPlane = std::min(image->getSpacing(0), image->getSpacing(1));
    return image->getDepth() > 1 ? std::min(inPlane, image->getSpacing(2)) : inPlane;
}

int MervImageObject::dimensionCount() const
{
    if (!image)
        return -1;
    int count = 0;
    for (int axis = -1; axis <= 3; ++axis)
        count += image->getDimension(axis) > 1 ? 1 : 0;
    return count;
}

float MervImageObject::windowLow() const
{
    return image ? image->getLow(0) : 0.0f;
}

float MervImageObject::windowHigh() const
{
    return image ? image->getHigh(0) : 0.0f;
}

void MervImageObject::setWindow(float low, float high)
{
    if (!image)
        return;
    {
        const auto lock = lockVoxels();
        image->setWindowRange(low, high, 0);
    }
    invalidateTextures();
    emit updated();
}

void MervImageObject::setMetaData(const std::string &key, const std::string &value)
{
    if (image)
        image->setMetaData(key, value);
}

int MervImageObject::sliceIndexAt(double z) const
{
    if (!image)
        return -1;
    const double spacing = static_cast<double>(image->getSpacing(2));
    const int depth = image->getDepth();
    // Written so that a NaN answers -1; a negative z is outside although it would be truncated to 0.
    if (!(std::isfinite(spacing) && spacing > 0.0 && z >= 0.0 && z < depth * spacing))
        return -1;
    return std::min(static_cast<int>(z / spacing), depth - 1);
}

void MervImageObject::mirror(int axis)
{
    if (!image || axis < 0 || axis > 4)
        return;
    {
        const auto lock = lockVoxels();
        image->mirror(axis == 0, axis == 1, axis == 2, axis == 3, axis == 4);
    }
    invalidateTextures();
    emit updated();
}

void MervImageObject::computeMinMax()
{
    if (!image)
        return;
    {
        const auto lock = lockVoxels();
        image->computeMinMax();
    }
    invalidateTextures();
}

void MervImageObject::copyMaskedVoxels(MERV::Image &mask, MERV::Image &source)
{
    if (!image || mask.getWidth() != source.getWidth() || mask.getHeight() != source.getHeight())
        return;
    const int depth = std::min({mask.getDepth(), source.getDepth(), image->getDepth()});
    const int height = std::min(mask.getHeight(), image->getHeight());
    const int width = std::min(mask.getWidth(), image->getWidth());
    {
        const auto lock = lockVoxels();
        for (int z = 0; z < depth; ++z) {
            for (int y = 0; y < height; ++y) {
                for (int x = 0; x < width; ++x) {
                    if (mask.getVoxel(x, y, z, 0, 0) == maskedValue)
                        image->setVoxel(source.getVoxel(x, y, z, 0, 0), x, y, z, 0, 0);
                }
            }
        }
    }
    computeMinMax();
    updateTextures();
}

void MervImageObject::updateTextures()
{
    const auto lock = lockVoxels();
    matchTextures();
}

// updateTextures() under the lock of the voxels.
void MervImageObject::matchTextures()
{
    const int width = image ? nextPowerOfTwo(image->getWidth()) : 0;
    const int height = image ? nextPowerOfTwo(image->getHeight()) : 0;
    const int depth = image ? image->getDepth() : 0;
    if (width == textureWidth && height == textureHeight && depth == textureDepth)
        return;
    // Empty until all is made, so that exhausted memory leaves no half-built arrays.
    textureWidth = textureHeight = textureDepth = 0;
    sliceTextures.clear();
    const std::size_t bytes = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    std::vector<std::unique_ptr<unsigned char[]>> buffers(static_cast<std::size_t>(depth));
    for (auto &buffer : buffers)
        buffer = std::make_unique<unsigned char[]>(bytes);
    sliceTextureValid = std::make_unique<std::atomic<bool>[]>(static_cast<std::size_t>(depth));
    sliceTextures = std::move(buffers);
    textureWidth = width;
    textureHeight = height;
    textureDepth = depth;
    for (int slice = 0; slice < depth; ++slice) {
        convertSlice(slice, 0);
        MERV::reportProgress(static_cast<std::uint64_t>(slice) + 1, static_cast<std::uint64_t>(depth));
    }
}

void MervImageObject::invalidateTextures()
{
    const auto lock = lockVoxels();
    for (int slice = 0; slice < textureDepth; ++slice)
        sliceTextureValid[static_cast<std::size_t>(slice)] = false;
}

// Fills the slice's buffer with the windowed values of the channel. Called under the lock of the voxels.
void MervImageObject::convertSlice(int slice, int channel)
{
    const auto index = static_cast<std::size_t>(slice);
    image->getSliceUByte(sliceTextures[index].get(), slice, channel, true);
    sliceTextureValid[index] = channel == 0;
}

// Like convertSlice(), unless the buffer holds just that.
void MervImageObject::ensureSlice(int slice, int channel)
{
    if (channel != 0 || !sliceTextureValid[static_cast<std::size_t>(slice)])
        convertSlice(slice, channel);
}

const unsigned char *MervImageObject::displaySlice(int slice)
{
    const auto lock = lockVoxels();
    matchTextures();
    if (slice < 0 || slice >= textureDepth)
        return nullptr;
    ensureSlice(slice, 0);
    return sliceTextures[static_cast<std::size_t>(slice)].get();
}

int MervImageObject::textureRowPitch() const
{
    return textureWidth;
}

std::unique_lock<std::mutex> MervImageObject::lockVoxels() const
{
    return std::unique_lock(voxelMutex);
}
