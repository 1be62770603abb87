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
    virtual ~Image() = 0;                                      // with a body
    virtual Image *cloneSlices(int first, int last) const = 0; // last exclusive; caller owns
    virtual Image *clone() const = 0;                          // caller owns
    // a null destination is allocated with new[] (zero-filled), caller delete[]s; the buffer used is returned
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
    virtual void *getData() = 0;
    virtual void *getFrameData(int frame) = 0;
    virtual unsigned char *getAxialSliceAllChannelsUByte(unsigned char *dst, int slice,
                                                         bool powerOfTwo) const = 0;
    virtual int getSizeX() const = 0;
    virtual int getSizeY() const = 0;
    virtual int getSizeZ() const = 0;
    virtual void getAxialSliceSize(int &width, int &height) const = 0;
    virtual void getSagittalSliceSize(int &width, int &height) const = 0;
    virtual void getCoronalSliceSize(int &width, int &height) const = 0;
    virtual void setWindowLevel(float window, float level, int channel) = 0;
    virtual void setWindowRange(float low, float high, int channel) = 0;
    virtual void setMinMax(float minimum, float maximum) = 0;
    virtual void setSpacing(float x, float y, float z, float t) = 0;
    virtual int getDataType() const = 0;
    virtual void writeVoxelIndices(const char *path, int value) const = 0;
    virtual int getWidth() const = 0;
    virtual int getHeight() const = 0;
    virtual int getDepth() const = 0;
    virtual int getFrames() const = 0;
    virtual int getChannels() const = 0;
    virtual std::uint64_t getValueCount() const = 0;
    virtual int getDimension(int axis) const = 0; // -1..3, else 0
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
    virtual void setMinimum(float v) = 0;
    virtual void setMaximum(float v) = 0;
    virtual void setName(const std::string &name) = 0;
    virtual std::string getName() const = 0;
    virtual void setPosition(const float position[3]) = 0;
    virtual void setOrientation(const float orientation[9]) = 0;
    virtual const float *getPosition() const = 0;
    virtual const float *getOrientation() const = 0;
    virtual bool hasExternalBuffer() const = 0;
    virtual int load(std::istream &stream, bool skipHeader) = 0; // 0 = success
    virtual int load(const char *path, bool skipHeader) = 0;
    virtual int save(std::ostream &stream) const = 0;
    virtual int save(const char *path) const = 0;
    virtual int setDimensions(int width, int height, int depth, int frames, int channels) = 0;
    virtual void clear() = 0;
    virtual void freeBuffer() = 0;
    virtual void invert() = 0;
    virtual void applyWindowLevel(bool inverted) = 0;
    virtual void computeMinMax() = 0;
    virtual float getMean() const = 0;
    virtual void swapBytes() = 0;
    virtual void getCenterOfGravity(float out[3]) const = 0;
    virtual void setBufferExternal() = 0;
    virtual void clearBufferExternal() = 0;
    virtual bool getNextValue(float &value) = 0;
    virtual bool setNextValue(float value) = 0;
    virtual void setLastValue(float value) = 0;
    virtual void resetCursor() = 0;
    virtual void setValue(float value, std::uint64_t index) = 0;
    virtual void setVoxel(float value, int x, int y, int z, int t, int channel) = 0;
    virtual float getValue(std::uint64_t index) = 0; // moves the cursor: not const
    virtual float getVoxel(int x, int y, int z, int t, int channel) = 0;
    virtual float getAxialVoxel(int a, int b, int slice, int frame, int channel) = 0;
    virtual float getSagittalVoxel(int a, int b, int slice, int frame, int channel) = 0;
    virtual float getCoronalVoxel(int a, int b, int slice, int frame, int channel) = 0;
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
    virtual Image *getRegion(const Region &region) = 0; // caller owns
    virtual void downsample(int fx, int fy, int fz, int ft) = 0;
    virtual void resample(int width, int height, int interpolation) = 0;
    virtual Image *resample(int width, int height, int depth, int frames, int interpolation,
                            bool intoNewImage) = 0;
    virtual void rotate(int axis) = 0;
    virtual void scaleToPowerOfTwo(int interpolation) = 0;
    virtual void scaleToPowerOfTwo2D(int interpolation) = 0;
    virtual void mirror(bool x, bool y, bool z, bool t, bool channels) = 0;
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
    virtual std::string getMetaData(const std::string &key) const = 0;
    virtual void setMetaData(const std::string &key, const std::string &value) = 0;
    virtual void getMetaDataKeys(std::list<std::string> &keys) const = 0;
    virtual void setSliceMetaData(int slice, const std::string &key, const std::string &value) = 0;
    virtual std::string getSliceMetaData(int slice, const std::string &key) const = 0;
    virtual void getSliceMetaDataKeys(int slice, std::list<std::string> &keys) const = 0;
    virtual void setVerbose(int verbose) = 0;
};

// A new empty image with voxels of the given DataType code; null for any other code. Caller owns.
Image *createImage(int dataType);

} // namespace MERV
