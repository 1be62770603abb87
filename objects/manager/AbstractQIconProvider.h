#pragma once

#include "objects/manager/AbstractIconProvider.h"

class QIcon;

// Gives icons to the entities of some classes. Main thread.
class AbstractQIconProvider : public AbstractIconProvider
{
public:
    virtual bool canProvide(Entity *entity) = 0;
    // The icon belongs to the provider and stays valid as long as it lives.
    virtual const QIcon &icon(Entity *entity) = 0;
};
