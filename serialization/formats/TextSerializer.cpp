#include "serialization/formats/TextSerializer.h"

#include "objects/SparselySampledImageObject.h"

#include <ostream>

TextSerializer::TextSerializer()
    : StreamImageObjectSerializer(tr("Text (tab separated values)"), "text/plain", "txt")
{}

bool TextSerializer::canSerialize(ImageObject *object)
{
    return dynamic_cast<SparselySampledImageObject *>(object) != nullptr;
}

bool TextSerializer::serialize(ImageObject *object, std::ostream &stream)
{
    const auto *sampled = dynamic_cast<SparselySampledImageObject *>(object);
    if (sampled == nullptr || stream.fail())
        return false;
    stream << "x\ty\tz\td" << std::endl;
    const LockedSamples samples = sampled->samples();
    for (const auto &[position, value] : *samples)
        stream << position.x << '\t' << position.y << '\t' << position.z << '\t' << value << std::endl;
    return true;
}
