#include "serialization/formats/MhdSerializer.h"

#include "Common/MetaImage.h"
#include "platform/FileNames.h"
#include "serialization/formats/VoxelFiles.h"

MhdSerializer::MhdSerializer()
    : FileSystemImageObjectSerializer(tr("MetaImage file"), "application/x-meta-image", "mhd")
{}

bool MhdSerializer::canSerialize(ImageObject *object)
{
    return VoxelFiles::voxelsOf(object) != nullptr;
}

bool MhdSerializer::serialize(ImageObject *object, const wchar_t *path)
{
    if (!canSerialize(object))
        return false;
    // The writer appends the extensions of its two files by itself.
    const QString base = VoxelFiles::withoutExtension(pathFromWide(path), ".mhd");
    const auto lock = VoxelFiles::lockVoxelsOf(object);
    return MERV::saveMetaImage(widePath(base).c_str(), VoxelFiles::voxelsOf(object)) == 0;
}
