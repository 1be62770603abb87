#pragma once

#include "contours/SegmentSnapshot.h"
#include "objects/LabeledGraphicsObject.h"

#include <QList>

#include <vector>

class GraphicsObjectRenderAdvisor;
class SlicedContoursFragment;
class SlicedContoursObject;

// A named list of references to fragments. Where segments of these on one slice meet end to end they form a
// closed loop, which is what a contour is there. Owned by its contours object. Main thread; renderBox() also
// on another thread that holds the object's structure for reading. Emits nothing.
class SlicedContour : public LabeledGraphicsObject
{
    Q_OBJECT

public:
    explicit SlicedContour(QObject *parent = nullptr);
    ~SlicedContour() override;

    int graphicsType() const override;

    int fragmentCount() const;
    // Null out of range.
    SlicedContoursFragment *fragment(int index) const;
    // Ignores null. The fragment is to live in the same contours object; should it go before this, its
    // reference stays as an empty one.
    void addFragmentReference(SlicedContoursFragment *fragment);

    // The area in mm^2 that the first closed loop at exactly this z encloses: 0 where there are fewer than
    // two segments, and where those that continue the first one do not come back to its start.
    float areaAt(float z) const;

    // Fills the closed loops whose segments lie in z0 <= z < z1 (at z0 if both are equal); x and y limits are
    // not used.
    virtual void renderBox(GraphicsObjectRenderAdvisor *advisor, float x0, float x1, float y0, float y1,
                           float z0, float z1);

private:
    friend class SlicedContoursObject;

    std::vector<SegmentSnapshot> snapshots(float z0, float z1) const;
    void forget(const SlicedContoursFragment *fragment);

    QList<SlicedContoursFragment *> fragments; // not owned; changed under the owner's write lock
    SlicedContoursObject *owner = nullptr;     // whose list this contour is in
};
