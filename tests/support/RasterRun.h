#pragma once

#include "Common/Image.h"
#include "meshes/RasterizerObject.h"

#include <QObject>
#include <QTest>

#include <string>
#include <vector>

// A copy of the raster, x fastest, then y (row 0 first), then z.
inline std::vector<unsigned char> rasterBytes(const RasterizerObject &raster)
{
    const auto lock = raster.lockVoxels();
    const auto *first = static_cast<const unsigned char *>(raster.voxels()->getFrameData(0));
    return {first, first + raster.voxels()->getValueCount()};
}

// A voxel of a volume that a worker may write.
inline int voxelOf(const MervImageObject &volume, int x, int y, int z)
{
    const auto lock = volume.lockVoxels();
    return static_cast<int>(volume.voxels()->getVoxel(x, y, z, 0, 0));
}

// How many voxels of a slice have the value, at one moment.
inline int countOf(const MervImageObject &volume, int slice, int value)
{
    const auto lock = volume.lockVoxels();
    MERV::Image &voxels = *volume.voxels();
    int count = 0;
    for (int y = 0; y < voxels.getHeight(); ++y)
        for (int x = 0; x < voxels.getWidth(); ++x)
            count += static_cast<int>(voxels.getVoxel(x, y, slice, 0, 0)) == value ? 1 : 0;
    return count;
}

// Slice k as text, the row of the largest y first: '.' for 0, '#' for 255, 'o' for 127, '?' for others.
inline std::string slicePicture(const RasterizerObject &raster, int k)
{
    const auto lock = raster.lockVoxels();
    std::string text;
    for (int y = raster.voxels()->getHeight() - 1; y >= 0; --y) {
        for (int x = 0; x < raster.voxels()->getWidth(); ++x) {
            const float code = raster.voxels()->getVoxel(x, y, k, 0, 0);
            text += code == 0.0f ? '.' : code == 255.0f ? '#' : code == 127.0f ? 'o' : '?';
        }
        text += '\n';
    }
    return text;
}

// Counts the rasters that a rasterizer has published, as a window would hear of them: in the GUI thread.
class RasterRuns : public QObject
{
public:
    explicit RasterRuns(RasterizerObject &newRaster)
        : raster(newRaster)
    {
        connect(&raster, qOverload<>(&GraphicsObject::updated), this, [this] { ++count; });
    }

    int published() const { return count; }

    // Asks for a raster and waits for it.
    bool run()
    {
        const int before = count;
        raster.invalidateRasterization();
        return QTest::qWaitFor([&] { return count > before; }, 20000);
    }

    // Whether no raster comes for the time of some polls of the worker.
    bool rests() const
    {
        const int before = count;
        QTest::qWait(150);
        return count == before;
    }

private:
    RasterizerObject &raster;
    int count = 0;
};
