#pragma once

#include "serialization/framework/StreamImageObjectSerializer.h"

#include <QCoreApplication>

// Writes contours as a SLIC file: a tree of chunks, each with its size in front, linked by the addresses that
// the objects have in memory. Little-endian on every host.
class SlicSerializer : public StreamImageObjectSerializer
{
    Q_DECLARE_TR_FUNCTIONS(SlicSerializer)

public:
    SlicSerializer();

    bool canSerialize(ImageObject *object) override;
    bool serialize(ImageObject *object, std::ostream &stream) override;
};
