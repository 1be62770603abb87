#include "mervlib/src/detail/ImageBaseFilters.inl"
#include "tests/mervlib/FilterTestSupport.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <thread>
#include <vector>

using namespace FilterTest;

namespace {

const char *const unsignedMessage = "Error: unsigned data type, cannot compute filtered image!\n";
const char *const missingMessage = "Error: Cannot compute filtered image without filter!\n";
const char *const evenMessage = "Error: Window size must be an odd number!\n";

// Some zeros, signs and fractions that are not exact in binary.
std::vector<float> someKernel(int size, int dimensionCount)
{
    std::size_t count = 1;
    for (int i = 0; i < dimensionCount; ++i)
        count *= static_cast<std::size_t>(size);
    std::vector<float> kernel(count);
    for (std::size_t i = 0; i < count; ++i)
        kernel[i] = i % 4 == 1 ? 0.0f : (static_cast<float>(i % 7) - 2.7f) * 0.1f;
    return kernel;
}

// The rule for the ring copies, voxel by voxel.
void slowExtendBorder(Image &image, int width)
{
    const int w = image.getWidth(), h = image.getHeight();
    for (int z = 0; z < image.getDepth(); ++z) {
        const auto copy = [&](int x, int y, int fromX, int fromY) {
            for (int value : {x, fromX})
                if (value < 0 || value >= w)
                    return;
            for (int value : {y, fromY})
                if (value < 0 || value >= h)
                    return;
            const auto index = [&](int a, int b) {
                const int pixel = (z * h + b) * w + a;
                return static_cast<std::uint64_t>(pixel);
            };
            image.setValue(image.getValue(index(fromX, fromY)), index(x, y));
        };
        for (int k = width; k >= 2; --k) {
            copy(k - 1, k - 1, k, k);
            copy(k - 1, h - k, k, h - k - 1);
            copy(w - k + 1, k - 1, w - k, k);
            copy(w - k + 1, h - k + 1, w - k, h - k);
        }
        for (int k = width; k >= 2; --k)
            for (int y = 0; y < h; ++y) {
                copy(k - 1, y, k, y);
                copy(w - k, y, w - k - 1, y);
            }
        for (int k = width; k >= 2; --k)
            for (int x = 0; x < w; ++x) {
                copy(x, k - 1, x, k);
                copy(x, h - k, x, h - k - 1);
            }
    }
}

ImagePtr slowFilter2D(Image &source, int type, const std::vector<float> &kernel, int size, int channel)
{
    const int w = source.getWidth(), h = source.getHeight(), d = source.getDepth();
    ImagePtr output = newImage(type, {w, h, d}, source.getFrames());
    const int half = (size - 1) / 2;
    Range range;
    for (int z = 0; z < d; ++z)
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x) {
                float r = 0.0f;
                if (half - 1 < x && x < w - half && half - 1 < y && y < h - half)
                    for (int j = 0; j < size; ++j)
                        for (int i = 0; i < size; ++i) {
                            const int index = j * size + i;
                            const float f = kernel[static_cast<std::size_t>(index)];
                            if (f != 0.0f)
                                r += f * source.getVoxel(x + i - half, y + j - half, z, 0, channel);
                        }
                range.add(r);
                output->setNextValue(r);
            }
    slowExtendBorder(*output, half);
    range.setWindow(*output, 0);
    return output;
}

ImagePtr slowFilter3D(Image &source, int type, const std::vector<float> &kernel, int size, int channel)
{
    const int w = source.getWidth(), h = source.getHeight(), d = source.getDepth();
    ImagePtr output = newImage(type, {w, h, d}, source.getFrames());
    const int half = (size - 1) / 2;
    Range range;
    for (int z = 0; z < d; ++z)
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x) {
                float r = 0.0f;
                if (half - 1 < x && x < w - half && half - 1 < y && y < h - half && half - 1 < z &&
                    z < d - half)
                    for (int k = 0; k < size; ++k)
                        for (int j = 0; j < size; ++j)
                            for (int i = 0; i < size; ++i) {
                                const int index = (k * size + j) * size + i;
                                const float f = kernel[static_cast<std::size_t>(index)];
                                if (f != 0.0f)
                                    r += f * source.getVoxel(x + i - half, y + j - half, z + k - half, 0,
                                                             channel);
                            }
                range.add(r);
                output->setVoxel(static_cast<float>(std::floor(r + 0.5)), x, y, z, 0, 0);
            }
    range.setWindow(*output, 0);
    return output;
}

} // namespace

template <class T>
class ImageBaseFilters : public ::testing::Test
{};
TYPED_TEST_SUITE(ImageBaseFilters, VoxelTypes);

TYPED_TEST(ImageBaseFilters, filter2DEqualsPlainFormulaInAllTypesAndSizes)
{
    for (const Size &size : sizes) {
        for (int window : {1, 3, 5}) {
            ImagePtr source = newImage(MERV::DataTypeOf<TypeParam>::value, size, 2, 2);
            fillRandom(*source, static_cast<std::uint32_t>(size.x * 7 + window));
            const std::vector<float> kernel = someKernel(window, 2);
            for (int type : signedCodes) {
                SCOPED_TRACE(::testing::Message() << size.x << 'x' << size.y << 'x' << size.z << " window "
                                                  << window << " type " << type);
                ImagePtr result(source->computeFilteredImage2D(type, kernel.data(), window, nullptr, 1));
                ASSERT_TRUE(result);
                expectSame(*result, *slowFilter2D(*source, type, kernel, window, 1));
            }
        }
    }
}

TYPED_TEST(ImageBaseFilters, filter3DEqualsPlainFormulaInAllTypesAndSizes)
{
    for (const Size &size : sizes) {
        for (int window : {1, 3, 5}) {
            ImagePtr source = newImage(MERV::DataTypeOf<TypeParam>::value, size, 1, 3);
            fillRandom(*source, static_cast<std::uint32_t>(size.y * 5 + window));
            const std::vector<float> kernel = someKernel(window, 3);
            for (int type : {MERV::TypeChar, MERV::TypeUChar, MERV::TypeShort, MERV::TypeUShort,
                             MERV::TypeInt, MERV::TypeUInt, MERV::TypeFloat, MERV::TypeDouble}) {
                SCOPED_TRACE(::testing::Message() << size.x << 'x' << size.y << 'x' << size.z << " window "
                                                  << window << " type " << type);
                ImagePtr result(source->computeFilteredImage3D(type, kernel.data(), window, nullptr, 2));
                ASSERT_TRUE(result);
                expectSame(*result, *slowFilter3D(*source, type, kernel, window, 2));
            }
        }
    }
}

TYPED_TEST(ImageBaseFilters, typeZeroMeansOwnTypeAndUnsignedIsRefusedIn2DOnly)
{
    const int type = MERV::DataTypeOf<TypeParam>::value;
    ImagePtr source = newImage(type, {4, 4, 3});
    const std::vector<float> kernel = someKernel(3, 3);
    CapturedText output;
    ImagePtr flat(source->computeFilteredImage2D(0, kernel.data(), 3, nullptr, 0));
    ImagePtr solid(source->computeFilteredImage3D(0, kernel.data(), 3, nullptr, 0));
    ASSERT_TRUE(solid);
    EXPECT_EQ(solid->getDataType(), type);
    if (type % 2 == 1) {
        EXPECT_FALSE(flat);
        EXPECT_EQ(output.text(), unsignedMessage);
    } else {
        ASSERT_TRUE(flat);
        EXPECT_EQ(flat->getDataType(), type);
        EXPECT_EQ(output.text(), "");
    }
}

TYPED_TEST(ImageBaseFilters, extendBorderEqualsPlainRule)
{
    for (const Size &size : sizes) {
        for (int width : {-3, 0, 1, 2, 3, 4, 6, 11, std::numeric_limits<int>::max()}) {
            SCOPED_TRACE(::testing::Message()
                         << size.x << 'x' << size.y << 'x' << size.z << " width " << width);
            ImagePtr image = newImage(MERV::DataTypeOf<TypeParam>::value, size);
            fillRandom(*image, 11);
            ImagePtr expected(image->clone());
            slowExtendBorder(*expected, std::min(width, 20));
            image->extendBorder(width);
            EXPECT_EQ(valuesOf(*image), valuesOf(*expected));
        }
    }
}

TEST(ImageBaseFilter2D, everyUnsignedTypeIsRefusedOnceAndNothingIsWritten)
{
    ImagePtr source = newImage(MERV::TypeShort, {4, 4, 1});
    ImagePtr given = newImage(MERV::TypeShort, {4, 4, 1});
    fill(*given, std::vector<float>(16, 5.0f));
    const std::vector<float> kernel = someKernel(3, 2);
    for (int type : unsignedCodes) {
        CapturedText output;
        EXPECT_EQ(source->computeFilteredImage2D(type, kernel.data(), 3, given.get(), 0), nullptr);
        EXPECT_EQ(output.text(), unsignedMessage);
    }
    EXPECT_EQ(valuesOf(*given), std::vector<float>(16, 5.0f));
}

TEST(ImageBaseFilter2D, evenWindowSizeIsRefused)
{
    ImagePtr source = newImage(MERV::TypeShort, {8, 8, 1});
    const std::vector<float> kernel = someKernel(4, 2);
    for (int window : {4, 2, 0, -1, -2}) {
        CapturedText output;
        EXPECT_EQ(source->computeFilteredImage2D(0, kernel.data(), window, nullptr, 0), nullptr);
        EXPECT_EQ(output.text(), evenMessage) << window;
    }
}

// Of a type that does not exist no output can be made, so that the window size is not looked at any more.
TEST(ImageBaseFilter2D, outputIsMadeBeforeTheWindowSizeIsLookedAt)
{
    ImagePtr source = newImage(MERV::TypeShort, {8, 8, 1});
    const std::vector<float> kernel = someKernel(4, 2);
    CapturedText output;
    EXPECT_EQ(source->computeFilteredImage2D(5128, kernel.data(), 4, nullptr, 0), nullptr);
    EXPECT_EQ(source->computeFilteredImage2D(5128, nullptr, 4, nullptr, 0), nullptr);
    EXPECT_EQ(output.text(), "");
}

// 2^60 bytes, which as doubles would be 2^63; of the source only the shape is read.
TEST(ImageBaseFilter2D, outputThatFitsNoMemoryThrowsBeforeTheWindowSizeIsLookedAt)
{
    ImageBase<char> source;
    source.setBufferExternal();
    source.setDimensions(1 << 30, 1 << 30, 1, 1, 1);
    const std::vector<float> kernel = someKernel(4, 2);
    CapturedText output;
    EXPECT_THROW(source.computeFilteredImage2D(MERV::TypeDouble, kernel.data(), 4, nullptr, 0),
                 MERV::Exception);
    EXPECT_EQ(output.text(), "Common >> Error while initializing!\n");
}

TEST(ImageBaseFilter2D, missingFilterIsReportedBeforeEvenWindowSize)
{
    ImagePtr source = newImage(MERV::TypeShort, {8, 8, 1});
    CapturedText output;
    EXPECT_EQ(source->computeFilteredImage2D(0, nullptr, 4, nullptr, 0), nullptr);
    EXPECT_EQ(output.text(), missingMessage);
}

TEST(ImageBaseFilter2D, unsignedTypeIsReportedBeforeMissingFilter)
{
    ImagePtr source = newImage(MERV::TypeUChar, {8, 8, 1});
    CapturedText output;
    EXPECT_EQ(source->computeFilteredImage2D(0, nullptr, 4, nullptr, 0), nullptr);
    EXPECT_EQ(output.text(), unsignedMessage);
}

TEST(ImageBaseFilter2D, unknownEvenTypeGivesNullSilently)
{
    ImagePtr source = newImage(MERV::TypeShort, {8, 8, 1});
    const std::vector<float> kernel = someKernel(3, 3);
    CapturedText output;
    EXPECT_EQ(source->computeFilteredImage2D(5128, kernel.data(), 3, nullptr, 0), nullptr);
    EXPECT_EQ(source->computeFilteredImage3D(5128, kernel.data(), 3, nullptr, 0), nullptr);
    EXPECT_EQ(output.text(), "");
}

TEST(ImageBaseFilter2D, onlyTheFirstFrameIsComputed)
{
    ImagePtr source = newImage(MERV::TypeShort, {3, 3, 1}, 2);
    fill(*source, std::vector<float>(18, 7.0f));
    const float identity[1] = {1.0f};
    ImagePtr result(source->computeFilteredImage2D(0, identity, 1, nullptr, 0));
    ASSERT_TRUE(result);
    std::vector<float> expected(18, 0.0f);
    std::fill_n(expected.begin(), 9, 7.0f);
    EXPECT_EQ(valuesOf(*result), expected);
}

TEST(ImageBaseFilter2D, truncatesTowardZeroAnd3DRoundsByFloor)
{
    // 4 * 0.45 = 1.8, -4 * 0.45 = -1.8, 2.0 * ... the halves: 10 * 0.45 = 4.5, -10 * 0.45 = -4.5
    ImagePtr source = newImage(MERV::TypeShort, {4, 1, 1});
    fill(*source, {4, -4, 10, -10});
    const float kernel[1] = {0.45f};
    ImagePtr flat(source->computeFilteredImage2D(0, kernel, 1, nullptr, 0));
    ImagePtr solid(source->computeFilteredImage3D(0, kernel, 1, nullptr, 0));
    EXPECT_EQ(valuesOf(*flat), (std::vector<float>{1, -1, 4, -4}));
    EXPECT_EQ(valuesOf(*solid), (std::vector<float>{2, -2, 5, -4}));
}

TEST(ImageBaseFilter3D, roundsEvenIntoFloatAndKeepsTheUnroundedRange)
{
    ImagePtr source = newImage(MERV::TypeFloat, {3, 1, 1});
    fill(*source, {1.25f, -0.75f, 2.5f});
    const float kernel[1] = {1.0f};
    ImagePtr result(source->computeFilteredImage3D(0, kernel, 1, nullptr, 0));
    EXPECT_EQ(valuesOf(*result), (std::vector<float>{1, -1, 3}));
    EXPECT_EQ(result->getLow(0), -0.75f);
    EXPECT_EQ(result->getHigh(0), 2.5f);
}

TEST(ImageBaseFilter3D, refusesMissingFilterAndEvenWindowSize)
{
    ImagePtr source = newImage(MERV::TypeUChar, {8, 8, 8});
    const std::vector<float> kernel = someKernel(4, 3);
    {
        CapturedText output;
        EXPECT_EQ(source->computeFilteredImage3D(0, nullptr, 4, nullptr, 0), nullptr);
        EXPECT_EQ(output.text(), missingMessage);
    }
    CapturedText output;
    EXPECT_EQ(source->computeFilteredImage3D(0, kernel.data(), 4, nullptr, 0), nullptr);
    EXPECT_EQ(output.text(), evenMessage);
}

TEST(ImageBaseFilter3D, zeroesTheBorderOfAGivenOutputAndKeepsItsOtherChannels)
{
    ImagePtr source = newImage(MERV::TypeShort, {3, 3, 3});
    fill(*source, std::vector<float>(27, 1.0f));
    ImagePtr given = newImage(MERV::TypeInt, {3, 3, 3}, 1, 2);
    fill(*given, std::vector<float>(54, 9.0f));
    const std::vector<float> kernel(27, 1.0f);
    EXPECT_EQ(source->computeFilteredImage3D(0, kernel.data(), 3, given.get(), 0), given.get());
    for (int z = 0; z < 3; ++z)
        for (int y = 0; y < 3; ++y)
            for (int x = 0; x < 3; ++x) {
                const bool centre = x == 1 && y == 1 && z == 1;
                EXPECT_EQ(given->getVoxel(x, y, z, 0, 0), centre ? 27.0f : 0.0f);
                EXPECT_EQ(given->getVoxel(x, y, z, 0, 1), 9.0f);
            }
}

// As after storing voxel by voxel, the last one last.
TEST(ImageBaseFilter3D, cursorOfTheOutputEndsBehindTheLastVoxel)
{
    ImagePtr source = newImage(MERV::TypeShort, {2, 2, 2});
    ImagePtr given = newImage(MERV::TypeShort, {2, 2, 2}, 2, 1);
    for (int z = 0; z < 2; ++z)
        given->setVoxel(static_cast<float>(50 + z), 0, 0, z, 1, 0);
    const float identity[1] = {1.0f};
    given->resetCursor();
    source->computeFilteredImage3D(0, identity, 1, given.get(), 0);
    float value = 0.0f;
    EXPECT_TRUE(given->getNextValue(value));
    EXPECT_EQ(value, 50.0f);
}

TEST(ImageBaseFilter3D, givenOutputThatIsTooSmallIsNotOverrun)
{
    ImagePtr source = newImage(MERV::TypeShort, {5, 5, 5});
    fillRandom(*source, 3);
    ImagePtr given = newImage(MERV::TypeShort, {2, 2, 1});
    const std::vector<float> kernel = someKernel(3, 3);
    EXPECT_EQ(source->computeFilteredImage3D(0, kernel.data(), 3, given.get(), 0), given.get());
    EXPECT_EQ(dimensionsOf(*given), (std::array<int, 5>{2, 2, 1, 1, 1}));
}

TEST(ImageBaseFilter2D, givenOutputIsWrittenFromItsStartAndEndsSilently)
{
    ImagePtr source = newImage(MERV::TypeShort, {3, 2, 1});
    fill(*source, {1, 2, 3, 4, 5, 6});
    source->setSpacing(2.0f, 3.0f, 4.0f, 5.0f);
    ImagePtr given = newImage(MERV::TypeFloat, {4, 1, 1});
    float value = 0.0f;
    given->getNextValue(value); // a cursor that is not at the start
    const float doubled[1] = {2.0f};
    CapturedText output;
    // The type asked for counts for the refusal alone once an output is given.
    EXPECT_EQ(source->computeFilteredImage2D(MERV::TypeChar, doubled, 1, given.get(), 0), given.get());
    EXPECT_EQ(valuesOf(*given), (std::vector<float>{2, 4, 6, 8}));
    EXPECT_EQ(dimensionsOf(*given), (std::array<int, 5>{4, 1, 1, 1, 1}));
    EXPECT_EQ(given->getSpacing(0), 1.0f);
    EXPECT_EQ(output.text(), "");
}

TEST(ImageBaseFilter2D, cursorOfTheOutputEndsBehindTheLastValueAndThatOfTheSourceStays)
{
    ImagePtr source = newImage(MERV::TypeShort, {2, 1, 1});
    fill(*source, {1, 2});
    source->resetCursor();
    ImagePtr given = newImage(MERV::TypeShort, {3, 1, 1});
    fill(*given, {8, 8, 8});
    const float identity[1] = {1.0f};
    source->computeFilteredImage2D(0, identity, 1, given.get(), 0);
    float value = 0.0f;
    EXPECT_TRUE(given->getNextValue(value));
    EXPECT_EQ(value, 8.0f);
    EXPECT_FALSE(given->getNextValue(value));
    EXPECT_TRUE(source->getNextValue(value));
    EXPECT_EQ(value, 1.0f);
}

TEST(ImageBaseFilter2D, createdOutputTakesSpacingAndPosition)
{
    ImagePtr source = newImage(MERV::TypeUShort, {4, 4, 4});
    source->setSpacing(0.5f, 0.25f, 3.0f, 2.0f);
    const float position[3] = {7.0f, -8.0f, 9.0f};
    source->setPosition(position);
    const std::vector<float> kernel = someKernel(3, 3);
    for (bool solid : {false, true}) {
        ImagePtr result(solid ? source->computeFilteredImage3D(0, kernel.data(), 3, nullptr, 0)
                              : source->computeFilteredImage2D(MERV::TypeInt, kernel.data(), 3, nullptr, 0));
        ASSERT_TRUE(result);
        EXPECT_EQ(result->getSpacing(0), 0.5f);
        EXPECT_EQ(result->getSpacing(1), 0.25f);
        EXPECT_EQ(result->getSpacing(2), 3.0f);
        EXPECT_EQ(result->getSpacing(3), 2.0f);
        for (int axis = 0; axis < 3; ++axis)
            EXPECT_EQ(result->getPosition()[axis], position[axis]);
    }
}

TEST(ImageBaseFilter2D, windowLargerThanTheImageGivesZeros)
{
    ImagePtr source = newImage(MERV::TypeShort, {5, 5, 1});
    fillRandom(*source, 9);
    const std::vector<float> kernel(81, 1.0f);
    ImagePtr result(source->computeFilteredImage2D(0, kernel.data(), 9, nullptr, 0));
    ASSERT_TRUE(result);
    EXPECT_EQ(valuesOf(*result), std::vector<float>(25, 0.0f));
    // A window whose square does not fit an int: the kernel is never read.
    ImagePtr huge(
        source->computeFilteredImage2D(0, kernel.data(), std::numeric_limits<int>::max(), nullptr, 0));
    ASSERT_TRUE(huge);
    EXPECT_EQ(valuesOf(*huge), std::vector<float>(25, 0.0f));
}

TEST(ImageBaseFilter2D, zeroCoefficientsAreSkippedEvenOnInfiniteVoxels)
{
    ImagePtr source = newImage(MERV::TypeDouble, {3, 3, 1});
    std::vector<float> values(9, 1.0f);
    values[0] = std::numeric_limits<float>::infinity();
    fill(*source, values);
    std::vector<float> kernel(9, 1.0f);
    kernel[0] = 0.0f;
    ImagePtr result(source->computeFilteredImage2D(0, kernel.data(), 3, nullptr, 0));
    EXPECT_EQ(result->getVoxel(1, 1, 0, 0, 0), 8.0f);
}

TEST(ImageBaseFilter2D, windowIsTheRangeBeforeConversionWithTheBorderZeros)
{
    // One interior voxel: 2.5 * 3 = 7.5, stored as 7; the border counts as 0.
    ImagePtr source = newImage(MERV::TypeShort, {3, 3, 1});
    fill(*source, {9, 9, 9, 9, 3, 9, 9, 9, 9});
    const float kernel[9] = {0, 0, 0, 0, 2.5f, 0, 0, 0, 0};
    ImagePtr result(source->computeFilteredImage2D(0, kernel, 3, nullptr, 0));
    EXPECT_EQ(valuesOf(*result), (std::vector<float>{0, 0, 0, 0, 7, 0, 0, 0, 0}));
    EXPECT_EQ(result->getLow(0), 0.0f);
    EXPECT_EQ(result->getHigh(0), 7.5f);
}

// No number moves the range from where it starts.
TEST(ImageBaseFilter2D, windowOfNothingButNaNIsTheStartOfTheRange)
{
    ImagePtr source = newImage(MERV::TypeFloat, {2, 1, 1});
    fill(*source, std::vector<float>(2, std::numeric_limits<float>::quiet_NaN()));
    const float identity[1] = {1.0f};
    for (bool solid : {false, true}) {
        ImagePtr result(solid ? source->computeFilteredImage3D(0, identity, 1, nullptr, 0)
                              : source->computeFilteredImage2D(0, identity, 1, nullptr, 0));
        ASSERT_TRUE(result);
        EXPECT_EQ(result->getLow(0), 1e16f);
        EXPECT_EQ(result->getHigh(0), -1e16f);
        EXPECT_EQ(result->getWindow(0), -2e16f);
        EXPECT_EQ(result->getLevel(0), 0.0f);
    }
}

TEST(ImageBaseFilter2D, channelThatDoesNotExistReadsOnlyInsideTheBuffer)
{
    ImagePtr source = newImage(MERV::TypeShort, {4, 4, 2});
    fillRandom(*source, 21);
    const std::vector<float> kernel = someKernel(3, 2);
    for (int channel :
         {-40, -1, 1, 7, 100, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
        ImagePtr result(source->computeFilteredImage2D(0, kernel.data(), 3, nullptr, channel));
        ASSERT_TRUE(result);
        if (channel > -1000 && channel < 1000) {
            expectSame(*result, *slowFilter2D(*source, MERV::TypeShort, kernel, 3, channel));
        } else {
            EXPECT_EQ(valuesOf(*result), std::vector<float>(32, 0.0f));
        }
    }
}

TEST(ImageBaseFilter2D, emptyImageGivesNull)
{
    ImagePtr empty(MERV::createImage(MERV::TypeShort));
    const std::vector<float> kernel = someKernel(3, 3);
    CapturedText output;
    EXPECT_EQ(empty->computeFilteredImage2D(0, kernel.data(), 3, nullptr, 0), nullptr);
    EXPECT_EQ(empty->computeFilteredImage3D(0, kernel.data(), 3, nullptr, 0), nullptr);
    empty->extendBorder(3);
    EXPECT_EQ(output.text(), "");
}

// A foreign buffer, as nothing is read.
TEST(KernelGrid, stepsOfRowsAndSlicesMayExceed32Bits)
{
    constexpr int most = std::numeric_limits<int>::max();
    ImageBase<unsigned char> image;
    image.setBufferExternal();
    image.setDimensions(most, 2, 2, 1, 3);
    const MERV::detail::KernelGrid grid = MERV::detail::kernelGrid(image, 1, 1, true);
    EXPECT_EQ(grid.stepX, 3);
    EXPECT_EQ(grid.stepY, 3 * std::int64_t{most});
    EXPECT_EQ(grid.stepZ, 6 * std::int64_t{most});
}

TEST(ImageBaseFilter2D, twoThreadsMayReadOneSource)
{
    ImagePtr source = newImage(MERV::TypeShort, {30, 30, 4});
    fillRandom(*source, 77);
    const std::vector<float> kernel = someKernel(5, 2);
    std::array<ImagePtr, 2> results;
    {
        std::vector<std::jthread> threads;
        threads.reserve(results.size());
        for (ImagePtr &result : results)
            threads.emplace_back([&] {
                result.reset(source->computeFilteredImage2D(MERV::TypeFloat, kernel.data(), 5, nullptr, 0));
            });
    }
    for (ImagePtr &result : results)
        expectSame(*result, *slowFilter2D(*source, MERV::TypeFloat, kernel, 5, 0));
}

TEST(ExtendBorder, widthTwoCopiesTheThirdRingOutwardAndLeavesTheOutermost)
{
    // 6 x 6, values 10 y + x. Width 2: corners, then columns 1 and 4 take 2 and 3, then rows 1 and 4 take 2
    // and 3. Column 1 ends as column 2, column 4 as column 3, row 1 as the changed row 2, row 4 as the
    // changed row 3.
    ImagePtr image = newImage(MERV::TypeShort, {6, 6, 1});
    std::vector<float> values;
    for (int y = 0; y < 6; ++y)
        for (int x = 0; x < 6; ++x)
            values.push_back(static_cast<float>(10 * y + x));
    fill(*image, values);
    image->extendBorder(2);
    // The lower right corner copy goes one place further out: (5,5) takes (4,4) = 44 before the passes.
    const std::vector<float> expected{0,  2,  2,  3,  3,  5,  //
                                      20, 22, 22, 23, 23, 25, //
                                      20, 22, 22, 23, 23, 25, //
                                      30, 32, 32, 33, 33, 35, //
                                      30, 32, 32, 33, 33, 35, //
                                      50, 52, 52, 53, 53, 44};
    EXPECT_EQ(valuesOf(*image), expected);
}

TEST(ExtendBorder, widthOneDoesNothing)
{
    ImagePtr image = newImage(MERV::TypeShort, {4, 4, 2});
    fillRandom(*image, 5);
    const std::vector<float> before = valuesOf(*image);
    image->extendBorder(1);
    EXPECT_EQ(valuesOf(*image), before);
}

TEST(ExtendBorder, addressesOneChannelOfTheFirstFrame)
{
    ImagePtr image = newImage(MERV::TypeShort, {4, 4, 1}, 2, 2);
    fillRandom(*image, 6);
    const std::vector<float> before = valuesOf(*image);
    image->extendBorder(2);
    const std::vector<float> after = valuesOf(*image);
    EXPECT_NE(after, before);
    EXPECT_TRUE(std::equal(before.begin() + 16, before.end(), after.begin() + 16));
}
