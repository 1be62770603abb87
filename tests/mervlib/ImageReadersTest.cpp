#include "tests/mervlib/ImageTestTools.h"

#include <algorithm>
#include <cmath>
#include <limits>

using MERV::ImageBase;

template <class T>
class ImageReaders : public testing::Test
{};
TYPED_TEST_SUITE(ImageReaders, VoxelTypes);

namespace {

// The readers from their definition, slowly and in double precision, with the border repeated outwards.
template <class T>
class SlowReader
{
public:
    explicit SlowReader(ImageBase<T> &source)
        : image(source)
    {}

    double voxel(int x, int y, int z, int t, int c) const
    {
        const auto inside = [](int index, int extent) { return std::clamp(index, 0, extent - 1); };
        return static_cast<double>(image.getVoxel(inside(x, image.getWidth()), inside(y, image.getHeight()),
                                                  inside(z, image.getDepth()), inside(t, image.getFrames()),
                                                  c));
    }
    double linear(double x, double y, double z, double t, int c) const
    {
        double sum = 0;
        for (int corner = 0; corner < 16; ++corner) {
            const int dx = corner & 1, dy = corner >> 1 & 1, dz = corner >> 2 & 1, dt = corner >> 3;
            sum += weight(x, dx) * weight(y, dy) * weight(z, dz) * weight(t, dt) *
                   voxel(int(x) + dx, int(y) + dy, int(z) + dz, int(t) + dt, c);
        }
        return sum;
    }
    double cubic(double x, double y, double z, int c, bool linearInSlice) const
    {
        double sum = 0;
        for (int dz = -1; dz <= 2; ++dz)
            for (int dy = -1; dy <= 2; ++dy)
                for (int dx = -1; dx <= 2; ++dx) {
                    const double inSlice = linearInSlice
                                               ? triangle(dx - fraction(x)) * triangle(dy - fraction(y))
                                               : keys(dx - fraction(x)) * keys(dy - fraction(y));
                    sum +=
                        inSlice * keys(dz - fraction(z)) * voxel(int(x) + dx, int(y) + dy, int(z) + dz, 0, c);
                }
        return sum;
    }

private:
    static double fraction(double place) { return place - int(place); }
    static double weight(double place, int offset)
    {
        return offset == 0 ? 1 - fraction(place) : fraction(place);
    }
    static double triangle(double distance) { return std::max(0.0, 1 - std::abs(distance)); }
    // The convolution kernel by its distance, with parameter a = -1.
    static double keys(double distance)
    {
        const double d = std::abs(distance);
        if (d <= 1)
            return d * d * d - 2 * d * d + 1;                  // (a + 2) d^3 - (a + 3) d^2 + 1
        return d < 2 ? -d * d * d + 5 * d * d - 8 * d + 4 : 0; // a d^3 - 5a d^2 + 8a d - 4a
    }

    ImageBase<T> &image;
};

const std::vector<float> places{0.0f, 0.25f, 0.5f, 1.0f, 1.75f, 2.0f, 2.875f, 3.0f};
constexpr double tolerance = 2e-4; // of values up to 100, in single precision

int nearest(float place)
{
    return static_cast<int>(std::lround(place));
}

} // namespace

TYPED_TEST(ImageReaders, agreeWithTheirDefinition)
{
    ImageBase<TypeParam> image = scatteredImage<TypeParam>({4, 4, 4, 3, 2});
    const SlowReader<TypeParam> slow(image);
    float all[2];
    for (const float x : places)
        for (const float y : places)
            for (const float z : places) {
                EXPECT_NEAR(image.getTricubic(x, y, z), slow.cubic(x, y, z, 0, false), tolerance);
                EXPECT_NEAR(image.getBilinearCubic(x, y, z), slow.cubic(x, y, z, 0, true), tolerance);
                EXPECT_EQ(image.getNearest(x, y, z),
                          static_cast<float>(slow.voxel(nearest(x), nearest(y), nearest(z), 0, 0)));
                for (int c = 0; c < 2; ++c) {
                    EXPECT_NEAR(image.getTrilinear(x, y, z, 2, c), slow.linear(x, y, z, 2, c), tolerance);
                    EXPECT_NEAR(image.getBilinear(x, y, int(z), 1, c), slow.linear(x, y, int(z), 1, c),
                                tolerance);
                    EXPECT_NEAR(image.getQuadrilinear(x, y, z, 0.75f, c), slow.linear(x, y, z, 0.75, c),
                                tolerance);
                    image.getTrilinear(all, x, y, z);
                    EXPECT_EQ(all[c], image.getTrilinear(x, y, z, 0, c));
                    image.getTricubic(all, x, y, z);
                    EXPECT_NEAR(all[c], slow.cubic(x, y, z, c, false), tolerance);
                    image.getBilinearCubic(all, x, y, z);
                    EXPECT_NEAR(all[c], slow.cubic(x, y, z, c, true), tolerance);
                    image.getNearest(all, x, y, z);
                    EXPECT_EQ(all[c],
                              static_cast<float>(slow.voxel(nearest(x), nearest(y), nearest(z), 0, c)));
                }
            }
}

TYPED_TEST(ImageReaders, atIndicesGiveTheVoxel)
{
    ImageBase<TypeParam> image = scatteredImage<TypeParam>({4, 4, 4, 2, 1});
    for (int z = 0; z < 4; ++z)
        for (int y = 0; y < 4; ++y)
            for (int x = 0; x < 4; ++x) {
                const auto [fx, fy, fz] =
                    std::array{static_cast<float>(x), static_cast<float>(y), static_cast<float>(z)};
                const float voxel = image.getVoxel(x, y, z, 0, 0);
                EXPECT_EQ(image.getNearest(fx, fy, fz), voxel);
                EXPECT_EQ(image.getTrilinear(fx, fy, fz, 0, 0), voxel);
                EXPECT_EQ(image.getTricubic(fx, fy, fz), voxel);
                EXPECT_EQ(image.getBilinearCubic(fx, fy, fz), voxel);
                EXPECT_EQ(image.getBilinear(fx, fy, z, 1, 0), image.getVoxel(x, y, z, 1, 0));
                EXPECT_EQ(image.getQuadrilinear(fx, fy, fz, 1.0f, 0), image.getVoxel(x, y, z, 1, 0));
            }
}

TYPED_TEST(ImageReaders, farPlacesReadTheBorder)
{
    ImageBase<TypeParam> image = scatteredImage<TypeParam>({3, 2, 2, 1, 1});
    const float last = image.getVoxel(2, 1, 1, 0, 0);
    EXPECT_EQ(image.getTrilinear(100, 100, 100, 0, 0), last);
    EXPECT_EQ(image.getTricubic(100, 100, 100), last);
    EXPECT_EQ(image.getBilinearCubic(1e9f, 1e9f, 1e9f), last);
    EXPECT_EQ(image.getNearest(-100, -100, -100), image.getVoxel(0, 0, 0, 0, 0));
    EXPECT_EQ(image.getBilinear(100, 100, 77, 77, 0), last);
    EXPECT_EQ(image.getQuadrilinear(100, 100, 100, 100, 0), last);
}

TYPED_TEST(ImageReaders, placesThatAreNoIndexReadZero)
{
    ImageBase<TypeParam> image;
    image.setDimensions(2, 2, 2, 2, 2);
    std::fill(image.begin(), image.end(), TypeParam(9));
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float infinity = std::numeric_limits<float>::infinity();
    for (const float bad : {nan, infinity, -infinity, 2147483648.0f, -2147483648.0f, 1e30f}) {
        float all[2]{1, 1};
        EXPECT_EQ(image.getNearest(bad, 0, 0), 0.0f);
        EXPECT_EQ(image.getBilinear(0, bad, 0, 0, 0), 0.0f);
        EXPECT_EQ(image.getTrilinear(0, 0, bad, 0, 0), 0.0f);
        EXPECT_EQ(image.getQuadrilinear(0, 0, 0, bad, 0), 0.0f);
        EXPECT_EQ(image.getTricubic(bad, 0, 0), 0.0f);
        EXPECT_EQ(image.getBilinearCubic(0, bad, 0), 0.0f);
        image.getTrilinear(all, bad, 0, 0);
        EXPECT_EQ(all[0] + all[1], 0.0f);
        all[0] = all[1] = 1;
        image.getNearest(all, 0, bad, 0);
        EXPECT_EQ(all[0] + all[1], 0.0f);
        all[0] = all[1] = 1;
        image.getTricubic(all, 0, 0, bad);
        EXPECT_EQ(all[0] + all[1], 0.0f);
        all[0] = all[1] = 1;
        image.getBilinearCubic(all, 0, 0, bad);
        EXPECT_EQ(all[0] + all[1], 0.0f);
    }
    EXPECT_EQ(image.getTrilinear(0, 0, 0, 0, 2), 0.0f);
    EXPECT_EQ(image.getBilinear(0, 0, 0, 0, -1), 0.0f);
    EXPECT_EQ(image.getQuadrilinear(0, 0, 0, 0, 2), 0.0f);
}

// The integer part is taken by truncation, so that the fraction of a negative place is negative.
TYPED_TEST(ImageReaders, negativePlacesExtrapolateFromTheFirstVoxels)
{
    ImageBase<TypeParam> image = countingImage<TypeParam>({4, 1, 1, 1, 1});
    image.begin()[0] = TypeParam(20);
    image.begin()[1] = TypeParam(40);
    EXPECT_EQ(image.getTrilinear(-0.5f, 0, 0, 0, 0), 10.0f);
}
