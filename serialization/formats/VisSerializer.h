#pragma once

#include "serialization/framework/StreamImageObjectSerializer.h"

#include <QCoreApplication>

// Writes the first frame and channel of a volume, in 8 bits through its window, as a VIS stream titled with
// the name of the object.
class VisSerializer : public StreamImageObjectSerializer
{
    Q_DECLARE_TR_FUNCTIONS(VisSerializer)

public:
    VisSerializer();

    bool canSerialize(ImageObject *object) override;
    bool serialize(ImageObject *object, std::ostream &stream) override;
};
