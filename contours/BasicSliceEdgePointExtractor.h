#pragma once

#include "contours/EdgePointExtractor.h"
#include "contours/SliceEdgeDetection.h"

#include <array>
#include <memory>
#include <mutex>
#include <vector>

// Edge points that are found in each slice by itself, from its 8-bit display form: the result depends on the
// window at the time of construction. Owns the points. The classes made from it call extract() at the end of
// their constructors.
class BasicSliceEdgePointExtractor : public EdgePointExtractor
{
    Q_OBJECT

public:
    explicit BasicSliceEdgePointExtractor(MervImageObject *analysedImage, QObject *parent = nullptr);
    ~BasicSliceEdgePointExtractor() override;

    // Only the slice that z lies in is looked at, in the order of its points; an empty list for z outside the
    // image. All three coordinates within radius, limits included.
    EdgePointList *edgePointsAround(float x, float y, float z, float radius) override;
    // The largest coordinate of all points, at least 0.
    float extentX() const override;
    float extentY() const override;
    float extentZ() const override;

    int sliceCount() const;
    // The points of one slice (from 0, below sliceCount()), x outer and y inner, both rising.
    const std::vector<EdgePoint> &slicePoints(int slice) const;

protected:
    // Finds the points of all slices, several at a time on several threads, then calls postProcess().
    virtual void extract();
    // Called once after the extraction, on the thread of extract(). Here: nothing.
    virtual void postProcess();
    // Fills points[slice]. Called from several threads at once, for different slices.
    virtual void extractSlice(int slice);

    std::vector<std::vector<EdgePoint>> points; // one list per slice
    float spacingX = 0.0f;
    float spacingY = 0.0f;
    float spacingZ = 0.0f;

private:
    // Bounds of consecutive points of a slice, so that a query passes over most of them.
    struct Block
    {
        float minX, maxX, minY, maxY;
    };

    // What one thread needs for one slice; kept from slice to slice during an extraction.
    struct Workplace
    {
        std::vector<unsigned char> bytes; // of the slice
        SliceEdgeDetector detector;
        std::vector<EdgePoint> found;
    };

    std::unique_ptr<Workplace> takeWorkplace();
    // The display slice of the image, in bytes; a null slice if there is none.
    ByteSlice copySlice(int slice, std::vector<unsigned char> &bytes) const;
    const std::vector<Block> &blocksOf(int slice);
    std::array<float, 3> extents() const;

    std::mutex extractionMutex; // guards freeWorkplaces
    std::vector<std::unique_ptr<Workplace>> freeWorkplaces;
    std::vector<std::vector<Block>> blocks; // made when a slice is first asked for; empty before
    mutable std::array<float, 3> extent{};
    mutable bool extentKnown = false;
};
