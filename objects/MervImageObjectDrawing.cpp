// The OpenGL side of MervImageObject. What is drawn is worked out in SliceQuad, ObliquePlane and GlyphLines.
#include "objects/MervImageObject.h"

#include "objects/GlyphLines.h"
#include "objects/GraphicsObjectRenderAdvisor.h"
#include "objects/ObliquePlane.h"
#include "objects/SlicePositions.h"
#include "objects/SliceQuad.h"
#include "platform/GlState.h"
#include "platform/PixelScale.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>

namespace {

constexpr float openRange = std::numeric_limits<float>::max();
constexpr GLenum rectangleTarget = 0x84F5; // GL_TEXTURE_RECTANGLE_ARB
constexpr float axialTolerance = 0.001f;
constexpr std::size_t piecesPerBatch = 8192;

// The state that slices change: current colour, pixel transfer, fog, blending.
constexpr GLbitfield sliceState = GL_CURRENT_BIT | GL_PIXEL_MODE_BIT | GL_FOG_BIT | GL_COLOR_BUFFER_BIT;
static_assert(sliceState == 0x40A1);
// The state that cells change.
constexpr GLbitfield cellState = GL_COLOR_BUFFER_BIT | GL_PIXEL_MODE_BIT | GL_CURRENT_BIT | GL_ENABLE_BIT |
                                 GL_POLYGON_BIT | GL_POLYGON_STIPPLE_BIT;

struct Rgba
{
    GLubyte red;
    GLubyte green;
    GLubyte blue;
    GLubyte alpha;
};

std::optional<Rgba> advisedColour(GraphicsObjectRenderAdvisor &advisor, GraphicsObject *object)
{
    if (!advisor.overrides(object, RenderKey::Color, 0))
        return std::nullopt;
    const std::uint32_t argb = advisor.value(object, RenderKey::Color, 0);
    const auto byte = [argb](int shift) { return static_cast<GLubyte>((argb >> shift) & 0xFFU); };
    return Rgba{byte(16), byte(8), byte(0), byte(24)};
}

void sendQuad(const SliceQuad &quad)
{
    const GlPrimitive quads(GL_QUADS);
    for (std::size_t corner = 0; corner < 4; ++corner) {
        glTexCoord2fv(quad.texture[corner].data());
        glVertex3fv(quad.vertices[corner].data());
    }
}

void sendVertices(const PlanePiece &piece)
{
    for (int vertex = 0; vertex < piece.vertexCount; ++vertex)
        glVertex3dv(piece.vertices[static_cast<std::size_t>(vertex)].data());
}

struct ColouredPieces
{
    std::vector<PlanePiece> pieces;
    std::vector<PieceColour> colours; // one per piece

    void clear()
    {
        pieces.clear();
        colours.clear();
    }
};

// All pieces in their colour, or those outside the window in the current colour. As pieces do not overlap,
// their order does not matter, and those of one shape share a primitive.
void sendPieces(const ColouredPieces &drawn, bool outsideWindowOnly)
{
    const auto sendShape = [&](PieceShape shape, auto send) {
        for (std::size_t index = 0; index < drawn.pieces.size(); ++index) {
            const PieceColour &colour = drawn.colours[index];
            if (drawn.pieces[index].shape != shape || (outsideWindowOnly && !colour.outsideWindow))
                continue;
            if (!outsideWindowOnly)
                glColor4fv(colour.rgba.data());
            send(drawn.pieces[index]);
        }
    };
    {
        const GlPrimitive quads(GL_QUADS);
        sendShape(PieceShape::Quad, sendVertices);
    }
    {
        const GlPrimitive triangles(GL_TRIANGLES);
        sendShape(PieceShape::Triangle, sendVertices);
    }
    sendShape(PieceShape::Polygon, [](const PlanePiece &piece) {
        const GlPrimitive polygon(GL_POLYGON);
        sendVertices(piece);
    });
}

// The pieces, and red hatching over those outside the window.
void sendHatchedPieces(const ColouredPieces &drawn)
{
    sendPieces(drawn, false);
    const GlEnableScope stipple(GL_POLYGON_STIPPLE);
    glColor3f(1.0f, 0.0f, 0.0f);
    sendPieces(drawn, true);
}

void sendLine(const GlyphLines::Line &line)
{
    for (const auto &end : line)
        glVertex3fv(end.data());
}

// Scale and bias that stretch the window over the whole range of a normalised pixel type.
float typeRange(int dataType)
{
    switch (dataType) {
    case MERV::TypeChar:
    case MERV::TypeUChar:
        return 255.0f;
    case MERV::TypeShort:
    case MERV::TypeUShort:
        return 65535.0f;
    case MERV::TypeInt:
    case MERV::TypeUInt:
        return 4294967295.0f;
    default:
        return 1.0f; // floating point pixels are taken as they are
    }
}

std::size_t voxelBytes(int dataType)
{
    switch (dataType) {
    case MERV::TypeChar:
    case MERV::TypeUChar:
        return 1;
    case MERV::TypeShort:
    case MERV::TypeUShort:
        return 2;
    case MERV::TypeDouble:
        return 8;
    default:
        return 4;
    }
}

} // namespace

std::atomic<int> MervImageObject::textureMode{MervImageObject::TextureModeUnknown};

bool MervImageObject::offersRectangleTextures(const char *extensions)
{
    return listsExtension(extensions, "GL_EXT_texture_rectangle") ||
           listsExtension(extensions, "GL_ARB_texture_rectangle");
}

int MervImageObject::detectTextureMode(const char *extensions)
{
    [[maybe_unused]] const int offered =
        offersRectangleTextures(extensions) ? TextureModeRectangle : TextureModePowerOfTwo;
    // On purpose not what is offered: power-of-two textures run everywhere, rectangles stay ready to be
    // enabled.
    return TextureModePowerOfTwo;
}

int MervImageObject::shownChannel(GraphicsObjectRenderAdvisor *advisor)
{
    if (!advisor->overrides(this, RenderKey::Component, 0))
        return 0;
    return static_cast<int>(advisor->value(this, RenderKey::Component, 0));
}

void MervImageObject::render(GraphicsObjectRenderAdvisor *advisor)
{
    if (!image)
        return;
    const float spacing = image->getSpacing(2);
    const int depth = image->getDepth();
    for (int slice = 0; slice < depth; ++slice) {
        renderBox(advisor, -openRange, openRange, -openRange, openRange, static_cast<float>(slice) * spacing,
                  static_cast<float>(slice + 1) * spacing);
    }
}

void MervImageObject::renderBox(GraphicsObjectRenderAdvisor *advisor, float, float, float, float, float zMin,
                                float zMax)
{
    if (textureMode == TextureModeUnknown) {
        const GLubyte *extensions = glGetString(GL_EXTENSIONS);
        textureMode = detectTextureMode(reinterpret_cast<const char *>(extensions));
    }
    const GlAttributeScope state(sliceState);
    if (const auto colour = advisedColour(*advisor, this))
        glColor4ub(colour->red, colour->green, colour->blue, colour->alpha);
    const int channel = shownChannel(advisor);
    // The image stays the same one until all slices are drawn, whichever thread draws them.
    const auto lock = lockVoxels();
    if (!image)
        return;
    glEnable(GL_BLEND);
    glBlendFunc(GL_ONE, GL_ONE_MINUS_SRC_ALPHA);

    const bool rectangles = textureMode == TextureModeRectangle && image->getChannels() == 1;
    const GlTextureBinding binding(contextTexture());
    const GlEnableScope target(rectangles ? rectangleTarget : GL_TEXTURE_2D);
    const GlUnpackScope rows;
    const int depth = image->getDepth();
    for (int slice = 0; slice < depth; ++slice) {
        const float middle = sliceCentre(slice, image->getSpacing(2));
        if (!(zMin <= middle && middle <= zMax))
            continue;
        if (rectangles)
            drawSliceRectangle(slice);
        else
            drawSlice(slice, channel);
    }
}

// Called under the lock of the voxels.
void MervImageObject::drawSlice(int slice, int channel)
{
    matchTextures();
    ensureSlice(slice, channel);
    // Uploaded at every drawing; only the conversion to bytes is kept.
    glTexImage2D(GL_TEXTURE_2D, 0, 1, textureWidth, textureHeight, 0, GL_LUMINANCE, GL_UNSIGNED_BYTE,
                 sliceTextures[static_cast<std::size_t>(slice)].get());
    sendQuad(sliceQuad({image->getWidth(), image->getHeight(), image->getSpacing(0), image->getSpacing(1),
                        sliceCentre(slice, image->getSpacing(2)), static_cast<float>(textureWidth),
                        static_cast<float>(textureHeight)}));
}

// The raw voxels as a rectangle texture, with the window done by the pixel transfer. Called under the lock of
// the voxels.
void MervImageObject::drawSliceRectangle(int slice)
{
    const GlScratchTexture texture(rectangleTarget);
    glTexParameteri(rectangleTarget, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    glTexParameteri(rectangleTarget, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    glTexParameteri(rectangleTarget, GL_TEXTURE_WRAP_S, GL_CLAMP);
    glTexParameteri(rectangleTarget, GL_TEXTURE_WRAP_T, GL_CLAMP);
    const int width = image->getWidth();
    const int height = image->getHeight();
    const int type = image->getDataType();
    glPixelTransferf(GL_RED_SCALE, (1.0f / image->getWindow(0)) * typeRange(type));
    glPixelTransferf(GL_RED_BIAS, -image->getLow(0) / image->getWindow(0));
    const auto *first = static_cast<const unsigned char *>(image->getFrameData(0));
    const std::size_t offset = static_cast<std::size_t>(slice) * image->getSliceStride() * voxelBytes(type);
    glTexImage2D(rectangleTarget, 0, 1, width, height, 0, GL_LUMINANCE, static_cast<GLenum>(type),
                 first + offset);
    sendQuad(sliceQuad({width, height, image->getSpacing(0), image->getSpacing(1),
                        sliceCentre(slice, image->getSpacing(2)), 1.0f, 1.0f}));
}

bool MervImageObject::renderPlane(GraphicsObjectRenderAdvisor *advisor, const float plane[4])
{
    if (!image)
        return true;
    if (std::abs(plane[0]) <= axialTolerance && std::abs(plane[1]) <= axialTolerance) {
        const float centre = -plane[2] * plane[3]; // a product: c is 1 or -1
        const float half = image->getSpacing(2) / 2.0f;
        renderBox(advisor, -openRange, openRange, -openRange, openRange, centre - half, centre + half);
    } else {
        renderObliquePlane(advisor, plane);
    }
    return true;
}

void MervImageObject::renderObliquePlane(GraphicsObjectRenderAdvisor *advisor, const float plane[4])
{
    const auto spacing = [this](int axis) { return static_cast<double>(image->getSpacing(axis)); };
    const VoxelGrid grid{{image->getWidth(), image->getHeight(), image->getDepth()},
                         {spacing(0), spacing(1), spacing(2)}};
    const ObliquePlane cells(grid, {plane[0], plane[1], plane[2], plane[3]});
    const float low = image->getLow(0);
    const float window = image->getWindow(0);
    const Rgba rgba = advisedColour(*advisor, this).value_or(Rgba{255, 255, 255, 255});
    const std::array<float, 4> colour = {
        static_cast<float>(rgba.red) / 255.0f, static_cast<float>(rgba.green) / 255.0f,
        static_cast<float>(rgba.blue) / 255.0f, static_cast<float>(rgba.alpha) / 255.0f};
    const int channel = shownChannel(advisor);

    const GlAttributeScope state(cellState);
    glDisable(GL_TEXTURE_2D);
    setPolygonStipple(hatching());
    glBlendFunc(GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    ColouredPieces drawn;
    for (int row = 0; row < cells.rowCount(); ++row) {
        const std::size_t before = drawn.pieces.size();
        cells.appendRow(row, drawn.pieces);
        {
            const auto lock = lockVoxels();
            for (std::size_t index = before; index < drawn.pieces.size(); ++index) {
                const auto [x, y, z] = drawn.pieces[index].voxel;
                drawn.colours.push_back(
                    windowedColour(image->getVoxel(x, y, z, 0, channel), low, window, colour));
            }
        }
        if (drawn.pieces.size() >= piecesPerBatch || row + 1 == cells.rowCount()) {
            sendHatchedPieces(drawn);
            drawn.clear();
        }
    }
}

void MervImageObject::renderPoint(GraphicsObjectRenderAdvisor *advisor, float x, float y, float z)
{
    // Of the images with fewer than four channels only those with three are vectors.
    constexpr int vectorChannels = 3;
    if (!image || image->getChannels() != vectorChannels ||
        !advisor->overrides(this, RenderKey::DisplayMode, 0) ||
        advisor->value(this, RenderKey::DisplayMode, 0) != 1)
        return;
    const std::array<float, 3> point = {x, y, z};
    std::array<float, 3> voxel{};
    for (int axis = 0; axis < 3; ++axis) {
        const auto index = static_cast<std::size_t>(axis);
        voxel[index] = point[index] / image->getSpacing(axis);
        if (!(voxel[index] >= 0.0f && voxel[index] < static_cast<float>(image->getDimension(axis))))
            return;
    }
    std::array<float, 3> vector{};
    image->getTrilinear(vector.data(), voxel[0], voxel[1], voxel[2]);
    const GlyphLines lines = glyphLines(point, vector);

    const GlAttributeScope state(GL_LINE_BIT | GL_ENABLE_BIT);
    glDisable(GL_TEXTURE_2D);
    {
        const GlPrimitive shaft(GL_LINES);
        sendLine(lines.shaft);
    }
    glEnable(GL_LINE_STIPPLE);
    setLineStipple(0x0E0E);
    {
        const GlPrimitive projection(GL_LINES);
        sendLine(lines.projection);
    }
    setLineStipple(0x1111);
    const GlPrimitive legs(GL_LINES);
    for (const auto &leg : lines.legs)
        sendLine(leg);
}
