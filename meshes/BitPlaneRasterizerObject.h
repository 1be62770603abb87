#pragma once

#include "meshes/RasterizerObject.h"

#include <QHash>

#include <cstdint>

// A rasterizer in which each object toggles the bits of its code in the voxels that it covers: closed
// contours become solid regions, and regions that overlap an even number of times become empty.
class BitPlaneRasterizerObject : public RasterizerObject
{
    Q_OBJECT

public:
    BitPlaneRasterizerObject(ImageObject *source, int width, int height, int depth, float voxelX,
                             float voxelY, float voxelZ, QObject *parent = nullptr);
    ~BitPlaneRasterizerObject() override;

    // Codes are taken modulo 256: -1 is 255. An object that dies loses its code.
    void setBitCode(const GraphicsObject *object, int code);
    void setDefaultBitCode(int code);
    // 0 for an object without a code.
    std::uint8_t bitCode(const GraphicsObject *object) const;

    void detachFrom(ImageObject *closing) override;

    // A contour without a code of its own is drawn in the default code, other objects without a code in 0.
    bool overrides(GraphicsObject *object, int key, int subKey) override;
    std::uint32_t value(GraphicsObject *object, int key, int subKey) override;

protected:
    void prepareSlice() override;

private:
    void forgetBitCode(const QObject *object);
    std::uint8_t colourCode(const GraphicsObject *object) const;

    mutable std::mutex codeMutex; // guards the codes; nothing else is taken under it
    QHash<const QObject *, std::uint8_t> bitCodes;
    std::uint8_t defaultBitCode = 0;
};
