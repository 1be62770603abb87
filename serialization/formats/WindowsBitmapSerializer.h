#pragma once

#include "serialization/framework/StreamImageObjectSerializer.h"

#include <QCoreApplication>

// Writes the first slice of a volume, through the window of channel 0, as a bitmap of 8 bits with a grey
// palette. Only for images whose width and height are multiples of 4.
class WindowsBitmapSerializer : public StreamImageObjectSerializer
{
    Q_DECLARE_TR_FUNCTIONS(WindowsBitmapSerializer)

public:
    WindowsBitmapSerializer();

    bool canSerialize(ImageObject *object) override;
    bool serialize(ImageObject *object, std::ostream &stream) override;
};
