#include "serialization/dicom/DicomPixels.h"

#include "Common/ImageTypes.h"
#include "Common/Progress.h"
#include "serialization/dicom/DicomGeometry.h"
#include "serialization/dicom/DicomText.h"
#include "serialization/dicom/Encapsulation.h"
#include "serialization/dicom/LibraryDecoder.h"
#include "serialization/dicom/RunLength.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <fstream>
#include <limits>
#include <map>
#include <type_traits>

namespace dicom {

namespace {

constexpr std::string_view runLengthSyntax = "1.2.840.10008.1.2.5";
// Written by old scanners: implicit little endian, but for the pixels.
constexpr std::string_view bigEndianPixelsSyntax = "1.2.840.113619.5.2";
// Run lengths make two bytes of at most 128 (PS3.5, G.3.1).
constexpr std::uint64_t longestRunPerByte = 64;
// A byte of otherwise compressed pixels never stands for more than this many pixels in files worth opening.
constexpr std::uint64_t mostPixelsPerByte = 1 << 16;

struct VoxelTypes
{
    int plain;
    int withNegativeIntercept;
};

// Calls work(piece) for one piece of whole pixels after the other, with a report on the progress after each;
// false as soon as one call is.
template <class Work>
bool inPieces(std::span<char> bytes, const Work &work)
{
    constexpr std::size_t pieceBytes = std::size_t(4) << 20U;
    for (std::size_t done = 0; done < bytes.size();) {
        const std::span<char> piece = bytes.subspan(done, std::min(pieceBytes, bytes.size() - done));
        if (!work(piece))
            return false;
        done += piece.size();
        MERV::reportProgress(done, bytes.size());
    }
    return true;
}

template <class T>
void swapWords(std::span<char> bytes)
{
    for (std::size_t offset = 0; offset + sizeof(T) <= bytes.size(); offset += sizeof(T)) {
        T value;
        std::memcpy(&value, bytes.data() + offset, sizeof(T));
        if constexpr (sizeof(T) == 2)
            value = static_cast<T>((value << 8U) | (value >> 8U));
        else if constexpr (sizeof(T) == 4)
            value = __builtin_bswap32(value);
        else
            value = __builtin_bswap64(value);
        std::memcpy(bytes.data() + offset, &value, sizeof(T));
    }
}

void swapPiece(std::span<char> bytes, unsigned bitsAllocated)
{
    switch (bitsAllocated) {
    case 16:
        return swapWords<std::uint16_t>(bytes);
    case 32:
        return swapWords<std::uint32_t>(bytes);
    case 64:
        return swapWords<std::uint64_t>(bytes);
    default:
        return;
    }
}

void swapPixels(std::span<char> bytes, unsigned bitsAllocated)
{
    inPieces(bytes, [bitsAllocated](std::span<char> piece) {
        swapPiece(piece, bitsAllocated);
        return true;
    });
}

// T is signed for signed pixels: the shift to the right then repeats the sign.
template <class T>
void keepStoredBits(std::span<char> bytes, const PixelLayout &layout)
{
    using Bits = std::make_unsigned_t<T>;
    const unsigned left = layout.bitsAllocated - 1 - layout.highBit;
    const unsigned right = layout.bitsAllocated - layout.bitsStored;
    for (std::size_t offset = 0; offset + sizeof(T) <= bytes.size(); offset += sizeof(T)) {
        Bits bits;
        std::memcpy(&bits, bytes.data() + offset, sizeof(T));
        const T value = static_cast<T>(static_cast<T>(static_cast<Bits>(bits << left)) >> right);
        std::memcpy(bytes.data() + offset, &value, sizeof(T));
    }
}

void maskPiece(std::span<char> bytes, const PixelLayout &layout)
{
    switch (layout.bitsAllocated) {
    case 8:
        return layout.isSigned ? keepStoredBits<std::int8_t>(bytes, layout)
                               : keepStoredBits<std::uint8_t>(bytes, layout);
    case 16:
        return layout.isSigned ? keepStoredBits<std::int16_t>(bytes, layout)
                               : keepStoredBits<std::uint16_t>(bytes, layout);
    case 32:
        return layout.isSigned ? keepStoredBits<std::int32_t>(bytes, layout)
                               : keepStoredBits<std::uint32_t>(bytes, layout);
    default:
        return;
    }
}

void maskPixels(std::span<char> bytes, const PixelLayout &layout)
{
    if (layout.bitsStored != layout.bitsAllocated)
        inPieces(bytes, [&layout](std::span<char> piece) {
            maskPiece(piece, layout);
            return true;
        });
}

bool readNative(const DicomHeader &header, const PixelLayout &layout, std::span<char> out)
{
    if (!header.inflated.empty()) {
        if (header.pixels.offset + out.size() > header.inflated.size())
            return false;
        std::memcpy(out.data(), header.inflated.data() + header.pixels.offset, out.size());
    } else {
        std::ifstream stream(header.path, std::ios::binary);
        const auto readPiece = [&stream](std::span<char> piece) {
            return bool(stream.read(piece.data(), static_cast<std::streamsize>(piece.size())));
        };
        if (!stream.seekg(static_cast<std::streamoff>(header.pixels.offset)) || !inPieces(out, readPiece))
            return false;
    }
    const bool bigEndian = header.bigEndian || header.transferSyntax == bigEndianPixelsSyntax;
    if (bigEndian && layout.bitsAllocated == 8 && header.pixels.words)
        swapPixels(out, 16);
    else if (bigEndian != (std::endian::native == std::endian::big))
        swapPixels(out, layout.bitsAllocated);
    return true;
}

bool readRunLength(const std::vector<std::string> &fragments, const PixelLayout &layout, std::span<char> out)
{
    if (fragments.size() != layout.frames)
        return false;
    const std::size_t frameBytes = out.size() / layout.frames;
    for (std::size_t frame = 0; frame < fragments.size(); ++frame) {
        if (!decodeRunLength(fragments[frame], layout.bitsAllocated / 8,
                             out.subspan(frame * frameBytes, frameBytes)))
            return false;
    }
    return true;
}

bool canHold(const DicomHeader &header, const PixelLayout &layout)
{
    const PixelBlock &block = header.pixels;
    if (!block.encapsulated)
        return layout.bytes() <= block.length;
    if (header.transferSyntax == runLengthSyntax)
        return layout.bytes() / longestRunPerByte <= block.length;
    return layout.pixels() / mostPixelsPerByte <= block.length;
}

void takeStoredBits(const DicomHeader &header, PixelLayout &layout)
{
    const long stored = header.integer(tags::bitsStored, layout.bitsAllocated);
    const bool usable = stored > 0 && stored < static_cast<long>(layout.bitsAllocated);
    layout.bitsStored = usable ? static_cast<unsigned>(stored) : layout.bitsAllocated;
    const long high = header.integer(tags::highBit, 0);
    const bool highUsable =
        high >= static_cast<long>(layout.bitsStored) - 1 && high < static_cast<long>(layout.bitsAllocated);
    layout.highBit = highUsable ? static_cast<unsigned>(high) : layout.bitsStored - 1;
}

} // namespace

std::string pixelTypeName(const DicomHeader &header)
{
    long bits = header.integer(tags::bitsAllocated, 16);
    if (bits == 64)
        return "FD";
    if (bits > 8 && bits < 16)
        bits = 16;
    if (bits == 24)
        bits = 8;
    return std::to_string(bits) + (header.integer(tags::pixelRepresentation, 0) == 0 ? 'U' : 'S');
}

int voxelType(const std::string &pixelType, double intercept)
{
    static const std::map<std::string, VoxelTypes> types{
        {"8S", {MERV::TypeChar, MERV::TypeChar}},    {"8U", {MERV::TypeUChar, MERV::TypeChar}},
        {"16S", {MERV::TypeShort, MERV::TypeShort}}, {"16U", {MERV::TypeUShort, MERV::TypeShort}},
        {"32S", {MERV::TypeInt, MERV::TypeInt}},     {"32U", {MERV::TypeUInt, MERV::TypeInt}},
        {"FD", {MERV::TypeDouble, MERV::TypeDouble}}};
    const auto found = types.find(pixelType);
    if (found == types.end())
        return 0;
    return intercept < 0 ? found->second.withNegativeIntercept : found->second.plain;
}

std::optional<PixelLayout> pixelLayout(const DicomHeader &header)
{
    constexpr long largest = std::numeric_limits<std::int32_t>::max();
    if (!header.isImage() || header.pixels.floatingPoint || header.integer(tags::samplesPerPixel, 1) != 1 ||
        trimmed(header.text(tags::photometric)).starts_with("PALETTE"))
        return std::nullopt;
    const long width = header.integer(tags::columns, 0);
    const long height = header.integer(tags::rows, 0);
    const long frames = frameCount(header);
    const long bits = header.integer(tags::bitsAllocated, 16);
    if (width > 0xFFFF || height > 0xFFFF || frames < 1 || frames > largest ||
        (bits != 8 && bits != 16 && bits != 32 && bits != 64))
        return std::nullopt;
    PixelLayout layout;
    layout.width = static_cast<std::uint32_t>(width);
    layout.height = static_cast<std::uint32_t>(height);
    layout.frames = static_cast<std::uint32_t>(frames);
    layout.bitsAllocated = static_cast<unsigned>(bits);
    layout.isSigned = header.integer(tags::pixelRepresentation, 0) != 0;
    takeStoredBits(header, layout);
    return canHold(header, layout) ? std::optional(layout) : std::nullopt;
}

bool needsLibrary(const DicomHeader &header)
{
    return header.pixels.encapsulated && header.transferSyntax != runLengthSyntax;
}

bool readPixels(const DicomHeader &header, const PixelLayout &layout, std::span<char> out)
{
    if (!header.pixels.encapsulated) {
        if (!readNative(header, layout, out))
            return false;
        maskPixels(out, layout);
        return true;
    }
    const std::optional<std::vector<std::string>> fragments = readFragments(header);
    if (!fragments)
        return false;
    const bool decoded = needsLibrary(header) ? decodeFragments(header, layout, *fragments, out)
                                              : readRunLength(*fragments, layout, out);
    if (decoded)
        maskPixels(out, layout);
    return decoded;
}

} // namespace dicom
