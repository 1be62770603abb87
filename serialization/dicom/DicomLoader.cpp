#include "serialization/dicom/DicomLoader.h"

#include "Common/Progress.h"
#include "serialization/dicom/DicomDictionary.h"
#include "serialization/dicom/DicomGeometry.h"
#include "serialization/dicom/DicomParser.h"
#include "serialization/dicom/DicomPixels.h"
#include "serialization/dicom/DicomText.h"
#include "serialization/dicom/Parallel.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdint>
#include <iostream>
#include <limits>
#include <map>
#include <optional>
#include <span>
#include <type_traits>

namespace dicom {

namespace {

constexpr const char *ambiguousValue = "<ambiguous data>";

// Shares of the time that a series takes, each counted from the start.
constexpr double pixelShare = 0.6;
constexpr double metaDataShare = 0.8;
constexpr double rescaleShare = 0.85;
constexpr double rangeShare = 0.9;

using MetaData = std::map<std::string, std::string>;

struct Depths
{
    std::uint64_t slices;
    std::uint64_t frames;
};

// Names of tags, looked up once each.
class TagNames
{
public:
    const std::string &operator[](Tag tag)
    {
        std::string &name = names[tag];
        if (name.empty())
            name = tagName(tag);
        return name;
    }

private:
    std::map<Tag, std::string> names;
};

// A value that differs from the one known is marked; an empty one counts as not known yet.
void addMetaData(MetaData &data, const std::string &name, const std::string &value)
{
    const auto known = data.find(name);
    if (known != data.end() && known->second != value)
        known->second = ambiguousValue;
    else if (known == data.end() && !value.empty())
        data.emplace(name, value);
}

void setMetaData(MERV::Image &image, const FileList &ordered)
{
    const MERV::ProgressStage stage(metaDataShare);
    TagNames names;
    MetaData common;
    for (std::size_t index = 0; index < ordered.size(); ++index) {
        MERV::reportProgress(index, ordered.size());
        MetaData slice;
        const DicomHeader &file = *ordered[index];
        const DicomElement *set = file.find(tags::characterSet);
        const std::string_view characterSet = set != nullptr ? std::string_view(set->value) : "";
        for (const DicomElement &element : file.elements) {
            const std::string value = elementText(element, characterSet);
            addMetaData(common, names[element.tag], value);
            addMetaData(slice, names[element.tag], value);
        }
        for (const auto &[name, value] : slice)
            image.setSliceMetaData(static_cast<int>(index), name, value);
    }
    for (const auto &[name, value] : common)
        image.setMetaData(name, value);
}

// The sum is made in single precision and cut to an integer, then taken modulo the range of the voxel type.
template <class T>
void addToVoxels(void *data, std::uint64_t count, float intercept)
{
    constexpr std::uint64_t valuesPerReport = std::uint64_t(1) << 22U;
    for (std::uint64_t done = 0; done < count;) {
        const std::uint64_t piece = std::min(valuesPerReport, count - done);
        for (T &value : std::span<T>(static_cast<T *>(data) + done, piece)) {
            const float sum = static_cast<float>(value) + intercept;
            if constexpr (std::is_floating_point_v<T>)
                value = sum;
            else
                value = static_cast<T>(static_cast<std::uint64_t>(static_cast<std::int64_t>(sum)));
        }
        done += piece;
        MERV::reportProgress(done, count);
    }
}

void addIntercept(MERV::Image &image, double intercept)
{
    // Beyond this the sum has no place in any voxel type, nor in the integer that it is cut to.
    constexpr double greatest = 1e18;
    if (intercept == 0.0 || std::abs(intercept) > greatest)
        return;
    const MERV::ProgressStage stage(rescaleShare);
    void *data = image.getData();
    const std::uint64_t count = image.getValueCount();
    const auto value = static_cast<float>(intercept);
    switch (image.getDataType()) {
    case MERV::TypeChar:
        return addToVoxels<char>(data, count, value);
    case MERV::TypeUChar:
        return addToVoxels<unsigned char>(data, count, value);
    case MERV::TypeShort:
        return addToVoxels<short>(data, count, value);
    case MERV::TypeUShort:
        return addToVoxels<unsigned short>(data, count, value);
    case MERV::TypeInt:
        return addToVoxels<int>(data, count, value);
    case MERV::TypeUInt:
        return addToVoxels<unsigned int>(data, count, value);
    case MERV::TypeDouble:
        return addToVoxels<double>(data, count, value);
    default:
        return;
    }
}

bool sameSize(const PixelLayout &a, const PixelLayout &b)
{
    return a.width == b.width && a.height == b.height && a.frames == b.frames &&
           a.bitsAllocated == b.bitsAllocated;
}

// The layouts of all files; nothing unless they agree in size.
std::optional<std::vector<PixelLayout>> commonLayouts(const FileList &ordered)
{
    std::vector<PixelLayout> layouts;
    for (const DicomHeader *file : ordered) {
        const std::optional<PixelLayout> layout = pixelLayout(*file);
        if (!layout || (!layouts.empty() && !sameSize(*layout, layouts.front())))
            return std::nullopt;
        layouts.push_back(*layout);
    }
    return layouts;
}

bool readAllPixels(const FileList &ordered, const std::vector<PixelLayout> &layouts, std::span<char> out)
{
    const MERV::ProgressStage stage(pixelShare);
    const std::size_t fileBytes = layouts.front().bytes();
    std::atomic<bool> complete{true};
    const auto readFile = [&](std::size_t index) {
        // The pieces of a file count when it is the only one.
        const MERV::ProgressStage pieces(ordered.size() == 1 ? 1.0 : 0.0);
        if (complete &&
            !readPixels(*ordered[index], layouts[index], out.subspan(index * fileBytes, fileBytes)))
            complete = false;
    };
    const auto foreign = [](const DicomHeader *file) { return needsLibrary(*file); };
    if (std::any_of(ordered.begin(), ordered.end(), foreign)) {
        for (std::size_t index = 0; index < ordered.size(); ++index) {
            MERV::reportProgress(index, ordered.size());
            readFile(index);
        }
    } else {
        parallelFor(ordered.size(), readFile);
    }
    return complete;
}

bool fitsAddressSpace(const PixelLayout &layout, std::size_t files)
{
    const std::uint64_t most = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    return files <= static_cast<std::size_t>(std::numeric_limits<int>::max()) &&
           layout.bytes() <= most / files;
}

// A new image with its size set, or null when the pixels have no voxel type.
std::unique_ptr<MERV::Image> makeImage(const DicomHeader &first, const PixelLayout &layout, Depths depths,
                                       const std::array<float, 3> &spacingMm)
{
    const std::string pixelType = pixelTypeName(first);
    const int type = voxelType(pixelType, rescaleIntercept(first));
    std::unique_ptr<MERV::Image> image(MERV::createImage(type));
    if (!image)
        return nullptr;
    std::cout << "Dimensions " << layout.width << " x " << layout.height << " x " << depths.slices << " x "
              << depths.frames << '\n'
              << "Spacing " << spacingMm[0] << " x " << spacingMm[1] << " x " << spacingMm[2] << " x " << 1.0F
              << '\n'
              << "PixelType " << pixelType << '\n'
              << "Data Type " << type << std::endl;
    image->setDimensions(static_cast<int>(layout.width), static_cast<int>(layout.height),
                         static_cast<int>(depths.slices), static_cast<int>(depths.frames), 1);
    return image;
}

void finish(MERV::Image &image, const DicomHeader &first, const std::array<float, 3> &spacingMm)
{
    addIntercept(image, rescaleIntercept(first));
    const Vector place = origin(first);
    const float position[3] = {static_cast<float>(place[0]), static_cast<float>(place[1]),
                               static_cast<float>(place[2])};
    std::cout << "Origin " << position[0] << ", " << position[1] << ", " << position[2] << std::endl;
    image.setPosition(position);
    image.setSpacing(spacingMm[0], spacingMm[1], spacingMm[2], 1.0F);
    {
        const MERV::ProgressStage stage(rangeShare);
        image.computeMinMax();
    }
    image.mirror(false, true, true, false, false);
    std::cout << "Loaded Image, resolution " << image.getWidth() << " x " << image.getHeight() << " x "
              << image.getDepth() << ", min " << image.getLow(0) << ", max = " << image.getHigh(0)
              << std::endl;
}

std::unique_ptr<MERV::Image> assemble(const FileList &ordered, Depths depths, double sliceDistanceMm,
                                      bool withMetaData)
{
    const DicomHeader &first = *ordered.front();
    const std::optional<std::vector<PixelLayout>> layouts = commonLayouts(ordered);
    if (!layouts || !fitsAddressSpace(layouts->front(), ordered.size()))
        return nullptr;
    const std::array<float, 3> spacingMm{static_cast<float>(std::abs(xSpacing(first))),
                                         static_cast<float>(std::abs(ySpacing(first))),
                                         static_cast<float>(sliceDistanceMm)};
    std::unique_ptr<MERV::Image> image = makeImage(first, layouts->front(), depths, spacingMm);
    if (!image)
        return nullptr;
    const std::span<char> bytes(static_cast<char *>(image->getData()),
                                layouts->front().bytes() * ordered.size());
    if (!readAllPixels(ordered, *layouts, bytes))
        return nullptr;
    if (withMetaData)
        setMetaData(*image, ordered);
    finish(*image, first, spacingMm);
    return image;
}

// The distance of z coordinates alone is wrong for stacks that do not run along z; whoever measures volumes
// should know.
void warnAboutDistance(const FileList &ordered, double sliceDistanceMm)
{
    constexpr double tolerated = 0.01;
    const double alongNormal = distanceAlongNormal(ordered);
    if (alongNormal > 0.0 && std::abs(sliceDistanceMm - alongNormal) > tolerated * alongNormal)
        std::cerr << "The slice distance in use is " << sliceDistanceMm
                  << " mm, but the positions along the slice normal are " << alongNormal << " mm apart."
                  << std::endl;
}

} // namespace

int countDicomSeries(const std::string &directory, bool recursive)
{
    return static_cast<int>(DicomDirectory(directory, recursive).series().size());
}

std::vector<std::string> listDicomSeries(const std::string &directory, bool recursive)
{
    const DicomDirectory contents(directory, recursive);
    std::vector<std::string> list;
    for (const DicomSeries &series : contents.series()) {
        const DicomHeader &first = *series.files.front();
        list.push_back(std::to_string(first.integer(tags::columns, 0)) + " x " +
                       std::to_string(first.integer(tags::rows, 0)) + " x " +
                       std::to_string(series.files.size()));
    }
    return list;
}

std::unique_ptr<MERV::Image> loadSeries(const std::string &directory, bool recursive, int seriesIndex,
                                        bool direct, bool withMetaData)
{
    return loadSeries(directory, DicomDirectory(directory, recursive), seriesIndex, direct, withMetaData);
}

std::unique_ptr<MERV::Image> loadSeries(const std::string &directory, const DicomDirectory &contents,
                                        int seriesIndex, bool direct, bool withMetaData)
{
    std::cout << "Dir Name :[" << directory << "]" << std::endl;
    std::cout << " -----Finish parsing :[" << std::endl;
    if (seriesIndex < 0 || static_cast<std::size_t>(seriesIndex) >= contents.series().size())
        return nullptr;
    FileList files = contents.series()[static_cast<std::size_t>(seriesIndex)].files;
    orderFiles(files, direct ? Order::direct : Order::reverse);
    std::cout << " -----Finish sorting" << std::endl;
    const SliceDistances distances = sliceDistances(files);
    return loadFiles(files, distances.position != 0.0 ? distances.position : distances.library, withMetaData);
}

std::unique_ptr<MERV::Image> loadFiles(const FileList &ordered, double sliceDistanceMm, bool withMetaData)
{
    if (ordered.empty())
        return nullptr;
    const std::uint64_t frames = static_cast<std::uint64_t>(std::max(1L, frameCount(*ordered.front())));
    std::unique_ptr<MERV::Image> image =
        assemble(ordered, {ordered.size(), frames}, sliceDistanceMm, withMetaData);
    if (image)
        warnAboutDistance(ordered, sliceDistanceMm);
    return image;
}

std::unique_ptr<MERV::Image> loadDicomFile(const std::string &path)
{
    std::cout << "File Name :[" << path << "]" << std::endl;
    std::optional<DicomHeader> header = readHeader(path);
    if (header && isDeflated(*header))
        header = readDeflatedHeader(std::move(*header));
    if (!header || !header->isImage())
        return nullptr;
    const std::uint64_t frames = static_cast<std::uint64_t>(std::max(1L, frameCount(*header)));
    // With its sign, unlike the distance of a series.
    std::unique_ptr<MERV::Image> image = assemble({&*header}, {frames, 1}, zSpacing(*header), true);
    if (image)
        image->setMetaData("filename", path);
    return image;
}

std::vector<TagValue> readTags(const std::string &path)
{
    std::optional<DicomHeader> header = readHeader(path);
    if (header && isDeflated(*header))
        header = readDeflatedHeader(std::move(*header));
    std::vector<TagValue> values;
    if (!header)
        return values;
    const DicomElement *set = header->find(tags::characterSet);
    for (const DicomElement &element : header->elements)
        values.push_back({element.tag, tagName(element.tag),
                          elementText(element, set != nullptr ? std::string_view(set->value) : "")});
    return values;
}

} // namespace dicom
