#pragma once

#include "serialization/dicom/DicomOrder.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace dicom {

// The images of one Series Instance UID.
struct DicomSeries
{
    std::string uid; // letters, digits and dots only; empty for files without one
    FileList files;  // never empty; in bytewise order of their paths, owned by the directory
};

// The DICOM images in a directory, grouped into series in text order of their UIDs. The constructor reads the
// tags of all files once, on all cores. Only regular files (or links to them) with rows, columns and pixels
// count; whatever cannot be read is left out. Immutable afterwards.
class DicomDirectory
{
public:
    // `path` in 8-bit form as the file system has it. With `recursive`, folders below it count too; links to
    // folders are not followed.
    DicomDirectory(const std::string &path, bool recursive);

    const std::vector<DicomSeries> &series() const { return groups; }

private:
    std::vector<std::unique_ptr<const DicomHeader>> headers;
    std::vector<DicomSeries> groups;
};

// Distinct echo times of a series as texts without padding, in text order; "" stands for files without one.
std::vector<std::string> echoTimes(const DicomSeries &series);

// The files of a series with this echo time.
FileList filesWithEchoTime(const DicomSeries &series, const std::string &echoTime);

// Three answers to the distance of neighbouring slices, in mm; 0 means that there is none.
struct SliceDistances
{
    double position = 0; // from the z coordinates of the first and last file
    double library = 0;  // what the first file says, see zSpacing()
    double location = 0; // from the Slice Location of the first and last file
};

// For ordered files, at least one. With one file only `library` is known.
SliceDistances sliceDistances(const FileList &ordered);

// Mean distance of the ordered files along the slice normal of the first one, in mm; 0 for a single file.
double distanceAlongNormal(const FileList &ordered);

} // namespace dicom
