#include "Common/Analyze.h"

#include "Common/Progress.h"
#include "Common/VoxelCast.h"
#include "mervlib/src/detail/Fields.h"
#include "mervlib/src/detail/Paths.h"
#include "mervlib/src/detail/RawBlock.h"
#include "mervlib/src/detail/Report.h"

#include <array>
#include <cstdint>
#include <fstream>
#include <limits>
#include <string>

namespace MERV {

namespace {

constexpr std::size_t headerSize = 348;
using Header = std::array<unsigned char, headerSize>;

// Offsets of the published layout.
enum Offset : std::size_t
{
    sizeOfHeader = 0,
    regular = 38,
    dim = 40, // int16 each
    datatype = 70,
    bitpix = 72,
    pixdim = 76, // float each
    glmax = 140,
    glmin = 144
};

constexpr std::size_t dimAt(std::size_t number)
{
    return dim + number * sizeof(std::int16_t);
}

constexpr std::size_t pixdimAt(std::size_t number)
{
    return pixdim + number * sizeof(float);
}

struct VoxelType
{
    int dataType;
    std::int16_t code;
};
constexpr std::array voxelTypes{VoxelType{TypeUChar, 2}, VoxelType{TypeShort, 4}, VoxelType{TypeFloat, 16}};

// --- writing ---

// 0 for a type that the format does not know.
std::int16_t typeCode(int dataType)
{
    for (const VoxelType &type : voxelTypes)
        if (type.dataType == dataType)
            return type.code;
    return 0;
}

bool fitsFormat(const Image &image)
{
    if (typeCode(image.getDataType()) == 0) {
        detail::report("Error: Datatype not supported by Analyze format!");
        return false;
    }
    for (int axis = 0; axis < 4; ++axis)
        if (image.getDimension(axis) > std::numeric_limits<std::int16_t>::max())
            return false;
    return true;
}

Header headerOf(const Image &image)
{
    Header header{};
    detail::storeField<std::int32_t>(header, sizeOfHeader, headerSize);
    detail::storeField<char>(header, regular, 'r');
    detail::storeField<std::int16_t>(header, dimAt(0), 4); // whatever the number of frames
    for (int axis = 0; axis < 4; ++axis)
        detail::storeField(header, dimAt(static_cast<std::size_t>(axis) + 1),
                           static_cast<std::int16_t>(image.getDimension(axis)));
    detail::storeField(header, datatype, typeCode(image.getDataType()));
    detail::storeField(header, bitpix, static_cast<std::int16_t>(8 * detail::valueSize(image.getDataType())));
    for (int axis = 0; axis < 3; ++axis)
        detail::storeField(header, pixdimAt(static_cast<std::size_t>(axis) + 1), image.getSpacing(axis));
    detail::storeField(header, glmax, voxel_cast<std::int32_t>(image.getMaximum()));
    detail::storeField(header, glmin, voxel_cast<std::int32_t>(image.getMinimum()));
    return header;
}

int writeFiles(const std::filesystem::path &headerPath, const std::filesystem::path &dataPath,
               const Image *image)
{
    if (image == nullptr || !fitsFormat(*image))
        return 1;
    std::ofstream headerStream(headerPath, std::ios::binary);
    if (!headerStream) {
        detail::report("Error: Could not create file: ", detail::pathText(headerPath));
        return 1;
    }
    std::ofstream dataStream(dataPath, std::ios::binary);
    if (!dataStream) {
        detail::report("Error: Could not create data file ", detail::pathText(dataPath),
                       " while creating Analyze image file structure.");
        return 1;
    }
    const Header header = headerOf(*image);
    headerStream.write(reinterpret_cast<const char *>(header.data()), headerSize);
    image->save(dataStream);
    return (headerStream.flush() ? 0 : 1) + (dataStream.flush() ? 0 : 1);
}

// --- reading ---

// The numbers of a header in the byte order of whoever wrote it.
class HeaderView
{
public:
    explicit HeaderView(const Header &bytes)
        : header(bytes)
    {
        const auto axes = detail::fieldAt<std::int16_t>(header, dimAt(0));
        swapped = axes < 0 || axes > 15;
    }

    template <class T>
    T field(std::size_t offset) const
    {
        return swapped ? detail::swappedFieldAt<T>(header, offset) : detail::fieldAt<T>(header, offset);
    }
    int extent(std::size_t number) const { return field<std::int16_t>(dimAt(number)); }
    float spacing(std::size_t number) const { return field<float>(pixdimAt(number)); }
    bool isSwapped() const { return swapped; }

private:
    const Header &header;
    bool swapped;
};

// The words of the two forms of the reader.
struct ReaderTexts
{
    bool isWide;

    void cannotOpen(const std::string &path) const
    {
        if (isWide)
            detail::report("Can't open Analyze header file \"", path, '"');
        else
            std::cerr << "Can't open:<" << path << ">\n";
    }
    void loading(const std::string &path) const
    {
        if (isWide)
            detail::report("Loading data file \"", path, "\" ...");
        else
            detail::report("Loading file ", path);
    }
    void loadFailed(const detail::ImageShape &shape, const Image &image) const
    {
        if (isWide)
            detail::reportImage("Error occured while loading image data, expected resolution ", shape, image);
    }
};

std::unique_ptr<Image> newImageOf(std::int16_t code)
{
    for (const VoxelType &type : voxelTypes)
        if (type.code == code)
            return std::unique_ptr<Image>(createImage(type.dataType));
    return nullptr;
}

std::unique_ptr<Image> loadVoxels(const HeaderView &header, const std::filesystem::path &path,
                                  const ReaderTexts &texts)
{
    std::unique_ptr<Image> image = newImageOf(header.field<std::int16_t>(datatype));
    // Files of three axes leave the number of frames at 0.
    const detail::ImageShape shape{header.extent(1), header.extent(2), header.extent(3),
                                   std::max(header.extent(4), 1), 1};
    if (image == nullptr || !shape.isPositive())
        return nullptr;
    texts.loading(detail::pathText(path));
    const int error = detail::loadFromFile(
        path, [&](std::istream &stream) { return detail::shapeAndLoad(*image, shape, stream, false); });
    if (error == 0 && header.isSwapped()) {
        const ProgressStage stage(detail::swappingShare);
        image->swapBytes();
    }
    image->computeMinMax();
    if (error != 0) {
        texts.loadFailed(shape, *image);
        return nullptr;
    }
    image->setSpacing(header.spacing(1), header.spacing(2), header.spacing(3), 1.0f);
    detail::reportImage("Loaded Image, resolution ", shape, *image);
    return image;
}

std::unique_ptr<Image> readImage(const std::filesystem::path &headerPath,
                                 const std::filesystem::path &dataPath, const ReaderTexts &texts)
{
    std::ifstream stream = detail::openForReading(headerPath);
    if (!stream) {
        texts.cannotOpen(detail::pathText(headerPath));
        return nullptr;
    }
    Header bytes;
    if (!detail::readExactly(stream, bytes)) {
        detail::report("Could not read Analyze header from file \"", detail::pathText(headerPath), '"');
        return nullptr;
    }
    return loadVoxels(HeaderView(bytes), dataPath, texts);
}

template <class Char>
Image *readFiles(const Char *path, const std::basic_string<Char> &extension, const ReaderTexts &texts)
{
    std::basic_string<Char> dataPath = path != nullptr ? path : std::basic_string<Char>();
    dataPath.resize(dataPath.size() - std::min(dataPath.size(), extension.size()));
    dataPath += extension;
    return detail::nullOnException(
        [&] { return readImage(detail::toPath(path), detail::toPath(dataPath.c_str()), texts); });
}

} // namespace

int saveAnalyze(const wchar_t *base, const Image *image)
{
    const std::wstring path = base != nullptr ? base : L"";
    return writeFiles(detail::toPath((path + L".hdr").c_str()), detail::toPath((path + L".img").c_str()),
                      image);
}

int saveAnalyze(const char *base, const Image *image)
{
    const std::string path = base != nullptr ? base : "";
    return writeFiles(path + ".hdr", path + ".img", image);
}

Image *loadAnalyze(const char *path)
{
    return readFiles(path, std::string("img"), {false});
}

Image *loadAnalyze(const wchar_t *path)
{
    return readFiles(path, std::wstring(L"img"), {true});
}

} // namespace MERV
