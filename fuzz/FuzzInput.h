#pragma once

#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <string_view>

// What the readers report goes nowhere: call once from LLVMFuzzerInitialize.
inline void silenceReaders()
{
    std::cout.rdbuf(nullptr);
    std::cerr.rdbuf(nullptr);
}

// What stands between the files of an input that is a folder.
constexpr std::string_view nextFile = "TEVORA-NEXT-FILE";

inline std::string textOf(const std::uint8_t *data, std::size_t size)
{
    return std::string(data, data + size);
}

// A folder for the readers that take paths, in memory where the system has such a file system; one per
// process.
class FuzzFolder
{
public:
    FuzzFolder()
    {
        const std::filesystem::path memory = "/dev/shm";
        const std::filesystem::path parent =
            std::filesystem::is_directory(memory) ? memory : std::filesystem::temp_directory_path();
        folder = parent / ("tevora_fuzz_" + std::to_string(getpid()));
        std::filesystem::create_directories(folder);
    }
    ~FuzzFolder() { std::filesystem::remove_all(folder); }
    FuzzFolder(const FuzzFolder &) = delete;
    FuzzFolder &operator=(const FuzzFolder &) = delete;

    std::string write(const std::string &name, const std::string &bytes) const
    {
        const std::filesystem::path path = folder / name;
        std::ofstream(path, std::ios::binary) << bytes;
        return path.string();
    }

private:
    std::filesystem::path folder;
};
