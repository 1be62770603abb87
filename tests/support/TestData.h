#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

// The folder with real data for tests: TEVORA_TEST_DATA, else ../shared/data beside the checkout. Empty when
// there is none; the caller then skips.
inline std::string testDataFolder()
{
    if (const char *folder = std::getenv("TEVORA_TEST_DATA"); folder != nullptr && *folder != '\0')
        return folder;
    const char *source = std::getenv("TEVORA_SOURCE_DIR");
    const std::filesystem::path beside =
        std::filesystem::path(source != nullptr ? source : ".") / ".." / "shared" / "data";
    return std::filesystem::is_directory(beside) ? beside.string() : std::string();
}
