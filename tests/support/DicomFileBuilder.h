#pragma once

#include "tests/support/Files.h" // the folders that its files go to

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <utility>
#include <vector>

// Makes DICOM files byte by byte, so that what tests expect of the reader does not come from our own writer.
// Elements are written in the order of their tags; set() replaces.
class DicomFileBuilder
{
public:
    enum class Encoding
    {
        explicitLittle,
        implicitLittle,
        explicitBig
    };

    explicit DicomFileBuilder(Encoding dataSetEncoding = Encoding::explicitLittle)
        : encoding(dataSetEncoding)
    {}

    void text(std::uint32_t tag, const std::string &vr, std::string value)
    {
        if (value.size() % 2 != 0)
            value += vr == "UI" ? '\0' : ' ';
        elements[tag] = {vr, std::move(value), {}, 0, {}};
    }
    // Numbers of `width` bytes each.
    void numbers(std::uint32_t tag, const std::string &vr, std::vector<std::uint64_t> values, unsigned width)
    {
        elements[tag] = {vr, {}, std::move(values), width, {}};
    }
    void us(std::uint32_t tag, unsigned value) { numbers(tag, "US", {value}, 2); }
    // Bytes that stand behind the element's tag and representation as they are, length field included.
    void raw(std::uint32_t tag, const std::string &vr, std::string lengthAndValue)
    {
        elements[tag] = {vr, {}, {}, 0, std::move(lengthAndValue)};
    }
    void remove(std::uint32_t tag) { elements.erase(tag); }
    void syntax(std::string uid) { transferSyntax = std::move(uid); }

    // The whole file: preamble, meta information and data set.
    std::string bytes() const
    {
        DicomFileBuilder meta;
        meta.text(0x00020010, "UI", transferSyntax.empty() ? defaultSyntax() : transferSyntax);
        std::string file;
        file.resize(128);
        file += "DICM";
        DicomFileBuilder length;
        length.numbers(0x00020000, "UL", {meta.dataSet().size()}, 4);
        file += length.dataSet();
        file += meta.dataSet();
        file += dataSet();
        return file;
    }

    std::string dataSet() const
    {
        std::string out;
        for (const auto &[tag, element] : elements)
            append(out, tag, element);
        return out;
    }

    void write(const std::filesystem::path &path) const
    {
        std::ofstream stream(path, std::ios::binary);
        const std::string content = bytes();
        stream.write(content.data(), static_cast<std::streamsize>(content.size()));
    }

    // `value` in `width` bytes of this encoding.
    std::string number(std::uint64_t value, unsigned width) const
    {
        std::string out;
        for (unsigned i = 0; i < width; ++i) {
            const unsigned byte = encoding == Encoding::explicitBig ? width - 1 - i : i;
            out += static_cast<char>((value >> (8 * byte)) & 0xFFU);
        }
        return out;
    }

private:
    struct Element
    {
        std::string vr;
        std::string text;
        std::vector<std::uint64_t> values;
        unsigned width = 0;
        std::string raw;
    };

    std::string defaultSyntax() const
    {
        switch (encoding) {
        case Encoding::implicitLittle:
            return "1.2.840.10008.1.2";
        case Encoding::explicitBig:
            return "1.2.840.10008.1.2.2";
        default:
            return "1.2.840.10008.1.2.1";
        }
    }

    static bool isLong(const std::string &vr)
    {
        return vr == "OB" || vr == "OW" || vr == "OF" || vr == "SQ" || vr == "UN" || vr == "UT";
    }

    void append(std::string &out, std::uint32_t tag, const Element &element) const
    {
        out += number(tag >> 16U, 2) + number(tag & 0xFFFFU, 2);
        const bool named = encoding != Encoding::implicitLittle;
        if (named)
            out += element.vr;
        if (named && isLong(element.vr))
            out += std::string(2, '\0');
        if (!element.raw.empty()) {
            out += element.raw;
            return;
        }
        std::string value = element.text;
        for (const std::uint64_t n : element.values)
            value += number(n, element.width);
        if (value.size() % 2 != 0)
            value += '\0';
        out += number(value.size(), named && !isLong(element.vr) ? 2 : 4) + value;
    }

    Encoding encoding;
    std::string transferSyntax;
    std::map<std::uint32_t, Element> elements;
};

// One 16-bit slice with the tags of an ordinary MR image. Position and distances in mm.
inline DicomFileBuilder
dicomSlice(unsigned width, unsigned height, const std::vector<std::uint64_t> &pixels, double zMm,
           DicomFileBuilder::Encoding encoding = DicomFileBuilder::Encoding::explicitLittle)
{
    DicomFileBuilder file(encoding);
    file.text(0x00080016, "UI", "1.2.840.10008.5.1.4.1.1.4"); // MR Image Storage
    file.text(0x0008103E, "LO", "knee");
    file.text(0x00100010, "PN", "Doe^Jane");
    file.text(0x00180050, "DS", "3");
    file.text(0x00180081, "DS", "9.2");
    file.text(0x00180088, "DS", "4");
    file.text(0x0020000E, "UI", "1.2.3");
    file.text(0x00200013, "IS", "1");
    file.text(0x00200032, "DS", "10\\20\\" + std::to_string(zMm));
    file.text(0x00200037, "DS", "1\\0\\0\\0\\1\\0");
    file.text(0x00201041, "DS", std::to_string(zMm));
    file.us(0x00280002, 1);
    file.text(0x00280004, "CS", "MONOCHROME2");
    file.us(0x00280010, height);
    file.us(0x00280011, width);
    file.text(0x00280030, "DS", "0.5\\0.25"); // row distance (y), then column distance (x)
    file.us(0x00280100, 16);
    file.us(0x00280101, 16);
    file.us(0x00280102, 15);
    file.us(0x00280103, 0);
    file.numbers(0x7FE00010, "OW", pixels, 2);
    return file;
}
