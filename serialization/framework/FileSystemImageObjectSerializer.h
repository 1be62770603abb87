#pragma once

#include "serialization/framework/AbstractImageObjectSerializer.h"

// A serializer whose format consists of several files, or which opens its own.
class FileSystemImageObjectSerializer : public AbstractImageObjectSerializer
{
public:
    using AbstractImageObjectSerializer::AbstractImageObjectSerializer;

    // Writes the object to the path. False, with nothing written, for an object of the wrong class.
    virtual bool serialize(ImageObject *object, const wchar_t *path) = 0;
};
