#pragma once

#include "contours/BasicSliceEdgePointExtractor.h"

// Edge points whose positions inside their pixels are bent so that they are spread as if straight edges
// crossed the grid at random. Shifts, gradients and strengths stay as they were found. Extraction runs in the
// constructor; the simulation takes about a second. Writes a report with histograms to standard output.
// No command makes one; a program that links contours/ does, and keeps the image alive meanwhile:
//
//     MervImageObject volume(image.release(), "knee.mhd"); // takes a MERV::Image
//     volume.setWindow(0.0f, 400.0f);                      // edges are found in the displayed grey values
//     const DistributionCorrectingSliceEdgePointExtractor edges(&volume);
//     for (const EdgePoint &point : edges.slicePoints(7))
//         use(point.x, point.y); // mm
//
// Spread more evenly does not mean nearer to the edge: one function per axis serves edges of all directions.
// It takes the error from oblique edges that pixels share, and adds one to edges along the axes, which had
// none. And it takes directions for evenly spread over the pixels, which they are not where pixels are not
// square.
class DistributionCorrectingSliceEdgePointExtractor : public BasicSliceEdgePointExtractor
{
    Q_OBJECT

public:
    // Borrows the image; null gives no points and no report.
    explicit DistributionCorrectingSliceEdgePointExtractor(MervImageObject *analysedImage,
                                                           QObject *parent = nullptr);
    ~DistributionCorrectingSliceEdgePointExtractor() override;

protected:
    void postProcess() override;
};
