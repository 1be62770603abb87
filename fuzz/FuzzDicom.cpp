#include "serialization/dicom/DicomGeometry.h"
#include "serialization/dicom/DicomParser.h"
#include "serialization/dicom/DicomPixels.h"
#include "serialization/dicom/RunLength.h"

#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

// Reads bytes as a DICOM file: its tags as text, its place in space, its pixels; and as a run-length frame.
// Native pixels are read from memory; what the library decodes is left out, it runs in a process of its own.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    std::string bytes(reinterpret_cast<const char *>(data), size);
    std::vector<char> frame(256);
    dicom::decodeRunLength(bytes, size % 4 + 1, frame);

    std::istringstream stream(bytes);
    std::optional<dicom::DicomHeader> header = dicom::parseHeader(stream, size);
    if (!header)
        return 0;
    for (const dicom::DicomElement &element : header->elements)
        header->text(element.tag);
    dicom::origin(*header);
    dicom::sliceNormal(*header);
    dicom::xSpacing(*header);
    dicom::zSpacing(*header);
    dicom::rescaleIntercept(*header);
    const std::optional<dicom::PixelLayout> layout = dicom::pixelLayout(*header);
    if (layout && !header->pixels.encapsulated && layout->bytes() <= size) {
        header->inflated = std::move(bytes);
        std::vector<char> pixels(layout->bytes());
        dicom::readPixels(*header, *layout, pixels);
    }
    return 0;
}
