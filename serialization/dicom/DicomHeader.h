#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace dicom {

// (group << 16) | element.
using Tag = std::uint32_t;

constexpr Tag makeTag(unsigned group, unsigned element)
{
    return (group << 16) | element;
}

namespace tags {
constexpr Tag transferSyntax = makeTag(0x0002, 0x0010);
constexpr Tag characterSet = makeTag(0x0008, 0x0005);
constexpr Tag seriesDescription = makeTag(0x0008, 0x103E);
constexpr Tag patientName = makeTag(0x0010, 0x0010);
constexpr Tag sliceThickness = makeTag(0x0018, 0x0050);
constexpr Tag echoTime = makeTag(0x0018, 0x0081);
constexpr Tag spacingBetweenSlices = makeTag(0x0018, 0x0088);
constexpr Tag imagerPixelSpacing = makeTag(0x0018, 0x1164);
constexpr Tag seriesInstanceUid = makeTag(0x0020, 0x000E);
constexpr Tag instanceNumber = makeTag(0x0020, 0x0013);
constexpr Tag imagePositionRetired = makeTag(0x0020, 0x0030);
constexpr Tag imagePosition = makeTag(0x0020, 0x0032);
constexpr Tag imageOrientationRetired = makeTag(0x0020, 0x0035);
constexpr Tag imageOrientation = makeTag(0x0020, 0x0037);
constexpr Tag locationRetired = makeTag(0x0020, 0x0050);
constexpr Tag sliceLocation = makeTag(0x0020, 0x1041);
constexpr Tag samplesPerPixel = makeTag(0x0028, 0x0002);
constexpr Tag photometric = makeTag(0x0028, 0x0004);
constexpr Tag numberOfFrames = makeTag(0x0028, 0x0008);
constexpr Tag rows = makeTag(0x0028, 0x0010);
constexpr Tag columns = makeTag(0x0028, 0x0011);
constexpr Tag planes = makeTag(0x0028, 0x0012);
constexpr Tag pixelSpacing = makeTag(0x0028, 0x0030);
constexpr Tag bitsAllocated = makeTag(0x0028, 0x0100);
constexpr Tag bitsStored = makeTag(0x0028, 0x0101);
constexpr Tag highBit = makeTag(0x0028, 0x0102);
constexpr Tag pixelRepresentation = makeTag(0x0028, 0x0103);
constexpr Tag rescaleIntercept = makeTag(0x0028, 0x1052);
constexpr Tag pixelMeasures = makeTag(0x0028, 0x9110);
constexpr Tag perFrameGroups = makeTag(0x5200, 0x9230);
constexpr Tag floatPixelData = makeTag(0x7FE0, 0x0008);
constexpr Tag doublePixelData = makeTag(0x7FE0, 0x0009);
constexpr Tag pixelData = makeTag(0x7FE0, 0x0010);
} // namespace tags

using ValueRepresentation = std::array<char, 2>;

// One top-level element that is no sequence. `value` is as in the file; it is empty for binary data.
struct DicomElement
{
    Tag tag = 0;
    ValueRepresentation representation{};
    bool bigEndian = false;
    bool binary = false; // holds bytes that are not kept
    std::string value;
};

// Where the pixels of a file lie. Offsets and lengths are in bytes from the start of the file.
struct PixelBlock
{
    bool present = false;
    bool floatingPoint = false; // Float or Double Float Pixel Data
    bool encapsulated = false;  // fragments up to a delimiter; `length` is then not known
    bool words = false;         // stored as 16-bit words (matters for 8-bit pixels in big endian files)
    std::uint64_t offset = 0;
    std::uint64_t length = 0;
};

// All tags of one file but its sequences and pixels, in file order.
struct DicomHeader
{
    std::string path; // 8-bit, as the file system has it
    std::vector<DicomElement> elements;
    std::string transferSyntax; // empty when the file names none
    bool bigEndian = false;
    std::string perFramePixelSpacing; // Pixel Spacing of the first frame's functional group, or empty
    PixelBlock pixels;
    std::string inflated; // the whole file in uncompressed form when it was deflated, else empty

    // Null when the file does not have the tag.
    const DicomElement *find(Tag tag) const;
    // The value as UTF-8 without trailing padding; empty for a missing tag.
    std::string text(Tag tag) const;
    // First number of the value, `otherwise` when there is none.
    long integer(Tag tag, long otherwise) const;
    // The numbers of a value that are not empty, up to the first part that is no finite number.
    std::vector<double> numbers(Tag tag) const;
    // An image: it has rows, columns and pixels.
    bool isImage() const;
};

// The backslash-separated finite numbers at the start of `text`; blanks around each are skipped.
std::vector<double> parseNumbers(std::string_view text);

} // namespace dicom
