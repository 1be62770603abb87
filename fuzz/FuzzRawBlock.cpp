// One byte each for voxel type, header or none, five dimensions; then the stream.
#include "Common/Image.h"

#include "fuzz/FuzzInput.h"

#include <memory>
#include <sstream>

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    silenceReaders();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    constexpr std::size_t controlBytes = 7;
    if (size < controlBytes)
        return 0;
    const int types[] = {MERV::TypeChar, MERV::TypeUChar, MERV::TypeShort, MERV::TypeUShort,
                         MERV::TypeInt,  MERV::TypeUInt,  MERV::TypeFloat, MERV::TypeDouble};
    const std::unique_ptr<MERV::Image> image(MERV::createImage(types[data[0] % 8]));
    image->setDimensions(data[2] % 16, data[3] % 16, data[4] % 16, data[5] % 4, data[6] % 4);
    std::istringstream stream(textOf(data + controlBytes, size - controlBytes));
    if (image->load(stream, data[1] % 2 == 1) == 0)
        image->computeMinMax();
    return 0;
}
