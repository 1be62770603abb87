#include "tests/mervlib/ImageTestTools.h"

#include <list>

using MERV::ImageBase;

template <class T>
class ImageMetaData : public testing::Test
{};
TYPED_TEST_SUITE(ImageMetaData, VoxelTypes);

namespace {

template <class Call>
std::string messageOf(const Call &call)
{
    try {
        call();
    } catch (const std::exception &exception) {
        return exception.what();
    }
    return "nothing thrown";
}

} // namespace

TYPED_TEST(ImageMetaData, missingKeyIsEmptyAndNotCreated)
{
    ImageBase<TypeParam> image;
    std::list<std::string> keys{"left over"};
    EXPECT_EQ(image.getMetaData("Patient"), "");
    image.getMetaDataKeys(keys);
    EXPECT_TRUE(keys.empty());
}

TYPED_TEST(ImageMetaData, keysComeInMapOrder)
{
    ImageBase<TypeParam> image;
    image.setMetaData("b", "2");
    image.setMetaData("a", "1");
    image.setMetaData("b", "3");
    std::list<std::string> keys;
    image.getMetaDataKeys(keys);
    EXPECT_EQ(keys, (std::list<std::string>{"a", "b"}));
    EXPECT_EQ(image.getMetaData("b"), "3");
}

TYPED_TEST(ImageMetaData, slicesHaveTheirOwn)
{
    ImageBase<TypeParam> image;
    image.setDimensions(1, 1, 2, 1, 1);
    image.setSliceMetaData(1, "Time", "12");
    EXPECT_EQ(image.getSliceMetaData(1, "Time"), "12");
    EXPECT_EQ(image.getSliceMetaData(0, "Time"), "");
    std::list<std::string> keys{"left over"};
    image.getSliceMetaDataKeys(0, keys);
    EXPECT_TRUE(keys.empty());
    image.getSliceMetaDataKeys(1, keys);
    EXPECT_EQ(keys, std::list<std::string>{"Time"});
}

TYPED_TEST(ImageMetaData, missingSlicesThrowWithTheFixedLineNumbers)
{
    ImageBase<TypeParam> image;
    image.setDimensions(1, 1, 3, 1, 1);
    std::list<std::string> keys;
    const std::string prefix = "Exception raised in mervlib/include/Common/ImageBase in line ";
    for (const int slice : {-1, 3, 1000000}) {
        EXPECT_EQ(messageOf([&] { image.setSliceMetaData(slice, "a", "b"); }), prefix + "3567");
        EXPECT_EQ(messageOf([&] { image.getSliceMetaData(slice, "a"); }), prefix + "3584");
        EXPECT_EQ(messageOf([&] { image.getSliceMetaDataKeys(slice, keys); }), prefix + "3599");
    }
    EXPECT_EQ(messageOf([&] { ImageBase<TypeParam>().getSliceMetaData(0, "a"); }), prefix + "3584");
}

TYPED_TEST(ImageMetaData, existingSlicesKeepTheirsWhenTheDepthChanges)
{
    ImageBase<TypeParam> image;
    image.setDimensions(1, 1, 3, 1, 1);
    image.setSliceMetaData(0, "n", "zero");
    image.setSliceMetaData(1, "n", "one");
    image.setSliceMetaData(2, "n", "two");
    image.setDimensions(1, 1, 5, 1, 1);
    EXPECT_EQ(image.getSliceMetaData(4, "n"), "");
    image.setDimensions(1, 1, 2, 1, 1);
    EXPECT_EQ(image.getSliceMetaData(0, "n"), "zero");
    EXPECT_EQ(image.getSliceMetaData(1, "n"), "one");
    image.setDimensions(1, 1, 3, 1, 1);
    EXPECT_EQ(image.getSliceMetaData(2, "n"), "");
}
