#include "serialization/formats/AnalyzeUnserializer.h"

#include "Common/Analyze.h"
#include "platform/FileNames.h"
#include "serialization/formats/VoxelFiles.h"

AnalyzeUnserializer::AnalyzeUnserializer()
    : AbstractImageObjectUnserializer(tr("Analyze file"), {"application/x-analyze"}, {"hdr"})
{}

bool AnalyzeUnserializer::canUnserialize(const wchar_t *path)
{
    return VoxelFiles::hasSuffix(pathFromWide(path), "hdr");
}

ImageObject *AnalyzeUnserializer::unserialize(const wchar_t *path)
{
    const QString file = pathFromWide(path);
    return VoxelFiles::newImageObject(
        file, [&file] { return std::unique_ptr<MERV::Image>(MERV::loadAnalyze(narrowPath(file).c_str())); });
}
