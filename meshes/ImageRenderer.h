#pragma once

#include "objects/ImageObject.h"

// An image object without data of its own, which only draws.
class ImageRenderer : public ImageObject
{
    Q_OBJECT

public:
    ImageRenderer(const QString &label, QObject *parent);
};
