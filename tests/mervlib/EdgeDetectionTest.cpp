#include "Common/EdgeDetection.h"

#include "tests/mervlib/FilterTestSupport.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <vector>

using namespace FilterTest;

namespace {

struct Pixel
{
    int x, y;
};

// Gradient, magnitude and suppression of the 2D detector by their formulas, all through getVoxel.
class SlowDetector2D
{
public:
    explicit SlowDetector2D(Image &source)
        : image(source)
        , w(source.getWidth())
        , h(source.getHeight())
    {}

    std::vector<float> edges(float threshold)
    {
        const float high = 3.0f * threshold;
        std::vector<float> result;
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x) {
                const float s = suppressed(x, y);
                bool strongBeside = false;
                for (int dy = -1; dy <= 1; ++dy)
                    for (int dx = -1; dx <= 1; ++dx)
                        if ((dx != 0 || dy != 0) && suppressed(x + dx, y + dy) > high)
                            strongBeside = true;
                const bool edge = !border(x, y) && !(s < threshold) && (s >= high || strongBeside);
                result.push_back(edge ? 255.0f : 0.0f);
            }
        return result;
    }

private:
    bool border(int x, int y) const { return x <= 0 || y <= 0 || x >= w - 1 || y >= h - 1; }

    float component(int x, int y, bool transposed)
    {
        if (border(x, y))
            return 0.0f;
        const float table[9] = {1, 2, 1, 0, 0, 0, -1, -2, -1};
        float g = 0.0f;
        for (int k = 0; k < 9; ++k) {
            const int dx = (transposed ? k / 3 : k % 3) - 1, dy = (transposed ? k % 3 : k / 3) - 1;
            g += table[k] * image.getVoxel(x + dx, y + dy, 0, 0, 0);
        }
        return g / 9.0f;
    }

    float magnitude(int x, int y)
    {
        const float gx = component(x, y, false), gy = component(x, y, true);
        return std::sqrt(gx * gx + gy * gy);
    }

    float suppressed(int x, int y)
    {
        if (border(x, y))
            return 0.0f;
        double angle = std::atan2(double(component(x, y, true)), double(component(x, y, false))) * 180.0 /
                       3.14159265358979;
        if (angle < 0.0)
            angle += 180.0;
        Pixel a{x - 1, y}, b{x + 1, y};
        if (angle >= 22.5 && angle < 67.5) {
            a = {x - 1, y - 1};
            b = {x + 1, y + 1};
        } else if (angle >= 67.5 && angle < 112.5) {
            a = {x, y - 1};
            b = {x, y + 1};
        } else if (angle >= 112.5 && angle < 157.5) {
            a = {x + 1, y - 1};
            b = {x - 1, y + 1};
        }
        const float m = magnitude(x, y);
        return m < magnitude(a.x, a.y) || m < magnitude(b.x, b.y) ? 0.0f : m;
    }

    Image &image;
    int w, h;
};

ImagePtr ramp(float slopeY)
{
    ImagePtr image = newImage(MERV::TypeDouble, {7, 7, 1});
    for (int y = 0; y < 7; ++y)
        for (int x = 0; x < 7; ++x)
            image->setVoxel(slopeY * static_cast<float>(y), x, y, 0, 0, 0);
    return image;
}

// Smooth blobs, so that suppression and hysteresis have all cases to decide.
ImagePtr blobs(int type, Size size)
{
    ImagePtr image = newImage(type, size);
    for (int z = 0; z < size.z; ++z)
        for (int y = 0; y < size.y; ++y)
            for (int x = 0; x < size.x; ++x)
                image->setVoxel(
                    static_cast<float>(60.0 + 30.0 * std::sin(x * 0.7 + y * 0.3) * std::cos(y * 0.5 - z) +
                                       25.0 * std::sin(z * 0.9 + x * y * 0.05)),
                    x, y, z, 0, 0);
    return image;
}

// The 3D detector by its formulas; only the interpolation is the library's own.
std::vector<float> slowEdges3D(Image &source, float threshold)
{
    const int w = source.getWidth(), h = source.getHeight(), d = source.getDepth();
    ImagePtr g(source.compute3DGradient(MERV::TypeShort, nullptr, true, false, nullptr));
    ImagePtr m = newImage(MERV::TypeFloat, {w, h, d}), s = newImage(MERV::TypeFloat, {w, h, d});
    const auto border = [&](int x, int y, int z) {
        return x == 0 || y == 0 || z == 0 || x == w - 1 || y == h - 1 || z == d - 1;
    };
    const auto forAll = [&](auto &&use) {
        for (int z = 0; z < d; ++z)
            for (int y = 0; y < h; ++y)
                for (int x = 0; x < w; ++x)
                    use(x, y, z);
    };
    forAll([&](int x, int y, int z) {
        const float a = g->getVoxel(x, y, z, 0, 0), b = g->getVoxel(x, y, z, 0, 1),
                    c = g->getVoxel(x, y, z, 0, 2);
        m->setVoxel(std::sqrt(a * a + b * b + c * c), x, y, z, 0, 0);
    });
    forAll([&](int x, int y, int z) {
        const float magnitude = m->getVoxel(x, y, z, 0, 0);
        if (border(x, y, z) || magnitude == 0.0f)
            return;
        const float step = static_cast<float>(magnitude * 1.001);
        float along[3];
        for (int c = 0; c < 3; ++c)
            along[c] = g->getVoxel(x, y, z, 0, c) / step;
        const auto fx = static_cast<float>(x), fy = static_cast<float>(y), fz = static_cast<float>(z);
        const float ahead = m->getTrilinear(fx + along[0], fy + along[1], fz + along[2], 0, 0);
        const float behind = m->getTrilinear(fx - along[0], fy - along[1], fz - along[2], 0, 0);
        s->setVoxel(magnitude < ahead || magnitude < behind ? 0.0f : magnitude, x, y, z, 0, 0);
    });
    std::vector<float> result;
    forAll([&](int x, int y, int z) {
        const float value = s->getVoxel(x, y, z, 0, 0);
        bool marked = false;
        if (!border(x, y, z) && value >= threshold) {
            marked = value >= 3.0f * threshold;
            for (int k = 0; k < 27; ++k)
                if (s->getVoxel(x + k % 3 - 1, y + k / 3 % 3 - 1, z + k / 9 - 1, 0, 0) > 3.0f * threshold)
                    marked = true;
        }
        result.push_back(marked ? 4095.0f : source.getVoxel(x, y, z, 0, 0));
    });
    return result;
}

} // namespace

template <class T>
class EdgeDetection : public ::testing::Test
{};
TYPED_TEST_SUITE(EdgeDetection, VoxelTypes);

TYPED_TEST(EdgeDetection, edges2DEqualPlainFormulasInAllVariants)
{
    for (const Size &size : {Size{1, 1, 1}, Size{2, 5, 1}, Size{3, 3, 2}, Size{13, 9, 1}, Size{24, 17, 2}}) {
        for (float threshold : {0.0f, 1.0f, 3.5f, 6.0f, 100.0f}) {
            SCOPED_TRACE(::testing::Message() << size.x << 'x' << size.y << " threshold " << threshold);
            ImagePtr image = blobs(MERV::DataTypeOf<TypeParam>::value, size);
            const std::vector<float> expected = SlowDetector2D(*image).edges(threshold);
            ImagePtr edges(MERV::detectEdges2D(image.get(), threshold));
            ASSERT_TRUE(edges);
            EXPECT_EQ(edges->getDataType(), MERV::TypeFloat);
            EXPECT_EQ(dimensionsOf(*edges), (std::array<int, 5>{size.x, size.y, 1, 1, 1}));
            EXPECT_EQ(valuesOf(*edges), expected);

            std::vector<float> floats(expected.size(), -1.0f);
            MERV::detectEdges2DFloats(image.get(), threshold, floats.data());
            EXPECT_EQ(floats, expected);
            std::vector<unsigned char> bytes(expected.size(), 7);
            MERV::detectEdges2DBytes(image.get(), threshold, bytes.data());
            EXPECT_EQ(std::vector<float>(bytes.begin(), bytes.end()), expected);
        }
    }
}

TYPED_TEST(EdgeDetection, edges3DEqualPlainFormulas)
{
    for (const Size &size : {Size{2, 2, 2}, Size{3, 3, 3}, Size{9, 8, 7}, Size{14, 5, 6}}) {
        for (float threshold : {20.0f, 60.0f, 90.0f, 5000.0f}) {
            SCOPED_TRACE(::testing::Message() << size.x << 'x' << size.y << " threshold " << threshold);
            ImagePtr image = blobs(MERV::DataTypeOf<TypeParam>::value, size);
            std::vector<float> expected = slowEdges3D(*image, threshold);
            // 4095 does not fit the 8-bit types, which keep their largest value instead.
            const double largest = static_cast<double>(std::numeric_limits<TypeParam>::max());
            for (float &value : expected)
                value = static_cast<float>(std::min<double>(value, largest));
            CapturedText output;
            MERV::detectEdges3D(image.get(), threshold);
            EXPECT_EQ(valuesOf(*image), expected);
        }
    }
}

TEST(EdgeDetection2D, blobsHaveEdgesAndOtherPlaces)
{
    ImagePtr image = blobs(MERV::TypeFloat, {24, 17, 1});
    ImagePtr edges(MERV::detectEdges2D(image.get(), 3.5f));
    const std::vector<float> values = valuesOf(*edges);
    const auto count = std::count(values.begin(), values.end(), 255.0f);
    EXPECT_GT(count, 10);
    EXPECT_LT(count, 300);
}

TEST(EdgeDetection2D, withThreshold10A29Point9IsWeakAnd30IsStrong)
{
    // A ramp along y of slope s has gx = 4 (v(y-1) - v(y+1)) / 9 = -8 s / 9 and gy = 0: 33.75 gives exactly
    // 30, 33.6375 gives 29.9. Without a strong neighbour a weak place is no edge.
    ImagePtr strong(MERV::detectEdges2D(ramp(33.75f).get(), 10.0f));
    ImagePtr weak(MERV::detectEdges2D(ramp(33.6375f).get(), 10.0f));
    for (int y = 0; y < 7; ++y)
        for (int x = 0; x < 7; ++x) {
            const bool interior = x > 0 && y > 0 && x < 6 && y < 6;
            EXPECT_EQ(strong->getVoxel(x, y, 0, 0, 0), interior ? 255.0f : 0.0f);
            EXPECT_EQ(weak->getVoxel(x, y, 0, 0, 0), 0.0f);
        }
}

// Strictly above: neighbours of exactly 30 do not lift a weak place.
TEST(EdgeDetection2D, weakPlaceNeedsANeighbourStrictlyAboveHigh)
{
    // Rows 0, s, 2s .. with one row of a steeper ramp: rows y <= 3 rise by 33.75 (magnitude 30), behind them
    // the image is level, so that row 3 has 4 (67.5 - 101.25) / 9 = -15 and row 4 has 0.
    ImagePtr image = newImage(MERV::TypeDouble, {7, 7, 1});
    for (int y = 0; y < 7; ++y)
        for (int x = 0; x < 7; ++x)
            image->setVoxel(33.75f * static_cast<float>(std::min(y, 3)), x, y, 0, 0, 0);
    ImagePtr edges(MERV::detectEdges2D(image.get(), 10.0f));
    EXPECT_EQ(edges->getVoxel(3, 2, 0, 0, 0), 255.0f); // 30 itself
    EXPECT_EQ(edges->getVoxel(3, 3, 0, 0, 0), 0.0f);   // 15 beside 30
    for (int y = 0; y < 7; ++y)
        for (int x = 0; x < 7; ++x)
            image->setVoxel(34.0f * static_cast<float>(std::min(y, 3)), x, y, 0, 0, 0);
    edges.reset(MERV::detectEdges2D(image.get(), 10.0f));
    EXPECT_EQ(edges->getVoxel(3, 3, 0, 0, 0), 255.0f); // beside 30.2
}

// The pair that a place is compared with lies along an axis-parallel edge, so a straight step stays two
// pixels wide.
TEST(EdgeDetection2D, straightStepIsTwoPixelsWide)
{
    ImagePtr image = newImage(MERV::TypeShort, {8, 8, 1});
    for (int y = 0; y < 8; ++y)
        for (int x = 4; x < 8; ++x)
            image->setVoxel(900.0f, x, y, 0, 0, 0);
    ImagePtr edges(MERV::detectEdges2D(image.get(), 10.0f));
    for (int x = 0; x < 8; ++x)
        EXPECT_EQ(edges->getVoxel(x, 4, 0, 0, 0), x == 3 || x == 4 ? 255.0f : 0.0f) << x;
}

// Rows 0 and 1 are 0, the others 100 + 10 x. At (2,2) gx = -480 / 9 and gy = -60 / 9: a magnitude of 53.7 and
// an angle of 7 degrees. Of its pair (3,2) has gx = -520 / 9 and gy = -60 / 9, which is 58.2, and (1,2) is no
// number once (0,2) is none.
TEST(EdgeDetection2D, eachOfThePairSuppressesWhateverTheOther)
{
    for (const bool mirrored : {false, true}) {
        ImagePtr image = newImage(MERV::TypeFloat, {5, 5, 1});
        const auto set = [&](float value, int x, int y) {
            image->setVoxel(value, mirrored ? 4 - x : x, y, 0, 0, 0);
        };
        for (int y = 2; y < 5; ++y)
            for (int x = 0; x < 5; ++x)
                set(static_cast<float>(100 + 10 * x), x, y);
        ImagePtr edges(MERV::detectEdges2D(image.get(), 10.0f));
        EXPECT_EQ(edges->getVoxel(2, 2, 0, 0, 0), 0.0f);
        set(std::numeric_limits<float>::quiet_NaN(), 0, 2);
        edges.reset(MERV::detectEdges2D(image.get(), 10.0f));
        EXPECT_EQ(edges->getVoxel(2, 2, 0, 0, 0), 0.0f);
    }
}

TEST(EdgeDetection2D, resultHasSpacingOfXAndYOnly)
{
    ImagePtr image = newImage(MERV::TypeShort, {5, 4, 3});
    image->setSpacing(0.5f, 0.25f, 3.0f, 2.0f);
    ImagePtr edges(MERV::detectEdges2D(image.get(), 10.0f));
    EXPECT_EQ(edges->getSpacing(0), 0.5f);
    EXPECT_EQ(edges->getSpacing(1), 0.25f);
    EXPECT_EQ(edges->getSpacing(2), 1.0f);
    EXPECT_EQ(edges->getSpacing(3), 1.0f);
    EXPECT_EQ(edges->getHigh(0), 0.0f); // the range is left to the caller
}

TEST(EdgeDetection2D, onlyTheFirstChannelOfTheFirstSliceCounts)
{
    ImagePtr plain = blobs(MERV::TypeFloat, {12, 10, 1});
    ImagePtr mixed = newImage(MERV::TypeFloat, {12, 10, 2}, 1, 3);
    fillRandom(*mixed, 12);
    for (int y = 0; y < 10; ++y)
        for (int x = 0; x < 12; ++x)
            mixed->setVoxel(plain->getVoxel(x, y, 0, 0, 0), x, y, 0, 0, 0);
    ImagePtr expected(MERV::detectEdges2D(plain.get(), 3.0f)), edges(MERV::detectEdges2D(mixed.get(), 3.0f));
    EXPECT_EQ(valuesOf(*edges), valuesOf(*expected));
}

TEST(EdgeDetection2D, nullAndEmptyImages)
{
    ImagePtr empty(MERV::createImage(MERV::TypeShort));
    unsigned char byte = 9;
    float number = 9.0f;
    for (Image *image : {static_cast<Image *>(nullptr), empty.get()}) {
        EXPECT_EQ(MERV::detectEdges2D(image, 1.0f), nullptr);
        MERV::detectEdges2DBytes(image, 1.0f, &byte);
        MERV::detectEdges2DFloats(image, 1.0f, &number);
        CapturedText output;
        MERV::detectEdges3D(image, 1.0f);
        EXPECT_EQ(output.text(), "");
    }
    EXPECT_EQ(byte, 9);
    EXPECT_EQ(number, 9.0f);
}

TEST(EdgeDetection3D, reportsItsSteps)
{
    // One bright voxel in the corner of the neighbourhood of the centre: every component is 1 * 50.
    ImagePtr image = newImage(MERV::TypeShort, {3, 3, 3});
    image->setVoxel(50.0f, 0, 0, 0, 0, 0);
    image->setVerbose(1);
    CapturedText output;
    MERV::detectEdges3D(image.get(), 10.0f);
    EXPECT_EQ(output.text(), "computing Gradient Magnitude...\n"
                             "Computing 3D gradient...\n"
                             "Done. Range = [0..50]\n"
                             "computing Suppression...\n"
                             "computing Hysteresis...\n");
    // Magnitude sqrt(3) * 50 = 86.6 is alone and above 30.
    EXPECT_EQ(image->getVoxel(1, 1, 1, 0, 0), 4095.0f);
}

TEST(EdgeDetection3D, constantImageIsNotMarked)
{
    ImagePtr image = newImage(MERV::TypeFloat, {6, 6, 6});
    fill(*image, std::vector<float>(216, 77.0f));
    CapturedText output;
    MERV::detectEdges3D(image.get(), 10.0f);
    EXPECT_EQ(valuesOf(*image), std::vector<float>(216, 77.0f));
}

TEST(EdgeDetection3D, marksTheSurfaceOfABoxInTheImageItself)
{
    ImagePtr image = newImage(MERV::TypeShort, {12, 12, 12});
    for (int z = 4; z < 8; ++z)
        for (int y = 4; y < 8; ++y)
            for (int x = 4; x < 8; ++x)
                image->setVoxel(500.0f, x, y, z, 0, 0);
    CapturedText output;
    MERV::detectEdges3D(image.get(), 500.0f);
    EXPECT_EQ(image->getVoxel(4, 6, 6, 0, 0), 4095.0f); // beside the step
    EXPECT_EQ(image->getVoxel(1, 6, 6, 0, 0), 0.0f);    // far from it
}

// An edge at x = 3 of height 2 a, a being 3 (or 3.1) up to row 3 and 1 behind: there gx = -2 (3 a(y-1) + 4
// a(y) + 3 a(y+1)), which is -60 up to row 2 and -48 in row 3 (-62 and, cut to a short, -49).
TEST(EdgeDetection3D, weakVoxelNeedsANeighbourStrictlyAboveHigh)
{
    for (float a : {3.0f, 3.1f}) {
        ImagePtr image = newImage(MERV::TypeFloat, {7, 7, 5});
        for (int z = 0; z < 5; ++z)
            for (int y = 0; y < 7; ++y)
                for (int x = 0; x < 7; ++x)
                    image->setVoxel((y <= 3 ? a : 1.0f) * static_cast<float>(std::clamp(x - 3, -1, 1)), x, y,
                                    z, 0, 0);
        CapturedText output;
        MERV::detectEdges3D(image.get(), 20.0f);
        EXPECT_EQ(image->getVoxel(3, 2, 2, 0, 0), 4095.0f); // reaches 3 * 20 itself
        EXPECT_EQ(image->getVoxel(3, 3, 2, 0, 0), a == 3.0f ? 0.0f : 4095.0f);
        EXPECT_EQ(image->getVoxel(3, 4, 2, 0, 0), 0.0f); // weak beside weak
    }
}
