#include "tests/mervlib/FilterTestSupport.h"

#include <cmath>
#include <gtest/gtest.h>
#include <string>
#include <vector>

using namespace FilterTest;

namespace {

const char *const gradientMessage = "Error: unsigned data type, cannot compute gradient!\n";
const char *const hessianMessage = "Error: unsigned data type, cannot compute hessian!\n";
const char *const missingMessage = "Error: Cannot compute filtered image without filter!\n";

const std::vector<float> sobel{1, 2, 1, 0, 0, 0, -1, -2, -1};
const std::vector<float> sobel3D{1, 1, 1, 1, 2,  1,  1,  1,  1,  0,  0,  0,  0, 0,
                                 0, 0, 0, 0, -1, -1, -1, -1, -2, -1, -1, -1, -1};
const std::vector<float> oddKernel{0.3f, -1.7f, 0, 2.1f, 0.07f, -0.9f, 0, 1.3f, -0.6f};

std::vector<float> oddKernel3D()
{
    std::vector<float> kernel(27);
    for (std::size_t i = 0; i < 27; ++i)
        kernel[i] = i % 5 == 2 ? 0.0f : 0.37f * static_cast<float>(i % 8) - 1.1f;
    return kernel;
}

bool isInterior(const Image &image, int x, int y)
{
    return x > 0 && y > 0 && x < image.getWidth() - 1 && y < image.getHeight() - 1;
}

// Kernel sum over one channel; transposed exchanges the roles of rows and columns.
float slowSum(Image &source, const std::vector<float> &f, int x, int y, int z, int channel, bool transposed)
{
    float sum = 0.0f;
    for (int r = 0; r < 3; ++r)
        for (int c = 0; c < 3; ++c) {
            const int index = 3 * r + c;
            const float coefficient = f[static_cast<std::size_t>(index)];
            const int dx = (transposed ? r : c) - 1, dy = (transposed ? c : r) - 1;
            if (coefficient != 0.0f)
                sum += coefficient * source.getVoxel(x + dx, y + dy, z, 0, channel);
        }
    return sum;
}

ImagePtr slowGradient(Image &source, int type, const std::vector<float> &f, bool keepSize)
{
    const int less = keepSize ? 0 : 2;
    ImagePtr output =
        newImage(type, {source.getWidth() - less, source.getHeight() - less, source.getDepth()}, 1, 2);
    Range range;
    for (int z = 0; z < source.getDepth(); ++z)
        for (int y = 0; y < source.getHeight(); ++y)
            for (int x = 0; x < source.getWidth(); ++x) {
                const bool inside = isInterior(source, x, y);
                if (!inside && !keepSize)
                    continue;
                for (bool transposed : {false, true}) {
                    const float g = inside ? slowSum(source, f, x, y, z, 0, transposed) : 0.0f;
                    range.add(g);
                    output->setNextValue(g);
                }
            }
    range.setWindow(*output, 0);
    range.setWindow(*output, 1);
    return output;
}

ImagePtr slowHessian(Image &gradient, int type, const std::vector<float> &f)
{
    ImagePtr output = newImage(type, {gradient.getWidth(), gradient.getHeight(), gradient.getDepth()}, 1, 3);
    std::array<Range, 3> ranges;
    for (int z = 0; z < gradient.getDepth(); ++z)
        for (int y = 0; y < gradient.getHeight(); ++y)
            for (int x = 0; x < gradient.getWidth(); ++x)
                for (int c = 0; c < 3; ++c) {
                    const float value = isInterior(gradient, x, y)
                                            ? slowSum(gradient, f, x, y, z, c == 2 ? 1 : 0, c > 0)
                                            : 0.0f;
                    ranges[static_cast<std::size_t>(c)].add(value);
                    output->setNextValue(value);
                }
    for (int c = 0; c < 3; ++c)
        ranges[static_cast<std::size_t>(c)].setWindow(*output, c);
    return output;
}

struct Slow3D
{
    ImagePtr gradient, magnitude;
    Range range;
    long exceeded = 0;
};

float limited(float value, int type, long &exceeded)
{
    float low = -INFINITY, high = INFINITY;
    if (type == MERV::TypeChar) {
        low = -128.0f;
        high = 127.0f;
    } else if (type == MERV::TypeShort) {
        low = -32768.0f;
        high = 32767.0f;
    }
    if (value >= low && value <= high)
        return value;
    ++exceeded;
    return value < low ? low : high;
}

// Both 3D operations by their formulas; the gradient with its fourth channel.
Slow3D slow3D(Image &source, int type, const std::vector<float> &f, bool keepSize)
{
    const int less = keepSize ? 0 : 2;
    const int w = source.getWidth(), h = source.getHeight(), d = source.getDepth();
    Slow3D result;
    result.gradient = newImage(type, {w - less, h - less, d - less}, 1, 4);
    result.magnitude = newImage(type, {w - less, h - less, d - less});
    for (int z = 0; z < d; ++z)
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x) {
                const bool inside = isInterior(source, x, y) && z > 0 && z < d - 1;
                if (!inside && !keepSize)
                    continue;
                float g[3] = {0, 0, 0};
                for (int k = 0; inside && k < 27; ++k) {
                    const float coefficient = f[static_cast<std::size_t>(k)];
                    const int a = k % 3 - 1, b = k % 9 / 3 - 1, c = k / 9 - 1;
                    if (coefficient == 0.0f)
                        continue;
                    g[0] += coefficient * source.getVoxel(x + c, y + b, z + a, 0, 0);
                    g[1] += coefficient * source.getVoxel(x + a, y + c, z + b, 0, 0);
                    g[2] += coefficient * source.getVoxel(x + a, y + b, z + c, 0, 0);
                }
                for (float &component : g) {
                    component = limited(component, type, result.exceeded);
                    result.range.add(component);
                    result.gradient->setNextValue(component);
                }
                const float magnitude = std::sqrt(g[0] * g[0] + g[1] * g[1] + g[2] * g[2]);
                result.gradient->setNextValue(magnitude);
                result.magnitude->setNextValue(magnitude);
            }
    for (int c = 0; c < 3; ++c)
        result.range.setWindow(*result.gradient, c);
    result.range.setWindow(*result.magnitude, 0);
    result.gradient->setWindowRange(0.0f, source.getHigh(0), 3);
    return result;
}

std::string warning(long count)
{
    return count == 0 ? "" : "Warning: " + std::to_string(count) + " values exceeded.\n";
}

std::string threeWarnings(long count)
{
    const std::string line = warning(count);
    return line + line + line;
}

ImagePtr withoutFourthChannel(Image &image)
{
    ImagePtr result =
        newImage(image.getDataType(), {image.getWidth(), image.getHeight(), image.getDepth()}, 1, 3);
    for (std::uint64_t i = 0; i < image.getValueCount() / 4; ++i)
        for (std::uint64_t c = 0; c < 3; ++c)
            result->setValue(image.getValue(4 * i + c), 3 * i + c);
    for (int c = 0; c < 3; ++c)
        result->setWindowRange(image.getLow(c), image.getHigh(c), c);
    return result;
}

} // namespace

template <class T>
class ImageBaseGradient : public ::testing::Test
{};
TYPED_TEST_SUITE(ImageBaseGradient, VoxelTypes);

TYPED_TEST(ImageBaseGradient, gradientEqualsPlainFormulaInAllTypesAndSizes)
{
    for (const Size &size : sizes) {
        ImagePtr source = newImage(MERV::DataTypeOf<TypeParam>::value, size);
        fillRandom(*source, static_cast<std::uint32_t>(size.x + 100 * size.y));
        for (int type : signedCodes)
            for (bool keepSize : {false, true})
                for (bool given : {false, true}) {
                    SCOPED_TRACE(::testing::Message() << size.x << 'x' << size.y << 'x' << size.z << " type "
                                                      << type << " keep " << keepSize);
                    const float *filter = given ? oddKernel.data() : nullptr;
                    ImagePtr result(source->computeGradient(type, filter, keepSize, nullptr));
                    ASSERT_TRUE(result);
                    expectSame(*result, *slowGradient(*source, type, given ? oddKernel : sobel, keepSize));
                }
    }
}

TYPED_TEST(ImageBaseGradient, hessianOfTwoChannelsEqualsPlainFormulaInAllTypesAndSizes)
{
    for (const Size &size : sizes) {
        ImagePtr source = newImage(MERV::DataTypeOf<TypeParam>::value, size, 1, 2);
        fillRandom(*source, static_cast<std::uint32_t>(size.x + 10 * size.y));
        for (int type : signedCodes) {
            SCOPED_TRACE(::testing::Message()
                         << size.x << 'x' << size.y << 'x' << size.z << " type " << type);
            ImagePtr result(source->computeHessian(type, oddKernel.data(), nullptr));
            ASSERT_TRUE(result);
            expectSame(*result, *slowHessian(*source, type, oddKernel));
        }
    }
}

TYPED_TEST(ImageBaseGradient, gradient3DEqualsPlainFormulaInAllTypesAndSizes)
{
    for (const Size &size : sizes) {
        ImagePtr source = newImage(MERV::DataTypeOf<TypeParam>::value, size, 1, size.x == 7 ? 2 : 1);
        fillRandom(*source, static_cast<std::uint32_t>(size.x + 1000 * size.y));
        source->computeMinMax();
        for (int type : signedCodes)
            for (bool keepSize : {false, true})
                for (bool given : {false, true}) {
                    SCOPED_TRACE(::testing::Message() << size.x << 'x' << size.y << 'x' << size.z << " type "
                                                      << type << " keep " << keepSize);
                    const std::vector<float> kernel = given ? oddKernel3D() : sobel3D;
                    const float *filter = given ? kernel.data() : nullptr;
                    Slow3D expected = slow3D(*source, type, kernel, keepSize);
                    CapturedText output;
                    ImagePtr four(source->compute3DGradient(type, filter, keepSize, true, nullptr));
                    ImagePtr three(source->compute3DGradient(type, filter, keepSize, false, nullptr));
                    ImagePtr one(source->compute3DGradientMagnitude(type, filter, keepSize, nullptr));
                    ASSERT_TRUE(four && three && one);
                    expectSame(*four, *expected.gradient);
                    expectSame(*three, *withoutFourthChannel(*expected.gradient));
                    expectSame(*one, *expected.magnitude);
                    EXPECT_EQ(output.text(), threeWarnings(expected.exceeded));
                }
    }
}

TYPED_TEST(ImageBaseGradient, defaultTypeIsTheOwnOneAndRefusedWhenUnsigned)
{
    const int type = MERV::DataTypeOf<TypeParam>::value;
    ImagePtr source = newImage(type, {4, 4, 4});
    CapturedText output;
    ImagePtr flat(source->computeGradient(0, nullptr, true, nullptr));
    ImagePtr solid(source->compute3DGradient(0, nullptr, true, true, nullptr));
    ImagePtr magnitude(source->compute3DGradientMagnitude(0, nullptr, true, nullptr));
    ImagePtr hessian(source->computeHessian(0, sobel.data(), nullptr));
    if (type % 2 == 1) {
        EXPECT_FALSE(flat || solid || magnitude || hessian);
        const std::string message = gradientMessage;
        EXPECT_EQ(output.text(), message + message + message + hessianMessage);
    } else {
        ASSERT_TRUE(flat && solid && magnitude && hessian);
        EXPECT_EQ(flat->getDataType(), type);
        EXPECT_EQ(solid->getDataType(), type);
        EXPECT_EQ(magnitude->getDataType(), type);
        EXPECT_EQ(hessian->getDataType(), type);
        EXPECT_EQ(output.text(), "");
    }
}

TEST(ImageBaseGradient2D, unsignedTypesAreRefusedOnceEach)
{
    ImagePtr source = newImage(MERV::TypeShort, {4, 4, 4});
    for (int type : unsignedCodes) {
        CapturedText output;
        EXPECT_EQ(source->computeGradient(type, nullptr, true, nullptr), nullptr);
        EXPECT_EQ(output.text(), gradientMessage);
    }
    for (int type : unsignedCodes) {
        CapturedText output;
        EXPECT_EQ(source->compute3DGradient(type, nullptr, true, false, nullptr), nullptr);
        EXPECT_EQ(source->compute3DGradientMagnitude(type, nullptr, true, nullptr), nullptr);
        EXPECT_EQ(output.text(), std::string(gradientMessage) + gradientMessage);
    }
}

TEST(ImageBaseGradient2D, unknownEvenTypeGivesNullSilently)
{
    ImagePtr source = newImage(MERV::TypeShort, {4, 4, 4});
    source->setVerbose(1);
    CapturedText output;
    EXPECT_EQ(source->computeGradient(5128, nullptr, true, nullptr), nullptr);
    EXPECT_EQ(source->compute3DGradient(5128, nullptr, true, false, nullptr), nullptr);
    EXPECT_EQ(source->compute3DGradientMagnitude(5128, nullptr, true, nullptr), nullptr);
    EXPECT_EQ(output.text(), "");
}

TEST(ImageBaseGradient2D, constantImageGivesZeroEverywhere)
{
    ImagePtr source = newImage(MERV::TypeUChar, {6, 5, 3});
    fill(*source, std::vector<float>(90, 200.0f));
    ImagePtr flat(source->computeGradient(MERV::TypeShort, nullptr, true, nullptr));
    ImagePtr solid(source->compute3DGradient(MERV::TypeFloat, nullptr, true, true, nullptr));
    EXPECT_EQ(valuesOf(*flat), std::vector<float>(180, 0.0f));
    EXPECT_EQ(valuesOf(*solid), std::vector<float>(360, 0.0f));
}

TEST(ImageBaseGradient2D, withoutKeepSizeTenByTenGivesEightByEightOfTwoChannels)
{
    ImagePtr source = newImage(MERV::TypeShort, {10, 10, 1});
    source->setSpacing(0.5f, 0.25f, 3.0f, 1.0f);
    const float position[3] = {1.0f, 2.0f, 3.0f};
    source->setPosition(position);
    ImagePtr result(source->computeGradient(0, nullptr, false, nullptr));
    EXPECT_EQ(dimensionsOf(*result), (std::array<int, 5>{8, 8, 1, 1, 2}));
    EXPECT_EQ(result->getSpacing(0), 0.5f);
    EXPECT_EQ(result->getSpacing(1), 0.25f);
    EXPECT_EQ(result->getSpacing(2), 3.0f);
    EXPECT_EQ(result->getPosition()[0], 0.0f); // the position is carried over by the filters only
}

// Channel 0 answers to change along y, channel 1 to change along x; both are negative derivatives.
TEST(ImageBaseGradient2D, channelZeroIsChangeAlongY)
{
    // Columns 0 0 10 10: gx = 0; gy = 4 * (left - right) = 4 * (0 - 10) = -40 in both interior columns.
    ImagePtr acrossX = newImage(MERV::TypeShort, {4, 3, 1});
    fill(*acrossX, {0, 0, 10, 10, 0, 0, 10, 10, 0, 0, 10, 10});
    ImagePtr result(acrossX->computeGradient(0, nullptr, false, nullptr));
    EXPECT_EQ(valuesOf(*result), (std::vector<float>{0, -40, 0, -40}));
    // Rows 0 0 10: gx = 4 * (above - below) = -40.
    ImagePtr acrossY = newImage(MERV::TypeShort, {3, 3, 1});
    fill(*acrossY, {0, 0, 0, 0, 0, 0, 10, 10, 10});
    result.reset(acrossY->computeGradient(0, nullptr, false, nullptr));
    EXPECT_EQ(valuesOf(*result), (std::vector<float>{-40, 0}));
}

TEST(ImageBaseGradient2D, rangeIsThatOfBothComponentsWithTheBorderZeros)
{
    ImagePtr source = newImage(MERV::TypeShort, {3, 3, 1});
    fill(*source, {0, 0, 0, 0, 0, 0, 10, 10, 10});
    ImagePtr kept(source->computeGradient(0, nullptr, true, nullptr));
    for (int channel : {0, 1}) {
        EXPECT_EQ(kept->getLow(channel), -40.0f);
        EXPECT_EQ(kept->getHigh(channel), 0.0f);
    }
}

TEST(ImageBaseGradient2D, imagesBelowThreePixelsWithoutKeepSizeGiveEmptyImages)
{
    for (const Size &size : {Size{2, 5, 5}, Size{5, 2, 5}, Size{1, 1, 1}}) {
        ImagePtr source = newImage(MERV::TypeShort, size);
        ImagePtr result(source->computeGradient(0, nullptr, false, nullptr));
        ASSERT_TRUE(result);
        EXPECT_EQ(result->getValueCount(), 0u);
    }
    ImagePtr thin = newImage(MERV::TypeShort, {5, 5, 2});
    ImagePtr result(thin->compute3DGradient(0, nullptr, false, false, nullptr));
    ASSERT_TRUE(result);
    EXPECT_EQ(result->getValueCount(), 0u);
}

TEST(ImageBaseGradient2D, sourceOfTwoChannelsIsReadAsOneChannel)
{
    ImagePtr source = newImage(MERV::TypeShort, {4, 4, 2}, 1, 2);
    fillRandom(*source, 8);
    ImagePtr asOne = newImage(MERV::TypeShort, {4, 4, 2});
    for (std::uint64_t i = 0; i < 32; ++i)
        asOne->setValue(source->getValue(i), i);
    ImagePtr result(source->computeGradient(MERV::TypeFloat, nullptr, true, nullptr));
    expectSame(*result, *slowGradient(*asOne, MERV::TypeFloat, sobel, true));
}

TEST(ImageBaseGradient2D, givenOutputIsWrittenFromItsStartToItsEnd)
{
    ImagePtr source = newImage(MERV::TypeShort, {4, 3, 1});
    fill(*source, {0, 0, 10, 10, 0, 0, 10, 10, 0, 0, 10, 10});
    ImagePtr given = newImage(MERV::TypeFloat, {3, 1, 1});
    given->getValue(1); // a cursor that is not at the start
    EXPECT_EQ(source->computeGradient(0, nullptr, false, given.get()), given.get());
    EXPECT_EQ(valuesOf(*given), (std::vector<float>{0, -40, 0}));
    ImagePtr larger = newImage(MERV::TypeFloat, {6, 1, 1});
    fill(*larger, std::vector<float>(6, 1.0f));
    EXPECT_EQ(source->computeGradient(0, nullptr, false, larger.get()), larger.get());
    EXPECT_EQ(valuesOf(*larger), (std::vector<float>{0, -40, 0, -40, 1, 1}));
}

TEST(ImageBaseGradient2D, emptyImageGivesNull)
{
    ImagePtr empty(MERV::createImage(MERV::TypeShort));
    CapturedText output;
    EXPECT_EQ(empty->computeGradient(0, nullptr, true, nullptr), nullptr);
    EXPECT_EQ(empty->computeHessian(0, sobel.data(), nullptr), nullptr);
    EXPECT_EQ(empty->compute3DGradient(0, nullptr, true, false, nullptr), nullptr);
    EXPECT_EQ(empty->compute3DGradientMagnitude(0, nullptr, true, nullptr), nullptr);
    EXPECT_EQ(output.text(), "");
}

TEST(ImageBaseHessian, ofOneChannelIsThatOfItsOwnGradient)
{
    for (int type : signedCodes) {
        ImagePtr source = newImage(type, {7, 6, 2});
        for (std::uint64_t i = 0; i < source->getValueCount(); ++i)
            source->setValue(static_cast<float>(i * i % 17), i); // small: 16 * 16 * 17 fits a short
        // Whatever signed type is asked for, both steps run in the source's own type.
        ImagePtr result(source->computeHessian(MERV::TypeFloat, oddKernel.data(), nullptr));
        ASSERT_TRUE(result);
        ImagePtr gradient = slowGradient(*source, type, oddKernel, true);
        expectSame(*result, *slowHessian(*gradient, type, oddKernel));
    }
}

TEST(ImageBaseHessian, firstChannelIsTheSecondDerivativeAlongY)
{
    // v = y^2 on 5 x 5: the kernel gives 4 (above - below) = 4 ((y-1)^2 - (y+1)^2) = -16 y, so the gradient's
    // channel 0 is 0, -16, -32, -48, 0 in the rows of interior columns. In the centre: 4 (-16 - -48) = 128.
    ImagePtr source = newImage(MERV::TypeInt, {5, 5, 1});
    for (int y = 0; y < 5; ++y)
        for (int x = 0; x < 5; ++x)
            source->setVoxel(static_cast<float>(y * y), x, y, 0, 0, 0);
    ImagePtr result(source->computeHessian(0, sobel.data(), nullptr));
    ASSERT_TRUE(result);
    EXPECT_EQ(result->getVoxel(2, 2, 0, 0, 0), 128.0f);
    EXPECT_EQ(result->getVoxel(2, 2, 0, 0, 1), 0.0f);
    EXPECT_EQ(result->getVoxel(2, 2, 0, 0, 2), 0.0f);
}

TEST(ImageBaseHessian, writesIntoAGivenOutput)
{
    ImagePtr source = newImage(MERV::TypeFloat, {5, 4, 2});
    fillRandom(*source, 31);
    ImagePtr given = newImage(MERV::TypeFloat, {5, 4, 2}, 1, 3);
    EXPECT_EQ(source->computeHessian(0, oddKernel.data(), given.get()), given.get());
    ImagePtr gradient = slowGradient(*source, MERV::TypeFloat, oddKernel, true);
    expectSame(*given, *slowHessian(*gradient, MERV::TypeFloat, oddKernel));
}

TEST(ImageBaseHessian, missingKernelIsReported)
{
    for (int channels : {1, 2}) {
        ImagePtr source = newImage(MERV::TypeShort, {4, 4, 1}, 1, channels);
        CapturedText output;
        EXPECT_EQ(source->computeHessian(0, nullptr, nullptr), nullptr);
        EXPECT_EQ(output.text(), missingMessage);
    }
}

TEST(ImageBaseHessian, unsignedCharWithTypeZeroRefusesWithTheHessianMessage)
{
    ImagePtr source = newImage(MERV::TypeUChar, {4, 4, 1});
    CapturedText output;
    EXPECT_EQ(source->computeHessian(0, sobel.data(), nullptr), nullptr);
    EXPECT_EQ(output.text(), hessianMessage);
}

// The signed type passes the first test, but the gradient inside is asked for the source's own type.
TEST(ImageBaseHessian, unsignedSourceOfOneChannelIsRefusedByItsGradient)
{
    ImagePtr source = newImage(MERV::TypeUChar, {4, 4, 1});
    CapturedText output;
    EXPECT_EQ(source->computeHessian(MERV::TypeFloat, sobel.data(), nullptr), nullptr);
    EXPECT_EQ(output.text(), gradientMessage);
}

TEST(ImageBaseHessian, moreThanTwoChannelsGiveNull)
{
    for (int channels : {3, 4}) {
        ImagePtr source = newImage(MERV::TypeShort, {4, 4, 1}, 1, channels);
        EXPECT_EQ(source->computeHessian(0, sobel.data(), nullptr), nullptr);
    }
}

TEST(ImageBaseGradient3D, byteComponentOf300IsStoredAs127AndCountedOnce)
{
    // Left plane 30, rest 0: the kernel's plane sums to 10, so the centre has gx = 300 and gy = gz = 0.
    ImagePtr source = newImage(MERV::TypeShort, {3, 3, 3});
    for (int z = 0; z < 3; ++z)
        for (int y = 0; y < 3; ++y)
            source->setVoxel(30.0f, 0, y, z, 0, 0);
    source->setVerbose(1);
    CapturedText output;
    ImagePtr result(source->compute3DGradient(MERV::TypeChar, nullptr, true, false, nullptr));
    EXPECT_EQ(result->getVoxel(1, 1, 1, 0, 0), 127.0f);
    EXPECT_EQ(result->getVoxel(1, 1, 1, 0, 1), 0.0f);
    EXPECT_EQ(result->getVoxel(1, 1, 1, 0, 2), 0.0f);
    EXPECT_EQ(output.text(),
              "Computing 3D gradient...\nDone. Range = [0..127]\nWarning: 1 values exceeded.\n");
}

TEST(ImageBaseGradient3D, warningAppearsEvenWhenNotVerboseAndWideTypesHaveNoLimits)
{
    ImagePtr source = newImage(MERV::TypeInt, {3, 3, 3});
    for (int z = 0; z < 3; ++z)
        for (int y = 0; y < 3; ++y)
            source->setVoxel(-4000.0f, 0, y, z, 0, 0); // gx = -40000
    {
        CapturedText output;
        ImagePtr result(source->compute3DGradientMagnitude(MERV::TypeShort, nullptr, false, nullptr));
        // The magnitude of the limited components, 32768, does not fit either.
        EXPECT_EQ(valuesOf(*result), std::vector<float>{32767.0f});
        EXPECT_EQ(result->getLow(0), -32768.0f);
        EXPECT_EQ(output.text(), "Warning: 1 values exceeded.\n");
    }
    CapturedText output;
    ImagePtr result(source->compute3DGradient(0, nullptr, false, true, nullptr));
    EXPECT_EQ(valuesOf(*result), (std::vector<float>{-40000, 0, 0, 40000}));
    EXPECT_EQ(output.text(), "");
}

TEST(ImageBaseGradient3D, componentsComeInTheOrderXYZ)
{
    for (int axis = 0; axis < 3; ++axis) {
        ImagePtr source = newImage(MERV::TypeShort, {3, 3, 3});
        for (int z = 0; z < 3; ++z)
            for (int y = 0; y < 3; ++y)
                for (int x = 0; x < 3; ++x)
                    source->setVoxel(static_cast<float>(std::array{x, y, z}[static_cast<std::size_t>(axis)]),
                                     x, y, z, 0, 0);
        ImagePtr result(source->compute3DGradient(0, nullptr, false, false, nullptr));
        std::vector<float> expected(3, 0.0f);
        expected[static_cast<std::size_t>(axis)] = -20.0f; // 10 * (0 - 2)
        EXPECT_EQ(valuesOf(*result), expected);
    }
}

TEST(ImageBaseGradient3D, fourthChannelHasTheSourcesHighValueAsWindow)
{
    ImagePtr source = newImage(MERV::TypeShort, {3, 3, 3});
    source->setWindowRange(12.0f, 345.0f, 0);
    ImagePtr result(source->compute3DGradient(0, nullptr, true, true, nullptr));
    EXPECT_EQ(result->getLow(3), 0.0f);
    EXPECT_EQ(result->getHigh(3), 345.0f);
}

TEST(ImageBaseGradient3D, outputShapesFollowKeepSize)
{
    ImagePtr source = newImage(MERV::TypeShort, {6, 5, 4}, 3);
    ImagePtr result(source->compute3DGradient(0, nullptr, true, false, nullptr));
    EXPECT_EQ(dimensionsOf(*result), (std::array<int, 5>{6, 5, 4, 1, 3}));
    result.reset(source->compute3DGradient(0, nullptr, false, true, nullptr));
    EXPECT_EQ(dimensionsOf(*result), (std::array<int, 5>{4, 3, 2, 1, 4}));
    result.reset(source->compute3DGradientMagnitude(0, nullptr, false, nullptr));
    EXPECT_EQ(dimensionsOf(*result), (std::array<int, 5>{4, 3, 2, 1, 1}));
}
