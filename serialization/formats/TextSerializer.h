#pragma once

#include "serialization/framework/StreamImageObjectSerializer.h"

#include <QCoreApplication>

// Writes the samples of an object as a table with the columns x, y, z and d (the value), in the order of the
// sample map. The stream is not checked while writing.
class TextSerializer : public StreamImageObjectSerializer
{
    Q_DECLARE_TR_FUNCTIONS(TextSerializer)

public:
    TextSerializer();

    bool canSerialize(ImageObject *object) override;
    bool serialize(ImageObject *object, std::ostream &stream) override;
};
