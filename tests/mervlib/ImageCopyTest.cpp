#include "Common/ImageCopy.h"

#include "tests/mervlib/ImageTestTools.h"

using MERV::ImageBase;

TEST(ImageCopy, sliceToBytesSaturates)
{
    ImageBase<short> image;
    image.setDimensions(2, 2, 2, 1, 2);
    const short values[]{-5, 1, 300, 2, 7, 3, 255, 4};
    std::copy(std::begin(values), std::end(values), image.begin());
    std::vector<unsigned char> bytes(4, 99);
    MERV::copySliceToBytes(&image, 2, 2, bytes.data());
    EXPECT_EQ(bytes, (std::vector<unsigned char>{0, 255, 7, 255}));
}

TEST(ImageCopy, sliceOfAnotherSizeIsLeftAlone)
{
    ImageBase<short> image = countingImage<short>({2, 3, 1, 1, 1});
    std::vector<unsigned char> bytes(9, 99);
    MERV::copySliceToBytes(&image, 3, 2, bytes.data());
    MERV::copySliceToBytes(&image, 2, 2, bytes.data());
    MERV::copySliceToBytes(&image, 3, 3, bytes.data());
    MERV::copySliceToBytes(nullptr, 2, 3, bytes.data());
    EXPECT_EQ(bytes, std::vector<unsigned char>(9, 99));
}

TEST(ImageCopy, copiesDimensionsAndValuesOnly)
{
    ImageBase<double> source = countingImage<double>({3, 2, 2, 2, 2});
    source.begin()[4] = 70000.5;
    source.setSpacing(5, 5, 5, 5);
    source.setName("source");
    ImageBase<short> destination = countingImage<short>({9, 1, 1, 1, 1});
    source.getValue(7); // cursors elsewhere
    destination.getValue(3);
    MERV::copyImage(&source, &destination);
    EXPECT_EQ(shapeOf(destination), shapeOf(source));
    EXPECT_EQ(destination.getSpacing(0), 1.0f);
    EXPECT_EQ(destination.getName(), "");
    for (std::uint64_t i = 0; i < source.getValueCount(); ++i)
        EXPECT_EQ(destination.getValue(i), i == 4 ? 32767.0f : static_cast<float>(i));
}

TEST(ImageCopy, ontoItselfOrNothingIsHarmless)
{
    ImageBase<short> image = countingImage<short>({2, 2, 1, 1, 1});
    MERV::copyImage(&image, &image);
    MERV::copyImage(nullptr, &image);
    MERV::copyImage(&image, nullptr);
    EXPECT_EQ(valuesOf(image), (std::vector<short>{0, 1, 2, 3}));
}
