#pragma once

#include "contours/BasicSliceEdgePointExtractor.h"

// Edge points whose positions inside their pixels are bent so that they are spread as if straight edges
// crossed the grid at random. Shifts, gradients and strengths stay as they were found. Extraction runs in the
// constructor; with the simulation it takes seconds. Writes a report with histograms to standard output.
class DistributionCorrectingSliceEdgePointExtractor : public BasicSliceEdgePointExtractor
{
    Q_OBJECT

public:
    explicit DistributionCorrectingSliceEdgePointExtractor(MervImageObject *analysedImage,
                                                           QObject *parent = nullptr);
    ~DistributionCorrectingSliceEdgePointExtractor() override;

protected:
    void postProcess() override;
};
