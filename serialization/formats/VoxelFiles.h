#pragma once

#include <QString>

#include <functional>
#include <memory>
#include <mutex>

class ImageObject;

namespace MERV {
class Image;
}

// What the adapters of voxel image files have in common.
namespace VoxelFiles {

// The voxel image of an object; null for an object of another class or without voxels.
MERV::Image *voxelsOf(ImageObject *object);
// Keeps workers from writing the voxels of the object; nothing for an object of another class.
std::unique_lock<std::mutex> lockVoxelsOf(const ImageObject *object);

// The path without the extension (with its dot), whose case does not matter; the path itself if it ends in
// something else.
QString withoutExtension(const QString &path, const QString &extension);

// Whether the path is a file of at least 10 bytes whose suffix is exactly this one, without the dot.
bool hasSuffix(const QString &path, const QString &suffix);

// A new object without parent, named after the file, of the voxels that `read` gives; null if it gives none.
ImageObject *newImageObject(const QString &path, const std::function<std::unique_ptr<MERV::Image>()> &read);

} // namespace VoxelFiles
