#pragma once

#include "meshes/TriMeshObject.h"

#include <QPointer>

class AlignmentRun;
class TriMeshFragment;

// The free fragment moved rigidly onto the base fragment by 50 rounds of iterated closest points, each with
// the closed-form quaternion solution (B. K. P. Horn, doi:10.1364/JOSAA.4.000629; P. J. Besl and N. D. McKay,
// doi:10.1109/34.121791). Holds the moved copy as its fragment 0. Runs on the thread that changes the free
// fragment, the GUI thread; a change of the base starts no run. Does not own base and free; keeps the last
// copy when one of them is closed. Emits updated() after each round; after the last one its fragment emits
// updated(QObject *) and updated().
class TriMeshAligner : public TriMeshObject
{
    Q_OBJECT

public:
    TriMeshAligner(TriMeshFragment *base, TriMeshFragment *free, QObject *parent = nullptr);

    QList<ImageObject *> sources() const override;
    void detachFrom(ImageObject *closing) override;

public slots:
    void realign();
    void realign(QObject *object);

private:
    void runRounds(AlignmentRun &run);

    QPointer<TriMeshFragment> base, free;
    unsigned runs = 0; // begun so far
};
