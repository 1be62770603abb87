#pragma once

#include "platform/ReadWriteLock.h"
#include "contours/SegmentLevels.h"
#include "objects/ImageObject.h"

#include <optional>

class SlicedContour;
class SlicedContoursFragment;

// A segmentation: all fragments, which hold the lines, and all contours, which join fragments to closed
// loops. Owns both. Main thread, the only one that edits; renderBox() may run on another thread, for which a
// lock keeps the lists of fragments, contours and segments as they are for the time of one call. Emits
// updated(QObject *) and then updated() for each change of a line, structureChanged() when fragments or
// contours come or go.
class SlicedContoursObject : public ImageObject
{
    Q_OBJECT

public:
    SlicedContoursObject();
    explicit SlicedContoursObject(const QString &label, QObject *parent = nullptr);
    ~SlicedContoursObject() override;

    int graphicsType() const override;
    int imageType() const override;

    // A new fragment or contour at the end of its list.
    SlicedContoursFragment *newFragment(const QString &label);
    SlicedContour *newContour(const QString &label);
    // Take over an existing one. Ignore null and what is here already.
    void addFragment(SlicedContoursFragment *fragment);
    void addContour(SlicedContour *contour);
    // Null out of range.
    SlicedContoursFragment *fragment(int index) const;
    SlicedContour *contour(int index) const;
    virtual int fragmentCount() const;
    int contourCount() const;

    void renderBox(GraphicsObjectRenderAdvisor *advisor, float xMin, float xMax, float yMin, float yMax,
                   float zMin, float zMax) override;
    // The lit surface between the slices of each fragment.
    void render(GraphicsObjectRenderAdvisor *advisor) override;

    // The answers of all fragments one after the other, see SlicedContoursFragment::segmentsNear().
    QList<GraphicsObject *> *segmentsNear(float x, float y, float z, float radius);
    QList<GraphicsObject *> *objectsAround(float x, float y, float z, float radius) override;
    // The first and the last points of segments, whose coordinates all differ by at most radius.
    QList<Vector3> endPointsNear(const Vector3 &position, float radius) const;
    // Not all points but the end points only: endPointsNear().
    QList<Vector3> contourPointsAround(const Vector3 &position, float radius) override;
    // All points of segments whose coordinates all differ by at most radius.
    virtual QList<Vector3> contourPointsNear(const Vector3 &position, float radius) const;

    // The largest coordinate of all points (z: of all segments), at least 0.
    float extentX() const override;
    float extentY() const override;
    float extentZ() const override;
    // Whether there is a segment.
    bool hasContent() const override;
    // The largest finite float without segments.
    float firstSignificantZ() const override;
    float nextSignificantZ(float z) const override;
    float previousSignificantZ(float z) const override;

    using ImageObject::updated;

signals:
    void updated(QObject *slicedContoursObject);
    // A fragment or contour was added or has gone.
    void structureChanged();

public slots:
    void fragmentUpdated(QObject *fragment);

private:
    friend class SlicedContour;
    friend class SlicedContoursFragment;

    void adopt(SlicedContoursFragment *fragment);
    void adopt(SlicedContour *contour);
    void takeOut(SlicedContoursFragment *fragment);
    void takeOut(SlicedContour *contour);
    void noteLevelsChanged();
    const SegmentLevels &segmentLevels() const;
    void renderParts(GraphicsObjectRenderAdvisor *advisor, float xMin, float xMax, float yMin, float yMax,
                     float zMin, float zMax);

    // Held for writing while the lists here, in fragments and in contours change and before one of their
    // members dies; for reading while another thread draws. The mutex of a segment may be taken under it,
    // never the other way round; nothing is emitted under it.
    mutable ReadWriteLock structure;
    QList<SlicedContoursFragment *> fragments;
    QList<SlicedContour *> contours;
    mutable std::optional<SegmentLevels> levels; // made when first asked for; main thread only
};
