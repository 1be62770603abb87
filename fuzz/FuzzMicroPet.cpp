// A template of the microPET text header, which is filled in.
#include "Common/MicroPet.h"

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
    const std::string path = folder.write("template.img.hdr", textOf(data, size));
    const std::string directory = path.substr(0, path.size() - std::string("template.img.hdr").size());
    const std::unique_ptr<MERV::Image> image(MERV::createImage(MERV::TypeUChar));
    image->setDimensions(2, 2, 2, 1, 1);
    MERV::saveMicroPetHeader((directory + "v").c_str(), directory.c_str(), image.get());
    return 0;
}
