#pragma once

#include "serialization/framework/FileSystemImageObjectSerializer.h"

#include <QCoreApplication>

// Writes a volume as an Analyze header and its data file.
class AnalyzeSerializer : public FileSystemImageObjectSerializer
{
    Q_DECLARE_TR_FUNCTIONS(AnalyzeSerializer)

public:
    AnalyzeSerializer();

    bool canSerialize(ImageObject *object) override;
    bool serialize(ImageObject *object, const wchar_t *path) override;
};
