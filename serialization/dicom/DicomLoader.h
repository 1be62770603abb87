#pragma once

#include "Common/Image.h"
#include "serialization/dicom/DicomDirectory.h"

#include <memory>
#include <string>
#include <vector>

namespace dicom {

// Directories and paths are 8-bit, as the file system has them. Loading reports its course on standard
// output. Nothing here shows a dialog; failures are null results. Memory that cannot be had throws
// std::bad_alloc or the voxel library's exception. One call at a time, any thread.

// Number of series under a directory.
int countDicomSeries(const std::string &directory, bool recursive);

// For each series the width, the height and the number of files, joined by " x ".
std::vector<std::string> listDicomSeries(const std::string &directory, bool recursive);

// The series at this position, files in direct or reverse order; null when there is no such series or when it
// cannot be one image. The slice distance is that of the positions, or what the first file says where that is
// 0.
std::unique_ptr<MERV::Image> loadSeries(const std::string &directory, bool recursive, int seriesIndex,
                                        bool direct, bool withMetaData);

// The same for a directory that has been read already.
std::unique_ptr<MERV::Image> loadSeries(const std::string &directory, const DicomDirectory &contents,
                                        int seriesIndex, bool direct, bool withMetaData);

// One image from ordered files: depth is the number of files, frames are those of the first one. Null when
// there are no files, the pixel type is not known, there is more than one value per pixel, or a file does not
// hold as many pixels as the first one. y and z run against the order of the files.
std::unique_ptr<MERV::Image> loadFiles(const FileList &ordered, double sliceDistanceMm, bool withMetaData);

// One file; its frames become the depth.
std::unique_ptr<MERV::Image> loadDicomFile(const std::string &path);

// One tag of a file: its name and its value as UTF-8.
struct TagValue
{
    Tag tag = 0;
    std::string name;
    std::string value;
};

// All top-level tags of a file that are no sequences; empty when it cannot be read.
std::vector<TagValue> readTags(const std::string &path);

} // namespace dicom
