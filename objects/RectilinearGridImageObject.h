#pragma once

#include "objects/FunctionalImageObject.h"

// A functional image on a grid with straight axes.
class RectilinearGridImageObject : public FunctionalImageObject
{
    Q_OBJECT

public:
    using FunctionalImageObject::FunctionalImageObject;
};
