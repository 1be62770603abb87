#pragma once

#include "serialization/framework/FileSystemImageObjectUnserializer.h"

#include <QCoreApplication>

// Reads a Windows bitmap, suffix exactly "bmp".
class WindowsBitmapUnserializer : public FileSystemImageObjectUnserializer
{
    Q_DECLARE_TR_FUNCTIONS(WindowsBitmapUnserializer)

public:
    WindowsBitmapUnserializer();

    bool canUnserialize(const wchar_t *path) override;
    ImageObject *unserialize(const wchar_t *path) override;
};
