#pragma once

#include "serialization/framework/FileSystemImageObjectUnserializer.h"

#include <QCoreApplication>

// Reads a MetaImage header, suffix exactly "mhd", with its data file.
class MhdUnserializer : public FileSystemImageObjectUnserializer
{
    Q_DECLARE_TR_FUNCTIONS(MhdUnserializer)

public:
    MhdUnserializer();

    bool canUnserialize(const wchar_t *path) override;
    ImageObject *unserialize(const wchar_t *path) override;
};
