#pragma once

#include "serialization/framework/ContinuousStreamImageObjectUnserializer.h"

// A stream reader that also works when the caller has consumed the head of the stream.
class StreamImageObjectUnserializer : public ContinuousStreamImageObjectUnserializer
{
public:
    // Reads with nothing prepended.
    ImageObject *unserialize(std::istream &stream) override;
    // Reads as if the `length` bytes at `prepended` stood in front of the stream. The bytes are borrowed for
    // the call; null with length 0 is allowed.
    virtual ImageObject *unserialize(std::istream &stream, const char *prepended, int length) = 0;
};
