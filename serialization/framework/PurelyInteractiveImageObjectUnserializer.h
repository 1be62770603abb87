#pragma once

#include "serialization/framework/AbstractImageObjectUnserializer.h"

// Marks a reader that asks the user for everything.
class PurelyInteractiveImageObjectUnserializer : public virtual AbstractImageObjectUnserializer
{
public:
    // How many objects the reader hands over by itself, without the dialog: 0 for a reader that is all
    // dialog.
    virtual int unattendedObjectCount() const = 0;
};
