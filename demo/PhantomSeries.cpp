#include "demo/PhantomSeries.h"

#include "demo/PhantomTruth.h"
#include "demo/PhantomVolume.h"

#include <gdcmDataElement.h>
#include <gdcmTrace.h>
#include <gdcmWriter.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iomanip>
#include <locale>
#include <ostream>
#include <span>
#include <sstream>
#include <system_error>
#include <vector>

namespace demo {
namespace {

constexpr const char *mrImageStorage = "1.2.840.10008.5.1.4.1.1.4";
constexpr const char *studyDate = "20260101";
constexpr const char *studyTime = "120000";
constexpr double outlineStepMm = 0.15;
constexpr int largestSize = 4096; // voxels along an axis

// At most 16 characters, as a decimal string may have.
std::string decimal(double value)
{
    std::array<char, 32> text{};
    const auto end =
        std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed, 6).ptr;
    std::string result(text.data(), end);
    result.erase(result.find_last_not_of('0') + 1);
    if (result.back() == '.')
        result.pop_back();
    return result == "-0" ? "0" : result;
}

std::string decimals(std::span<const double> values)
{
    std::string text;
    for (double value : values)
        text += (text.empty() ? "" : "\\") + decimal(value);
    return text;
}

// Everything that has an influence on the files.
std::string signature(const PhantomParameters &p)
{
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text << std::setprecision(17) << p.width << ' ' << p.height << ' ' << p.slices;
    for (const Point &triple : {p.spacingMm, p.tiltDegrees})
        for (double value : triple)
            text << ' ' << value;
    for (double value : {p.halfWidthMm, p.halfHeightMm, p.frontDepthMm, p.backDepthMm, p.coveredPart,
                         p.ridgeAcross, p.ridgeThicknessMm, p.rimThicknessMm, p.noiseSigma, p.echoTimeMs})
        text << ' ' << value;
    text << ' ' << p.seed << ' ' << p.mirrored << '\n'
         << p.patientName << '\n'
         << p.patientId << '\n'
         << p.seriesDescription << '\n';
    return text.str();
}

// FNV-1a of 64 bits.
std::uint64_t hash(const std::string &text, std::uint64_t start)
{
    std::uint64_t value = start;
    for (char c : text) {
        value ^= static_cast<unsigned char>(c);
        value *= 1099511628211u;
    }
    return value;
}

// Decimal digits of high * 2^64 + low.
std::string wideDecimal(std::uint64_t high, std::uint64_t low)
{
    std::array<std::uint32_t, 4> words{
        static_cast<std::uint32_t>(high >> 32), static_cast<std::uint32_t>(high),
        static_cast<std::uint32_t>(low >> 32), static_cast<std::uint32_t>(low)};
    std::string digits;
    while (std::any_of(words.begin(), words.end(), [](std::uint32_t word) { return word != 0; })) {
        std::uint64_t rest = 0;
        for (std::uint32_t &word : words) {
            rest = (rest << 32) | word;
            word = static_cast<std::uint32_t>(rest / 10);
            rest %= 10;
        }
        digits.push_back(static_cast<char>('0' + rest));
    }
    std::reverse(digits.begin(), digits.end());
    return digits.empty() ? "0" : digits;
}

// One file's data set; values are padded to even length as their type demands.
class Tags
{
public:
    explicit Tags(gdcm::DataSet &target)
        : dataSet(target)
    {}

    void text(std::uint16_t group, std::uint16_t element, gdcm::VR::VRType type, std::string value)
    {
        if (value.size() % 2 == 1)
            value.push_back(type == gdcm::VR::UI ? '\0' : ' ');
        bytes(group, element, type, value.data(), value.size());
    }
    void number(std::uint16_t element, std::uint16_t value) // group 0028, unsigned
    {
        const std::array<char, 2> little{static_cast<char>(value & 0xff), static_cast<char>(value >> 8)};
        bytes(0x0028, element, gdcm::VR::US, little.data(), little.size());
    }
    void voxels(std::uint16_t group, std::uint16_t element, gdcm::VR::VRType type,
                std::span<const std::int16_t> values)
    {
        std::vector<char> little;
        little.reserve(values.size() * 2);
        for (std::int16_t value : values) {
            const auto bits = static_cast<std::uint16_t>(value);
            little.push_back(static_cast<char>(bits & 0xff));
            little.push_back(static_cast<char>(bits >> 8));
        }
        bytes(group, element, type, little.data(), little.size());
    }

private:
    void bytes(std::uint16_t group, std::uint16_t element, gdcm::VR::VRType type, const char *data,
               std::size_t length)
    {
        gdcm::DataElement tag(gdcm::Tag(group, element));
        tag.SetVR(type);
        tag.SetByteValue(data, gdcm::VL(static_cast<std::uint32_t>(length)));
        dataSet.Insert(tag);
    }

    gdcm::DataSet &dataSet;
};

void addPatientAndStudy(Tags &tags, const PhantomParameters &p)
{
    using gdcm::VR;
    tags.text(0x0008, 0x0005, VR::CS, "ISO_IR 192");
    tags.text(0x0008, 0x0008, VR::CS, "DERIVED\\PRIMARY\\M\\OTHER");
    tags.text(0x0008, 0x0016, VR::UI, mrImageStorage);
    for (std::uint16_t date = 0x0020; date <= 0x0023; ++date) // study, series, acquisition, content
        tags.text(0x0008, date, VR::DA, studyDate);
    for (std::uint16_t time = 0x0030; time <= 0x0033; ++time)
        tags.text(0x0008, time, VR::TM, studyTime);
    tags.text(0x0008, 0x0050, VR::SH, "");
    tags.text(0x0008, 0x0060, VR::CS, "MR");
    tags.text(0x0008, 0x0070, VR::LO, "Tevora");
    tags.text(0x0008, 0x0090, VR::PN, "");
    tags.text(0x0008, 0x1030, VR::LO, "Knee phantom");
    tags.text(0x0008, 0x103e, VR::LO, p.seriesDescription);
    tags.text(0x0008, 0x1090, VR::LO, "Analytic knee phantom");
    tags.text(0x0010, 0x0010, VR::PN, p.patientName);
    tags.text(0x0010, 0x0020, VR::LO, p.patientId);
    tags.text(0x0010, 0x0030, VR::DA, "");
    tags.text(0x0010, 0x0040, VR::CS, "O");
    tags.text(0x0020, 0x000d, VR::UI, phantomUid(p, "study"));
    tags.text(0x0020, 0x000e, VR::UI, phantomUid(p, "series"));
    tags.text(0x0020, 0x0010, VR::SH, "1");
    tags.text(0x0020, 0x0011, VR::IS, "1");
    tags.text(0x0020, 0x0052, VR::UI, phantomUid(p, "frame of reference"));
    tags.text(0x0020, 0x0060, VR::CS, p.mirrored ? "L" : "R");
    tags.text(0x0020, 0x1040, VR::LO, "");
}

void addAcquisition(Tags &tags, const PhantomParameters &p)
{
    using gdcm::VR;
    tags.text(0x0018, 0x0015, VR::CS, "KNEE");
    tags.text(0x0018, 0x0020, VR::CS, "GR");
    tags.text(0x0018, 0x0021, VR::CS, "SP");
    tags.text(0x0018, 0x0022, VR::CS, "FS");
    tags.text(0x0018, 0x0023, VR::CS, "3D");
    tags.text(0x0018, 0x0050, VR::DS, decimal(p.spacingMm[2]));
    tags.text(0x0018, 0x0080, VR::DS, "20");
    tags.text(0x0018, 0x0081, VR::DS, decimal(p.echoTimeMs));
    tags.text(0x0018, 0x0083, VR::DS, "1");
    tags.text(0x0018, 0x0087, VR::DS, "1.5");
    tags.text(0x0018, 0x0088, VR::DS, decimal(p.spacingMm[2]));
    tags.text(0x0018, 0x0091, VR::IS, "1");
    tags.text(0x0018, 0x1030, VR::LO, "Phantom");
    tags.text(0x0018, 0x1314, VR::DS, "25");
    tags.text(0x0018, 0x5100, VR::CS, "FFS");
}

// Axial slices: rows run to the patient's left, columns to the back, slices upwards. The position is that of
// the centre of the first voxel, with the middle of the volume at the origin.
void addGeometry(Tags &tags, const PhantomParameters &p, int slice)
{
    using gdcm::VR;
    const Point position{0.5 * p.spacingMm[0] * (1 - p.width), 0.5 * p.spacingMm[1] * (1 - p.height),
                         p.spacingMm[2] * (slice + 0.5 * (1 - p.slices))};
    const std::array<double, 2> rowThenColumn{p.spacingMm[1], p.spacingMm[0]};
    tags.text(0x0020, 0x0012, VR::IS, "1");
    tags.text(0x0020, 0x0013, VR::IS, std::to_string(slice + 1));
    tags.text(0x0020, 0x0032, VR::DS, decimals(position));
    tags.text(0x0020, 0x0037, VR::DS, "1\\0\\0\\0\\1\\0");
    tags.text(0x0020, 0x1041, VR::DS, decimal(position[2]));
    tags.text(0x0028, 0x0030, VR::DS, decimals(rowThenColumn));
}

void addPixels(Tags &tags, const PhantomParameters &p, std::span<const std::int16_t> voxels)
{
    using gdcm::VR;
    const auto [low, high] = std::minmax_element(voxels.begin(), voxels.end());
    const double brightest = brightness(Tissue::Cartilage);
    tags.number(0x0002, 1);
    tags.text(0x0028, 0x0004, VR::CS, "MONOCHROME2");
    tags.number(0x0010, static_cast<std::uint16_t>(p.height));
    tags.number(0x0011, static_cast<std::uint16_t>(p.width));
    tags.number(0x0100, 16);
    tags.number(0x0101, 16);
    tags.number(0x0102, 15);
    tags.number(0x0103, 1);
    tags.voxels(0x0028, 0x0106, VR::SS, {&*low, 1});
    tags.voxels(0x0028, 0x0107, VR::SS, {&*high, 1});
    tags.text(0x0028, 0x1050, VR::DS, decimal(0.55 * brightest));
    tags.text(0x0028, 0x1051, VR::DS, decimal(1.1 * brightest));
    tags.voxels(0x7fe0, 0x0010, VR::OW, voxels);
}

bool writeSlice(const std::string &path, const PhantomParameters &p, int slice,
                std::span<const std::int16_t> voxels)
{
    gdcm::Writer writer;
    gdcm::File &file = writer.GetFile();
    file.GetHeader().SetDataSetTransferSyntax(gdcm::TransferSyntax::ExplicitVRLittleEndian);
    Tags tags(file.GetDataSet());
    addPatientAndStudy(tags, p);
    addAcquisition(tags, p);
    addGeometry(tags, p, slice);
    addPixels(tags, p, voxels);
    tags.text(0x0008, 0x0018, gdcm::VR::UI, phantomUid(p, "slice " + std::to_string(slice)));
    writer.SetFileName(path.c_str());
    return writer.Write();
}

bool writeText(const std::string &path, const std::function<void(std::ostream &)> &fill)
{
    std::ofstream stream(path, std::ios::binary);
    fill(stream);
    stream.close();
    return !stream.fail();
}

} // namespace

std::string phantomUid(const PhantomParameters &parameters, const std::string &role)
{
    const std::string text = signature(parameters) + role;
    // The two halves of a UUID of the custom kind (version 8, variant 10), as ISO/IEC 9834-8 numbers them.
    const std::uint64_t high = (hash(text, 14695981039346656037u) & ~0xf000ull) | 0x8000ull;
    const std::uint64_t low =
        (hash(text + "#", 1469598103934665603u) & 0x3fffffffffffffffull) | 0x8000000000000000ull;
    return "2.25." + wideDecimal(high, low);
}

bool writePhantomSeries(const std::string &folder, const PhantomParameters &parameters)
{
    for (int size : {parameters.width, parameters.height, parameters.slices})
        if (size < 1 || size > largestSize)
            return false;
    const std::filesystem::path series = std::filesystem::path(folder) / "series";
    std::error_code error;
    std::filesystem::create_directories(series, error);
    if (error)
        return false;
    gdcm::Trace::WarningOff();
    const std::vector<std::int16_t> voxels = phantomVoxels(parameters);
    const std::size_t sliceSize = voxels.size() / static_cast<std::size_t>(parameters.slices);
    for (int slice = 0; slice < parameters.slices; ++slice) {
        std::ostringstream name;
        name << "IM" << std::setw(4) << std::setfill('0') << slice + 1 << ".dcm";
        const std::span<const std::int16_t> values =
            std::span(voxels).subspan(static_cast<std::size_t>(slice) * sliceSize, sliceSize);
        if (!writeSlice((series / name.str()).string(), parameters, slice, values))
            return false;
    }
    return writeText(folder + "/truth.txt", [&](std::ostream &out) { writeTruth(out, parameters); }) &&
           writeText(folder + "/outlines.txt",
                     [&](std::ostream &out) { writeOutlines(out, parameters, outlineStepMm); });
}

} // namespace demo
