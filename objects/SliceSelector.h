#pragma once

#include "objects/MervImageObject.h"

#include <QPointer>

enum class SliceDirection
{
    X = 0, // sagittal: the slice image is depth wide and height high
    Y = 1, // coronal: width x depth
    Z = 2  // axial: width x height
};

// Shows one slice of another volume as an 8-bit image of its own, through the source's window. Follows the
// source while that exists and keeps its last slice afterwards. Does not own the source. Emits updated()
// after each rebuild.
class SliceSelector : public MervImageObject
{
    Q_OBJECT

public:
    // position is a slice index, truncated and limited to the slices that exist.
    SliceSelector(MervImageObject *source, SliceDirection direction, double position,
                  QObject *parent = nullptr);

    // Stores the position and sets the label to match; the image follows with the next update().
    void setPosition(double position);
    double position() const;
    SliceDirection direction() const;

    void detachFrom(ImageObject *closing) override;

    // Takes the slice from the source anew. Does nothing without a source, and without voxels there.
    Q_SLOT void update();

private:
    void rebuild();
    int sliceIndex(const MERV::Image &volume) const;

    QPointer<MervImageObject> source;
    SliceDirection sliceDirection;
    double slicePosition = 0.0;
};
