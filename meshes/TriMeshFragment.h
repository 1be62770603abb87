#pragma once

#include "meshes/geometry/Fragment.h"
#include "objects/LabeledGraphicsObject.h"
#include "platform/ReadWriteLock.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

class GraphicsObjectRenderAdvisor;
struct LitVertex;

// A named list of triangles (mm) with a read-write lock: a triangle soup, in which neighbours repeat a point
// by value. Owned by its mesh object. The GUI thread is the only writer and reads without the lock; a worker
// takes a snapshot with the copy constructor and works on that. Drawing may happen on either. Nothing is
// emitted under the lock.
class TriMeshFragment : public LabeledGraphicsObject, public TriFragment, public ReadWriteLock
{
    Q_OBJECT

public:
    TriMeshFragment() = default;
    // A private snapshot: a deep copy of all faces and of the label, taken under the source's read lock,
    // without a parent.
    TriMeshFragment(const TriMeshFragment &source);
    TriMeshFragment &operator=(const TriMeshFragment &) = delete;
    // Waits for running readers.
    ~TriMeshFragment() override;

    int graphicsType() const override;
    // Under the write lock, for the sake of snapshots.
    void setLabel(const QString &label) override;

    // Appends a copy. Takes the write lock, as clear() and setFaces() do.
    void addFace(const MERV::BRep::TriFace &face);
    void clear();
    // Replaces all faces under one write lock: no reader ever sees a part of them.
    void setFaces(std::vector<MERV::BRep::TriFace> newFaces);
    int faceCount() const;
    // A reference into the list, valid until the next change: for snapshots and the GUI thread only.
    const MERV::BRep::TriFace &face(int index) const;

    // The foot on the face that is nearest to the point, the first of equally near ones; invalid without
    // faces. See TriFace::closestPointTo(). Takes no lock: for snapshots and the GUI thread.
    MERV::BRep::Point closestPointTo(const MERV::BRep::Point &point) const;

    // Grows with every change of the faces. Any thread.
    std::uint64_t revision() const { return changes; }

    // Draws the triangles in the current colour, lit from both sides, with one normal each. What is sent is
    // kept until the faces change. Leaves lighting, light 0, the scaling of normals and the depth test off,
    // and all other state of OpenGL as it was.
    virtual void render(GraphicsObjectRenderAdvisor *advisor);
    // Draws the lines in which the triangles cut the plane a x + b y + c z + d = 0. Always true.
    virtual bool renderSection(GraphicsObjectRenderAdvisor *advisor, const double plane[4]);

    // Emits updated(QObject *).
    void notifyFragmentUpdated();

    using GraphicsObject::updated;

signals:
    void updated(QObject *fragment);

private:
    using TriFragment::append; // neither takes the lock nor counts: addFace() does

    std::shared_ptr<const std::vector<LitVertex>> drawing();

    std::atomic<std::uint64_t> changes{0};
    std::mutex drawnMutex; // guards the next two; taken before the fragment's own lock
    std::shared_ptr<const std::vector<LitVertex>> drawn;
    std::uint64_t drawnRevision = 0;
};
