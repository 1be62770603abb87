#include "objects/GraphicsObject.h"

GraphicsObject::GraphicsObject(QObject *parent)
    : QObject(parent)
{}

GraphicsObject *GraphicsObject::parentGraphicsObject() const
{
    return qobject_cast<GraphicsObject *>(parent());
}

int GraphicsObject::graphicsType() const
{
    return GraphicsTypeOther;
}

const QString &GraphicsObject::displayName() const
{
    static const QString name = tr("some graphics object");
    return name;
}
