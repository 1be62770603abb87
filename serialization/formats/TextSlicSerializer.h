#pragma once

#include "serialization/framework/StreamImageObjectSerializer.h"

#include <QCoreApplication>

// Writes the points of contours as a table: a block of rows per z, a pair of columns per fragment. The stream
// is not checked while writing.
class TextSlicSerializer : public StreamImageObjectSerializer
{
    Q_DECLARE_TR_FUNCTIONS(TextSlicSerializer)

public:
    TextSlicSerializer();

    bool canSerialize(ImageObject *object) override;
    bool serialize(ImageObject *object, std::ostream &stream) override;
};
