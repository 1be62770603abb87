#include "Common/Files.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <system_error>
#include <vector>

namespace MERV {

std::int64_t fileSize(const char *path)
{
    errno = 0;
    const bool opens = std::ifstream(path, std::ios::binary).is_open();
    std::error_code error(errno, std::generic_category());
    const std::uintmax_t size = opens ? std::filesystem::file_size(path, error) : 0;
    if (!opens || error) {
        std::cout << error.message() << '\n';
        return -1;
    }
    return static_cast<std::int64_t>(size);
}

void listFiles(const std::string &directory, std::list<std::string> &list, bool recursive)
{
    namespace fs = std::filesystem;
    std::vector<std::string> names;
    std::error_code error;
    const auto options = fs::directory_options::skip_permission_denied;
    for (fs::recursive_directory_iterator entry(directory, options, error), end; !error && entry != end;
         entry.increment(error)) {
        const bool hidden = entry->path().filename().string().starts_with('.');
        if (hidden || !recursive)
            entry.disable_recursion_pending();
        if (!hidden)
            names.push_back(entry->path().lexically_relative(directory).generic_string());
    }
    std::sort(names.begin(), names.end());
    list.insert(list.end(), names.begin(), names.end());
}

} // namespace MERV
