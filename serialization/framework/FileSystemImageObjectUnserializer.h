#pragma once

#include "serialization/framework/AbstractImageObjectUnserializer.h"

class ImageObject;

// A reader that opens a path by itself.
class FileSystemImageObjectUnserializer : public virtual AbstractImageObjectUnserializer
{
public:
    // Whether this reader takes the file (or directory); it may still fail on it.
    virtual bool canUnserialize(const wchar_t *path) = 0;
    // A new object without parent, owned by the caller; null on failure.
    virtual ImageObject *unserialize(const wchar_t *path) = 0;
};
