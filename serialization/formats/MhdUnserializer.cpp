#include "serialization/formats/MhdUnserializer.h"

#include "Common/MetaImage.h"
#include "platform/FileNames.h"
#include "serialization/formats/VoxelFiles.h"

MhdUnserializer::MhdUnserializer()
    : AbstractImageObjectUnserializer(tr("MetaImage file"), {"application/x-meta-image"}, {"mhd"})
{}

bool MhdUnserializer::canUnserialize(const wchar_t *path)
{
    return VoxelFiles::hasSuffix(pathFromWide(path), "mhd");
}

ImageObject *MhdUnserializer::unserialize(const wchar_t *path)
{
    const QString file = pathFromWide(path);
    return VoxelFiles::newImageObject(file, [&file] {
        return std::unique_ptr<MERV::Image>(MERV::loadMetaImage(narrowPath(file).c_str()));
    });
}
