#include "serialization/formats/DcmUnserializer.h"

#include "Common/Image.h"
#include "platform/FileNames.h"
#include "serialization/dicom/DicomLoader.h"
#include "serialization/formats/VoxelFiles.h"

#include <QFile>
#include <QFileInfo>

namespace {

constexpr qint64 preambleSize = 128; // bytes before the magic of a DICOM file (PS3.10, 7.1)
constexpr qint64 headSize = preambleSize + 4;

bool hasMagic(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray head = file.read(headSize);
    return head.size() == headSize && head.endsWith("DICM");
}

} // namespace

DcmUnserializer::DcmUnserializer()
    : AbstractImageObjectUnserializer(tr("Dicom file"), {"application/dicom"}, {"dcm"})
{}

bool DcmUnserializer::canUnserialize(const wchar_t *path)
{
    const QString file = pathFromWide(path);
    // The DICOM library takes 8-bit paths.
    if (QString::fromLocal8Bit(file.toLocal8Bit()) != file)
        return false;
    const QFileInfo info(file);
    if (!info.isFile() || info.size() < headSize)
        return false;
    return info.suffix() == "dcm" || hasMagic(file);
}

ImageObject *DcmUnserializer::unserialize(const wchar_t *path)
{
    const QString file = pathFromWide(path);
    return VoxelFiles::newImageObject(
        file, [&file] { return dicom::loadDicomFile(file.toLocal8Bit().toStdString()); });
}
