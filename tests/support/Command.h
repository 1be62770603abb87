#pragma once

#include <array>
#include <cstdio>
#include <string>

// What a command of the shell prints, its messages of errors left out. Where the status is asked for, it
// becomes that of pclose().
inline std::string outputOf(const std::string &command, int *status = nullptr)
{
    std::string output;
    std::array<char, 4096> buffer{};
    FILE *pipe = popen((command + " 2>/dev/null").c_str(), "r");
    if (pipe == nullptr)
        return output;
    while (std::fgets(buffer.data(), static_cast<int>(buffer.size()), pipe) != nullptr)
        output += buffer.data();
    const int ended = pclose(pipe);
    if (status != nullptr)
        *status = ended;
    return output;
}

inline bool hasProgram(const std::string &name)
{
    return !outputOf("command -v " + name).empty();
}
