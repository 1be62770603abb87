#include "Common/MicroPet.h"

#include "tests/mervlib/FormatTestSupport.h"

namespace {

using namespace MERV;

// Lines "line 0", "line 1", .. with this ending.
std::string templateOf(int lines, const std::string &ending)
{
    std::string text;
    for (int line = 0; line < lines; ++line)
        text += "line " + std::to_string(line) + ending;
    return text;
}

std::vector<std::string> linesOf(const std::string &text)
{
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

TEST(MicroPetHeader, fillsSixLinesOfTheTemplate)
{
    const TempFolder folder;
    writeFile(folder / "template.img.hdr", templateOf(124, "\n"));
    const auto image = numberedImage<short>(5, 4, 3, 1, 1);
    image->setWindowRange(-12.5f, 1e6f, 0);
    saveMicroPetHeader((folder / "scan").c_str(), (folder.path() + '/').c_str(), image.get());
    const std::vector<std::string> lines = linesOf(contentOf(folder / "scan.img.hdr"));
    ASSERT_EQ(lines.size(), 124u);
    for (std::size_t i = 0; i < lines.size(); ++i) {
        std::string expected = "line " + std::to_string(i);
        if (i == 4)
            expected = "file_name " + (folder / "scan.img");
        // All three dimensions carry the key of the first.
        if (i == 39)
            expected = "x_dimension 5";
        if (i == 40)
            expected = "x_dimension 4";
        if (i == 41)
            expected = "x_dimension 3";
        if (i == 120)
            expected = "minimum -12.5";
        if (i == 121)
            expected = "maximum 1e+06";
        EXPECT_EQ(lines[i], expected) << i;
    }
}

TEST(MicroPetHeader, keepsLineEndingsAndALastLineWithoutOne)
{
    const TempFolder folder;
    writeFile(folder / "template.img.hdr", templateOf(5, "\r\n") + "end");
    const auto image = numberedImage<short>(5, 4, 3, 1, 1);
    saveMicroPetHeader((folder / "scan").c_str(), (folder / "").c_str(), image.get());
    EXPECT_EQ(contentOf(folder / "scan.img.hdr"),
              "line 0\r\nline 1\r\nline 2\r\nline 3\r\nfile_name " + (folder / "scan.img") + "\r\nend");
}

TEST(MicroPetHeader, ofAShortTemplateWhatIsThereIsCopied)
{
    const TempFolder folder;
    const auto image = numberedImage<short>(5, 4, 3, 1, 1);
    writeFile(folder / "template.img.hdr", templateOf(3, "\n"));
    saveMicroPetHeader((folder / "scan").c_str(), (folder / "").c_str(), image.get());
    EXPECT_EQ(contentOf(folder / "scan.img.hdr"), "line 0\nline 1\nline 2\n");
    writeFile(folder / "template.img.hdr", "");
    saveMicroPetHeader((folder / "scan").c_str(), (folder / "").c_str(), image.get());
    EXPECT_EQ(contentOf(folder / "scan.img.hdr"), "");
}

TEST(MicroPetHeader, noSeparatorIsPutBeforeTheNameOfTheTemplate)
{
    const TempFolder folder;
    writeFile(folder / "my_template.img.hdr", "only\n");
    const auto image = numberedImage<short>(5, 4, 3, 1, 1);
    saveMicroPetHeader((folder / "scan").c_str(), (folder / "my_").c_str(), image.get());
    EXPECT_EQ(contentOf(folder / "scan.img.hdr"), "only\n");
}

TEST(MicroPetHeader, templateMayBeTheHeaderItself)
{
    const TempFolder folder;
    writeFile(folder / "template.img.hdr", templateOf(5, "\n"));
    const auto image = numberedImage<short>(5, 4, 3, 1, 1);
    saveMicroPetHeader((folder / "template").c_str(), (folder / "").c_str(), image.get());
    EXPECT_EQ(contentOf(folder / "template.img.hdr"),
              "line 0\nline 1\nline 2\nline 3\nfile_name " + (folder / "template.img") + '\n');
}

TEST(MicroPetHeader, reportsFilesThatCannotBeOpened)
{
    const TempFolder folder;
    const auto image = numberedImage<short>(5, 4, 3, 1, 1);
    const std::string message = "Common >> Error creating microPET header file.\n";
    {
        const CapturedText output;
        saveMicroPetHeader((folder / "scan").c_str(), (folder / "").c_str(), image.get());
        EXPECT_EQ(output.text(), message);
        EXPECT_FALSE(std::filesystem::exists(folder / "scan.img.hdr"));
    }
    writeFile(folder / "template.img.hdr", templateOf(5, "\n"));
    std::filesystem::create_symlink("/dev/full", folder / "full.img.hdr");
    for (const char *base : {"none/scan", "full"}) {
        const CapturedText output;
        saveMicroPetHeader((folder / base).c_str(), (folder / "").c_str(), image.get());
        EXPECT_EQ(output.text(), message) << base;
    }
}

} // namespace
