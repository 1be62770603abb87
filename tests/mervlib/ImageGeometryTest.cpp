#include "tests/mervlib/ImageTestTools.h"

#include <algorithm>
#include <cmath>
#include <limits>

using MERV::Image;
using MERV::ImageBase;
using MERV::Region;

template <class T>
class ImageGeometry : public testing::Test
{};
TYPED_TEST_SUITE(ImageGeometry, VoxelTypes);

// --- getRegion ---

namespace {

// x, y, z, t, channel.
Region regionOf(const Shape &first, const Shape &size)
{
    const auto number = [](int value) { return static_cast<std::uint32_t>(value); };
    Region region;
    region.first = {number(first[4]), number(first[0]), number(first[1]), number(first[2]), number(first[3])};
    region.size = {number(size[4]), number(size[0]), number(size[1]), number(size[2]), number(size[3])};
    return region;
}

} // namespace

TYPED_TEST(ImageGeometry, regionHoldsItsVoxelsAndZeroOutside)
{
    const Shape shape{4, 3, 3, 2, 2};
    ImageBase<TypeParam> image = scatteredImage<TypeParam>(shape);
    for (const auto &[first, size] : {std::pair<Shape, Shape>{{0, 0, 0, 0, 0}, {4, 3, 3, 2, 2}},
                                      {{1, 1, 2, 1, 1}, {2, 2, 1, 1, 1}},
                                      {{2, 2, 1, 1, 1}, {4, 3, 4, 2, 2}},
                                      {{9, 0, 0, 0, 0}, {2, 1, 1, 1, 2}}}) {
        const std::unique_ptr<Image> part(image.getRegion(regionOf(first, size)));
        ASSERT_EQ(shapeOf(*part), size);
        for (int t = 0; t < size[3]; ++t)
            for (int z = 0; z < size[2]; ++z)
                for (int y = 0; y < size[1]; ++y)
                    for (int x = 0; x < size[0]; ++x)
                        for (int c = 0; c < size[4]; ++c) {
                            const Shape at{x + first[0], y + first[1], z + first[2], t + first[3],
                                           c + first[4]};
                            bool inside = true;
                            for (std::size_t axis = 0; axis < 5; ++axis)
                                inside = inside && at[axis] < shape[axis];
                            EXPECT_EQ(part->getVoxel(x, y, z, t, c),
                                      inside ? image.getVoxel(at[0], at[1], at[2], at[3], at[4]) : 0.0f);
                        }
    }
}

TYPED_TEST(ImageGeometry, regionKeepsSpacingAndPositionButHasNoRange)
{
    ImageBase<TypeParam> image = countingImage<TypeParam>({4, 3, 2, 1, 1});
    const float position[3]{1, 2, 3};
    image.setPosition(position);
    image.setSpacing(0.5f, 0.25f, 2, 3);
    image.setRegion(regionOf({1, 1, 1, 0, 0}, {1, 1, 1, 1, 1}));
    const std::unique_ptr<Image> part(image.getRegion(regionOf({1, 0, 0, 0, 0}, {2, 2, 2, 1, 1})));
    EXPECT_EQ(part->getSpacing(1), 0.25f);
    EXPECT_EQ(part->getPosition()[2], 3.0f);
    EXPECT_EQ(part->getMaximum(), 0.0f);
    EXPECT_EQ(part->getHigh(0), 0.0f);
    EXPECT_EQ(image.getRegion().first[1], 1u); // the source's own region stays
    EXPECT_EQ(image.getRegion().size[1], 1u);
}

TYPED_TEST(ImageGeometry, regionOfNothingIsEmpty)
{
    ImageBase<TypeParam> image = countingImage<TypeParam>({4, 3, 2, 1, 1});
    const std::unique_ptr<Image> part(image.getRegion(Region()));
    EXPECT_EQ(part->getValueCount(), 0u);
}

// --- downsample ---

namespace {

// The box average as the sum of its voxels in stored order.
template <class T>
std::vector<T> slowAverages(ImageBase<T> &image, const Shape &factor)
{
    std::vector<T> result;
    const int width = image.getWidth() / factor[0];
    const int height = image.getHeight() / factor[1];
    const int depth = image.getDepth() / factor[2];
    const int frames = image.getFrames() / factor[3];
    for (int row = 0; row < frames * depth * height; ++row)
        for (int x = 0; x < width; ++x)
            for (int c = 0; c < image.getChannels(); ++c) {
                float sum = 0.0f;
                const int y = row % height, z = row / height % depth, t = row / height / depth;
                for (int ft = 0; ft < factor[3]; ++ft)
                    for (int fz = 0; fz < factor[2]; ++fz)
                        for (int fy = 0; fy < factor[1]; ++fy)
                            for (int fx = 0; fx < factor[0]; ++fx)
                                sum += image.getVoxel(x * factor[0] + fx, y * factor[1] + fy,
                                                      z * factor[2] + fz, t * factor[3] + ft, c);
                const auto count = static_cast<float>(factor[0] * factor[1] * factor[2] * factor[3]);
                result.push_back(static_cast<T>(sum / count));
            }
    return result;
}

} // namespace

TYPED_TEST(ImageGeometry, downsampleAveragesBoxes)
{
    for (const Shape &factor : {Shape{2, 2, 1, 1}, Shape{3, 1, 2, 1}, Shape{1, 2, 3, 2}, Shape{7, 5, 4, 3}}) {
        ImageBase<TypeParam> image = scatteredImage<TypeParam>({7, 5, 4, 3, 2});
        const std::vector<TypeParam> expected = slowAverages(image, factor);
        CapturedStream out(std::cout);
        image.downsample(factor[0], factor[1], factor[2], factor[3]);
        EXPECT_TRUE(sameBits(valuesOf(image), expected));
        EXPECT_EQ(image.getMaximum(),
                  static_cast<float>(*std::max_element(expected.begin(), expected.end())));
    }
}

TEST(ImageDownsample, sumsInSinglePrecisionAndStoredOrder)
{
    ImageBase<float> image = scatteredImage<float>({12, 9, 6, 2, 1});
    for (float &value : image)
        value = std::exp(value * 0.37f) * 1e-3f;
    const std::vector<float> expected = slowAverages(image, {3, 3, 3, 2});
    image.downsample(3, 3, 3, 2);
    EXPECT_TRUE(sameBits(valuesOf(image), expected));
}

TYPED_TEST(ImageGeometry, downsampleReportsCroppingAndSize)
{
    ImageBase<TypeParam> image = countingImage<TypeParam>({5, 5, 3, 1, 1});
    image.setVerbose(1);
    image.setSpacing(0.5f, 0.25f, 2, 3);
    CapturedStream out(std::cout);
    image.downsample(2, 2, 1, 1);
    EXPECT_EQ(out.str(), "Warning: Image will be cropped!\nImage downsampled, new size 2 x 2 x 3\n");
    EXPECT_EQ(shapeOf(image), (Shape{2, 2, 3, 1, 1}));
    EXPECT_EQ(image.getSpacing(0), 1.0f);
    EXPECT_EQ(image.getSpacing(1), 0.5f);
    EXPECT_EQ(image.getSpacing(2), 2.0f);
    EXPECT_EQ(image.getSpacing(3), 3.0f);
    // (0 + 1 + 5 + 6) / 4
    EXPECT_EQ(image.getVoxel(0, 0, 0, 0, 0), 3.0f);
}

TYPED_TEST(ImageGeometry, downsampleWarnsOfCroppingEvenWhenQuiet)
{
    ImageBase<TypeParam> image = countingImage<TypeParam>({5, 4, 1, 1, 1});
    CapturedStream out(std::cout);
    image.downsample(2, 2, 1, 1);
    EXPECT_EQ(out.str(), "Warning: Image will be cropped!\n");
}

TYPED_TEST(ImageGeometry, downsampleByOneOrLessDoesNothing)
{
    ImageBase<TypeParam> image = countingImage<TypeParam>({4, 4, 1, 1, 1});
    const void *buffer = image.getData();
    image.setVerbose(1);
    CapturedStream out(std::cout);
    image.downsample(1, 1, 1, 1);
    image.downsample(0, 2, 1, 1);
    image.downsample(2, -1, 1, 1);
    EXPECT_EQ(image.getData(), buffer);
    EXPECT_EQ(image.getMaximum(), 0.0f);
    EXPECT_EQ(out.str(), "");
}

TYPED_TEST(ImageGeometry, downsampleByMoreThanTheSizeGivesAnEmptyImage)
{
    ImageBase<TypeParam> image = countingImage<TypeParam>({4, 4, 1, 1, 1});
    CapturedStream out(std::cout);
    image.downsample(5, 1, std::numeric_limits<int>::max(), 1);
    EXPECT_EQ(shapeOf(image), (Shape{0, 4, 0, 1, 1}));
    EXPECT_EQ(image.getValueCount(), 0u);
    EXPECT_EQ(image.getData(), nullptr);
    EXPECT_EQ(image.getMaximum(), 0.0f);
    EXPECT_EQ(out.str(), "Warning: Image will be cropped!\n");

    // Empty for what follows as well.
    image.setVerbose(1);
    const float identity[1] = {1.0f};
    EXPECT_EQ(std::unique_ptr<Image>(image.resample(2, 2, 2, 1, 0, true)), nullptr);
    EXPECT_EQ(std::unique_ptr<Image>(image.computeFilteredImage3D(0, identity, 1, nullptr, 0)), nullptr);
    image.resample(2, 2, 2, 1, 0, false);
    image.downsample(1, 2, 1, 1);
    image.scaleToPowerOfTwo(0);
    image.rotate(0);
    EXPECT_EQ(shapeOf(image), (Shape{0, 4, 0, 1, 1}));
    EXPECT_EQ(out.str(), "Warning: Image will be cropped!\n");
}

// --- rotate ---

namespace {

// The destination of a voxel, in voxels, for an old size of W x H x D.
int turnedIndex(int axis, int x, int y, int z, int W, int H, int D)
{
    if (axis == 0)
        return ((H - y - 1) * D + z) * W + x;
    if (axis == 1)
        return ((x * H) + y + 1) * D - z - 1;
    return ((z + 1) * W - x - 1) * H + y;
}

template <class T>
void checkRotation(const Shape &shape, int axis)
{
    ImageBase<T> image = scatteredImage<T>(shape);
    const std::vector<T> before = valuesOf(image);
    const auto [W, H, D, frames, channels] = shape;
    std::vector<T> expected(before.size());
    for (int t = 0; t < frames; ++t)
        for (int z = 0; z < D; ++z)
            for (int y = 0; y < H; ++y)
                for (int x = 0; x < W; ++x)
                    for (int c = 0; c < channels; ++c) {
                        const int voxel = t * W * H * D + turnedIndex(axis, x, y, z, W, H, D);
                        const int index = voxel * channels + c;
                        expected[static_cast<std::size_t>(index)] = before[storedIndex(shape, x, y, z, t, c)];
                    }
    image.rotate(axis);
    ASSERT_EQ(valuesOf(image), expected) << testing::PrintToString(shape) << " axis " << axis;
    Shape turned = shape;
    std::swap(turned[axis == 0 ? 1 : 0], turned[axis == 2 ? 1 : 2]);
    ASSERT_EQ(shapeOf(image), turned);
    for (int again = 0; again < 3; ++again)
        image.rotate(axis);
    ASSERT_EQ(valuesOf(image), before);
}

} // namespace

TYPED_TEST(ImageGeometry, rotateReaddressesEveryVoxel)
{
    for (int axis = 0; axis < 3; ++axis) {
        for (int w = 1; w <= 4; ++w)
            for (int h = 1; h <= 4; ++h)
                for (int d = 1; d <= 4; ++d)
                    for (int c = 1; c <= 3; ++c)
                        ASSERT_NO_FATAL_FAILURE(checkRotation<TypeParam>({w, h, d, 2, c}, axis));
        checkRotation<TypeParam>({70, 33, 40, 1, 1}, axis);
        checkRotation<TypeParam>({33, 65, 31, 2, 2}, axis);
    }
}

TYPED_TEST(ImageGeometry, rotateSwapsSpacingZeroesTheWindowAndKeepsTheRange)
{
    ImageBase<TypeParam> image = countingImage<TypeParam>({2, 3, 1, 1, 1});
    image.setVerbose(1);
    image.setSpacing(0.5f, 0.25f, 2, 3);
    image.setSliceMetaData(0, "n", "zero");
    image.computeMinMax();
    CapturedStream out(std::cout);
    image.rotate(2);
    EXPECT_EQ(out.str(), "Rotated image around axis 2\n");
    EXPECT_EQ(shapeOf(image), (Shape{3, 2, 1, 1, 1}));
    EXPECT_EQ(image.getSpacing(0), 0.25f);
    EXPECT_EQ(image.getSpacing(1), 0.5f);
    EXPECT_EQ(image.getHigh(0), 0.0f);
    EXPECT_EQ(image.getWindow(0), 0.0f);
    EXPECT_EQ(image.getMaximum(), 5.0f);
    EXPECT_EQ(image.getSliceMetaData(0, "n"), "zero");
    // Row x = 1 of the old columns comes first.
    EXPECT_EQ(valuesOf(image), (std::vector<TypeParam>{1, 3, 5, 0, 2, 4}));
}

TYPED_TEST(ImageGeometry, rotateAroundNoAxisDoesNothing)
{
    ImageBase<TypeParam> image = countingImage<TypeParam>({2, 3, 1, 1, 1});
    image.setVerbose(1);
    CapturedStream out(std::cout);
    image.rotate(3);
    image.rotate(-1);
    EXPECT_EQ(out.str(), "");
    EXPECT_EQ(shapeOf(image), (Shape{2, 3, 1, 1, 1}));
}
