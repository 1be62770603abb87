#include "serialization/formats/VoxelFiles.h"

#include "Common/Progress.h"
#include "objects/MervImageObject.h"

#include <QFileInfo>

namespace {

constexpr qint64 smallestFile = 10;   // bytes
constexpr double readingShare = 0.85; // of the time of a load; the pictures of the slices take the rest

} // namespace

MERV::Image *VoxelFiles::voxelsOf(ImageObject *object)
{
    const auto *volume = dynamic_cast<MervImageObject *>(object);
    return volume != nullptr ? volume->voxels() : nullptr;
}

std::unique_lock<std::mutex> VoxelFiles::lockVoxelsOf(const ImageObject *object)
{
    const auto *volume = dynamic_cast<const MervImageObject *>(object);
    return volume != nullptr ? volume->lockVoxels() : std::unique_lock<std::mutex>();
}

QString VoxelFiles::withoutExtension(const QString &path, const QString &extension)
{
    return path.endsWith(extension, Qt::CaseInsensitive) ? path.chopped(extension.size()) : path;
}

bool VoxelFiles::hasSuffix(const QString &path, const QString &suffix)
{
    const QFileInfo file(path);
    return file.suffix() == suffix && file.isFile() && file.size() >= smallestFile;
}

ImageObject *VoxelFiles::newImageObject(const QString &path,
                                        const std::function<std::unique_ptr<MERV::Image>()> &read)
{
    std::unique_ptr<MERV::Image> image;
    {
        const MERV::ProgressStage stage(readingShare);
        image = read();
    }
    if (image == nullptr)
        return nullptr;
    return new MervImageObject(image.release(), QFileInfo(path).baseName(), nullptr);
}
