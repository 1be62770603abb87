#include "meshes/SlicedContoursTriangulator.h"

#include "contours/SlicedContoursFragment.h"
#include "contours/SlicedContoursObject.h"
#include "contours/SlicedContoursSegment.h"
#include "meshes/RibbonStitching.h"
#include "meshes/TriMeshFragment.h"

#include <iostream>
#include <utility>

namespace {

// The first line of each level of the fragment, by rising z.
std::vector<SegmentSnapshot> levelsOf(const SlicedContoursFragment &fragment)
{
    std::vector<float> z;
    z.reserve(static_cast<std::size_t>(fragment.segmentCount()));
    for (int i = 0; i < fragment.segmentCount(); ++i)
        z.push_back(fragment.segment(i)->z());
    std::vector<SegmentSnapshot> levels;
    for (const std::size_t index : firstOfEachLevel(z))
        levels.push_back(fragment.segment(static_cast<int>(index))->snapshot());
    return levels;
}

std::vector<MERV::BRep::TriFace> ribbonsOf(const SlicedContoursFragment &fragment)
{
    const std::vector<SegmentSnapshot> levels = levelsOf(fragment);
    std::size_t points = 0;
    for (const SegmentSnapshot &level : levels)
        points += level.points.size();
    std::vector<MERV::BRep::TriFace> faces;
    faces.reserve(2 * points); // each point but the outermost ones starts a face upwards and one downwards
    for (std::size_t i = 1; i < levels.size(); ++i)
        stitchRibbon(levels[i - 1], levels[i], faces);
    return faces;
}

} // namespace

SlicedContoursTriangulator::SlicedContoursTriangulator(SlicedContoursObject *newSource, QObject *parent)
    : TriMeshObject(tr("Triangulation of %1").arg(newSource != nullptr ? newSource->label() : QString()),
                    parent)
    , source(newSource)
{
    // The wording of the message is on purpose.
    if (newSource == nullptr ||
        !connect(newSource, qOverload<QObject *>(&SlicedContoursObject::updated), this,
                 qOverload<QObject *>(&SlicedContoursTriangulator::retriangulate)))
        std::cerr << "Cound not establish connection indicating triangulation invalidation." << std::endl;
    retriangulate();
}

TriMeshFragment *SlicedContoursTriangulator::triangulationOf(const SlicedContoursFragment *fragment) const
{
    const Entry entry = triangulations.value(fragment);
    return entry.fragment != nullptr ? entry.mesh : nullptr;
}

QList<ImageObject *> SlicedContoursTriangulator::sources() const
{
    QList<ImageObject *> all = TriMeshObject::sources();
    if (source != nullptr)
        all.append(source);
    return all;
}

void SlicedContoursTriangulator::detachFrom(ImageObject *closing)
{
    TriMeshObject::detachFrom(closing);
    if (source == closing)
        source = nullptr;
}

void SlicedContoursTriangulator::retriangulate()
{
    retriangulate(nullptr);
}

void SlicedContoursTriangulator::retriangulate(QObject *)
{
    if (source == nullptr)
        return;
    // Whoever hears of a rebuilt mesh may let go of the source or change its fragments.
    for (int i = 0; source != nullptr && i < source->fragmentCount(); ++i)
        retriangulate(*source->fragment(i));
    emit updated();
}

void SlicedContoursTriangulator::retriangulate(const SlicedContoursFragment &fragment)
{
    TriMeshFragment *mesh = triangulationOf(&fragment);
    if (mesh == nullptr) {
        mesh = addFragment(tr("%1 (triangulated)").arg(fragment.label()));
        triangulations.insert(&fragment, {&fragment, mesh});
    }
    const bool hasRibbons = fragment.segmentCount() >= 2;
    mesh->setFaces(ribbonsOf(fragment));
    if (hasRibbons)
        emit mesh->updated();
    mesh->notifyFragmentUpdated();
}
