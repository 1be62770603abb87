// write_fuzz_seeds <folder>: small good files of every format, one folder per fuzz target.
#include "Common/Analyze.h"
#include "Common/MetaImage.h"
#include "Common/Prs.h"
#include "Common/Vis.h"
#include "fuzz/FuzzInput.h"
#include "tests/endurance/EditSource.h"
#include "tests/formats/SlicBytes.h"
#include "tests/support/DicomFileBuilder.h"
#include "tests/support/Files.h"

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>

namespace {

using ImagePointer = std::unique_ptr<MERV::Image>;

constexpr int dataTypes[] = {MERV::TypeChar, MERV::TypeUChar, MERV::TypeShort, MERV::TypeUShort,
                             MERV::TypeInt,  MERV::TypeUInt,  MERV::TypeFloat, MERV::TypeDouble};

ImagePointer sampleImage(int dataType, int frames, int channels)
{
    ImagePointer image(MERV::createImage(dataType));
    image->setDimensions(3, 2, 2, frames, channels);
    for (std::uint64_t i = 0; i < image->getValueCount(); ++i)
        image->setValue(static_cast<float>(i), i);
    image->computeMinMax();
    image->setSpacing(0.5f, 0.25f, 3.0f, 1.0f);
    image->setMetaData("Modality", "MR");
    return image;
}

class SeedFolder
{
public:
    SeedFolder(const std::filesystem::path &parent, const char *target)
        : folder(parent / target)
    {
        std::filesystem::create_directories(folder);
    }
    void add(const std::string &bytes)
    {
        std::ofstream(folder / ("input" + std::to_string(count++)), std::ios::binary) << bytes;
    }
    std::filesystem::path scratch() const { return folder / "scratch"; }
    void removeScratch() const
    {
        for (const char *extension : {".mhd", ".raw", ".hdr", ".img"})
            std::filesystem::remove(scratch().string() + extension);
    }

private:
    std::filesystem::path folder;
    int count = 0;
};

template <class T>
void store(std::string &bytes, std::size_t offset, T value)
{
    std::memcpy(bytes.data() + offset, &value, sizeof value);
}

void addMetaImages(SeedFolder &seeds, int type)
{
    const ImagePointer image = sampleImage(type, 2, type % 3 + 1);
    MERV::saveMetaImage(seeds.scratch().c_str(), image.get());
    std::string header = contentOf(seeds.scratch().string() + ".mhd");
    const std::string voxels = contentOf(seeds.scratch().string() + ".raw");
    header.replace(header.find("scratch.raw"), 11, "v.raw");
    seeds.add(header);
    const std::string local = header.substr(0, header.find("v.raw")) + "LOCAL\n";
    seeds.add("HeaderSize = -1\nElementByteOrderMSB = True\n" + local + voxels);
}

void writeMetaImages(const std::filesystem::path &parent)
{
    SeedFolder seeds(parent, "FuzzMetaImage");
    for (const int type : dataTypes)
        addMetaImages(seeds, type);
    seeds.removeScratch();
}

void writeAnalyzes(const std::filesystem::path &parent)
{
    SeedFolder seeds(parent, "FuzzAnalyze");
    for (const int type : {MERV::TypeUChar, MERV::TypeShort, MERV::TypeFloat}) {
        const ImagePointer image = sampleImage(type, 2, 1);
        MERV::saveAnalyze(seeds.scratch().c_str(), image.get());
        std::string header = contentOf(seeds.scratch().string() + ".hdr");
        const std::string voxels = contentOf(seeds.scratch().string() + ".img");
        seeds.add(header + voxels);
        for (std::size_t offset = 40; offset < 74; offset += 2)
            std::swap(header[offset], header[offset + 1]);
        seeds.add(header + voxels);
    }
    seeds.removeScratch();
}

void writeVis(const std::filesystem::path &parent)
{
    std::ostringstream stream;
    MERV::saveVis(stream, sampleImage(MERV::TypeShort, 1, 1).get(), "label", "comment", 0);
    for (const char *target : {"FuzzVis", "FuzzVisHead"})
        SeedFolder(parent, target).add(stream.str());
}

void writeSlic(const std::filesystem::path &parent)
{
    using namespace SlicBytes;
    SeedFolder seeds(parent, "FuzzSlic");
    const std::string points = point(1, 2, 3) + point(4, 6, 3) + point(0, 9, 3);
    const std::string fragment = chunk("FRAG", 5, name("bone") + chunk("SEGM", 6, name("x") + points));
    const std::string contour = chunk("CONT", 7, name("patella") + reference(5) + reference(8));
    seeds.add(chunk("SLIC", 1, name("knee") + fragment + contour));
    seeds.add(chunk("SLIC", 1, contour + chunk("WHAT", 0, "bytes") + fragment));
}

void writePrs(const std::filesystem::path &parent)
{
    SeedFolder seeds(parent, "FuzzPrs");
    std::string bytes(MERV::PrsHeader::size + 2 * MERV::PrsRecord::size + 2 * 3 * 2 * 2, '\0');
    constexpr std::int32_t fields[] = {0x0C140001, 2512, 2, 3, 2, 2, 16, 0};
    for (std::size_t i = 0; i < std::size(fields); ++i)
        store(bytes, 4 * i, fields[i]);
    store(bytes, 192, std::int32_t{2});
    store(bytes, 216, 0.5f);
    seeds.add(bytes);
}

void writeRaw12Bit(const std::filesystem::path &parent)
{
    SeedFolder seeds(parent, "FuzzRaw12Bit");
    for (const char *calibration : {"", "-1.0 1.0"}) {
        std::string bytes(288 + 3 * 2 * 2 * 2, 'x');
        store(bytes, 0, std::int32_t{815});
        store(bytes, 4, std::int16_t{288});
        bytes.replace(6, 4, "Head");
        bytes.replace(149, 17, std::string(calibration) + std::string(17 - std::strlen(calibration), '\0'));
        store(bytes, 190, std::int16_t{12});
        for (std::size_t axis = 0; axis < 3; ++axis)
            store(bytes, 200 + 8 * axis, 0.5);
        store(bytes, 232, std::int32_t{3});
        store(bytes, 236, std::int32_t{2});
        store(bytes, 240, std::int32_t{2});
        seeds.add(bytes);
    }
}

void writeBitmaps(const std::filesystem::path &parent)
{
    SeedFolder seeds(parent, "FuzzBitmap");
    for (const std::int16_t bits : {std::int16_t{8}, std::int16_t{24}, std::int16_t{32}}) {
        for (const std::int32_t height : {2, -2}) {
            std::string bytes(54 + 2 * 12, 'x');
            bytes.replace(0, 54, 54, '\0');
            bytes.replace(0, 2, "BM");
            store(bytes, 10, std::int32_t{54});
            store(bytes, 14, std::int32_t{40});
            store(bytes, 18, std::int32_t{3});
            store(bytes, 22, height);
            store(bytes, 28, bits);
            store(bytes, 38, std::int32_t{1000});
            store(bytes, 42, std::int32_t{2000});
            seeds.add(bytes);
        }
    }
}

void writeMicroPet(const std::filesystem::path &parent)
{
    std::string lines;
    for (int i = 0; i < 124; ++i)
        lines += "key_" + std::to_string(i) + (i % 2 == 0 ? " 1\n" : " 2\r\n");
    SeedFolder(parent, "FuzzMicroPet").add(lines);
}

// A slice of each plain encoding, and one in a run-length frame: two segments (high and low bytes) of one
// replicate run each (PS3.5, annex G).
std::vector<std::string> dicomFiles()
{
    using Encoding = DicomFileBuilder::Encoding;
    std::vector<std::string> files;
    for (const Encoding encoding :
         {Encoding::explicitLittle, Encoding::implicitLittle, Encoding::explicitBig})
        files.push_back(dicomSlice(3, 2, {1, 2, 3, 4, 5, 6}, 4.0, encoding).bytes());
    DicomFileBuilder runLength = dicomSlice(3, 2, {}, 4.0);
    runLength.syntax("1.2.840.10008.1.2.5");
    std::string frame = runLength.number(2, 4) + runLength.number(64, 4) + runLength.number(66, 4);
    frame.resize(64);
    frame += std::string("\xFB\1\xFB\7", 4);
    const std::string item("\xFE\xFF\0\xE0", 4);
    runLength.raw(0x7FE00010, "OB",
                  std::string(4, '\xFF') + item + std::string(4, '\0') + item +
                      runLength.number(frame.size(), 4) + frame + std::string("\xFE\xFF\xDD\xE0\0\0\0\0", 8));
    files.push_back(runLength.bytes());
    return files;
}

void writeDicom(const std::filesystem::path &parent)
{
    for (const char *target : {"FuzzDicom", "FuzzDcm"}) {
        SeedFolder seeds(parent, target);
        for (const std::string &file : dicomFiles())
            seeds.add(file);
    }
    SeedFolder series(parent, "FuzzDicomSeries");
    std::string stack;
    for (const double z : {8.0, 4.0, 12.0})
        stack += dicomSlice(3, 2, {1, 2, 3, 4, 5, 6}, z).bytes() + std::string(nextFile);
    series.add(stack);
    series.add(stack + dicomFiles().back());
}

void writeAdapters(const std::filesystem::path &parent)
{
    SeedFolder seeds(parent, "FuzzAdapters");
    char format = 0;
    for (const char *target : {"FuzzMetaImage", "FuzzBitmap", "FuzzAnalyze"}) {
        for (const char *input : {"input1", "input3"})
            seeds.add(format + contentOf(parent / target / input));
        ++format;
    }
}

void writeRecoveryNames(const std::filesystem::path &parent)
{
    SeedFolder seeds(parent, "FuzzRecoveryNames");
    for (const char *name :
         {"knee_1_2024-02-29T12.30.59.999+0100.slic", "a_b_12_2024-02-29T12.30.59.999-0330.slic",
          "knee_1_2024-02-29T12.30.59.999+0100.slic.Ab3dEf", "12.saved"})
        seeds.add(name);
}

void writeEdits(const std::filesystem::path &parent)
{
    constexpr std::size_t bytes = 700;
    SeedFolder seeds(parent, "FuzzEdits");
    for (unsigned seed = 0; seed < 6; ++seed) {
        std::vector<std::uint8_t> script = randomBytes(seed, bytes);
        script[0] = seed == 0 ? 0 : 1; // with workers or without
        seeds.add(std::string(script.begin(), script.end()));
    }
}

void addRawBlocks(SeedFolder &seeds, char type)
{
    const std::string size("\3\2\2\1\1", 5);
    const std::string voxels(3 * 2 * 2 * 8, 'v');
    seeds.add(std::string{type, 0} + size + voxels);
    seeds.add(std::string{type, 1} + size + "ElementDataFile = LOCAL\n" + voxels);
}

void writeRawBlocks(const std::filesystem::path &parent)
{
    SeedFolder seeds(parent, "FuzzRawBlock");
    for (char type = 0; type < 8; ++type)
        addRawBlocks(seeds, type);
}

} // namespace

int main(int count, char **arguments)
{
    if (count != 2) {
        std::cerr << "usage: write_fuzz_seeds <folder>\n";
        return 2;
    }
    const std::filesystem::path folder = arguments[1];
    writeMetaImages(folder);
    writeAnalyzes(folder);
    writeVis(folder);
    writeSlic(folder);
    writePrs(folder);
    writeRaw12Bit(folder);
    writeBitmaps(folder);
    writeRawBlocks(folder);
    writeMicroPet(folder);
    writeDicom(folder);
    writeAdapters(folder);
    writeRecoveryNames(folder);
    writeEdits(folder);
    return 0;
}
