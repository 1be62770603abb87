#pragma once

#include "contours/BasicSliceEdgePointExtractor.h"

// Edge points of all slices as they are found, without correction. Extraction runs in the constructor.
class ConventionalSliceEdgePointExtractor : public BasicSliceEdgePointExtractor
{
    Q_OBJECT

public:
    explicit ConventionalSliceEdgePointExtractor(MervImageObject *analysedImage, QObject *parent = nullptr);
    ~ConventionalSliceEdgePointExtractor() override;
};
