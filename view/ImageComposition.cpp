#include "view/ImageComposition.h"

#include "contours/EdgePointSet.h"
#include "contours/SlicedContour.h"
#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "contours/SlicedContoursSegment.h"
#include "objects/MervImageObject.h"
#include "resources/Resources.h"
#include "view/GraphicsPod.h"

#include <algorithm>
#include <iostream>
#include <limits>
#include <memory>
#include <utility>

ImageComposition::ImageComposition(QObject *parent)
    : QAbstractItemModel(parent)
    , imageIcon(Resources::icon(QStringLiteral("pixmapimage.png")))
    , fragmentIcon(Resources::icon(QStringLiteral("slicedcontoursfragment.png")))
{}

ImageComposition::~ImageComposition() = default;

bool ImageComposition::addImageObject(ImageObject *object)
{
    if (object == nullptr)
        return false;
    emit layoutAboutToBeChanged();
    const qsizetype before = pods.size();
    if (auto *image = qobject_cast<MervImageObject *>(object)) {
        const int components = image->voxels() != nullptr ? image->voxels()->getChannels() : 0;
        for (int component = 0; component < components; ++component)
            appendPod(object, component);
    } else {
        appendPod(object, GraphicsPod::wholeObject);
    }
    if (pods.size() > before)
        connect(pods.last(), &GraphicsPod::updated, this, &ImageComposition::updated);
    followStructure(object);
    emit layoutChanged();
    return true;
}

void ImageComposition::appendPod(ImageObject *object, int component)
{
    auto *pod = new GraphicsPod(object, component, this);
    pods.append(pod);
    connect(pod, &GraphicsPod::configurationChanged, this, &ImageComposition::componentUpdated);
    emit imageAdded();
}

void ImageComposition::followStructure(ImageObject *object)
{
    if (auto *contours = qobject_cast<SlicedContoursObject *>(object))
        connect(contours, &SlicedContoursObject::structureChanged, this, &ImageComposition::structureChanged,
                Qt::UniqueConnection);
    // A second net for objects that are deleted without an announcement; they are gone but for their address.
    connect(object, &QObject::destroyed, this, [this, object] { removePods(object); });
}

void ImageComposition::componentUpdated()
{
    emit updated();
}

void ImageComposition::detachFrom(ImageObject *closing)
{
    emit objectClosing(closing);
    if (edited == closing || rootImageObject(edited) == closing)
        edited = nullptr;
    disconnect(closing, nullptr, this, nullptr);
    removePods(closing);
}

int ImageComposition::podCount() const
{
    return static_cast<int>(pods.size());
}

GraphicsPod *ImageComposition::pod(int row) const
{
    return pods.value(row, nullptr);
}

float ImageComposition::extentX() const
{
    float extent = 0.0f;
    for (const GraphicsPod *pod : pods)
        extent = std::max(extent, pod->object()->extentX());
    return extent;
}

float ImageComposition::extentY() const
{
    float extent = 0.0f;
    for (const GraphicsPod *pod : pods)
        extent = std::max(extent, pod->object()->extentY());
    return extent;
}

float ImageComposition::extentZ() const
{
    float extent = 0.0f;
    for (const GraphicsPod *pod : pods)
        extent = std::max(extent, pod->object()->extentZ());
    return extent;
}

float ImageComposition::granularity() const
{
    if (pods.isEmpty())
        return 1.0f;
    float smallest = std::numeric_limits<float>::max();
    for (const GraphicsPod *pod : pods)
        smallest = std::min(smallest, pod->object()->granularity());
    return smallest;
}

float ImageComposition::analyzedGranularity() const
{
    const ImageObject *object = analyzedObject();
    return object != nullptr ? object->granularity() : 1.0f;
}

ImageObject *ImageComposition::analyzedObject() const
{
    const GraphicsPod *found = pod(analyzed);
    return found != nullptr ? found->object() : nullptr;
}

GraphicsObject *ImageComposition::editedObject() const
{
    return edited;
}

bool ImageComposition::selectNextGraphicsObjectForEditing()
{
    std::cout << "Selecting next graphics object for editing ..." << std::endl;
    bool found = edited == nullptr;
    GraphicsObject *first = nullptr;
    for (int row = 0; row < podCount(); ++row) {
        const SlicedContoursObject *contours = contoursAt(row);
        for (int i = 0; contours != nullptr && i < contours->fragmentCount(); ++i) {
            GraphicsObject *fragment = contours->fragment(i);
            if (first == nullptr)
                first = fragment;
            if (found)
                return editNext(fragment);
            found = fragment == edited;
        }
    }
    return found && first != nullptr && first != edited && editNext(first);
}

bool ImageComposition::editNext(GraphicsObject *next)
{
    edited = next;
    emit dataChanged(QModelIndex(), QModelIndex()); // everywhere
    return true;
}

void ImageComposition::setCurrentRow(int row)
{
    current = row;
}

MervImageObject *ImageComposition::windowedImage() const
{
    if (const GraphicsPod *chosen = pod(current))
        return qobject_cast<MervImageObject *>(chosen->object());
    if (ImageObject *object = analyzedObject()) {
        if (auto *image = qobject_cast<MervImageObject *>(object))
            return image;
        if (qobject_cast<EdgePointSet *>(object) != nullptr)
            if (auto *image = qobject_cast<MervImageObject *>(object->sources().value(0, nullptr)))
                return image;
    }
    for (const GraphicsPod *pod : pods)
        if (auto *image = qobject_cast<MervImageObject *>(pod->object()))
            return image;
    return nullptr;
}

EdgePointList *ImageComposition::edgePointsNear(float x, float y, float z, float radius)
{
    const GraphicsPod *found = pod(analyzed);
    return found != nullptr ? found->edgePointsAround(x, y, z, radius) : new EdgePointList;
}

QList<GraphicsObject *> *ImageComposition::objectsNear(float x, float y, float z, float radius) const
{
    auto found = std::make_unique<QList<GraphicsObject *>>();
    for (const GraphicsPod *pod : pods) {
        const std::unique_ptr<QList<GraphicsObject *>> more(pod->object()->objectsAround(x, y, z, radius));
        found->append(*more);
    }
    return found.release();
}

float ImageComposition::nextSignificantZ(float z) const
{
    std::optional<float> nearest;
    for (const GraphicsPod *pod : pods) {
        if (!pod->object()->hasContent())
            continue;
        const float answer = pod->object()->nextSignificantZ(z);
        if (answer > z && (!nearest || answer < *nearest))
            nearest = answer;
    }
    return nearest.value_or(z);
}

float ImageComposition::previousSignificantZ(float z) const
{
    std::optional<float> nearest;
    for (const GraphicsPod *pod : pods) {
        if (!pod->object()->hasContent())
            continue;
        const float answer = pod->object()->previousSignificantZ(z);
        if (answer < z && (!nearest || answer > *nearest))
            nearest = answer;
    }
    return nearest.value_or(z);
}

QList<Vector3> ImageComposition::contourPointsNear(const Vector3 &point, float radius) const
{
    QList<Vector3> points;
    for (int row = 0; row < podCount(); ++row)
        if (const SlicedContoursObject *contours = contoursAt(row))
            points.append(contours->contourPointsNear(point, radius));
    return points;
}

QList<Vector3> ImageComposition::editedEndPointsNear(const Vector3 &point, float radius) const
{
    if (edited == nullptr || edited->graphicsType() != GraphicsTypeFragment)
        return {};
    const auto *contours = qobject_cast<SlicedContoursObject *>(edited->parentGraphicsObject());
    return contours != nullptr ? contours->endPointsNear(point, radius) : QList<Vector3>();
}

// The pod and the index of the colour of a contour or fragment that is shown.
std::optional<std::pair<GraphicsPod *, int>> ImageComposition::advisedColorPlace(GraphicsObject *object,
                                                                                 int key) const
{
    if (key != RenderKey::Color)
        return std::nullopt;
    const int type = object->graphicsType();
    if (type != GraphicsTypeContour && type != GraphicsTypeFragment)
        return std::nullopt;
    const auto *contours = qobject_cast<SlicedContoursObject *>(object->parentGraphicsObject());
    if (contours == nullptr)
        return std::nullopt;
    GraphicsPod *pod = podOf(contours);
    const auto place = pod != nullptr ? childPlace(object) : std::nullopt;
    if (!place)
        return std::nullopt;
    return std::pair(pod, place->childRow);
}

bool ImageComposition::overrides(GraphicsObject *object, int key, int)
{
    if (advisedColorPlace(object, key))
        return true;
    if (object->graphicsType() != GraphicsTypeImage)
        return false;
    const bool isImageKey =
        key == RenderKey::Component || key == RenderKey::DisplayMode || key == RenderKey::Color;
    return isImageKey && podOf(object) != nullptr;
}

std::uint32_t ImageComposition::value(GraphicsObject *object, int key, int)
{
    if (const auto place = advisedColorPlace(object, key))
        return place->first->color(place->second).rgba();
    if (object->graphicsType() != GraphicsTypeImage)
        return 0;
    GraphicsPod *pod = podOf(object);
    if (pod != nullptr && key == RenderKey::DisplayMode)
        return static_cast<std::uint32_t>(pod->displayMode());
    if (pod != nullptr && key == RenderKey::Color)
        return pod->color(0).rgba();
    return 0;
}

SlicedContoursSegment *guessSegment(SlicedContoursSegment *target, const QList<Vector3> &path,
                                    ImageComposition *composition)
{
    return guessSegment(target, path, static_cast<EdgePointSource &>(*composition));
}
