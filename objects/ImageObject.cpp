#include "objects/ImageObject.h"

#include <limits>

ImageObject::ImageObject(const QString &label, QObject *parent)
    : LabeledGraphicsObject(label, parent)
{}

ImageObject::ImageObject(const LabeledGraphicsObject &other)
    : LabeledGraphicsObject(other)
{}

ImageObject::ImageObject(const ImageObject &other)
    : LabeledGraphicsObject(other)
{}

GraphicsObject *ImageObject::parentGraphicsObject() const
{
    return nullptr;
}

int ImageObject::imageType() const
{
    return ImageTypeOther;
}

void ImageObject::renderBox(GraphicsObjectRenderAdvisor *, float, float, float, float, float, float) {}

void ImageObject::renderPoint(GraphicsObjectRenderAdvisor *advisor, const double position[4])
{
    renderPoint(advisor, static_cast<float>(position[0] / position[3]),
                static_cast<float>(position[1] / position[3]), static_cast<float>(position[2] / position[3]));
}

void ImageObject::renderPoint(GraphicsObjectRenderAdvisor *, float, float, float) {}

bool ImageObject::renderPlane(GraphicsObjectRenderAdvisor *advisor, const double plane[4])
{
    const float narrow[4] = {static_cast<float>(plane[0]), static_cast<float>(plane[1]),
                             static_cast<float>(plane[2]), static_cast<float>(plane[3])};
    return renderPlane(advisor, narrow);
}

bool ImageObject::renderPlane(GraphicsObjectRenderAdvisor *advisor, const float plane[4])
{
    if (plane[0] != 0.0f || plane[1] != 0.0f)
        return false;
    constexpr float open = std::numeric_limits<float>::max();
    const float z = -plane[2] * plane[3]; // on purpose a product: the normal has length 1
    renderBox(advisor, -open, open, -open, open, z, z);
    return true;
}

void ImageObject::render(GraphicsObjectRenderAdvisor *) {}

void ImageObject::beforePaint() {}

int ImageObject::meshCount() const
{
    return 0;
}

QList<EdgePoint *> *ImageObject::edgePointsAround(float, float, float, float)
{
    return new QList<EdgePoint *>;
}

QList<GraphicsObject *> *ImageObject::objectsAround(float, float, float, float)
{
    return new QList<GraphicsObject *>;
}

QList<Vector3> ImageObject::contourPointsAround(const Vector3 &, float)
{
    return {};
}

float ImageObject::extentX() const
{
    return 0.0f;
}

float ImageObject::extentY() const
{
    return 0.0f;
}

float ImageObject::extentZ() const
{
    return 0.0f;
}

bool ImageObject::hasContent() const
{
    return true;
}

float ImageObject::firstSignificantZ() const
{
    return 0.0f;
}

float ImageObject::nextSignificantZ(float z) const
{
    return z;
}

float ImageObject::previousSignificantZ(float z) const
{
    return z;
}

float ImageObject::granularity() const
{
    return 1.0f;
}

QList<ImageObject *> ImageObject::sources() const
{
    return {};
}

void ImageObject::detachFrom(ImageObject *) {}

void ImageObject::stopWorking() {}

QString ImageObject::filePath() const
{
    return loadedFrom;
}

ImageObject *rootImageObject(GraphicsObject *object)
{
    ImageObject *root = nullptr;
    for (; object != nullptr; object = object->parentGraphicsObject()) {
        if (auto *image = qobject_cast<ImageObject *>(object))
            root = image;
    }
    return root;
}
