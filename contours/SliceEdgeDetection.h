#pragma once

#include "contours/EdgePoint.h"

#include <cstdint>
#include <vector>

// An 8-bit slice of width * height pixels, x fastest, rowPitch bytes from row to row. Borrowed.
struct ByteSlice
{
    const unsigned char *bytes = nullptr;
    int width = 0;
    int height = 0;
    int rowPitch = 0;
};

// Where the pixels lie: pixel (x, y) has its centre at ((x + 0.5) * spacingX, (y + 0.5) * spacingY, z), in
// mm.
struct SlicePlacement
{
    float spacingX = 1.0f;
    float spacingY = 1.0f;
    float z = 0.0f;
};

// Finds the edge points of slices: pixels where the magnitude of the gradient is highest along the gradient,
// judged by the quadratic that fits the 3 x 3 magnitudes around the pixel best. All decisions are made in
// integers, so that they are the same on every machine. Keeps its buffers from slice to slice; one detector
// serves one thread at a time.
class SliceEdgeDetector
{
public:
    // Replaces points by those of the slice, x outer and y inner, both rising. None for fewer than 3 columns
    // or rows.
    void detect(const ByteSlice &slice, const SlicePlacement &placement, std::vector<EdgePoint> &points);

private:
    void transpose(const ByteSlice &slice);
    void computeColumn(int x);
    void markColumn(int x);
    void listColumn(int x, const SlicePlacement &placement, std::vector<EdgePoint> &points) const;

    int width = 0;
    int height = 0;
    // width columns of height values each, y fastest
    std::vector<std::uint8_t> pixels;
    std::vector<std::uint8_t> magnitudes; // 0 in the outermost columns and rows
    std::vector<std::int16_t> gradientsX; // defined where magnitudes are, without that border
    std::vector<std::int16_t> gradientsY;
    std::vector<std::uint8_t> marks; // of one column: 1 where a point is
};
