#pragma once

#include "Common/Image.h"
#include "Common/VoxelBuffer.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <list>
#include <map>
#include <memory>
#include <string>

namespace MERV {

template <class T>
struct DataTypeOf;
template <>
struct DataTypeOf<char>
{
    static constexpr int value = TypeChar;
};
template <>
struct DataTypeOf<unsigned char>
{
    static constexpr int value = TypeUChar;
};
template <>
struct DataTypeOf<short>
{
    static constexpr int value = TypeShort;
};
template <>
struct DataTypeOf<unsigned short>
{
    static constexpr int value = TypeUShort;
};
template <>
struct DataTypeOf<int>
{
    static constexpr int value = TypeInt;
};
template <>
struct DataTypeOf<unsigned int>
{
    static constexpr int value = TypeUInt;
};
template <>
struct DataTypeOf<float>
{
    static constexpr int value = TypeFloat;
};
template <>
struct DataTypeOf<double>
{
    static constexpr int value = TypeDouble;
};

namespace detail {
struct Axis;
struct ResampledGrid;
} // namespace detail

// The one implementation of Image, with voxels of type T. Instantiated for the eight types above; member
// definitions are in mervlib/src/detail/ImageBase*.inl, one file per subject.
template <class T>
class ImageBase : public Image
{
public:
    using value_type = T;

    ImageBase();
    ImageBase(const ImageBase &other); // see clone()
    ImageBase(ImageBase &&other) noexcept;
    ImageBase &operator=(const ImageBase &) = delete;
    ~ImageBase() override;

    Image *cloneSlices(int first, int last) const override;
    Image *clone() const override;
    unsigned char *getVolumeUByte(unsigned char *dst, bool powerOfTwo) const override;
    unsigned short *getVolumeUShort(unsigned short *dst, bool powerOfTwo) const override;
    unsigned short *getFrameUShort(unsigned short *dst, int frame) const override;
    unsigned char *getFrameUByte(unsigned char *dst, int frame) const override;
    unsigned char *getSliceUByte(unsigned char *dst, int slice, int channel, bool powerOfTwo) const override;
    unsigned char *getSliceUByte(unsigned char *dst, int slice, int frame, int channel,
                                 bool powerOfTwo) const override;
    unsigned char *getAxialSliceUByte(unsigned char *dst, int slice, int channel,
                                      bool powerOfTwo) const override;
    unsigned char *getAxialSliceUByte(unsigned char *dst, int slice, int frame, int channel,
                                      bool powerOfTwo) const override;
    unsigned char *getSagittalSliceUByte(unsigned char *dst, int slice, int channel,
                                         bool powerOfTwo) const override;
    unsigned char *getCoronalSliceUByte(unsigned char *dst, int slice, int channel,
                                        bool powerOfTwo) const override;
    void *getData() override;
    void *getFrameData(int frame) override;
    unsigned char *getAxialSliceAllChannelsUByte(unsigned char *dst, int slice,
                                                 bool powerOfTwo) const override;
    int getSizeX() const override;
    int getSizeY() const override;
    int getSizeZ() const override;
    void getAxialSliceSize(int &width, int &height) const override;
    void getSagittalSliceSize(int &width, int &height) const override;
    void getCoronalSliceSize(int &width, int &height) const override;
    void setWindowLevel(float window, float level, int channel) override;
    void setWindowRange(float low, float high, int channel) override;
    void setMinMax(float minimum, float maximum) override;
    void setSpacing(float x, float y, float z, float t) override;
    int getDataType() const override;
    void writeVoxelIndices(const char *path, int value) const override;
    int getWidth() const override;
    int getHeight() const override;
    int getDepth() const override;
    int getFrames() const override;
    int getChannels() const override;
    std::uint64_t getValueCount() const override;
    int getDimension(int axis) const override;
    std::uint64_t getSize() const override;
    std::uint32_t getRowStride() const override;
    std::uint64_t getSliceStride() const override;
    float getSpacing(int axis) const override;
    float getWindow(int channel) const override;
    float getLevel(int channel) const override;
    float getLow(int channel) const override;
    float getMinimum() const override;
    float getHigh(int channel) const override;
    float getMaximum() const override;
    void setMinimum(float v) override;
    void setMaximum(float v) override;
    void setName(const std::string &name) override;
    std::string getName() const override;
    void setPosition(const float position[3]) override;
    void setOrientation(const float orientation[9]) override;
    const float *getPosition() const override;
    const float *getOrientation() const override;
    bool hasExternalBuffer() const override;
    int load(std::istream &stream, bool skipHeader) override;
    int load(const char *path, bool skipHeader) override;
    int save(std::ostream &stream) const override;
    int save(const char *path) const override;
    int setDimensions(int width, int height, int depth, int frames, int channels) override;
    void clear() override;
    void freeBuffer() override;
    void invert() override;
    void applyWindowLevel(bool inverted) override;
    void computeMinMax() override;
    float getMean() const override;
    void swapBytes() override;
    void getCenterOfGravity(float out[3]) const override;
    void setBufferExternal() override;
    void clearBufferExternal() override;
    bool getNextValue(float &value) override;
    bool setNextValue(float value) override;
    void setLastValue(float value) override;
    void resetCursor() override;
    void setValue(float value, std::uint64_t index) override;
    void setVoxel(float value, int x, int y, int z, int t, int channel) override;
    float getValue(std::uint64_t index) override;
    float getVoxel(int x, int y, int z, int t, int channel) override;
    float getAxialVoxel(int a, int b, int slice, int frame, int channel) override;
    float getSagittalVoxel(int a, int b, int slice, int frame, int channel) override;
    float getCoronalVoxel(int a, int b, int slice, int frame, int channel) override;
    void getNearest(float *out, float x, float y, float z) const override;
    float getNearest(float x, float y, float z) const override;
    float getBilinear(float x, float y, int slice, int frame, int channel) const override;
    void getTrilinear(float *out, float x, float y, float z) const override;
    float getTrilinear(float x, float y, float z, int frame, int channel) const override;
    float getQuadrilinear(float x, float y, float z, float t, int channel) const override;
    void getTricubic(float *out, float x, float y, float z) const override;
    float getTricubic(float x, float y, float z) const override;
    void getBilinearCubic(float *out, float x, float y, float z) const override;
    float getBilinearCubic(float x, float y, float z) const override;
    Image *getRegion(const Region &region) override;
    void downsample(int fx, int fy, int fz, int ft) override;
    void resample(int width, int height, int interpolation) override;
    Image *resample(int width, int height, int depth, int frames, int interpolation,
                    bool intoNewImage) override;
    void rotate(int axis) override;
    void scaleToPowerOfTwo(int interpolation) override;
    void scaleToPowerOfTwo2D(int interpolation) override;
    void mirror(bool x, bool y, bool z, bool t, bool channels) override;
    Image *computeFilteredImage2D(int dataType, const float *filter, int windowSize, Image *output,
                                  int channel) override;
    Image *computeFilteredImage3D(int dataType, const float *filter, int windowSize, Image *output,
                                  int channel) override;
    void extendBorder(int width) override;
    Image *computeGradient(int dataType, const float *filter, bool keepSize, Image *output) override;
    Image *computeHessian(int dataType, const float *filter, Image *output) override;
    Image *compute3DGradientMagnitude(int dataType, const float *filter, bool keepSize,
                                      Image *output) override;
    Image *compute3DGradient(int dataType, const float *filter, bool keepSize, bool withMagnitudeChannel,
                             Image *output) override;
    std::string getMetaData(const std::string &key) const override;
    void setMetaData(const std::string &key, const std::string &value) override;
    void getMetaDataKeys(std::list<std::string> &keys) const override;
    void setSliceMetaData(int slice, const std::string &key, const std::string &value) override;
    std::string getSliceMetaData(int slice, const std::string &key) const override;
    void getSliceMetaDataKeys(int slice, std::list<std::string> &keys) const override;
    void setVerbose(int verbose) override;

    // First value of the slice: buffer + frame * frameStride + slice * sliceStride, unchecked.
    virtual T *getSlicePointer(int slice, int frame);

    // Marks the buffer external and stores the pointer to valueCount values, which is never freed here.
    void setExternalBuffer(T *buffer);

    // Copies a slice across x (y) without windowing into output, reshaping it if needed.
    // Throws std::out_of_range when slice or frame do not exist.
    void getSagittalSliceImage(ImageBase<T> &output, int slice, int frame) const;
    void getCoronalSliceImage(ImageBase<T> &output, int slice, int frame) const;

    // The voxel at an index in the order channel, x, y, z, t; unchecked.
    T *voxelPointer(const std::array<std::uint32_t, 5> &index);

    T *begin() { return data; }
    T *end() { return data + valueCount; }
    const T *begin() const { return data; }
    const T *end() const { return data + valueCount; }

    // Forward iterator over the current region, channel fastest, then x, y, z, t.
    class RegionIterator
    {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = T;
        using difference_type = std::ptrdiff_t;
        using pointer = T *;
        using reference = T &;

        RegionIterator() = default;
        reference operator*() const { return *current; }
        pointer operator->() const { return current; }
        RegionIterator &operator++();
        RegionIterator operator++(int)
        {
            RegionIterator before = *this;
            ++*this;
            return before;
        }
        bool operator==(const RegionIterator &other) const { return remaining == other.remaining; }

    private:
        friend class ImageBase<T>;
        T *current = nullptr;
        std::uint64_t remaining = 0;
        std::array<std::uint32_t, 5> index{}; // relative to the region's first voxel
        std::array<std::uint32_t, 5> size{};
        std::array<std::uint64_t, 5> gap{}; // values to skip when an axis rolls over
    };
    RegionIterator regionBegin();
    RegionIterator regionEnd();
    const Region &getRegion() const { return region; }
    void setRegion(const Region &newRegion);

    ImageBase operator+(const ImageBase &other) const;
    ImageBase operator-(const ImageBase &other) const;
    ImageBase operator*(const ImageBase &other) const;
    ImageBase operator/(const ImageBase &other) const;
    ImageBase &operator+=(T scalar);
    ImageBase &operator-=(T scalar);
    ImageBase &operator*=(T scalar);
    ImageBase &operator/=(T scalar);
    ImageBase &operator+=(const ImageBase &other);
    ImageBase &operator-=(const ImageBase &other);
    ImageBase &operator*=(const ImageBase &other);
    ImageBase &operator/=(const ImageBase &other);

private:
    // Extents of a plane and number of planes, as the slice readers take the buffer to be stored.
    struct PlaneShape
    {
        int columns;
        int rows;
        int slices;
    };

    // Frees the present buffer and takes a new zeroed one of count values; throws Exception when memory is
    // exhausted or count * sizeof(T) does not fit.
    void allocate(std::uint64_t count);
    // Makes a buffer of valueCount values the image's own; a foreign one is forgotten.
    void adopt(VoxelBuffer<T> buffer);
    // Recomputes strides, region and window table; frees the buffer when valueCount changed. Throws
    // Exception, with nothing changed, when the number of values cannot be addressed.
    void changeDimensions(int width, int height, int depth, int frames, int channels);
    void copyShape(const ImageBase &other);
    Region wholeRegion() const;

    bool hasChannel(int channel) const;
    float windowEntry(int channel, std::size_t entry) const; // 0 for a channel that does not exist
    void setWindowEntries(int channel, const std::array<float, 4> &entries);

    std::uint64_t flatIndex(int x, int y, int z, int t, int channel) const;
    float valueAt(std::uint64_t index) const; // 0 behind the buffer
    void storeAt(float value, std::uint64_t index);
    float getPlaneVoxel(const PlaneShape &shape, int a, int b, int slice, int frame, int channel) const;

    // Interpolating readers.
    detail::Axis axis(int number) const;
    bool isReadable(float x, float y, float z) const;
    std::uint64_t nearestOffset(float x, float y, float z) const;
    template <class Reader>
    void readChannels(float *out, bool readable, const Reader &reader) const;

    // Windowed slices. The way of a slice through the buffer; steps are in values.
    struct SliceWalk
    {
        int width;
        int height;
        std::uint64_t first;
        std::ptrdiff_t columnStep;
        std::uint64_t rowStep;
        bool rowsReversed;
        bool columnsReversed;
    };
    template <class Out>
    Out *getVolume(Out *destination, bool powerOfTwo) const;
    template <class Out>
    Out *getScaledFrame(Out *destination, int frame) const;
    unsigned char *getCornerSlice(unsigned char *destination, std::uint64_t offset, int channel,
                                  bool powerOfTwo) const;
    SliceWalk axialWalk(std::uint64_t first) const;
    unsigned char *getCentredSlice(unsigned char *destination, const SliceWalk &walk, int channel,
                                   bool powerOfTwo) const;
    void shapeSliceImage(ImageBase<T> &output, int width, int height) const;

    // Element-wise arithmetic.
    template <class Operation>
    ImageBase &combineWith(const ImageBase &other, const Operation &operation);
    template <class Operation>
    ImageBase &combineWith(T scalar, const Operation &operation);

    // Changes of the grid. Extents and factors in the order x, y, z, t.
    VoxelBuffer<T> boxAverages(const std::array<int, 4> &extent, const std::array<int, 4> &factor) const;
    void reportSize(const char *text) const; // when verbose
    template <class RowReader>
    void fillRows(const detail::ResampledGrid &grid, bool firstChannelOnly, T *out,
                  const RowReader &rowReader) const;
    void resampleNearest(const detail::ResampledGrid &grid, T *out) const;
    void resampleLinear(const detail::ResampledGrid &grid, int interpolation, T *out) const;
    void resampleTricubic(const detail::ResampledGrid &grid, T *out) const;
    void resampleBilinearCubic(const detail::ResampledGrid &grid, T *out) const;
    void resampleInto(const detail::ResampledGrid &grid, int interpolation, T *out) const;
    // An image with voxels and spacing, but no range yet.
    std::unique_ptr<ImageBase<T>> resampled(int width, int height, int depth, int frames,
                                            int interpolation) const;
    void takeGrid(ImageBase<T> &other); // shape, spacing and voxels, which the other one loses
    void turnFrame(int number, const T *from, T *to) const;
    bool mirrorIsVoid(const std::array<bool, 5> &flags) const;

    bool externalBuffer = false;
    T *data = nullptr;    // 16-byte aligned
    VoxelBuffer<T> owned; // what this object allocated itself; the only memory that it frees
    std::array<std::int32_t, 5> dimensions{};
    std::array<float, 5> spacing{0.0f, 1.0f, 1.0f, 1.0f, 1.0f};
    // Window, level, low, high: those of all channels, but for the channels that have their own. Like the
    // metadata of the slices they take no memory for what was never set: files may have millions of either.
    std::array<float, 4> commonWindow{};
    std::map<int, std::array<float, 4>> channelWindows;
    float minimum = 0.0f;
    float maximum = 0.0f;
    std::int32_t verbose = 1;
    std::uint64_t rowStride = 0; // strides in 64 bits: large volumes wrap in less
    std::uint64_t sliceStride = 0;
    std::uint64_t frameStride = 0;
    std::uint64_t valueCount = 0;
    std::atomic<std::uint64_t> cursor{0};
    std::array<float, 3> position{};
    std::array<float, 9> orientation{1, 0, 0, 0, 1, 0, 0, 0, 1};
    std::string name;
    std::array<std::uint64_t, 5> axisStrides{};
    Region region;
    MetaMap metaData;
    std::map<int, MetaMap> sliceMetaData; // of the slices that have some
};

extern template class ImageBase<char>;
extern template class ImageBase<unsigned char>;
extern template class ImageBase<short>;
extern template class ImageBase<unsigned short>;
extern template class ImageBase<int>;
extern template class ImageBase<unsigned int>;
extern template class ImageBase<float>;
extern template class ImageBase<double>;

} // namespace MERV
