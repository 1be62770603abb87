#pragma once

#include "meshes/ImageRenderer.h"

#include <QPointer>

class SparselySampledImageObject;
class TriMeshFragment;

// Draws a mesh fragment in bands of colour by the samples at its vertices, relative to the largest sample;
// faces with a vertex that has no sample are hatched in red. Owns neither; draws nothing when one is closed.
// Emits no updated(): who shows it follows its sources. GUI thread.
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
    QPointer<TriMeshFragment> fragment;
    QPointer<SparselySampledImageObject> samples;
};
