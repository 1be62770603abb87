#include "Common/TransformImage.h"

#include "tests/mervlib/FilterTestSupport.h"

#include <cmath>
#include <gtest/gtest.h>
#include <string>
#include <vector>

using namespace FilterTest;
using MERV::transformImage;

namespace {

const std::string warnings = [] {
    const std::string line = "Warning: The bloody old Tools::rigidTransform method was called!\n";
    return line + line + line;
}();

double linear(double x, double y, double z)
{
    return 3.0 * x - 2.0 * y + 5.0 * z + 100.0;
}

ImagePtr linearImage(Size size, float sx, float sy, float sz)
{
    ImagePtr image = newImage(MERV::TypeDouble, size);
    image->setSpacing(sx, sy, sz, 1.0f);
    for (int z = 0; z < size.z; ++z)
        for (int y = 0; y < size.y; ++y)
            for (int x = 0; x < size.x; ++x)
                image->setVoxel(static_cast<float>(linear(x, y, z)), x, y, z, 0, 0);
    return image;
}

using Rows = std::array<std::array<double, 3>, 3>;

// Rotation of the start point: Rz(c) Ry(b) Rx(a).
Rows currentRotation(const float *pose)
{
    const double sa = std::sin(pose[3]), ca = std::cos(pose[3]), sb = std::sin(pose[4]),
                 cb = std::cos(pose[4]), sc = std::sin(pose[5]), cc = std::cos(pose[5]);
    return {{{cc * cb, sb * sa * cc - sc * ca, sb * ca * cc + sc * sa},
             {sc * cb, sb * sa * sc + cc * ca, sb * ca * sc - cc * sa},
             {-sb, cb * sa, cb * ca}}};
}

// Rotation of the axes, the old convention: Rz(-c) Ry(-b) Rx(-a).
Rows oldRotation(const float *pose)
{
    const float negative[6] = {0, 0, 0, -pose[3], -pose[4], -pose[5]};
    return currentRotation(negative);
}

} // namespace

TEST(TransformImage, zeroPoseGivesTheSourceWithoutItsLastPlanes)
{
    for (bool trilinear : {false, true}) {
        ImagePtr source = linearImage({5, 4, 3}, 0.5f, 0.75f, 3.0f);
        const float pose[6] = {};
        CapturedText output;
        ImagePtr result(transformImage(pose, source.get(), nullptr, trilinear));
        ASSERT_TRUE(result);
        EXPECT_EQ(result->getDataType(), MERV::TypeFloat);
        EXPECT_EQ(dimensionsOf(*result), (std::array<int, 5>{5, 4, 3, 1, 1}));
        EXPECT_EQ(result->getSpacing(2), 3.0f);
        EXPECT_EQ(result->getSpacing(3), 1.0f);
        for (int z = 0; z < 3; ++z)
            for (int y = 0; y < 4; ++y)
                for (int x = 0; x < 5; ++x) {
                    const bool inside = x < 4 && y < 3 && z < 2;
                    EXPECT_EQ(result->getVoxel(x, y, z, 0, 0),
                              inside ? source->getVoxel(x, y, z, 0, 0) : 0.0f);
                }
        // 4 * 3 * 2 = 24 of 60 voxels
        EXPECT_EQ(output.text(), warnings + "Used 40 % of voxels\n");
    }
}

TEST(TransformImage, translationInMillimetresShiftsTheSamplingPoint)
{
    // 1 mm along x is 2 voxels, -0.75 mm along y is -1 voxel: result(x, y) = source(x + 2, y - 1).
    ImagePtr source = linearImage({6, 5, 3}, 0.5f, 0.75f, 3.0f);
    const float pose[6] = {1.0f, -0.75f, 0, 0, 0, 0};
    CapturedText output;
    ImagePtr result(transformImage(pose, source.get(), nullptr, true));
    for (int z = 0; z < 2; ++z)
        for (int y = 0; y < 5; ++y)
            for (int x = 0; x < 6; ++x) {
                const bool inside = x + 2 < 5 && y >= 1;
                EXPECT_FLOAT_EQ(result->getVoxel(x, y, z, 0, 0),
                                inside ? static_cast<float>(linear(x + 2, y - 1, z)) : 0.0f);
            }
}

// The start point turns by the current convention of angles and the axes by the old one, unscaled by the
// spacing.
TEST(TransformImage, startPointAndAxesFollowTheirTwoConventions)
{
    const Size size{12, 11, 10};
    const float spacing[3] = {0.9f, 1.0f, 1.2f};
    ImagePtr source = linearImage(size, spacing[0], spacing[1], spacing[2]);
    const float pose[6] = {0.7f, -0.4f, 1.1f, 0.11f, -0.07f, 0.05f};
    const double extent[3] = {12, 11, 10};
    const Rows r = currentRotation(pose), old = oldRotation(pose);
    std::array<double, 3> origin{};
    for (std::size_t i = 0; i < 3; ++i) {
        for (std::size_t k = 0; k < 3; ++k)
            origin[i] += r[i][k] * (-0.5 * spacing[k] * extent[k] + pose[k]);
        origin[i] = 0.5 * extent[i] + origin[i] / spacing[i];
    }
    CapturedText output;
    ImagePtr result(transformImage(pose, source.get(), nullptr, true));
    int used = 0;
    for (int z = 0; z < size.z; ++z)
        for (int y = 0; y < size.y; ++y)
            for (int x = 0; x < size.x; ++x) {
                std::array<double, 3> p{};
                bool inside = true;
                for (std::size_t i = 0; i < 3; ++i) {
                    p[i] = origin[i] + old[i][0] * x + old[i][1] * y + old[i][2] * z;
                    inside = inside && p[i] >= 0.0 && p[i] < extent[i] - 1.0;
                    ASSERT_GT(std::abs(p[i]), 1e-5); // no place is so near a limit that rounding decides
                    ASSERT_GT(std::abs(p[i] - extent[i] + 1.0), 1e-5);
                }
                used += inside ? 1 : 0;
                EXPECT_NEAR(result->getVoxel(x, y, z, 0, 0), inside ? linear(p[0], p[1], p[2]) : 0.0, 1e-3);
            }
    EXPECT_GT(used, 300);
    EXPECT_EQ(output.text(), warnings + "Used " + std::to_string(used * 100 / 1320) + " % of voxels\n");
}

TEST(TransformImage, nearestReadsTheVoxelBeside)
{
    ImagePtr source = linearImage({6, 4, 3}, 1.0f, 1.0f, 1.0f);
    const float pose[6] = {0.75f, 0, 0, 0, 0, 0};
    CapturedText output;
    ImagePtr result(transformImage(pose, source.get(), nullptr, false));
    EXPECT_EQ(result->getVoxel(1, 1, 1, 0, 0), source->getVoxel(2, 1, 1, 0, 0));
}

TEST(TransformImage, oneSliceUsesNothing)
{
    ImagePtr source = linearImage({5, 4, 1}, 1.0f, 1.0f, 1.0f);
    const float pose[6] = {};
    CapturedText output;
    ImagePtr result(transformImage(pose, source.get(), nullptr, true));
    EXPECT_EQ(valuesOf(*result), std::vector<float>(20, 0.0f));
    EXPECT_EQ(output.text(), warnings + "Used 0 % of voxels\n");
}

TEST(TransformImage, zeroSpacingGivesZeros)
{
    ImagePtr source = linearImage({5, 4, 3}, 1.0f, 0.0f, 1.0f);
    for (float shift : {0.0f, 1.0f, -1.0f}) {
        const float pose[6] = {0, shift, 0, 0, 0, 0};
        CapturedText output;
        ImagePtr result(transformImage(pose, source.get(), nullptr, true));
        EXPECT_EQ(valuesOf(*result), std::vector<float>(60, 0.0f));
    }
}

TEST(TransformImage, givenOutputIsWrittenFromItsStartAndEndsSilently)
{
    ImagePtr source = linearImage({5, 4, 3}, 1.0f, 1.0f, 1.0f);
    ImagePtr given = newImage(MERV::TypeShort, {7, 1, 1});
    given->getValue(1); // a cursor that is not at the start
    const float pose[6] = {};
    CapturedText output;
    EXPECT_EQ(transformImage(pose, source.get(), given.get(), true), given.get());
    // Rows of 5 with the last voxel 0: 100, 103, 106, 109, 0, then y = 1: 98, 101.
    EXPECT_EQ(valuesOf(*given), (std::vector<float>{100, 103, 106, 109, 0, 98, 101}));
}

TEST(TransformImage, missingOrEmptySourceGivesTheOutputBack)
{
    const float pose[6] = {};
    CapturedText output;
    ImagePtr empty(MERV::createImage(MERV::TypeShort)), given = newImage(MERV::TypeShort, {2, 2, 2});
    EXPECT_EQ(transformImage(pose, nullptr, nullptr, true), nullptr);
    EXPECT_EQ(transformImage(pose, empty.get(), nullptr, true), nullptr);
    EXPECT_EQ(transformImage(pose, empty.get(), given.get(), true), given.get());
    EXPECT_EQ(output.text(), "");
}
