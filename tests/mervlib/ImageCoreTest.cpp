#include "tests/mervlib/ImageTestTools.h"

#include <cmath>
#include <fstream>
#include <limits>

#include <unistd.h>

using MERV::createImage;
using MERV::Image;
using MERV::ImageBase;

template <class T>
class ImageCore : public testing::Test
{};
TYPED_TEST_SUITE(ImageCore, VoxelTypes);

namespace {

template <class T>
float roundTrip(float value)
{
    ImageBase<T> image;
    image.setDimensions(1, 1, 1, 1, 1);
    image.setVoxel(value, 0, 0, 0, 0, 0);
    return image.getVoxel(0, 0, 0, 0, 0);
}

} // namespace

TYPED_TEST(ImageCore, defaultImageIsEmpty)
{
    ImageBase<TypeParam> image;
    for (int axis = -1; axis <= 3; ++axis)
        EXPECT_EQ(image.getDimension(axis), 0);
    EXPECT_EQ(image.getSpacing(-1), 0.0f);
    for (int axis = 0; axis <= 3; ++axis)
        EXPECT_EQ(image.getSpacing(axis), 1.0f);
    EXPECT_EQ(image.getData(), nullptr);
    EXPECT_EQ(image.getValueCount(), 0u);
    EXPECT_FALSE(image.hasExternalBuffer());
    EXPECT_EQ(image.getName(), "");
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(image.getPosition()[i], 0.0f);
    for (int i = 0; i < 9; ++i)
        EXPECT_EQ(image.getOrientation()[i], i % 4 == 0 ? 1.0f : 0.0f);
}

TYPED_TEST(ImageCore, emptyImageTakesEveryOperation)
{
    ImageBase<TypeParam> image;
    float point[3];
    float value = 7.0f;
    CapturedStream out(std::cout);
    CapturedStream err(std::cerr);
    image.clear();
    image.invert();
    image.applyWindowLevel(true);
    image.computeMinMax();
    image.swapBytes();
    image.freeBuffer();
    image.downsample(2, 2, 2, 2);
    EXPECT_EQ(image.resample(4, 4, 4, 4, 1, true), nullptr);
    image.resample(4, 4, 0);
    image.rotate(1);
    image.scaleToPowerOfTwo(0);
    image.scaleToPowerOfTwo2D(0);
    image.mirror(true, true, true, true, true);
    EXPECT_FALSE(image.getNextValue(value));
    EXPECT_FALSE(image.setNextValue(1.0f));
    image.setLastValue(1.0f);
    image.setVoxel(1.0f, 0, 0, 0, 0, 0);
    EXPECT_EQ(image.getVoxel(0, 0, 0, 0, 0), 0.0f);
    EXPECT_EQ(image.getValue(5), 0.0f);
    EXPECT_EQ(image.getTrilinear(0, 0, 0, 0, 0), 0.0f);
    EXPECT_EQ(image.getNearest(0, 0, 0), 0.0f);
    EXPECT_EQ(image.getTricubic(0, 0, 0), 0.0f);
    EXPECT_EQ(image.getBilinearCubic(0, 0, 0), 0.0f);
    EXPECT_EQ(image.getBilinear(0, 0, 0, 0, 0), 0.0f);
    EXPECT_EQ(image.getQuadrilinear(0, 0, 0, 0, 0), 0.0f);
    EXPECT_EQ(image.getSliceUByte(nullptr, 0, 0, true), nullptr);
    EXPECT_EQ(image.getSliceUByte(nullptr, 0, 0, 0, true), nullptr);
    EXPECT_EQ(image.getAxialSliceUByte(nullptr, 0, 0, true), nullptr);
    EXPECT_EQ(image.getAxialSliceUByte(nullptr, 0, 0, 0, true), nullptr);
    EXPECT_EQ(image.getAxialSliceAllChannelsUByte(nullptr, 0, true), nullptr);
    EXPECT_EQ(image.getVolumeUByte(nullptr, true), nullptr);
    EXPECT_EQ(image.getVolumeUShort(nullptr, true), nullptr);
    EXPECT_EQ(image.getFrameUByte(nullptr, 0), nullptr);
    EXPECT_EQ(image.getFrameUShort(nullptr, 0), nullptr);
    EXPECT_EQ(image.getFrameData(0), nullptr);
    EXPECT_EQ(image.getSlicePointer(0, 0), nullptr);
    EXPECT_TRUE(std::isnan(image.getMean()));
    image.getCenterOfGravity(point);
    for (const float coordinate : point)
        EXPECT_TRUE(std::isnan(coordinate));
    EXPECT_EQ(image.getMinimum(), 0.0f);
    EXPECT_EQ(image.getMaximum(), 0.0f);
    EXPECT_EQ(image.getWindow(0), 0.0f);
    const std::unique_ptr<Image> copy(image.clone());
    const std::unique_ptr<Image> slices(image.cloneSlices(0, 1));
    const std::unique_ptr<Image> region(image.getRegion(MERV::Region()));
    EXPECT_EQ(copy->getValueCount() + slices->getValueCount() + region->getValueCount(), 0u);
    EXPECT_EQ(out.str(), "");
}

TYPED_TEST(ImageCore, storesInTheOrderChannelXYZT)
{
    const Shape shape{3, 4, 2, 2, 3};
    ImageBase<TypeParam> image;
    EXPECT_EQ(image.setDimensions(3, 4, 2, 2, 3), 0);
    EXPECT_EQ(image.getValueCount(), 144u);
    EXPECT_EQ(image.getSize(), 144u);
    EXPECT_EQ(image.getRowStride(), 9u);
    EXPECT_EQ(image.getSliceStride(), 36u);
    const auto *values = static_cast<const TypeParam *>(image.getData());
    for (int t = 0; t < 2; ++t)
        for (int z = 0; z < 2; ++z)
            for (int y = 0; y < 4; ++y)
                for (int x = 0; x < 3; ++x)
                    for (int c = 0; c < 3; ++c) {
                        const auto number = static_cast<float>((t + z + y + x + c) * 7 % 100);
                        image.setVoxel(number, x, y, z, t, c);
                        const std::size_t index = storedIndex(shape, x, y, z, t, c);
                        EXPECT_EQ(static_cast<float>(values[index]), number);
                        EXPECT_EQ(image.getVoxel(x, y, z, t, c), number);
                        EXPECT_EQ(image.getValue(index), number);
                        EXPECT_EQ(image.getAxialVoxel(x, y, z, t, c), number);
                        const std::array<std::uint32_t, 5> position{
                            static_cast<std::uint32_t>(c), static_cast<std::uint32_t>(x),
                            static_cast<std::uint32_t>(y), static_cast<std::uint32_t>(z),
                            static_cast<std::uint32_t>(t)};
                        EXPECT_EQ(image.voxelPointer(position), values + index);
                    }
    EXPECT_EQ(image.getFrameData(1), values + 72);
    EXPECT_EQ(image.getFrameData(2), nullptr);
    EXPECT_EQ(image.getFrameData(-1), nullptr);
    EXPECT_EQ(image.getSlicePointer(1, 1), values + 108);
}

// The formulas address the buffer as if it were stored plane by plane in that direction.
TYPED_TEST(ImageCore, sagittalAndCoronalVoxelFollowTheirOwnStorageOrder)
{
    const int width = 2, height = 3, depth = 4, channels = 1;
    ImageBase<TypeParam> image = countingImage<TypeParam>({width, height, depth, 2, channels});
    EXPECT_EQ(image.getSagittalVoxel(1, 2, 1, 1, 0), ((width * 1 + 1) * depth + 2) * height + 1);
    EXPECT_EQ(image.getCoronalVoxel(1, 2, 1, 1, 0), ((height * 1 + 1) * depth + 2) * width + 1);
    std::vector<bool> seen(48);
    for (int t = 0; t < 2; ++t)
        for (int slice = 0; slice < width; ++slice)
            for (int b = 0; b < depth; ++b)
                for (int a = 0; a < height; ++a)
                    seen[static_cast<std::size_t>(image.getSagittalVoxel(a, b, slice, t, 0))] = true;
    EXPECT_EQ(std::count(seen.begin(), seen.end(), true), 48);
}

TEST(ImageTypes, eightCodesMakeEightTypes)
{
    for (const int code : {5120, 5121, 5122, 5123, 5124, 5125, 5126, 5130}) {
        const std::unique_ptr<Image> image(createImage(code));
        ASSERT_NE(image, nullptr);
        EXPECT_EQ(image->getDataType(), code);
        EXPECT_EQ(image->getData(), nullptr);
    }
    EXPECT_EQ(ImageBase<char>().getDataType(), 0x1400);
    EXPECT_EQ(ImageBase<unsigned char>().getDataType(), 0x1401);
    EXPECT_EQ(ImageBase<short>().getDataType(), 0x1402);
    EXPECT_EQ(ImageBase<unsigned short>().getDataType(), 0x1403);
    EXPECT_EQ(ImageBase<int>().getDataType(), 0x1404);
    EXPECT_EQ(ImageBase<unsigned int>().getDataType(), 0x1405);
    EXPECT_EQ(ImageBase<float>().getDataType(), 0x1406);
    EXPECT_EQ(ImageBase<double>().getDataType(), 0x140A);
}

TEST(ImageTypes, otherCodesGiveNull)
{
    for (const int code : {5127, 5128, 5129, 5131, 5119, 0, -1})
        EXPECT_EQ(createImage(code), nullptr) << code;
}

TEST(ImageTypes, limitsSurviveTheFloatInterface)
{
    EXPECT_EQ(roundTrip<char>(-128.0f), -128.0f);
    EXPECT_EQ(roundTrip<char>(200.0f), 127.0f);
    EXPECT_EQ(roundTrip<unsigned char>(255.0f), 255.0f);
    EXPECT_EQ(roundTrip<unsigned char>(-5.0f), 0.0f);
    EXPECT_EQ(roundTrip<short>(-32768.0f), -32768.0f);
    EXPECT_EQ(roundTrip<short>(40000.0f), 32767.0f);
    EXPECT_EQ(roundTrip<unsigned short>(65535.0f), 65535.0f);
    EXPECT_EQ(roundTrip<int>(-2147483648.0f), -2147483648.0f);
    EXPECT_EQ(roundTrip<unsigned int>(4294967040.0f), 4294967040.0f);
    EXPECT_EQ(roundTrip<double>(0.1f), 0.1f);
}

TEST(ImageTypes, roundedLimitsDoNotWrap)
{
    ImageBase<int> image;
    image.setDimensions(1, 1, 1, 1, 1);
    image.setValue(static_cast<float>(std::numeric_limits<int>::max()), 0); // rounds to 2^31
    EXPECT_EQ(*image.begin(), std::numeric_limits<int>::max());
    ImageBase<unsigned int> natural;
    natural.setDimensions(1, 1, 1, 1, 1);
    natural.setValue(static_cast<float>(std::numeric_limits<unsigned int>::max()), 0); // rounds to 2^32
    EXPECT_EQ(*natural.begin(), std::numeric_limits<unsigned int>::max());
}

TYPED_TEST(ImageCore, axesOutsideTheFiveGiveZero)
{
    ImageBase<TypeParam> image;
    image.setDimensions(2, 3, 4, 5, 6);
    image.setSpacing(0.5f, 0.25f, 2.0f, 3.0f);
    const std::array<int, 7> sizes{0, 6, 2, 3, 4, 5, 0};
    const std::array<float, 7> spacings{0, 0, 0.5f, 0.25f, 2.0f, 3.0f, 0};
    for (int axis = -2; axis <= 4; ++axis) {
        EXPECT_EQ(image.getDimension(axis), sizes[static_cast<std::size_t>(axis + 2)]);
        EXPECT_EQ(image.getSpacing(axis), spacings[static_cast<std::size_t>(axis + 2)]);
    }
    EXPECT_EQ(image.getSizeX() * 100 + image.getSizeY() * 10 + image.getSizeZ(), 234);
    EXPECT_EQ(image.getChannels(), 6);
    EXPECT_EQ(image.getFrames(), 5);
}

TYPED_TEST(ImageCore, sliceSizesFollowTheDirections)
{
    ImageBase<TypeParam> image;
    image.setDimensions(2, 3, 4, 1, 1);
    int width = 0;
    int height = 0;
    image.getAxialSliceSize(width, height);
    EXPECT_EQ(std::make_pair(width, height), std::make_pair(2, 3));
    image.getSagittalSliceSize(width, height);
    EXPECT_EQ(std::make_pair(width, height), std::make_pair(3, 4));
    image.getCoronalSliceSize(width, height);
    EXPECT_EQ(std::make_pair(width, height), std::make_pair(2, 4));
}

TYPED_TEST(ImageCore, negativeDimensionsCountAsZero)
{
    ImageBase<TypeParam> image;
    EXPECT_EQ(image.setDimensions(-1, 4, std::numeric_limits<int>::min(), 1, 1), 0);
    EXPECT_EQ(image.getWidth(), 0);
    EXPECT_EQ(image.getDepth(), 0);
    EXPECT_EQ(image.getValueCount(), 0u);
    EXPECT_EQ(image.getData(), nullptr);
}

TYPED_TEST(ImageCore, windowsOfEachChannel)
{
    ImageBase<TypeParam> image;
    image.setDimensions(1, 1, 1, 1, 2);
    image.setWindowLevel(100, 50, 0);
    EXPECT_EQ(image.getLow(0), 0.0f);
    EXPECT_EQ(image.getHigh(0), 100.0f);
    EXPECT_EQ(image.getWindow(1), 0.0f);
    image.setWindowRange(0, 100, 1);
    EXPECT_EQ(image.getWindow(1), 100.0f);
    EXPECT_EQ(image.getLevel(1), 50.0f);
    for (const int channel : {-1, 2, 1000000}) {
        image.setWindowRange(1, 2, channel);
        image.setWindowLevel(1, 2, channel);
        EXPECT_EQ(image.getWindow(channel), 0.0f);
        EXPECT_EQ(image.getLevel(channel), 0.0f);
        EXPECT_EQ(image.getLow(channel), 0.0f);
        EXPECT_EQ(image.getHigh(channel), 0.0f);
    }
    image.setVoxel(7, 0, 0, 0, 0, 1);
    image.computeMinMax();
    for (const int channel : {0, 1}) {
        EXPECT_EQ(image.getWindow(channel), 7.0f);
        EXPECT_EQ(image.getLevel(channel), 3.5f);
    }
    image.setWindowRange(1, 2, 1);
    EXPECT_EQ(image.getHigh(0), 7.0f);
    image.setDimensions(1, 1, 1, 1, 2); // forgets them, as every change of dimensions
    for (const int channel : {0, 1}) {
        EXPECT_EQ(image.getHigh(channel), 0.0f);
    }
}

TYPED_TEST(ImageCore, settingMinimumAndMaximumLeavesTheWindow)
{
    ImageBase<TypeParam> image;
    image.setDimensions(1, 1, 1, 1, 1);
    image.setWindowRange(3, 5, 0);
    image.setMinMax(10, 20);
    EXPECT_EQ(image.getMinimum(), 10.0f);
    EXPECT_EQ(image.getMaximum(), 20.0f);
    image.setMinimum(1);
    image.setMaximum(2);
    EXPECT_EQ(image.getMinimum(), 1.0f);
    EXPECT_EQ(image.getMaximum(), 2.0f);
    EXPECT_EQ(image.getLow(0), 3.0f);
}

// Found by one comparison after the other.
TYPED_TEST(ImageCore, computeMinMaxAgreesWithOneComparisonPerValue)
{
    for (const int size : {1, 2, 3, 15, 16, 17, 63, 64, 65, 100, 1001}) {
        ImageBase<TypeParam> image = scatteredImage<TypeParam>({size, 1, 1, 1, 2});
        image.computeMinMax();
        TypeParam low = *image.begin();
        TypeParam high = *image.begin();
        for (const TypeParam value : image) {
            low = value < low ? value : low;
            high = high < value ? value : high;
        }
        EXPECT_EQ(image.getMinimum(), static_cast<float>(low));
        EXPECT_EQ(image.getMaximum(), static_cast<float>(high));
        for (int channel = 0; channel < 2; ++channel) { // no separate ranges
            EXPECT_EQ(image.getLow(channel), static_cast<float>(low));
            EXPECT_EQ(image.getHigh(channel), static_cast<float>(high));
        }
    }
}

TYPED_TEST(ImageCore, computeMinMaxFindsTheLimitsOfTheTypeAnywhere)
{
    using Limits = std::numeric_limits<TypeParam>;
    for (std::size_t place : {0u, 1u, 40u, 77u}) {
        ImageBase<TypeParam> image = scatteredImage<TypeParam>({78, 1, 1, 1, 1});
        image.begin()[place] = Limits::lowest();
        image.computeMinMax();
        EXPECT_EQ(image.getMinimum(), static_cast<float>(Limits::lowest()));
        image.begin()[place] = Limits::max();
        image.computeMinMax();
        EXPECT_EQ(image.getMaximum(), static_cast<float>(Limits::max()));
    }
}

TEST(ImageMinMax, aLeadingNaNStaysAndLaterOnesAreSkipped)
{
    const float nan = std::numeric_limits<float>::quiet_NaN();
    ImageBase<float> image = countingImage<float>({40, 1, 1, 1, 1});
    image.begin()[20] = nan;
    image.begin()[39] = nan;
    image.computeMinMax();
    EXPECT_EQ(image.getMinimum(), 0.0f);
    EXPECT_EQ(image.getMaximum(), 38.0f);
    image.begin()[0] = nan;
    image.computeMinMax();
    EXPECT_TRUE(std::isnan(image.getMinimum()));
    EXPECT_TRUE(std::isnan(image.getMaximum()));
}

TEST(ImageMinMax, theFirstOfTwoZerosCounts)
{
    for (const bool negativeFirst : {false, true}) {
        ImageBase<double> image;
        image.setDimensions(40, 1, 1, 1, 1);
        std::fill(image.begin(), image.end(), 5.0);
        image.begin()[9] = negativeFirst ? -0.0 : 0.0;
        image.begin()[24] = negativeFirst ? 0.0 : -0.0;
        image.computeMinMax();
        EXPECT_EQ(std::signbit(image.getMinimum()), negativeFirst);
    }
}

TYPED_TEST(ImageCore, meanAccumulatesFloats)
{
    ImageBase<TypeParam> image = countingImage<TypeParam>({5, 2, 1, 1, 1});
    EXPECT_EQ(image.getMean(), 4.5f); // 0 + ... + 9 is 45
}

TEST(ImageMean, theFloatAccumulatorStopsGrowingAtTwoToThe24)
{
    ImageBase<int> image;
    image.setDimensions(3, 1, 1, 1, 1);
    image.begin()[0] = 16777216;
    image.begin()[1] = 1;
    image.begin()[2] = 1;
    // 2^24 + 1 rounds to 2^24, twice.
    EXPECT_EQ(image.getMean(), 16777216.0f / 3.0f);
}

TYPED_TEST(ImageCore, clearZeroesValuesAndWindow)
{
    ImageBase<TypeParam> image = countingImage<TypeParam>({5, 2, 1, 1, 1});
    image.computeMinMax();
    image.clear();
    EXPECT_EQ(valuesOf(image), std::vector<TypeParam>(10));
    EXPECT_EQ(image.getMaximum(), 0.0f);
    EXPECT_EQ(image.getHigh(0), 0.0f);
    image.freeBuffer();
    EXPECT_EQ(image.getData(), nullptr);
    image.clear();
    EXPECT_NE(image.getData(), nullptr);
}

TYPED_TEST(ImageCore, changedDimensionsZeroTheWindowsAndKeepSameSizedValues)
{
    ImageBase<TypeParam> image = countingImage<TypeParam>({6, 2, 1, 1, 1});
    image.computeMinMax();
    image.setDimensions(3, 4, 1, 1, 1);
    EXPECT_EQ(image.getHigh(0), 0.0f);
    EXPECT_EQ(image.getMaximum(), 11.0f);
    EXPECT_EQ(image.getVoxel(2, 3, 0, 0, 0), 11.0f);
    image.setDimensions(3, 5, 1, 1, 1);
    EXPECT_EQ(valuesOf(image), std::vector<TypeParam>(15));
}

TYPED_TEST(ImageCore, regionCoversTheWholeImageAfterEachChange)
{
    ImageBase<TypeParam> image;
    image.setDimensions(2, 3, 4, 5, 6);
    const MERV::Region &region = image.getRegion();
    EXPECT_EQ(region.first, (std::array<std::uint32_t, 5>{0, 0, 0, 0, 0}));
    EXPECT_EQ(region.last, (std::array<std::uint32_t, 5>{5, 1, 2, 3, 4}));
    EXPECT_EQ(region.size, (std::array<std::uint32_t, 5>{6, 2, 3, 4, 5}));
}

TYPED_TEST(ImageCore, cursorWalksTheBuffer)
{
    ImageBase<TypeParam> image;
    image.setDimensions(2, 2, 1, 1, 1);
    for (int i = 1; i <= 4; ++i)
        EXPECT_TRUE(image.setNextValue(static_cast<float>(i)));
    EXPECT_FALSE(image.setNextValue(9.0f));
    image.resetCursor();
    float value = 0.0f;
    for (int i = 1; i <= 4; ++i) {
        EXPECT_TRUE(image.getNextValue(value));
        EXPECT_EQ(value, static_cast<float>(i));
    }
    EXPECT_FALSE(image.getNextValue(value));
    EXPECT_EQ(value, 4.0f);
    image.setLastValue(40.0f);
    EXPECT_EQ(image.getValue(3), 40.0f);
}

TYPED_TEST(ImageCore, randomAccessMovesTheCursorBehindItsPlace)
{
    ImageBase<TypeParam> image = countingImage<TypeParam>({4, 2, 1, 1, 1});
    float value = 0.0f;
    image.setValue(20, 2);
    image.getNextValue(value);
    EXPECT_EQ(value, 3.0f);
    image.getVoxel(1, 1, 0, 0, 0);
    image.getNextValue(value);
    EXPECT_EQ(value, 6.0f);
    image.setVoxel(50, 0, 0, 0, 0, 0);
    image.getNextValue(value);
    EXPECT_EQ(value, 1.0f);
    image.getValue(4);
    image.setLastValue(44);
    EXPECT_EQ(image.getValue(4), 44.0f);
}

TYPED_TEST(ImageCore, interpolatingReadersLeaveTheCursor)
{
    ImageBase<TypeParam> image = countingImage<TypeParam>({4, 4, 4, 1, 1});
    float all[1];
    float value = 0.0f;
    image.getValue(6);
    image.getTrilinear(1.5f, 1, 1, 0, 0);
    image.getTrilinear(all, 1.5f, 1, 1);
    image.getNearest(1, 1, 1);
    image.getTricubic(1, 1, 1);
    image.getBilinearCubic(1, 1, 1);
    image.getQuadrilinear(1, 1, 1, 0, 0);
    image.getNextValue(value);
    EXPECT_EQ(value, 7.0f);
}

TYPED_TEST(ImageCore, placesOutsideReadZeroAndStoreNothing)
{
    ImageBase<TypeParam> image = countingImage<TypeParam>({3, 2, 2, 1, 1});
    const std::vector<TypeParam> before = valuesOf(image);
    const int far = std::numeric_limits<int>::max();
    const int least = std::numeric_limits<int>::min();
    for (const std::array<int, 5> place : {std::array<int, 5>{0, 0, 2, 0, 0},
                                           {-1, 0, 0, 0, 0},
                                           {0, 0, 0, 1, 0},
                                           {0, 0, 0, far, 0},
                                           {least, least, least, least, least},
                                           {far, far, far, far, far}}) {
        image.setVoxel(99, place[0], place[1], place[2], place[3], place[4]);
        EXPECT_EQ(image.getVoxel(place[0], place[1], place[2], place[3], place[4]), 0.0f);
        EXPECT_EQ(image.getAxialVoxel(place[0], place[1], place[2], place[3], place[4]), 0.0f);
    }
    image.setValue(99, 12);
    image.setValue(99, std::numeric_limits<std::uint64_t>::max());
    image.resetCursor();
    image.setLastValue(99);
    EXPECT_EQ(image.getValue(12), 0.0f);
    EXPECT_EQ(valuesOf(image), before);
}

// Only the flat index is checked.
TYPED_TEST(ImageCore, coordinatesThatStayInTheBufferWrapAround)
{
    ImageBase<TypeParam> image = countingImage<TypeParam>({3, 2, 2, 1, 1});
    EXPECT_EQ(image.getVoxel(4, 0, 0, 0, 0), 4.0f);
    EXPECT_EQ(image.getVoxel(-1, 1, 0, 0, 0), 2.0f);
}

TYPED_TEST(ImageCore, invertUsesTheWindowOfEachChannel)
{
    ImageBase<TypeParam> image;
    image.setDimensions(2, 1, 1, 1, 2);
    const std::vector<TypeParam> values{10, 20, 30, 40};
    std::copy(values.begin(), values.end(), image.begin());
    image.setWindowRange(0, 60, 0);
    image.setWindowRange(10, 50, 1);
    image.invert();
    EXPECT_EQ(valuesOf(image), (std::vector<TypeParam>{50, 40, 30, 20}));
}

TEST(ImageInvert, saturatesInsteadOfWrapping)
{
    ImageBase<unsigned char> image;
    image.setDimensions(2, 1, 1, 1, 1);
    image.begin()[1] = 200;
    image.setWindowRange(0, 100, 0);
    image.invert();
    EXPECT_EQ(image.begin()[0], 100);
    EXPECT_EQ(image.begin()[1], 0);
}

TYPED_TEST(ImageCore, swapBytesReversesTwoAndFourBytesButNotDoubles)
{
    ImageBase<TypeParam> image;
    image.setDimensions(2, 1, 1, 1, 1);
    auto *bytes = reinterpret_cast<unsigned char *>(image.begin());
    std::vector<unsigned char> expected;
    for (std::size_t i = 0; i < 2 * sizeof(TypeParam); ++i)
        bytes[i] = static_cast<unsigned char>(i + 1);
    for (std::size_t i = 0; i < 2 * sizeof(TypeParam); ++i) {
        const std::size_t value = i / sizeof(TypeParam) * sizeof(TypeParam);
        const std::size_t place = i % sizeof(TypeParam);
        const bool swaps = sizeof(TypeParam) < 8;
        expected.push_back(bytes[value + (swaps ? sizeof(TypeParam) - 1 - place : place)]);
    }
    image.swapBytes();
    EXPECT_EQ(std::vector<unsigned char>(bytes, bytes + 2 * sizeof(TypeParam)), expected);
}

TYPED_TEST(ImageCore, centreOfGravityWeighsAboveTheWindow)
{
    ImageBase<TypeParam> image;
    image.setDimensions(4, 3, 2, 1, 1);
    image.setVoxel(10, 1, 0, 0, 0, 0);
    image.setVoxel(30, 3, 2, 1, 0, 0);
    image.setWindowRange(0, 30, 0);
    float centre[3];
    image.getCenterOfGravity(centre);
    // (10 * (1, 0, 0) + 30 * (3, 2, 1)) / 40
    EXPECT_EQ(centre[0], 2.5f);
    EXPECT_EQ(centre[1], 1.5f);
    EXPECT_EQ(centre[2], 0.75f);
    // With the low end at -2 each of the 24 voxels weighs 2 more: sum 88, x (100 + 2 * 36) / 88.
    image.setWindowRange(-2, 30, 0);
    image.getCenterOfGravity(centre);
    EXPECT_FLOAT_EQ(centre[0], 172.0f / 88.0f);
}

// Values 2, 0, 0, 4 of two voxels with two channels are taken as x = 0 and x = 1 of the first two values.
TYPED_TEST(ImageCore, centreOfGravityIgnoresTheChannelStride)
{
    ImageBase<TypeParam> image;
    image.setDimensions(2, 1, 1, 1, 2);
    const std::vector<TypeParam> values{2, 6, 0, 4};
    std::copy(values.begin(), values.end(), image.begin());
    float centre[3];
    image.getCenterOfGravity(centre);
    EXPECT_EQ(centre[0], 0.75f);
}

TYPED_TEST(ImageCore, centreOfGravityWithoutWeightIsNotANumber)
{
    ImageBase<TypeParam> image;
    image.setDimensions(2, 2, 1, 1, 1);
    float centre[3];
    image.getCenterOfGravity(centre);
    EXPECT_TRUE(std::isnan(centre[0]) && std::isnan(centre[1]) && std::isnan(centre[2]));
    image.setDimensions(2, 2, 0, 1, 1);
    image.getCenterOfGravity(centre);
    EXPECT_TRUE(std::isnan(centre[0]) && std::isnan(centre[1]) && std::isnan(centre[2]));
}

TYPED_TEST(ImageCore, nameAndPatientPositionAreKept)
{
    ImageBase<TypeParam> image;
    const float position[3]{1, 2, 3};
    const float orientation[9]{9, 8, 7, 6, 5, 4, 3, 2, 1};
    image.setName("knee");
    image.setPosition(position);
    image.setOrientation(orientation);
    EXPECT_EQ(image.getName(), "knee");
    EXPECT_TRUE(std::equal(position, position + 3, image.getPosition()));
    EXPECT_TRUE(std::equal(orientation, orientation + 9, image.getOrientation()));
}

// --- text dump ---

namespace {

std::string dump(const Image &image, int value)
{
    // Several of these programs may run at once.
    const std::string path = testing::TempDir() + "voxel_indices_" + std::to_string(getpid());
    image.writeVoxelIndices(path.c_str(), value);
    std::string text;
    {
        std::ifstream file(path, std::ios::binary);
        text.assign(std::istreambuf_iterator<char>(file), {});
    }
    std::remove(path.c_str());
    return text;
}

} // namespace

TYPED_TEST(ImageCore, dumpListsTheIndicesOfAValue)
{
    ImageBase<TypeParam> image;
    image.setDimensions(2, 2, 1, 1, 1);
    image.setValue(7, 1);
    image.setValue(7, 3);
    EXPECT_EQ(dump(image, 7), "1\n3\n");
    EXPECT_EQ(dump(image, 8), "");
    // One index past the last voxel belongs to the walk and counts as 0 behind the buffer.
    EXPECT_EQ(dump(image, 0), "0\n2\n4\n");
}

TYPED_TEST(ImageCore, dumpReadsTheValueBehindTheFirstChannelSizedVolume)
{
    ImageBase<TypeParam> image;
    image.setDimensions(2, 1, 1, 1, 2);
    image.setValue(5, 2);
    image.setValue(5, 3);
    EXPECT_EQ(dump(image, 5), "2\n");
}

TEST(ImageDump, floatsAreTruncatedFirst)
{
    ImageBase<float> image;
    image.setDimensions(3, 1, 1, 1, 1);
    image.setValue(7.9f, 0);
    image.setValue(-7.9f, 1);
    image.setValue(1e30f, 2);
    EXPECT_EQ(dump(image, 7), "0\n");
    EXPECT_EQ(dump(image, -7), "1\n");
    EXPECT_EQ(dump(image, std::numeric_limits<int>::max()), "");
}

TEST(ImageDump, unsignedValuesAreNotTakenForNegativeOnes)
{
    ImageBase<unsigned int> image;
    image.setDimensions(1, 1, 1, 1, 1);
    *image.begin() = 4294967295u;
    EXPECT_EQ(dump(image, -1), "");
}

TEST(ImageDump, aFileThatCannotBeOpenedIsReported)
{
    ImageBase<short> image;
    image.setDimensions(1, 1, 1, 1, 1);
    CapturedStream out(std::cout);
    image.writeVoxelIndices("/nowhere/at all.txt", 0);
    EXPECT_EQ(out.str(), "Couldn't open file: /nowhere/at all.txt\n");
}
