#pragma once

#include "Common/Image.h"
#include "objects/RegularGridImageObject.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

// A voxel image as the user sees it: a loaded volume. Owns its MERV::Image and, per axial slice, a texture
// buffer of 8-bit luminance. Axis 0 is x, 1 y, 2 z, 3 t, 4 channels; world coordinates are voxel index times
// spacing in mm, with the first voxel's corner at the origin. Without an image the queries answer their
// defaults: 0, -1 or an empty list. Main thread; where a worker writes the voxels or draws, both sides hold
// the lock of lockVoxels(). Emits updated() when window or voxels were changed through this class.
class MervImageObject : public RegularGridImageObject
{
    Q_OBJECT

public:
    // Takes image (null is allowed), also when this throws. A null fileName makes an unnamed image; otherwise
    // the label is the file's base name, or "DICOM" if that is empty.
    MervImageObject(MERV::Image *image, const QString &fileName, QObject *parent = nullptr);
    MervImageObject(const MervImageObject &) = delete;
    MervImageObject &operator=(const MervImageObject &) = delete;
    ~MervImageObject() override;

    // The voxels, owned by this object; null if there are none.
    MERV::Image *voxels() const;

    int graphicsType() const override;
    int imageType() const override;

    using ImageObject::renderPlane;
    using ImageObject::renderPoint;
    // Draws every axial slice whose middle lies in zMin..zMax (closed); the limits of x and y are not used.
    // Any thread, under the lock of the voxels.
    void renderBox(GraphicsObjectRenderAdvisor *advisor, float xMin, float xMax, float yMin, float yMax,
                   float zMin, float zMax) override;
    void render(GraphicsObjectRenderAdvisor *advisor) override;
    // Axial planes (a and b at most 0.001) show the slice around z = -c * d; others the voxels cut by the
    // plane, each as a cell of one colour, with red hatching over voxels outside the window. Always true.
    bool renderPlane(GraphicsObjectRenderAdvisor *advisor, const float plane[4]) override;
    // The vector at the position, for images of three channels in display mode 1; nothing for others.
    void renderPoint(GraphicsObjectRenderAdvisor *advisor, float x, float y, float z) override;

    QList<GraphicsObject *> *objectsAround(float x, float y, float z, float radius) override;
    float extentX() const override;
    float extentY() const override;
    float extentZ() const override;
    float firstSignificantZ() const override;
    float nextSignificantZ(float z) const override;
    float previousSignificantZ(float z) const override;
    float granularity() const override;
    // The number of dimensions above 1; -1 without an image.
    int dimensionCount() const override;

    // The window of channel 0, in voxel values.
    float windowLow() const;
    float windowHigh() const;
    // Sets the window of channel 0; emits updated().
    void setWindow(float low, float high);

    // UTF-8 text of the voxel image's metadata.
    void setMetaData(const std::string &key, const std::string &value);

    // The slice (from 0) that z in mm lies in, -1 outside the image.
    int sliceIndexAt(double z) const;

    // Mirrors the voxels along the axis 0..4; emits updated(). Nothing for another axis.
    void mirror(int axis);
    // Recomputes minimum, maximum and window of the voxels; emits nothing.
    void computeMinMax();
    // Takes the voxels of source where mask is 255 (frame 0, channel 0), in the slices that all three images
    // have. Nothing if mask and source differ in width or height. Emits nothing. The caller holds the locks
    // of the images that mask and source belong to, where workers write those.
    void copyMaskedVoxels(MERV::Image &mask, MERV::Image &source);

    // Sizes the texture buffers for the present image and converts all slices with the window of channel 0.
    // Returns at once when the sizes are unchanged: whoever changed voxels or the window calls
    // invalidateTextures().
    void updateTextures();
    // Marks all texture buffers as out of date: each slice is converted anew when it is drawn next. Any
    // thread.
    void invalidateTextures();

    // The 8-bit display slice: channel 0 through the window, converted now if it is not up to date.
    // textureRowPitch() bytes per row, x fastest, rows 0 .. height - 1 are the slice's; owned by this object,
    // valid until the sizes change. Null if there is no such slice.
    const unsigned char *displaySlice(int slice);
    int textureRowPitch() const;

    // Guards voxels and texture buffers between threads. Held while slices are converted or drawn; a
    // worker that writes the voxels holds it for the time of writing. No other lock is taken under it,
    // but for that of an image that no worker has: volume first, then the new image that takes voxels from
    // it. The operations of this class take it themselves: do not call them while holding it.
    std::unique_lock<std::mutex> lockVoxels() const;

    // True if the extension string (null: none) names rectangle textures, in any case of letters.
    static bool offersRectangleTextures(const char *extensions);
    // The texture mode for a driver with these extensions.
    static int detectTextureMode(const char *extensions);

protected:
    enum TextureMode : int
    {
        TextureModeUnknown = 0, // before the first drawing
        TextureModePowerOfTwo = 1,
        TextureModeRectangle = 2
    };
    static std::atomic<int> textureMode; // of the process; a TextureMode

    // Releases the present image, takes another one and renames the axes after it. Textures are updated.
    void replaceImage(std::unique_ptr<MERV::Image> newImage);

    std::unique_ptr<MERV::Image> image;
    int textureWidth = 0;  // smallest power of two not below the image's width
    int textureHeight = 0; // the same for its height
    int textureDepth = 0;  // the number of slices that the arrays below were sized for
    std::vector<std::unique_ptr<unsigned char[]>>
        sliceTextures; // textureWidth * textureHeight bytes, x fastest
    std::unique_ptr<std::atomic<bool>[]>
        sliceTextureValid; // the buffer holds the windowed slice of channel 0

private:
    void nameAxes();
    void matchTextures();
    void convertSlice(int slice, int channel);
    void ensureSlice(int slice, int channel);
    void drawSlice(int slice, int channel);
    void drawSliceRectangle(int slice);
    void renderObliquePlane(GraphicsObjectRenderAdvisor *advisor, const float plane[4]);
    int shownChannel(GraphicsObjectRenderAdvisor *advisor);

    mutable std::mutex voxelMutex;
};
