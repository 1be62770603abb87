#include "meshes/ColoringTriMeshRenderer.h"

#include "meshes/TriMeshFragment.h"
#include "objects/SparselySampledImageObject.h"

ColoringTriMeshRenderer::ColoringTriMeshRenderer(TriMeshFragment *newFragment,
                                                 SparselySampledImageObject *newSamples, const QString &label,
                                                 QObject *parent)
    : ImageRenderer(label, parent)
    , scale(bandedColourScale())
    , fragment(newFragment)
    , samples(newSamples)
{}

ColoringTriMeshRenderer::~ColoringTriMeshRenderer() = default;

QList<ImageObject *> ColoringTriMeshRenderer::sources() const
{
    QList<ImageObject *> list;
    if (ImageObject *owner = rootImageObject(fragment))
        list << owner;
    if (samples)
        list << samples;
    return list;
}

void ColoringTriMeshRenderer::detachFrom(ImageObject *closing)
{
    ImageRenderer::detachFrom(closing);
    if (!sources().contains(closing))
        return;
    if (samples == closing)
        samples = nullptr;
    else
        fragment = nullptr;
    drawn.reset();
    emit updated();
}

// The samples stay locked for the whole pass, so that the largest one fits all others. The mesh is read where
// it is: this is the thread that changes it.
const ColouredTriangles &ColoringTriMeshRenderer::currentTriangles()
{
    const LockedSamples values = samples->samples();
    if (!drawn || drawn->fragmentRevision != fragment->revision() ||
        drawn->samplesRevision != samples->revision()) {
        drawn.reset(); // its memory serves the new ones
        drawn = Drawn{fragment->revision(), samples->revision(),
                      colouredTriangles(fragment->all(), *values, scale)};
    }
    return drawn->triangles;
}
