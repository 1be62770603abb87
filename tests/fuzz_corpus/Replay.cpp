// Runs a fuzz target once on each file of a folder, without the fuzzer: that the first inputs are good to
// begin with, and that no reader stumbles over them.
//
//   replay_... FOLDER
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

extern "C" {
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);
// Not every target has it.
__attribute__((weak)) int LLVMFuzzerInitialize(int *count, char ***arguments);
}

int main(int count, char **arguments)
{
    if (LLVMFuzzerInitialize != nullptr)
        LLVMFuzzerInitialize(&count, &arguments);
    int files = 0;
    for (const auto &entry : std::filesystem::directory_iterator(count > 1 ? arguments[1] : ".")) {
        std::ifstream file(entry.path(), std::ios::binary);
        const std::string bytes(std::istreambuf_iterator<char>(file), {});
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(bytes.data()), bytes.size());
        ++files;
    }
    std::printf("%d files\n", files);
    return files > 0 ? 0 : 1;
}
