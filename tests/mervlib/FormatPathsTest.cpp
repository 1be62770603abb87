// Every format at paths with blanks, umlauts, other scripts and of 260 characters, and where nothing can be
// written.
#include "Common/Analyze.h"
#include "Common/Bitmap.h"
#include "Common/MetaImage.h"
#include "Common/MicroPet.h"
#include "Common/Prs.h"
#include "Common/Raw12Bit.h"
#include "Common/Vis.h"

#include "tests/mervlib/FormatTestSupport.h"

#include <gmock/gmock.h>

#include <sys/stat.h>
#include <unistd.h>

using namespace MERV;
using testing::HasSubstr;

namespace {

struct Place
{
    const char *name;
    std::string folder; // below the temporary one
    std::wstring wideFolder;
    std::string file; // without blanks: the narrow MetaImage form keeps them and the reader drops them
    std::wstring wideFile;
};

class FormatsAtPath : public testing::TestWithParam<Place>
{
protected:
    void SetUp() override { std::filesystem::create_directories(temporary / GetParam().folder); }

    std::string base() const { return temporary / (GetParam().folder + '/' + GetParam().file); }
    std::wstring wideBase() const
    {
        return temporary.wide(GetParam().wideFolder + L'/' + GetParam().wideFile);
    }

    TempFolder temporary;
    CapturedText output;
    std::unique_ptr<ImageBase<short>> image = numberedImage<short>(4, 3, 2, 1, 1);
};

TEST_P(FormatsAtPath, metaImageNarrow)
{
    ASSERT_EQ(saveMetaImage(base().c_str(), image.get()), 0);
    const ImagePointer copy(loadMetaImage((base() + ".mhd").c_str()));
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(valuesOf<short>(*copy), valuesOf<short>(*image));
    EXPECT_THAT(output.text(), HasSubstr("Loading file " + base() + ".raw\n"));
}

TEST_P(FormatsAtPath, metaImageWide)
{
    ASSERT_EQ(saveMetaImage(wideBase().c_str(), image.get()), 0);
    const ImagePointer copy(loadMetaImage((wideBase() + L".mhd").c_str()));
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(valuesOf<short>(*copy), valuesOf<short>(*image));
    EXPECT_NE(ImagePointer(loadMetaImage((base() + ".mhd").c_str())), nullptr);
}

TEST_P(FormatsAtPath, analyze)
{
    ASSERT_EQ(saveAnalyze(wideBase().c_str(), image.get()), 0);
    EXPECT_TRUE(std::filesystem::exists(base() + ".hdr"));
    EXPECT_TRUE(std::filesystem::exists(base() + ".img"));
    EXPECT_NE(ImagePointer(loadAnalyze((wideBase() + L".hdr").c_str())), nullptr);
    ASSERT_EQ(saveAnalyze(base().c_str(), image.get()), 0);
    EXPECT_NE(ImagePointer(loadAnalyze((base() + ".hdr").c_str())), nullptr);
}

TEST_P(FormatsAtPath, vis)
{
    ASSERT_TRUE(saveVis((base() + ".vis").c_str(), image.get(), "label", nullptr, 0));
    EXPECT_NE(ImagePointer(loadVis((base() + ".vis").c_str())), nullptr);
}

TEST_P(FormatsAtPath, prs)
{
    const auto projections = numberedImage<unsigned short>(4, 3, 2, 1, 1);
    Bytes bytes(2512);
    bytes.u32(0, 0x0C140001).u32(4, 2512).u32(8, 2).u32(12, 4).u32(16, 3).u32(20, 2).u32(24, 16);
    PrsHeader header;
    std::copy(bytes.str().begin(), bytes.str().end(), header.bytes.begin());
    std::vector<PrsRecord> records(2);
    ASSERT_TRUE(savePrs((base() + ".prs").c_str(), projections.get(), header, records));
    EXPECT_NE(ImagePointer(loadPrs((base() + ".prs").c_str(), header, records)), nullptr);
}

TEST_P(FormatsAtPath, raw12Bit)
{
    Bytes bytes(290);
    bytes.u32(0, 815).u16(4, 288).u16(190, 12).u32(232, 1).u32(236, 1).u32(240, 1);
    writeFile(base() + ".bin", bytes.str());
    EXPECT_NE(ImagePointer(loadRaw12Bit((base() + ".bin").c_str(), false)), nullptr);
}

TEST_P(FormatsAtPath, microPetHeader)
{
    const std::string folder = temporary / (GetParam().folder + '/');
    writeFile(folder + "template.img.hdr", "a\n");
    saveMicroPetHeader(base().c_str(), folder.c_str(), image.get());
    EXPECT_EQ(contentOf(base() + ".img.hdr"), "a\n");
}

TEST_P(FormatsAtPath, rawBlock)
{
    ASSERT_EQ(image->save((base() + ".block").c_str()), 0);
    EXPECT_EQ(image->load((base() + ".block").c_str(), false), 0);
}

// A folder that makes the whole path longer than 260 characters.
const std::string longName(230, 'n');

INSTANTIATE_TEST_SUITE_P(
    Names, FormatsAtPath,
    testing::Values(Place{"Blanks", "a folder with blanks", L"a folder with blanks", "file", L"file"},
                    Place{"Umlauts", "K\xC3\xA4se \xC3\x9C", L"K\u00e4se \u00dc",
                          "gr\xC3\xB6\xC3\x9F"
                          "e",
                          L"gr\u00f6\u00dfe"},
                    Place{"OtherScripts", "\xE8\x86\x9D \xD0\xBA\xD0\xBE\xD0\xBB",
                          L"\u819d \u043a\u043e\u043b", "\xE6\xBC\xA2\xF0\x9F\x98\x80", L"\u6f22\U0001F600"},
                    Place{"LongerThan260", longName, std::wstring(longName.begin(), longName.end()),
                          "a_file_with_a_name_of_its_own", L"a_file_with_a_name_of_its_own"}),
    [](const testing::TestParamInfo<Place> &place) { return place.param.name; });

// A folder that nobody may write to. Who may write everywhere takes the rights of nobody meanwhile.
class FormatsInReadOnlyFolder : public testing::Test
{
protected:
    void SetUp() override
    {
        writeFile(temporary / "template.img.hdr", "a\n");
        ASSERT_EQ(chmod(temporary.path().c_str(), 0555), 0);
        if (geteuid() == 0) {
            ASSERT_EQ(seteuid(65534), 0);
        }
        ASSERT_FALSE(std::ofstream(temporary / "probe"));
    }
    void TearDown() override
    {
        ASSERT_EQ(seteuid(getuid()), 0);
        ASSERT_EQ(chmod(temporary.path().c_str(), 0755), 0);
    }

    TempFolder temporary;
    CapturedText output;
    std::unique_ptr<ImageBase<short>> image = numberedImage<short>(4, 3, 2, 1, 1);
};

TEST_F(FormatsInReadOnlyFolder, metaImage)
{
    EXPECT_EQ(saveMetaImage((temporary / "v").c_str(), image.get()), 1);
    EXPECT_EQ(saveMetaImage(temporary.wide(L"v").c_str(), image.get()), 1);
    const std::string line = "Common >> Warning: Couldn't write to file " + (temporary / "v.mhd") + '\n';
    EXPECT_EQ(output.text(), line + line);
}

TEST_F(FormatsInReadOnlyFolder, analyze)
{
    EXPECT_EQ(saveAnalyze((temporary / "v").c_str(), image.get()), 1);
    EXPECT_EQ(saveAnalyze(temporary.wide(L"v").c_str(), image.get()), 1);
    const std::string line = "Common >> Error: Could not create file: " + (temporary / "v.hdr") + '\n';
    EXPECT_EQ(output.text(), line + line);
}

TEST_F(FormatsInReadOnlyFolder, others)
{
    EXPECT_FALSE(saveVis((temporary / "v").c_str(), image.get(), "", nullptr, 0));
    EXPECT_EQ(image->save((temporary / "v").c_str()), 1);
    saveMicroPetHeader((temporary / "v").c_str(), (temporary / "").c_str(), image.get());
    EXPECT_EQ(output.text(), "Common >> Warning: could not save image data!\n"
                             "Common >> Error creating microPET header file.\n");
}

// Half a pair of UTF-16 and a number that is no character: the writer takes U+FFFD (EF BF BD) and does not
// throw.
TEST(FormatsWithWidePaths, whatIsNoCharacterIsReplaced)
{
    const TempFolder temporary;
    const CapturedText output;
    const auto image = numberedImage<short>(1, 1, 1, 1, 1);
    const std::wstring name{static_cast<wchar_t>(0xD800), static_cast<wchar_t>(0x7FFFFFFF)};
    EXPECT_EQ(saveAnalyze(temporary.wide(name).c_str(), image.get()), 0);
    EXPECT_TRUE(std::filesystem::exists(temporary / "\xEF\xBF\xBD\xEF\xBF\xBD.hdr"));
    EXPECT_NE(ImagePointer(loadAnalyze(temporary.wide(name + L".hdr").c_str())), nullptr);
}

} // namespace
