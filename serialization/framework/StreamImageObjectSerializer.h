#pragma once

#include "serialization/framework/AbstractImageObjectSerializer.h"

#include <iosfwd>

// A serializer whose format is one stream of bytes; the caller opens the file.
class StreamImageObjectSerializer : public AbstractImageObjectSerializer
{
public:
    using AbstractImageObjectSerializer::AbstractImageObjectSerializer;

    // Writes the object to a stream opened in binary mode. False, with nothing written, for an object of the
    // wrong class or a stream that has failed already.
    virtual bool serialize(ImageObject *object, std::ostream &stream) = 0;
};
