#include "meshes/BitPlaneRasterizerObject.h"

#include "platform/OpenGl.h"

BitPlaneRasterizerObject::BitPlaneRasterizerObject(ImageObject *newSource, int newWidth, int newHeight,
                                                   int newDepth, float voxelX, float voxelY, float voxelZ,
                                                   QObject *parent)
    : RasterizerObject(newSource, newWidth, newHeight, newDepth, voxelX, voxelY, voxelZ, parent, true)
{
    rangeText = tr("bit code");
    clearSignature();
}

BitPlaneRasterizerObject::~BitPlaneRasterizerObject()
{
    // The worker asks this class for advice.
    shutdown();
}

void BitPlaneRasterizerObject::setBitCode(const GraphicsObject *object, int code)
{
    if (object == nullptr)
        return;
    bool known = false;
    {
        const std::lock_guard lock(codeMutex);
        known = bitCodes.contains(object);
        bitCodes.insert(object, static_cast<std::uint8_t>(code));
    }
    if (!known)
        connect(object, &QObject::destroyed, this, &BitPlaneRasterizerObject::forgetBitCode);
}

void BitPlaneRasterizerObject::setDefaultBitCode(int code)
{
    const std::lock_guard lock(codeMutex);
    defaultBitCode = static_cast<std::uint8_t>(code);
}

std::uint8_t BitPlaneRasterizerObject::bitCode(const GraphicsObject *object) const
{
    const std::lock_guard lock(codeMutex);
    return bitCodes.value(object, 0);
}

void BitPlaneRasterizerObject::forgetBitCode(const QObject *object)
{
    const std::lock_guard lock(codeMutex);
    bitCodes.remove(object);
}

void BitPlaneRasterizerObject::detachFrom(ImageObject *closing)
{
    RasterizerObject::detachFrom(closing);
    if (closing == nullptr)
        return;
    forgetBitCode(closing);
    const auto parts = closing->findChildren<QObject *>();
    for (const QObject *part : parts)
        forgetBitCode(part);
}

bool BitPlaneRasterizerObject::overrides(GraphicsObject *object, int key, int subKey)
{
    return key == RenderKey::Color || key == RenderKey::EndPoints ||
           RasterizerObject::overrides(object, key, subKey);
}

std::uint32_t BitPlaneRasterizerObject::value(GraphicsObject *object, int key, int subKey)
{
    constexpr std::uint32_t allBytes = 0x01010101;
    if (key == RenderKey::EndPoints)
        return 1;
    if (key != RenderKey::Color)
        return RasterizerObject::value(object, key, subKey);
    if (subKey == RenderKey::EndPoints) {
        const std::lock_guard lock(codeMutex);
        return defaultBitCode;
    }
    return colourCode(object) * allBytes;
}

// Contours fill: one without a code belongs to the solids all the same. Lines must not show over them.
std::uint8_t BitPlaneRasterizerObject::colourCode(const GraphicsObject *object) const
{
    const bool fills = object != nullptr && object->graphicsType() == GraphicsTypeContour;
    const std::lock_guard lock(codeMutex);
    return bitCodes.value(object, fills ? defaultBitCode : 0);
}

void BitPlaneRasterizerObject::prepareSlice()
{
    glDisable(GL_LINE_SMOOTH);
    glEnable(GL_COLOR_LOGIC_OP);
    glLogicOp(GL_XOR);
}
