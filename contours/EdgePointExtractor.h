#pragma once

#include "contours/EdgePointSet.h"

class MervImageObject;

// Edge points of a voxel image. A snapshot: later changes of the image or its window do not reach it, and it
// keeps its points when the image is closed. Main thread.
class EdgePointExtractor : public EdgePointSet
{
    Q_OBJECT

public:
    // analysedImage is borrowed; null gives a set without points.
    explicit EdgePointExtractor(MervImageObject *analysedImage, QObject *parent = nullptr);
    ~EdgePointExtractor() override;

    // That of the image; once it is closed, what it was then.
    float granularity() const override;
    QList<ImageObject *> sources() const override;
    void detachFrom(ImageObject *closing) override;

protected:
    MervImageObject *imageObject; // null without an image

private:
    float lastGranularity;
};
