// One DICOM file as the program opens it, with all that the library decodes in processes of its own, and the
// tags as a dialog shows them.
#include "serialization/formats/DcmUnserializer.h"

#include "fuzz/FuzzInput.h"
#include "objects/ImageObject.h"
#include "serialization/dicom/DicomLoader.h"

#include <memory>

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    silenceReaders();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const FuzzFolder folder;
    const std::string path = folder.write("v.dcm", textOf(data, size));
    const std::wstring wide(path.begin(), path.end());
    dicom::readTags(path);
    DcmUnserializer reader;
    if (reader.canUnserialize(wide.c_str()))
        const std::unique_ptr<ImageObject> object(reader.unserialize(wide.c_str()));
    return 0;
}
