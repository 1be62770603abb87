// The header and behind it the voxels.
#include "Common/Analyze.h"

#include "fuzz/FuzzInput.h"

#include <algorithm>
#include <memory>

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    silenceReaders();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const FuzzFolder folder;
    constexpr std::size_t headerSize = 348;
    const std::string bytes = textOf(data, size);
    const std::string header = folder.write("v.hdr", bytes.substr(0, headerSize));
    folder.write("v.img", bytes.substr(std::min(size, headerSize)));
    const std::unique_ptr<MERV::Image> image(MERV::loadAnalyze(header.c_str()));
    return 0;
}
