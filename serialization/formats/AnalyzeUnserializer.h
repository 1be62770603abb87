#pragma once

#include "serialization/framework/FileSystemImageObjectUnserializer.h"

#include <QCoreApplication>

// Reads an Analyze header, suffix exactly "hdr", with its data file.
class AnalyzeUnserializer : public FileSystemImageObjectUnserializer
{
    Q_DECLARE_TR_FUNCTIONS(AnalyzeUnserializer)

public:
    AnalyzeUnserializer();

    bool canUnserialize(const wchar_t *path) override;
    ImageObject *unserialize(const wchar_t *path) override;
};
