#pragma once

#include "meshes/TriMeshObject.h"

#include <QMap>
#include <QPointer>

class SlicedContoursFragment;
class SlicedContoursObject;

// The ribbons of triangles between the lines of neighbouring slices: one mesh fragment for each fragment of
// the contours, rebuilt whole on every change of any of them, in the thread of the change, the GUI thread.
// Does not own the contours; keeps the last mesh when they are closed. Each rebuilt mesh fragment emits
// updated() if it has at least two lines, and always updated(QObject *); then this emits updated().
class SlicedContoursTriangulator : public TriMeshObject
{
    Q_OBJECT

public:
    explicit SlicedContoursTriangulator(SlicedContoursObject *source, QObject *parent = nullptr);

    // The mesh of the fragment; null if there is none.
    TriMeshFragment *triangulationOf(const SlicedContoursFragment *fragment) const;

    QList<ImageObject *> sources() const override;
    void detachFrom(ImageObject *closing) override;

public slots:
    void retriangulate();
    void retriangulate(QObject *object);

private:
    void retriangulate(const SlicedContoursFragment &fragment);

    struct Entry
    {
        QPointer<const SlicedContoursFragment> fragment; // null when it has gone: the address may come again
        TriMeshFragment *mesh = nullptr;
    };

    QPointer<SlicedContoursObject> source;
    QMap<const SlicedContoursFragment *, Entry> triangulations; // entries are never removed
};
