#pragma once

#include "serialization/dicom/DicomHeader.h"

#include <cstdint>
#include <istream>
#include <optional>
#include <string>

namespace dicom {

// Reads the tags of one file, without its pixels. Nothing when the file cannot be read as DICOM: no regular
// file, no rights, no DICOM content. A file that is cut short or malformed further on gives the tags up to
// there. Takes no more memory than the file has bytes. Any thread, but for deflated files (see below).
std::optional<DicomHeader> readHeader(const std::string &path);

// The same for a file whose data set is deflated; it is inflated in a process of its own, so call it only
// while no other thread of this reader runs. readHeader() gives such a file with its meta information only.
std::optional<DicomHeader> readDeflatedHeader(DicomHeader metaInformation);
bool isDeflated(const DicomHeader &header);

// The same for `size` bytes in a stream that stands at position 0.
std::optional<DicomHeader> parseHeader(std::istream &stream, std::uint64_t size);

} // namespace dicom
