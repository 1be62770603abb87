// Files written by the library, read by a program of the field that shares no code with it.

#include "Common/Analyze.h"
#include "Common/Image.h"
#include "Common/MetaImage.h"
#include "tests/support/Command.h"
#include "tests/support/Files.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace {

constexpr int width = 5, height = 4, depth = 3;

// What a command prints; a command that fails is a failure of the test.
std::string output(const std::string &command)
{
    int status = -1;
    std::string text = outputOf("LC_ALL=C " + command, &status);
    EXPECT_EQ(status, 0) << command << '\n' << text;
    return text;
}

// Numbers behind "Name =" in the program's description of a file.
std::vector<double> numbersBehind(const std::string &text, const std::string &name)
{
    std::vector<double> numbers;
    const std::size_t at = text.find(name + " =");
    if (at == std::string::npos)
        return numbers;
    std::istringstream line(text.substr(at + name.size() + 2, text.find('\n', at) - at - name.size() - 2));
    for (double number = 0; line >> number;)
        numbers.push_back(number);
    return numbers;
}

// Different in every voxel, so that no exchange of axes goes unseen.
float valueAt(int x, int y, int z)
{
    return float(x + 8 * y + 40 * z);
}

std::unique_ptr<MERV::Image> volume(int dataType)
{
    std::unique_ptr<MERV::Image> image(MERV::createImage(dataType));
    image->setVerbose(0);
    image->setDimensions(width, height, depth, 1, 1);
    image->setSpacing(0.3125f, 0.5f, 1.5f, 1.0f);
    for (int z = 0; z < depth; ++z)
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                image->setVoxel(valueAt(x, y, z), x, y, z, 0, 0);
    image->computeMinMax();
    return image;
}

// The values of all voxels, in stored order: each line of the probe ends with "; value".
std::vector<double> probed(const std::string &file)
{
    std::string indexes;
    for (int z = 0; z < depth; ++z)
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                indexes += std::to_string(x) + " " + std::to_string(y) + " " + std::to_string(z) + ";";
    indexes.pop_back();
    std::istringstream lines(output("plastimatch probe --index '" + indexes + "' '" + file + "'"));
    std::vector<double> values;
    for (std::string line; std::getline(lines, line);)
        if (const std::size_t at = line.rfind(';'); at != std::string::npos)
            values.push_back(std::strtod(line.c_str() + at + 1, nullptr));
    return values;
}

void expectReadBack(const std::string &file)
{
    const std::string header = output("plastimatch header '" + file + "'");
    EXPECT_EQ(numbersBehind(header, "Size"), (std::vector<double>{width, height, depth})) << header;
    EXPECT_EQ(numbersBehind(header, "Spacing"), (std::vector<double>{0.3125, 0.5, 1.5})) << header;
    const std::vector<double> values = probed(file);
    ASSERT_EQ(values.size(), std::size_t(width * height * depth));
    std::size_t i = 0;
    for (int z = 0; z < depth; ++z)
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                EXPECT_EQ(values[i++], double(valueAt(x, y, z))) << x << ' ' << y << ' ' << z;
}

class OtherPrograms : public ::testing::TestWithParam<int>
{
protected:
    TemporaryFolder folder;
};

TEST_P(OtherPrograms, readTheMetaImagesOfBothWriters)
{
    const auto image = volume(GetParam());
    ASSERT_EQ(MERV::saveMetaImage((folder / "wide").wstring().c_str(), image.get()), 0);
    ASSERT_EQ(MERV::saveMetaImage((folder / "narrow").c_str(), image.get()), 0);
    expectReadBack(folder / "wide.mhd");
    expectReadBack(folder / "narrow.mhd");
}

// That program knows no signed bytes.
INSTANTIATE_TEST_SUITE_P(ItsTypes, OtherPrograms,
                         ::testing::Values(MERV::TypeUChar, MERV::TypeShort, MERV::TypeUShort, MERV::TypeInt,
                                           MERV::TypeUInt, MERV::TypeFloat, MERV::TypeDouble));

class OtherProgramsAnalyze : public OtherPrograms
{};

TEST_P(OtherProgramsAnalyze, readTheAnalyzePairs)
{
    const auto image = volume(GetParam());
    ASSERT_EQ(MERV::saveAnalyze((folder / "pair").wstring().c_str(), image.get()), 0);
    expectReadBack(folder / "pair.hdr");
}

INSTANTIATE_TEST_SUITE_P(ItsTypes, OtherProgramsAnalyze,
                         ::testing::Values(MERV::TypeUChar, MERV::TypeShort, MERV::TypeFloat));

} // namespace
