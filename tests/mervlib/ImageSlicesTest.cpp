#include "tests/mervlib/ImageTestTools.h"

#include <cmath>
#include <limits>
#include <stdexcept>

using MERV::ImageBase;

template <class T>
class ImageSlices : public testing::Test
{};
TYPED_TEST_SUITE(ImageSlices, VoxelTypes);

namespace {

using Bytes = std::vector<unsigned char>;

// Copies a buffer that was made for the caller, and frees it.
template <class Out>
std::vector<Out> take(Out *buffer, std::size_t size)
{
    const std::unique_ptr<Out[]> owner(buffer);
    return std::vector<Out>(buffer, buffer + size);
}

// A full window, so that bytes are the voxels themselves.
template <class T>
ImageBase<T> plainImage(const Shape &shape)
{
    ImageBase<T> image = countingImage<T>(shape);
    for (int channel = 0; channel < shape[4]; ++channel)
        image.setWindowRange(0, 255, channel);
    return image;
}

// The conversion as the formula stands.
unsigned char windowed(float value, float low, float high)
{
    float out = (value - low) * 255.0f / (high - low);
    if (!(out > 0.0f))
        out = 0.0f;
    return static_cast<unsigned char>(out > 255.0f ? 255.0f : out);
}

template <class Call>
std::string outOfRangeText(const Call &call)
{
    try {
        call();
    } catch (const std::out_of_range &exception) {
        return exception.what();
    }
    return "nothing thrown";
}

} // namespace

TYPED_TEST(ImageSlices, windowMapsToBytes)
{
    ImageBase<TypeParam> image = countingImage<TypeParam>({100, 1, 1, 1, 1});
    for (const auto &[low, high] : {std::pair{0.0f, 99.0f}, {10.0f, 50.0f}, {-20.0f, 7.5f}, {50.0f, 10.0f}}) {
        image.setWindowRange(low, high, 0);
        const Bytes bytes = take(image.getSliceUByte(nullptr, 0, 0, false), 100);
        for (std::size_t i = 0; i < 100; ++i)
            EXPECT_EQ(bytes[i], windowed(static_cast<float>(i), low, high));
    }
}

// Nothing guards against it: the quotient is not a number or infinite.
TYPED_TEST(ImageSlices, emptyWindowGivesTheEndsOfTheRange)
{
    ImageBase<TypeParam> image = countingImage<TypeParam>({3, 1, 1, 1, 1});
    image.setWindowRange(1, 1, 0);
    EXPECT_EQ(take(image.getSliceUByte(nullptr, 0, 0, false), 3), (Bytes{0, 0, 255}));
}

TEST(ImageWindow, voxelsThatAreNoNumberGiveZero)
{
    ImageBase<float> image = countingImage<float>({3, 1, 1, 1, 1});
    image.begin()[0] = std::numeric_limits<float>::quiet_NaN();
    image.begin()[1] = std::numeric_limits<float>::infinity();
    image.begin()[2] = -std::numeric_limits<float>::infinity();
    image.setWindowRange(0, 1, 0);
    EXPECT_EQ(take(image.getSliceUByte(nullptr, 0, 0, false), 3), (Bytes{0, 255, 0}));
}

// 5 x 3 voxels in 8 x 4 pixels: low corner for one family, offset (1, 0) for the other.
TYPED_TEST(ImageSlices, paddingAtTheCornerAndCentred)
{
    ImageBase<TypeParam> image = plainImage<TypeParam>({5, 3, 1, 1, 1});
    const Bytes corner = take(image.getSliceUByte(nullptr, 0, 0, true), 32);
    const Bytes centred = take(image.getAxialSliceUByte(nullptr, 0, 0, true), 32);
    for (std::size_t row = 0; row < 4; ++row)
        for (std::size_t column = 0; column < 8; ++column) {
            const bool inCorner = row < 3 && column < 5;
            const bool inCentre = row < 3 && column >= 1 && column < 6;
            EXPECT_EQ(corner[row * 8 + column], inCorner ? row * 5 + column : 0);
            EXPECT_EQ(centred[row * 8 + column], inCentre ? row * 5 + column - 1 : 0);
        }
}

TYPED_TEST(ImageSlices, powersOfTwoAreNotPadded)
{
    ImageBase<TypeParam> image = plainImage<TypeParam>({4, 2, 1, 1, 1});
    EXPECT_EQ(take(image.getSliceUByte(nullptr, 0, 0, true), 8), (Bytes{0, 1, 2, 3, 4, 5, 6, 7}));
}

TYPED_TEST(ImageSlices, passedBufferKeepsItsPaddingOnlyAtTheCorner)
{
    ImageBase<TypeParam> image = plainImage<TypeParam>({3, 1, 1, 1, 1});
    Bytes buffer(4, 77);
    EXPECT_EQ(image.getSliceUByte(buffer.data(), 0, 0, true), buffer.data());
    EXPECT_EQ(buffer, (Bytes{0, 1, 2, 77}));
    EXPECT_EQ(image.getAxialSliceUByte(buffer.data(), 0, 0, true), buffer.data());
    EXPECT_EQ(buffer, (Bytes{0, 1, 2, 0}));
    buffer.assign(4, 77);
    image.getAxialSliceAllChannelsUByte(buffer.data(), 0, true);
    EXPECT_EQ(buffer, (Bytes{0, 1, 2, 0}));
}

TYPED_TEST(ImageSlices, sliceNumbersAreTakenModuloTheDepth)
{
    ImageBase<TypeParam> image = plainImage<TypeParam>({1, 1, 3, 1, 1});
    for (int slice = -7; slice < 9; ++slice) {
        const Bytes expected{static_cast<unsigned char>(((slice % 3) + 3) % 3)};
        EXPECT_EQ(take(image.getSliceUByte(nullptr, slice, 0, false), 1), expected);
        EXPECT_EQ(take(image.getAxialSliceUByte(nullptr, slice, 0, false), 1), expected);
        EXPECT_EQ(take(image.getAxialSliceAllChannelsUByte(nullptr, slice, false), 1), expected);
    }
}

// The offset is slice times frame.
TYPED_TEST(ImageSlices, sliceWithFrameZeroIsAlwaysTheFirst)
{
    ImageBase<TypeParam> image = plainImage<TypeParam>({1, 1, 4, 3, 1});
    for (int slice = 0; slice < 8; ++slice) {
        EXPECT_EQ(take(image.getSliceUByte(nullptr, slice, 0, 0, false), 1), Bytes{0});
        EXPECT_EQ(take(image.getSliceUByte(nullptr, slice, 3, 0, false), 1), Bytes{0});
    }
    EXPECT_EQ(take(image.getSliceUByte(nullptr, 3, 1, 0, false), 1), Bytes{3});
    EXPECT_EQ(take(image.getSliceUByte(nullptr, 3, 2, 0, false), 1), Bytes{6});
    EXPECT_EQ(take(image.getSliceUByte(nullptr, 7, 5, 0, false), 1), Bytes{6});
}

TYPED_TEST(ImageSlices, axialSliceWithFrameTakesTheSliceAsItStands)
{
    ImageBase<TypeParam> image = plainImage<TypeParam>({1, 1, 4, 3, 1});
    EXPECT_EQ(take(image.getAxialSliceUByte(nullptr, 2, 1, 0, false), 1), Bytes{6});
    EXPECT_EQ(take(image.getAxialSliceUByte(nullptr, 2, 4, 0, false), 1), Bytes{6});
    EXPECT_EQ(take(image.getAxialSliceUByte(nullptr, 5, 0, 0, false), 1), Bytes{5});
    EXPECT_EQ(take(image.getAxialSliceUByte(nullptr, -1, 1, 0, false), 1), Bytes{3});
    // Outside the buffer.
    EXPECT_EQ(take(image.getAxialSliceUByte(nullptr, 4, 2, 0, false), 1), Bytes{0});
    EXPECT_EQ(take(image.getAxialSliceUByte(nullptr, -1, 0, 0, false), 1), Bytes{0});
    EXPECT_EQ(take(image.getAxialSliceUByte(nullptr, std::numeric_limits<int>::min(), 0, 0, false), 1),
              Bytes{0});
}

// The sum of a frame and the number of frames does not fit an int.
TEST(ImageManyFrames, numbersAreTakenModuloTheCountWithoutOverflow)
{
    constexpr int frames = 1500000000;
    constexpr int frame = 1400000000;
    ImageBase<unsigned char> image;
    image.setDimensions(1, 1, 1, frames, 1); // pages that nobody touches take no memory
    image.setWindowRange(0, 255, 0);
    image.setVoxel(9, 0, 0, 0, frame, 0);
    EXPECT_EQ(take(image.getAxialSliceUByte(nullptr, 0, frame, 0, false), 1), Bytes{9});
    EXPECT_EQ(take(image.getAxialSliceUByte(nullptr, 0, frame - frames, 0, false), 1), Bytes{9});
}

TYPED_TEST(ImageSlices, channelsHaveTheirOwnWindowAndStep)
{
    ImageBase<TypeParam> image = plainImage<TypeParam>({2, 1, 1, 1, 3});
    image.setWindowRange(0, 51, 1); // times 5
    EXPECT_EQ(take(image.getSliceUByte(nullptr, 0, 1, false), 2), (Bytes{5, 20}));
    EXPECT_EQ(take(image.getAxialSliceUByte(nullptr, 0, 2, false), 2), (Bytes{2, 5}));
    EXPECT_EQ(take(image.getAxialSliceAllChannelsUByte(nullptr, 0, false), 6), (Bytes{0, 5, 2, 3, 20, 5}));
    EXPECT_EQ(take(image.getSliceUByte(nullptr, 0, 3, false), 2), (Bytes{0, 0}));
    EXPECT_EQ(take(image.getAxialSliceUByte(nullptr, 0, -1, false), 2), (Bytes{0, 0}));
}

TYPED_TEST(ImageSlices, allChannelsAreCentredTogether)
{
    ImageBase<TypeParam> image = plainImage<TypeParam>({5, 1, 1, 1, 2});
    const Bytes bytes = take(image.getAxialSliceAllChannelsUByte(nullptr, 0, true), 16);
    EXPECT_EQ(bytes, (Bytes{0, 0, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 0, 0, 0, 0}));
}

TYPED_TEST(ImageSlices, sagittalSliceRunsUpwardsInZAndBackwardsInY)
{
    const Shape shape{2, 3, 2, 1, 1};
    ImageBase<TypeParam> image = plainImage<TypeParam>(shape);
    const Bytes bytes = take(image.getSagittalSliceUByte(nullptr, 1, 0, false), 6);
    for (int row = 0; row < 2; ++row)
        for (int column = 0; column < 3; ++column)
            EXPECT_EQ(bytes[static_cast<std::size_t>(row * 3 + column)],
                      storedIndex(shape, 1, 2 - column, 1 - row, 0, 0));
    // 3 x 2 in 4 x 2: no offset from (4 - 3) / 2.
    const Bytes padded = take(image.getSagittalSliceUByte(nullptr, 1, 0, true), 8);
    EXPECT_EQ(padded[0], bytes[0]);
    EXPECT_EQ(padded[3], 0);
    EXPECT_EQ(padded[4], bytes[3]);
}

// The x index is not multiplied by the number of channels.
TYPED_TEST(ImageSlices, sagittalSliceOfSeveralChannelsStartsAtSlicePlusChannel)
{
    ImageBase<TypeParam> image = plainImage<TypeParam>({2, 2, 1, 1, 3});
    EXPECT_EQ(take(image.getSagittalSliceUByte(nullptr, 1, 2, false), 2), (Bytes{6 + 3, 3}));
}

TYPED_TEST(ImageSlices, coronalSliceRunsUpwardsInZ)
{
    const Shape shape{3, 2, 3, 1, 2};
    ImageBase<TypeParam> image = plainImage<TypeParam>(shape);
    const Bytes bytes = take(image.getCoronalSliceUByte(nullptr, 1, 1, false), 9);
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 3; ++column)
            EXPECT_EQ(bytes[static_cast<std::size_t>(row * 3 + column)],
                      storedIndex(shape, column, 1, 2 - row, 0, 1));
}

TYPED_TEST(ImageSlices, missingSlicesAcrossXAndYThrow)
{
    ImageBase<TypeParam> image = plainImage<TypeParam>({2, 3, 4, 1, 1});
    const std::string sagittal = "getSagittalSliceUByte, slice exceeds number of sagittal slices in volume!";
    const std::string coronal = "getCoronalSliceUByte, slice exceeds number of coronal slices in volume!";
    for (const int slice : {-1, 2, 1000})
        EXPECT_EQ(outOfRangeText([&] { image.getSagittalSliceUByte(nullptr, slice, 0, true); }), sagittal);
    for (const int slice : {-1, 3, 1000})
        EXPECT_EQ(outOfRangeText([&] { image.getCoronalSliceUByte(nullptr, slice, 0, true); }), coronal);
}

TYPED_TEST(ImageSlices, volumeIsPaddedAtTheHighEnd)
{
    const Shape shape{3, 1, 3, 2, 2};
    ImageBase<TypeParam> image = plainImage<TypeParam>(shape);
    image.setWindowRange(0, 127.5f, 1); // times 2
    const auto bytes = take(image.getVolumeUByte(nullptr, true), 4 * 1 * 4 * 2);
    const auto plain = take(image.getVolumeUByte(nullptr, false), 3 * 1 * 3 * 2);
    const auto words = take(image.getVolumeUShort(nullptr, true), 4 * 1 * 4 * 2);
    for (int z = 0; z < 4; ++z)
        for (int x = 0; x < 4; ++x)
            for (int c = 0; c < 2; ++c) {
                const bool inside = x < 3 && z < 3;
                const std::size_t value = inside ? storedIndex(shape, x, 0, z, 0, c) : 0;
                const int index = (z * 4 + x) * 2 + c;
                const auto place = static_cast<std::size_t>(index);
                const std::size_t factor = c == 1 ? 2 : 1;
                EXPECT_EQ(bytes[place], value * factor);
                EXPECT_EQ(words[place], value * 257 * factor); // 65535 / 255
                if (inside) {
                    EXPECT_EQ(plain[value], value * factor);
                }
            }
}

TYPED_TEST(ImageSlices, framesAreScaledByMinimumAndMaximum)
{
    ImageBase<TypeParam> image = countingImage<TypeParam>({2, 1, 2, 3, 1});
    image.setMinMax(0, 51);
    EXPECT_EQ(take(image.getFrameUByte(nullptr, 1), 4), (Bytes{20, 25, 30, 35}));
    EXPECT_EQ(image.getFrameUByte(nullptr, 3), nullptr);
    EXPECT_EQ(image.getFrameUByte(nullptr, -1), nullptr);
    Bytes buffer(4, 77);
    EXPECT_EQ(image.getFrameUByte(buffer.data(), 2), buffer.data());
    EXPECT_EQ(buffer, (Bytes{40, 45, 50, 55}));
}

// The frame is checked but not used.
TYPED_TEST(ImageSlices, wordsOfAnyFrameAreThoseOfTheFirst)
{
    ImageBase<TypeParam> image = countingImage<TypeParam>({2, 1, 1, 3, 1});
    image.setMinMax(0, 5);
    EXPECT_EQ(take(image.getFrameUShort(nullptr, 2), 2), (std::vector<unsigned short>{0, 13107}));
    EXPECT_EQ(image.getFrameUShort(nullptr, 3), nullptr);
}

// --- slices as images ---

TYPED_TEST(ImageSlices, sagittalSliceImageCopiesVoxels)
{
    const Shape shape{3, 2, 2, 2, 2};
    ImageBase<TypeParam> image = countingImage<TypeParam>(shape);
    ImageBase<TypeParam> output;
    image.getSagittalSliceImage(output, 1, 1);
    EXPECT_EQ(shapeOf(output), (Shape{2, 2, 1, 1, 2}));
    for (int z = 0; z < 2; ++z)
        for (int y = 0; y < 2; ++y)
            for (int c = 0; c < 2; ++c) // the start is not multiplied by the channels
                EXPECT_EQ(output.getVoxel(y, z, 0, 0, c),
                          static_cast<float>(storedIndex(shape, 0, y, z, 1, c) + 1));
}

TYPED_TEST(ImageSlices, coronalSliceImageCopiesRows)
{
    const Shape shape{3, 2, 2, 2, 2};
    ImageBase<TypeParam> image = countingImage<TypeParam>(shape);
    ImageBase<TypeParam> output;
    image.getCoronalSliceImage(output, 1, 1);
    EXPECT_EQ(shapeOf(output), (Shape{3, 2, 1, 1, 2}));
    for (int z = 0; z < 2; ++z)
        for (int x = 0; x < 3; ++x)
            for (int c = 0; c < 2; ++c)
                EXPECT_EQ(output.getVoxel(x, z, 0, 0, c),
                          static_cast<float>(storedIndex(shape, x, 1, z, 1, c)));
}

TYPED_TEST(ImageSlices, coronalSliceImageReadsTheSquareOfTheFrame)
{
    ImageBase<TypeParam> image = countingImage<TypeParam>({2, 1, 1, 5, 1});
    ImageBase<TypeParam> output;
    image.getCoronalSliceImage(output, 0, 2);
    EXPECT_EQ(valuesOf(output), (std::vector<TypeParam>{8, 9})); // frame 4
    image.getCoronalSliceImage(output, 0, 3);                    // frame 9 does not exist
    EXPECT_EQ(valuesOf(output), (std::vector<TypeParam>{0, 0}));
}

TYPED_TEST(ImageSlices, sliceImageMayTakeThePlaceOfItsVolume)
{
    ImageBase<TypeParam> sagittal = countingImage<TypeParam>({3, 2, 2, 1, 1});
    sagittal.getSagittalSliceImage(sagittal, 2, 0);
    EXPECT_EQ(shapeOf(sagittal), (Shape{2, 2, 1, 1, 1}));
    EXPECT_EQ(valuesOf(sagittal), (std::vector<TypeParam>{2, 5, 8, 11}));
    ImageBase<TypeParam> coronal = countingImage<TypeParam>({3, 2, 4, 1, 1});
    coronal.getCoronalSliceImage(coronal, 1, 0);
    EXPECT_EQ(shapeOf(coronal), (Shape{3, 4, 1, 1, 1}));
    EXPECT_EQ(valuesOf(coronal), (std::vector<TypeParam>{3, 4, 5, 9, 10, 11, 15, 16, 17, 21, 22, 23}));
}

TYPED_TEST(ImageSlices, fittingOutputKeepsItsBuffer)
{
    ImageBase<TypeParam> image = countingImage<TypeParam>({2, 3, 4, 1, 1});
    ImageBase<TypeParam> output;
    output.setDimensions(3, 4, 2, 1, 1);
    const void *buffer = output.getData();
    image.getSagittalSliceImage(output, 1, 0);
    EXPECT_EQ(output.getData(), buffer);
    EXPECT_EQ(output.getDepth(), 2);
    EXPECT_EQ(output.getVoxel(2, 3, 0, 0, 0), 23.0f);
    image.getCoronalSliceImage(output, 1, 0);
    EXPECT_EQ(shapeOf(output), (Shape{2, 4, 1, 1, 1}));
}

TYPED_TEST(ImageSlices, missingSlicesAndFramesOfSliceImagesThrow)
{
    ImageBase<TypeParam> image = countingImage<TypeParam>({2, 3, 4, 2, 1});
    ImageBase<TypeParam> output;
    for (const int slice : {-1, 2})
        EXPECT_EQ(outOfRangeText([&] { image.getSagittalSliceImage(output, slice, 0); }),
                  "getSagittalSliceImage, sagittalSliceNumber exceeds number of sagittal slices in volume!");
    for (const int slice : {-1, 3})
        EXPECT_EQ(outOfRangeText([&] { image.getCoronalSliceImage(output, slice, 0); }),
                  "getCoronalSliceImage, coronalSliceImage exceeds number of coronal slices in volume!");
    for (const int frame : {-1, 2}) {
        EXPECT_EQ(outOfRangeText([&] { image.getSagittalSliceImage(output, 0, frame); }),
                  "getSagittalSliceImage, frameNr exceeds number of frames in volume!");
        EXPECT_EQ(outOfRangeText([&] { image.getCoronalSliceImage(output, 0, frame); }),
                  "getCoronalSliceImage, frameNr exceeds number of frames in volume!");
    }
    EXPECT_EQ(output.getValueCount(), 0u);
}
