#include "Common/MetaImage.h"

#include "Common/Progress.h"
#include "mervlib/src/detail/Paths.h"
#include "mervlib/src/detail/RawBlock.h"
#include "mervlib/src/detail/Report.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <iomanip>
#include <list>
#include <string>
#include <string_view>
#include <vector>

namespace MERV {

namespace {

// --- writing ---

constexpr std::array typeNames{"CHAR",  "UCHAR", "SHORT", "USHORT", "INT",   "UINT",
                               "FLOAT", "",      "",      "",       "DOUBLE"};

std::string_view typeName(int dataType)
{
    return typeNames.at(static_cast<std::size_t>(dataType & 0xFF));
}

// The axes that a header tells: x and y always.
int writtenAxes(const Image &image)
{
    if (image.getFrames() != 1)
        return 4;
    return image.getDepth() != 1 ? 3 : 2;
}

// A line feed would end the line, and what follows would be read as a key.
std::string onOneLine(std::string text)
{
    std::replace(text.begin(), text.end(), '\n', ' ');
    return text;
}

void writeHeader(std::ostream &out, const Image &image, const std::string &dataName)
{
    const int axes = writtenAxes(image);
    out << "NDims = " << axes << "\nDimSize =";
    for (int axis = 0; axis < axes; ++axis)
        out << ' ' << image.getDimension(axis);
    out << "\nElementSpacing =";
    for (int axis = 0; axis < axes; ++axis)
        out << ' ' << image.getSpacing(axis);
    // Zeros whatever the position is, on purpose: it stands in the next line.
    out << "\nPosition =";
    for (int axis = 0; axis < axes; ++axis)
        out << " 0";
    const float *position = image.getPosition();
    out << "\nImagePositionPatient = " << position[0] << ' ' << position[1] << ' ' << position[2]
        << "\nElementByteOrderMSB = False\n";
    if (image.getChannels() > 1)
        out << "ElementNumberOfChannels = " << image.getChannels() << '\n';
    out << "ElementType = MET_" << typeName(image.getDataType()) << "\nElementDataFile = " << dataName
        << '\n';
    std::list<std::string> keys;
    image.getMetaDataKeys(keys);
    for (const std::string &key : keys)
        out << onOneLine(key) << " = " << onOneLine(image.getMetaData(key)) << '\n';
}

struct OutputFiles
{
    std::filesystem::path header;
    std::filesystem::path data;
    std::string dataName; // as the header tells it
};

int writeFiles(const OutputFiles &files, const Image *image, bool fixedDecimals)
{
    if (image == nullptr)
        return 1;
    std::ofstream header(files.header);
    header.imbue(std::locale::classic());
    if (fixedDecimals)
        header << std::fixed << std::setprecision(6);
    if (header)
        writeHeader(header, *image, files.dataName);
    if (!header.flush()) {
        detail::report("Warning: Couldn't write to file ", detail::pathText(files.header));
        return 1;
    }
    std::ofstream data(files.data, std::ios::binary);
    if (!data) {
        detail::report("Error: Could not create data file ", detail::pathText(files.data),
                       " while creating MetaImage image file structure.");
        return 1;
    }
    return image->save(data);
}

// A name that every file system takes, decided on UTF-16 units, so that it is the same on all systems.
std::string transcribedName(std::wstring_view name)
{
    std::string safe;
    for (const char16_t unit : detail::toUtf16(name)) {
        if (unit < 0x80) {
            safe += unit == u' ' ? '_' : static_cast<char>(unit);
            continue;
        }
        for (int shift = 0; shift < 16; shift += 4)
            safe += static_cast<char>('A' + (unit >> shift & 0xF));
    }
    return safe;
}

// --- reading ---

constexpr std::array readableTypes{TypeUChar, TypeChar, TypeUShort, TypeShort,
                                   TypeUInt,  TypeInt,  TypeFloat,  TypeDouble};

std::string without(std::string text, std::string_view characters)
{
    std::erase_if(text, [&](char c) { return characters.find(c) != std::string_view::npos; });
    return text;
}

std::string restOfLine(std::istream &stream)
{
    std::string line;
    std::getline(stream, line);
    return without(std::move(line), "\r");
}

std::string wordOfLine(std::istream &stream)
{
    return without(restOfLine(stream), " \t");
}

// The key before the next "="; lines without one are skipped. False at the end of the stream.
bool readKey(std::istream &stream, std::string &key)
{
    std::string text;
    if (!std::getline(stream, text, '=') || stream.eof())
        return false;
    key = without(text.substr(text.rfind('\n') + 1), " \t\r");
    return true;
}

// The image of one header and what has been read of it so far.
class HeaderReader
{
public:
    HeaderReader(std::filesystem::path path, const char *announcement)
        : headerPath(std::move(path))
        , loadingText(announcement)
    {}

    std::unique_ptr<Image> read()
    {
        std::ifstream stream = detail::openForReading(headerPath);
        stream.imbue(std::locale::classic());
        std::string key;
        while (!isLocal && stream && readKey(stream, key))
            if (!readEntry(stream, key))
                return nullptr;
        if (!isLoaded)
            return nullptr;
        finish();
        return std::move(image);
    }

private:
    // False for a header that cannot be an image.
    bool readEntry(std::istream &stream, const std::string &key)
    {
        if (key == "NDims")
            return readAxes(stream);
        if (key == "DimSize")
            return readPerAxis(stream, size);
        if (key == "ElementSpacing")
            return readPerAxis(stream, spacing);
        if (key == "Position") {
            std::array<float, 4> discarded;
            return readPerAxis(stream, discarded);
        }
        if (key == "ImagePositionPatient")
            stream >> position[0] >> position[1] >> position[2];
        else if (key == "ElementByteOrderMSB")
            readByteOrder(stream);
        else if (key == "ElementNumberOfChannels")
            stream >> channels;
        else if (key == "ElementType")
            return readType(stream);
        else if (key == "HeaderSize")
            readHeaderSize(stream);
        else if (key == "ElementDataFile")
            return loadData(wordOfLine(stream));
        else if (!key.empty())
            metaData[key] = restOfLine(stream);
        return true;
    }

    bool readAxes(std::istream &stream)
    {
        stream >> axes;
        restOfLine(stream);
        return axes >= 1 && axes <= 4;
    }

    // One number per axis; as many as stand on the line as long as the number of axes is not known.
    template <class T>
    bool readPerAxis(std::istream &stream, std::array<T, 4> &values)
    {
        if (axes != 0) {
            for (int axis = 0; axis < axes; ++axis)
                stream >> values[static_cast<std::size_t>(axis)];
            return true;
        }
        std::istringstream line(restOfLine(stream));
        line.imbue(std::locale::classic());
        T number;
        for (std::size_t axis = 0; axis < values.size() && line >> number; ++axis)
            values[axis] = number;
        return true;
    }

    // Only these two spellings mean the other byte order, on purpose.
    void readByteOrder(std::istream &stream)
    {
        const std::string value = wordOfLine(stream);
        isSwapped = value == "True" || value == "1";
    }

    bool readType(std::istream &stream)
    {
        const std::string name = wordOfLine(stream);
        for (const int type : readableTypes) {
            if (name != "MET_" + std::string(typeName(type)))
                continue;
            const bool isFirst = image == nullptr;
            image.reset(createImage(type));
            return isFirst;
        }
        detail::report("Error: Unknown MetaImage data type!");
        return false;
    }

    static void readHeaderSize(std::istream &stream)
    {
        std::int64_t bytes = 0;
        stream >> bytes;
        if (bytes != 0 && bytes != -1)
            detail::report("Warning: ", bytes, " bytes header");
    }

    bool loadData(const std::string &name)
    {
        const detail::ImageShape shape{size[0], size[1], size[2], size[3], channels};
        if (image == nullptr || isLoaded || !shape.isPositive())
            return false;
        isLocal = name == "LOCAL";
        const std::filesystem::path path = isLocal ? headerPath : dataPath(name);
        detail::report(loadingText, detail::pathText(path));
        isLoaded = load(path, shape);
        if (isLoaded && isSwapped) {
            const ProgressStage stage(detail::swappingShare);
            image->swapBytes();
        }
        return isLoaded;
    }

    bool load(const std::filesystem::path &path, const detail::ImageShape &shape)
    {
        const auto use = [&](std::istream &stream) {
            return detail::shapeAndLoad(*image, shape, stream, isLocal);
        };
        if (!isLocal)
            return detail::loadFromFile(path, use) == 0;
        std::ifstream stream = detail::openForReading(path);
        return use(stream) == 0;
    }

    // Relative to the folder of the header. Headers from other systems have backslashes, which are part of a
    // name on this one.
    std::filesystem::path dataPath(const std::string &name) const
    {
        const std::filesystem::path folder = headerPath.parent_path();
        std::filesystem::path asWritten = folder / name;
        std::error_code error;
        if (std::filesystem::exists(asWritten, error) || name.find('\\') == std::string::npos)
            return asWritten;
        std::string slashes = name;
        std::replace(slashes.begin(), slashes.end(), '\\', '/');
        return folder / slashes;
    }

    void finish()
    {
        image->computeMinMax();
        image->setPosition(position.data());
        image->setSpacing(spacing[0], spacing[1], spacing[2], spacing[3]);
        for (const auto &[key, value] : metaData)
            image->setMetaData(key, value);
        detail::reportImage("Loaded Image, resolution ", detail::shapeOf(*image), *image);
    }

    std::filesystem::path headerPath;
    const char *loadingText;
    std::unique_ptr<Image> image;
    int axes = 0; // 0 until the header tells
    std::array<int, 4> size{1, 1, 1, 1};
    std::array<float, 4> spacing{1.0f, 1.0f, 1.0f, 1.0f};
    std::array<float, 3> position{};
    int channels = 1;
    bool isSwapped = false;
    bool isLoaded = false;
    bool isLocal = false; // what follows are voxels, not keys
    MetaMap metaData;
};

Image *readImage(const std::filesystem::path &path, const char *announcement)
{
    return detail::nullOnException([&] { return HeaderReader(path, announcement).read(); });
}

} // namespace

int saveMetaImage(const wchar_t *base, const Image *image)
{
    const std::wstring_view path = base != nullptr ? base : L"";
    const std::size_t folder = detail::directoryLength(path);
    const std::string dataName = transcribedName(path.substr(folder)) + ".raw";
    const std::wstring dataPath =
        std::wstring(path.substr(0, folder)) + std::wstring(dataName.begin(), dataName.end());
    const std::wstring headerPath = std::wstring(path) + L".mhd";
    return writeFiles({detail::toPath(headerPath.c_str()), detail::toPath(dataPath.c_str()), dataName}, image,
                      false);
}

int saveMetaImage(const char *base, const Image *image)
{
    const std::string path = base != nullptr ? base : "";
    const std::string dataPath = path + ".raw";
    const std::string dataName = dataPath.substr(detail::directoryLength(std::string_view(dataPath)));
    return writeFiles({path + ".mhd", dataPath, dataName}, image, true);
}

Image *loadMetaImage(const char *path)
{
    return readImage(detail::toPath(path), "Loading file ");
}

Image *loadMetaImage(const wchar_t *path)
{
    return readImage(detail::toPath(path), "Loading headerfile ");
}

} // namespace MERV
