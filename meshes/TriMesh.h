#pragma once

#include "meshes/geometry/Fragment.h"
#include "objects/LabeledGraphicsObject.h"

// A whole mesh as a named list of triangles, owned by its mesh object. It draws nothing.
class TriMesh : public LabeledGraphicsObject, public TriSurface
{
    Q_OBJECT

public:
    int graphicsType() const override { return GraphicsTypeMesh; }
};
