#pragma once

#include "serialization/framework/FileSystemImageObjectUnserializer.h"
#include "serialization/framework/PurelyInteractiveImageObjectUnserializer.h"

#include <QCoreApplication>

// Opens a dialog for putting together a load of DICOM files when it is given a directory. The dialog is a
// preview: it loads nothing, so that this reader always answers null and counts as failed.
class InteractiveDicomUnserializer : public PurelyInteractiveImageObjectUnserializer,
                                     public FileSystemImageObjectUnserializer
{
    Q_DECLARE_TR_FUNCTIONS(InteractiveDicomUnserializer)

public:
    InteractiveDicomUnserializer();

    int unattendedObjectCount() const override;
    // Whether the path is a directory.
    bool canUnserialize(const wchar_t *path) override;
    // Null in every case.
    ImageObject *unserialize(const wchar_t *path) override;
};
