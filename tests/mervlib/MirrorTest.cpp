#include "tests/mervlib/ImageTestTools.h"

#include <algorithm>

using MERV::ImageBase;

namespace {

// In the order of the arguments: x, y, z, t, channels.
using Flags = std::array<bool, 5>;
using Place = std::array<int, 5>;

// Mirroring as told in sweeps, value by value, on a plain array.
class SlowMirror
{
public:
    SlowMirror(const Shape &imageShape, std::vector<short> imageValues)
        : shape(imageShape)
        , values(std::move(imageValues))
    {}

    std::vector<short> mirrored(const Flags &flags)
    {
        const auto count = std::count(flags.begin(), flags.end(), true);
        int oddAxes = 0;
        for (const int extent : shape)
            oddAxes += extent % 2 == 1 && extent > 1;
        if (count > 1 && oddAxes <= 1) {
            sweep(flags, halvedAxis(flags));
            return values;
        }
        for (std::size_t axis = 0; axis < 5; ++axis)
            if (flags[axis]) {
                Flags one{};
                one[axis] = true;
                sweep(one, static_cast<int>(axis));
            }
        return values;
    }

private:
    // The first flagged axis with an even extent in the order t, z, y, x, channels; -1 without one.
    int halvedAxis(const Flags &flags) const
    {
        for (const std::size_t axis : {3u, 2u, 1u, 0u, 4u})
            if (flags[axis] && shape[axis] % 2 == 0)
                return static_cast<int>(axis);
        return -1;
    }
    void sweep(const Flags &flags, int halved)
    {
        Shape end = shape;
        if (halved >= 0)
            end[static_cast<std::size_t>(halved)] /= 2;
        for (int t = 0; t < end[3]; ++t)
            for (int z = 0; z < end[2]; ++z)
                for (int y = 0; y < end[1]; ++y)
                    for (int x = 0; x < end[0]; ++x)
                        for (int c = 0; c < end[4]; ++c)
                            swapWithMirror({x, y, z, t, c}, flags);
    }
    void swapWithMirror(const Place &place, const Flags &flags)
    {
        Place other = place;
        for (std::size_t axis = 0; axis < 5; ++axis)
            if (flags[axis])
                other[axis] = shape[axis] - place[axis] - 1;
        std::swap(at(place), at(other));
    }
    short &at(const Place &p) { return values[storedIndex(shape, p[0], p[1], p[2], p[3], p[4])]; }

    Shape shape;
    std::vector<short> values;
};

// Every flagged axis reversed.
std::vector<short> reversed(const Shape &shape, const std::vector<short> &values, const Flags &flags)
{
    std::vector<short> result(values.size());
    const auto turn = [&](int index, std::size_t axis) {
        return flags[axis] ? shape[axis] - index - 1 : index;
    };
    for (int t = 0; t < shape[3]; ++t)
        for (int z = 0; z < shape[2]; ++z)
            for (int y = 0; y < shape[1]; ++y)
                for (int x = 0; x < shape[0]; ++x)
                    for (int c = 0; c < shape[4]; ++c)
                        result[storedIndex(shape, turn(x, 0), turn(y, 1), turn(z, 2), turn(t, 3),
                                           turn(c, 4))] = values[storedIndex(shape, x, y, z, t, c)];
    return result;
}

Flags flagsOf(int set)
{
    return {(set & 1) != 0, (set & 2) != 0, (set & 4) != 0, (set & 8) != 0, (set & 16) != 0};
}

template <class T>
void mirror(ImageBase<T> &image, const Flags &flags)
{
    image.mirror(flags[0], flags[1], flags[2], flags[3], flags[4]);
}

// Two or more flags, no flagged axis even, at most one axis odd and above 1.
bool staysAsItWas(const Shape &shape, const Flags &flags)
{
    int count = 0;
    int oddAxes = 0;
    for (std::size_t axis = 0; axis < 5; ++axis) {
        if (flags[axis] && shape[axis] % 2 == 0)
            return false;
        count += flags[axis];
        oddAxes += shape[axis] % 2 == 1 && shape[axis] > 1;
    }
    return count > 1 && oddAxes <= 1;
}

void checkShape(const Shape &shape)
{
    const std::vector<short> before = valuesOf(countingImage<short>(shape));
    for (int set = 0; set < 32; ++set) {
        const Flags flags = flagsOf(set);
        ImageBase<short> image = countingImage<short>(shape);
        mirror(image, flags);
        ASSERT_EQ(valuesOf(image), SlowMirror(shape, before).mirrored(flags))
            << testing::PrintToString(shape) << " flags " << set;
        ASSERT_EQ(valuesOf(image), staysAsItWas(shape, flags) ? before : reversed(shape, before, flags))
            << testing::PrintToString(shape) << " flags " << set;
    }
}

} // namespace

TEST(Mirror, allFlagSetsOnAllSmallShapes)
{
    for (int w = 1; w <= 5; ++w)
        for (int h = 1; h <= 5; ++h)
            for (int d = 1; d <= 4; ++d)
                for (int t = 1; t <= 3; ++t)
                    for (int c = 1; c <= 4; ++c)
                        ASSERT_NO_FATAL_FAILURE(checkShape({w, h, d, t, c}));
}

// Nothing is halved, so that every pair is swapped twice.
TEST(Mirror, twoOddAxesOfWhichOneIsLongStayUnmirrored)
{
    ImageBase<short> image = countingImage<short>({5, 1, 1, 1, 1});
    image.mirror(true, true, false, false, false);
    EXPECT_EQ(valuesOf(image), (std::vector<short>{0, 1, 2, 3, 4}));
    // A slice with an odd number of rows, mirrored in y and z as for an import.
    ImageBase<short> slice = countingImage<short>({2, 3, 1, 1, 1});
    slice.mirror(false, true, true, false, false);
    EXPECT_EQ(valuesOf(slice), (std::vector<short>{0, 1, 2, 3, 4, 5}));
}

template <class T>
class MirrorTyped : public testing::Test
{};
TYPED_TEST_SUITE(MirrorTyped, VoxelTypes);

TYPED_TEST(MirrorTyped, twiceRestoresTheImage)
{
    ImageBase<TypeParam> image = scatteredImage<TypeParam>({5, 4, 3, 2, 3});
    const std::vector<TypeParam> before = valuesOf(image);
    for (int set = 1; set < 32; ++set) {
        mirror(image, flagsOf(set));
        mirror(image, flagsOf(set));
        EXPECT_EQ(valuesOf(image), before);
    }
    image.mirror(false, true, false, false, false);
    EXPECT_NE(valuesOf(image), before);
}

TYPED_TEST(MirrorTyped, leavesRangeAndWindow)
{
    ImageBase<TypeParam> image = countingImage<TypeParam>({4, 2, 1, 1, 1});
    image.setMinMax(1, 2);
    image.setWindowRange(3, 4, 0);
    image.mirror(true, false, false, false, false);
    EXPECT_EQ(image.getMaximum(), 2.0f);
    EXPECT_EQ(image.getHigh(0), 4.0f);
    EXPECT_EQ(image.getVoxel(0, 0, 0, 0, 0), 3.0f);
}
