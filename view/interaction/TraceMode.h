#pragma once

#include "contours/EdgePoint.h"
#include "objects/Vector3.h"
#include "view/interaction/InteractionMode.h"

#include <QCoreApplication>
#include <QList>
#include <QPointer>

class SlicedContoursFragment;
class SlicedContoursSegment;

// Draws contours: the left button follows edge points, the right one draws freehand, ends of segments
// attract. A line that is drawn over older ones replaces what lies between its ends.
class TraceMode : public InteractionMode
{
    Q_DECLARE_TR_FUNCTIONS(TraceMode)

public:
    using InteractionMode::InteractionMode;

    void enter() override;
    void leave() override;
    void press(const MouseInput &input) override;
    void move(const MouseInput &input) override;
    void release(const MouseInput &input) override;

private:
    EdgePointList markers();
    void refreshMarkers();
    EdgePoint bestMarker();
    QList<Vector3> endsNearCursor() const;
    QList<Vector3> contoursNearCursor() const;
    SlicedContoursSegment *segmentNearCursor(SlicedContoursFragment &fragment) const;
    bool continueAnchor(const EdgePoint &edge);
    void startSegment(SlicedContoursFragment &fragment, const MouseInput &input, const EdgePoint &edge);
    void addAtActiveEnd(double x, double y);
    void deleteShortSegment();
    bool confirmLoss(SlicedContoursSegment *other);
    void splice(const QPointer<SlicedContoursSegment> &other);
};
