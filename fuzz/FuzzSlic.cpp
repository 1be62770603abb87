#include "serialization/formats/SlicSerializer.h"
#include "serialization/formats/SlicUnserializer.h"

#include "objects/ImageObject.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <sstream>
#include <string>

// Reads the bytes as a SLIC file, the first of them handed over as a consumed head. What comes of it is
// written and read once more.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string bytes(reinterpret_cast<const char *>(data), size);
    const std::size_t consumed = size > 0 ? std::min<std::size_t>(bytes.back() & 0x1F, size) : 0;
    SlicUnserializer reader;
    std::istringstream stream(bytes.substr(consumed));
    const std::unique_ptr<ImageObject> contours(
        reader.unserialize(stream, bytes.data(), static_cast<int>(consumed)));
    if (contours == nullptr)
        return 0;
    std::stringstream written;
    SlicSerializer writer;
    if (!writer.serialize(contours.get(), written))
        __builtin_trap();
    const std::unique_ptr<ImageObject> again(reader.unserialize(written));
    if (again == nullptr)
        __builtin_trap();
    return 0;
}
