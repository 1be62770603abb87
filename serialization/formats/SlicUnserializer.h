#pragma once

#include "serialization/framework/StreamImageObjectUnserializer.h"

#include <QCoreApplication>

// Reads SLIC files. Unknown chunks are passed over; a damaged file gives null, or what is whole of it where
// only the last piece is missing.
class SlicUnserializer : public StreamImageObjectUnserializer
{
    Q_DECLARE_TR_FUNCTIONS(SlicUnserializer)

public:
    SlicUnserializer();

    bool canUnserialize(const char *head) override;
    using StreamImageObjectUnserializer::unserialize;
    ImageObject *unserialize(std::istream &stream, const char *prepended, int length) override;
};
