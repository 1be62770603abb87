#pragma once

#include "serialization/framework/FileSystemImageObjectUnserializer.h"

#include <QCoreApplication>

// Reads a single DICOM file. A file with the suffix "dcm" is taken without a look at its content.
class DcmUnserializer : public FileSystemImageObjectUnserializer
{
    Q_DECLARE_TR_FUNCTIONS(DcmUnserializer)

public:
    DcmUnserializer();

    bool canUnserialize(const wchar_t *path) override;
    ImageObject *unserialize(const wchar_t *path) override;
};
