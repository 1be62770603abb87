#include "meshes/ImageRenderer.h"

ImageRenderer::ImageRenderer(const QString &label, QObject *parent)
    : ImageObject(label, parent)
{}
