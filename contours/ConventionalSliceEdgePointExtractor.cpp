#include "contours/ConventionalSliceEdgePointExtractor.h"

ConventionalSliceEdgePointExtractor::ConventionalSliceEdgePointExtractor(MervImageObject *analysedImage,
                                                                         QObject *parent)
    : BasicSliceEdgePointExtractor(analysedImage, parent)
{
    // Here and not in the base: by now the operations of the finished class are called.
    extract();
}

ConventionalSliceEdgePointExtractor::~ConventionalSliceEdgePointExtractor() = default;
