#pragma once

#include "contours/SegmentSnapshot.h"
#include "objects/LabeledGraphicsObject.h"

#include <QList>

#include <vector>

class GraphicsObjectRenderAdvisor;
class ReadWriteLock;
class SlicedContoursObject;
class SlicedContoursSegment;

// A named set of segments over all slices: one piece of a structure's outline, traced and edited by itself.
// Owns its segments; owned by its contours object. Main thread; renderBox() and snapshots() also on another
// thread that holds the object's structure for reading. Emits updated(QObject *) for each change of a segment
// and for each segment that is adopted or deleted.
class SlicedContoursFragment : public LabeledGraphicsObject
{
    Q_OBJECT

public:
    explicit SlicedContoursFragment(QObject *parent = nullptr);
    ~SlicedContoursFragment() override;

    int graphicsType() const override;

    int segmentCount() const;
    // Null out of range.
    SlicedContoursSegment *segment(int index) const;
    // A new segment with this first point. Emits nothing.
    SlicedContoursSegment *newSegment(const QPointF &point, float zMm);
    // Takes an existing segment over, from another fragment too, and emits updated(). Ignores null and a
    // segment that is here already.
    void addSegment(SlicedContoursSegment *segment);

    // The segments near the position (see SlicedContoursSegment::isNear()), and behind them the fragment
    // itself if there are any. The caller owns the list, not the objects.
    QList<GraphicsObject *> *segmentsNear(float x, float y, float z, float radius);

    // The segments whose z lies in z0 <= z < z1, or at z0 if both are equal, in stored order.
    std::vector<SegmentSnapshot> snapshots(float z0, float z1) const;

    virtual void renderBox(GraphicsObjectRenderAdvisor *advisor, float x0, float x1, float y0, float y1,
                           float z0, float z1);
    // Draws the lit surface between successive slices.
    virtual void renderSkin(GraphicsObjectRenderAdvisor *advisor);

signals:
    void updated(QObject *fragment);

public slots:
    void segmentDestroyed(QObject *segment);
    void segmentUpdated(QObject *segment);

private:
    friend class SlicedContoursObject;
    friend class SlicedContoursSegment;

    void adopt(SlicedContoursSegment *segment);
    void takeOut(SlicedContoursSegment *segment);
    void noteLevelsChanged();
    ReadWriteLock *structure() const; // null outside a contours object

    QList<SlicedContoursSegment *> segments; // changed under the write lock of structure()
    SlicedContoursObject *owner = nullptr;   // whose list this fragment is in
};
