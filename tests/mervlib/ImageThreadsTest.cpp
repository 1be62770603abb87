#include "tests/mervlib/ImageTestTools.h"

#include <thread>

using MERV::ImageBase;

namespace {

// Reads the whole image in a thread of its own and counts values that are not what they should be.
std::thread reader(ImageBase<short> &image, int &faults, bool interpolating)
{
    return std::thread([&image, &faults, interpolating] {
        for (int round = 0; round < 200; ++round)
            for (int x = 0; x < 50; ++x) {
                const auto place = static_cast<float>(x);
                const float value =
                    interpolating ? image.getTrilinear(place, 0, 0, 0, 0) : image.getVoxel(x, 0, 0, 0, 0);
                faults += value != place;
            }
    });
}

} // namespace

TEST(ImageThreads, twoReadersGetTheirValues)
{
    for (const bool interpolating : {false, true}) {
        ImageBase<short> image = countingImage<short>({50, 2, 2, 1, 1});
        int faults[2]{};
        std::thread first = reader(image, faults[0], interpolating);
        std::thread second = reader(image, faults[1], interpolating);
        first.join();
        second.join();
        EXPECT_EQ(faults[0] + faults[1], 0);
    }
}
