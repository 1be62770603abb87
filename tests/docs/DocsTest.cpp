// House rules of the documents:
//
//   Links and pictures of README.md, CONTRIBUTING.md and of all Markdown below docs/ lead to files that
//   exist, and to headings that exist; a picture is not larger than 150 KB. In docs/manual bold type is kept
//   for the texts of the program, as they stand in English, without the mark of the keyboard's letter:
//   **Analyze**, **Image > New > New slice selector**. What is stressed stands in *italics*; keys, file names
//   and names of the code in `code`.

#include "tests/support/Files.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <regex>
#include <set>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr std::uintmax_t largestPicture = 150 * 1024;

fs::path root()
{
    const char *folder = std::getenv("TEVORA_SOURCE_DIR");
    return folder != nullptr ? folder : ".";
}

std::vector<fs::path> documents(const fs::path &folder)
{
    std::vector<fs::path> found;
    for (const auto &entry : fs::recursive_directory_iterator(folder))
        if (entry.path().extension() == ".md")
            found.push_back(entry.path());
    std::sort(found.begin(), found.end());
    return found;
}

// What stands between back quotes or in fenced blocks is taken as it is, so links and stars in it do not
// count.
std::string withoutCode(const std::string &text)
{
    const std::string plain = std::regex_replace(text, std::regex("```[^`]*```"), "");
    return std::regex_replace(plain, std::regex("`[^`\n]*`"), "code");
}

std::vector<std::string> allMatches(const std::string &text, const std::string &pattern)
{
    const std::regex expression(pattern);
    std::vector<std::string> found;
    for (std::sregex_iterator match(text.begin(), text.end(), expression), end; match != end; ++match)
        found.push_back((*match)[1].str());
    return found;
}

std::string replaced(std::string text, const std::string &what, const std::string &by)
{
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + by.size()))
        text.replace(at, what.size(), by);
    return text;
}

// The name by which a heading is linked to: lower case, words joined by hyphens, other signs left out.
std::string anchorOf(const std::string &heading)
{
    std::string anchor;
    for (const char sign : heading) {
        const auto code = static_cast<unsigned char>(sign);
        if (code >= 0x80 || std::isalnum(code) != 0 || sign == '-' || sign == '_')
            anchor += static_cast<char>(std::tolower(code));
        else if (sign == ' ')
            anchor += '-';
    }
    return anchor;
}

bool hasHeading(const fs::path &document, const std::string &anchor)
{
    const std::string text = "\n" + std::regex_replace(contentOf(document), std::regex("```[^`]*```"), "");
    const std::vector<std::string> headings = allMatches(text, "\n#+ +([^\n]*)");
    return std::any_of(headings.begin(), headings.end(),
                       [&](const std::string &heading) { return anchorOf(heading) == anchor; });
}

// Empty when the link is good.
std::string faultOf(const fs::path &document, const std::string &link)
{
    const std::size_t hash = link.find('#');
    const std::string path = link.substr(0, hash);
    const fs::path target = path.empty() ? document : document.parent_path() / path;
    if (!fs::exists(target))
        return "no such file";
    const bool isOfManual = document.parent_path().filename() == "manual";
    if (isOfManual && target.extension() == ".png" && fs::file_size(target) > largestPicture)
        return "the picture is too large";
    if (hash != std::string::npos && !hasHeading(target, link.substr(hash + 1)))
        return "no such heading";
    return {};
}

// The English texts of the program, without the marks of the keyboard's letters.
std::set<std::string> programTexts()
{
    std::set<std::string> texts;
    const std::string translations = contentOf(root() / "resources/translations/en.ts");
    for (std::string text : allMatches(translations, "<source>([^<]*)</source>")) {
        for (const auto &[entity, sign] : {std::pair("&lt;", "<"), std::pair("&gt;", ">"),
                                           std::pair("&quot;", "\""), std::pair("&apos;", "'")})
            text = replaced(text, entity, sign);
        texts.insert(replaced(text, "&amp;", ""));
    }
    return texts;
}

// The steps of "File > Exit".
std::vector<std::string> stepsOf(const std::string &label)
{
    std::vector<std::string> steps;
    std::size_t from = 0;
    for (std::size_t at = label.find(" > "); at != std::string::npos; at = label.find(" > ", from)) {
        steps.push_back(label.substr(from, at - from));
        from = at + 3;
    }
    steps.push_back(label.substr(from));
    return steps;
}

} // namespace

TEST(Docs, linksAndPicturesExist)
{
    std::vector<fs::path> all = documents(root() / "docs");
    all.push_back(root() / "README.md");
    all.push_back(root() / "CONTRIBUTING.md");
    std::size_t links = 0;
    for (const fs::path &document : all) {
        for (const std::string &link : allMatches(withoutCode(contentOf(document)), "\\]\\(([^)\\s]+)\\)")) {
            if (link.find("://") != std::string::npos)
                continue;
            ++links;
            EXPECT_EQ(faultOf(document, link), "") << document << ": " << link;
        }
    }
    EXPECT_GT(links, 20U);
}

TEST(Docs, boldTextsOfTheManualAreTextsOfTheProgram)
{
    const std::set<std::string> texts = programTexts();
    ASSERT_TRUE(texts.count("Open Dicom Series ..."));
    std::size_t labels = 0;
    for (const fs::path &document : documents(root() / "docs/manual")) {
        for (const std::string &label : allMatches(withoutCode(contentOf(document)), "\\*\\*([^*]+)\\*\\*")) {
            for (const std::string &step : stepsOf(std::regex_replace(label, std::regex("\\s+"), " "))) {
                ++labels;
                EXPECT_TRUE(texts.count(step)) << document << ": " << label;
            }
        }
    }
    EXPECT_GT(labels, 20U);
}

TEST(Docs, programOfTheLibrarysPageIsTheOneThatIsBuilt)
{
    const std::string program = contentOf(root() / "tests/docs/corrected_edge_points.cpp");
    ASSERT_FALSE(program.empty());
    EXPECT_NE(contentOf(root() / "docs/manual/library.md").find("```cpp\n" + program + "```"),
              std::string::npos);
}

TEST(Docs, anchorsAreFormedAsOnTheWeb)
{
    EXPECT_EQ(anchorOf("First steps, in 10 minutes"), "first-steps-in-10-minutes");
    EXPECT_EQ(anchorOf("`Ctrl+S` does nothing"), "ctrls-does-nothing");
}
