#include "serialization/formats/AnalyzeSerializer.h"

#include "Common/Analyze.h"
#include "platform/FileNames.h"
#include "serialization/formats/VoxelFiles.h"

AnalyzeSerializer::AnalyzeSerializer()
    : FileSystemImageObjectSerializer(tr("Analyze file"), "application/x-analyze", "hdr")
{}

bool AnalyzeSerializer::canSerialize(ImageObject *object)
{
    return VoxelFiles::voxelsOf(object) != nullptr;
}

bool AnalyzeSerializer::serialize(ImageObject *object, const wchar_t *path)
{
    if (!canSerialize(object))
        return false;
    // The writer appends the extensions of its two files by itself. "A.HDR" becomes "A.hdr", which can be
    // read back, while a file named "A.HDR" could not.
    const QString base = VoxelFiles::withoutExtension(pathFromWide(path), ".hdr");
    const auto lock = VoxelFiles::lockVoxelsOf(object);
    return MERV::saveAnalyze(widePath(base).c_str(), VoxelFiles::voxelsOf(object)) == 0;
}
