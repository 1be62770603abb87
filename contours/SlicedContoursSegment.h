#pragma once

#include "contours/PointIndex.h"
#include "contours/SegmentSnapshot.h"
#include "objects/GraphicsObject.h"
#include "objects/Vector3.h"

#include <QList>
#include <QMutex>

#include <optional>
#include <vector>

class GraphicsObjectRenderAdvisor;
class SlicedContoursFragment;

// A polyline at one single z: a piece of the outline of a structure on one slice. Lengths and positions in
// mm. Owned by its fragment. Points and z are guarded by a mutex of its own: any thread may read them while
// the main thread, the only one that changes them, edits. Emits updated(QObject *) after each change, never
// while the mutex is held.
class SlicedContoursSegment : public GraphicsObject
{
    Q_OBJECT

public:
    explicit SlicedContoursSegment(QObject *parent = nullptr);
    SlicedContoursSegment(const QPointF &point, float zMm, QObject *parent = nullptr);
    ~SlicedContoursSegment() override;

    int graphicsType() const override;

    // Reading; any thread.
    int pointCount() const;
    // A negative index counts from the end: -1 is the last point. The null point beyond either end.
    QPointF point(int index) const;
    QPointF lastPoint() const;
    // The index-th point for a walk from the start (direction 0 or more) or from the end (negative
    // direction).
    QPointF pointWalked(int index, int direction) const;
    float z() const;
    SegmentSnapshot snapshot() const;
    // Lengths of the whole line, from its start to the point at index, and from there to its end. An index
    // beyond an end counts as that end. Summed in single precision.
    float length() const;
    float lengthUpTo(int index) const;
    float lengthFrom(int index) const;

    // Queries around a position; any thread.
    // Whether z and a point lie in the half-open box from -radius (included) to +radius (excluded).
    bool isNear(float x, float y, float zMm, float radius) const;
    // Append the points, or the first and the last point, whose coordinates all differ by at most radius.
    void appendPointsNear(const Vector3 &position, double radius, QList<Vector3> &points) const;
    void appendEndPointsNear(const Vector3 &position, double radius, QList<Vector3> &points) const;
    // The largest coordinate of all points, at least 0.
    double extentX() const;
    double extentY() const;

    // Editing; main thread.
    // Adds a point at the end. Going back to the point before the last one, or to an earlier vertex other
    // than the first, takes away what was drawn since. A last point that lies exactly on the line to the new
    // one is dropped. Nothing happens, and nothing is emitted, if the point is the last one already.
    void addPointBack(const QPointF &point);
    // The same at the start, but points on a line are kept.
    void addPointFront(const QPointF &point);
    void setZ(float zMm);
    // Between the two no change is emitted; the second emits once.
    void beginUpdates();
    void endUpdates();
    // Splices patch in, where one or both of its ends lie nearer than 1 mm to points of this segment. With
    // lostLength null it acts: true means that the points were taken over and patch was deleted. With
    // lostLength it changes nothing, adds the length that acting would discard, and returns false. False as
    // well if patch has fewer than 2 points, is this segment, or touches it nowhere.
    bool replaceWith(SlicedContoursSegment *patch, float *lostLength);

    // Draws the line if its z lies in z0 <= z < z1 (or at z0 if both are equal); x and y limits are not used.
    virtual void renderBox(GraphicsObjectRenderAdvisor *advisor, float x0, float x1, float y0, float y1,
                           float z0, float z1);

signals:
    void updated(QObject *segment);

private:
    friend class SlicedContoursFragment;

    // Bounds of all points; coordinates that are no numbers take no part.
    struct Bounds
    {
        double minX, maxX, minY, maxY;
    };

    // The following are for callers that hold the mutex.
    const Bounds &lockedBounds() const;
    float lockedLength() const;
    float lockedLengthUpTo(std::ptrdiff_t index) const;
    float lockedLengthFrom(std::ptrdiff_t index) const;
    bool lockedAddPointBack(const QPointF &point);
    std::ptrdiff_t lockedFirstOccurrence(const QPointF &point);
    void lockedAppend(const QPointF &point);
    void lockedRemoveLast();
    bool lockedAddPointFront(const QPointF &point);
    bool lockedReplace(const std::vector<QPointF> &patch, float *lostLength);
    bool lockedReplaceBetween(std::ptrdiff_t s, std::ptrdiff_t e, const std::vector<QPointF> &patch,
                              float *lostLength);
    bool lockedReplaceFrom(std::ptrdiff_t s, const std::vector<QPointF> &walked, float *lostLength);
    std::ptrdiff_t lockedNearest(const QPointF &point, double limitMm) const;

    void lockedNotePointsChanged();
    void noteZChanged();
    void emitUpdated();

    mutable QMutex mutex; // guards the next five
    std::vector<QPointF> points;
    std::optional<PointIndex> pointIndex; // of points; made when a long line grows at its end
    float zPosition = 0.0f;
    mutable Bounds bounds{};
    mutable bool boundsKnown = false;

    bool autoUpdate = true;
    SlicedContoursFragment *owner = nullptr; // whose list this segment is in
};
