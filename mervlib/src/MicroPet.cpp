#include "Common/MicroPet.h"

#include "mervlib/src/detail/Paths.h"
#include "mervlib/src/detail/RawBlock.h"
#include "mervlib/src/detail/Report.h"

#include <array>
#include <fstream>
#include <string>
#include <vector>

namespace MERV {

namespace {

struct FilledLine
{
    std::size_t number; // from 0
    std::string text;
};

// The lines that tell the image; the three dimensions carry the same key, on purpose.
std::array<FilledLine, 6> filledLines(const std::string &base, const Image &image)
{
    using detail::classicText;
    return {{{4, classicText("file_name ", base, ".img")},
             {39, classicText("x_dimension ", image.getWidth())},
             {40, classicText("x_dimension ", image.getHeight())},
             {41, classicText("x_dimension ", image.getDepth())},
             {120, classicText("minimum ", image.getLow(0))},
             {121, classicText("maximum ", image.getHigh(0))}}};
}

// The lines with their endings.
std::vector<std::string> linesOf(std::istream &stream)
{
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);)
        lines.push_back(stream.eof() ? line : line + '\n');
    return lines;
}

std::string endingOf(const std::string &line)
{
    const std::size_t last = line.find_last_not_of("\r\n");
    return last == std::string::npos ? line : line.substr(last + 1);
}

bool fillTemplate(const std::string &base, const std::string &templatePath, const Image &image)
{
    std::ifstream source = detail::openForReading(detail::toPath(templatePath.c_str()));
    if (!source)
        return false;
    // Read whole before the header is opened: the template may be the very file that is written.
    std::vector<std::string> lines = linesOf(source);
    for (const FilledLine &filled : filledLines(base, image))
        if (filled.number < lines.size())
            lines[filled.number] = filled.text + endingOf(lines[filled.number]);
    std::ofstream header(detail::toPath((base + ".img.hdr").c_str()), std::ios::binary);
    for (const std::string &line : lines)
        header << line;
    return static_cast<bool>(header.flush());
}

} // namespace

void saveMicroPetHeader(const char *base, const char *templateDirectory, const Image *image)
{
    const std::string folder = templateDirectory != nullptr ? templateDirectory : "";
    if (base == nullptr || image == nullptr || !fillTemplate(base, folder + "template.img.hdr", *image))
        detail::report("Error creating microPET header file.");
}

} // namespace MERV
