#pragma once

#include "objects/ImageObject.h"

// An image object that consists of edge points.
class EdgePointSet : public ImageObject
{
    Q_OBJECT

public:
    using ImageObject::ImageObject;
    ~EdgePointSet() override;
};
