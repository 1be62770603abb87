#include "serialization/dicom/DicomParser.h"

#include "serialization/dicom/ByteReader.h"
#include "serialization/dicom/DicomDictionary.h"
#include "serialization/dicom/DicomText.h"
#include "serialization/dicom/LibraryDecoder.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <sstream>
#include <string_view>

namespace dicom {

namespace {

constexpr std::uint32_t undefinedLength = 0xFFFFFFFF;
constexpr Tag itemStart = makeTag(0xFFFE, 0xE000);
constexpr Tag itemEnd = makeTag(0xFFFE, 0xE00D);
constexpr Tag sequenceEnd = makeTag(0xFFFE, 0xE0DD);
constexpr int deepestNesting = 32;
// Values without a known representation are kept as text up to this length.
constexpr std::uint64_t longestUnknownText = 1 << 16;
// Empty elements take more memory than they have bytes in the file; no real file has nearly as many.
constexpr std::size_t mostElements = 16384;
constexpr std::size_t preambleBytes = 128;

constexpr std::string_view implicitLittleEndian = "1.2.840.10008.1.2";
constexpr std::string_view explicitBigEndian = "1.2.840.10008.1.2.2";
constexpr std::string_view deflatedLittleEndian = "1.2.840.10008.1.2.1.99";

struct Encoding
{
    bool explicitRepresentation = true;
    bool bigEndian = false;
};

struct ElementHead
{
    Tag tag = 0;
    ValueRepresentation representation{};
    std::uint32_t length = 0;

    bool undefined() const { return length == undefinedLength; }
    bool is(std::string_view name) const { return name == std::string_view(representation.data(), 2); }
};

std::uint32_t number(const char *bytes, std::size_t count, bool bigEndian)
{
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < count; ++i)
        value = (value << 8U) | static_cast<unsigned char>(bytes[bigEndian ? i : count - 1 - i]);
    return value;
}

bool oneOf(const ElementHead &head, std::initializer_list<std::string_view> names)
{
    return std::any_of(names.begin(), names.end(), [&head](std::string_view name) { return head.is(name); });
}

bool hasLongLength(const ElementHead &head)
{
    return oneOf(head, {"OB", "OD", "OF", "OL", "OV", "OW", "SQ", "SV", "UC", "UN", "UR", "UT", "UV"});
}

bool isRepresentation(const char *letters)
{
    return letters[0] >= 'A' && letters[0] <= 'Z' && letters[1] >= 'A' && letters[1] <= 'Z';
}

class Parser
{
public:
    Parser(std::istream &stream, std::uint64_t size)
        : reader(stream, size)
    {}

    std::optional<DicomHeader> parse();

private:
    bool findStart();
    void readMetaInformation();
    Encoding dataSetEncoding();
    void readDataSet();
    bool readHead(ElementHead &head, Encoding encoding);
    bool readElement(const ElementHead &head, Encoding encoding);
    bool readPixelBlock(const ElementHead &head, Encoding encoding);
    bool readPerFrameGroups(const ElementHead &head, Encoding encoding);
    bool readValue(const ElementHead &head, Encoding encoding);
    std::string textInFirstItems(std::initializer_list<Tag> path, std::uint64_t length, Encoding encoding);
    bool skipValue(const ElementHead &head, Encoding encoding, int depth);
    bool skipSequence(Encoding encoding, int depth);
    bool skipItem(Encoding encoding, int depth);
    bool peek(char *bytes, std::size_t count);

    ByteReader reader;
    DicomHeader header;
    bool signedPixels = false; // decides tags that may be signed or unsigned
};

bool Parser::peek(char *bytes, std::size_t count)
{
    const std::uint64_t start = reader.position();
    return reader.read(bytes, count) && reader.seek(start);
}

// Stands behind the preamble, or at the start of a file that has none but begins like a data set.
bool Parser::findStart()
{
    std::array<char, preambleBytes + 4> start{};
    if (reader.remaining() >= start.size()) {
        if (!reader.read(start.data(), start.size()))
            return false;
        if (std::string_view(start.data() + preambleBytes, 4) == "DICM")
            return true;
        reader.seek(0);
    }
    std::array<char, 8> first{};
    if (!peek(first.data(), first.size()))
        return false;
    const std::uint32_t group = number(first.data(), 2, false);
    return group == 0x0002 || group == 0x0008 || group == 0x0800;
}

// Group 0002 is always explicit and little endian.
void Parser::readMetaInformation()
{
    constexpr unsigned metaGroup = 0x0002;
    ElementHead head;
    std::uint64_t start = reader.position();
    while (header.elements.size() < mostElements && readHead(head, Encoding()) &&
           head.tag >> 16U == metaGroup && readElement(head, Encoding()))
        start = reader.position();
    reader.seek(start);
    header.transferSyntax = header.text(tags::transferSyntax);
}

// What the file says, corrected by what its first element looks like: the two do disagree in the field.
Encoding Parser::dataSetEncoding()
{
    const std::string &syntax = header.transferSyntax;
    Encoding encoding{syntax != implicitLittleEndian, syntax == explicitBigEndian};
    std::array<char, 6> first{};
    if (!peek(first.data(), first.size()))
        return encoding;
    encoding.explicitRepresentation = isRepresentation(first.data() + 4);
    if (syntax.empty())
        encoding.bigEndian = number(first.data(), 2, false) == 0x0800;
    return encoding;
}

std::optional<DicomHeader> Parser::parse()
{
    if (!findStart())
        return std::nullopt;
    readMetaInformation();
    if (!isDeflated(header))
        readDataSet();
    if (header.elements.empty())
        return std::nullopt;
    return std::move(header);
}

void Parser::readDataSet()
{
    const Encoding encoding = dataSetEncoding();
    header.bigEndian = encoding.bigEndian;
    ElementHead head;
    while (reader.remaining() > 0 && header.elements.size() < mostElements && readHead(head, encoding)) {
        if (!readElement(head, encoding))
            return;
    }
}

bool Parser::readHead(ElementHead &head, Encoding encoding)
{
    std::array<char, 8> bytes{};
    if (!reader.read(bytes.data(), bytes.size()))
        return false;
    head.tag =
        makeTag(number(bytes.data(), 2, encoding.bigEndian), number(bytes.data() + 2, 2, encoding.bigEndian));
    head.representation = {};
    const bool delimiter = (head.tag >> 16U) == 0xFFFE;
    if (delimiter || !encoding.explicitRepresentation || !isRepresentation(bytes.data() + 4)) {
        head.length = number(bytes.data() + 4, 4, encoding.bigEndian);
        if (!delimiter)
            head.representation = dictionaryRepresentation(head.tag, signedPixels);
        return true;
    }
    head.representation = {bytes[4], bytes[5]};
    if (!hasLongLength(head)) {
        head.length = number(bytes.data() + 6, 2, encoding.bigEndian);
        return true;
    }
    std::array<char, 4> length{};
    if (!reader.read(length.data(), length.size()))
        return false;
    head.length = number(length.data(), length.size(), encoding.bigEndian);
    return true;
}

bool Parser::readElement(const ElementHead &head, Encoding encoding)
{
    switch (head.tag) {
    case tags::pixelData:
    case tags::floatPixelData:
    case tags::doublePixelData:
        return readPixelBlock(head, encoding);
    case tags::perFrameGroups:
        return readPerFrameGroups(head, encoding);
    default:
        break;
    }
    if (head.is("SQ") || head.undefined())
        return skipValue(head, encoding, 0);
    return readValue(head, encoding);
}

bool Parser::readPixelBlock(const ElementHead &head, Encoding encoding)
{
    DicomElement element{head.tag, head.representation, encoding.bigEndian, true, {}};
    header.elements.push_back(element);
    if (!header.pixels.present) {
        header.pixels.present = true;
        header.pixels.floatingPoint = head.tag != tags::pixelData;
        header.pixels.encapsulated = head.undefined();
        header.pixels.words = head.is("OW");
        header.pixels.offset = reader.position();
        header.pixels.length =
            head.undefined() ? reader.remaining() : std::min<std::uint64_t>(head.length, reader.remaining());
    }
    return skipValue(head, encoding, 0);
}

bool Parser::readPerFrameGroups(const ElementHead &head, Encoding encoding)
{
    const std::uint64_t start = reader.position();
    const std::uint64_t length =
        head.undefined() ? reader.remaining() : std::min<std::uint64_t>(head.length, reader.remaining());
    header.perFramePixelSpacing =
        textInFirstItems({tags::pixelMeasures, tags::pixelSpacing}, length, encoding);
    return reader.seek(start) && skipValue(head, encoding, 0);
}

bool Parser::readValue(const ElementHead &head, Encoding encoding)
{
    if (head.length > reader.remaining())
        return false;
    DicomElement element{head.tag, head.representation, encoding.bigEndian, false, {}};
    const bool unknown = head.is("UN");
    element.binary = head.length > 0 && (oneOf(head, {"OB", "OD", "OF", "OL", "OV", "OW"}) ||
                                         (unknown && head.length > longestUnknownText));
    if (element.binary) {
        header.elements.push_back(std::move(element));
        return reader.skip(head.length);
    }
    if (unknown && encoding.explicitRepresentation)
        element.representation = dictionaryRepresentation(head.tag, signedPixels);
    element.value.resize(head.length);
    if (!reader.read(element.value.data(), element.value.size()))
        return false;
    header.elements.push_back(std::move(element));
    if (head.tag == tags::pixelRepresentation)
        signedPixels = header.integer(tags::pixelRepresentation, 0) != 0;
    return true;
}

// Follows `path` through the first items of nested sequences, the reader standing at the value of the
// outermost one; `length` bounds it. Gives the value of the last tag, empty when the path does not exist.
std::string Parser::textInFirstItems(std::initializer_list<Tag> path, std::uint64_t length, Encoding encoding)
{
    std::uint64_t end = reader.position() + length;
    ElementHead head;
    for (const Tag tag : path) {
        if (!readHead(head, encoding) || head.tag != itemStart)
            return {};
        if (!head.undefined())
            end = std::min(end, reader.position() + head.length);
        while (true) {
            if (reader.position() >= end || !readHead(head, encoding) || head.tag == itemEnd)
                return {};
            if (head.tag == tag)
                break;
            if (!skipValue(head, encoding, 0))
                return {};
        }
    }
    if (head.length > reader.remaining())
        return {};
    std::string value(head.length, '\0');
    return reader.read(value.data(), value.size()) ? std::string(trimmed(value)) : std::string();
}

bool Parser::skipValue(const ElementHead &head, Encoding encoding, int depth)
{
    if (!head.undefined())
        return reader.skip(head.length);
    // A value of unknown representation and length is a sequence in implicit form (PS3.5, 6.2.2, note 2).
    return skipSequence(head.is("UN") ? Encoding{false, false} : encoding, depth + 1);
}

bool Parser::skipSequence(Encoding encoding, int depth)
{
    ElementHead head;
    while (depth <= deepestNesting && readHead(head, encoding)) {
        if (head.tag == sequenceEnd)
            return true;
        if (head.tag != itemStart)
            return false;
        if (!(head.undefined() ? skipItem(encoding, depth) : reader.skip(head.length)))
            return false;
    }
    return false;
}

bool Parser::skipItem(Encoding encoding, int depth)
{
    ElementHead head;
    while (readHead(head, encoding)) {
        if (head.tag == itemEnd)
            return true;
        if (!skipValue(head, encoding, depth))
            return false;
    }
    return false;
}

} // namespace

std::optional<DicomHeader> parseHeader(std::istream &stream, std::uint64_t size)
{
    return Parser(stream, size).parse();
}

bool isDeflated(const DicomHeader &header)
{
    return header.inflated.empty() && header.transferSyntax == deflatedLittleEndian;
}

std::optional<DicomHeader> readHeader(const std::string &path)
{
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error))
        return std::nullopt;
    const std::uint64_t size = std::filesystem::file_size(path, error);
    std::ifstream stream(path, std::ios::binary);
    if (error || !stream)
        return std::nullopt;
    std::optional<DicomHeader> header = parseHeader(stream, size);
    if (header)
        header->path = path;
    return header;
}

std::optional<DicomHeader> readDeflatedHeader(DicomHeader metaInformation)
{
    std::optional<std::string> inflated = inflateFile(metaInformation.path);
    if (!inflated)
        return std::nullopt;
    std::istringstream stream(*inflated);
    std::optional<DicomHeader> header = parseHeader(stream, inflated->size());
    if (!header)
        return std::nullopt;
    header->path = std::move(metaInformation.path);
    header->inflated = std::move(*inflated);
    return header;
}

} // namespace dicom
