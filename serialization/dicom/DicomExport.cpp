#include "serialization/dicom/DicomExport.h"

#include "Common/ImageTypes.h"
#include "Common/Progress.h"
#include "serialization/dicom/DicomDictionary.h"

#include <gdcmDataElement.h>
#include <gdcmUIDGenerator.h>
#include <gdcmUIDs.h>
#include <gdcmWriter.h>

#include <array>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <initializer_list>
#include <iostream>
#include <limits>
#include <string_view>
#include <vector>

namespace dicom {

namespace {

// The same for all exports.
constexpr const char *exportUid = "1.2.3.4.";
constexpr const char *manufacturer = "MERV, ORLO";
constexpr const char *institutionAddress = "Tevora workstation for the segmentation of knee cartilage";

// Shares of the time of an export, each counted from the start.
constexpr double mirrorShare = 0.1;
constexpr double writingShare = 0.9;

// Mirrors y and z for as long as it lives.
class MirroredImage
{
public:
    explicit MirroredImage(MERV::Image &mirrored)
        : image(mirrored)
    {
        const MERV::ProgressStage stage(mirrorShare);
        flip();
    }
    ~MirroredImage() { flip(); }
    MirroredImage(const MirroredImage &) = delete;
    MirroredImage &operator=(const MirroredImage &) = delete;

private:
    void flip() { image.mirror(false, true, true, false, false); }

    MERV::Image &image;
};

// "%f" and "%i" whatever the locale.
std::string real(float value)
{
    std::array<char, 64> text{};
    const auto end =
        std::to_chars(text.data(), text.data() + text.size(), double(value), std::chars_format::fixed, 6).ptr;
    return {text.data(), end};
}

std::string reals(std::initializer_list<float> values)
{
    std::string text;
    for (const float value : values)
        text += (text.empty() ? "" : "\\") + real(value);
    return text;
}

unsigned bytesPerVoxel(int dataType)
{
    switch (dataType) {
    case MERV::TypeUChar:
        return 1;
    case MERV::TypeShort:
    case MERV::TypeUShort:
        return 2;
    default:
        return 0;
    }
}

bool isUnsigned(const MERV::Image &image)
{
    return image.getDataType() % 2 != 0;
}

class SliceFile
{
public:
    SliceFile(const MERV::Image &source, int sliceIndex)
        : image(source)
        , z(sliceIndex)
    {
        setSliceHeader(exportUid, bytesPerVoxel(image.getDataType()));
        insertRequired();
    }

    void setPixels(const char *pixels, std::size_t size)
    {
        std::vector<char> bytes(pixels, pixels + size);
        if (size % 2 != 0)
            bytes.push_back('\0');
        gdcm::DataElement element{gdcm::Tag(tags::pixelData)};
        element.SetVR(gdcm::VR::OW);
        element.SetByteValue(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
        writer.GetFile().GetDataSet().Replace(element);
    }

    bool write(const std::string &path)
    {
        // The library ends the process when it cannot open a file itself.
        std::ofstream stream(path, std::ios::binary);
        if (!stream)
            return false;
        writer.SetStream(stream);
        return writer.Write() && stream.flush().good();
    }

private:
    void setSliceHeader(const std::string &uid, unsigned voxelBytes);
    void insertRequired();
    void insert(unsigned group, unsigned number, std::string value);
    void insertNumber(unsigned group, unsigned number, long value);
    std::string sliceOrientation() const;
    std::string slicePosition() const;

    const MERV::Image &image;
    int z;
    gdcm::Writer writer;
};

// A text element; the standard pads texts to even length, UIDs with a zero byte.
void SliceFile::insert(unsigned group, unsigned number, std::string value)
{
    const Tag tag = makeTag(group, number);
    const ValueRepresentation representation = dictionaryRepresentation(tag, !isUnsigned(image));
    const std::string name(representation.data(), representation.size());
    if (value.size() % 2 != 0)
        value += name == "UI" ? '\0' : ' ';
    gdcm::DataElement element{gdcm::Tag(tag)};
    element.SetVR(gdcm::VR::GetVRType(name.c_str()));
    element.SetByteValue(value.data(), static_cast<std::uint32_t>(value.size()));
    writer.GetFile().GetDataSet().Replace(element);
}

// A number in the representation of its tag: two bytes, or decimal text.
void SliceFile::insertNumber(unsigned group, unsigned number, long value)
{
    const ValueRepresentation vr = dictionaryRepresentation(makeTag(group, number), !isUnsigned(image));
    if (vr == ValueRepresentation{'U', 'S'} || vr == ValueRepresentation{'S', 'S'}) {
        const auto bits = static_cast<std::uint16_t>(value);
        insert(group, number, {static_cast<char>(bits & 0xFFU), static_cast<char>(bits >> 8U)});
    } else {
        insert(group, number, std::to_string(value));
    }
}

std::string SliceFile::sliceOrientation() const
{
    // All nine values, by rows; readers take the first six.
    const float *o = image.getOrientation();
    return reals({o[0], o[1], o[2], o[3], o[4], o[5], o[6], o[7], o[8]});
}

std::string SliceFile::slicePosition() const
{
    const float *position = image.getPosition();
    const float *normal = image.getOrientation() + 6;
    const float distance = static_cast<float>(z) * image.getSpacing(2);
    return reals({position[0] + distance * normal[0], position[1] + distance * normal[1],
                  position[2] + distance * normal[2]});
}

void SliceFile::setSliceHeader(const std::string &uid, unsigned voxelBytes)
{
    const long bits = static_cast<long>(voxelBytes) * 8;
    insert(0x0008, 0x0070, manufacturer);
    insert(0x0008, 0x0080, manufacturer);
    insert(0x0008, 0x0080, institutionAddress); // the same tag on purpose: the address replaces the name
    insert(0x0010, 0x0010, image.getName());
    insertNumber(0x0028, 0x0011, image.getWidth());
    insertNumber(0x0028, 0x0010, image.getHeight());
    insertNumber(0x0028, 0x0100, bits);
    insertNumber(0x0028, 0x0101, bits);
    insertNumber(0x0028, 0x0102, bits - 1);
    insertNumber(0x0028, 0x0103, isUnsigned(image) ? 0 : 1);
    insertNumber(0x0028, 0x0002, image.getChannels());
    insert(0x0028, 0x0030, reals({image.getSpacing(1), image.getSpacing(0)}));
    insert(0x0018, 0x0088, real(image.getSpacing(2)));
    insert(0x0018, 0x0050, real(image.getSpacing(2)));
    insert(0x0020, 0x0037, sliceOrientation());
    insert(0x0020, 0x0032, slicePosition());
    insertNumber(0x0028, 0x0106, static_cast<long>(image.getMinimum()));
    insertNumber(0x0028, 0x0107, static_cast<long>(image.getMaximum()));
    insert(0x0028, 0x1051, real(image.getWindow(0)));
    insert(0x0028, 0x1050, real(image.getLevel(0)));
    insertNumber(0x0020, 0x0013, z);
    insert(0x0020, 0x000D, uid);
    insert(0x0020, 0x000E, uid);
}

// What a file needs beside the header to be read with its place in space by other programs.
void SliceFile::insertRequired()
{
    const std::string storage = gdcm::UIDs::GetUIDString(gdcm::UIDs::MRImageStorage);
    insert(0x0008, 0x0016, storage);
    insert(0x0008, 0x0018, gdcm::UIDGenerator().Generate());
    const bool colour = image.getChannels() == 3;
    insert(0x0028, 0x0004, colour ? "RGB" : "MONOCHROME2");
    if (colour)
        insertNumber(0x0028, 0x0006, 0);
    writer.GetFile().GetHeader().SetDataSetTransferSyntax(gdcm::TransferSyntax::ExplicitVRLittleEndian);
}

bool writeSlice(MERV::Image &image, int z, const std::string &directory)
{
    // Rows and columns are told as 16-bit numbers, the size of the pixels as one of 32 bits.
    constexpr int mostPixels = std::numeric_limits<std::uint16_t>::max();
    const std::size_t sliceBytes = image.getSliceStride() * bytesPerVoxel(image.getDataType());
    if (image.getWidth() > mostPixels || image.getHeight() > mostPixels ||
        sliceBytes >= std::numeric_limits<std::uint32_t>::max())
        return false;
    std::array<char, 32> name{};
    std::snprintf(name.data(), name.size(), "/slice%04i.dcm", z);
    SliceFile file(image, z);
    file.setPixels(static_cast<const char *>(image.getData()) + sliceBytes * static_cast<std::size_t>(z),
                   sliceBytes);
    return file.write(directory + name.data());
}

} // namespace

bool saveDicomSeries(MERV::Image &image, const std::string &directory)
{
    const MirroredImage mirrored(image);
    if (bytesPerVoxel(image.getDataType()) == 0) {
        if (image.getDataType() == MERV::TypeFloat)
            std::cout << "Error: Data Type FLOAT not applicable for DICOM export!" << std::endl;
        return false;
    }
    const MERV::ProgressStage stage(writingShare);
    bool complete = true;
    for (int z = 0; z < image.getDepth(); ++z) {
        MERV::reportProgress(static_cast<std::uint64_t>(z), static_cast<std::uint64_t>(image.getDepth()));
        if (!writeSlice(image, z, directory)) {
            std::cout << "Error: Could not write DICOM file!" << std::endl;
            complete = false;
        }
    }
    return complete;
}

} // namespace dicom
