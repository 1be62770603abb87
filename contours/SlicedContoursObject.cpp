#include "contours/SlicedContoursObject.h"

#include "contours/SlicedContour.h"
#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursSegment.h"

#include <QThread>

#include <algorithm>
#include <memory>
#include <utility>

SlicedContoursObject::SlicedContoursObject()
    : SlicedContoursObject(tr("Unnamed Contours"))
{}

SlicedContoursObject::SlicedContoursObject(const QString &label, QObject *parent)
    : ImageObject(label, parent)
{}

SlicedContoursObject::~SlicedContoursObject()
{
    QList<SlicedContoursFragment *> oldFragments;
    QList<SlicedContour *> oldContours;
    {
        const WriteLocker lock(&structure);
        oldFragments.swap(fragments);
        oldContours.swap(contours);
    }
    for (SlicedContour *contour : std::as_const(oldContours)) {
        contour->owner = nullptr;
        delete contour;
    }
    for (SlicedContoursFragment *fragment : std::as_const(oldFragments)) {
        fragment->owner = nullptr;
        fragment->disconnect(this);
        delete fragment;
    }
}

int SlicedContoursObject::graphicsType() const
{
    return GraphicsTypeGroup;
}

int SlicedContoursObject::imageType() const
{
    return ImageTypeContours;
}

SlicedContoursFragment *SlicedContoursObject::newFragment(const QString &label)
{
    auto *fragment = new SlicedContoursFragment;
    fragment->setLabel(label);
    adopt(fragment);
    return fragment;
}

void SlicedContoursObject::addFragment(SlicedContoursFragment *fragment)
{
    if (fragment != nullptr && fragment->owner != this)
        adopt(fragment);
}

void SlicedContoursObject::adopt(SlicedContoursFragment *fragment)
{
    if (SlicedContoursObject *before = fragment->owner; before != nullptr) {
        before->takeOut(fragment);
        fragment->disconnect(before);
    }
    fragment->setParent(this);
    {
        const WriteLocker lock(&structure);
        fragments.append(fragment);
        fragment->owner = this;
    }
    noteLevelsChanged();
    connect(fragment, qOverload<QObject *>(&SlicedContoursFragment::updated), this,
            &SlicedContoursObject::fragmentUpdated);
    emit structureChanged();
}

SlicedContour *SlicedContoursObject::newContour(const QString &label)
{
    auto *contour = new SlicedContour;
    contour->setLabel(label);
    adopt(contour);
    return contour;
}

void SlicedContoursObject::addContour(SlicedContour *contour)
{
    if (contour != nullptr && contour->owner != this)
        adopt(contour);
}

void SlicedContoursObject::adopt(SlicedContour *contour)
{
    if (contour->owner != nullptr)
        contour->owner->takeOut(contour);
    contour->setParent(this);
    {
        const WriteLocker lock(&structure);
        contours.append(contour);
        contour->owner = this;
    }
    emit structureChanged();
}

void SlicedContoursObject::takeOut(SlicedContoursFragment *fragment)
{
    {
        const WriteLocker lock(&structure);
        fragments.removeOne(fragment);
        for (SlicedContour *contour : std::as_const(contours))
            contour->forget(fragment);
        fragment->owner = nullptr;
    }
    noteLevelsChanged();
    emit structureChanged();
}

void SlicedContoursObject::takeOut(SlicedContour *contour)
{
    {
        const WriteLocker lock(&structure);
        contours.removeOne(contour);
        contour->owner = nullptr;
    }
    emit structureChanged();
}

SlicedContoursFragment *SlicedContoursObject::fragment(int index) const
{
    return fragments.value(index, nullptr);
}

SlicedContour *SlicedContoursObject::contour(int index) const
{
    return contours.value(index, nullptr);
}

int SlicedContoursObject::fragmentCount() const
{
    return static_cast<int>(fragments.size());
}

int SlicedContoursObject::contourCount() const
{
    return static_cast<int>(contours.size());
}

void SlicedContoursObject::renderBox(GraphicsObjectRenderAdvisor *advisor, float xMin, float xMax, float yMin,
                                     float yMax, float zMin, float zMax)
{
    // The main thread alone changes the lists: it needs no lock to read them.
    const ReadLocker lock(QThread::currentThread() != thread() ? &structure : nullptr);
    renderParts(advisor, xMin, xMax, yMin, yMax, zMin, zMax);
}

// Contours first, so that fills lie under lines.
void SlicedContoursObject::renderParts(GraphicsObjectRenderAdvisor *advisor, float xMin, float xMax,
                                       float yMin, float yMax, float zMin, float zMax)
{
    for (SlicedContour *contour : std::as_const(contours))
        contour->renderBox(advisor, xMin, xMax, yMin, yMax, zMin, zMax);
    for (SlicedContoursFragment *fragment : std::as_const(fragments))
        fragment->renderBox(advisor, xMin, xMax, yMin, yMax, zMin, zMax);
}

void SlicedContoursObject::render(GraphicsObjectRenderAdvisor *advisor)
{
    for (SlicedContoursFragment *fragment : std::as_const(fragments))
        fragment->renderSkin(advisor);
}

QList<GraphicsObject *> *SlicedContoursObject::segmentsNear(float x, float y, float z, float radius)
{
    auto found = std::make_unique<QList<GraphicsObject *>>();
    for (SlicedContoursFragment *fragment : std::as_const(fragments)) {
        const std::unique_ptr<QList<GraphicsObject *>> more(fragment->segmentsNear(x, y, z, radius));
        found->append(*more);
    }
    return found.release();
}

QList<GraphicsObject *> *SlicedContoursObject::objectsAround(float x, float y, float z, float radius)
{
    return segmentsNear(x, y, z, radius);
}

QList<Vector3> SlicedContoursObject::endPointsNear(const Vector3 &position, float radius) const
{
    QList<Vector3> points;
    for (const SlicedContoursSegment *segment : segmentLevels().around(position.z, radius))
        segment->appendEndPointsNear(position, radius, points);
    return points;
}

QList<Vector3> SlicedContoursObject::contourPointsAround(const Vector3 &position, float radius)
{
    return endPointsNear(position, radius);
}

QList<Vector3> SlicedContoursObject::contourPointsNear(const Vector3 &position, float radius) const
{
    QList<Vector3> points;
    for (const SlicedContoursSegment *segment : segmentLevels().around(position.z, radius))
        segment->appendPointsNear(position, radius, points);
    return points;
}

float SlicedContoursObject::extentX() const
{
    double extent = 0.0;
    for (const SlicedContoursFragment *fragment : fragments)
        for (int i = 0; i < fragment->segmentCount(); ++i)
            extent = std::max(extent, fragment->segment(i)->extentX());
    return static_cast<float>(extent);
}

float SlicedContoursObject::extentY() const
{
    double extent = 0.0;
    for (const SlicedContoursFragment *fragment : fragments)
        for (int i = 0; i < fragment->segmentCount(); ++i)
            extent = std::max(extent, fragment->segment(i)->extentY());
    return static_cast<float>(extent);
}

float SlicedContoursObject::extentZ() const
{
    return segmentLevels().extent();
}

bool SlicedContoursObject::hasContent() const
{
    return std::any_of(fragments.begin(), fragments.end(),
                       [](const SlicedContoursFragment *fragment) { return fragment->segmentCount() > 0; });
}

float SlicedContoursObject::firstSignificantZ() const
{
    return segmentLevels().first();
}

float SlicedContoursObject::nextSignificantZ(float z) const
{
    return segmentLevels().next(z);
}

float SlicedContoursObject::previousSignificantZ(float z) const
{
    return segmentLevels().previous(z);
}

void SlicedContoursObject::noteLevelsChanged()
{
    levels.reset();
}

const SegmentLevels &SlicedContoursObject::segmentLevels() const
{
    if (!levels)
        levels.emplace(fragments);
    return *levels;
}

void SlicedContoursObject::fragmentUpdated(QObject *)
{
    emit updated(this);
    emit updated();
}
