#pragma once

#include "meshes/ColouredTriangles.h"
#include "meshes/ImageRenderer.h"

#include <QPointer>

#include <cstdint>
#include <optional>

class SparselySampledImageObject;
class TriMeshFragment;

// Draws a mesh fragment in bands of colour by the samples at its vertices, relative to the largest sample;
// faces with a vertex that has no sample are hatched in red. Owns neither; draws nothing when one is closed.
// Emits updated() when it lets go of one, and not when they change: who shows it follows its sources. GUI
// thread.
class ColoringTriMeshRenderer : public ImageRenderer
{
    Q_OBJECT

public:
    ColoringTriMeshRenderer(TriMeshFragment *fragment, SparselySampledImageObject *samples,
                            const QString &label, QObject *parent = nullptr);
    ~ColoringTriMeshRenderer() override;

    void render(GraphicsObjectRenderAdvisor *advisor) override;
    // The owner of the fragment, then the samples.
    QList<ImageObject *> sources() const override;
    void detachFrom(ImageObject *closing) override;

private:
    // What was drawn last, and from what.
    struct Drawn
    {
        std::uint64_t fragmentRevision = 0;
        std::uint64_t samplesRevision = 0;
        ColouredTriangles triangles;
    };

    const ColouredTriangles &currentTriangles();

    const ColourScale &scale;
    QPointer<TriMeshFragment> fragment;
    QPointer<SparselySampledImageObject> samples;
    std::optional<Drawn> drawn; // made anew when fragment or samples have changed
};
