#pragma once

#include <cstdint>
#include <list>
#include <string>

namespace MERV {

// Size of a file in bytes. -1, with the system's message on standard output, when it cannot be opened.
std::int64_t fileSize(const char *path);

// Appends the names in a directory that do not begin with ".", folders included, in sorted order. Recursive:
// those below as well, relative to the directory and with "/"; links to folders are not followed. A directory
// that cannot be read adds nothing.
void listFiles(const std::string &directory, std::list<std::string> &list, bool recursive);

} // namespace MERV
