#pragma once

#include "serialization/dicom/DicomHeader.h"

#include <vector>

namespace dicom {

enum class Order
{
    direct,
    reverse
};

// Files of one series, borrowed from a DicomDirectory.
using FileList = std::vector<const DicomHeader *>;

// Sorts files by their place along the slice normal of the first one; when all places are equal, or any two
// are, by Instance Number; when these do not number the files (all equal, greatest 0, or great gaps), by
// path. Reverse is the descending order of the same key.
void orderFiles(FileList &files, Order order);

} // namespace dicom
