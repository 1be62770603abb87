#pragma once

#include "tests/endurance/EditSource.h"
#include "tests/endurance/PlainContours.h"

#include <QObject>

class SlicedContoursFragment;
class SlicedContoursObject;
class SlicedContoursSegment;

// Edits contours at random, and a plain model of them in the same way. The object keeps to a few dozen lines.
// Borrows object and source; the object must be without fragments and contours, or be what the model holds.
class ContourEditor : public QObject
{
public:
    enum Edits
    {
        AllEdits,
        LineEdits // fragments and contours stay as they are, as in a session at the program
    };

    ContourEditor(SlicedContoursObject &edited, EditSource &decisions, PlainContours model = {},
                  Edits allowed = AllEdits);

    // A new contour with new fragments that it refers to.
    void addContour(const QString &label, const QStringList &fragmentLabels);
    // One edit of both.
    void step();
    const PlainContours &plain() const { return model; }
    // Whether every change so far has been announced by updated(QObject *): what follows the object must be
    // up to date then. A new fragment, and a line of one point, announce nothing.
    bool isAnnounced() const { return !silent; }

    // Throw Violation unless the object is what the model says, and every number in it is finite.
    void verify() const;
    static void verifyEqual(const SlicedContoursObject &object, const PlainContours &model);

private:
    // Positions of a line in both.
    struct Place
    {
        int fragment;
        int line;
    };
    std::optional<Place> anyLine();
    PlainLine &plainLine(Place place);
    SlicedContoursSegment *realLine(Place place) const;

    double coordinate();
    QPointF somewhere();
    QPointF somePointOf(const PlainLine &line);
    float someLevel();
    QString someLabel();

    void addBack();
    void addFront();
    void drag();
    void drawLine();
    void drawLoop();
    void redrawSlice();
    void splice();
    void spliceDry();
    void spliceExisting();
    void erase();
    void moveToLevel();
    void moveToFragment();
    void rename();
    void newFragment();
    void addDrawnFragment();
    void deleteFragment();
    void newContour();
    void deleteContour();
    void refer();

    bool isFull(int fragment) const;
    void drawInto(int fragment, float z, const std::vector<QPointF> &points);
    void drawLoop(int first, int second, float z);
    void noteDeleted(int fragmentId);

    SlicedContoursObject &object;
    EditSource &source;
    PlainContours model;
    const Edits edits;
    int lastId = 0;
    bool silent = false;
};
