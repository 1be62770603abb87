#pragma once

#include "objects/Entity.h"

#include <QObject>
#include <QString>

// What graphicsType() answers.
enum GraphicsType : int
{
    GraphicsTypeOther = 0,
    GraphicsTypeImage = 1, // voxel images
    GraphicsTypeGroup = 2, // contours objects and mesh objects
    GraphicsTypeContour = 3,
    GraphicsTypeFragment = 4,
    GraphicsTypeSegment = 5,
    GraphicsTypeMesh = 8 // meshes and mesh fragments
};

// Something that has a place in 3-D patient space (mm). Owned by its QObject parent, or by the image
// manager's list if it is an image object. Main thread only, unless a class says otherwise. Emits updated().
class GraphicsObject : public QObject, public Entity
{
    Q_OBJECT

public:
    GraphicsObject() = default;
    explicit GraphicsObject(QObject *parent);

    // The object that this one is a part of, null for a root. Here: the QObject parent if it is a graphics
    // object.
    virtual GraphicsObject *parentGraphicsObject() const;
    // One of GraphicsType.
    virtual int graphicsType() const;
    virtual const QString &displayName() const;

signals:
    // The appearance or the content changed.
    void updated();
};
