#include "serialization/dicom/DicomDirectory.h"

#include "Common/Progress.h"
#include "serialization/dicom/DicomGeometry.h"
#include "serialization/dicom/DicomParser.h"
#include "serialization/dicom/DicomText.h"
#include "serialization/dicom/Parallel.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <map>
#include <optional>
#include <set>

namespace dicom {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t pathsPerReport = 64;
constexpr double parsingShare = 0.95; // of the time of a scan; deflated files come behind the others

template <class Iterator>
void collectPaths(const std::string &directory, std::vector<std::string> &paths)
{
    std::error_code error;
    Iterator entry(directory, fs::directory_options::skip_permission_denied, error);
    while (!error && entry != Iterator()) {
        std::error_code unknown;
        if (entry->is_regular_file(unknown))
            paths.push_back(entry->path().string());
        if (paths.size() % pathsPerReport == 0)
            MERV::reportProgress(0, 1);
        entry.increment(error);
    }
}

std::vector<std::string> listFiles(const std::string &directory, bool recursive)
{
    std::vector<std::string> paths;
    if (recursive)
        collectPaths<fs::recursive_directory_iterator>(directory, paths);
    else
        collectPaths<fs::directory_iterator>(directory, paths);
    std::sort(paths.begin(), paths.end());
    return paths;
}

// For each path its header, or nothing when it is neither an image nor deflated, which would hide one.
std::vector<std::optional<DicomHeader>> readHeaders(const std::vector<std::string> &paths)
{
    const MERV::ProgressStage stage(parsingShare);
    std::vector<std::optional<DicomHeader>> read(paths.size());
    parallelFor(paths.size(), [&](std::size_t index) {
        read[index] = readHeader(paths[index]);
        if (read[index] && !read[index]->isImage() && !isDeflated(*read[index]))
            read[index].reset();
    });
    return read;
}

std::string seriesKey(const DicomHeader &header)
{
    std::string uid = header.text(tags::seriesInstanceUid);
    const auto foreign = [](char c) {
        return !((c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '.');
    };
    uid.erase(std::remove_if(uid.begin(), uid.end(), foreign), uid.end());
    return uid;
}

std::string echoTimeOf(const DicomHeader &header)
{
    return std::string(trimmed(header.text(tags::echoTime)));
}

} // namespace

DicomDirectory::DicomDirectory(const std::string &path, bool recursive)
{
    const std::vector<std::string> paths = listFiles(path, recursive);
    std::vector<std::optional<DicomHeader>> read = readHeaders(paths);
    std::map<std::string, FileList> byUid;
    std::size_t done = 0;
    for (std::optional<DicomHeader> &header : read) {
        MERV::reportProgress(done++, read.size());
        if (header && isDeflated(*header))
            header = readDeflatedHeader(std::move(*header));
        if (!header || !header->isImage())
            continue;
        headers.push_back(std::make_unique<const DicomHeader>(std::move(*header)));
        byUid[seriesKey(*headers.back())].push_back(headers.back().get());
    }
    for (auto &[uid, files] : byUid)
        groups.push_back({uid, std::move(files)});
}

std::vector<std::string> echoTimes(const DicomSeries &series)
{
    std::set<std::string> times;
    for (const DicomHeader *file : series.files)
        times.insert(echoTimeOf(*file));
    return {times.begin(), times.end()};
}

FileList filesWithEchoTime(const DicomSeries &series, const std::string &echoTime)
{
    FileList files;
    std::copy_if(series.files.begin(), series.files.end(), std::back_inserter(files),
                 [&echoTime](const DicomHeader *file) { return echoTimeOf(*file) == echoTime; });
    return files;
}

SliceDistances sliceDistances(const FileList &ordered)
{
    const DicomHeader &first = *ordered.front();
    const DicomHeader &last = *ordered.back();
    SliceDistances distances;
    distances.library = std::abs(zSpacing(first));
    if (ordered.size() == 1)
        return distances;
    const double gaps = static_cast<double>(ordered.size() - 1);
    // The z coordinates alone, also where the stack does not run along z.
    distances.position = std::abs((origin(last)[2] - origin(first)[2]) / gaps);
    const std::optional<double> from = sliceLocation(first);
    const std::optional<double> to = sliceLocation(last);
    if (from && to)
        distances.location = std::abs((*to - *from) / gaps);
    return distances;
}

double distanceAlongNormal(const FileList &ordered)
{
    if (ordered.size() < 2)
        return 0.0;
    const Vector normal = sliceNormal(*ordered.front());
    const double length = dot(normal, origin(*ordered.back())) - dot(normal, origin(*ordered.front()));
    return std::abs(length / static_cast<double>(ordered.size() - 1));
}

} // namespace dicom
