#include "serialization/framework/StreamImageObjectUnserializer.h"

ImageObject *StreamImageObjectUnserializer::unserialize(std::istream &stream)
{
    return unserialize(stream, nullptr, 0);
}
