#pragma once

#include "objects/Entity.h"

// What the image manager takes as a source of icons.
class AbstractIconProvider : public virtual Entity
{};
