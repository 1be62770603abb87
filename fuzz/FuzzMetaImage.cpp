// A header, with voxels of its own or the 64 bytes of v.raw beside it.
#include "Common/MetaImage.h"

#include "fuzz/FuzzInput.h"

#include <memory>

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    silenceReaders();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const FuzzFolder folder;
    static const std::string voxels = folder.write("v.raw", std::string(64, 'v'));
    const std::string header = folder.write("v.mhd", textOf(data, size));
    const std::unique_ptr<MERV::Image> image(MERV::loadMetaImage(header.c_str()));
    return 0;
}
