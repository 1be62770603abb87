// A whole file.
#include "Common/Prs.h"

#include "fuzz/FuzzInput.h"

#include <memory>
#include <vector>

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    silenceReaders();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const FuzzFolder folder;
    const std::string path = folder.write("v.prs", textOf(data, size));
    MERV::PrsHeader header;
    std::vector<MERV::PrsRecord> records;
    const std::unique_ptr<MERV::Image> image(MERV::loadPrs(path.c_str(), header, records));
    return 0;
}
