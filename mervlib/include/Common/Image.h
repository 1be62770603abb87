#pragma once

#include "Common/ImageTypes.h"

#include <cstdint>
#include <iosfwd>
#include <list>
#include <string>

namespace MERV {

// A voxel image of any voxel type; all values cross this interface as float. Volumes are stored channels
// fastest, then x, y, z, t. Voxel coordinates are indices from 0, spacing is in mm (t in frame units).
// Results returned as pointers are owned by the caller unless said otherwise. Images are not locked: one
// thread changes, or several read through operations that leave the cursor alone.
class Image
{
public:
    virtual ~Image() = 0;

    // Copies with minimum, maximum and windows computed anew; name and orientation are not taken over, a
    // foreign buffer becomes an owned one. Of cloneSlices last is exclusive, and of several frames the first
    // alone is filled.
    virtual Image *cloneSlices(int first, int last) const = 0;
    virtual Image *clone() const = 0;

    // Voxels windowed to 0..255 or 0..65535 into a buffer, which is returned; x fastest, padded to powers of
    // two on request. A null destination is allocated with new[] and zeroed, the caller delete[]s it. Volumes
    // and getSliceUByte start at the low corner, the other slices are centred in zeros. Sagittal rows hold
    // falling y, sagittal and coronal ones come with falling z; both throw std::out_of_range for a slice that
    // does not exist. The frame operations scale by minimum and maximum instead of the window.
    virtual unsigned char *getVolumeUByte(unsigned char *dst, bool powerOfTwo) const = 0;
    virtual unsigned short *getVolumeUShort(unsigned short *dst, bool powerOfTwo) const = 0;
    virtual unsigned short *getFrameUShort(unsigned short *dst, int frame) const = 0;
    virtual unsigned char *getFrameUByte(unsigned char *dst, int frame) const = 0;
    virtual unsigned char *getSliceUByte(unsigned char *dst, int slice, int channel,
                                         bool powerOfTwo) const = 0;
    virtual unsigned char *getSliceUByte(unsigned char *dst, int slice, int frame, int channel,
                                         bool powerOfTwo) const = 0;
    virtual unsigned char *getAxialSliceUByte(unsigned char *dst, int slice, int channel,
                                              bool powerOfTwo) const = 0;
    virtual unsigned char *getAxialSliceUByte(unsigned char *dst, int slice, int frame, int channel,
                                              bool powerOfTwo) const = 0;
    virtual unsigned char *getSagittalSliceUByte(unsigned char *dst, int slice, int channel,
                                                 bool powerOfTwo) const = 0;
    virtual unsigned char *getCoronalSliceUByte(unsigned char *dst, int slice, int channel,
                                                bool powerOfTwo) const = 0;

    // The buffer itself, in stored order, and a frame of it; null without one.
    virtual void *getData() = 0;
    virtual void *getFrameData(int frame) = 0;

    // As getAxialSliceUByte, with all channels interleaved.
    virtual unsigned char *getAxialSliceAllChannelsUByte(unsigned char *dst, int slice,
                                                         bool powerOfTwo) const = 0;

    // Width, height, depth, and the extents of the slices of each direction.
    virtual int getSizeX() const = 0;
    virtual int getSizeY() const = 0;
    virtual int getSizeZ() const = 0;
    virtual void getAxialSliceSize(int &width, int &height) const = 0;
    virtual void getSagittalSliceSize(int &width, int &height) const = 0;
    virtual void getCoronalSliceSize(int &width, int &height) const = 0;

    // The grey window of a channel, from low to high voxel value; nothing for a channel that does not exist.
    virtual void setWindowLevel(float window, float level, int channel) = 0;
    virtual void setWindowRange(float low, float high, int channel) = 0;
    virtual void setMinMax(float minimum, float maximum) = 0;

    // Distance of voxel centres in mm, of frames in frame units. The channel axis has 0.
    virtual void setSpacing(float x, float y, float z, float t) = 0;

    // The code of DataType. writeVoxelIndices lists the places of a value as lines of text in a file.
    virtual int getDataType() const = 0;
    virtual void writeVoxelIndices(const char *path, int value) const = 0;

    // Dimensions, sizes in values, and entries of the window table. Axes: -1 channels, 0 x, 1 y, 2 z, 3 t;
    // any other axis and a channel that does not exist give 0.
    virtual int getWidth() const = 0;
    virtual int getHeight() const = 0;
    virtual int getDepth() const = 0;
    virtual int getFrames() const = 0;
    virtual int getChannels() const = 0;
    virtual std::uint64_t getValueCount() const = 0;
    virtual int getDimension(int axis) const = 0;
    virtual std::uint64_t getSize() const = 0;
    virtual std::uint32_t getRowStride() const = 0;
    virtual std::uint64_t getSliceStride() const = 0;
    virtual float getSpacing(int axis) const = 0;
    virtual float getWindow(int channel) const = 0;
    virtual float getLevel(int channel) const = 0;
    virtual float getLow(int channel) const = 0;
    virtual float getMinimum() const = 0;
    virtual float getHigh(int channel) const = 0;
    virtual float getMaximum() const = 0;

    // What describes the image: range, name, position of voxel (0, 0, 0) in mm, row-major direction matrix.
    // The pointers stay valid as long as the image.
    virtual void setMinimum(float v) = 0;
    virtual void setMaximum(float v) = 0;
    virtual void setName(const std::string &name) = 0;
    virtual std::string getName() const = 0;
    virtual void setPosition(const float position[3]) = 0;
    virtual void setOrientation(const float orientation[9]) = 0;
    virtual const float *getPosition() const = 0;
    virtual const float *getOrientation() const = 0;

    // True when the buffer belongs to someone else.
    virtual bool hasExternalBuffer() const = 0;

    // The voxels as they are stored, without a header; 0 is success.
    virtual int load(std::istream &stream, bool skipHeader) = 0;
    virtual int load(const char *path, bool skipHeader) = 0;
    virtual int save(std::ostream &stream) const = 0;
    virtual int save(const char *path) const = 0;

    // Shape and memory. setDimensions always returns 0, zeroes the windows and takes a zeroed buffer unless
    // the number of values stays or the buffer is external. Throws Exception when memory is exhausted.
    virtual int setDimensions(int width, int height, int depth, int frames, int channels) = 0;
    virtual void clear() = 0;
    virtual void freeBuffer() = 0;

    // All values in place, and what is computed from them. invert mirrors each channel in its window,
    // applyWindowLevel clamps to the window of channel 0, computeMinMax sets range and windows.
    virtual void invert() = 0;
    virtual void applyWindowLevel(bool inverted) = 0;
    virtual void computeMinMax() = 0;
    virtual float getMean() const = 0;
    virtual void swapBytes() = 0;
    virtual void getCenterOfGravity(float out[3]) const = 0;

    // Frees the buffer and expects a foreign one; takes that mark away again, but never frees a foreign one.
    virtual void setBufferExternal() = 0;
    virtual void clearBufferExternal() = 0;

    // Values in stored order at a cursor, which reading and writing by index or voxel put behind their place;
    // false at the end. Places outside the buffer read 0 and store nothing. Values are truncated and
    // saturated.
    virtual bool getNextValue(float &value) = 0;
    virtual bool setNextValue(float value) = 0;
    virtual void setLastValue(float value) = 0;
    virtual void resetCursor() = 0;
    virtual void setValue(float value, std::uint64_t index) = 0;
    virtual void setVoxel(float value, int x, int y, int z, int t, int channel) = 0;
    virtual float getValue(std::uint64_t index) = 0;
    virtual float getVoxel(int x, int y, int z, int t, int channel) = 0;

    // Addresses the buffer as if it were stored in planes of that direction; leaves the cursor.
    virtual float getAxialVoxel(int a, int b, int slice, int frame, int channel) = 0;
    virtual float getSagittalVoxel(int a, int b, int slice, int frame, int channel) = 0;
    virtual float getCoronalVoxel(int a, int b, int slice, int frame, int channel) = 0;

    // Interpolated values at continuous voxel coordinates, k.0 being the centre of voxel k; the border
    // repeats outwards, NaN and infinite coordinates give 0. Into out go all channels, else the value is that
    // of the given channel or the first one. Safe from several threads at once.
    virtual void getNearest(float *out, float x, float y, float z) const = 0;
    virtual float getNearest(float x, float y, float z) const = 0;
    virtual float getBilinear(float x, float y, int slice, int frame, int channel) const = 0;
    virtual void getTrilinear(float *out, float x, float y, float z) const = 0;
    virtual float getTrilinear(float x, float y, float z, int frame, int channel) const = 0;
    virtual float getQuadrilinear(float x, float y, float z, float t, int channel) const = 0;
    virtual void getTricubic(float *out, float x, float y, float z) const = 0;
    virtual float getTricubic(float x, float y, float z) const = 0;
    virtual void getBilinearCubic(float *out, float x, float y, float z) const = 0;
    virtual float getBilinearCubic(float x, float y, float z) const = 0;

    // A part as a new image, without range and windows; voxels outside the source are 0.
    virtual Image *getRegion(const Region &region) = 0;

    // Changes of the grid, in place unless a new image is asked for. interpolation: 0 and 2 nearest,
    // 1 trilinear, 3 tricubic, 4 bilinear in the slice and cubic across, 5 bilinear, 6 quadrilinear; kinds 0,
    // 2, 3 and 4 read the first channel and frame for all. rotate turns a quarter around x (0), y (1) or z
    // (2).
    virtual void downsample(int fx, int fy, int fz, int ft) = 0;
    virtual void resample(int width, int height, int interpolation) = 0;
    virtual Image *resample(int width, int height, int depth, int frames, int interpolation,
                            bool intoNewImage) = 0;
    virtual void rotate(int axis) = 0;
    virtual void scaleToPowerOfTwo(int interpolation) = 0;
    virtual void scaleToPowerOfTwo2D(int interpolation) = 0;
    virtual void mirror(bool x, bool y, bool z, bool t, bool channels) = 0;

    // Filters with row-major kernels, odd sizes only. A dataType of 0 is that of the source; a null output is
    // created for the caller, one passed in is filled. Null on failure.
    virtual Image *computeFilteredImage2D(int dataType, const float *filter, int windowSize, Image *output,
                                          int channel) = 0;
    virtual Image *computeFilteredImage3D(int dataType, const float *filter, int windowSize, Image *output,
                                          int channel) = 0;
    virtual void extendBorder(int width) = 0;
    virtual Image *computeGradient(int dataType, const float *filter, bool keepSize, Image *output) = 0;
    virtual Image *computeHessian(int dataType, const float *filter, Image *output) = 0;
    virtual Image *compute3DGradientMagnitude(int dataType, const float *filter, bool keepSize,
                                              Image *output) = 0;
    virtual Image *compute3DGradient(int dataType, const float *filter, bool keepSize,
                                     bool withMagnitudeChannel, Image *output) = 0;

    // Text by key, of the image and of each slice. A missing key gives an empty text, a missing slice throws
    // Exception.
    virtual std::string getMetaData(const std::string &key) const = 0;
    virtual void setMetaData(const std::string &key, const std::string &value) = 0;
    virtual void getMetaDataKeys(std::list<std::string> &keys) const = 0;
    virtual void setSliceMetaData(int slice, const std::string &key, const std::string &value) = 0;
    virtual std::string getSliceMetaData(int slice, const std::string &key) const = 0;
    virtual void getSliceMetaDataKeys(int slice, std::list<std::string> &keys) const = 0;

    // Not 0, as at first: operations report on standard output.
    virtual void setVerbose(int verbose) = 0;
};

// A new empty image with voxels of the given DataType code; null for any other code. Caller owns.
Image *createImage(int dataType);

} // namespace MERV
