#include "meshes/TriMeshObject.h"

#include "meshes/TriMesh.h"
#include "meshes/TriMeshFragment.h"

TriMeshObject::TriMeshObject(const QString &label, QObject *parent)
    : ImageObject(label, parent)
{}

int TriMeshObject::graphicsType() const
{
    return GraphicsTypeGroup;
}

int TriMeshObject::imageType() const
{
    return ImageTypeMesh;
}

TriMeshFragment *TriMeshObject::addFragment(const QString &label)
{
    auto *fragment = new TriMeshFragment;
    fragment->setParent(this);
    fragment->setLabel(label);
    const std::lock_guard guard(fragmentsMutex);
    fragments.append(fragment);
    return fragment;
}

QList<TriMeshFragment *> TriMeshObject::drawnFragments() const
{
    const std::lock_guard guard(fragmentsMutex);
    return fragments;
}

TriMesh *TriMeshObject::addMesh(const QString &label)
{
    auto *mesh = new TriMesh;
    mesh->setParent(this);
    mesh->setLabel(label);
    meshes.append(mesh);
    return mesh;
}

TriMeshFragment *TriMeshObject::fragment(int index) const
{
    return fragments.value(index, nullptr);
}

int TriMeshObject::fragmentCount() const
{
    return static_cast<int>(fragments.size());
}

int TriMeshObject::meshCount() const
{
    return fragmentCount();
}

void TriMeshObject::render(GraphicsObjectRenderAdvisor *advisor)
{
    const QList<TriMeshFragment *> drawn = drawnFragments();
    for (TriMeshFragment *fragment : drawn)
        fragment->render(advisor);
}

void TriMeshObject::renderBox(GraphicsObjectRenderAdvisor *advisor, float, float, float, float, float, float)
{
    render(advisor);
}

bool TriMeshObject::renderPlane(GraphicsObjectRenderAdvisor *advisor, const double plane[4])
{
    const QList<TriMeshFragment *> drawn = drawnFragments();
    for (TriMeshFragment *fragment : drawn)
        fragment->renderSection(advisor, plane);
    return true;
}

bool TriMeshObject::renderPlane(GraphicsObjectRenderAdvisor *advisor, const float plane[4])
{
    const double wide[4] = {plane[0], plane[1], plane[2], plane[3]};
    return renderPlane(advisor, wide);
}
