#include "contours/EdgePointExtractor.h"

#include "objects/MervImageObject.h"

EdgePointExtractor::EdgePointExtractor(MervImageObject *analysedImage, QObject *parent)
    : EdgePointSet(tr("edge points in %1").arg(analysedImage != nullptr ? analysedImage->label() : QString()),
                   parent)
    , imageObject(analysedImage)
    , lastGranularity(EdgePointSet::granularity())
{}

EdgePointExtractor::~EdgePointExtractor() = default;

float EdgePointExtractor::granularity() const
{
    return imageObject != nullptr ? imageObject->granularity() : lastGranularity;
}

QList<ImageObject *> EdgePointExtractor::sources() const
{
    return imageObject != nullptr ? QList<ImageObject *>{imageObject} : QList<ImageObject *>();
}

void EdgePointExtractor::detachFrom(ImageObject *closing)
{
    EdgePointSet::detachFrom(closing);
    if (imageObject == nullptr || imageObject != closing)
        return;
    lastGranularity = imageObject->granularity();
    imageObject = nullptr;
}
