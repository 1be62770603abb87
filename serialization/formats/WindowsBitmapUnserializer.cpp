#include "serialization/formats/WindowsBitmapUnserializer.h"

#include "Common/Bitmap.h"
#include "platform/FileNames.h"
#include "serialization/formats/VoxelFiles.h"

#include <fstream>

WindowsBitmapUnserializer::WindowsBitmapUnserializer()
    : AbstractImageObjectUnserializer(tr("Windows bitmap"), {"image/bmp"}, {"bmp"})
{}

bool WindowsBitmapUnserializer::canUnserialize(const wchar_t *path)
{
    return VoxelFiles::hasSuffix(pathFromWide(path), "bmp");
}

ImageObject *WindowsBitmapUnserializer::unserialize(const wchar_t *path)
{
    const QString file = pathFromWide(path);
    std::ifstream stream(narrowPath(file), std::ios::binary);
    return VoxelFiles::newImageObject(file, [&stream] {
        return std::unique_ptr<MERV::Image>(stream ? MERV::loadBitmap(stream) : nullptr);
    });
}
