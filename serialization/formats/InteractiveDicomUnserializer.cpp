#include "serialization/formats/InteractiveDicomUnserializer.h"

#include "platform/FileNames.h"
#include "serialization/dialogs/InteractiveDicomUnserializerDialog.h"

#include <QApplication>
#include <QFileInfo>

InteractiveDicomUnserializer::InteractiveDicomUnserializer()
    : AbstractImageObjectUnserializer(tr("Dicom Series"), {"application/x-dicom-series"}, {"dcm"})
{}

int InteractiveDicomUnserializer::unattendedObjectCount() const
{
    return 0;
}

bool InteractiveDicomUnserializer::canUnserialize(const wchar_t *path)
{
    return QFileInfo(pathFromWide(path)).isDir();
}

ImageObject *InteractiveDicomUnserializer::unserialize(const wchar_t *path)
{
    if (!canUnserialize(path))
        return nullptr;
    InteractiveDicomUnserializerDialog dialog(QApplication::activeWindow());
    dialog.addDirectory(pathFromWide(path));
    dialog.exec();
    return nullptr;
}
