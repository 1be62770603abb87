// A whole file, in both directions.
#include "Common/Raw12Bit.h"

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
    const std::string path = folder.write("v.bin", textOf(data, size));
    for (const bool reversed : {false, true})
        const std::unique_ptr<MERV::Image> image(MERV::loadRaw12Bit(path.c_str(), reversed));
    return 0;
}
