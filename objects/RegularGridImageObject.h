#pragma once

#include "objects/RectilinearGridImageObject.h"

// A grid image with one spacing per axis.
class RegularGridImageObject : public RectilinearGridImageObject
{
    Q_OBJECT

public:
    using RectilinearGridImageObject::RectilinearGridImageObject;
};
