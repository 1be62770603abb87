#include "serialization/formats/VisUnserializer.h"

#include "objects/ImageObject.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <sstream>
#include <string>

// Asks the VIS reader as the image manager does: with a head of zeros behind the bytes, and with the stream
// when it says yes.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    std::array<char, ContinuousStreamImageObjectUnserializer::headSize> head{};
    std::copy_n(data, std::min(size, head.size()), head.begin());
    VisUnserializer reader([](const auto &) {
        return std::optional(std::array<float, 3>{1.0f, 1.0f, 1.0f});
    });
    if (!reader.canUnserialize(head.data()))
        return 0;
    std::istringstream stream(std::string(reinterpret_cast<const char *>(data), size));
    const std::unique_ptr<ImageObject> object(reader.unserialize(stream));
    return 0;
}
