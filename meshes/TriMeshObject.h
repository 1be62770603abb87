#pragma once

#include "objects/ImageObject.h"

#include <QList>

#include <mutex>

class TriMesh;
class TriMeshFragment;

// An image object made of triangle meshes. Owns its fragments and meshes as QObject children. GUI thread, but
// for drawing, which a worker may do as well.
class TriMeshObject : public ImageObject
{
    Q_OBJECT

public:
    TriMeshObject() = default;
    TriMeshObject(const QString &label, QObject *parent);

    int graphicsType() const override;
    int imageType() const override;

    // New and empty, at the end of the list.
    TriMeshFragment *addFragment(const QString &label);
    TriMesh *addMesh(const QString &label);
    // Null out of range.
    TriMeshFragment *fragment(int index) const;
    int fragmentCount() const;
    // The number of fragments.
    int meshCount() const override;

    // All fragments, lit.
    void render(GraphicsObjectRenderAdvisor *advisor) override;
    // All fragments, whatever the box.
    void renderBox(GraphicsObjectRenderAdvisor *advisor, float xMin, float xMax, float yMin, float yMax,
                   float zMin, float zMax) override;
    // The sections of all fragments with the plane.
    bool renderPlane(GraphicsObjectRenderAdvisor *advisor, const double plane[4]) override;
    bool renderPlane(GraphicsObjectRenderAdvisor *advisor, const float plane[4]) override;

private:
    QList<TriMeshFragment *> drawnFragments() const;

    mutable std::mutex fragmentsMutex; // held to change the list and to read it from any thread
    QList<TriMeshFragment *> fragments;
    QList<TriMesh *> meshes;
};
