#include "tests/mervlib/ImageTestTools.h"

#include <limits>

using MERV::ImageBase;
using MERV::Region;

template <class T>
class ImageArithmetic : public testing::Test
{};
TYPED_TEST_SUITE(ImageArithmetic, VoxelTypes);

namespace {

template <class T>
ImageBase<T> rowOf(const std::vector<T> &values)
{
    ImageBase<T> image;
    image.setVerbose(0);
    image.setDimensions(static_cast<int>(values.size()), 1, 1, 1, 1);
    std::copy(values.begin(), values.end(), image.begin());
    return image;
}

template <class T>
using Values = std::vector<T>;

} // namespace

TYPED_TEST(ImageArithmetic, operatorsOnImages)
{
    using T = TypeParam;
    const ImageBase<T> a = rowOf<T>({12, 20, 9, 0});
    const ImageBase<T> b = rowOf<T>({3, 5, 2, 1});
    EXPECT_EQ(valuesOf(a + b), (Values<T>{15, 25, 11, 1}));
    EXPECT_EQ(valuesOf(a - rowOf<T>({3, 5, 2, 0})), (Values<T>{9, 15, 7, 0}));
    EXPECT_EQ(valuesOf(a * b), (Values<T>{36, 100, 18, 0}));
    EXPECT_EQ(valuesOf(a / b), (Values<T>{4, 4, static_cast<T>(T(9) / T(2)), 0}));
    ImageBase<T> c = rowOf<T>({12, 20, 9, 0});
    EXPECT_EQ(&(c += b), &c);
    c -= rowOf<T>({1, 1, 1, 1});
    c *= b;
    c /= rowOf<T>({2, 2, 2, 2});
    EXPECT_EQ(valuesOf(c), (Values<T>{21, 60, 10, 0}));
}

TYPED_TEST(ImageArithmetic, operatorsOnScalars)
{
    using T = TypeParam;
    ImageBase<T> a = rowOf<T>({1, 2, 3});
    EXPECT_EQ(&(a += T(4)), &a);
    a *= T(3);
    a -= T(5);
    a /= T(2);
    // ((1, 2, 3) + 4) * 3 - 5 is (10, 13, 16).
    EXPECT_EQ(valuesOf(a), (Values<T>{5, static_cast<T>(T(13) / T(2)), 8}));
}

TYPED_TEST(ImageArithmetic, differentSizesShareTheirFirstValues)
{
    using T = TypeParam;
    EXPECT_EQ(valuesOf(rowOf<T>({1, 2, 3}) + rowOf<T>({10, 20})), (Values<T>{11, 22, 3}));
    EXPECT_EQ(valuesOf(rowOf<T>({1, 2}) * rowOf<T>({10, 20, 30})), (Values<T>{10, 40}));
    EXPECT_EQ(valuesOf(rowOf<T>({1, 2}) + ImageBase<T>()), (Values<T>{1, 2}));
    EXPECT_TRUE(valuesOf(ImageBase<T>() + rowOf<T>({1, 2})).empty());
}

// The range is that of the left operand's copy.
TYPED_TEST(ImageArithmetic, resultKeepsTheRangeOfTheLeftImage)
{
    using T = TypeParam;
    const ImageBase<T> sum = rowOf<T>({1, 2, 3}) + rowOf<T>({10, 20, 30});
    EXPECT_EQ(sum.getMaximum(), 3.0f);
    EXPECT_EQ(sum.getHigh(0), 3.0f);
}

TEST(ImageArithmeticInteger, wrapsInTheVoxelType)
{
    ImageBase<unsigned char> bytes = rowOf<unsigned char>({200, 3, 20});
    bytes += 100;
    EXPECT_EQ(valuesOf(bytes), (Values<unsigned char>{44, 103, 120}));
    bytes -= 110;
    EXPECT_EQ(valuesOf(bytes), (Values<unsigned char>{190, 249, 10}));
    ImageBase<short> words = rowOf<short>({32767, -32768, 300});
    words *= 300;
    // 32767 * 300 = 9830100 = 149 * 65536 + 65236; -32768 * 300 = -150 * 65536; 90000 - 65536.
    EXPECT_EQ(valuesOf(words), (Values<short>{-300, 0, 24464}));
    const int least = std::numeric_limits<int>::min();
    const int most = std::numeric_limits<int>::max();
    ImageBase<int> numbers = rowOf<int>({most, least, 1 << 20});
    numbers += 1;
    EXPECT_EQ(valuesOf(numbers), (Values<int>{least, least + 1, (1 << 20) + 1}));
    ImageBase<unsigned short> naturals = rowOf<unsigned short>({65535});
    naturals *= 65535; // would overflow a promoted int
    EXPECT_EQ(valuesOf(naturals), (Values<unsigned short>{1}));
}

TEST(ImageArithmeticInteger, divisionByZeroGivesZeroAndTheLeastByMinusOneStays)
{
    const int least = std::numeric_limits<int>::min();
    EXPECT_EQ(valuesOf(rowOf<int>({7, least, 9, -9}) / rowOf<int>({0, -1, -1, 2})),
              (Values<int>{0, least, -9, -4}));
    ImageBase<char> bytes = rowOf<char>({-128, 5});
    bytes /= static_cast<char>(-1);
    EXPECT_EQ(valuesOf(bytes), (Values<char>{-128, -5}));
    bytes /= static_cast<char>(0);
    EXPECT_EQ(valuesOf(bytes), (Values<char>{0, 0}));
    ImageBase<unsigned int> naturals = rowOf<unsigned int>({4294967295u, 4});
    naturals /= 4294967295u;
    EXPECT_EQ(valuesOf(naturals), (Values<unsigned int>{1, 0}));
}

TEST(ImageArithmeticFloat, divisionByZeroIsInfinite)
{
    ImageBase<float> image = rowOf<float>({1, -1});
    image /= 0.0f;
    EXPECT_EQ(valuesOf(image), (Values<float>{std::numeric_limits<float>::infinity(),
                                              -std::numeric_limits<float>::infinity()}));
}

// --- windowing in place ---

TYPED_TEST(ImageArithmetic, applyWindowLevelClampsAndShifts)
{
    using T = TypeParam;
    ImageBase<T> image = rowOf<T>({5, 10, 15, 20, 25});
    image.setVerbose(1);
    image.setWindowRange(10, 20, 0);
    CapturedStream out(std::cout);
    image.applyWindowLevel(false);
    EXPECT_EQ(valuesOf(image), (Values<T>{0, 0, 5, 10, 10}));
    EXPECT_EQ(out.str(), "Window/Level setting applied\n");
    EXPECT_EQ(image.getLow(0), 10.0f);
    EXPECT_EQ(image.getHigh(0), 20.0f);
    ImageBase<T> other = rowOf<T>({5, 10, 15, 20, 25});
    other.setWindowRange(10, 20, 0);
    other.applyWindowLevel(true);
    EXPECT_EQ(valuesOf(other), (Values<T>{10, 10, 5, 0, 0}));
    EXPECT_EQ(out.str(), "Window/Level setting applied\n"); // the second one is not verbose
}

TYPED_TEST(ImageArithmetic, applyWindowLevelUsesTheFirstChannelForAll)
{
    ImageBase<TypeParam> image = countingImage<TypeParam>({3, 1, 1, 1, 2});
    image.setWindowRange(1, 3, 0);
    image.setWindowRange(0, 100, 1);
    image.applyWindowLevel(false);
    EXPECT_EQ(valuesOf(image), (std::vector<TypeParam>{0, 0, 1, 2, 2, 2}));
}

TEST(ImageWindowing, integersTruncateTheWindowAndFloatsDoNot)
{
    ImageBase<short> words = rowOf<short>({0, 5, 20});
    words.setWindowRange(1.9f, 10.9f, 0);
    words.applyWindowLevel(false);
    EXPECT_EQ(valuesOf(words), (Values<short>{0, 4, 9}));
    ImageBase<float> floats = rowOf<float>({0, 5, 20});
    floats.setWindowRange(1.5f, 10.5f, 0);
    floats.applyWindowLevel(false);
    EXPECT_EQ(valuesOf(floats), (Values<float>{0, 3.5f, 9}));
}

TEST(ImageWindowing, aWindowBeyondTheTypeDoesNotWrap)
{
    ImageBase<unsigned char> image = rowOf<unsigned char>({0, 100, 255});
    image.setWindowRange(-50, 300, 0);
    image.applyWindowLevel(false); // value + 50
    EXPECT_EQ(valuesOf(image), (Values<unsigned char>{50, 150, 255}));
    ImageBase<unsigned char> inverse = rowOf<unsigned char>({0, 100, 255});
    inverse.setWindowRange(-50, 300, 0);
    inverse.applyWindowLevel(true); // 300 - value
    EXPECT_EQ(valuesOf(inverse), (Values<unsigned char>{255, 200, 45}));
}

// --- region iterators ---

TYPED_TEST(ImageArithmetic, regionIteratorWalksTheRegionInStoredOrder)
{
    const Shape shape{3, 3, 2, 2, 3};
    ImageBase<TypeParam> image = countingImage<TypeParam>(shape);
    for (std::uint32_t first = 0; first < 2; ++first)
        for (std::uint32_t size = 1; size <= 2 - first; ++size) {
            Region region;
            region.first.fill(first);
            region.size.fill(size);
            image.setRegion(region);
            std::vector<TypeParam> expected;
            const int begin = static_cast<int>(first);
            const int end = static_cast<int>(first + size);
            for (int t = begin; t < end; ++t)
                for (int z = begin; z < end; ++z)
                    for (int y = begin; y < end; ++y)
                        for (int x = begin; x < end; ++x)
                            for (int c = begin; c < end; ++c)
                                expected.push_back(static_cast<TypeParam>(storedIndex(shape, x, y, z, t, c)));
            std::vector<TypeParam> found;
            for (auto value = image.regionBegin(); value != image.regionEnd(); ++value)
                found.push_back(*value);
            EXPECT_EQ(found, expected);
        }
}

TYPED_TEST(ImageArithmetic, wholeRegionIsTheWholeBuffer)
{
    ImageBase<TypeParam> image = countingImage<TypeParam>({3, 2, 2, 2, 2});
    const std::vector<TypeParam> found(image.regionBegin(), image.regionEnd());
    EXPECT_EQ(found, valuesOf(image));
}

TYPED_TEST(ImageArithmetic, regionIteratorStaysInsideTheImage)
{
    ImageBase<TypeParam> image = countingImage<TypeParam>({3, 2, 1, 1, 1});
    Region region;
    region.first = {0, 1, 1, 0, 0};
    region.size = {9, 9, 9, 9, 9};
    image.setRegion(region);
    EXPECT_EQ(std::vector<TypeParam>(image.regionBegin(), image.regionEnd()), (std::vector<TypeParam>{4, 5}));
    region.first = {0, 3, 0, 0, 0};
    image.setRegion(region);
    EXPECT_TRUE(image.regionBegin() == image.regionEnd());
    ImageBase<TypeParam> empty;
    EXPECT_TRUE(empty.regionBegin() == empty.regionEnd());
}
