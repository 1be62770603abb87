#include "serialization/dicom/DicomOrder.h"

#include "serialization/dicom/DicomGeometry.h"

#include <algorithm>
#include <numeric>

namespace dicom {

namespace {

template <class Key>
void sortBy(FileList &files, const std::vector<Key> &keys, Order order)
{
    std::vector<std::size_t> indices(files.size());
    std::iota(indices.begin(), indices.end(), std::size_t(0));
    std::stable_sort(indices.begin(), indices.end(), [&keys, order](std::size_t a, std::size_t b) {
        return order == Order::direct ? keys[a] < keys[b] : keys[b] < keys[a];
    });
    FileList sorted;
    sorted.reserve(files.size());
    for (const std::size_t index : indices)
        sorted.push_back(files[index]);
    files = std::move(sorted);
}

bool orderByPosition(FileList &files, Order order)
{
    const Vector normal = sliceNormal(*files.front());
    std::vector<double> distances;
    distances.reserve(files.size());
    for (const DicomHeader *file : files)
        distances.push_back(dot(normal, origin(*file)));
    std::vector<double> sorted = distances;
    std::sort(sorted.begin(), sorted.end());
    if (std::adjacent_find(sorted.begin(), sorted.end()) != sorted.end() || sorted.front() == sorted.back())
        return false;
    sortBy(files, distances, order);
    return true;
}

bool orderByNumber(FileList &files, Order order)
{
    std::vector<long> numbers;
    numbers.reserve(files.size());
    for (const DicomHeader *file : files)
        numbers.push_back(file->integer(tags::instanceNumber, 0));
    const auto [least, greatest] = std::minmax_element(numbers.begin(), numbers.end());
    if (*least == *greatest || *greatest == 0 || *greatest >= 2 * static_cast<long>(files.size()) + *least)
        return false;
    sortBy(files, numbers, order);
    return true;
}

void orderByPath(FileList &files, Order order)
{
    std::vector<std::string> paths;
    paths.reserve(files.size());
    for (const DicomHeader *file : files)
        paths.push_back(file->path);
    sortBy(files, paths, order);
}

} // namespace

void orderFiles(FileList &files, Order order)
{
    if (files.empty() || orderByPosition(files, order) || orderByNumber(files, order))
        return;
    orderByPath(files, order);
}

} // namespace dicom
