#pragma once

#include "serialization/framework/AbstractImageObjectUnserializer.h"

#include <iosfwd>

class ImageObject;

// A reader that takes a stream from the start of the file.
class ContinuousStreamImageObjectUnserializer : public virtual AbstractImageObjectUnserializer
{
public:
    // Size in bytes of the head that a capability test sees. A shorter file is followed by unspecified bytes,
    // so that a test may look at fixed offsets only.
    static constexpr int headSize = 1024;

    // Whether this reader takes the file that begins with these headSize bytes.
    virtual bool canUnserialize(const char *head) = 0;
    // A new object without parent, owned by the caller; null on failure. The stream stands at the file's
    // start.
    virtual ImageObject *unserialize(std::istream &stream) = 0;
};
