#include "serialization/dicom/LibraryDecoder.h"

#include "serialization/dicom/GuardedProcess.h"

#include <gdcmDataElement.h>
#include <gdcmFragment.h>
#include <gdcmImage.h>
#include <gdcmReader.h>
#include <gdcmSequenceOfFragments.h>
#include <gdcmTrace.h>
#include <gdcmWriter.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <sstream>

namespace dicom {

namespace {

// Deflate does not compress better than 1032 to 1.
constexpr std::uint64_t largestInflation = 1032;
constexpr std::uint64_t mostInflatedBytes = 1ULL << 30U;

std::size_t inflateInto(const std::string &path, std::span<char> out)
{
    gdcm::Reader reader;
    reader.SetFileName(path.c_str());
    if (!reader.Read())
        return 0;
    std::ostringstream rewritten;
    gdcm::Writer writer;
    writer.SetFile(reader.GetFile());
    gdcm::FileMetaInformation &meta = writer.GetFile().GetHeader();
    meta.SetDataSetTransferSyntax(gdcm::TransferSyntax::ExplicitVRLittleEndian);
    const std::string syntax =
        gdcm::TransferSyntax::GetTSString(gdcm::TransferSyntax::ExplicitVRLittleEndian);
    gdcm::DataElement element{gdcm::Tag(tags::transferSyntax)};
    element.SetVR(gdcm::VR::UI);
    element.SetByteValue(syntax.data(), static_cast<std::uint32_t>(syntax.size()));
    meta.Replace(element);
    writer.CheckFileMetaInformationOff();
    writer.SetStream(rewritten);
    if (!writer.Write())
        return 0;
    const std::string bytes = rewritten.str();
    if (bytes.size() > out.size())
        return 0;
    std::memcpy(out.data(), bytes.data(), bytes.size());
    return bytes.size();
}

gdcm::Image imageOf(const DicomHeader &header, const PixelLayout &layout)
{
    gdcm::Image image;
    image.SetNumberOfDimensions(layout.frames > 1 ? 3 : 2);
    image.SetDimension(0, layout.width);
    image.SetDimension(1, layout.height);
    if (layout.frames > 1)
        image.SetDimension(2, layout.frames);
    image.SetPixelFormat(gdcm::PixelFormat(
        1, static_cast<unsigned short>(layout.bitsAllocated), static_cast<unsigned short>(layout.bitsStored),
        static_cast<unsigned short>(layout.bitsStored - 1), layout.isSigned ? 1 : 0));
    image.SetPhotometricInterpretation(gdcm::PhotometricInterpretation::MONOCHROME2);
    image.SetTransferSyntax(gdcm::TransferSyntax::GetTSType(header.transferSyntax.c_str()));
    return image;
}

std::size_t decodeInto(const DicomHeader &header, const PixelLayout &layout,
                       const std::vector<std::string> &fragments, std::span<char> out)
{
    gdcm::Trace::SetDebug(false);
    gdcm::Trace::SetWarning(false);
    gdcm::Trace::SetError(false);
    gdcm::SmartPointer<gdcm::SequenceOfFragments> sequence = new gdcm::SequenceOfFragments;
    for (const std::string &bytes : fragments) {
        gdcm::Fragment fragment;
        fragment.SetByteValue(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
        sequence->AddFragment(fragment);
    }
    gdcm::DataElement pixels{gdcm::Tag(tags::pixelData)};
    pixels.SetVR(gdcm::VR::OB);
    pixels.SetValue(*sequence);
    gdcm::Image image = imageOf(header, layout);
    image.SetDataElement(pixels);
    if (image.GetBufferLength() != out.size() || !image.GetBuffer(out.data()))
        return 0;
    return out.size();
}

unsigned bigEndian16(std::string_view bytes, std::size_t offset)
{
    return (static_cast<unsigned>(static_cast<unsigned char>(bytes[offset])) << 8U) |
           static_cast<unsigned char>(bytes[offset + 1]);
}

struct CodedSize
{
    std::uint64_t width = 0;
    std::uint64_t height = 0;
    unsigned components = 0;
};

// From the frame header of a JPEG or JPEG-LS stream (ISO/IEC 10918-1, B.2.2).
std::optional<CodedSize> jpegSize(std::string_view stream)
{
    std::size_t at = 2;
    while (at + 10 <= stream.size() && static_cast<unsigned char>(stream[at]) == 0xFF) {
        const auto marker = static_cast<unsigned char>(stream[at + 1]);
        if (marker == 0xFF) { // fill byte
            ++at;
            continue;
        }
        const bool frameHeader =
            (marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC) ||
            marker == 0xF7;
        if (frameHeader)
            return CodedSize{bigEndian16(stream, at + 7), bigEndian16(stream, at + 5),
                             static_cast<unsigned char>(stream[at + 9])};
        at += 2 + bigEndian16(stream, at + 2);
    }
    return std::nullopt;
}

// From the size marker of a JPEG 2000 stream, which may lie in boxes (ISO/IEC 15444-1, A.5.1).
std::optional<CodedSize> jpeg2000Size(std::string_view stream)
{
    const std::size_t at = stream.find(std::string_view("\xFF\x4F\xFF\x51", 4));
    constexpr std::size_t neededBytes = 42;
    if (at == std::string_view::npos || stream.size() - at < neededBytes)
        return std::nullopt;
    const auto word = [&](std::size_t offset) {
        return std::uint64_t(bigEndian16(stream, at + offset)) << 16U | bigEndian16(stream, at + offset + 2);
    };
    return CodedSize{word(8) - word(16), word(12) - word(20), bigEndian16(stream, at + 40)};
}

// A stream of another size than the tags say would make the decoder take memory that is not accounted for.
bool fits(const std::string &fragment, const PixelLayout &layout)
{
    const std::string_view stream(fragment);
    const bool jpeg = stream.size() > 2 && bigEndian16(stream, 0) == 0xFFD8;
    const std::optional<CodedSize> size = jpeg ? jpegSize(stream) : jpeg2000Size(stream);
    return size && size->width == layout.width && size->height == layout.height && size->components == 1;
}

} // namespace

std::chrono::milliseconds longestWork(std::uint64_t bytes)
{
    constexpr std::chrono::milliseconds least(3000);
    constexpr std::uint64_t bytesPerMillisecond = 4096;
    return least + std::chrono::milliseconds(bytes / bytesPerMillisecond);
}

std::optional<std::string> inflateFile(const std::string &path)
{
    std::error_code error;
    const std::uint64_t size = std::filesystem::file_size(path, error);
    if (error)
        return std::nullopt;
    constexpr std::uint64_t headroom = 1 << 16;
    const SharedMemory memory(std::min(size, mostInflatedBytes / largestInflation) * largestInflation +
                              headroom);
    const std::optional<std::size_t> length =
        runGuarded(longestWork(size), [&] { return inflateInto(path, memory.bytes()); });
    if (!length || *length == 0 || *length > memory.bytes().size())
        return std::nullopt;
    return std::string(memory.bytes().data(), *length);
}

bool decodeFragments(const DicomHeader &header, const PixelLayout &layout,
                     const std::vector<std::string> &fragments, std::span<char> out)
{
    // A frame may be split, but each one begins in a fragment of its own.
    if (fragments.size() < layout.frames || !fits(fragments.front(), layout))
        return false;
    const SharedMemory memory(out.size());
    const std::optional<std::size_t> length = runGuarded(
        longestWork(out.size()), [&] { return decodeInto(header, layout, fragments, memory.bytes()); });
    if (!length || *length != out.size())
        return false;
    std::memcpy(out.data(), memory.bytes().data(), out.size());
    return true;
}

} // namespace dicom
