#pragma once

#include "serialization/framework/FileSystemImageObjectSerializer.h"

#include <QCoreApplication>

// Writes a volume as a MetaImage header and its data file.
class MhdSerializer : public FileSystemImageObjectSerializer
{
    Q_DECLARE_TR_FUNCTIONS(MhdSerializer)

public:
    MhdSerializer();

    bool canSerialize(ImageObject *object) override;
    bool serialize(ImageObject *object, const wchar_t *path) override;
};
