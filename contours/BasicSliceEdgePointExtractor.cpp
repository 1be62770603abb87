#include "contours/BasicSliceEdgePointExtractor.h"

#include "Common/Image.h"
#include "Common/ParallelFor.h"
#include "objects/MervImageObject.h"
#include "objects/SlicePositions.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <memory>

namespace {

constexpr std::size_t blockSize = 32;

} // namespace

BasicSliceEdgePointExtractor::BasicSliceEdgePointExtractor(MervImageObject *analysedImage, QObject *parent)
    : EdgePointExtractor(analysedImage, parent)
{}

BasicSliceEdgePointExtractor::~BasicSliceEdgePointExtractor() = default;

void BasicSliceEdgePointExtractor::extract()
{
    points.clear();
    blocks.clear();
    extentKnown = false;
    const MERV::Image *image = imageObject != nullptr ? imageObject->voxels() : nullptr;
    if (image == nullptr)
        return;
    spacingX = image->getSpacing(0);
    spacingY = image->getSpacing(1);
    spacingZ = image->getSpacing(2);
    points.resize(static_cast<std::size_t>(std::max(image->getDepth(), 0)));
    blocks.resize(points.size());
    MERV::parallelFor(sliceCount(), [this](int slice) { extractSlice(slice); });
    freeWorkplaces.clear();
    postProcess();
}

void BasicSliceEdgePointExtractor::postProcess() {}

void BasicSliceEdgePointExtractor::extractSlice(int slice)
{
    std::unique_ptr<Workplace> place = takeWorkplace();
    const ByteSlice bytes = copySlice(slice, place->bytes);
    if (bytes.bytes != nullptr) {
        place->detector.detect(bytes, SlicePlacement{spacingX, spacingY, sliceCentre(slice, spacingZ)},
                               place->found);
        points[static_cast<std::size_t>(slice)].assign(place->found.begin(), place->found.end());
    }
    const std::lock_guard lock(extractionMutex);
    freeWorkplaces.push_back(std::move(place));
}

std::unique_ptr<BasicSliceEdgePointExtractor::Workplace> BasicSliceEdgePointExtractor::takeWorkplace()
{
    const std::lock_guard lock(extractionMutex);
    if (freeWorkplaces.empty())
        return std::make_unique<Workplace>();
    std::unique_ptr<Workplace> place = std::move(freeWorkplaces.back());
    freeWorkplaces.pop_back();
    return place;
}

// A worker that draws the image may convert the slice anew: it is read under the lock of the voxels only.
ByteSlice BasicSliceEdgePointExtractor::copySlice(int slice, std::vector<unsigned char> &bytes) const
{
    const unsigned char *shown = imageObject->displaySlice(slice);
    const auto lock = imageObject->lockVoxels();
    if (shown == nullptr)
        return {};
    const MERV::Image *image = imageObject->voxels();
    const int rowPitch = imageObject->textureRowPitch();
    bytes.assign(shown, shown + static_cast<std::ptrdiff_t>(rowPitch) * image->getHeight());
    return {bytes.data(), image->getWidth(), image->getHeight(), rowPitch};
}

EdgePointList *BasicSliceEdgePointExtractor::edgePointsAround(float x, float y, float z, float radius)
{
    auto result = std::make_unique<EdgePointList>();
    // Truncated, not rounded down: a z just below the volume belongs to its first slice.
    const float slice = z / spacingZ;
    const bool usableSpacing = std::isfinite(spacingZ) && spacingZ > 0.0f;
    if (!usableSpacing || !(slice > -1.0f && slice < static_cast<float>(sliceCount())))
        return result.release();
    const int index = static_cast<int>(slice);
    std::vector<EdgePoint> &candidates = points[static_cast<std::size_t>(index)];
    std::size_t first = 0;
    for (const Block &block : blocksOf(index)) {
        const std::size_t end = std::min(first + blockSize, candidates.size());
        // The comparison of each point is a float difference with the radius. Rounding is monotonic, so a
        // block whose nearest limit fails it has no point that passes.
        if (block.minX - x <= radius && x - block.maxX <= radius && block.minY - y <= radius &&
            y - block.maxY <= radius)
            for (std::size_t i = first; i < end; ++i) {
                EdgePoint &point = candidates[i];
                if (std::abs(point.x - x) <= radius && std::abs(point.y - y) <= radius &&
                    std::abs(point.z - z) <= radius)
                    result->append(&point);
            }
        first = end;
    }
    return result.release();
}

const std::vector<BasicSliceEdgePointExtractor::Block> &BasicSliceEdgePointExtractor::blocksOf(int slice)
{
    const std::vector<EdgePoint> &list = points[static_cast<std::size_t>(slice)];
    std::vector<Block> &made = blocks[static_cast<std::size_t>(slice)];
    if (!made.empty() || list.empty())
        return made;
    made.reserve((list.size() + blockSize - 1) / blockSize);
    for (std::size_t i = 0; i < list.size(); ++i) {
        const EdgePoint &point = list[i];
        if (i % blockSize == 0) {
            constexpr float infinity = std::numeric_limits<float>::infinity();
            made.push_back({infinity, -infinity, infinity, -infinity});
        }
        Block &block = made.back();
        block.minX = std::min(block.minX, point.x);
        block.maxX = std::max(block.maxX, point.x);
        block.minY = std::min(block.minY, point.y);
        block.maxY = std::max(block.maxY, point.y);
    }
    return made;
}

std::array<float, 3> BasicSliceEdgePointExtractor::extents() const
{
    if (!extentKnown) {
        extent = {};
        for (const std::vector<EdgePoint> &slice : points)
            for (const EdgePoint &point : slice)
                extent = {std::max(extent[0], point.x), std::max(extent[1], point.y),
                          std::max(extent[2], point.z)};
        extentKnown = true;
    }
    return extent;
}

float BasicSliceEdgePointExtractor::extentX() const
{
    return extents()[0];
}

float BasicSliceEdgePointExtractor::extentY() const
{
    return extents()[1];
}

float BasicSliceEdgePointExtractor::extentZ() const
{
    return extents()[2];
}

int BasicSliceEdgePointExtractor::sliceCount() const
{
    return static_cast<int>(points.size());
}

const std::vector<EdgePoint> &BasicSliceEdgePointExtractor::slicePoints(int slice) const
{
    return points[static_cast<std::size_t>(slice)];
}
