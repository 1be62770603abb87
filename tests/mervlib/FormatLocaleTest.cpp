// Numbers in files do not follow the locale: every format under a German one, which has a decimal comma, and
// with a C++ locale that also groups digits.
#include "Common/Analyze.h"
#include "Common/MetaImage.h"
#include "Common/MicroPet.h"
#include "Common/Raw12Bit.h"

#include "tests/mervlib/FormatTestSupport.h"

#include <gmock/gmock.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <locale>

using namespace MERV;
using testing::HasSubstr;

namespace {

class GermanPunctuation : public std::numpunct<char>
{
protected:
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

class FormatsUnderGermanLocale : public testing::Test
{
protected:
    // Making the locale takes seconds: once for all.
    static void SetUpTestSuite()
    {
        localeFolder = std::make_unique<TempFolder>();
        const std::string command =
            "localedef --no-archive -i de_DE -f UTF-8 '" + (*localeFolder / "de_DE.UTF-8") + "' 2>/dev/null";
        localedefResult = std::system(command.c_str());
    }
    static void TearDownTestSuite() { localeFolder.reset(); }

    void SetUp() override
    {
        ASSERT_EQ(localedefResult, 0) << "localedef (package locales) cannot make de_DE.UTF-8";
        setenv("LOCPATH", localeFolder->path().c_str(), 1);
        ASSERT_NE(std::setlocale(LC_ALL, "de_DE.UTF-8"), nullptr)
            << "de_DE.UTF-8 was made but cannot be used";
        std::locale::global(std::locale(std::locale(), new GermanPunctuation));
        char text[8];
        std::snprintf(text, sizeof text, "%.1f", 1.5);
        ASSERT_STREQ(text, "1,5"); // what the formats must not follow
        std::ostringstream stream;
        stream << 1024;
        ASSERT_EQ(stream.str(), "1.024");
    }
    void TearDown() override
    {
        std::locale::global(std::locale::classic()); // the C locale with it
        unsetenv("LOCPATH");
    }

    static inline std::unique_ptr<TempFolder> localeFolder;
    static inline int localedefResult = -1;
    TempFolder folder;
};

TEST_F(FormatsUnderGermanLocale, metaImageIsWrittenAndReadAsEver)
{
    const CapturedText output;
    const auto image = numberedImage<short>(1024, 2, 2, 1, 1);
    image->setSpacing(0.3125f, 1234.5f, 2.5f, 1.0f);
    const float position[3] = {-1024.5f, 0.25f, 0.0f};
    image->setPosition(position);
    EXPECT_EQ(saveMetaImage((folder / "narrow").c_str(), image.get()), 0);
    EXPECT_EQ(saveMetaImage(folder.wide(L"wide").c_str(), image.get()), 0);
    EXPECT_THAT(
        contentOf(folder / "narrow.mhd"),
        HasSubstr("DimSize = 1024 2 2\nElementSpacing = 0.312500 1234.500000 2.500000\nPosition = 0 0 0\n"
                  "ImagePositionPatient = -1024.500000 0.250000 0.000000\n"));
    EXPECT_THAT(contentOf(folder / "wide.mhd"),
                HasSubstr("DimSize = 1024 2 2\nElementSpacing = 0.3125 1234.5 2.5\nPosition = 0 0 0\n"
                          "ImagePositionPatient = -1024.5 0.25 0\n"));
    for (const char *name : {"narrow.mhd", "wide.mhd"}) {
        const ImagePointer copy(loadMetaImage((folder / name).c_str()));
        ASSERT_NE(copy, nullptr);
        EXPECT_EQ(dimensionsOf(*copy), dimensionsOf(*image));
        EXPECT_EQ(copy->getSpacing(0), 0.3125f);
        EXPECT_EQ(copy->getSpacing(1), 1234.5f);
        EXPECT_EQ(copy->getPosition()[0], -1024.5f);
        EXPECT_EQ(valuesOf<short>(*copy), valuesOf<short>(*image));
    }
    EXPECT_THAT(output.text(), HasSubstr("Loaded Image, resolution 1024 x 2 x 2, min -60, max = 60\n"));
}

TEST_F(FormatsUnderGermanLocale, metaImageWithoutTheNumberOfAxesIsReadAsEver)
{
    const CapturedText output;
    writeFile(folder / "v.mhd", "DimSize = 2 1\nElementSpacing = 0.5 1.25\nElementType = MET_UCHAR\n"
                                "ElementDataFile = v.raw\n");
    writeFile(folder / "v.raw", "ab");
    const ImagePointer image(loadMetaImage((folder / "v.mhd").c_str()));
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->getSpacing(0), 0.5f);
    EXPECT_EQ(image->getSpacing(1), 1.25f);
}

TEST_F(FormatsUnderGermanLocale, microPetHeaderIsWrittenAsEver)
{
    std::string text;
    for (int line = 0; line < 122; ++line)
        text += "line\n";
    writeFile(folder / "template.img.hdr", text);
    const auto image = numberedImage<short>(1024, 2, 2, 1, 1);
    image->setWindowRange(-0.5f, 2048.5f, 0);
    saveMicroPetHeader((folder / "scan").c_str(), (folder / "").c_str(), image.get());
    const std::string header = contentOf(folder / "scan.img.hdr");
    EXPECT_THAT(header, HasSubstr("\nx_dimension 1024\n"));
    EXPECT_THAT(header, HasSubstr("\nminimum -0.5\nmaximum 2048.5\n"));
}

// low -0.5, high 0.5: a = 0.5 * 65530 / 1 = 32765; "-0,5" would be read as 0 and nothing rescaled.
TEST_F(FormatsUnderGermanLocale, raw12BitCalibrationIsReadAsEver)
{
    const CapturedText output;
    Bytes bytes(288 + 2);
    bytes.u32(0, 815).u16(4, 288).text(149, "-0.5 0.5").u16(190, 12);
    bytes.u32(232, 1).u32(236, 1).u32(240, 1).u16(288, 32765);
    writeFile(folder / "v", bytes.str());
    const ImagePointer image(loadRaw12Bit((folder / "v").c_str(), false));
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->getValue(0), 0.0f);
}

TEST_F(FormatsUnderGermanLocale, messagesAreWrittenAsEver)
{
    const CapturedText output;
    const auto image = numberedImage<float>(1024, 1, 1, 1, 1);
    image->setValue(-0.5f, 0);
    image->setValue(1500.5f, 1);
    EXPECT_EQ(saveAnalyze((folder / "v").c_str(), image.get()), 0);
    const ImagePointer copy(loadAnalyze((folder / "v.hdr").c_str()));
    EXPECT_NE(copy, nullptr);
    EXPECT_THAT(output.text(), HasSubstr("Loaded Image, resolution 1024 x 1 x 1, min -60, max = 1500.5\n"));
}

} // namespace
