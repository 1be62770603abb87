#include "tests/mervlib/ImageTestTools.h"
#include "tests/support/Sanitized.h"

#include <algorithm>
#include <fstream>
#include <limits>

using MERV::Image;
using MERV::ImageBase;

template <class T>
class ImageMemory : public testing::Test
{};
TYPED_TEST_SUITE(ImageMemory, VoxelTypes);

namespace {

// A number of kilobytes from the kernel's description of this process; 0 where there is none.
std::uint64_t statusKilobytes(const std::string &key)
{
    std::ifstream status("/proc/self/status");
    std::string word;
    std::uint64_t number = 0;
    while (status >> word)
        if (word == key + ":" && status >> number)
            return number;
    return 0;
}

// Sets the highest resident size back to the present one; false where that cannot be done.
bool resetPeak()
{
    std::ofstream references("/proc/self/clear_refs");
    references << "5" << std::flush;
    return references.good();
}

} // namespace

TYPED_TEST(ImageMemory, buffersAreAlignedAndZeroed)
{
    for (int size = 1; size < 40; ++size) {
        ImageBase<TypeParam> image;
        image.setDimensions(size, 1, 1, 1, 1);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(image.getData()) % 16, 0u);
        EXPECT_EQ(valuesOf(image), std::vector<TypeParam>(static_cast<std::size_t>(size)));
    }
}

TYPED_TEST(ImageMemory, cloneTakesDataAndSettingsButNotNameOrientationOrWindow)
{
    ImageBase<TypeParam> image = countingImage<TypeParam>({3, 2, 2, 1, 1});
    const float position[3]{1, 2, 3};
    const float orientation[9]{0, 1, 0, 1, 0, 0, 0, 0, 1};
    image.setName("knee");
    image.setOrientation(orientation);
    image.setPosition(position);
    image.setSpacing(0.5f, 0.25f, 2, 3);
    image.setMetaData("a", "1");
    image.setSliceMetaData(1, "b", "2");
    image.setWindowRange(3, 4, 0);
    MERV::Region region = image.getRegion();
    region.first[1] = 1;
    region.size[1] = 2;
    image.setRegion(region);

    const std::unique_ptr<Image> copy(image.clone());
    const auto &typed = dynamic_cast<const ImageBase<TypeParam> &>(*copy);
    EXPECT_EQ(valuesOf(typed), valuesOf(image));
    EXPECT_EQ(copy->getName(), "");
    EXPECT_EQ(copy->getOrientation()[0], 1.0f);
    EXPECT_EQ(copy->getPosition()[2], 3.0f);
    EXPECT_EQ(copy->getSpacing(1), 0.25f);
    EXPECT_EQ(copy->getMetaData("a"), "1");
    EXPECT_EQ(copy->getSliceMetaData(1, "b"), "2");
    EXPECT_EQ(copy->getLow(0), 0.0f);
    EXPECT_EQ(copy->getHigh(0), 11.0f);
    EXPECT_EQ(copy->getMaximum(), 11.0f);
    EXPECT_EQ(typed.getRegion().first[1], 1u);
}

TYPED_TEST(ImageMemory, cloneOfAnExternalImageOwnsItsBuffer)
{
    std::vector<TypeParam> foreign{1, 2, 3, 4};
    auto image = std::make_unique<ImageBase<TypeParam>>();
    image->setDimensions(2, 2, 1, 1, 1);
    image->setExternalBuffer(foreign.data());
    const std::unique_ptr<Image> copy(image->clone());
    image.reset();
    EXPECT_FALSE(copy->hasExternalBuffer());
    EXPECT_NE(copy->getData(), foreign.data());
    EXPECT_EQ(copy->getValue(3), 4.0f);
    EXPECT_EQ(foreign[3], TypeParam(4));
}

TYPED_TEST(ImageMemory, cloneSlicesTakesTheSlicesAskedFor)
{
    ImageBase<TypeParam> image = countingImage<TypeParam>({2, 2, 4, 1, 1});
    image.setSpacing(0.5f, 0.25f, 2, 3);
    image.setMetaData("a", "1");
    image.setSliceMetaData(2, "n", "two");
    const std::unique_ptr<Image> slices(image.cloneSlices(1, 3)); // the end is exclusive
    EXPECT_EQ(shapeOf(*slices), (Shape{2, 2, 2, 1, 1}));
    const auto &typed = dynamic_cast<const ImageBase<TypeParam> &>(*slices);
    EXPECT_EQ(valuesOf(typed), (std::vector<TypeParam>{4, 5, 6, 7, 8, 9, 10, 11}));
    EXPECT_EQ(slices->getMinimum(), 4.0f);
    EXPECT_EQ(slices->getHigh(0), 11.0f);
    EXPECT_EQ(slices->getSpacing(2), 2.0f);
    EXPECT_EQ(slices->getMetaData("a"), "1");
    EXPECT_EQ(slices->getSliceMetaData(1, "n"), "two");
    EXPECT_EQ(slices->getSliceMetaData(0, "n"), "");
}

TYPED_TEST(ImageMemory, newImagesReportAndCopiesReportAsTheirSource)
{
    ImageBase<TypeParam> image;
    image.setDimensions(2, 2, 2, 1, 1);
    const auto reported = [](Image &one) {
        CapturedStream out(std::cout);
        one.rotate(0);
        return out.str();
    };
    for (const int verbose : {1, 0}) {
        const std::string expected = verbose != 0 ? "Rotated image around axis 0\n" : "";
        EXPECT_EQ(reported(image), expected);
        const std::unique_ptr<Image> copy(image.clone());
        const std::unique_ptr<Image> slices(image.cloneSlices(0, 1));
        EXPECT_EQ(reported(*copy), expected);
        EXPECT_EQ(reported(*slices), expected);
        image.setVerbose(0);
    }
}

TYPED_TEST(ImageMemory, cloneSlicesTakesPositionButNotNameAndOrientation)
{
    ImageBase<TypeParam> image = countingImage<TypeParam>({2, 2, 4, 1, 1});
    const float position[3]{1, 2, 3};
    const float orientation[9]{0, 1, 0, 1, 0, 0, 0, 0, 1};
    image.setName("knee");
    image.setOrientation(orientation);
    image.setPosition(position);
    const std::unique_ptr<Image> slices(image.cloneSlices(2, 4));
    EXPECT_EQ(slices->getName(), "");
    EXPECT_EQ(slices->getOrientation()[0], 1.0f);
    EXPECT_TRUE(std::equal(position, position + 3, slices->getPosition()));
}

TYPED_TEST(ImageMemory, cloneSlicesWithoutABufferStillTakesTheMetaDataOfItsSlices)
{
    ImageBase<TypeParam> image = countingImage<TypeParam>({2, 2, 4, 1, 1});
    image.setSliceMetaData(2, "n", "two");
    image.freeBuffer();
    const std::unique_ptr<Image> slices(image.cloneSlices(1, 3));
    EXPECT_EQ(slices->getSliceMetaData(1, "n"), "two");
    EXPECT_EQ(slices->getMaximum(), 0.0f);
}

TYPED_TEST(ImageMemory, cloneSlicesOfSeveralFramesFillsTheFirstAlone)
{
    ImageBase<TypeParam> image = countingImage<TypeParam>({1, 1, 3, 2, 1});
    const std::unique_ptr<Image> slices(image.cloneSlices(1, 3));
    EXPECT_EQ(shapeOf(*slices), (Shape{1, 1, 2, 2, 1}));
    EXPECT_EQ(valuesOf(dynamic_cast<const ImageBase<TypeParam> &>(*slices)),
              (std::vector<TypeParam>{1, 2, 0, 0}));
}

TYPED_TEST(ImageMemory, cloneSlicesBeyondTheVolumeCopiesTheOverlap)
{
    ImageBase<TypeParam> image = countingImage<TypeParam>({1, 1, 3, 1, 1});
    const auto values = [&](int first, int last) {
        const std::unique_ptr<Image> slices(image.cloneSlices(first, last));
        return valuesOf(dynamic_cast<const ImageBase<TypeParam> &>(*slices));
    };
    EXPECT_EQ(values(-1, 2), (std::vector<TypeParam>{0, 0, 1}));
    EXPECT_EQ(values(1, 5), (std::vector<TypeParam>{1, 2, 0, 0}));
    EXPECT_EQ(values(5, 7), (std::vector<TypeParam>{0, 0}));
    EXPECT_TRUE(values(2, 2).empty());
    EXPECT_TRUE(values(2, 0).empty());
    EXPECT_TRUE(values(std::numeric_limits<int>::max(), std::numeric_limits<int>::min()).empty());
}

TYPED_TEST(ImageMemory, cloneSlicesOfADepthThatIsNoIntThrows)
{
    ImageBase<TypeParam> image = countingImage<TypeParam>({1, 1, 3, 1, 1});
    CapturedStream out(std::cout);
    EXPECT_THROW(image.cloneSlices(std::numeric_limits<int>::min(), 1), MERV::Exception);
    EXPECT_EQ(out.str(), "Common >> Error while initializing!\n");
}

TYPED_TEST(ImageMemory, movingLeavesAnEmptyImage)
{
    ImageBase<TypeParam> image = countingImage<TypeParam>({3, 2, 1, 1, 1});
    image.setName("knee");
    const void *buffer = image.getData();
    ImageBase<TypeParam> target(std::move(image));
    EXPECT_EQ(target.getData(), buffer);
    EXPECT_EQ(target.getName(), "knee");
    EXPECT_EQ(target.getVoxel(2, 1, 0, 0, 0), 5.0f);
    // What is left is the point.
    // NOLINTNEXTLINE(bugprone-use-after-move,clang-analyzer-cplusplus.Move)
    EXPECT_EQ(image.getData(), nullptr);
    EXPECT_EQ(image.getValueCount(), 0u);
    EXPECT_EQ(image.getWidth(), 0);
}

// --- external buffers ---

TYPED_TEST(ImageMemory, externalBufferIsUsedAndNeverFreed)
{
    std::vector<TypeParam> foreign{1, 2, 3, 4};
    ImageBase<TypeParam> image;
    image.setDimensions(2, 2, 1, 1, 1);
    image.setExternalBuffer(foreign.data());
    EXPECT_TRUE(image.hasExternalBuffer());
    EXPECT_EQ(image.getVoxel(1, 1, 0, 0, 0), 4.0f);
    image.setVoxel(40, 1, 1, 0, 0, 0);
    EXPECT_EQ(foreign[3], TypeParam(40));
    image.freeBuffer();
    EXPECT_EQ(image.getData(), nullptr);
    EXPECT_TRUE(image.hasExternalBuffer());
}

TYPED_TEST(ImageMemory, markingExternalFreesTheOwnBuffer)
{
    ImageBase<TypeParam> image;
    image.setDimensions(2, 2, 1, 1, 1);
    image.setBufferExternal();
    EXPECT_EQ(image.getData(), nullptr);
    image.clear(); // neither allocates nor fails
    EXPECT_EQ(image.getData(), nullptr);
    image.setDimensions(3, 3, 1, 1, 1);
    EXPECT_EQ(image.getData(), nullptr);
    image.clearBufferExternal();
    image.setDimensions(3, 3, 1, 1, 1);
    EXPECT_NE(image.getData(), nullptr);
}

TYPED_TEST(ImageMemory, changedValueCountForgetsTheForeignBuffer)
{
    std::vector<TypeParam> foreign{1, 2, 3, 4};
    ImageBase<TypeParam> image;
    image.setDimensions(2, 2, 1, 1, 1);
    image.setExternalBuffer(foreign.data());
    image.setDimensions(4, 1, 1, 1, 1);
    EXPECT_EQ(image.getData(), foreign.data());
    image.setDimensions(5, 1, 1, 1, 1);
    EXPECT_EQ(image.getData(), nullptr);
    EXPECT_TRUE(image.hasExternalBuffer());
}

// A buffer that someone else allocated is not freed after the mark is taken away either.
TYPED_TEST(ImageMemory, clearBufferExternalNeverFreesAForeignBuffer)
{
    std::vector<TypeParam> foreign{1, 2, 3, 4};
    {
        ImageBase<TypeParam> image;
        image.setDimensions(2, 2, 1, 1, 1);
        image.setExternalBuffer(foreign.data());
        image.clearBufferExternal();
        EXPECT_FALSE(image.hasExternalBuffer());
        EXPECT_EQ(image.getData(), foreign.data());
        image.setDimensions(3, 3, 1, 1, 1);
        EXPECT_NE(image.getData(), foreign.data());
    }
    EXPECT_EQ(foreign, (std::vector<TypeParam>{1, 2, 3, 4}));
}

TYPED_TEST(ImageMemory, clearZeroesAForeignBuffer)
{
    std::vector<TypeParam> foreign{1, 2, 3, 4};
    ImageBase<TypeParam> image;
    image.setDimensions(2, 2, 1, 1, 1);
    image.setExternalBuffer(foreign.data());
    image.clear();
    EXPECT_EQ(foreign, std::vector<TypeParam>(4));
}

TYPED_TEST(ImageMemory, operationsInPlaceOwnTheirResult)
{
    const std::vector<TypeParam> before{1, 2, 3, 4};
    const auto check = [&before](auto operation) {
        std::vector<TypeParam> foreign = before;
        ImageBase<TypeParam> image;
        image.setVerbose(0);
        image.setDimensions(2, 2, 1, 1, 1);
        image.setExternalBuffer(foreign.data());
        operation(image);
        EXPECT_EQ(foreign, before);
        EXPECT_FALSE(image.hasExternalBuffer());
        EXPECT_NE(image.getData(), foreign.data());
        EXPECT_NE(image.getData(), nullptr);
    };
    check([](auto &image) { image.downsample(2, 1, 1, 1); });
    check([](auto &image) { image.resample(4, 4, 0); });
    check([](auto &image) { image.rotate(2); });
    check([](auto &image) { image.rotate(0); });
}

// --- sizes ---

TYPED_TEST(ImageMemory, impossibleSizesThrowAndChangeNothing)
{
    const int most = std::numeric_limits<int>::max();
    ImageBase<TypeParam> image = countingImage<TypeParam>({3, 2, 1, 1, 1});
    for (const Shape &shape :
         {Shape{most, most, most, 4, 4}, Shape{most, most, most, most, most},
          Shape{1 << 22, 1 << 21, 1 << 21, 1, 1}, Shape{1 << 16, 1 << 16, 1 << 16, 1 << 16, 1}}) {
        CapturedStream out(std::cout);
        std::string message;
        try {
            image.setDimensions(shape[0], shape[1], shape[2], shape[3], shape[4]);
        } catch (const std::exception &exception) {
            message = exception.what();
        }
        EXPECT_EQ(message, "MERV::ImageBase Buffer Allocation error!");
        EXPECT_EQ(out.str(), "Common >> Error while initializing!\n");
    }
    EXPECT_EQ(image.getVoxel(2, 1, 0, 0, 0), 5.0f);
}

TEST(ImageSizes, stridesAboveTwoToThe32AreNotWrapped)
{
    if (sanitized)
        GTEST_SKIP() << "the sanitizer's shadow of 5 GB is too large";
    ImageBase<unsigned char> image;
    CapturedStream out(std::cout);
    try {
        image.setDimensions(70000, 70000, 1, 1, 1);
        EXPECT_EQ(image.getValueCount(), 4900000000u);
        EXPECT_EQ(image.getSliceStride(), 4900000000u);
        image.setVoxel(9, 69999, 69999, 0, 0, 0);
        EXPECT_EQ(image.getValue(4899999999u), 9.0f);
    } catch (const std::exception &exception) {
        EXPECT_STREQ(exception.what(), "MERV::ImageBase Buffer Allocation error!");
    }
}

// A foreign pointer stands for the buffer; nothing is read.
TEST(ImageSizes, aCubeOf2048HasStridesBeyond32Bits)
{
    ImageBase<unsigned char> image;
    image.setBufferExternal();
    image.setDimensions(2048, 2048, 2048, 2, 1);
    EXPECT_EQ(image.getValueCount(), 17179869184u);
    EXPECT_EQ(image.getSliceStride(), 4194304u);
}

TEST(ImageSizes, operationsInPlaceNeedTwiceTheVoxels)
{
    if (sanitized || !resetPeak() || statusKilobytes("VmHWM") == 0)
        GTEST_SKIP() << "the peak of the resident size is not to be had";
    ImageBase<short> image = scatteredImage<short>({256, 256, 256, 1, 1}); // 32 MB
    const std::uint64_t imageKilobytes = image.getValueCount() * sizeof(short) / 1024;
    const auto growth = [&](auto operation) {
        resetPeak();
        const std::uint64_t before = statusKilobytes("VmRSS");
        operation();
        // Memory that was freed before but kept by the process needs no growth, and is let go meanwhile.
        return std::max(statusKilobytes("VmHWM"), before) - before;
    };
    const std::uint64_t limit = imageKilobytes + imageKilobytes / 8;
    EXPECT_LT(growth([&] { image.rotate(1); }), limit);
    EXPECT_LT(growth([&] { image.resample(256, 256, 256, 1, 1, false); }), limit);
    EXPECT_LT(growth([&] { image.resample(256, 256, 256, 1, 3, false); }), limit);
    EXPECT_LT(growth([&] { image.mirror(true, true, true, false, false); }), imageKilobytes / 8);
    EXPECT_LT(growth([&] { image.downsample(2, 2, 2, 1); }), limit);
}
