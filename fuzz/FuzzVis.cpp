// A whole stream.
#include "Common/Vis.h"

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
    std::istringstream stream(textOf(data, size));
    const std::unique_ptr<MERV::Image> image(MERV::loadVis(stream));
    return 0;
}
