#pragma once

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

// The examples in the manual, for tests that hold its text to what the program does. An example follows a
// comment of its own, <!-- example: NAME -->, which readers do not see. Whatever is not found throws.
namespace manual {

inline std::string page(const std::string &name)
{
    const char *source = std::getenv("TEVORA_SOURCE_DIR");
    std::ifstream stream(std::string(source != nullptr ? source : ".") + "/docs/manual/" + name);
    std::ostringstream text;
    text << stream.rdbuf();
    if (!stream || text.str().empty())
        throw std::runtime_error("no page " + name);
    return text.str();
}

// The lines behind the example's comment up to the end of the page.
inline std::vector<std::string> linesBehind(const std::string &page, const std::string &example)
{
    const std::string mark = "<!-- example: " + example + " -->\n";
    const std::size_t at = page.find(mark);
    if (at == std::string::npos || page.find(mark, at + 1) != std::string::npos)
        throw std::runtime_error("no example or two of " + example);
    std::istringstream rest(page.substr(at + mark.size()));
    std::vector<std::string> lines;
    for (std::string line; std::getline(rest, line);)
        lines.push_back(line);
    return lines;
}

// The lines of the fenced block that follows the comment at once.
inline std::vector<std::string> block(const std::string &page, const std::string &example)
{
    std::vector<std::string> block;
    bool open = false;
    for (const std::string &line : linesBehind(page, example)) {
        const bool isFence = line.starts_with("```");
        if (isFence && open)
            return block;
        if (!isFence && !open && !line.empty())
            break;
        if (open)
            block.push_back(line);
        open = open || isFence;
    }
    throw std::runtime_error("no block behind " + example);
}

// The same as one text, each line with its line feed.
inline std::string blockText(const std::string &page, const std::string &example)
{
    std::string text;
    for (const std::string &line : block(page, example))
        text += line + '\n';
    return text;
}

// Characters that cannot be seen stand as signs in the manual: an arrow for a tab, and a sign for a zero
// byte.
inline std::string withoutSigns(std::string text)
{
    const auto replace = [&text](const std::string &sign, char character) {
        for (std::size_t at = text.find(sign); at != std::string::npos; at = text.find(sign, at + 1))
            text.replace(at, sign.size(), 1, character);
    };
    replace("→", '\t');
    replace("␀", '\0');
    return text;
}

using Row = std::vector<std::string>;

// The cells of one line of a table, without the marks of code and the blanks around them.
inline Row cells(const std::string &line)
{
    Row row;
    std::istringstream stream(line.substr(1));
    for (std::string cell; std::getline(stream, cell, '|');) {
        std::erase(cell, '`');
        const std::size_t first = cell.find_first_not_of(' ');
        const std::size_t last = cell.find_last_not_of(' ');
        row.push_back(first == std::string::npos ? "" : cell.substr(first, last - first + 1));
    }
    return row;
}

// The rows of the table that follows the comment, without its heading.
inline std::vector<Row> table(const std::string &page, const std::string &example)
{
    std::vector<Row> rows;
    for (const std::string &line : linesBehind(page, example)) {
        if (line.empty() && rows.empty())
            continue;
        if (!line.starts_with("|"))
            break;
        rows.push_back(cells(line));
    }
    if (rows.size() < 3)
        throw std::runtime_error("no table behind " + example);
    rows.erase(rows.begin(), rows.begin() + 2); // heading and rule
    return rows;
}

} // namespace manual
