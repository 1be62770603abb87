#include "meshes/TriMeshFragment.h"

#include "meshes/TriMeshDrawing.h"
#include "meshes/geometry/ClosestPoint.h"

// The label is copied with the faces, under the lock, and not by the base class.
// NOLINTNEXTLINE(bugprone-copy-constructor-init): see above
TriMeshFragment::TriMeshFragment(const TriMeshFragment &source)
    : LabeledGraphicsObject() // NOLINT(readability-redundant-member-init): the compiler asks for it
    , TriFragment()
    , ReadWriteLock()
{
    const ReadLocker lock(const_cast<TriMeshFragment *>(&source));
    LabeledGraphicsObject::setLabel(source.label());
    faces = source.faces;
    changes = source.changes.load();
}

TriMeshFragment::~TriMeshFragment()
{
    lockForWrite();
    unlock();
}

int TriMeshFragment::graphicsType() const
{
    return GraphicsTypeMesh;
}

void TriMeshFragment::setLabel(const QString &label)
{
    const WriteLocker lock(this);
    LabeledGraphicsObject::setLabel(label);
}

void TriMeshFragment::addFace(const MERV::BRep::TriFace &face)
{
    const WriteLocker lock(this);
    append(face);
    ++changes;
}

void TriMeshFragment::clear()
{
    const WriteLocker lock(this);
    TriFragment::clear();
    ++changes;
}

void TriMeshFragment::setFaces(std::vector<MERV::BRep::TriFace> newFaces)
{
    // The old faces are freed by the caller, without the lock.
    const WriteLocker lock(this);
    faces.swap(newFaces);
    ++changes;
}

int TriMeshFragment::faceCount() const
{
    const ReadLocker lock(const_cast<TriMeshFragment *>(this));
    return static_cast<int>(size());
}

const MERV::BRep::TriFace &TriMeshFragment::face(int index) const
{
    const ReadLocker lock(const_cast<TriMeshFragment *>(this));
    return faces[static_cast<std::size_t>(index)];
}

MERV::BRep::Point TriMeshFragment::closestPointTo(const MERV::BRep::Point &point) const
{
    return MERV::BRep::closestPointByScan(all(), point).point;
}

void TriMeshFragment::notifyFragmentUpdated()
{
    emit updated(this);
}
