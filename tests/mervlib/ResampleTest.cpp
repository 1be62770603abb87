#include "tests/mervlib/ImageTestTools.h"

#include "Common/VoxelCast.h"

#include <algorithm>
#include <cmath>
#include <limits>

using MERV::Image;
using MERV::ImageBase;

template <class T>
class Resample : public testing::Test
{};
TYPED_TEST_SUITE(Resample, VoxelTypes);

namespace {

// Resampling voxel by voxel through the readers of the virtual interface.
template <class T>
class SlowResample
{
public:
    SlowResample(const Image &sourceImage, const Shape &newSize)
        : source(sourceImage)
        , size(newSize)
        , sameSize(shapeOf(sourceImage) == newSize)
    {}

    std::vector<T> values(int kind) const
    {
        std::vector<T> result;
        for (int t = 0; t < size[3]; ++t)
            for (int z = 0; z < size[2]; ++z)
                for (int y = 0; y < size[1]; ++y)
                    for (int x = 0; x < size[0]; ++x)
                        for (int c = 0; c < size[4]; ++c)
                            result.push_back(MERV::voxel_cast<T>(
                                read(kind, place(x, 0), place(y, 1), place(z, 2), place(t, 3), c)));
        return result;
    }

    float step(std::size_t axis) const
    {
        const int before = source.getDimension(static_cast<int>(axis));
        return size[axis] > 1 ? static_cast<float>(before - 1) / static_cast<float>(size[axis] - 1) : 1.0f;
    }

private:
    float place(int index, std::size_t axis) const
    {
        const auto last = static_cast<float>(source.getDimension(static_cast<int>(axis)) - 1);
        const float coordinate = static_cast<float>(index) * step(axis);
        if (!sameSize && coordinate >= last && coordinate > 1.0f)
            return static_cast<float>(static_cast<double>(last) - 9.999999747378752e-5);
        return coordinate;
    }
    float read(int kind, float x, float y, float z, float t, int c) const
    {
        switch (kind) {
        case 1:
            return source.getTrilinear(x, y, z, static_cast<int>(t), c);
        case 3:
            return source.getTricubic(x, y, z);
        case 4:
            return source.getBilinearCubic(x, y, z);
        case 5:
            return source.getBilinear(x, y, static_cast<int>(z), static_cast<int>(t), c);
        case 6:
            return source.getQuadrilinear(x, y, z, t, c);
        default:
            return source.getNearest(x, y, z);
        }
    }

    const Image &source;
    Shape size;
    bool sameSize;
};

const std::string noSlices =
    "Warning: TriLinear/Tricubic Interpolation requested, but only one dimension of slices found.\n"
    "Switching to BiLinear Interpolation\n";
const std::string noFrames =
    "Warning: QuadriLinear Interpolation requested, but only one dimension of time found.\n"
    "Switching to TriLinear Interpolation\n";

int takenKind(int kind, const Shape &size)
{
    if (size[2] < 2 && (kind == 1 || kind == 3))
        return 5;
    return size[3] < 2 && kind == 6 ? 1 : kind;
}

template <class T>
void checkAllKinds(const Shape &shape, const Shape &size)
{
    ImageBase<T> image = scatteredImage<T>(shape);
    const SlowResample<T> slow(image, size);
    for (int kind = -1; kind <= 7; ++kind) {
        CapturedStream err(std::cerr);
        const std::unique_ptr<Image> result(image.resample(size[0], size[1], size[2], size[3], kind, true));
        ASSERT_NE(result, nullptr);
        const auto &typed = dynamic_cast<const ImageBase<T> &>(*result);
        ASSERT_TRUE(sameBits(valuesOf(typed), slow.values(takenKind(kind, size))))
            << testing::PrintToString(shape) << " to " << testing::PrintToString(size) << " kind " << kind;
    }
}

} // namespace

TYPED_TEST(Resample, everyKindAgreesWithTheReadersBitForBit)
{
    checkAllKinds<TypeParam>({5, 4, 3, 2, 2}, {9, 7, 6, 3, 2});
    checkAllKinds<TypeParam>({9, 7, 6, 3, 1}, {4, 5, 3, 2, 1});
    checkAllKinds<TypeParam>({5, 4, 3, 2, 3}, {5, 4, 3, 2, 3});
    checkAllKinds<TypeParam>({5, 4, 3, 2, 1}, {6, 4, 3, 2, 1});
    checkAllKinds<TypeParam>({40, 3, 3, 1, 1}, {83, 5, 5, 1, 1});
}

TEST(ResampleSizes, everyKindOnAllSmallSizes)
{
    for (int w = 1; w <= 3; ++w)
        for (int h = 1; h <= 3; ++h)
            for (int d = 1; d <= 3; ++d)
                for (int t = 1; t <= 2; ++t)
                    for (const Shape &size : {Shape{1, 1, 1, 1, 1}, Shape{2, 2, 2, 2, 1},
                                              Shape{3, 4, 5, 2, 1}, Shape{4, 1, 3, 1, 1}})
                        ASSERT_NO_FATAL_FAILURE(checkAllKinds<unsigned char>({w, h, d, t, 1}, size));
}

TYPED_TEST(Resample, inPlaceGivesTheSameAsIntoANewImage)
{
    for (int kind = 0; kind <= 6; ++kind) {
        ImageBase<TypeParam> image = scatteredImage<TypeParam>({5, 4, 3, 2, 2});
        image.setSpacing(0.5f, 0.25f, 2, 3);
        const std::unique_ptr<Image> result(image.resample(9, 7, 5, 3, kind, true));
        const auto &typed = dynamic_cast<const ImageBase<TypeParam> &>(*result);
        EXPECT_EQ(image.resample(9, 7, 5, 3, kind, false), nullptr);
        EXPECT_EQ(valuesOf(image), valuesOf(typed));
        EXPECT_EQ(shapeOf(image), (Shape{9, 7, 5, 3, 2}));
        EXPECT_EQ(image.getMaximum(), typed.getMaximum());
        EXPECT_EQ(image.getHigh(1), typed.getMaximum());
        for (int axis = -1; axis < 4; ++axis)
            EXPECT_EQ(image.getSpacing(axis), typed.getSpacing(axis));
        EXPECT_EQ(image.getSpacing(0), 0.25f); // half the step, as 4 / 8
    }
}

TYPED_TEST(Resample, oldSizeGivesTheOldValues)
{
    for (const int kind : {0, 1, 2, 5, 6}) {
        ImageBase<TypeParam> image = scatteredImage<TypeParam>({5, 4, 3, 2, 1});
        if (kind == 0 || kind == 2)
            std::copy_n(image.begin(), 60, image.begin() + 60); // nearest reads the first frame alone
        const std::vector<TypeParam> before = valuesOf(image);
        image.resample(5, 4, 3, 2, kind, false);
        EXPECT_EQ(valuesOf(image), before) << kind;
        EXPECT_EQ(image.getSpacing(0), 1.0f);
    }
}

// Coordinates from the last index on are moved before it, which truncation of integers shows.
TEST(ResampleClamp, anotherSizeBlendsTheLastVoxels)
{
    ImageBase<unsigned char> image = countingImage<unsigned char>({3, 2, 2, 1, 1});
    for (unsigned char &value : image)
        value = static_cast<unsigned char>(value * 10);
    image.resample(5, 2, 2, 1, 1, false);
    // x = 0, 0.5, 1, 1.5, 1.9999: 20 becomes 19.999 and then 19.
    EXPECT_EQ(std::vector<unsigned char>(image.begin(), image.begin() + 5),
              (std::vector<unsigned char>{0, 5, 10, 15, 19}));
}

// The clamp asks for a coordinate above 1, so that of two voxels the last stays itself.
TEST(ResampleClamp, theLastOfTwoVoxelsIsNotMoved)
{
    ImageBase<unsigned char> image = countingImage<unsigned char>({2, 2, 2, 1, 1});
    image.begin()[1] = 200;
    image.resample(3, 2, 2, 1, 1, false);
    EXPECT_EQ(image.getVoxel(2, 0, 0, 0, 0), 200.0f);
}

TYPED_TEST(Resample, nearestAndCubicReadTheFirstChannelAndFrame)
{
    for (const int kind : {0, 2, 3, 4}) {
        ImageBase<TypeParam> image;
        image.setVerbose(0);
        image.setDimensions(2, 2, 2, 2, 2);
        for (std::uint64_t i = 0; i < 32; ++i) // the first frame has 16 values
            image.setValue(i < 16 && i % 2 == 0 ? 7.0f : 90.0f, i);
        image.resample(3, 3, 3, 3, kind, false);
        for (const TypeParam value : image)
            EXPECT_EQ(value, TypeParam(7));
    }
}

TYPED_TEST(Resample, framesAndChannelsOfLinearKindsAreTheirOwn)
{
    ImageBase<TypeParam> image;
    image.setVerbose(0);
    image.setDimensions(2, 2, 2, 3, 2);
    for (int i = 0; i < 48; ++i) {
        const int frame = i / 16, channel = i % 2;
        image.setValue(static_cast<float>(frame * 20 + channel * 10), static_cast<std::uint64_t>(i));
    }
    const std::unique_ptr<Image> linear(image.resample(3, 2, 2, 5, 1, true));
    const std::unique_ptr<Image> quadrilinear(image.resample(3, 2, 2, 5, 6, true));
    for (int c = 0; c < 2; ++c) {
        // Frames at 0, 0.5, 1, 1.5 and below 2, so that the last is never reached by the trilinear kind.
        const float base = static_cast<float>(c) * 10;
        EXPECT_EQ(linear->getVoxel(1, 1, 1, 0, c), base);
        EXPECT_EQ(linear->getVoxel(1, 1, 1, 1, c), base);
        EXPECT_EQ(linear->getVoxel(1, 1, 1, 2, c), base + 20);
        EXPECT_EQ(linear->getVoxel(1, 1, 1, 4, c), base + 20);
        EXPECT_EQ(quadrilinear->getVoxel(1, 1, 1, 1, c), base + 10);
        EXPECT_EQ(quadrilinear->getVoxel(1, 1, 1, 3, c), base + 30);
    }
}

TYPED_TEST(Resample, oneSliceTakesTheBilinearKindAndWarns)
{
    for (const int kind : {1, 3}) {
        ImageBase<TypeParam> image = scatteredImage<TypeParam>({10, 10, 1, 1, 1});
        image.setVerbose(1);
        const std::unique_ptr<Image> bilinear(image.resample(20, 20, 1, 1, 5, true));
        CapturedStream err(std::cerr);
        CapturedStream out(std::cout);
        EXPECT_EQ(image.resample(20, 20, 1, 1, kind, false), nullptr);
        EXPECT_EQ(err.str(), noSlices);
        EXPECT_EQ(out.str(), "Image resampled, new size 20 x 20 x 1\n");
        EXPECT_EQ(valuesOf(image), valuesOf(dynamic_cast<const ImageBase<TypeParam> &>(*bilinear)));
    }
}

TYPED_TEST(Resample, oneFrameTakesTheTrilinearKindAndWarns)
{
    ImageBase<TypeParam> image = scatteredImage<TypeParam>({4, 4, 3, 1, 1});
    const std::unique_ptr<Image> trilinear(image.resample(7, 7, 5, 1, 1, true));
    CapturedStream err(std::cerr);
    image.resample(7, 7, 5, 1, 6, false);
    EXPECT_EQ(err.str(), noFrames);
    EXPECT_EQ(valuesOf(image), valuesOf(dynamic_cast<const ImageBase<TypeParam> &>(*trilinear)));
}

// The slices are looked at before the frames, not again after the switch to the trilinear kind.
TYPED_TEST(Resample, oneSliceAndOneFrameEndWithTheTrilinearKind)
{
    ImageBase<TypeParam> image = scatteredImage<TypeParam>({4, 4, 1, 1, 1});
    CapturedStream err(std::cerr);
    const std::unique_ptr<Image> result(image.resample(7, 7, 1, 1, 6, true));
    EXPECT_EQ(err.str(), noFrames);
    EXPECT_NE(result, nullptr);
}

TYPED_TEST(Resample, sizesBelowOneDoNothing)
{
    ImageBase<TypeParam> image = countingImage<TypeParam>({4, 4, 2, 1, 1});
    CapturedStream err(std::cerr);
    for (const Shape &size :
         {Shape{0, 4, 2, 1, 1}, Shape{4, -1, 2, 1, 1}, Shape{4, 4, 0, 1, 1}, Shape{4, 4, 2, 0, 1}}) {
        EXPECT_EQ(image.resample(size[0], size[1], size[2], size[3], 1, true), nullptr);
        EXPECT_EQ(image.resample(size[0], size[1], size[2], size[3], 1, false), nullptr);
    }
    EXPECT_EQ(shapeOf(image), (Shape{4, 4, 2, 1, 1}));
    EXPECT_EQ(err.str(), "");
}

TYPED_TEST(Resample, spacingFollowsTheStepsBetweenFirstAndLastVoxel)
{
    ImageBase<TypeParam> image = countingImage<TypeParam>({5, 4, 1, 1, 1});
    image.setSpacing(1, 1, 2, 3);
    image.resample(9, 1, 3, 1, 0, false);
    EXPECT_EQ(image.getSpacing(0), 0.5f); // 4 / 8, not 5 / 9
    EXPECT_EQ(image.getSpacing(1), 1.0f); // one voxel: unchanged
    EXPECT_EQ(image.getSpacing(2), 0.0f); // three of one slice: steps of nothing
    EXPECT_EQ(image.getSpacing(3), 3.0f);
}

TYPED_TEST(Resample, shortFormKeepsDepthAndFrames)
{
    ImageBase<TypeParam> image = countingImage<TypeParam>({4, 4, 3, 2, 1});
    image.resample(2, 3, 0);
    EXPECT_EQ(shapeOf(image), (Shape{2, 3, 3, 2, 1}));
}

TEST(ResampleSpecial, infinityStaysInItsSupport)
{
    ImageBase<double> image = countingImage<double>({2, 2, 2, 1, 1});
    image.begin()[0] = std::numeric_limits<double>::infinity();
    image.resample(3, 3, 3, 1, 1, false);
    // Every sample at index 1 of an old axis is out of reach of the voxel (0, 0, 0).
    for (int z = 0; z < 3; ++z)
        for (int y = 0; y < 3; ++y)
            for (int x = 0; x < 3; ++x)
                if (x == 2 || y == 2 || z == 2) {
                    EXPECT_TRUE(std::isfinite(image.getVoxel(x, y, z, 0, 0))) << x << y << z;
                }
}

TEST(ResampleSpecial, cubicOvershootSaturates)
{
    ImageBase<unsigned char> image;
    image.setVerbose(0);
    image.setDimensions(8, 8, 8, 1, 1);
    for (int z = 0; z < 8; ++z)
        for (int y = 0; y < 8; ++y)
            for (int x = 0; x < 8; ++x)
                image.setVoxel((x / 2 + y / 2 + z / 2) % 2 == 0 ? 255.0f : 0.0f, x, y, z, 0, 0);
    const SlowResample<float> slow(image, {15, 8, 8, 1, 1});
    const std::vector<float> exact = slow.values(3);
    ASSERT_GT(*std::max_element(exact.begin(), exact.end()), 255.0f);
    ASSERT_LT(*std::min_element(exact.begin(), exact.end()), 0.0f);
    image.resample(15, 8, 8, 1, 3, false);
    for (std::size_t i = 0; i < exact.size(); ++i)
        EXPECT_EQ(image.begin()[i], static_cast<int>(std::clamp(exact[i], 0.0f, 255.0f)));
}

// --- powers of two ---

TYPED_TEST(Resample, scaleToPowerOfTwoLeavesOneAtOne)
{
    ImageBase<TypeParam> image = scatteredImage<TypeParam>({1, 1, 100, 1, 1});
    image.setVerbose(1);
    CapturedStream out(std::cout);
    image.scaleToPowerOfTwo(0);
    EXPECT_EQ(shapeOf(image), (Shape{1, 1, 128, 1, 1}));
    EXPECT_EQ(out.str(), "Image resampled, new size 1 x 1 x 128\n"
                         "Scaled to power of two, new width = 1, height = 1, depth = 128\n");
}

TYPED_TEST(Resample, powersOfTwoStayAsTheyAre)
{
    ImageBase<TypeParam> image = scatteredImage<TypeParam>({4, 2, 1, 3, 1});
    const void *buffer = image.getData();
    image.setVerbose(1);
    CapturedStream out(std::cout);
    image.scaleToPowerOfTwo(1);
    image.scaleToPowerOfTwo2D(1);
    EXPECT_EQ(image.getData(), buffer);
    EXPECT_EQ(out.str(), "");
}

// 2^63 values cannot be addressed, 0.75 of them can; of the source only the shape is read.
TEST(ResampleMemory, twoDimensionalScalingThatRunsOutOfMemoryStaysVerbose)
{
    ImageBase<unsigned char> image;
    unsigned char foreign = 0;
    image.setBufferExternal();
    image.setDimensions((1 << 30) - 1, 3, 1, 1 << 30, 2);
    image.setExternalBuffer(&foreign);
    CapturedStream out(std::cout);
    EXPECT_THROW(image.scaleToPowerOfTwo2D(0), MERV::Exception);
    image.clearBufferExternal();
    image.setDimensions(2, 2, 2, 1, 1);
    image.rotate(0);
    EXPECT_EQ(out.str(), "Common >> Error while initializing!\nRotated image around axis 0\n");
}

TYPED_TEST(Resample, twoDimensionalScalingSwitchesTheKindWithoutAWord)
{
    for (const int kind : {1, 3, 6}) {
        ImageBase<TypeParam> image = scatteredImage<TypeParam>({5, 3, 1, 1, 1});
        image.setVerbose(1);
        CapturedStream out(std::cout);
        CapturedStream err(std::cerr);
        image.scaleToPowerOfTwo2D(kind);
        EXPECT_EQ(out.str(), "") << kind;
        EXPECT_EQ(err.str(), "") << kind;

        ImageBase<TypeParam> resampled = scatteredImage<TypeParam>({5, 3, 1, 1, 1});
        resampled.resample(8, 4, kind);
        EXPECT_EQ(err.str(), kind == 6 ? noFrames : noSlices);
        EXPECT_EQ(shapeOf(image), (Shape{8, 4, 1, 1, 1}));
        EXPECT_EQ(valuesOf(image), valuesOf(resampled)) << kind;
        EXPECT_EQ(image.getSpacing(0), resampled.getSpacing(0));
    }
}

TYPED_TEST(Resample, twoDimensionalScalingKeepsTheDepthAndIsSilent)
{
    ImageBase<TypeParam> image = scatteredImage<TypeParam>({5, 3, 3, 1, 1});
    image.setVerbose(1);
    CapturedStream out(std::cout);
    image.scaleToPowerOfTwo2D(0);
    EXPECT_EQ(out.str(), "");
    EXPECT_EQ(shapeOf(image), (Shape{8, 4, 3, 1, 1}));
    image.rotate(0); // still verbose afterwards
    EXPECT_EQ(out.str(), "Rotated image around axis 0\n");
}
